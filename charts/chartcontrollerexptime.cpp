#include "chartcontrollerexptime.h"

#include <QBarSeries>
#include <QHorizontalBarSeries>
#include <QLegend>
#include <QPieSeries>
#include <QSqlQueryModel>
#include <QValueAxis>

ChartControllerExpTime::ChartControllerExpTime(const Statistic &statistic, QObject *parent)
    : ChartController(parent)
    , statistic(statistic)
{ }

ChartControllerExpTime::ChartControllerExpTime(const Statistic &statistic, QSqlDatabase &db,
                                               QChartView *chartView, QTableView *tableView,
                                               TChartSettings &settings, QObject *parent,
                                               const PhotoSelection &selection,
                                               const ComparedPeriods &comparison)
    : ChartController(db, chartView, tableView, settings, parent, selection, comparison)
    , statistic(statistic)
{
    refreshChart();
}

void ChartControllerExpTime::prepareData()
{
    runStatistic(statistic.statement, statistic.headers);
}

void ChartControllerExpTime::showBarChart_V()
{
    drawBars(new QBarSeries, Qt::AlignBottom, Qt::AlignLeft, chartSettings.wantsValueLabels);
}

void ChartControllerExpTime::showBarChart_H()
{
    drawBars(new QHorizontalBarSeries, Qt::AlignLeft, Qt::AlignBottom, false);
}

void ChartControllerExpTime::showPieChart()
{
    drawPie(0);
}

void ChartControllerExpTime::showDonutChart()
{
    drawPie(0.35);
}

// The display texts ("1/250") name the bars, not the numbers they were sorted by.
QList<QString> ChartControllerExpTime::createCategories()
{
    QList<QString> categories;
    const QAbstractItemModel *rows = model ? chartRows() : nullptr;
    const int rowCount = rows ? rows->rowCount() : 0;
    categories.reserve(rowCount);
    for (int row = 0; row < rowCount; ++row)
        categories.append(rows->data(rows->index(row, statistic.valueColumn())).toString());
    return categories;
}

void ChartControllerExpTime::beginChart()
{
    chart = new QChart;
    chart->setAnimationOptions(QChart::AllAnimations);
}

void ChartControllerExpTime::drawBars(QAbstractBarSeries *series, Qt::Alignment categorySide,
                                      Qt::Alignment valueSide, bool valueLabels)
{
    beginChart();
    mapBarSets(series, statistic.countColumn(), lastCountColumn());
    chart->addSeries(series);
    addBarAxes(series, categorySide, valueSide)->setTitleText(QStringLiteral("#Files"));
    series->setLabelsVisible(valueLabels);
    if (valueLabels)
        series->setLabelsFormat("@value");
    showHoverTexts(series);
    applyTitleAndLegend();
    finishChart();
}

void ChartControllerExpTime::drawPie(qreal holeSize)
{
    beginChart();
    auto *series = new QPieSeries;
    if (holeSize > 0)
        series->setHoleSize(holeSize);
    mapSlices(series, statistic.valueColumn(), statistic.countColumn());
    chart->addSeries(series);
    applyTitleAndLegend();
    ChartController::createPieChartLegendeUndLabels(series);
    series->setLabelsVisible(chartSettings.wantsValueLabels);
    showHoverTexts(series);
    finishChart();
}

void ChartControllerExpTime::applyTitleAndLegend()
{
    verarbeiteTitleSettings();
    QLegend *legend = chart->legend();
    if (showsLegend()) {
        legend->setAlignment(Qt::Alignment(chartSettings.chartLegendPos));
        legend->show();
    } else {
        legend->hide();
    }
}

void ChartControllerExpTime::finishChart()
{
    chart->setTheme(QChart::ChartTheme(chartSettings.chartTheme));
    showChart();
}
