#include "chartcontrollermaker.h"

ChartControllerMaker::ChartControllerMaker(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerMaker::ChartControllerMaker(QSqlDatabase &db, QChartView *chartView,
                                           QTableView *tableView, TChartSettings &settings,
                                           QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerMaker::prepareData()
{
    runStatistic(QStringLiteral("SELECT Distinct Maker, count(maker) FROM Dateien group by maker"),
                 { QStringLiteral("Maker"), QStringLiteral("Count") });
}
