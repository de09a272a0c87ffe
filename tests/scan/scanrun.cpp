#include "scanrun.h"

#include "tmyworkerobject.h"

#include <QTest>

ScanRun::ScanRun(QList<QString> directories, QList<QString> patterns, bool includeSubDirs,
                 QObject *parent)
    : QObject(parent)
{
    QList<QString> noExcludes;
    worker = new TMyWorkerObject(directories, patterns, includeSubDirs, noExcludes, noExcludes);
    thread = new QThread(this);
    worker->moveToThread(thread);
    connect(thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    connect(worker, &TMyWorkerObject::operationDone, thread, &QThread::quit);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &QThread::finished, worker, &QObject::deleteLater);
    connect(worker, &TMyWorkerObject::operationDone, this, [this] { ++dones; });
    connect(worker, &TMyWorkerObject::operationUpdate, this,
            [this](int count) { counts << count; });
}

ScanRun::~ScanRun()
{
    stop();
}

void ScanRun::onEveryUpdate(std::function<void(int)> step)
{
    connect(worker, &TMyWorkerObject::operationUpdate, this, std::move(step),
            Qt::BlockingQueuedConnection);
}

void ScanRun::start()
{
    thread->start();
}

void ScanRun::stop()
{
    if (!thread)
        return;
    thread->requestInterruption();
    thread->quit();
    thread->wait();
}

bool ScanRun::waitDone(int timeoutMs)
{
    return QTest::qWaitFor([this] { return dones > 0; }, timeoutMs);
}
