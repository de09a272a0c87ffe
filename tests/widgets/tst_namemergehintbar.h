#pragma once

#include <QObject>

// The line below a name statistic whose values differ only in blanks or case.
class tst_NameMergeHintBar : public QObject
{
    Q_OBJECT

private slots:
    void showsTheHintAndOffersToMerge();
};
