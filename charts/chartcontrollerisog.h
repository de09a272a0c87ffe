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

    // The ranges used when none are given.
    static QList<QString> defaultRanges();
    // The index that serves the statement of these ranges (the defaults when empty). A scan
    // builds it once its rows are in; empty when no range is usable.
    static QString rangeIndexStatement(QList<QString> ranges);

protected:
    QList<QString> createCategories() override;
    void createPieChartLegendeUndLabels(QPieSeries *series) override;

private:
    QList<QString> ranges;
};
