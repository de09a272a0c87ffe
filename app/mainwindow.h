#pragma once

#include "namerules.h"
#include "periodcomparison.h"
#include "photocatalogue.h"
#include "photofilter.h"
#include "photoselection.h"
#include "readerpool.h"
#include "statistictabs.h"
#include "tchartsettings.h"

#include <QHash>
#include <QItemSelection>
#include <QList>
#include <QMainWindow>
#include <QPointer>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QThread>

class ChartController;
class ChartDate3D;
class DateViews;
class NameHints;
class FilterPanel;
class QAbstractItemModel;
class QAction;
class QChartView;
class QCloseEvent;
class QComboBox;
class QContextMenuEvent;
class QDockWidget;
class QFileSystemModel;
class QLabel;
class QSortFilterProxyModel;
class QSplitter;
class RawDataModel;
class TMyWorkerObject;
class TObjectFileDownloader;

namespace Ui {
class MainWindow;
}

// The one window of the program: the directory tree in the dock, the file-type switches in the
// tool bar, one tab per statistic and the raw rows of the photo table. Selecting directories
// starts a scan on a worker thread; when it ends every chart is rebuilt from the table.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);
    // Directories given on the command line are selected in the tree instead of the remembered
    // one, so the first scan covers them.
    explicit MainWindow(const QStringList &startDirectories, QWidget *parent = nullptr);
    // `kelvaro --no-catalogue`: this run's scans read every file and leave the photo catalogue
    // alone, whatever the settings say.
    enum class Catalogue { AsSet, SwitchedOff };
    MainWindow(const QStringList &startDirectories, Catalogue catalogue, QWidget *parent = nullptr);
    ~MainWindow() override;

signals:
    // At the end of a scan that was not stopped, with the status line's text, once the charts
    // are drawn.
    void scanFinished(const QString &statusText);

protected:
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

    // The file dialog of the export; a test answers it without a person.
    virtual QString askExportFileName();

private slots:
    void onDirectorySelectionChanged(const QItemSelection &selected = {},
                                     const QItemSelection &deselected = {});
    void refreshData();
    void fileFilterTriggered();
    void on_actionCanon_cr2_triggered();
    void on_actionCanon_cr3_triggered();
    void on_actionFuji_raf_triggered();
    void on_actionNikon_nef_triggered();
    void on_actionOlympus_orf_triggered();
    void on_actionPanasonic_rw2_triggered();
    void on_actionSony_arw_triggered();
    void on_action_jpg_triggered();
    void on_action_dng_triggered();
    void on_action_heif_triggered();
    void on_actionIncludeSubDirs_triggered();
    void onWorkerOperationUpdate(int count);
    void onWorkerOperationDone();
    void onCurrentTabWidgetChanged(int index);
    void onCurrentThemeDateChanged(int index);
    void onFilterChanged(const PhotoFilter &filter);

    void on_actionQuit_triggered();
    void on_actionCopyChartToClipboard_triggered();
    void on_actionExportData_triggered();
    void on_actionGlobalSettings_triggered();
    void on_actionAbout_Kelvaro_triggered();
    void on_actionAbout_Qt_triggered();
    void checkUpdateData();

private:
    friend class MainWindowProbe;

    bool userReallyWantsToQuit();
    // The short self-closing confirmation after a copy or an export.
    void showNachricht(const QString &text);

    void createMoreUI();
    void createStatusBar();
    void readSettings();
    void saveSettings();
    void prepareTreeModel();
    void prepareTreeView();
    void selectStartDirectories();
    bool createDBAndTable();
    void prepareTableModel();
    void prepareTableViewRawData();
    void clearTable();
    void setupConnections();
    void checkForUpdates();

    void doWorkerOperation();
    // The CREATE INDEX statements of the grouped charts for the current ranges.
    QStringList groupedStatisticIndexes() const;
    void stopWorkerThread();
    // Every statistic and the date views, as after a scan.
    void updateCharts();
    void refreshStatistic(StatisticTab &tab);
    void refreshDateViews();
    // After a filter change only the current tab is drawn at once; the others are marked stale and
    // drawn when they are shown, so that no tab ever shows the numbers of an earlier filter.
    void refreshShownViews();
    void refreshCurrentTab();
    void verarbeiteKontextMenu(QObject *watched, QContextMenuEvent *event);

    // The file-type switches with their patterns, in the order fileFilters is rebuilt in.
    QList<QPair<QAction *, QStringList>> fileTypeActions() const;
    // The patterns the next scan uses: the switched-on types, or every type while a run started
    // on command-line directories finds none on and the user has switched none.
    QList<QString> scanPatterns() const;
    void createTabListButton();
    // The View menu: one checkable entry per statistic, showing or hiding its tab.
    void createViewMenu();
    void showStatisticTab(const Statistic &statistic, bool shown);
    // The ranges a grouped statistic uses now (the user's; empty for its defaults).
    QList<QString> rangesOf(const Statistic &statistic) const;

    // The filter panel in a dock beside the directory tree, shown from the View menu.
    void createFilterDock();
    // After a scan: the pairs, the panel's values and the selection of the kept filter.
    void renewFilterAfterScan();
    // Selects the filter's photos (the pairs setting added), and period B's where periods are
    // compared, and shows the counts in the status line.
    void selectFilteredPhotos();
    // The raw-data tab shows the selected photos only.
    void restrictRawData();
    void showStatus();
    // Drill-down: a double-click on a statistic's table row or chart bar or slice adds its value
    // to the filter and shows the photos in the raw-data tab.
    void connectTableDrillDown();
    void connectChartDrillDown(const StatisticTab &tab);
    void drillDown(const Statistic &statistic, int row);
    PickedRow pickedRow(const Statistic &statistic, const QAbstractItemModel *rows, int row) const;
    // "Open" and "Show in folder" in the raw-data tab (context menu and Enter).
    void createRawDataActions();
    void openCurrentPhoto(bool itsFolder);

    Ui::MainWindow *ui;
    QComboBox *comboBoxThemeDate = nullptr;
    QLabel *labelStatus = nullptr;
    QFileSystemModel *fileSystemModel = nullptr;
    QSortFilterProxyModel *proxyModel = nullptr;
    QSqlDatabase db;
    RawDataModel *tableModel = nullptr;
    // Goes null when the thread has deleted itself after its scan.
    QPointer<QThread> workerThread;
    TMyWorkerObject *worker = nullptr;
    // Moves on with every scan started and every stop: a scan that ends while its number is still
    // current ran to its end.
    int scanNumber = 0;
    QString lastDirectory;
    bool includeSubDirs = false;
    QList<QString> fileFilters {
        "*.arw", "*.raf", "*.nef", "*.cr2", "*.cr3", "*.rw2", "*.jpg", "*.dng"
    }; // "*.orf" and the HEIF patterns are not on by default
    QList<QString> selectedDirectories;
    // Set when command-line directories met a store with no file type on; the first switch the
    // user makes ends it. Never written to the store.
    bool everyTypeUntilSwitched = false;
    bool workerRunning = false;
    int lastTab = 0;
    bool checkForUpdatesOnStart = false;
    QList<QString> makerExcludes;
    QList<QString> modelExcludes;
    // The user's range groups per statistic, by the statistic's settings key ("focalLengthGroups",
    // "isoGroups", ...); an empty list means the statistic's defaults.
    QHash<QString, QList<QString>> rangeGroups;
    // The keys of the statistics whose tabs the user hid through the View menu.
    QStringList hiddenStatistics;
    // How many files a scan reads at once ("Settings..." → General).
    int readerThreads = ReaderPool::defaultThreads;
    // The photo catalogue ("Settings..." → General): used by scans unless switched off for the
    // run; emptied by the next scan once "Forget remembered photos" was confirmed.
    bool rememberPhotos = true;
    int forgetUnseenAfterDays = PhotoCatalogue::defaultForgetUnseenAfterDays;
    bool catalogueSwitchedOff = false;
    bool forgetPhotosAtNextScan = false;
    // What the running scan said about the catalogue, shown after its count.
    QString catalogueNote;
    int chartDateTheme = 0;

    // The statistics drawn as a table beside a chart, in the order of the statistics; the form's
    // eleven are the tabs 0 to 10.
    QList<StatisticTab> statisticTabs;

    // Written to the store as "chartTheme"; nothing changes it.
    int chartTheme = 2;
    ChartDate3D *chartDate3D = nullptr;
    // The date chart, its line and the calendar wait for their tab to be shown (see
    // refreshShownViews()).
    bool dateViewsStale = false;
    // How many times a statistic was drawn; one filter change draws the current tab's once.
    int statisticsDrawn = 0;
    // The line about implausible dates above the date chart, and the Calendar tab.
    DateViews *dateViews = nullptr;
    // How names are counted ("Settings..." → General), and the hints where that matters.
    NameRules nameRules;
    NameHints *nameHints = nullptr;
    float camXRotation = 30.0f;
    float camYRotation = 30.0f;
    float camZoom = 100.0f;

    FilterPanel *filterPanel = nullptr;
    QDockWidget *filterDock = nullptr;
    // The photos every statistic, the date chart and the raw-data tab count.
    PhotoSelection photoSelection;
    // "Compare with...": period B beside photoSelection, counted by every statistic's table and
    // chart; the date chart, the calendar and the raw-data tab stay on period A.
    ComparedPeriods comparedPeriods;
    // "Count RAW+JPEG pairs once" (Settings → General); off by default.
    bool pairsOnce = false;
    int pairsMerged = 0;
    // The status line's text for the scan, before the filter adds its part.
    QString scanStatus;

    TObjectFileDownloader *fileDownloader = nullptr;
    QStringList startDirectories;
};
