#pragma once

#include "photoselection.h"
#include "statistic.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>

// One row of a statistic's table: the value as the table shows it and its number of photos.
struct StatisticRow
{
    QString value;
    qint64 count = 0;

    bool operator==(const StatisticRow &other) const
    {
        return value == other.value && count == other.count;
    }
};

// The rows of a statistic over the photo database, in its table's order. Range groups use the
// ranges given (their defaults when empty). The date statistic gives one row per calendar day
// ("yyyy-MM-dd", oldest first), then "n.a." for the photos without a usable date. False (with the
// database's message in error) when the statement fails.
bool readStatisticRows(const Statistic &statistic, const QSqlDatabase &db,
                       const QList<QString> &ranges, QList<StatisticRow> &rows,
                       QString *error = nullptr);
// The same over the photos selected.
bool readStatisticRows(const Statistic &statistic, const QSqlDatabase &db,
                       const QList<QString> &ranges, const PhotoSelection &selection,
                       QList<StatisticRow> &rows, QString *error = nullptr);

// The values of one of the filter's lists present in the photos selected, each with its number
// of photos, in the values' order.
bool readFieldValues(const PhotoFilterField &field, const QSqlDatabase &db,
                     const PhotoSelection &selection, QList<StatisticRow> &rows,
                     QString *error = nullptr);
