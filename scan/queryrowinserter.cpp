#include "queryrowinserter.h"

#include "photodatabase.h"

QueryRowInserter::QueryRowInserter(const QSqlDatabase &db, const Target &target)
    : statement(db)
    , placeholders(target.placeholders)
{
    statement.prepare(target.statement);
}

bool QueryRowInserter::insert(const QVariantList &values)
{
    Q_ASSERT(values.size() == placeholders.size());
    for (qsizetype i = 0; i < placeholders.size(); ++i)
        statement.bindValue(placeholders.at(i), values.at(i));
    return PhotoDatabase::execInsert(statement);
}
