#pragma once

#include <QList>
#include <QMetaMethod>
#include <QObject>
#include <QStringList>
#include <QTest>

#include <algorithm>

namespace testutils {

// The test functions QtTest would run for a test object: its private slots without parameters,
// less the data functions and the set-up and clean-up slots.
inline QStringList testFunctions(const QObject *test)
{
    static const QStringList fixtures { "initTestCase", "initTestCase_data", "cleanupTestCase",
                                        "init", "cleanup" };
    const QMetaObject *meta = test->metaObject();
    QStringList names;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        const QString name = QString::fromLatin1(method.name());
        if (method.methodType() == QMetaMethod::Slot && method.access() == QMetaMethod::Private
            && method.parameterCount() == 0 && !name.endsWith("_data") && !fixtures.contains(name))
            names << name;
    }
    return names;
}

// Runs several QtTest classes of one test executable one after another and returns the number of
// failures. An argument "Class" or "Class::function" (or "Class::function:row") runs only that
// class (or function, or row); "-Class" or "-Class::function" leaves it out, so that tests that
// CTest runs as entries of their own are not run twice. Other arguments go to QtTest unchanged.
inline int runTestObjects(const QStringList &arguments, const QList<QObject *> &tests)
{
    const auto namesClass = [&](const QString &argument) {
        return std::any_of(tests.begin(), tests.end(), [&](QObject *test) {
            return argument.section("::", 0, 0) == test->metaObject()->className();
        });
    };
    QStringList options;
    QStringList selected;
    QStringList excluded;
    for (const QString &argument : arguments) {
        if (argument.startsWith('-') && namesClass(argument.mid(1)))
            excluded << argument.mid(1);
        else
            (namesClass(argument) ? selected : options) << argument;
    }
    int failed = 0;
    for (QObject *test : tests) {
        const QString className = test->metaObject()->className();
        if (excluded.contains(className))
            continue;
        QStringList testArguments = options;
        bool run = selected.isEmpty();
        for (const QString &choice : std::as_const(selected)) {
            if (choice.section("::", 0, 0) != className)
                continue;
            run = true;
            if (choice.contains("::"))
                testArguments << choice.section("::", 1);
        }
        QStringList left;
        for (const QString &exclusion : std::as_const(excluded)) {
            if (exclusion.section("::", 0, 0) == className)
                left << exclusion.section("::", 1);
        }
        if (run && !left.isEmpty() && testArguments.size() == options.size()) {
            QStringList remaining = testFunctions(test);
            remaining.removeIf([&](const QString &function) { return left.contains(function); });
            if (remaining.isEmpty())
                continue;
            testArguments << remaining;
        }
        if (run)
            failed += QTest::qExec(test, testArguments);
    }
    return failed;
}

} // namespace testutils
