#include "testphotodatabase.h"
#include "testsamplelibrary.h"
#include "testscancolumns.h"
#include "testscanstress.h"
#include "testscanworker.h"

#include <QApplication>
#include <QStringList>
#include <QTest>

// The scan subsystem's tests, one class per topic, run one after another. An argument
// "Class" or "Class::function" runs only that class (or function); other arguments go to QtTest.
int main(int argc, char *argv[])
{
    // The chart controllers rebuilt during a scan need widgets (the offscreen platform).
    QApplication app(argc, argv);
    TestPhotoDatabase database;
    TestScanWorker worker;
    TestScanColumns columns;
    TestSampleLibrary samples;
    TestScanStress stress;
    const QList<QObject *> tests { &database, &worker, &columns, &samples, &stress };

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
