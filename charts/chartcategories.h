#pragma once

#include <QList>
#include <QString>
#include <QStringList>

class QFont;

// What a chart makes of a statistic with many values: which rows it draws, the one bar or slice
// that sums the rest, labels that fit and the text a hovered bar or slice shows. The table beside
// the chart keeps every row.
namespace ChartCategories {

// Longer labels are shortened in the middle to this many characters.
inline constexpr int longestLabel = 26;

struct Selection
{
    QList<int> keptRows; // the rows drawn, in the statistic's own order
    int othersValues = 0; // how many rows the "Others" bar sums; 0 when every row is drawn
    qint64 othersCount = 0; // the photos of those rows
};

// The `limit` rows with the largest counts, in their own order, and the sum of the rest. Of rows
// with equal counts at the cut the earlier ones are kept. A limit below 1 counts as 1.
Selection select(const QList<qint64> &counts, int limit);

// The label of the bar or slice that sums `values` rows.
QString othersLabel(int values);

// The text unchanged when it has at most `length` characters, else its beginning and end around
// "…", two thirds of the room for the beginning, `length` characters in all.
QString shortenInMiddle(const QString &text, int length = longestLabel);

// Every text shortened in the middle; a shortened text that another one already became keeps a
// character more, until it is unique or whole, as a category axis drops repeated labels.
QStringList shortenLabels(const QStringList &texts, int length = longestLabel);

// Whether labels side by side along a chart `width` pixels wide would not fit into their share
// of it and should be drawn upright.
bool needUprightLabels(const QStringList &labels, const QFont &font, int width);

// What hovering a bar or slice shows: the full label, its count and its share of `total`.
QString hoverText(const QString &label, qint64 count, qint64 total);

} // namespace ChartCategories
