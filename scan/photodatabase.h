#pragma once

#include <QString>

// The photo database: one in-memory SQLite table, DATEIEN, shared between the main thread's
// connection and the scan worker's through SQLite's shared cache. The URI name together with the
// shared cache makes every connection opened with these options reach the same database.
namespace PhotoDatabase {

inline const QString driver = QStringLiteral("QSQLITE");
inline const QString databaseName = QStringLiteral("file::memory:");
inline const QString connectOptions = QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_ENABLE_SHARED_CACHE");
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

} // namespace PhotoDatabase
