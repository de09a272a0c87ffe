#include "photodatabase.h"

#include <QElapsedTimer>
#include <QSqlError>
#include <QSqlQuery>
#include <QThread>

namespace PhotoDatabase {

namespace {
constexpr int sqliteLocked = 6; // SQLITE_LOCKED; extended codes carry it in the low byte
} // namespace

QSqlDatabase addConnection(const QString &name)
{
    QSqlDatabase db = QSqlDatabase::addDatabase(driver, name);
    db.setConnectOptions(connectOptions);
    db.setDatabaseName(databaseName);
    return db;
}

bool openMainConnection(QSqlDatabase &db)
{
    db = addConnection(mainConnection);
    if (!db.open())
        return false;
    QSqlQuery pragma(db);
    pragma.exec(readUncommittedPragma);
    pragma.exec(journalOffPragma);
    pragma.exec(pageSizePragma);
    QSqlQuery create(db);
    return create.exec(createTableStatement) && create.exec(createInfoTableStatement)
        && create.exec(createFolderTableStatement);
}

void clear(QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.exec(clearStatement);
    query.exec(clearInfoStatement);
    query.exec(clearFoldersStatement);
    // Every index of the tables was made for the statistics (the grouped ones under names of
    // their own); the tables' own unique keys have no statement and stay.
    query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' "
                              "AND tbl_name IN ('DATEIEN', 'PHOTOINFO') AND sql IS NOT NULL"));
    QStringList names;
    while (query.next())
        names << query.value(0).toString();
    query.finish();
    for (const QString &name : std::as_const(names))
        query.exec(QStringLiteral("DROP INDEX IF EXISTS \"%1\"").arg(name));
}

void completeScan(QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.exec(learnedFocalLength35Statement);
}

void createStatisticIndexes(QSqlDatabase &db, const QStringList &moreStatements)
{
    QSqlQuery query(db);
    for (const QString &statement : statisticIndexStatements + moreStatements) {
        if (!statement.isEmpty())
            query.exec(statement);
    }
}

bool failedOnTableLock(const QSqlQuery &query)
{
    bool ok = false;
    const int code = query.lastError().nativeErrorCode().toInt(&ok);
    return ok && (code & 0xff) == sqliteLocked;
}

// The main connection reads uncommitted, so its SELECTs take no table locks and an INSERT is not
// refused on their account. The retry covers any other reader of the shared cache that lacks the
// pragma: a statistic query holds its lock for milliseconds, so waiting for it keeps the row. The
// wait is bounded so that a reader that never lets go (a half-fetched result set) cannot stall
// the scan, and it ends early when the scan is being stopped, whose rows are discarded anyway.
namespace {
std::function<void()> lockedRetryHook;
} // namespace

void setLockedRetryHook(std::function<void()> hook)
{
    lockedRetryHook = std::move(hook);
}

bool insertRetryingWhileLocked(const std::function<InsertAttempt()> &attempt)
{
    InsertAttempt result = attempt();
    QElapsedTimer waited;
    waited.start();
    QThread *const thread = QThread::currentThread();
    for (int retry = 1; result == InsertAttempt::Locked && waited.elapsed() < lockedRetryLimitMs;
         ++retry) {
        if (thread->isInterruptionRequested())
            return false;
        if (lockedRetryHook)
            lockedRetryHook();
        // The first retries only give the reader the processor; later ones sleep briefly.
        if (retry < 20)
            QThread::yieldCurrentThread();
        else
            QThread::usleep(500);
        result = attempt();
    }
    return result == InsertAttempt::Stored;
}

bool execInsert(QSqlQuery &insert)
{
    return insertRetryingWhileLocked([&insert] {
        if (insert.exec())
            return InsertAttempt::Stored;
        return failedOnTableLock(insert) ? InsertAttempt::Locked : InsertAttempt::Failed;
    });
}

} // namespace PhotoDatabase
