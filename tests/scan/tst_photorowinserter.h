#pragma once

#include <QObject>
#include <QSqlDatabase>

// The scan's INSERT, in both of its forms: through QSqlQuery and through SQLite's own interface
// (where the build has it). Both must store exactly the same rows.
class tst_PhotoRowInserter : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void storesEveryValueAsItsColumnType_data();
    void storesEveryValueAsItsColumnType();
    void nullTextStoresNoRowAndTheNextRowGoesIn_data();
    void nullTextStoresNoRowAndTheNextRowGoesIn();
    void closedConnectionStoresNothing_data();
    void closedConnectionStoresNothing();
    void missingTableStoresNothing_data();
    void missingTableStoresNothing();
    void waitsForAnotherConnectionsTableLock_data();
    void waitsForAnotherConnectionsTableLock();
    void rowValuesFollowThePlaceholders();
    void scanBuildUsesTheDirectFormWhereItIsBuilt();
    void infoRowKeepsThePathAsFolderAndFileName();
    void infoRowWithoutItsFolderIsNotStored();
    void folderOfEndsAtTheLastSeparator_data();
    void folderOfEndsAtTheLastSeparator();

private:
    QSqlDatabase db;
};
