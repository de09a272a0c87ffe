// Scan control: a change of the directory selection, of the file types or of the subdirectory
// switch starts a new scan on a fresh worker thread; its end reloads the raw rows and rebuilds
// every chart.
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "chartcontroller.h"
#include "chartdate3d.h"
#include "dateviews.h"
#include "namehints.h"
#include "rawdatamodel.h"
#include "statisticcontrollers.h"
#include "tmyworkerobject.h"

#include <algorithm>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <QComboBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QSortFilterProxyModel>

namespace {

// The same directories, in whatever order the selection model lists them.
bool sameDirectories(QList<QString> a, QList<QString> b)
{
    std::sort(a.begin(), a.end());
    std::sort(b.begin(), b.end());
    return a == b;
}

} // namespace

void MainWindow::onDirectorySelectionChanged(const QItemSelection &, const QItemSelection &)
{
    QList<QString> directories;
    const QModelIndexList selection = ui->treeViewDir->selectionModel()->selectedIndexes();
    for (const QModelIndex &index : selection) {
        // A selected row gives one index per column, the hidden ones included.
        const QModelIndex sourceIndex = proxyModel->mapToSource(index);
        if (sourceIndex.column() == 0)
            directories.append(fileSystemModel->fileInfo(sourceIndex).absoluteFilePath());
    }
    // While the file system model fills in a directory, the sorting proxy can announce the
    // selection again unchanged; only a real change of the tree's selection starts a scan.
    // Direct calls always rescan.
    const bool fromTree = sender() == ui->treeViewDir->selectionModel();
    if (fromTree && sameDirectories(directories, selectedDirectories))
        return;

    // The late operationDone() of a scan stopped earlier clears workerRunning while the next scan
    // still runs; the thread itself tells whether there is one to stop, so that two scans never
    // run at once.
    if (workerThread && (workerRunning || workerThread->isRunning()))
        stopWorkerThread();
    labelStatus->setText(QString());
    // The selected ids belong to the photos that are about to go.
    photoSelection.clear();
    restrictRawData();

    selectedDirectories = directories;
    if (selectedDirectories.isEmpty())
        return;

    lastDirectory = selectedDirectories.first();
    clearTable();
    workerRunning = true;
    doWorkerOperation();
}

void MainWindow::refreshData()
{
    onDirectorySelectionChanged();
}

void MainWindow::fileFilterTriggered()
{
    everyTypeUntilSwitched = false;
    fileFilters.clear();
    for (const auto &[action, patterns] : fileTypeActions()) {
        if (action->isChecked())
            fileFilters.append(patterns);
    }
    onDirectorySelectionChanged();
}

void MainWindow::on_actionCanon_cr2_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionCanon_cr3_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionFuji_raf_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionNikon_nef_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionOlympus_orf_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionPanasonic_rw2_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionSony_arw_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_action_jpg_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_action_heif_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_action_dng_triggered()
{
    fileFilterTriggered();
}

void MainWindow::on_actionIncludeSubDirs_triggered()
{
    includeSubDirs = ui->actionIncludeSubDirs->isChecked();
    onDirectorySelectionChanged();
}

QStringList MainWindow::groupedStatisticIndexes() const
{
    QStringList statements;
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.rangeGroups)
            statements << statistic.rangeIndexStatement(rangesOf(statistic));
    }
    return statements;
}

void MainWindow::doWorkerOperation()
{
    QList<QString> patterns = scanPatterns();
    worker = new TMyWorkerObject(selectedDirectories, patterns, includeSubDirs, makerExcludes,
                                 modelExcludes);
    // The ranges change only together with a new scan (global settings), so the scan can build
    // the grouped charts' indexes for the refresh that follows it.
    worker->setGroupedStatisticIndexes(groupedStatisticIndexes());
    worker->setReaderThreads(readerThreads);
    if (!catalogueSwitchedOff) {
        TMyWorkerObject::CatalogueUse use;
        use.file = PhotoCatalogue::defaultFile();
        use.useForScan = rememberPhotos;
        use.forgetUnseenAfterDays = forgetUnseenAfterDays;
        use.forgetEverything = forgetPhotosAtNextScan;
        // Reaches the window before the scan's operationDone() (both are queued in turn); a
        // stopped scan's note is dropped.
        use.noteTo = [this, scan = scanNumber + 1](const QString &note) {
            QMetaObject::invokeMethod(
                this,
                [this, scan, note] {
                    if (scan == scanNumber)
                        catalogueNote = note;
                },
                Qt::QueuedConnection);
        };
        worker->setCatalogue(use);
        forgetPhotosAtNextScan = false;
    }
    catalogueNote.clear();
    workerThread = new QThread(this);
    worker->moveToThread(workerThread);

    // Thread and worker delete themselves once the worker is done and the thread has ended.
    connect(workerThread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    connect(worker, &TMyWorkerObject::operationDone, workerThread, &QThread::quit);
    connect(workerThread, &QThread::finished, workerThread, &QObject::deleteLater);
    connect(workerThread, &QThread::finished, worker, &QObject::deleteLater);
    connect(worker, &TMyWorkerObject::operationDone, this, &MainWindow::onWorkerOperationDone);
    connect(worker, &TMyWorkerObject::operationUpdate, this, &MainWindow::onWorkerOperationUpdate);
    // After the window's own slot. A stopped scan still ends with operationDone(), late: only a
    // scan that ran to its end is announced. (By number: the finished thread may already have
    // deleted the worker, and a new one can live at the same address.)
    connect(worker, &TMyWorkerObject::operationDone, this, [this, scan = ++scanNumber] {
        if (scan == scanNumber)
            emit scanFinished(labelStatus->text());
    });

    workerThread->start(QThread::InheritPriority);
}

// The worker looks at the request at every 50th file; the wait has no time limit.
void MainWindow::stopWorkerThread()
{
    if (!workerThread)
        return;
    ++scanNumber;
    workerThread->requestInterruption();
    workerThread->exit(0);
    workerThread->wait();
}

void MainWindow::onWorkerOperationUpdate(int count)
{
    labelStatus->setText("Scanned files... " + QString::number(count));
}

void MainWindow::onWorkerOperationDone()
{
    tableModel->select();
    scanStatus = "Valid files: " + QString::number(tableModel->rowCount())
        + (everyTypeUntilSwitched ? tr(" (no file type is switched on: this run reads every type)")
                                  : QString())
        + (catalogueNote.isEmpty() ? QString() : QStringLiteral(" — ") + catalogueNote);
    workerRunning = false;
    renewFilterAfterScan();
    updateCharts();
#ifdef __GLIBC__
    // What the scan allocated and freed again stays with the C library until it is told to give
    // it back: some 30 bytes per photo of a large library.
    malloc_trim(0);
#endif
}

void MainWindow::updateCharts()
{
    NameRulesSql::setActive(nameRules);
    nameHints->refresh(db, nameRules.mergeBlanksAndCase);
    for (StatisticTab &tab : statisticTabs)
        refreshStatistic(tab);
    refreshDateViews();
}

// Each controller runs its statistic on the main connection as it is made.
void MainWindow::refreshStatistic(StatisticTab &tab)
{
    // The grouped focal-length controller is let go without being destroyed: it stays a child of
    // the window until the window goes. Kept so.
    if (tab.statistic->key != Statistics::focalLengthGrouped)
        delete tab.controller;
    tab.controller =
        createStatisticController(*tab.statistic, db, tab.chartView, tab.tableView, tab.settings,
                                  rangesOf(*tab.statistic), this, photoSelection, comparedPeriods);
    connectChartDrillDown(tab);
    tab.stale = false;
    ++statisticsDrawn;
}

// The 3-D date chart, the line about implausible dates below it and the calendar.
void MainWindow::refreshDateViews()
{
    // The camera survives the refresh.
    if (chartDate3D) {
        camXRotation = chartDate3D->cameraXRotation();
        camYRotation = chartDate3D->cameraYRotation();
        camZoom = chartDate3D->cameraZoomFactor();
        delete chartDate3D;
        chartDate3D = nullptr;
    }
    const DaySpan shownDays = dateViews->refresh(db, QDate::currentDate(), photoSelection);
    chartDate3D =
        new ChartDate3D(db, ui->layoutDateOriginal, static_cast<Q3DTheme::Theme>(chartDateTheme),
                        camXRotation, camYRotation, camZoom, shownDays, this, photoSelection);
    dateViewsStale = false;
}

void MainWindow::refreshShownViews()
{
    for (StatisticTab &tab : statisticTabs)
        tab.stale = true;
    dateViewsStale = true;
    refreshCurrentTab();
}

void MainWindow::refreshCurrentTab()
{
    const QWidget *current = ui->tabWidget->currentWidget();
    for (StatisticTab &tab : statisticTabs) {
        if (tab.stale && tab.page == current)
            refreshStatistic(tab);
    }
    const QWidget *datePage =
        statisticPage(ui->tabWidget, *Statistics::byKey(Statistics::dateOriginal));
    if (dateViewsStale && (current == datePage || current == dateViews->calendarPage()))
        refreshDateViews();
}

void MainWindow::onCurrentTabWidgetChanged(int index)
{
    comboBoxThemeDate->setEnabled(index == 11);
    lastTab = index;
    refreshCurrentTab();
}

// Every chart is rebuilt, not only the date chart.
void MainWindow::onCurrentThemeDateChanged(int index)
{
    chartDateTheme = comboBoxThemeDate->itemData(index).toInt();
    updateCharts();
}
