#pragma once

#include "statistic.h"
#include "tchartsettings.h"

#include <QList>

class ChartController;
class QChartView;
class QSplitter;
class QTabWidget;
class QTableView;
class QWidget;

// One statistic's tab as the window draws it: its widgets, its chart's look and the controller
// of its last refresh.
struct StatisticTab
{
    const Statistic *statistic = nullptr;
    QWidget *page = nullptr;
    // The tab's index when the window was built; tabs are found by it, as the user may move them.
    int tabIndex = -1;
    QSplitter *splitter = nullptr;
    QTableView *tableView = nullptr;
    QChartView *chartView = nullptr;
    TChartSettings settings;
    ChartController *controller = nullptr;
    // Drawn before the last filter change; drawn anew when the tab is shown.
    bool stale = false;
};

// The tabs of the statistics that are drawn as a table beside a chart, in the statistics' order.
// Each statistic's widgets are the form's "tab", "splitter", "tableView" and "chartView" followed
// by its widget name; a statistic the form lacks gets such a tab built like the form's, after the
// tabs that are there.
QList<StatisticTab> makeStatisticTabs(QTabWidget *tabs);

// The page of a statistic's tab (the form's or a built one); null before makeStatisticTabs().
QWidget *statisticPage(const QTabWidget *tabs, const Statistic &statistic);
