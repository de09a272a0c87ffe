#include "chartcontrollerisog.h"

#include "rangegroups.h"

#include <QPieSeries>
#include <QPieSlice>

ChartControllerISOG::ChartControllerISOG(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerISOG::ChartControllerISOG(QSqlDatabase &db, QChartView *chartView,
                                         QTableView *tableView, TChartSettings &settings,
                                         QList<QString> ranges, QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
    , ranges(ranges)
{
    refreshChart();
}

void ChartControllerISOG::prepareData()
{
    runStatistic(prepareSelectStatement(), { QStringLiteral("ISO"), QStringLiteral("Count") });
}

QString ChartControllerISOG::prepareSelectStatement()
{
    if (ranges.isEmpty())
        ranges = defaultRanges();
    return RangeGroups::selectStatement(QStringLiteral("ISO"), ranges);
}

QList<QString> ChartControllerISOG::createCategories()
{
    QList<QString> categories;
    for (const QString &key : ChartController::createCategories())
        categories.append(RangeGroups::displayText(key, QString()));
    return categories;
}

// The legend shows the ranges without a unit; the base then moves them to the legend and puts
// the shares on the slices.
void ChartControllerISOG::createPieChartLegendeUndLabels(QPieSeries *series)
{
    const auto slices = series->slices();
    for (QPieSlice *slice : slices)
        slice->setLabel(RangeGroups::displayText(slice->label(), QString()));
    ChartController::createPieChartLegendeUndLabels(series);
}

QList<QString> ChartControllerISOG::defaultRanges()
{
    return { "1-100", "101-400", "401-1600", "1601-6400", "6401-12800" };
}

QString ChartControllerISOG::rangeIndexStatement(QList<QString> ranges)
{
    if (ranges.isEmpty())
        ranges = defaultRanges();
    return RangeGroups::indexStatement(QStringLiteral("StatIsoGroups"), QStringLiteral("ISO"),
                                       ranges);
}
