#include "chartcontrollermetmode.h"

ChartControllerMetMode::ChartControllerMetMode(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerMetMode::ChartControllerMetMode(QSqlDatabase &db, QChartView *chartView,
                                               QTableView *tableView, TChartSettings &settings,
                                               QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerMetMode::prepareData()
{
    runStatistic(
        QStringLiteral(
            "SELECT Distinct MeteringMode, count(MeteringMode) FROM Dateien group by MeteringMode"),
        { QStringLiteral("MeteringMode"), QStringLiteral("Count") });
}
