#include "rangegroupcontroller.h"

#include "rangegroups.h"

#include <QPieSeries>
#include <QPieSlice>

RangeGroupController::RangeGroupController(const Statistic &statistic, QSqlDatabase &db,
                                           QChartView *chartView, QTableView *tableView,
                                           TChartSettings &settings, QList<QString> ranges,
                                           QObject *parent, const PhotoSelection &selection,
                                           const ComparedPeriods &comparison)
    : ChartController(db, chartView, tableView, settings, parent, selection, comparison)
    , statistic(statistic)
    , ranges(ranges)
{
    Q_ASSERT(statistic.rangeGroups);
    refreshChart();
}

void RangeGroupController::prepareData()
{
    runStatistic(prepareSelectStatement(), statistic.headers);
}

QString RangeGroupController::prepareSelectStatement()
{
    ranges = statistic.effectiveRanges(ranges);
    return statistic.selectStatement(ranges);
}

QList<QString> RangeGroupController::createCategories()
{
    QList<QString> categories;
    for (const QString &key : ChartController::createCategories())
        categories.append(RangeGroups::displayText(key, statistic.rangeGroups->unit,
                                                   statistic.rangeGroups->rangeNames));
    return categories;
}

// The legend shows the ranges without a unit; the base then moves them to the legend and puts
// the shares on the slices.
void RangeGroupController::createPieChartLegendeUndLabels(QPieSeries *series)
{
    const auto slices = series->slices();
    for (QPieSlice *slice : slices)
        slice->setLabel(
            RangeGroups::displayText(slice->label(), QString(), statistic.rangeGroups->rangeNames));
    ChartController::createPieChartLegendeUndLabels(series);
}
