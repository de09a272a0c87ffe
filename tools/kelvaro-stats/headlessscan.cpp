#include "headlessscan.h"

#include "photocatalogue.h"
#include "photodatabase.h"
#include "readerpool.h"
#include "statistic.h"
#include "tmyworkerobject.h"

#include <QEventLoop>
#include <QSettings>
#include <QSqlQuery>
#include <QThread>

#include <algorithm>

StoredScanSettings StoredScanSettings::read()
{
    QSettings store(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Kelvaro"),
                    QStringLiteral("Kelvaro"));
    store.beginGroup(QStringLiteral("OtherSettings"));
    StoredScanSettings settings;
    settings.makerExcludes = store.value(QStringLiteral("makerExcludes")).toStringList();
    settings.modelExcludes = store.value(QStringLiteral("modelExcludes")).toStringList();
    settings.makerAliases = store.value(QStringLiteral("makerAliases")).toStringList();
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.rangeGroups) {
            const QString &key = statistic.rangeGroups->settingsKey;
            settings.rangeGroups[key] = store.value(key).toStringList();
        }
    }
    settings.readerThreads =
        std::clamp(store.value(QStringLiteral("readerThreads"), ReaderPool::defaultThreads).toInt(),
                   ReaderPool::minThreads, ReaderPool::maxThreads);
    settings.rememberPhotos = store.value(QStringLiteral("rememberPhotos"), true).toBool();
    settings.forgetUnseenAfterDays =
        std::max(0,
                 store
                     .value(QStringLiteral("forgetUnseenAfterDays"),
                            PhotoCatalogue::defaultForgetUnseenAfterDays)
                     .toInt());
    return settings;
}

HeadlessScan::HeadlessScan()
{
    PhotoDatabase::openMainConnection(db);
}

HeadlessScan::~HeadlessScan()
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void HeadlessScan::run(QList<QString> directories, QList<QString> patterns, bool includeSubDirs,
                       const StoredScanSettings &settings, const std::function<void(int)> &progress,
                       bool useCatalogue)
{
    QList<QString> makerExcludes = settings.makerExcludes;
    QList<QString> modelExcludes = settings.modelExcludes;
    auto *worker =
        new TMyWorkerObject(directories, patterns, includeSubDirs, makerExcludes, modelExcludes);
    QStringList groupedIndexes;
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.rangeGroups)
            groupedIndexes << statistic.rangeIndexStatement(
                settings.rangeGroups.value(statistic.rangeGroups->settingsKey));
    }
    worker->setGroupedStatisticIndexes(groupedIndexes);
    worker->setReaderThreads(settings.readerThreads);
    if (useCatalogue && settings.rememberPhotos) {
        TMyWorkerObject::CatalogueUse use;
        use.file = PhotoCatalogue::defaultFile();
        use.forgetUnseenAfterDays = settings.forgetUnseenAfterDays;
        // Called on the scan's thread; read once that thread has ended.
        use.noteTo = [this](const QString &text) { note = text; };
        worker->setCatalogue(use);
    }
    note.clear();

    QThread thread;
    worker->moveToThread(&thread);
    QEventLoop loop;
    QObject::connect(&thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    QObject::connect(worker, &TMyWorkerObject::operationDone, &thread, &QThread::quit);
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    QObject::connect(worker, &TMyWorkerObject::operationUpdate, &loop, progress);
    thread.start();
    loop.exec();
    thread.wait();
    delete worker;
}

qint64 HeadlessScan::photoCount() const
{
    QSqlQuery count(db);
    if (!count.exec(QStringLiteral("SELECT count(*) FROM DATEIEN")) || !count.next())
        return 0;
    return count.value(0).toLongLong();
}
