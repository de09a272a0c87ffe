#pragma once

#include "statisticrows.h"

#include <QList>
#include <QString>

// The statistics of one scan as kelvaro-stats prints them.
struct StatsReport
{
    struct Table
    {
        QString title; // the statistic's tab title
        QList<StatisticRow> rows;
    };

    qint64 photos = 0;
    QList<Table> tables;

    // Aligned tables for people: each statistic's title, then its rows, value and count.
    QString text() const;
    // "statistic;value;count", then a line per row; fields holding ';', '"' or a line break are
    // quoted, with '"' doubled.
    QString csv() const;
    // {"photos": N, "statistics": {"Maker": [{"value": "Canon", "count": 140}, ...], ...}}
    QString json() const;
};
