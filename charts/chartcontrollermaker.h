#pragma once

#include "chartcontroller.h"

// Photos per camera maker.
class ChartControllerMaker : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerMaker(QObject *parent = nullptr);
    ChartControllerMaker(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                         TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
