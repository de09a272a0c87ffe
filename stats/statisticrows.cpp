#include "statisticrows.h"

#include "namerules.h"
#include "photodate.h"

#include <QDate>
#include <QMap>
#include <QSqlError>
#include <QSqlQuery>

namespace {

const QString withoutDate = QStringLiteral("n.a.");

// The date statement counts per 11-character prefix; several prefixes can name one day.
QList<StatisticRow> perDay(QSqlQuery &query)
{
    QMap<QDate, qint64> days;
    qint64 undated = 0;
    while (query.next()) {
        const QDate day = PhotoDate::date(query.value(0).toString());
        const qint64 count = query.value(1).toLongLong();
        if (day.isValid())
            days[day] += count;
        else
            undated += count;
    }
    QList<StatisticRow> rows;
    for (auto it = days.cbegin(); it != days.cend(); ++it)
        rows.append({ it.key().toString(Qt::ISODate), it.value() });
    if (undated > 0)
        rows.append({ withoutDate, undated });
    return rows;
}

} // namespace

bool readStatisticRows(const Statistic &statistic, const QSqlDatabase &db,
                       const QList<QString> &ranges, QList<StatisticRow> &rows, QString *error)
{
    return readStatisticRows(statistic, db, ranges, PhotoSelection(), rows, error);
}

bool readStatisticRows(const Statistic &statistic, const QSqlDatabase &db,
                       const QList<QString> &ranges, const PhotoSelection &selection,
                       QList<StatisticRow> &rows, QString *error)
{
    rows.clear();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    if (!selection
             .apply(NameRulesSql::apply(statistic.selectStatement(ranges), NameRulesSql::active()))
             .exec(query)) {
        if (error)
            *error = query.lastError().text();
        return false;
    }
    if (statistic.shape == Statistic::Shape::DayCounts) {
        rows = perDay(query);
        return true;
    }
    while (query.next())
        rows.append({ query.value(statistic.valueColumn()).toString(),
                      query.value(statistic.countColumn()).toLongLong() });
    return true;
}

bool readFieldValues(const PhotoFilterField &field, const QSqlDatabase &db,
                     const PhotoSelection &selection, QList<StatisticRow> &rows, QString *error)
{
    rows.clear();
    QSqlQuery query(db);
    query.setForwardOnly(true);
    const BoundStatement statement = selection.apply(
        NameRulesSql::apply(QStringLiteral("SELECT %1, count(*) FROM %2 GROUP BY 1 ORDER BY 1")
                                .arg(field.column, field.table),
                            selection.filter().nameRules()));
    if (!statement.exec(query)) {
        if (error)
            *error = query.lastError().text();
        return false;
    }
    while (query.next())
        rows.append({ query.value(0).toString(), query.value(1).toLongLong() });
    return true;
}
