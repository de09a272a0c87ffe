#include "workerscan.h"

#include "photodatabase.h"
#include "tmyworkerobject.h"

#include <QCoreApplication>
#include <QFile>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QThread>

#include <algorithm>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

QStringList storedFileNames(QSqlDatabase &db)
{
    QStringList names;
    QSqlQuery query(db);
    query.exec(QStringLiteral("SELECT FILENAME FROM DATEIEN"));
    while (query.next())
        names << query.value(0).toString();
    std::sort(names.begin(), names.end());
    return names;
}

// A reader blocked in open() on a FIFO goes on as soon as a writer opens it; closing again gives
// it end-of-file.
void unblock(const QStringList &fifos)
{
#ifdef Q_OS_UNIX
    for (const QString &fifo : fifos) {
        const int fd = ::open(QFile::encodeName(fifo).constData(), O_WRONLY | O_NONBLOCK);
        if (fd >= 0)
            ::close(fd);
    }
#else
    Q_UNUSED(fifos);
#endif
}

} // namespace

QStringList WorkerScan::allPatterns()
{
    return { "*.cr2", "*.cr3", "*.raf", "*.nef", "*.arw", "*.rw2", "*.orf", "*.dng", "*.jpg" };
}

ScanOutcome WorkerScan::run(QSqlDatabase &db, const QStringList &directories,
                            const QStringList &patterns, bool includeSubDirs,
                            const std::function<void()> &inThread, const QStringList &unblockFifos)
{
    PhotoDatabase::clear(db);

    QList<QString> dirs = directories;
    QList<QString> filters = patterns;
    QList<QString> noExcludes;
    auto *worker = new TMyWorkerObject(dirs, filters, includeSubDirs, noExcludes, noExcludes);
    auto *thread = new QThread;
    worker->moveToThread(thread);

    WorkerScan relay;
    if (inThread)
        connect(thread, &QThread::started, worker, inThread, Qt::DirectConnection);
    connect(thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    connect(worker, &TMyWorkerObject::operationDone, thread, &QThread::quit);
    connect(worker, &TMyWorkerObject::operationDone, &relay, &WorkerScan::done);
    connect(worker, &TMyWorkerObject::operationUpdate, &relay, &WorkerScan::update);
    QSignalSpy doneSpy(&relay, &WorkerScan::done);
    QSignalSpy updateSpy(&relay, &WorkerScan::update);

    thread->start();
    if (doneSpy.isEmpty())
        doneSpy.wait(hangBoundMs);
    ScanOutcome outcome;
    const bool hung = doneSpy.isEmpty();
    if (hung) {
        // Hung: free what can be freed, and leave thread and worker alive on purpose, since
        // destroying a running QThread would end the whole test run.
        unblock(unblockFifos);
        thread->requestInterruption();
        thread->quit();
        if (!thread->wait(hangBoundMs))
            return outcome;
    } else {
        thread->quit();
        thread->wait();
    }
    // Whatever was still queued (a late operationDone() after a rescue, a second one) is counted.
    QCoreApplication::sendPostedEvents(&relay);
    outcome.finished = !hung;
    outcome.doneSignals = int(doneSpy.count());
    for (const QList<QVariant> &arguments : std::as_const(updateSpy))
        outcome.updates << arguments.at(0).toInt();
    outcome.fileNames = storedFileNames(db);
    delete worker;
    delete thread;
    return outcome;
}
