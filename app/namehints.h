#pragma once

#include "statistictabs.h"

#include <QList>
#include <QObject>
#include <QSqlDatabase>

class NameMergeHintBar;

// The hint below the tabs of the statistics that count names (maker, model, lens) when some of
// their values differ only in blanks, NULs or case, with the one click that counts them together.
class NameHints : public QObject
{
    Q_OBJECT

public:
    // Adds a hint line to the page of each such statistic's tab.
    NameHints(const QList<StatisticTab> &tabs, QObject *parent);

    // Looks for such values in each statistic's rows as they are counted now; no hint while they
    // are counted together already.
    void refresh(const QSqlDatabase &db, bool countedTogether);

    NameMergeHintBar *hintOf(const QString &statisticKey) const;

    // "3 makers differ only in blanks or case", for the values of that statistic.
    static QString hintText(const QString &statisticKey, const QStringList &values);

signals:
    void mergeRequested();

private:
    struct Hint
    {
        const Statistic *statistic;
        NameMergeHintBar *bar;
    };
    QList<Hint> hints;
};
