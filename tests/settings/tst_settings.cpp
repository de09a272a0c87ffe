// The settings subsystem's tests: the per-chart keys of the settings store and the global
// settings dialog. Each test class runs on its own.
#include "chartsettingsstore_test.h"
#include "globalsettingsdialog_test.h"

#include <QApplication>
#include <QTest>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    int failures = 0;
    {
        ChartSettingsStoreTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    {
        GlobalSettingsDialogTest test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}
