#include "tmyworkerobject.h"

#include "photodatabase.h"
#include "readerpool.h"
#include "scanwalk.h"

#include <QQueue>
#include <QThread>

#include <algorithm>

namespace {
// Progress is sent, and a stop request looked at, once per this many files.
constexpr int updateInterval = 50;
// How many files the walk may run ahead of the rows stored, per reader: enough to keep every
// reader busy while the worker waits for the oldest, few enough to bound the memory held.
constexpr int readAheadPerThread = 4;
constexpr int minReadAhead = 16;
} // namespace

TMyWorkerObject::TMyWorkerObject(QObject *parent)
    : QObject(parent)
{ }

TMyWorkerObject::TMyWorkerObject(QList<QString> &directories, QList<QString> &fileFilters,
                                 bool includeSubDirs, QList<QString> &makerExcludes,
                                 QList<QString> &modelExcludes)
    : directories(directories)
    , includeSubDirs(includeSubDirs)
    , fileFilters(fileFilters)
    , makerExcludes(makerExcludes)
    , modelExcludes(modelExcludes)
{
    // Every scan adds this name again; Qt replaces the previous scan's connection and warns.
    db = PhotoDatabase::addConnection(PhotoDatabase::workerConnection);
}

void TMyWorkerObject::doOperation()
{
    db.open();
    if (fileFilters.isEmpty() || directories.isEmpty()) {
        db.close();
        emit operationDone();
        return;
    }

    inserter = PhotoRowInserter::create(db);
    infoInserter = PhotoRowInserter::create(db, PhotoRowInserter::photoInfo());
    scanDirectories();

    // The statements must be released before their connection closes.
    inserter.reset();
    infoInserter.reset();
    // A stopped scan's rows are dropped at once by the window that stopped it, which waits for
    // this thread: completing them and indexes over them would only keep it waiting.
    if (!QThread::currentThread()->isInterruptionRequested()) {
        PhotoDatabase::completeScan(db);
        PhotoDatabase::createStatisticIndexes(db, groupedStatisticIndexes);
    }
    db.close();
    emit operationDone();
}

// The files are read on the pool's threads, but counted, checked for a stop and stored here in
// the walk's order, so that the rows, their ids and the progress are those of reading one file
// after another.
void TMyWorkerObject::scanDirectories()
{
    QThread *const scanThread = QThread::currentThread();
    ScanWalk walk(directories, fileFilters, includeSubDirs);
    ReaderPool pool(readerThreads, [scanThread] { return scanThread->isInterruptionRequested(); });
    const qsizetype readAhead = std::max(minReadAhead, readAheadPerThread * pool.threadCount());
    // Walked and submitted, not yet taken back, oldest first.
    QQueue<ScanWalk::File> ahead;
    int counter = 0;
    int stoppedDirectory = -1;
    for (;;) {
        ScanWalk::File file;
        // Topped up once half the files ahead are taken: readers are woken once per batch.
        if (ahead.size() <= readAhead / 2) {
            QStringList batch;
            while (ahead.size() < readAhead && walk.next(file)) {
                batch << file.path;
                ahead.enqueue(file);
            }
            pool.submit(batch);
        }
        if (ahead.isEmpty())
            break;
        file = ahead.dequeue();
        PhotoRead read = pool.takeNext();
        // Read ahead past the point where a stop left this directory: dropped, not counted.
        if (file.directory == stoppedDirectory)
            continue;
        ++counter;
        if (counter % updateInterval == 0) {
            emit operationUpdate(counter);
            // A stop ends only this directory; the next one is begun all the same and left
            // again at the next multiple of the interval.
            if (scanThread->isInterruptionRequested()) {
                stoppedDirectory = file.directory;
                walk.leaveDirectory(file.directory);
                continue;
            }
        }
        // Readers pass over the files queued once a stop is asked for; those the stop rule still
        // takes in (up to the next multiple of the interval) are read here.
        if (read.outcome == PhotoRead::Outcome::NotRead)
            read = PhotoRead::of(file.path);
        storeRow(read);
    }
}

void TMyWorkerObject::setGroupedStatisticIndexes(const QStringList &createStatements)
{
    groupedStatisticIndexes = createStatements;
}

void TMyWorkerObject::setReaderThreads(int count)
{
    readerThreads = count;
}

void TMyWorkerObject::addExifFileToDB(QString path)
{
    storeRow(PhotoRead::of(path));
}

void TMyWorkerObject::storeRow(const PhotoRead &read)
{
    if (read.outcome != PhotoRead::Outcome::Photo)
        return;
    if (makerExcludes.contains(read.make) || modelExcludes.contains(read.model))
        return;

    // Outside a scan there is no prepared statement: the row is not stored, as by a failed insert.
    // The info row takes the id of the row just stored, so it follows only a stored one.
    if (inserter && inserter->insert(read.values))
        infoInserter->insert(read.info);
}
