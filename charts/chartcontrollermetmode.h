#pragma once

#include "chartcontroller.h"

// Photos per metering mode.
class ChartControllerMetMode : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerMetMode(QObject *parent = nullptr);
    ChartControllerMetMode(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                           TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
