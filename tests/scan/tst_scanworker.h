#pragma once

#include <QObject>
#include <QSqlDatabase>

// One scan by TMyWorkerObject: its progress signals, which files it reads, the exclusions, the
// stop rule and its database connection.
class tst_ScanWorker : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanupTestCase();

    void progressSignals_data();
    void progressSignals();
    void updateIsSentWhileTheSecondDirectoryIsRead();
    void exclusions_data();
    void exclusions();
    void subdirectories_data();
    void subdirectories();
    void patterns_data();
    void patterns();
    void unreadableFiles_data();
    void unreadableFiles();
    void stopEndsOnlyTheCurrentDirectory_data();
    void stopEndsOnlyTheCurrentDirectory();
    void idsContinueInTheNextScan();
    void indexesAreBuiltWhenTheRowsAreIn();
    void stoppedScanBuildsNoIndexes();
    void rowsAreSeenFromAnotherThread();
    void workerConnection();
    void metaObjectOrder();
    void emptyWorkerEndsAtOnce();

private:
    QSqlDatabase db;
};
