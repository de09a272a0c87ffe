// The user's commands on what a scan produced (chart settings from the context menu, clipboard
// copy, CSV export), the global settings and the update check.
#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "calendarchart.h"
#include "chartcontroller.h"
#include "chartdate3d.h"
#include "csvfield.h"
#include "dateviews.h"
#include "dialogchartsettings.h"
#include "rawdatamodel.h"
#include "tdialogglobalsettings.h"
#include "tdialognachricht.h"
#include "tobjectfiledownloader.h"
#include "updateoffer.h"
#include "updatesite.h"

#include <algorithm>

#include <QChartView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QSqlQuery>
#include <QTextStream>

namespace {

// How long the confirmations of the copy and the export stay up.
constexpr int nachrichtMsec = 2000;

} // namespace

bool MainWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ContextMenu) {
        verarbeiteKontextMenu(watched, static_cast<QContextMenuEvent *>(event));
        return true;
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::verarbeiteKontextMenu(QObject *watched, QContextMenuEvent *event)
{
    auto *widget = qobject_cast<QWidget *>(watched);
    const QPoint globalPosition = widget ? widget->mapToGlobal(event->pos()) : event->globalPos();

    QMenu menu(this);
    menu.addAction(tr("Chart Settings..."));
    if (!menu.exec(globalPosition))
        return;

    for (StatisticTab &tab : statisticTabs) {
        if (tab.chartView != watched)
            continue;
        DialogChartSettings dialog;
        dialog.setWindowTitle(tr("Settings for '%1' Chart").arg(tab.statistic->chartName));
        dialog.setData(tab.settings);
        if (dialog.exec() == QDialog::Accepted) {
            tab.settings = dialog.data();
            // Before the first scan has ended there is no controller yet; the record is kept
            // and the first refresh draws with it.
            if (tab.controller) {
                tab.controller->setChartSettings(tab.settings);
                tab.controller->refreshChart();
            }
        }
        return;
    }
}

void MainWindow::on_actionCopyChartToClipboard_triggered()
{
    // The tab is known by the index it was given, not by where the user moved it.
    QImage image;
    const auto tab =
        std::find_if(statisticTabs.begin(), statisticTabs.end(),
                     [this](const StatisticTab &tab) { return tab.tabIndex == lastTab; });
    // A copy never carries the numbers of an earlier filter.
    if (tab != statisticTabs.end() && tab->stale)
        refreshStatistic(*tab);
    const bool dateTab =
        lastTab == 11 || lastTab == ui->tabWidget->indexOf(dateViews->calendarPage());
    if (dateTab && dateViewsStale)
        refreshDateViews();
    if (tab != statisticTabs.end())
        image = tab->chartView->grab().toImage();
    else if (lastTab == 11 && chartDate3D)
        // The 3-D graph is an OpenGL window: only its own rendering shows what it draws.
        image = chartDate3D->renderToImage(6);
    else if (lastTab == ui->tabWidget->indexOf(dateViews->calendarPage()))
        image = dateViews->calendar()->grab().toImage();
    // Comparing periods, the statistic's table goes along as text: pasted into a spreadsheet it
    // gives both periods' counts, into an image editor the chart.
    if (comparedPeriods.isActive() && tab != statisticTabs.cend() && tab->tableView->model()) {
        auto *data = new QMimeData;
        data->setImageData(image);
        data->setText(csvTable(*tab->tableView->model()));
        QGuiApplication::clipboard()->setMimeData(data, QClipboard::Clipboard);
    } else {
        QGuiApplication::clipboard()->setImage(image, QClipboard::Clipboard);
    }
    showNachricht(tr("ChartImage copied to the clipboard"));
}

void MainWindow::on_actionExportData_triggered()
{
    if (tableModel->rowCount() == 0)
        return;
    const QString fileName = askExportFileName();
    if (fileName.isEmpty())
        return;
    // Not in text mode: every line ends with a line feed, on every system.
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;

    auto *progress = new QProgressBar(ui->statusbar);
    progress->setMinimum(0);
    progress->setMaximum(tableModel->rowCount());
    ui->statusbar->addPermanentWidget(progress, 0);

    // Straight from the table in the view's order: the model holds only the rows lately shown.
    QSqlQuery rows(db);
    tableModel->queryRows(rows);
    QTextStream out(&file);
    const int columns = tableModel->columnCount();
    for (int row = 0; rows.next(); ++row) {
        progress->setValue(row);
        QList<QString> fields;
        fields.reserve(columns);
        for (int column = 0; column < columns; ++column)
            fields.append(rows.value(column).toString());
        // No quoting: a ";" inside a value is written as it is.
        out << fields.join(';') << '\n';
    }
    out.flush();
    file.close();
    ui->statusbar->removeWidget(progress);

    showNachricht(tr("Data table saved as .csv file"));
}

QString MainWindow::askExportFileName()
{
    return QFileDialog::getSaveFileName(this, tr("Export Data Table as .csv"), "",
                                        tr("CSV-Datei (*.csv)"));
}

void MainWindow::showNachricht(const QString &text)
{
    TDialogNachricht nachricht(text, nachrichtMsec, this);
    nachricht.exec();
}

void MainWindow::on_actionGlobalSettings_triggered()
{
    // Parented to the window and not deleted: it lives on as a hidden child.
    auto *dialog = new TDialogGlobalSettings(this);
    dialog->setMakerExcludes(makerExcludes);
    dialog->setModelExcludes(modelExcludes);
    dialog->setFocalLengthGroups(rangeGroups["focalLengthGroups"]);
    dialog->setISOGroups(rangeGroups["isoGroups"]);
    dialog->setFocalLength35Groups(rangeGroups["focalLength35Groups"]);
    dialog->setCheckForUpdate(checkForUpdatesOnStart);
    dialog->setReaderThreads(readerThreads);
    dialog->setMergeNames(nameRules.mergeBlanksAndCase);
    dialog->setFriendlyMakers(nameRules.friendlyMakers);
    dialog->setMakerAliases(MakerNames::formatAliases(nameRules.makerAliases));
    dialog->setRememberPhotos(rememberPhotos);
    dialog->setForgetUnseenAfterDays(forgetUnseenAfterDays);
    dialog->setPairsOnce(pairsOnce);
    if (dialog->exec() != QDialog::Accepted)
        return;

    makerExcludes = dialog->makerExcludes();
    modelExcludes = dialog->modelExcludes();
    rangeGroups["focalLengthGroups"] = dialog->focalLengthGroups();
    rangeGroups["isoGroups"] = dialog->isoGroups();
    rangeGroups["focalLength35Groups"] = dialog->focalLength35Groups();
    checkForUpdatesOnStart = dialog->checkForUpdate();
    readerThreads = dialog->readerThreads();
    nameRules.mergeBlanksAndCase = dialog->mergeNames();
    nameRules.friendlyMakers = dialog->friendlyMakers();
    nameRules.makerAliases = MakerNames::parseAliases(dialog->makerAliases());
    rememberPhotos = dialog->rememberPhotos();
    forgetUnseenAfterDays = dialog->forgetUnseenAfterDays();
    forgetPhotosAtNextScan = forgetPhotosAtNextScan || dialog->forgetPhotosRequested();
    pairsOnce = dialog->pairsOnce();
    // New exclusions and groups take effect through a new scan, even when nothing changed.
    onDirectorySelectionChanged();
}

void MainWindow::checkForUpdates()
{
    fileDownloader = new TObjectFileDownloader(UpdateSite::versionFileUrl(), this);
    connect(fileDownloader, SIGNAL(downloaded()), this, SLOT(checkUpdateData()));
}

void MainWindow::checkUpdateData()
{
    UpdateOffer::offerDownload(fileDownloader->downloadedData());
}
