#pragma once

#include "chartcontroller.h"
#include "statistic.h"

// Photos per exposure time. The model has three columns (the time in seconds, longest first; its
// display text such as "1/250"; the count), so this chart draws on its own: the counts come from
// column 2, the categories and slice names from column 1. Its look differs from the other charts
// on purpose: the value axis is always titled "#Files", the horizontal chart never shows value
// labels, no custom fonts, colours or gradients are applied, and the theme is set last.
class ChartControllerExpTime : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerExpTime(const Statistic &statistic, QObject *parent = nullptr);
    ChartControllerExpTime(const Statistic &statistic, QSqlDatabase &db, QChartView *chartView,
                           QTableView *tableView, TChartSettings &settings, QObject *parent,
                           const PhotoSelection &selection = PhotoSelection(),
                           const ComparedPeriods &comparison = ComparedPeriods());

    void prepareData() override;

protected:
    void showBarChart_V() override;
    void showBarChart_H() override;
    void showPieChart() override;
    void showDonutChart() override;
    QList<QString> createCategories() override;
    int countColumn() const override { return statistic.countColumn(); }

private:
    void beginChart();
    void drawBars(QAbstractBarSeries *series, Qt::Alignment categorySide, Qt::Alignment valueSide,
                  bool valueLabels);
    void drawPie(qreal holeSize);
    // Title and legend as the base applies them, without the custom font and colour.
    void applyTitleAndLegend();
    void finishChart();

    const Statistic statistic;
};
