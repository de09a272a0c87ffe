#pragma once

#include <QList>
#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>

// What one scan reported and stored.
struct ScanOutcome
{
    bool finished = false; // operationDone() arrived within the hang bound
    int doneSignals = 0;
    QList<int> updates; // the counts of operationUpdate(), in order
    QStringList fileNames; // FILENAME of every stored row, sorted
};

// Runs one scan with the real TMyWorkerObject the way the main window does: a new worker moved to
// a new QThread, started() runs doOperation(), operationDone() quits the thread. The worker's
// signals reach this object queued, on the main thread, as they reach the window.
class WorkerScan : public QObject
{
    Q_OBJECT

public:
    // How long a scan of a test tree may take before it counts as hung. Generous: a scan of a
    // few hundred small files takes well under a second.
    static constexpr int hangBoundMs = 30000;

    // db is the open main connection; the table is emptied first. inThread, when set, runs on
    // the worker's thread just before doOperation(). FIFOs in unblockFifos are opened for writing
    // if the scan hangs, so that a reader stuck in opening one is let go and the test can end.
    static ScanOutcome run(QSqlDatabase &db, const QStringList &directories,
                           const QStringList &patterns, bool includeSubDirs,
                           const std::function<void()> &inThread = {},
                           const QStringList &unblockFifos = {});

    // The nine patterns of the program's file types.
    static QStringList allPatterns();

signals:
    void done();
    void update(int count);
};
