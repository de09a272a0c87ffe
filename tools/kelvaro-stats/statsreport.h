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
    // Under a filter: what it keeps, and how many photos that are; empty and 0 without one.
    QString filter;
    qint64 shown = 0;
    int pairsMerged = 0; // RAW+JPEG pairs counted once
    QList<Table> tables;

    // Aligned tables for people: "Photos: N" (under a filter followed by "Showing: M (filter)"
    // and the pairs merged), then each statistic's title, then its rows, value and count.
    QString text() const;
    // "statistic;value;count", then a line per row; fields holding ';', '"' or a line break are
    // quoted, with '"' doubled.
    QString csv() const;
    // {"photos": N, "statistics": {"Maker": [{"value": "Canon", "count": 140}, ...], ...}};
    // under a filter also "filter": "Canon, 2021", "shown": M, "pairsMerged": P.
    QString json() const;
};
