#pragma once

#include "chartcontroller.h"

// Photos per exposure program.
class ChartControllerExpMode : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerExpMode(QObject *parent = nullptr);
    ChartControllerExpMode(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                           TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
