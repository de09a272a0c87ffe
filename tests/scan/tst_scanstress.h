#pragma once

#include <QObject>
#include <QSqlDatabase>

// Scans under load: charts rebuilt while the worker writes, scans stopped at random points one
// after another, and a large read-only tree.
class tst_ScanStress : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void readersDuringScanKeepEveryRow_data();
    void readersDuringScanKeepEveryRow();
    void readerLocksAndInserts_data();
    void readerLocksAndInserts();
    void workerKeepsRowsWhenAReaderLacksThePragma();
    void fiftyScansStoppedAtRandomPoints();
    void writeWatchSeesWritesButNotReads();
    void largeReadOnlyTreeStoppedAtRandomPoints();

private:
    QSqlDatabase db;
};
