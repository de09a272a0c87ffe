#include "chartcontrollerlens.h"

ChartControllerLens::ChartControllerLens(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerLens::ChartControllerLens(QSqlDatabase &db, QChartView *chartView,
                                         QTableView *tableView, TChartSettings &settings,
                                         QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerLens::prepareData()
{
    runStatistic(QStringLiteral("SELECT Distinct Lens, count(Lens) FROM Dateien group by Lens"),
                 { QStringLiteral("Lens"), QStringLiteral("Count") });
}
