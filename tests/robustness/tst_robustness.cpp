#include "tst_hostiletrees.h"
#include "tst_junksettings.h"
#include "tst_readermemory.h"
#include "tst_scanaccess.h"

#include "testrunner.h"

#include <QApplication>

// What hostile folders, files and settings can do to the program, one class per topic, run one
// after another.
int main(int argc, char *argv[])
{
    // The main window needs widgets but never a real screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    tst_HostileTrees trees;
    tst_ScanAccess access;
    tst_ReaderMemory memory;
    tst_JunkSettings settings;
    const QList<QObject *> tests { &trees, &access, &memory, &settings };

    return testutils::runTestObjects(app.arguments(), tests);
}
