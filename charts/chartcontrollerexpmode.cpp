#include "chartcontrollerexpmode.h"

ChartControllerExpMode::ChartControllerExpMode(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerExpMode::ChartControllerExpMode(QSqlDatabase &db, QChartView *chartView,
                                               QTableView *tableView, TChartSettings &settings,
                                               QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerExpMode::prepareData()
{
    runStatistic(
        QStringLiteral(
            "SELECT Distinct ExposureMode, count(ExposureMode) FROM Dateien group by ExposureMode"),
        { QStringLiteral("ExpMode"), QStringLiteral("Count") });
}
