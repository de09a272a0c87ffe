// The settings subsystem's tests: the per-chart keys of the settings store and the global
// settings dialog.
#include "chartsettingsstore_test.h"
#include "globalsettingsdialog_test.h"

#include "testrunner.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    ChartSettingsStoreTest store;
    GlobalSettingsDialogTest dialog;
    return testutils::runTestObjects(app.arguments(), { &store, &dialog });
}
