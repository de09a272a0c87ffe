#pragma once

#include "chartcontroller.h"

#include <QList>
#include <QString>

// Photos per focal-length range ("24-70mm"), plus 'Others' for everything outside the ranges.
class ChartControllerFocLenG : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerFocLenG(QObject *parent = nullptr);
    ChartControllerFocLenG(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
                           TChartSettings &settings, QList<QString> ranges, QObject *parent);

    void prepareData() override;
    // The statement over `ranges`; an empty list is filled with the defaults first.
    QString prepareSelectStatement();

protected:
    QList<QString> createCategories() override;
    void createPieChartLegendeUndLabels(QPieSeries *series) override;

private:
    QList<QString> ranges;
};
