#pragma once

#include "chartcontroller.h"

// Photos per f-number.
class ChartControllerFNum : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerFNum(QObject *parent = nullptr);
    ChartControllerFNum(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                        TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
