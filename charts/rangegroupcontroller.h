#pragma once

#include "chartcontroller.h"
#include "statistic.h"

#include <QList>
#include <QString>

// Photos per range of a statistic's column ("24-70mm"), plus 'Others' for everything outside the
// ranges (and the unknown key for photos without a value, where the statistic has one).
class RangeGroupController : public ChartController
{
    Q_OBJECT

public:
    // The statistic must have range groups; empty ranges mean its defaults.
    RangeGroupController(const Statistic &statistic, QSqlDatabase &db, QChartView *chartView,
                         QTableView *tableView, TChartSettings &settings, QList<QString> ranges,
                         QObject *parent, const PhotoSelection &selection = PhotoSelection(),
                         const ComparedPeriods &comparison = ComparedPeriods());

    void prepareData() override;
    // The statement over the ranges; an empty list is filled with the defaults first.
    QString prepareSelectStatement();

protected:
    QList<QString> createCategories() override;
    void createPieChartLegendeUndLabels(QPieSeries *series) override;

private:
    const Statistic statistic;
    QList<QString> ranges;
};
