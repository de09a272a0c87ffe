#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QThread>

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
    int dones = 0;
    QList<int> counts;
};
