#pragma once

#include "chartcontroller.h"

#include <QList>
#include <QString>

// Photos per ISO range ("101-400"), plus 'Others' for everything outside the ranges.
class ChartControllerISOG : public ChartController
{
    Q_OBJECT

public:
    explicit ChartControllerISOG(QObject *parent = nullptr);
    ChartControllerISOG(QSqlDatabase &db, QChartView *chartView, QTableView *tableView,
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
