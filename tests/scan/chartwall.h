#pragma once

#include <QList>
#include <QObject>
#include <QSqlDatabase>

#include <memory>

class QChartView;
class QTableView;
class ChartController;
struct Statistic;

// The statistic charts of the main window, each a chart view and a table view, rebuilt
// the way the window rebuilds them after a scan: every controller is replaced by a new one, which
// runs its statistic on the given connection and draws at once. The views are never shown.
class ChartWall : public QObject
{
    Q_OBJECT

public:
    explicit ChartWall(QSqlDatabase db, QObject *parent = nullptr);
    ~ChartWall() override;

    void rebuild();
    // Rows counted by the maker chart's table at the last rebuild.
    int photosInMakerTable() const;

private:
    QSqlDatabase db;
    QList<const Statistic *> statistics;
    QList<QChartView *> chartViews;
    QList<QTableView *> tableViews;
    QList<ChartController *> controllers;
};
