#pragma once

#include <QObject>
#include <QSqlDatabase>

// Two periods side by side: period B as the filter over other days, the span that meets both, the
// pairing of the periods' rows in the statement's own order, and whole statistics of two periods
// over a photo table filled by the test, an empty period among them.
class tst_PeriodComparison : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void periodBKeepsTheFiltersValues();
    void spanMeetsBothPeriods_data();
    void spanMeetsBothPeriods();
    void rowsSideBySide_data();
    void rowsSideBySide();
    void coveredWhenEveryRowOfBIsInA_data();
    void coveredWhenEveryRowOfBIsInA();
    void statisticsOfTwoPeriods_data();
    void statisticsOfTwoPeriods();
    void emptyPeriodCountsNothing();
    void inactiveComparisonSelectsNothing();

private:
    bool addPhoto(const QString &maker, const QString &lens, const QString &date,
                  const QString &path);
    QSqlDatabase db;
};
