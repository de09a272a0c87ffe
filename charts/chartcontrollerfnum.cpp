#include "chartcontrollerfnum.h"

ChartControllerFNum::ChartControllerFNum(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerFNum::ChartControllerFNum(QSqlDatabase &db, QChartView *chartView,
                                         QTableView *tableView, TChartSettings &settings,
                                         QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerFNum::prepareData()
{
    runStatistic(
        QStringLiteral("SELECT Distinct FNumber, count(FNumber) FROM Dateien group by FNumber"),
        { QStringLiteral("FNumber"), QStringLiteral("Count") });
}
