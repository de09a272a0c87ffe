#include "tmyworkerobject.h"

#include "filenamepatterns.h"
#include "photodatabase.h"
#include "texiffile.h"

#include <QDir>
#include <QDirIterator>
#include <QThread>

namespace {
// Progress is sent, and a stop request looked at, once per this many files.
constexpr int updateInterval = 50;
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

    const QDirIterator::IteratorFlags flags =
        includeSubDirs ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags;
    // The patterns filter the files as QDirIterator's name filters would, only cheaper.
    const FileNamePatterns patterns(fileFilters);
    int counter = 0;
    for (const QString &directory : std::as_const(directories)) {
        QDirIterator it(directory, QDir::Files, flags);
        while (it.hasNext()) {
            const QString path = it.next();
            // QDir::Files also lists links to FIFOs and devices; opening one could block forever,
            // and they are no photos, so they are neither counted nor read.
            if (!patterns.matches(it.fileName()) || !it.fileInfo().isFile())
                continue;
            ++counter;
            if (counter % updateInterval == 0) {
                emit operationUpdate(counter);
                // A stop ends only this directory; the next one is begun all the same and left
                // again at the next multiple of the interval.
                if (QThread::currentThread()->isInterruptionRequested())
                    break;
            }
            addExifFileToDB(path);
        }
    }

    // The statement must be released before its connection closes.
    inserter.reset();
    // A stopped scan's rows are dropped at once by the window that stopped it, which waits for
    // this thread: indexes over them would only keep it waiting.
    if (!QThread::currentThread()->isInterruptionRequested())
        PhotoDatabase::createStatisticIndexes(db, groupedStatisticIndexes);
    db.close();
    emit operationDone();
}

void TMyWorkerObject::setGroupedStatisticIndexes(const QStringList &createStatements)
{
    groupedStatisticIndexes = createStatements;
}

void TMyWorkerObject::addExifFileToDB(QString path)
{
    TExifFile exif(path);
    if (!exif.processFile())
        return;
    if (makerExcludes.contains(exif.Make) || modelExcludes.contains(exif.Model))
        return;

    // Outside a scan there is no prepared statement: the row is not stored, as by a failed insert.
    if (inserter)
        inserter->insert(PhotoRowInserter::rowValues(exif));
}
