#pragma once

#include "chartcontroller.h"

// Photos per focal length.
class ChartControllerFocLen : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerFocLen(QObject *parent = nullptr);
    ChartControllerFocLen(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                          TChartSettings &settings, QObject *parent);

    void prepareData() override;
};
