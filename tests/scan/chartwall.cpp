#include "chartwall.h"

#include "chartcontroller.h"
#include "statisticcontrollers.h"
#include "tchartsettings.h"

#include <QAbstractItemModel>
#include <QChartView>
#include <QTableView>

ChartWall::ChartWall(QSqlDatabase db, QObject *parent)
    : QObject(parent)
    , db(db)
{
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.shape == Statistic::Shape::DayCounts)
            continue;
        statistics << &statistic;
        chartViews << new QChartView;
        tableViews << new QTableView;
    }
}

ChartWall::~ChartWall()
{
    qDeleteAll(controllers);
    qDeleteAll(chartViews);
    qDeleteAll(tableViews);
}

void ChartWall::rebuild()
{
    qDeleteAll(controllers);
    controllers.clear();
    TChartSettings settings;
    const QList<QString> noRanges; // the controllers' default ranges
    for (qsizetype i = 0; i < statistics.size(); ++i)
        controllers << createStatisticController(*statistics[i], db, chartViews[i], tableViews[i],
                                                 settings, noRanges, this);
}

int ChartWall::photosInMakerTable() const
{
    const QAbstractItemModel *model = tableViews.first()->model();
    int photos = 0;
    for (int row = 0; model && row < model->rowCount(); ++row)
        photos += model->index(row, 1).data().toInt();
    return photos;
}
