#include "chartcategories.h"

#include <QFontMetrics>
#include <QSet>

#include <algorithm>
#include <numeric>

namespace ChartCategories {

Selection select(const QList<qint64> &counts, int limit)
{
    Selection selection;
    limit = std::max(limit, 1);
    QList<int> rows(counts.size());
    std::iota(rows.begin(), rows.end(), 0);
    if (counts.size() > limit) {
        // Stable: among equal counts the earlier row ranks first and so survives the cut.
        std::stable_sort(rows.begin(), rows.end(),
                         [&](int a, int b) { return counts.at(a) > counts.at(b); });
        for (int i = limit; i < rows.size(); ++i)
            selection.othersCount += counts.at(rows.at(i));
        selection.othersValues = int(rows.size()) - limit;
        rows.resize(limit);
        std::sort(rows.begin(), rows.end());
    }
    selection.keptRows = rows;
    return selection;
}

QString othersLabel(int values)
{
    return QStringLiteral("Others (%1 values)").arg(values);
}

QString shortenInMiddle(const QString &text, int length)
{
    if (text.size() <= length || length < 3)
        return text;
    const int room = length - 1;
    const int tail = room / 3;
    return text.left(room - tail) + QChar(0x2026) + text.right(tail);
}

QStringList shortenLabels(const QStringList &texts, int length)
{
    QStringList shortened;
    QSet<QString> used;
    for (const QString &text : texts) {
        QString label = shortenInMiddle(text, length);
        for (int longer = length + 1; used.contains(label) && label != text; ++longer)
            label = shortenInMiddle(text, longer);
        used.insert(label);
        shortened.append(label);
    }
    return shortened;
}

bool needUprightLabels(const QStringList &labels, const QFont &font, int width)
{
    if (labels.isEmpty())
        return false;
    // The plot takes about four fifths of the chart; a label wants a little air on each side.
    const double share = 0.8 * width / labels.size();
    const QFontMetrics metrics(font);
    return std::any_of(labels.cbegin(), labels.cend(), [&](const QString &label) {
        return metrics.horizontalAdvance(label) + 6 > share;
    });
}

QString hoverText(const QString &label, qint64 count, qint64 total)
{
    const double share = total > 0 ? 100.0 * double(count) / double(total) : 0.0;
    return QStringLiteral("%1\n%2 %3, %4 % of %5")
        .arg(label)
        .arg(count)
        .arg(count == 1 ? QStringLiteral("photo") : QStringLiteral("photos"))
        .arg(share, 0, 'f', 1)
        .arg(total);
}

} // namespace ChartCategories
