#include "statistictabs.h"

#include <QChartView>
#include <QHeaderView>
#include <QSplitter>
#include <QTabWidget>
#include <QTableView>
#include <QVBoxLayout>

namespace {

template<typename T>
T *widget(const QWidget *page, const QString &prefix, const Statistic &statistic)
{
    return page->findChild<T *>(prefix + statistic.widgetName);
}

// The widgets the form gives its statistic tabs, with the form's properties.
QWidget *buildPage(QTabWidget *tabs, const Statistic &statistic)
{
    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("tab") + statistic.widgetName);
    auto *layout = new QVBoxLayout(page);
    layout->setObjectName(QStringLiteral("layout") + statistic.widgetName);
    auto *splitter = new QSplitter(Qt::Horizontal, page);
    splitter->setObjectName(QStringLiteral("splitter") + statistic.widgetName);
    auto *table = new QTableView(splitter);
    table->setObjectName(QStringLiteral("tableView") + statistic.widgetName);
    table->horizontalHeader()->setStretchLastSection(true);
    auto *chart = new QChartView(splitter);
    chart->setObjectName(QStringLiteral("chartView") + statistic.widgetName);
    QSizePolicy chartPolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    chartPolicy.setHorizontalStretch(2);
    chart->setSizePolicy(chartPolicy);
    layout->addWidget(splitter);
    tabs->addTab(page, statistic.tabTitle);
    return page;
}

} // namespace

QWidget *statisticPage(const QTabWidget *tabs, const Statistic &statistic)
{
    return tabs->findChild<QWidget *>(QStringLiteral("tab") + statistic.widgetName);
}

QList<StatisticTab> makeStatisticTabs(QTabWidget *tabs)
{
    QList<StatisticTab> made;
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.shape == Statistic::Shape::DayCounts)
            continue;
        QWidget *page = statisticPage(tabs, statistic);
        if (!page)
            page = buildPage(tabs, statistic);
        StatisticTab tab;
        tab.statistic = &statistic;
        tab.page = page;
        tab.tabIndex = tabs->indexOf(page);
        tab.splitter = widget<QSplitter>(page, QStringLiteral("splitter"), statistic);
        tab.tableView = widget<QTableView>(page, QStringLiteral("tableView"), statistic);
        tab.chartView = widget<QChartView>(page, QStringLiteral("chartView"), statistic);
        made.append(tab);
    }
    return made;
}
