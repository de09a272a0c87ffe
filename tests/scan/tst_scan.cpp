#include "tst_filenamepatterns.h"
#include "tst_photocatalogue.h"
#include "tst_photodatabase.h"
#include "tst_photorowinserter.h"
#include "tst_readerpool.h"
#include "tst_samplelibrary.h"
#include "tst_scancolumns.h"
#include "tst_scanstress.h"
#include "tst_scanworker.h"

#include "testrunner.h"

#include <QApplication>

// The scan subsystem's tests, one class per topic, run one after another.
int main(int argc, char *argv[])
{
    // The chart controllers rebuilt during a scan need widgets (the offscreen platform).
    QApplication app(argc, argv);
    tst_FileNamePatterns patterns;
    tst_PhotoDatabase database;
    tst_PhotoRowInserter inserter;
    tst_ScanWorker worker;
    tst_ReaderPool pool;
    tst_ScanColumns columns;
    tst_SampleLibrary samples;
    tst_ScanStress stress;
    tst_PhotoCatalogue catalogue;
    const QList<QObject *> tests { &patterns, &database, &inserter, &worker,   &pool,
                                   &columns,  &samples,  &stress,   &catalogue };

    return testutils::runTestObjects(app.arguments(), tests);
}
