#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>

class QSqlQuery;

// The photo database: one in-memory SQLite table, DATEIEN, shared between the main thread's
// connection and the scan worker's through SQLite's shared cache. The URI name together with the
// shared cache makes every connection opened with these options reach the same database.
namespace PhotoDatabase {

inline const QString driver = QStringLiteral("QSQLITE");
inline const QString databaseName = QStringLiteral("file::memory:");
inline const QString connectOptions =
    QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_ENABLE_SHARED_CACHE");
inline const QString mainConnection = QStringLiteral("MainThread");
inline const QString workerConnection = QStringLiteral("WorkerThread");

// Used exactly as it stands, runs of blanks included.
inline const QString createTableStatement = QStringLiteral(
    "CREATE TABLE DATEIEN (id INTEGER PRIMARY KEY AUTOINCREMENT, FILENAME TEXT NOT NULL, "
    "DATE     TEXT NOT NULL, MAKER    TEXT NOT NULL, MODEL    TEXT NOT NULL, "
    "LENS     TEXT NOT NULL, FOCALLENGTH REAL NOT NULL, ISO INT NOT NULL, "
    "FNUMBER REAL NOT NULL, EXPTIME REAL NOT NULL, EXPTIMESTRING TEXT NOT NULL, "
    "METERINGMODE TEXT NOT NULL, EXPOSUREMODE TEXT NOT NULL )");

inline const QString insertStatement = QStringLiteral(
    "INSERT INTO DATEIEN (FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, ISO, FNUMBER, EXPTIME, "
    "EXPTIMESTRING, METERINGMODE, EXPOSUREMODE) VALUES (:filename, :date, :maker, :model, :lens, "
    ":focallength, :iso, :fnumber, :exptime, :exptimestring, :meteringmode, :exposuremode)");

inline const QString clearStatement = QStringLiteral("DELETE FROM DATEIEN");

// What the scan keeps per photo beyond DATEIEN's columns, under the same id: the file's folder
// (an id of PHOTOFOLDERS) and type, the 35 mm-equivalent focal length and the crop factor behind
// it (null when unknown), and the hour (0-23) and weekday (1 Monday to 7 Sunday) of a usable
// original date (else null). The file's path is its folder's path followed by DATEIEN's FILENAME.
inline const QString createInfoTableStatement = QStringLiteral(
    "CREATE TABLE PHOTOINFO (ID INTEGER PRIMARY KEY, FOLDER INTEGER NOT NULL, "
    "FILETYPE TEXT NOT NULL, FOCALLENGTH35 REAL, CROPFACTOR REAL, HOUR INTEGER, WEEKDAY INTEGER)");

// Run right after a photo's row went into DATEIEN on the same connection, whose id it takes.
inline const QString insertInfoStatement = QStringLiteral(
    "INSERT INTO PHOTOINFO (ID, FOLDER, FILETYPE, FOCALLENGTH35, CROPFACTOR, HOUR, WEEKDAY) VALUES "
    "(last_insert_rowid(), :folder, :filetype, :focallength35, :cropfactor, :hour, :weekday)");

inline const QString clearInfoStatement = QStringLiteral("DELETE FROM PHOTOINFO");

// The folders of the scanned files, each path up to and with its last separator, once: a photo's
// row keeps a small id where the whole path would cost it about 80 bytes. WITHOUT ROWID, so that
// storing a folder between a photo's two INSERTs leaves last_insert_rowid() at the photo's id.
inline const QString createFolderTableStatement =
    QStringLiteral("CREATE TABLE PHOTOFOLDERS (ID INTEGER PRIMARY KEY, PATH TEXT NOT NULL UNIQUE) "
                   "WITHOUT ROWID");
// The next id by hand, as a table without rowid has no automatic one; a known folder is kept.
inline const QString insertFolderStatement =
    QStringLiteral("INSERT OR IGNORE INTO PHOTOFOLDERS (ID, PATH) "
                   "SELECT coalesce(max(ID), 0) + 1, ? FROM PHOTOFOLDERS");
inline const QString folderIdStatement =
    QStringLiteral("SELECT ID FROM PHOTOFOLDERS WHERE PATH = ?");
inline const QString clearFoldersStatement = QStringLiteral("DELETE FROM PHOTOFOLDERS");

// The path of the photo with the given id.
inline const QString photoPathStatement =
    QStringLiteral("SELECT f.PATH || d.FILENAME FROM PHOTOINFO p "
                   "JOIN PHOTOFOLDERS f ON f.ID = p.FOLDER JOIN DATEIEN d ON d.id = p.ID "
                   "WHERE p.ID = ?");

// A photo whose file gives no 35 mm focal length gets one from the crop factor other photos of
// the same camera model in the scan showed (their average); a photo without a focal length stays
// unknown.
inline const QString learnedFocalLength35Statement = QStringLiteral(
    "WITH LearnedCrop AS MATERIALIZED (SELECT d.MAKER AS MAKER, d.MODEL AS MODEL, "
    "avg(p.CROPFACTOR) AS CROP FROM PHOTOINFO p JOIN DATEIEN d ON d.ID = p.ID "
    "WHERE p.CROPFACTOR IS NOT NULL GROUP BY d.MAKER, d.MODEL) "
    "UPDATE PHOTOINFO SET FOCALLENGTH35 = (SELECT d.FOCALLENGTH * c.CROP FROM DATEIEN d "
    "JOIN LearnedCrop c ON c.MAKER = d.MAKER AND c.MODEL = d.MODEL "
    "WHERE d.ID = PHOTOINFO.ID AND d.FOCALLENGTH > 0) WHERE FOCALLENGTH35 IS NULL");

// Makes read statements take no table read locks in shared-cache mode. Without it a SELECT on the
// main connection (a chart refresh during a scan) makes the worker's INSERT fail with "database
// table is locked", and that photo's row is lost.
inline const QString readUncommittedPragma = QStringLiteral("PRAGMA read_uncommitted = 1");

// The database lives in memory and is never rolled back: each statement of the application is one
// INSERT, which fails before it writes anything, or emptying the table, or building or dropping an
// index. A rollback journal would only copy pages: emptying the table would first copy the whole
// database into it (the memory peak of a scan), and every INSERT the pages it changes.
inline const QString journalOffPragma = QStringLiteral("PRAGMA journal_mode = OFF");

// Pages of 16 KiB instead of SQLite's 4 KiB. The database lives in memory, where each page costs
// a few hundred bytes of bookkeeping beside its contents, and a page is the unit a statistic
// index grows by: fewer, larger pages hold the same rows in less memory. It takes effect only
// before the first table is created.
inline const QString pageSizePragma = QStringLiteral("PRAGMA page_size = 16384");

// Adds a connection of the photo database under the given name (not opened). An existing
// connection of that name is replaced, with Qt's warning about the duplicate name.
QSqlDatabase addConnection(const QString &name);

// Adds and opens the main connection, switches it to read-uncommitted, turns the journal off, sets
// the page size and creates the tables.
// False when the database cannot be opened or the table cannot be created.
bool openMainConnection(QSqlDatabase &db);

// Empties the tables and drops every index made for the statistics; the AUTOINCREMENT counter
// goes on, so later ids continue after the old ones.
void clear(QSqlDatabase &db);

// Indexes on the columns the statistics group by, so that a chart refresh reads counts off an
// index instead of sorting the whole table once per chart. Kept up to date row by row they would
// slow every INSERT of a scan several times over; so the worker builds them once, when its rows
// are in, and emptying the table drops them again. The results of the statistics don't change.
inline const QStringList statisticIndexStatements {
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatMakerModel ON DATEIEN (MAKER, MODEL)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatLens ON DATEIEN (LENS)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatFocalLength ON DATEIEN (FOCALLENGTH)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatIso ON DATEIEN (ISO)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatFNumber ON DATEIEN (FNUMBER)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatExpTime ON DATEIEN (EXPTIME, EXPTIMESTRING)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatMeteringMode ON DATEIEN (METERINGMODE)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatExposureMode ON DATEIEN (EXPOSUREMODE)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatDay ON DATEIEN (substr(DATE, 1, 11))"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatFocalLength35 ON PHOTOINFO "
                   "(CAST(round(FOCALLENGTH35) AS INTEGER))"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatHour ON PHOTOINFO (HOUR)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatWeekday ON PHOTOINFO (WEEKDAY)"),
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatFileType ON PHOTOINFO (FILETYPE)"),
};

// The date chart's photos per day. A date text converts to a QDate by its first eleven
// characters alone (the date and the one after it, which must be no digit), so counting per
// eleven-character prefix gives the counts of converting every row's text.
inline const QString photosPerDayStatement =
    QStringLiteral("SELECT substr(Date, 1, 11), count(*) FROM Dateien GROUP BY 1");

// Fills in what can only be known once every photo of a scan is in: the 35 mm focal lengths
// learned from other photos of the same camera model.
void completeScan(QSqlDatabase &db);

// Builds the statistic indexes and the further ones given (CREATE INDEX statements; empty ones are
// passed over). One that cannot be built (the table locked by a reader) only makes the next chart
// refresh slower.
void createStatisticIndexes(QSqlDatabase &db, const QStringList &moreStatements = {});

// How long an INSERT waits at most for another connection's table lock to go away.
inline constexpr int lockedRetryLimitMs = 2000;

enum class InsertAttempt { Stored, Locked, Failed };

// Runs an insert attempt. While it fails because another connection of the shared cache holds a
// lock on the table (SQLITE_LOCKED), it is tried again for up to lockedRetryLimitMs, unless the
// current thread is asked to stop meanwhile. Returns whether the row was stored.
bool insertRetryingWhileLocked(const std::function<InsertAttempt()> &attempt);

// Called on the inserting thread each time an INSERT has been refused for a table lock and is
// about to be tried again; an empty function (the default) does nothing. Tests use it to let the
// lock go at exactly that point instead of hoping that one thread outruns another. Set it while
// no scan runs.
void setLockedRetryHook(std::function<void()> hook);

// Executes a prepared INSERT, retried as above.
bool execInsert(QSqlQuery &insert);

// True when the query's last error is SQLITE_LOCKED (plain or extended code).
bool failedOnTableLock(const QSqlQuery &query);

} // namespace PhotoDatabase
