#include "chartcontrolleriso.h"

ChartControllerISO::ChartControllerISO(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerISO::ChartControllerISO(QSqlDatabase &db, QChartView *chartView,
                                       QTableView *tableView, TChartSettings &settings,
                                       QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerISO::prepareData()
{
    runStatistic(QStringLiteral("SELECT Distinct ISO, count(ISO) FROM Dateien group by ISO"),
                 { QStringLiteral("ISO"), QStringLiteral("Count") });
}
