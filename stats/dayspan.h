#pragma once

#include <QDate>
#include <QList>
#include <QMap>

struct StatisticRow;

// The capture dates a camera with an unset or wrong clock writes (1970, 0000, dates to come) say
// nothing about when a photo was taken. Dates before 1990 or after today count as implausible.
struct DaySpan
{
    QDate first; // invalid: no lower bound
    QDate last; // invalid: no upper bound

    bool contains(const QDate &day) const
    {
        return (!first.isValid() || day >= first) && (!last.isValid() || day <= last);
    }

    // Every day from 1990-01-01 to `today`.
    static DaySpan plausible(const QDate &today);
};

// The photos per calendar day from the date statistic's rows ("yyyy-MM-dd" and its count); rows
// without a usable date ("n.a.") are left out.
QMap<QDate, qint64> photosPerDay(const QList<StatisticRow> &rows);

// How many photos of these days lie outside the span.
qint64 photosOutside(const QMap<QDate, qint64> &days, const DaySpan &span);

// The days that lie inside the span.
QMap<QDate, qint64> daysWithin(const QMap<QDate, qint64> &days, const DaySpan &span);
