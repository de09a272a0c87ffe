#include "testhostiletrees.h"
#include "testjunksettings.h"
#include "testreadermemory.h"
#include "testscanaccess.h"

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
    TestHostileTrees trees;
    TestScanAccess access;
    TestReaderMemory memory;
    TestJunkSettings settings;
    const QList<QObject *> tests { &trees, &access, &memory, &settings };

    return testutils::runTestObjects(app.arguments(), tests);
}
