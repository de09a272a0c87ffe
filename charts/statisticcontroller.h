#pragma once

#include "chartcontroller.h"
#include "statistic.h"

// Photos per value of one statistic whose statement gives a value and its count (maker, lens,
// ISO, weekday, ...): the table shows the rows, the chart one bar or slice per row.
class StatisticController : public ChartController
{
    Q_OBJECT

public:
    // Without database and views: a refresh draws nothing anywhere.
    explicit StatisticController(const Statistic &statistic, QObject *parent = nullptr);
    StatisticController(const Statistic &statistic, QSqlDatabase &db, QChartView *chartView,
                        QTableView *tableView, TChartSettings &settings, QObject *parent,
                        const PhotoSelection &selection = PhotoSelection(),
                        const ComparedPeriods &comparison = ComparedPeriods());

    void prepareData() override;

private:
    const Statistic statistic;
};
