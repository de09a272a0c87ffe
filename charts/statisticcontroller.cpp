#include "statisticcontroller.h"

StatisticController::StatisticController(const Statistic &statistic, QObject *parent)
    : ChartController(parent)
    , statistic(statistic)
{ }

StatisticController::StatisticController(const Statistic &statistic, QSqlDatabase &db,
                                         QChartView *chartView, QTableView *tableView,
                                         TChartSettings &settings, QObject *parent,
                                         const PhotoSelection &selection,
                                         const ComparedPeriods &comparison)
    : ChartController(db, chartView, tableView, settings, parent, selection, comparison)
    , statistic(statistic)
{
    refreshChart();
}

void StatisticController::prepareData()
{
    runStatistic(statistic.statement, statistic.headers);
}
