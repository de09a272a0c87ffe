#pragma once

#include "photorowinserter.h"

#include <QSqlQuery>

// The INSERT as a QSqlQuery with named bindings. Portable, but Qt finds every named placeholder
// through a hash of its name, which costs about as much as SQLite's insert of the row.
class QueryRowInserter : public PhotoRowInserter
{
public:
    // The INSERT into DATEIEN, or the given one with its placeholders.
    explicit QueryRowInserter(const QSqlDatabase &db, const Target &target = photoRows());

    bool insert(const QVariantList &values) override;

private:
    QSqlQuery statement;
    QStringList placeholders;
};
