#include "sqliterowinserter.h"

#include "photodatabase.h"
#include "sqlitehandle.h"

#include <sqlite3.h>

SqliteRowInserter::SqliteRowInserter(const QSqlDatabase &db, const Target &target)
    : parameters(target.placeholders.size(), 0)
{
    sqlite3 *const connection = sqliteHandleOf(db);
    if (!connection)
        return;
    const QByteArray sql = target.statement.toUtf8();
    // Prepared like Qt's driver does it; a statement that cannot be prepared (no table) stays
    // null and every insert fails, as with an unprepared QSqlQuery.
    if (sqlite3_prepare_v2(connection, sql.constData(), int(sql.size()) + 1, &statement, nullptr)
        != SQLITE_OK) {
        sqlite3_finalize(statement);
        statement = nullptr;
        return;
    }
    for (qsizetype i = 0; i < parameters.size(); ++i)
        parameters[i] =
            sqlite3_bind_parameter_index(statement, target.placeholders.at(i).toUtf8().constData());
}

SqliteRowInserter::~SqliteRowInserter()
{
    sqlite3_finalize(statement);
}

bool SqliteRowInserter::bind(int index, const QVariant &value)
{
    switch (value.metaType().id()) {
    case QMetaType::UnknownType: // an unknown value, as QVariant() binds it through Qt
        return sqlite3_bind_null(statement, index) == SQLITE_OK;
    case QMetaType::QString: {
        const QString &text = *static_cast<const QString *>(value.constData());
        if (text.isNull())
            return sqlite3_bind_null(statement, index) == SQLITE_OK;
        // The value outlives the step, so SQLite need not copy it.
        return sqlite3_bind_text16(statement, index, text.utf16(), int(text.size() * 2),
                                   SQLITE_STATIC)
            == SQLITE_OK;
    }
    case QMetaType::Double:
        return sqlite3_bind_double(statement, index, value.toDouble()) == SQLITE_OK;
    case QMetaType::Int:
        return sqlite3_bind_int(statement, index, value.toInt()) == SQLITE_OK;
    default:
        return false;
    }
}

bool SqliteRowInserter::insert(const QVariantList &values)
{
    Q_ASSERT(values.size() == parameters.size());
    if (!statement)
        return false;
    for (qsizetype i = 0; i < parameters.size(); ++i) {
        if (parameters[i] != 0 && !bind(parameters[i], values.at(i)))
            return false;
    }
    const bool stored = PhotoDatabase::insertRetryingWhileLocked([this] {
        const int result = sqlite3_step(statement);
        // Without the reset the statement would keep the table's lock.
        sqlite3_reset(statement);
        if (result == SQLITE_DONE)
            return PhotoDatabase::InsertAttempt::Stored;
        return (result & 0xff) == SQLITE_LOCKED ? PhotoDatabase::InsertAttempt::Locked
                                                : PhotoDatabase::InsertAttempt::Failed;
    });
    return stored;
}
