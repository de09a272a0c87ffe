#include "chartcontrollerfocleng.h"

#include "rangegroups.h"

#include <QPieSeries>
#include <QPieSlice>

ChartControllerFocLenG::ChartControllerFocLenG(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerFocLenG::ChartControllerFocLenG(QSqlDatabase &db, QChartView *chartView,
                                               QTableView *tableView, TChartSettings &settings,
                                               QList<QString> ranges, QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
    , ranges(ranges)
{
    refreshChart();
}

void ChartControllerFocLenG::prepareData()
{
    runStatistic(prepareSelectStatement(),
                 { QStringLiteral("FocalLength"), QStringLiteral("Count") });
}

QString ChartControllerFocLenG::prepareSelectStatement()
{
    if (ranges.isEmpty())
        ranges = defaultRanges();
    return RangeGroups::selectStatement(QStringLiteral("FocalLength"), ranges);
}

QList<QString> ChartControllerFocLenG::createCategories()
{
    QList<QString> categories;
    for (const QString &key : ChartController::createCategories())
        categories.append(RangeGroups::displayText(key, QStringLiteral("mm")));
    return categories;
}

// The legend shows the ranges without a unit; the base then moves them to the legend and puts
// the shares on the slices.
void ChartControllerFocLenG::createPieChartLegendeUndLabels(QPieSeries *series)
{
    const auto slices = series->slices();
    for (QPieSlice *slice : slices)
        slice->setLabel(RangeGroups::displayText(slice->label(), QString()));
    ChartController::createPieChartLegendeUndLabels(series);
}

QList<QString> ChartControllerFocLenG::defaultRanges()
{
    return { "1-23", "24-70", "71-200", "201-600", "601-1200" };
}

QString ChartControllerFocLenG::rangeIndexStatement(QList<QString> ranges)
{
    if (ranges.isEmpty())
        ranges = defaultRanges();
    return RangeGroups::indexStatement(QStringLiteral("StatFocalLengthGroups"),
                                       QStringLiteral("FocalLength"), ranges);
}
