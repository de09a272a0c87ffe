#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QTest>

#include <algorithm>

namespace testutils {

// Runs several QtTest classes of one test executable one after another and returns the number of
// failures. An argument "Class" or "Class::function" runs only that class (or function); other
// arguments go to QtTest unchanged.
inline int runTestObjects(const QStringList &arguments, const QList<QObject *> &tests)
{
    QStringList options;
    QStringList selected;
    for (const QString &argument : arguments) {
        const bool namesClass = std::any_of(tests.begin(), tests.end(), [&](QObject *test) {
            return argument.section("::", 0, 0) == test->metaObject()->className();
        });
        (namesClass ? selected : options) << argument;
    }
    int failed = 0;
    for (QObject *test : tests) {
        QStringList testArguments = options;
        bool run = selected.isEmpty();
        for (const QString &choice : std::as_const(selected)) {
            if (choice.section("::", 0, 0) != test->metaObject()->className())
                continue;
            run = true;
            if (choice.contains("::"))
                testArguments << choice.section("::", 1);
        }
        if (run)
            failed += QTest::qExec(test, testArguments);
    }
    return failed;
}

} // namespace testutils
