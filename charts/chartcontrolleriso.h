#pragma once

#include "chartcontroller.h"

// Photos per ISO speed.
class ChartControllerISO : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerISO(QObject *parent = nullptr);
    ChartControllerISO(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                       TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
