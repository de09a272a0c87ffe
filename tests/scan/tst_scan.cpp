#include "testfilenamepatterns.h"
#include "testphotodatabase.h"
#include "testphotorowinserter.h"
#include "testreaderpool.h"
#include "testsamplelibrary.h"
#include "testscancolumns.h"
#include "testscanstress.h"
#include "testscanworker.h"

#include "testrunner.h"

#include <QApplication>

// The scan subsystem's tests, one class per topic, run one after another.
int main(int argc, char *argv[])
{
    // The chart controllers rebuilt during a scan need widgets (the offscreen platform).
    QApplication app(argc, argv);
    TestFileNamePatterns patterns;
    TestPhotoDatabase database;
    TestPhotoRowInserter inserter;
    TestScanWorker worker;
    TestReaderPool pool;
    TestScanColumns columns;
    TestSampleLibrary samples;
    TestScanStress stress;
    const QList<QObject *> tests { &patterns, &database, &inserter, &worker,
                                   &pool,     &columns,  &samples,  &stress };

    return testutils::runTestObjects(app.arguments(), tests);
}
