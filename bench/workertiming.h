#pragma once

#include "benchstats.h"
#include "tmyworkerobject.h"

#include <QEventLoop>
#include <QThread>

namespace benchstats {

// Runs the worker's scan on a QThread of its own, as the main window does, and returns the
// seconds from doOperation()'s start to operationDone(). Takes the worker over and deletes it.
inline double timeWorkerScan(TMyWorkerObject *worker)
{
    QThread thread;
    worker->moveToThread(&thread);

    // Both stamps are taken on the worker's thread; thread.wait() orders them before the reads.
    Clock::time_point started, done;
    QObject::connect(
        &thread, &QThread::started, worker, [&] { started = Clock::now(); }, Qt::DirectConnection);
    QObject::connect(&thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    QObject::connect(
        worker, &TMyWorkerObject::operationDone, worker, [&] { done = Clock::now(); },
        Qt::DirectConnection);
    QObject::connect(worker, &TMyWorkerObject::operationDone, &thread, &QThread::quit);

    QEventLoop loop;
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread.start();
    loop.exec();
    thread.wait();
    delete worker;
    return secondsBetween(started, done);
}

} // namespace benchstats
