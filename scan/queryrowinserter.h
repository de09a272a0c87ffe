#pragma once

#include "photorowinserter.h"

#include <QSqlQuery>

// The INSERT as a QSqlQuery with named bindings. Portable, but Qt finds every named placeholder
// through a hash of its name, which costs about as much as SQLite's insert of the row.
class QueryRowInserter : public PhotoRowInserter
{
public:
    explicit QueryRowInserter(const QSqlDatabase &db);

    bool insert(const QVariantList &values) override;

private:
    QSqlQuery statement;
};
