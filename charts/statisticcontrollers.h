#pragma once

#include "periodcomparison.h"
#include "photoselection.h"
#include "statistic.h"
#include "tchartsettings.h"

#include <QList>
#include <QSqlDatabase>
#include <QString>

class ChartController;
class QChartView;
class QObject;
class QTableView;

// How a statistic is drawn follows from the rows its statement gives: range groups, exposure
// times (a value to sort by and its text) or plain values. Constructs (and so draws) the
// statistic's controller; the ranges serve range groups only. Null for the date statistic, which
// the 3-D date chart draws. The statistic counts the selected photos, beside those of period B
// where periods are compared.
ChartController *createStatisticController(const Statistic &statistic, QSqlDatabase &db,
                                           QChartView *chartView, QTableView *tableView,
                                           TChartSettings &settings, const QList<QString> &ranges,
                                           QObject *parent,
                                           const PhotoSelection &selection = PhotoSelection(),
                                           const ComparedPeriods &comparison = ComparedPeriods());
