// The filter: the panel in its dock, the selection every statistic counts, the status line's part
// and the raw-data tab's rows.
#include "mainwindow.h"
#include "rawdatamodel.h"
#include "ui_mainwindow.h"

#include "chartcontroller.h"
#include "filterpanel.h"
#include "photodatabase.h"
#include "rangegroups.h"
#include "rawjpegpairs.h"
#include "statisticrows.h"

#include <QAbstractBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QDesktopServices>
#include <QDockWidget>
#include <QFileInfo>
#include <QLabel>
#include <QPieSeries>
#include <QPointer>
#include <QSqlQuery>
#include <QSqlTableModel>
#include <QTableView>
#include <QUrl>

namespace {

// The filter field that a statistic counts the values of; null for the others.
const PhotoFilterField *fieldOf(const Statistic &statistic)
{
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        if (field.key == statistic.key)
            return &field;
    }
    return nullptr;
}

} // namespace

void MainWindow::createFilterDock()
{
    filterPanel = new FilterPanel;
    filterDock = new QDockWidget(tr("Filter panel"), this);
    filterDock->setObjectName(QStringLiteral("dockWidgetFilter"));
    filterDock->setFeatures(QDockWidget::DockWidgetClosable | QDockWidget::DockWidgetFloatable
                            | QDockWidget::DockWidgetMovable);
    filterDock->setWidget(filterPanel);
    filterDock->toggleViewAction()->setObjectName(QStringLiteral("actionViewFilterPanel"));
    splitDockWidget(ui->dockWidget, filterDock, Qt::Vertical);
    connect(filterPanel, &FilterPanel::filterChanged, this, &MainWindow::onFilterChanged);
    connect(filterPanel, &FilterPanel::comparisonChanged, this, [this] {
        if (workerRunning)
            return; // the scan's end selects both periods
        selectFilteredPhotos();
        refreshShownViews();
    });
}

void MainWindow::renewFilterAfterScan()
{
    pairsMerged = pairsOnce ? RawJpegPairs::markCompanions(db) : 0;
    // The lists count the whole scan, so that every value stays in reach, with names as the
    // statistics count them.
    PhotoSelection everyPhoto(QStringLiteral("KelvaroFilterLists"));
    everyPhoto.select(db, StatementFilter({}, {}, nameRules));
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        QList<StatisticRow> values;
        readFieldValues(field, db, everyPhoto, values);
        filterPanel->setChoices(field, values);
    }
    selectFilteredPhotos();
}

void MainWindow::onFilterChanged(const PhotoFilter &)
{
    if (workerRunning)
        return; // the scan's end selects the photos
    PhotoFilter wanted = filterPanel->filter();
    wanted.pairsOnce = pairsOnce;
    // A preset naming the range already set, or "Clear filter" without a filter, changes nothing.
    if (wanted == photoSelection.filter().filter())
        return;
    selectFilteredPhotos();
    refreshShownViews();
}

void MainWindow::selectFilteredPhotos()
{
    PhotoFilter filter = filterPanel->filter();
    filter.pairsOnce = pairsOnce;
    QString error;
    if (!photoSelection.select(db, StatementFilter(filter, {}, nameRules), &error))
        qWarning("The filter could not be applied: %s", qPrintable(error));
    if (!comparedPeriods.select(db, photoSelection, filterPanel->comparison(), &error))
        qWarning("The periods could not be compared: %s", qPrintable(error));
    restrictRawData();
    showStatus();
}

// The raw-data model reads the selection's ids, found with the filter's values as bound
// parameters; the clause itself holds none.
void MainWindow::restrictRawData()
{
    if (!photoSelection.isFiltered()) {
        tableModel->setRestriction(QString());
        return;
    }
    tableModel->setRestriction("ID IN (" + photoSelection.idsStatement() + ")");
}

void MainWindow::showStatus()
{
    const QString comparing = comparedPeriods.isActive()
        ? QStringLiteral(" — comparing %1 (%2) with %3 (%4)")
              .arg(comparedPeriods.labelA())
              .arg(comparedPeriods.photosA())
              .arg(comparedPeriods.labelB())
              .arg(comparedPeriods.photosB())
        : QString();
    if (!photoSelection.isFiltered()) {
        labelStatus->setText(scanStatus + comparing);
        return;
    }
    const qint64 shown = photoSelection.selectedCount();
    QString text = scanStatus
        + QStringLiteral(" — showing %1: %2")
              .arg(shown)
              .arg(photoSelection.filter().filter().description());
    if (pairsOnce)
        text += (pairsMerged == 1 ? QStringLiteral(" (1 RAW+JPEG pair merged)")
                                  : QStringLiteral(" (%1 RAW+JPEG pairs merged)").arg(pairsMerged));
    if (shown == 0)
        text += QStringLiteral(". No photo matches the filter");
    labelStatus->setText(text + comparing);
}

void MainWindow::connectTableDrillDown()
{
    for (const StatisticTab &tab : std::as_const(statisticTabs)) {
        const Statistic *statistic = tab.statistic;
        connect(
            tab.tableView, &QTableView::doubleClicked, this,
            [this, statistic](const QModelIndex &index) { drillDown(*statistic, index.row()); });
    }
}

// A bar or slice stands for a table row, unless it sums the rows not drawn on their own. The
// refresh that follows a drill-down replaces the chart that sent the click, so it runs once the
// click has been delivered.
void MainWindow::connectChartDrillDown(const StatisticTab &tab)
{
    QChart *chart = tab.chartView ? tab.chartView->chart() : nullptr;
    if (!chart || (!fieldOf(*tab.statistic) && tab.statistic->rowValueExpression().isEmpty()))
        return;
    const Statistic *statistic = tab.statistic;
    const QPointer<ChartController> controller = tab.controller;
    const auto later = [this, statistic, controller](int chartRow) {
        const int row = controller ? controller->tableRowOfChartRow(chartRow) : -1;
        if (row < 0)
            return;
        QMetaObject::invokeMethod(
            this, [this, statistic, row] { drillDown(*statistic, row); }, Qt::QueuedConnection);
    };
    for (QAbstractSeries *series : chart->series()) {
        if (auto *bars = qobject_cast<QAbstractBarSeries *>(series))
            connect(bars, &QAbstractBarSeries::doubleClicked, this,
                    [later](int index, QBarSet *) { later(index); });
        else if (auto *pie = qobject_cast<QPieSeries *>(series))
            connect(pie, &QPieSeries::doubleClicked, this,
                    [later, pie](QPieSlice *slice) { later(int(pie->slices().indexOf(slice))); });
    }
}

void MainWindow::drillDown(const Statistic &statistic, int row)
{
    const auto tab = std::find_if(statisticTabs.cbegin(), statisticTabs.cend(),
                                  [&](const StatisticTab &t) { return t.statistic == &statistic; });
    if (tab == statisticTabs.cend() || !tab->tableView->model())
        return;
    const QAbstractItemModel *rows = tab->tableView->model();
    const QModelIndex index = rows->index(row, statistic.valueColumn());
    if (!index.isValid())
        return;
    if (const PhotoFilterField *field = fieldOf(statistic)) {
        filterDock->show();
        filterPanel->addValue(*field, index.data().toString());
    } else if (!statistic.rowValueExpression().isEmpty()) {
        filterDock->show();
        filterPanel->addPickedRow(pickedRow(statistic, rows, row));
    } else {
        return;
    }
    ui->tabWidget->setCurrentWidget(ui->tabRawData);
}

// The row's first column, as the statement gave it, is what the filter compares; a range group's
// row carries the ranges it was counted under.
PickedRow MainWindow::pickedRow(const Statistic &statistic, const QAbstractItemModel *rows,
                                int row) const
{
    PickedRow picked;
    picked.statistic = statistic.key;
    picked.value = rows->index(row, 0).data();
    QString shown = rows->index(row, statistic.valueColumn()).data().toString();
    if (statistic.rangeGroups) {
        picked.ranges = statistic.effectiveRanges(rangesOf(statistic));
        shown = RangeGroups::displayText(shown, statistic.rangeGroups->unit,
                                         statistic.rangeGroups->rangeNames);
    }
    picked.label = statistic.tabTitle + QLatin1Char(' ')
        + (picked.value.isNull() ? QStringLiteral("n.a.") : shown);
    return picked;
}

void MainWindow::createRawDataActions()
{
    QTableView *view = ui->tableViewRawData;
    auto *open = new QAction(tr("Open"), view);
    open->setObjectName(QStringLiteral("actionOpenPhoto"));
    // Enter (and a double-click) activates the row.
    connect(view, &QAbstractItemView::activated, this, [this] { openCurrentPhoto(false); });
    auto *folder = new QAction(tr("Show in folder"), view);
    folder->setObjectName(QStringLiteral("actionShowInFolder"));
    view->addActions({ open, folder });
    view->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(open, &QAction::triggered, this, [this] { openCurrentPhoto(false); });
    connect(folder, &QAction::triggered, this, [this] { openCurrentPhoto(true); });
}

// The photo's id is in the row's first column.
void MainWindow::openCurrentPhoto(bool itsFolder)
{
    const QModelIndex current = ui->tableViewRawData->currentIndex();
    if (!current.isValid())
        return;
    QSqlQuery query(db);
    query.prepare(PhotoDatabase::photoPathStatement);
    query.addBindValue(tableModel->index(current.row(), 0).data());
    if (!query.exec() || !query.next())
        return;
    const QString path = query.value(0).toString();
    QDesktopServices::openUrl(
        QUrl::fromLocalFile(itsFolder ? QFileInfo(path).absolutePath() : path));
}
