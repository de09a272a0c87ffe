#pragma once

#include "mainwindow.h"
#include "rawdatamodel.h"

#include <QComboBox>
#include <QFileSystemModel>
#include <QLabel>
#include <QSortFilterProxyModel>

// Lets the tests look at and drive what the window keeps to itself: its members and the private
// steps that the form does not expose.
class MainWindowProbe
{
public:
    explicit MainWindowProbe(MainWindow &window)
        : w(window)
    { }

    QString status() const { return w.labelStatus->text(); }
    QComboBox *themeCombo() const { return w.comboBoxThemeDate; }
    RawDataModel *tableModel() const { return w.tableModel; }
    QSqlDatabase &db() const { return w.db; }
    QFileSystemModel *fileSystemModel() const { return w.fileSystemModel; }
    QSortFilterProxyModel *proxyModel() const { return w.proxyModel; }
    QThread *workerThread() const { return w.workerThread; }
    bool workerRunning() const { return w.workerRunning; }
    TObjectFileDownloader *fileDownloader() const { return w.fileDownloader; }

    QString &lastDirectory() const { return w.lastDirectory; }
    bool &includeSubDirs() const { return w.includeSubDirs; }
    QList<QString> &fileFilters() const { return w.fileFilters; }
    QList<QString> &selectedDirectories() const { return w.selectedDirectories; }
    int &lastTab() const { return w.lastTab; }
    bool &checkForUpdatesOnStart() const { return w.checkForUpdatesOnStart; }
    QList<QString> &makerExcludes() const { return w.makerExcludes; }
    QList<QString> &modelExcludes() const { return w.modelExcludes; }
    QList<QString> &focalLengthGroups() const { return w.rangeGroups["focalLengthGroups"]; }
    QList<QString> &isoGroups() const { return w.rangeGroups["isoGroups"]; }
    QList<QString> &focalLength35Groups() const { return w.rangeGroups["focalLength35Groups"]; }
    QStringList &hiddenStatistics() const { return w.hiddenStatistics; }
    int &readerThreads() const { return w.readerThreads; }
    bool &rememberPhotos() const { return w.rememberPhotos; }
    int &forgetUnseenAfterDays() const { return w.forgetUnseenAfterDays; }
    bool catalogueSwitchedOff() const { return w.catalogueSwitchedOff; }
    int &chartDateTheme() const { return w.chartDateTheme; }
    int chartTheme() const { return w.chartTheme; }
    float &camXRotation() const { return w.camXRotation; }
    float &camYRotation() const { return w.camYRotation; }
    float &camZoom() const { return w.camZoom; }
    ChartDate3D *chartDate3D() const { return w.chartDate3D; }

    // The statistics drawn as a table beside a chart: 0 to 10 are the form's tabs 0 to 10, the
    // rest follow in the order of the statistics.
    int chartedStatistics() const { return int(w.statisticTabs.size()); }
    const StatisticTab &statisticTab(int statistic) const { return w.statisticTabs.at(statistic); }
    TChartSettings &chartSettings(int statistic) const
    {
        return w.statisticTabs[statistic].settings;
    }
    ChartController *chartController(int statistic) const
    {
        return w.statisticTabs.at(statistic).controller;
    }

    // How many times a statistic was drawn since the window was built.
    int statisticsDrawn() const { return w.statisticsDrawn; }
    bool dateViewsStale() const { return w.dateViewsStale; }

    int scanFinishedReceivers() const { return w.receivers(SIGNAL(scanFinished(QString))); }

    void clearTable() { w.clearTable(); }
    void rescan() { w.refreshData(); }
    void stopWorkerThread() { w.stopWorkerThread(); }
    void updateCharts() { w.updateCharts(); }
    void saveSettings() { w.saveSettings(); }

private:
    MainWindow &w;
};
