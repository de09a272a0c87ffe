#include "filteredstatement.h"

#include "rawjpegpairs.h"
#include "statistic.h"

#include <QSqlQuery>

namespace {

const QString photoTable = QStringLiteral("DATEIEN");
const QString infoTable = QStringLiteral("PHOTOINFO");

QString placeholders(qsizetype count)
{
    QStringList marks;
    for (qsizetype i = 0; i < count; ++i)
        marks << QStringLiteral("?");
    return marks.join(QStringLiteral(", "));
}

// "a AND b", values in the same order.
void appendCondition(BoundStatement &into, const BoundStatement &condition)
{
    if (condition.text.isEmpty())
        return;
    if (!into.text.isEmpty())
        into.text += QStringLiteral(" AND ");
    into.text += condition.text;
    into.values += condition.values;
}

} // namespace

bool BoundStatement::exec(QSqlQuery &query) const
{
    if (!query.prepare(text))
        return false;
    for (const QVariant &value : values)
        query.addBindValue(value);
    return query.exec();
}

StatementFilter::StatementFilter(const PhotoFilter &filter, ColumnExpressions columnExpressions,
                                 NameRules nameRules)
    : photoFilter(filter)
    , columns(std::move(columnExpressions))
    , names(std::move(nameRules))
{ }

QString StatementFilter::columnExpression(const QString &column) const
{
    return columns.value(column, column);
}

BoundStatement StatementFilter::photoCondition(const QString &dayTable) const
{
    BoundStatement condition;
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        const QStringList &values = photoFilter.*field.values;
        if (field.table != photoTable || values.isEmpty())
            continue;
        appendCondition(condition,
                        { QStringLiteral("%1 IN (%2)")
                              .arg(columnExpression(field.column), placeholders(values.size())),
                          QVariantList(values.cbegin(), values.cend()) });
    }
    appendCondition(condition, pickedRowsCondition(photoTable));
    if (photoFilter.hasDateRange())
        appendCondition(condition,
                        { QStringLiteral("substr(%1, 1, 11) IN (SELECT DAY FROM %2)")
                              .arg(columnExpression(QStringLiteral("DATE")), dayTable),
                          {} });
    return condition;
}

BoundStatement StatementFilter::infoCondition() const
{
    BoundStatement condition;
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        const QStringList &values = photoFilter.*field.values;
        if (field.table != infoTable || values.isEmpty())
            continue;
        appendCondition(
            condition,
            { QStringLiteral("%1 IN (%2)").arg(field.column, placeholders(values.size())),
              QVariantList(values.cbegin(), values.cend()) });
    }
    appendCondition(condition, pickedRowsCondition(infoTable));
    if (photoFilter.pairsOnce)
        appendCondition(
            condition,
            { QStringLiteral("ID NOT IN (SELECT ID FROM %1)").arg(RawJpegPairs::companionsTable),
              {} });
    return condition;
}

// The row's value is bound, never written into the statement; "IS" lets a row without a value
// pick the photos without one. Rows of one statistic widen the filter, as the values of a list
// do; rows of different statistics narrow it.
BoundStatement StatementFilter::pickedRowsCondition(const QString &table) const
{
    QStringList statistics;
    for (const PickedRow &row : photoFilter.pickedRows) {
        if (!statistics.contains(row.statistic))
            statistics << row.statistic;
    }
    BoundStatement condition;
    for (const QString &key : std::as_const(statistics)) {
        const Statistic *statistic = Statistics::byKey(key);
        const QString countedTable = statistic ? statistic->rowValueTable() : photoTable;
        if (countedTable.compare(table, Qt::CaseInsensitive) != 0)
            continue;
        BoundStatement anyRow;
        QStringList alternatives;
        for (const PickedRow &row : photoFilter.pickedRows) {
            const QString expression =
                statistic ? statistic->rowValueExpression(row.ranges) : QString();
            // A statistic unknown to this program picks no photo rather than every photo.
            if (row.statistic != key || expression.isEmpty())
                continue;
            alternatives << QStringLiteral("(%1) IS ?").arg(expression);
            anyRow.values << row.value;
        }
        anyRow.text = alternatives.isEmpty()
            ? QStringLiteral("0")
            : QStringLiteral("(%1)").arg(alternatives.join(QStringLiteral(" OR ")));
        appendCondition(condition, anyRow);
    }
    return condition;
}

BoundStatement StatementFilter::matchingIds(const QString &dayTable) const
{
    BoundStatement condition = photoCondition(dayTable);
    const BoundStatement info = infoCondition();
    if (!info.text.isEmpty())
        appendCondition(
            condition,
            { QStringLiteral("ID IN (SELECT ID FROM PHOTOINFO WHERE %1)").arg(info.text),
              info.values });
    BoundStatement select { QStringLiteral("SELECT ID FROM DATEIEN"), {} };
    if (!condition.text.isEmpty()) {
        select.text += QStringLiteral(" WHERE ") + condition.text;
        select.values = condition.values;
    }
    select.text = NameRulesSql::apply(select.text, names);
    return select;
}
