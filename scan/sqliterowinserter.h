#pragma once

#include "photorowinserter.h"

#include <QList>

struct sqlite3;
struct sqlite3_stmt;

// The INSERT through SQLite's own interface, on the connection's SQLite handle, with the values
// bound the way Qt's driver binds them (texts as UTF-16, a null text as NULL). It saves Qt's
// per-value placeholder lookup, a third of the cost of storing a photo.
//
// A handle may only be used with the SQLite library that made it; this class is therefore built
// only where Qt's SQLite driver uses the shared system library that the application links too
// (see scan/CMakeLists.txt). Elsewhere QueryRowInserter does the work.
class SqliteRowInserter : public PhotoRowInserter
{
public:
    // The INSERT into DATEIEN, or the given one with its placeholders.
    explicit SqliteRowInserter(const QSqlDatabase &db, const Target &target = photoRows());
    ~SqliteRowInserter() override;
    SqliteRowInserter(const SqliteRowInserter &) = delete;
    SqliteRowInserter &operator=(const SqliteRowInserter &) = delete;

    bool insert(const QVariantList &values) override;

private:
    bool bind(int index, const QVariant &value);

    sqlite3_stmt *statement = nullptr;
    // The statement's parameter number per placeholder; 0 where it has none (":datemod").
    QList<int> parameters;
};
