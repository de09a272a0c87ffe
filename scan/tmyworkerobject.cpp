#include "tmyworkerobject.h"

#include "cataloguescan.h"
#include "photodatabase.h"
#include "readerpool.h"
#include "scanwalk.h"

#include <QDateTime>
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
constexpr qint64 secondsPerDay = 24 * 60 * 60;
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
    infoInserter = PhotoRowInserter::createInfo(db);
    std::unique_ptr<PhotoCatalogue> catalogue = openCatalogue();
    scanDirectories(catalogue && catalogue->isOpen() ? catalogue.get() : nullptr);
    if (catalogue) {
        catalogue->commit();
        if (catalogueUse.forgetUnseenAfterDays > 0
            && !QThread::currentThread()->isInterruptionRequested())
            catalogue->pruneUnseenSince(catalogueUse.now()
                                        - catalogueUse.forgetUnseenAfterDays * secondsPerDay);
        if (!catalogue->note().isEmpty() && catalogueUse.noteTo)
            catalogueUse.noteTo(catalogue->note());
        catalogue.reset();
    }

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
// Files the catalogue knows unchanged are not handed to the readers: their remembered values take
// their place in the walk's order.
void TMyWorkerObject::scanDirectories(PhotoCatalogue *catalogue)
{
    QThread *const scanThread = QThread::currentThread();
    ScanWalk walk(directories, fileFilters, includeSubDirs);
    std::optional<CatalogueScan> known;
    if (catalogue) {
        known.emplace(*catalogue, fileFilters);
        walk.onDirectoryListed(
            [&](int directory) { known->rootWalked(directories.at(directory), includeSubDirs); });
    }
    ReaderPool pool(readerThreads, [scanThread] { return scanThread->isInterruptionRequested(); });
    const qsizetype readAhead = std::max(minReadAhead, readAheadPerThread * pool.threadCount());
    // Walked and submitted (unless known), not yet taken back, oldest first.
    struct Ahead
    {
        ScanWalk::File file;
        CatalogueScan::Lookup lookup;
    };
    QQueue<Ahead> ahead;
    int counter = 0;
    int stoppedDirectory = -1;
    for (;;) {
        // Topped up once half the files ahead are taken: readers are woken once per batch.
        if (ahead.size() <= readAhead / 2) {
            QStringList batch;
            QList<std::shared_ptr<ReaderPool::Companion>> companions;
            ScanWalk::File walked;
            while (ahead.size() < readAhead && walk.next(walked)) {
                Ahead next { walked, {} };
                if (known)
                    next.lookup = known->lookup(walked.path);
                if (!next.lookup.known) {
                    batch << walked.path;
                    if (known)
                        companions << next.lookup.toRemember;
                }
                ahead.enqueue(std::move(next));
            }
            pool.submit(batch, companions);
        }
        if (ahead.isEmpty())
            break;
        Ahead taken = ahead.dequeue();
        const ScanWalk::File &file = taken.file;
        PhotoRead read = taken.lookup.known ? std::move(*taken.lookup.known) : pool.takeNext();
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
                if (walk.leaveDirectory(file.directory) && known)
                    known->rootLeft();
                continue;
            }
        }
        // Readers pass over the files queued once a stop is asked for; those the stop rule still
        // takes in (up to the next multiple of the interval) are read here.
        const std::shared_ptr<CatalogueScan::ReadToRemember> &toRemember = taken.lookup.toRemember;
        if (read.outcome == PhotoRead::Outcome::NotRead) {
            if (toRemember)
                toRemember->beforeRead(file.path);
            read = PhotoRead::of(file.path);
            if (toRemember)
                toRemember->afterRead(file.path, read);
        }
        if (toRemember)
            known->remember(file.path, *toRemember, read);
        storeRow(read);
    }
}

std::unique_ptr<PhotoCatalogue> TMyWorkerObject::openCatalogue()
{
    if (catalogueUse.file.isEmpty())
        return nullptr;
    if (!catalogueUse.now)
        catalogueUse.now = [] { return QDateTime::currentSecsSinceEpoch(); };
    if (!catalogueUse.useForScan && !catalogueUse.forgetEverything)
        return nullptr;
    auto catalogue = std::make_unique<PhotoCatalogue>(catalogueUse.file);
    if (catalogue->open(catalogueUse.now()) && catalogueUse.forgetEverything)
        catalogue->clear();
    if (!catalogueUse.useForScan)
        return nullptr;
    return catalogue;
}

void TMyWorkerObject::setCatalogue(const CatalogueUse &use)
{
    catalogueUse = use;
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
