// Runs every test class of the photo metadata reader in one executable; the exit code is
// non-zero when any of them failed.
#include "tst_codetables.h"
#include "tst_exif35mm.h"
#include "tst_fuzzcorpus.h"
#include "tst_heifreader.h"
#include "tst_heifsamples.h"
#include "tst_hostilelayout.h"
#include "tst_reader.h"
#include "tst_samples.h"
#include "tst_tagcatalogue.h"
#include "tst_tool.h"
#include "tst_values.h"

#include "testrunner.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    tst_Reader reader;
    tst_HostileLayout hostileLayouts;
    tst_HeifReader heifReader;
    tst_Values values;
    tst_CodeTables codeTables;
    tst_TagCatalogue tagCatalogue;
    tst_Samples samples;
    tst_HeifSamples heifSamples;
    tst_Tool tool;
    tst_FuzzCorpus fuzzCorpus;
    tst_Exif35mm exif35mm;
    return testutils::runTestObjects(app.arguments(),
                                     { &reader, &hostileLayouts, &heifReader, &values, &codeTables,
                                       &tagCatalogue, &samples, &heifSamples, &tool, &fuzzCorpus,
                                       &exif35mm });
}
