#include "chartcontrollermodel.h"

ChartControllerModel::ChartControllerModel(QObject *parent)
    : ChartController(parent)
{ }

ChartControllerModel::ChartControllerModel(QSqlDatabase &db, QChartView *chartView,
                                           QTableView *tableView, TChartSettings &settings,
                                           QObject *parent)
    : ChartController(db, chartView, tableView, settings, parent)
{
    refreshChart();
}

void ChartControllerModel::prepareData()
{
    runStatistic(
        QStringLiteral("SELECT Distinct Model, count(Model) FROM Dateien group by Maker, Model"),
        { QStringLiteral("Model"), QStringLiteral("Count") });
}
