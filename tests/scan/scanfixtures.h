#pragma once

#include "photofixture.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <memory>

class QSqlQuery;
class TMyWorkerObject;

// Photo trees, workers and table look-ups shared by the scan tests.
namespace scantest {

// The nine patterns of the tool bar's file types.
extern const QList<QString> allPatterns;

// The statements the statistic charts run over the table while they are rebuilt, and the date
// chart's reading of every date.
extern const QStringList statisticQueries;

// Tags of photo number i: makers, models, lenses and values cycle, so that every statistic has
// several groups.
fixture::PhotoTags variedTags(int i);

// Writes count JPEG photos named <prefix>00001.jpg, <prefix>00002.jpg ... into dir (made if
// missing), with variedTags() or with the given tags. False when a file cannot be written.
bool writePhotos(const QString &dir, int count, const QString &prefix = QStringLiteral("IMG_"));
bool writePhotos(const QString &dir, int count, const fixture::PhotoTags &tags,
                 const QString &prefix);

// Spreads count photos over a tree below root: `folders` folders, every second one nested in
// the one before. Returns the folders made.
QStringList writePhotoTree(const QString &root, int count, int folders);

std::unique_ptr<TMyWorkerObject> makeWorker(QList<QString> directories,
                                            QList<QString> patterns = allPatterns,
                                            bool includeSubDirs = false,
                                            QList<QString> makerExcludes = {},
                                            QList<QString> modelExcludes = {});

// Runs the worker's scan on this thread, or on a thread of its own (that asks itself to stop
// first when interruptFirst), and returns what it reported: "update <count>" and "done".
QStringList scanHere(TMyWorkerObject &worker);
QStringList scanOnThread(TMyWorkerObject &worker, bool interruptFirst);

// Binds one complete row, named fileName, to a prepared INSERT of the photo table.
void bindRow(QSqlQuery &insert, const QString &fileName);
// Inserts count such rows (IMG_0.JPG, IMG_1.JPG ...); false when one is not stored.
bool insertRows(const QSqlDatabase &db, int count);

// A SELECT that has read its first row and stays open, as a table model's statement does until
// the model has fetched every row. Without read-uncommitted its connection holds the table's
// read lock meanwhile.
std::unique_ptr<QSqlQuery> openHalfReadSelect(const QSqlDatabase &db);

// Closes and removes the main connection, which ends the in-memory database.
void closeMainConnection(QSqlDatabase &db);

// A connection of the photo database of its own, opened on the current thread and removed again
// with the object. Optionally reading uncommitted like the main connection, or opening another
// database (databaseName) instead of the photo database.
class OwnConnection
{
public:
    explicit OwnConnection(const QString &name, bool readUncommitted = false,
                           const QString &databaseName = QString());
    ~OwnConnection();
    OwnConnection(const OwnConnection &) = delete;
    OwnConnection &operator=(const OwnConnection &) = delete;

    QString name;
    QSqlDatabase db;
};

int rowCount(const QSqlDatabase &db);
// One column of every row, in id order.
QStringList column(const QSqlDatabase &db, const QString &name);

} // namespace scantest
