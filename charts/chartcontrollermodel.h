#pragma once

#include "chartcontroller.h"

// Photos per camera model.
// Grouped by maker and model but showing the model only: two makers' cameras of the same
// model name give two rows of the same text, on purpose.
class ChartControllerModel : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerModel(QObject *parent = nullptr);
    ChartControllerModel(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                         TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
