#include "chartwall.h"

#include "chartcontrollerexpmode.h"
#include "chartcontrollerexptime.h"
#include "chartcontrollerfnum.h"
#include "chartcontrollerfoclen.h"
#include "chartcontrollerfocleng.h"
#include "chartcontrolleriso.h"
#include "chartcontrollerisog.h"
#include "chartcontrollerlens.h"
#include "chartcontrollermaker.h"
#include "chartcontrollermetmode.h"
#include "chartcontrollermodel.h"
#include "tchartsettings.h"

#include <QAbstractItemModel>
#include <QChartView>
#include <QTableView>

namespace {
constexpr int statistics = 11;
}

ChartWall::ChartWall(QSqlDatabase db, QObject *parent)
    : QObject(parent)
    , db(db)
{
    for (int i = 0; i < statistics; ++i) {
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
    const auto &c = chartViews;
    const auto &t = tableViews;
    controllers << new ChartControllerMaker(db, c[0], t[0], settings, this)
                << new ChartControllerModel(db, c[1], t[1], settings, this)
                << new ChartControllerLens(db, c[2], t[2], settings, this)
                << new ChartControllerFocLen(db, c[3], t[3], settings, this)
                << new ChartControllerFocLenG(db, c[4], t[4], settings, noRanges, this)
                << new ChartControllerISO(db, c[5], t[5], settings, this)
                << new ChartControllerISOG(db, c[6], t[6], settings, noRanges, this)
                << new ChartControllerFNum(db, c[7], t[7], settings, this)
                << new ChartControllerExpTime(db, c[8], t[8], settings, this)
                << new ChartControllerMetMode(db, c[9], t[9], settings, this)
                << new ChartControllerExpMode(db, c[10], t[10], settings, this);
}

int ChartWall::photosInMakerTable() const
{
    const QAbstractItemModel *model = tableViews.first()->model();
    int photos = 0;
    for (int row = 0; model && row < model->rowCount(); ++row)
        photos += model->index(row, 1).data().toInt();
    return photos;
}
