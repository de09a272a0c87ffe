#pragma once

#include "namerules.h"
#include "photofilter.h"

#include <QHash>
#include <QString>
#include <QVariantList>

class QSqlQuery;

// A statement with the values of its placeholders, in their order. Filter values reach SQLite
// only this way, never as text of the statement.
struct BoundStatement
{
    QString text;
    QVariantList values;

    // Prepares the statement on the query, binds the values and runs it.
    bool exec(QSqlQuery &query) const;
};

// The conditions a filter sets on the two photo tables, as SQL with bound values. Columns can be
// computed (columnExpressions: "MAKER" read as some expression over DATEIEN's own columns, as
// merging names would); the conditions and the statistics then both see the computed value.
class StatementFilter
{
public:
    // DATEIEN's columns by name, each an SQL expression over the table's own columns.
    using ColumnExpressions = QHash<QString, QString>;

    // Under name rules, the filter's names (and the lists of names to pick from) are compared as
    // the statistics count them: "JVC" also keeps the photos of "jvc " when names are merged.
    explicit StatementFilter(const PhotoFilter &filter = {},
                             ColumnExpressions columnExpressions = {}, NameRules nameRules = {});

    const PhotoFilter &filter() const { return photoFilter; }
    const NameRules &nameRules() const { return names; }
    const ColumnExpressions &columnExpressions() const { return columns; }
    // Whether statements must read the tables through a source at all.
    bool changesStatements() const { return !photoFilter.isEmpty() || !columns.isEmpty(); }

    // "SELECT ID FROM DATEIEN WHERE ...": the ids of the photos the filter keeps. A date range is
    // read from dayTable (a table with a column DAY), which holds the date texts' first eleven
    // characters that fall into the range: the statistics read a date by those alone, and the
    // date statistic's index holds them.
    BoundStatement matchingIds(const QString &dayTable) const;

    // The condition on DATEIEN's columns, "" when the filter asks nothing of them.
    BoundStatement photoCondition(const QString &dayTable) const;
    // The condition on PHOTOINFO's columns (file type, a pair's companion), likewise.
    BoundStatement infoCondition() const;

private:
    QString columnExpression(const QString &column) const;
    // The conditions of the picked rows whose statistic counts that table.
    BoundStatement pickedRowsCondition(const QString &table) const;

    PhotoFilter photoFilter;
    ColumnExpressions columns;
    NameRules names;
};
