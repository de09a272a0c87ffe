#include "testhostiletrees.h"
#include "testjunksettings.h"
#include "testreadermemory.h"
#include "testscanaccess.h"

#include <QApplication>
#include <QStringList>
#include <QTest>

#include <algorithm>

// What hostile folders, files and settings can do to the program, one class per topic, run one
// after another. An argument "Class" or "Class::function" runs only that class (or function);
// other arguments go to QtTest.
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

    QStringList options;
    QStringList selected;
    for (const QString &argument : app.arguments()) {
        const bool namesClass = std::any_of(tests.begin(), tests.end(), [&](QObject *test) {
            return argument.section("::", 0, 0) == test->metaObject()->className();
        });
        (namesClass ? selected : options) << argument;
    }
    int failed = 0;
    for (QObject *test : tests) {
        QStringList arguments = options;
        bool run = selected.isEmpty();
        for (const QString &choice : std::as_const(selected)) {
            if (choice.section("::", 0, 0) != test->metaObject()->className())
                continue;
            run = true;
            if (choice.contains("::"))
                arguments << choice.section("::", 1);
        }
        if (run)
            failed += QTest::qExec(test, arguments);
    }
    return failed;
}
