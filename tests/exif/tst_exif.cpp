// Runs every test class of the photo metadata reader in one executable; the exit code is
// non-zero when any of them failed.
#include "codetablestest.h"
#include "fuzzcorpustest.h"
#include "heifreadertest.h"
#include "heifsamplestest.h"
#include "hostilelayouttest.h"
#include "readertest.h"
#include "samplestest.h"
#include "tagcatalogue_test.h"
#include "tooltest.h"
#include "tst_exif35mm.h"
#include "valuestest.h"

#include "testrunner.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    ReaderTest reader;
    HostileLayoutTest hostileLayouts;
    HeifReaderTest heifReader;
    ValuesTest values;
    CodeTablesTest codeTables;
    TagCatalogueTest tagCatalogue;
    SamplesTest samples;
    HeifSamplesTest heifSamples;
    ToolTest tool;
    FuzzCorpusTest fuzzCorpus;
    tst_Exif35mm exif35mm;
    return testutils::runTestObjects(app.arguments(),
                                     { &reader, &hostileLayouts, &heifReader, &values, &codeTables,
                                       &tagCatalogue, &samples, &heifSamples, &tool, &fuzzCorpus,
                                       &exif35mm });
}
