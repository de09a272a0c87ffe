#pragma once

#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

// A row of a statistic that the user picked (a double-click on it or on its bar or slice): the
// photos counted in that row. Ranges travel with a range group's row, so that it keeps the bounds
// it was picked under.
struct PickedRow
{
    QString statistic; // the statistic's key
    QVariant value; // the row's first column, as the statement gives it
    QStringList ranges; // a range group's ranges; empty for the others
    QString label; // "ISO 800", for the panel and the status line

    bool operator==(const PickedRow &other) const
    {
        return statistic == other.statistic && value == other.value && ranges == other.ranges;
    }
};

// Which photos the statistics count: exact values of maker, model, lens and file type (any value
// where a list is empty), an inclusive range of shooting days (open where a bound is invalid; a
// photo without a usable date matches no range) and whether a raw file's JPEG or HEIF companion
// is left out. An empty filter counts every photo.
struct PhotoFilter
{
    QStringList makers;
    QStringList models;
    QStringList lenses;
    QStringList fileTypes; // as the file-type statistic names them ("CR2", "JPG", "HEIF")
    QDate from;
    QDate to;
    bool pairsOnce = false;
    // Rows picked from statistics without a filter field of their own; a photo must be in each.
    QList<PickedRow> pickedRows;

    bool hasDateRange() const { return from.isValid() || to.isValid(); }
    bool isEmpty() const;
    // What the filter lets through, for the status line and the charts: "Canon, 2021",
    // "Canon, EOS R5, 2021-03-01 – 2021-06-30"; empty for an empty filter.
    QString description() const;
    // The range alone: "2021", "2021-03", "2021-03-01 – 2021-06-30", "from 2021-03-01", "all".
    QString dateRangeText() const;

    bool operator==(const PhotoFilter &other) const;
    bool operator!=(const PhotoFilter &other) const { return !(*this == other); }
};

// The value lists of a filter, in the order the filter panel, the stored settings and the command
// line take them: one row per list, naming the column it compares.
struct PhotoFilterField
{
    QString key; // in the settings store
    QString option; // kelvaro-stats' option ("--maker"); empty where the scan's own one serves
    QString table; // DATEIEN or PHOTOINFO
    QString column;
    QStringList PhotoFilter::*values;
};

namespace PhotoFilterFields {
const QList<PhotoFilterField> &all();
} // namespace PhotoFilterFields
