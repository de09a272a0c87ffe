#pragma once

#include "chartcontroller.h"

// Photos per lens.
class ChartControllerLens : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerLens(QObject *parent = nullptr);
    ChartControllerLens(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                        TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
