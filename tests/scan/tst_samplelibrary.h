#pragma once

#include <QObject>
#include <QSqlDatabase>

// kelvaro-make-samples: the library it writes, and a scan of it.
class tst_SampleLibrary : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void helpPrintsUsage();
    void libraryIsScannedCompletely();
    void libraryIsTheSameEveryTime();

private:
    QSqlDatabase db;
};
