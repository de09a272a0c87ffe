#include "queryrowinserter.h"

#include "photodatabase.h"

QueryRowInserter::QueryRowInserter(const QSqlDatabase &db)
    : statement(db)
{
    statement.prepare(PhotoDatabase::insertStatement);
}

bool QueryRowInserter::insert(const QVariantList &values)
{
    Q_ASSERT(values.size() == placeholders.size());
    for (qsizetype i = 0; i < placeholders.size(); ++i)
        statement.bindValue(placeholders.at(i), values.at(i));
    return PhotoDatabase::execInsert(statement);
}
