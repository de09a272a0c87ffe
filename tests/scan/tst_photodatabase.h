#pragma once

#include <QObject>
#include <QSqlDatabase>

// The photo database: the main connection, emptying the table, and how connections of the
// shared cache lock each other out.
class tst_PhotoDatabase : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void mainConnectionCreatesTheTableAsWritten();
    void addedConnectionIsNotOpenedAndReachesTheSameDatabase();
    void clearEmptiesTheTableAndIdsContinue();
    void statisticIndexesChangeNoResultAndGoWithClear();
    void groupedStatisticIndexesServeTheirStatements_data();
    void groupedStatisticIndexesServeTheirStatements();
    void journalIsOffForEveryConnection();
    void pagesAreLargerThanSqlitesDefault();
    void failedInsertLeavesNoTrace();
    void connectionOfAnotherThreadSeesTheRows();
    void openSelectAndInsert_data();
    void openSelectAndInsert();
    void execInsertWaitsUntilTheLockIsGone();
    void execInsertGivesUpWhenTheLockStays();
    void execInsertStopsWaitingWhenTheThreadIsStopped();
    void execInsertDoesNotRetryOtherFailures();

private:
    QSqlDatabase db;
};
