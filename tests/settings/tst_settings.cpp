// The settings subsystem's tests: the per-chart keys of the settings store and the global
// settings dialog.
#include "tst_chartsettingsstore.h"
#include "tst_globalsettingsdialog.h"

#include "testrunner.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    tst_ChartSettingsStore store;
    tst_GlobalSettingsDialog dialog;
    return testutils::runTestObjects(app.arguments(), { &store, &dialog });
}
