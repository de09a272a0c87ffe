#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

// A statistic whose rows are photo counts per range of one numeric column: the user's ranges
// ("24-70") become one SQL case expression (see RangeGroups).
struct RangeGroupColumn
{
    QString column; // the SQL expression the ranges compare
    QString table; // the table the statement counts
    QString unit; // after a range's text in the chart ("24-70mm"); may be empty
    QString indexName; // the index a scan builds for the ranges' case expression
    QString settingsKey; // under "OtherSettings": the user's ranges
    QList<QString> defaultRanges; // used while the user's list is empty
    // The key of the photos without a value, which then count apart from 'Others'; empty when the
    // column always holds one.
    QString unknownKey;
    // Readable names of some ranges ("wide (24–34 mm)" for "24-34"), for the chart.
    QList<QPair<QString, QString>> rangeNames;
};

// What one statistic is: its names, where its chart's look is stored and the statement whose rows
// are the statistic's table. How it is drawn is attached by the window and the charts.
struct Statistic
{
    // The columns of the statement's rows.
    enum class Shape {
        ValueCount, // the value, its count
        ValueTextCount, // a value to sort by, its display text, the count (exposure times)
        DayCounts, // an 11-character date prefix and its count, merged per calendar day
    };

    QString key; // stable name, used in code and in "View" settings
    QString tabTitle; // the tab's text; also the statistic's name in kelvaro-stats
    QString chartName; // in the chart settings dialog's title "Settings for '<name>' Chart"
    QString defaultChartTitle; // the chart title before the user sets one
    QString settingsPrefix; // of the chart settings' keys in "ChartSettings"
    QString widgetName; // the tab's widgets are "tab", "splitter", "tableView", "chartView" + this
    QString statement; // empty for range groups, whose statement follows the ranges
    QStringList headers; // the table's column headers
    Shape shape = Shape::ValueCount;
    std::optional<RangeGroupColumn> rangeGroups;
    // The SQL expression over rowTable whose value is the first column of the statement's rows:
    // a row picked by the user selects the photos whose expression "IS" the row's value (so a
    // row without a value picks the photos without one). Empty where a filter field serves
    // (maker, model, lens, file type) and for the date statistic; range groups compute theirs.
    QString rowValue;
    QString rowTable;

    // The statement for these ranges (range groups; the defaults when empty); others ignore them.
    QString selectStatement(const QList<QString> &ranges = {}) const;
    // The CREATE INDEX statement that serves selectStatement(ranges); empty when there is none.
    QString rangeIndexStatement(const QList<QString> &ranges = {}) const;
    // The ranges in effect for a user's list.
    QList<QString> effectiveRanges(const QList<QString> &ranges) const;
    // rowValue, or the ranges' case expression for range groups; empty when rows can't be picked.
    QString rowValueExpression(const QList<QString> &ranges = {}) const;
    QString rowValueTable() const { return rangeGroups ? rangeGroups->table : rowTable; }
    // The columns of the statement's rows that hold the value shown and the count.
    int valueColumn() const { return shape == Shape::ValueTextCount ? 1 : 0; }
    int countColumn() const { return shape == Shape::ValueTextCount ? 2 : 1; }
};

// Every statistic of the program, in the order of their tabs.
namespace Statistics {

const QList<Statistic> &all();
// The statistic of that key; null for an unknown key.
const Statistic *byKey(const QString &key);
// The statistic of that tab title, compared without regard to case; null when none has it.
const Statistic *byTitle(const QString &title);

// Keys used by code that treats a statistic in its own way.
inline const QString focalLengthGrouped = QStringLiteral("focalLengthGrouped");
inline const QString isoGrouped = QStringLiteral("isoGrouped");
inline const QString focalLength35Grouped = QStringLiteral("focalLength35Grouped");
inline const QString dateOriginal = QStringLiteral("dateOriginal");

} // namespace Statistics
