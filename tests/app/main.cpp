// The application shell's tests: one executable, one test class per concern, run one after the
// other by the common runner. The exit code counts the failed test functions of all of them; an
// argument naming a class ("tst_ScanControl") or a function ("tst_ScanControl::stopButton") runs
// only that.
#include "testrunner.h"

#include <QApplication>

#include <memory>

std::unique_ptr<QObject> makeStartupTest();
std::unique_ptr<QObject> makeWindowFrameTest();
std::unique_ptr<QObject> makeRawDataTableTest();
std::unique_ptr<QObject> makeRawDataModelTest();
std::unique_ptr<QObject> makeSettingsStoreTest();
std::unique_ptr<QObject> makeScanControlTest();
std::unique_ptr<QObject> makeChartCommandsTest();
std::unique_ptr<QObject> makeGlobalSettingsTest();
std::unique_ptr<QObject> makeUpdateOfferTest();
std::unique_ptr<QObject> makeStatisticsViewTest();
std::unique_ptr<QObject> makeDateViewsTest();
std::unique_ptr<QObject> makeNameHintsTest();
std::unique_ptr<QObject> makeFilterViewTest();
std::unique_ptr<QObject> makeCompareViewTest();

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const std::unique_ptr<QObject> tests[] = {
        makeStartupTest(),        makeWindowFrameTest(), makeRawDataTableTest(),
        makeSettingsStoreTest(),  makeScanControlTest(), makeChartCommandsTest(),
        makeGlobalSettingsTest(), makeUpdateOfferTest(), makeStatisticsViewTest(),
        makeRawDataModelTest(),   makeDateViewsTest(),   makeNameHintsTest(),
        makeFilterViewTest(),     makeCompareViewTest(),
    };
    QList<QObject *> objects;
    for (const auto &test : tests)
        objects << test.get();
    return testutils::runTestObjects(app.arguments(), objects);
}
