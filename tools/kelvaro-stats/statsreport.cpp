#include "statsreport.h"

#include "csvfield.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

QString StatsReport::text() const
{
    QString out = QStringLiteral("Photos: %1\n").arg(photos);
    if (!filter.isEmpty())
        out += QStringLiteral("Showing: %1 (%2)\n").arg(shown).arg(filter);
    if (pairsMerged > 0)
        out += QStringLiteral("RAW+JPEG pairs merged: %1\n").arg(pairsMerged);
    for (const Table &table : tables) {
        qsizetype valueWidth = 5;
        qsizetype countWidth = 5;
        for (const StatisticRow &row : table.rows) {
            valueWidth = std::max(valueWidth, row.value.size());
            countWidth = std::max(countWidth, QString::number(row.count).size());
        }
        out += QLatin1Char('\n') + table.title + QLatin1Char('\n');
        out += QStringLiteral("Value").leftJustified(valueWidth) + QStringLiteral("  ")
            + QStringLiteral("Count").rightJustified(countWidth) + QLatin1Char('\n');
        for (const StatisticRow &row : table.rows)
            out += row.value.leftJustified(valueWidth) + QStringLiteral("  ")
                + QString::number(row.count).rightJustified(countWidth) + QLatin1Char('\n');
    }
    return out;
}

QString StatsReport::csv() const
{
    QString out = QStringLiteral("statistic;value;count\n");
    for (const Table &table : tables) {
        for (const StatisticRow &row : table.rows)
            out += csvField(table.title) + QLatin1Char(';') + csvField(row.value) + QLatin1Char(';')
                + QString::number(row.count) + QLatin1Char('\n');
    }
    return out;
}

QString StatsReport::json() const
{
    QJsonObject statistics;
    for (const Table &table : tables) {
        QJsonArray rows;
        for (const StatisticRow &row : table.rows)
            rows.append(QJsonObject { { QStringLiteral("value"), row.value },
                                      { QStringLiteral("count"), row.count } });
        statistics.insert(table.title, rows);
    }
    QJsonObject root { { QStringLiteral("photos"), photos },
                       { QStringLiteral("statistics"), statistics } };
    if (!filter.isEmpty()) {
        root.insert(QStringLiteral("filter"), filter);
        root.insert(QStringLiteral("shown"), shown);
        root.insert(QStringLiteral("pairsMerged"), pairsMerged);
    }
    return QString::fromUtf8(QJsonDocument(root).toJson(QJsonDocument::Indented));
}
