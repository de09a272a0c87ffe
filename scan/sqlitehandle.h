#pragma once

#include <QSqlDatabase>

struct sqlite3;

// The SQLite handle under an open connection of Qt's SQLite driver, or null (closed, or another
// driver). Only usable where the driver links the same shared SQLite library as the application.
sqlite3 *sqliteHandleOf(const QSqlDatabase &db);
