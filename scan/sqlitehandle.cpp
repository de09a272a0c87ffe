#include "sqlitehandle.h"

#include <QSqlDriver>
#include <QVariant>

sqlite3 *sqliteHandleOf(const QSqlDatabase &db)
{
    const QVariant handle = db.isOpen() ? db.driver()->handle() : QVariant();
    if (!handle.isValid() || qstrcmp(handle.typeName(), "sqlite3*") != 0)
        return nullptr;
    return *static_cast<sqlite3 *const *>(handle.constData());
}
