#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QThread>

#include <functional>

class TMyWorkerObject;

// One scan run the way the main window runs it: a new worker moved to a new QThread, the thread's
// started() runs doOperation(), operationDone() quits the thread, and thread and worker delete
// themselves when the thread has finished. Records what the worker reports.
class ScanRun : public QObject
{
    Q_OBJECT

public:
    ScanRun(QList<QString> directories, QList<QString> patterns, bool includeSubDirs,
            QObject *parent = nullptr);
    ~ScanRun() override;

    // Runs step on this (the main) thread at every progress report while the worker waits for it
    // to return, so that the test acts at known points of the scan. Set before start(); such a
    // scan must run to its end (stop() while the worker waits would never return).
    void onEveryUpdate(std::function<void(int count)> step);

    void start();
    // Stops as the main window does: interruption, quit, and a wait without a time limit.
    void stop();
    // Waits, handling events, until operationDone() has arrived; false after timeoutMs.
    bool waitDone(int timeoutMs);

    int doneCount() const { return dones; }
    QList<int> updates() const { return counts; }
    // True once the thread has finished (and perhaps already deleted itself).
    bool threadFinished() const { return !thread || thread->isFinished(); }

private:
    QPointer<QThread> thread;
    QPointer<TMyWorkerObject> worker;
    int dones = 0;
    QList<int> counts;
};
