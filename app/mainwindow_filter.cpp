// The filter: the panel in its dock, the selection every statistic counts, the status line's part
// and the raw-data tab's rows.
#include "mainwindow.h"
#include "rawdatamodel.h"
#include "ui_mainwindow.h"

#include "filterpanel.h"
#include "photodatabase.h"
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
    connect(filterPanel, &FilterPanel::comparisonChanged, this,
            [this] { onFilterChanged(filterPanel->filter()); });
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
    selectFilteredPhotos();
    updateCharts();
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

// The raw-data model reads the selection's ids, which carry the filter's values as bound
// parameters; the clause itself holds none.
void MainWindow::restrictRawData()
{
    if (!photoSelection.isFiltered()) {
        tableModel->setRestriction(QString());
        return;
    }
    const BoundStatement ids = photoSelection.apply(QStringLiteral("SELECT ID FROM Dateien"));
    tableModel->setRestriction("ID IN (" + ids.text + ")", ids.values);
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
    const qint64 shown = photoSelection.count(db);
    QString text = scanStatus
        + QStringLiteral(" — showing %1: %2")
              .arg(shown)
              .arg(photoSelection.filter().filter().description());
    if (pairsOnce)
        text += QStringLiteral(" (%1 RAW+JPEG pairs merged)").arg(pairsMerged);
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

// The bars and slices stand in the rows' order. The refresh that follows a drill-down replaces
// the chart that sent the click, so it runs once the click has been delivered.
void MainWindow::connectChartDrillDown(const StatisticTab &tab)
{
    QChart *chart = tab.chartView ? tab.chartView->chart() : nullptr;
    if (!chart || !fieldOf(*tab.statistic))
        return;
    const Statistic *statistic = tab.statistic;
    const auto later = [this, statistic](int row) {
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
    const PhotoFilterField *field = fieldOf(statistic);
    const auto tab = std::find_if(statisticTabs.cbegin(), statisticTabs.cend(),
                                  [&](const StatisticTab &t) { return t.statistic == &statistic; });
    if (!field || tab == statisticTabs.cend() || !tab->tableView->model())
        return;
    const QModelIndex index = tab->tableView->model()->index(row, statistic.valueColumn());
    if (!index.isValid())
        return;
    filterDock->show();
    filterPanel->addValue(*field, index.data().toString());
    ui->tabWidget->setCurrentWidget(ui->tabRawData);
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
