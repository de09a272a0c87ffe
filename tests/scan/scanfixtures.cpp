#include "scanfixtures.h"

#include "statistic.h"

#include "photodatabase.h"
#include "tmyworkerobject.h"

#include <QDir>
#include <QSqlQuery>
#include <QThread>
#include <QVariant>

#include <functional>

namespace scantest {

const QList<QString> allPatterns { "*.arw", "*.cr2", "*.cr3", "*.dng", "*.jpg",
                                   "*.nef", "*.raf", "*.rw2", "*.orf" };

const QStringList statisticQueries = [] {
    QStringList statements;
    for (const Statistic &statistic : Statistics::all())
        statements << statistic.selectStatement();
    return statements << QStringLiteral("SELECT Date FROM Dateien");
}();

fixture::PhotoTags variedTags(int i)
{
    static const char *const makers[] = { "Canon", "NIKON CORPORATION", "SONY", "FUJIFILM" };
    static const char *const models[] = { "Canon EOS R5", "NIKON Z 6_2", "ILCE-7M3", "X-T3" };
    static const char *const lenses[] = { "RF24-70mm F2.8 L IS USM", "NIKKOR Z 85mm f/1.8 S",
                                          "FE 200-600mm F5.6-6.3 G OSS", "XF10-24mmF4 R OIS" };
    static const quint32 focalLengths[] = { 10, 24, 35, 50, 85, 135, 200, 600 };
    static const quint16 isos[] = { 100, 200, 400, 800, 1600, 3200, 6400, 25600 };
    static const quint32 fNumbers[] = { 14, 28, 40, 56, 80, 110 };
    static const quint32 exposureDenominators[] = { 8000, 1000, 250, 60, 15, 13, 2 };

    fixture::PhotoTags tags;
    const int camera = i % 4;
    tags.make = QString::fromLatin1(makers[camera]);
    tags.model = QString::fromLatin1(models[camera]);
    tags.lensModel = QString::fromLatin1(lenses[camera]);
    tags.dateTimeOriginal = QStringLiteral("%1:%2:%3 12:00:00")
                                .arg(2019 + i % 5)
                                .arg(1 + i % 12, 2, 10, QLatin1Char('0'))
                                .arg(1 + i % 28, 2, 10, QLatin1Char('0'));
    tags.modifyDate = tags.dateTimeOriginal;
    tags.focalLength = fixture::Rational { focalLengths[i % 8], 1 };
    tags.iso = isos[i % 8];
    tags.fNumber = fixture::Rational { fNumbers[i % 6], 10 };
    tags.exposureTime = fixture::Rational { 1, exposureDenominators[i % 7] };
    tags.meteringMode = quint16(1 + i % 6);
    tags.exposureProgram = quint16(i % 10);
    return tags;
}

namespace {

bool writeNumbered(const QString &dir, int count, const QString &prefix,
                   const std::function<QByteArray(int)> &bytes)
{
    if (!QDir().mkpath(dir))
        return false;
    const QDir folder(dir);
    for (int i = 1; i <= count; ++i) {
        const QString name = QStringLiteral("%1%2.jpg").arg(prefix).arg(i, 5, 10, QLatin1Char('0'));
        if (!fixture::writeBytes(folder.filePath(name), bytes(i)))
            return false;
    }
    return true;
}

} // namespace

bool writePhotos(const QString &dir, int count, const QString &prefix)
{
    return writeNumbered(dir, count, prefix, [](int i) {
        return fixture::photo(fixture::Format::Jpeg, variedTags(i));
    });
}

bool writePhotos(const QString &dir, int count, const fixture::PhotoTags &tags,
                 const QString &prefix)
{
    const QByteArray bytes = fixture::photo(fixture::Format::Jpeg, tags);
    return writeNumbered(dir, count, prefix, [&bytes](int) { return bytes; });
}

QStringList writePhotoTree(const QString &root, int count, int folders)
{
    QStringList made;
    QString parent = root;
    for (int f = 0; f < folders; ++f) {
        const QString folder =
            QDir(f % 2 == 0 ? root : parent).filePath(QStringLiteral("f%1").arg(f));
        const int share = count / folders + (f < count % folders ? 1 : 0);
        if (!writePhotos(folder, share, QStringLiteral("F%1_").arg(f)))
            return {};
        made << folder;
        parent = folder;
    }
    return made;
}

std::unique_ptr<TMyWorkerObject> makeWorker(QList<QString> directories, QList<QString> patterns,
                                            bool includeSubDirs, QList<QString> makerExcludes,
                                            QList<QString> modelExcludes)
{
    return std::make_unique<TMyWorkerObject>(directories, patterns, includeSubDirs, makerExcludes,
                                             modelExcludes);
}

namespace {

void record(TMyWorkerObject &worker, QObject &context, QStringList &events)
{
    // Direct: the events are read only after the scan has ended.
    QObject::connect(
        &worker, &TMyWorkerObject::operationUpdate, &context,
        [&events](int count) { events << QStringLiteral("update %1").arg(count); },
        Qt::DirectConnection);
    QObject::connect(
        &worker, &TMyWorkerObject::operationDone, &context,
        [&events] { events << QStringLiteral("done"); }, Qt::DirectConnection);
}

} // namespace

QStringList scanHere(TMyWorkerObject &worker)
{
    QStringList events;
    QObject context;
    record(worker, context, events);
    worker.doOperation();
    return events;
}

QStringList scanOnThread(TMyWorkerObject &worker, bool interruptFirst)
{
    QStringList events;
    QObject context;
    record(worker, context, events);
    std::unique_ptr<QThread> thread(QThread::create([&worker, interruptFirst] {
        if (interruptFirst)
            QThread::currentThread()->requestInterruption();
        worker.doOperation();
    }));
    thread->start();
    thread->wait();
    return events;
}

void bindRow(QSqlQuery &insert, const QString &fileName)
{
    insert.bindValue(":filename", fileName);
    insert.bindValue(":date", "2023:07:14 18:30:05");
    insert.bindValue(":maker", "Canon");
    insert.bindValue(":model", "Canon EOS R5");
    insert.bindValue(":lens", "RF50mm F1.2 L USM");
    insert.bindValue(":focallength", 50.0);
    insert.bindValue(":iso", 400);
    insert.bindValue(":fnumber", "2.8");
    insert.bindValue(":exptime", 0.004);
    insert.bindValue(":exptimestring", "1/250");
    insert.bindValue(":meteringmode", "Matrix");
    insert.bindValue(":exposuremode", "Program AE");
}

bool insertRows(const QSqlDatabase &db, int count)
{
    QSqlQuery insert(db);
    if (!insert.prepare(PhotoDatabase::insertStatement))
        return false;
    for (int i = 0; i < count; ++i) {
        bindRow(insert, QStringLiteral("IMG_%1.JPG").arg(i));
        if (!insert.exec())
            return false;
    }
    return true;
}

std::unique_ptr<QSqlQuery> openHalfReadSelect(const QSqlDatabase &db)
{
    auto select = std::make_unique<QSqlQuery>(db);
    select->setForwardOnly(true);
    select->exec(QStringLiteral("SELECT FILENAME FROM DATEIEN"));
    select->next();
    return select;
}

void closeMainConnection(QSqlDatabase &db)
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

OwnConnection::OwnConnection(const QString &name, bool readUncommitted, const QString &databaseName)
    : name(name)
    , db(PhotoDatabase::addConnection(name))
{
    if (!databaseName.isEmpty())
        db.setDatabaseName(databaseName);
    db.open();
    if (readUncommitted)
        QSqlQuery(db).exec(PhotoDatabase::readUncommittedPragma);
}

OwnConnection::~OwnConnection()
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

int rowCount(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT count(*) FROM DATEIEN")) || !query.next())
        return -1;
    return query.value(0).toInt();
}

QStringList column(const QSqlDatabase &db, const QString &name)
{
    QStringList values;
    QSqlQuery query(db);
    query.exec(QStringLiteral("SELECT %1 FROM DATEIEN ORDER BY id").arg(name));
    while (query.next())
        values << query.value(0).toString();
    return values;
}

} // namespace scantest
