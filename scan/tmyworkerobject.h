#pragma once

#include "photocatalogue.h"
#include "photorowinserter.h"
#include "readerpool.h"

#include <QList>
#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

// One scan: walks the directories for files matching the patterns, has each read with TExifFile on
// a pool of reader threads and stores one row per photo that no exclusion drops, in the walk's
// order. Lives in a QThread made for this one scan; its
// two signals reach the main window queued.
class TMyWorkerObject : public QObject
{
    Q_OBJECT

public:
    // Exists for Qt's meta-type system: no directories, no patterns, a default database handle.
    explicit TMyWorkerObject(QObject *parent);
    // The worker of one scan. It has no parent, so that it can be moved to the scan's thread.
    TMyWorkerObject(QList<QString> &directories, QList<QString> &fileFilters, bool includeSubDirs,
                    QList<QString> &makerExcludes, QList<QString> &modelExcludes);

    // Reads one file and stores its row; called by doOperation only.
    void addExifFileToDB(QString path);

    // CREATE INDEX statements of the grouped statistics, whose indexes depend on the chosen
    // ranges; built with the statistic indexes when the rows are in. Set before the scan starts.
    void setGroupedStatisticIndexes(const QStringList &createStatements);

    // How many threads read the files (clamped to ReaderPool's range). Set before the scan
    // starts; the rows are the same for every count.
    void setReaderThreads(int count);

    // How the scan uses the photo catalogue. Without a file (the default) every file is read.
    struct CatalogueUse
    {
        QString file;
        // False: the scan reads every file and leaves the catalogue as it is (but still empties it
        // when asked to forget everything).
        bool useForScan = true;
        // Folders no scan has seen for this many days are forgotten at the end of a scan; 0
        // keeps them.
        int forgetUnseenAfterDays = 0;
        // Empty the catalogue before the scan.
        bool forgetEverything = false;
        // Seconds since the epoch; tests set their own clock.
        std::function<qint64()> now;
        // Told, on the worker's thread before operationDone(), about a problem with the
        // catalogue, in a sentence for the status line. (A callback, not a signal: the worker's
        // signals and slots stay as they are.)
        std::function<void(const QString &note)> noteTo;
    };
    void setCatalogue(const CatalogueUse &use);

signals:
    void operationDone();
    // The number of matching files met so far in this scan, sent at every 50th.
    void operationUpdate(int count);

public slots:
    void doOperation();

private:
    void scanDirectories(PhotoCatalogue *catalogue);
    std::unique_ptr<PhotoCatalogue> openCatalogue();
    void storeRow(const PhotoRead &read);

    QList<QString> directories;
    bool includeSubDirs = false;
    QList<QString> fileFilters;
    QList<QString> makerExcludes;
    QList<QString> modelExcludes;
    QSqlDatabase db;
    // The INSERTs, prepared once per scan on db; every photo only binds and executes them.
    std::unique_ptr<PhotoRowInserter> inserter;
    std::unique_ptr<PhotoRowInserter> infoInserter;
    QStringList groupedStatisticIndexes;
    int readerThreads = ReaderPool::defaultThreads;
    CatalogueUse catalogueUse;
};
