#include "chartcontrollerfoclen.h"

ChartControllerFocLen::ChartControllerFocLen(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerFocLen::ChartControllerFocLen(QSqlDatabase &db, QChartView *chartView,
                                             QTableView *tableView, TChartSettings &settings,
                                             QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerFocLen::prepareData()
{
    runStatistic(
        QStringLiteral(
            "SELECT Distinct FocalLength, count(FocalLength) FROM Dateien group by FocalLength"),
        { QStringLiteral("FocalLength"), QStringLiteral("Count") });
}
