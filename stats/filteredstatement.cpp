#include "filteredstatement.h"

#include "rawjpegpairs.h"

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
    if (photoFilter.pairsOnce)
        appendCondition(
            condition,
            { QStringLiteral("ID NOT IN (SELECT ID FROM %1)").arg(RawJpegPairs::companionsTable),
              {} });
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
