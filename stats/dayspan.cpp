#include "dayspan.h"

#include "statisticrows.h"

DaySpan DaySpan::plausible(const QDate &today)
{
    return { QDate(1990, 1, 1), today };
}

QMap<QDate, qint64> photosPerDay(const QList<StatisticRow> &rows)
{
    QMap<QDate, qint64> days;
    for (const StatisticRow &row : rows) {
        const QDate day = QDate::fromString(row.value, Qt::ISODate);
        if (day.isValid())
            days[day] += row.count;
    }
    return days;
}

qint64 photosOutside(const QMap<QDate, qint64> &days, const DaySpan &span)
{
    qint64 outside = 0;
    for (auto it = days.cbegin(); it != days.cend(); ++it) {
        if (!span.contains(it.key()))
            outside += it.value();
    }
    return outside;
}

QMap<QDate, qint64> daysWithin(const QMap<QDate, qint64> &days, const DaySpan &span)
{
    QMap<QDate, qint64> within;
    for (auto it = days.cbegin(); it != days.cend(); ++it) {
        if (span.contains(it.key()))
            within.insert(it.key(), it.value());
    }
    return within;
}
