#include "statisticcontroller.h"

StatisticController::StatisticController(const Statistic &statistic, QObject *parent)
    : ChartController(parent)
    , statistic(statistic)
{ }

StatisticController::StatisticController(const Statistic &statistic, QSqlDatabase &db,
                                         QChartView *chartView, QTableView *tableView,
                                         TChartSettings &settings, QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
    , statistic(statistic)
{
    refreshChart();
}

void StatisticController::prepareData()
{
    runStatistic(statistic.statement, statistic.headers);
}
