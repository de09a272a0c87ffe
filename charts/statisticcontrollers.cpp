#include "statisticcontrollers.h"

#include "chartcontrollerexptime.h"
#include "rangegroupcontroller.h"
#include "statisticcontroller.h"

ChartController *createStatisticController(const Statistic &statistic, QSqlDatabase &db,
                                           QChartView *chartView, QTableView *tableView,
                                           TChartSettings &settings, const QList<QString> &ranges,
                                           QObject *parent, const PhotoSelection &selection,
                                           const ComparedPeriods &comparison)
{
    if (statistic.rangeGroups)
        return new RangeGroupController(statistic, db, chartView, tableView, settings, ranges,
                                        parent, selection, comparison);
    switch (statistic.shape) {
    case Statistic::Shape::ValueCount:
        return new StatisticController(statistic, db, chartView, tableView, settings, parent,
                                       selection, comparison);
    case Statistic::Shape::ValueTextCount:
        return new ChartControllerExpTime(statistic, db, chartView, tableView, settings, parent,
                                          selection, comparison);
    case Statistic::Shape::DayCounts:
        break;
    }
    return nullptr;
}
