#include "mainwindow.h"
#include "ui_mainwindow.h"

#include "dateviews.h"
#include "filetypes.h"
#include "namehints.h"
#include "tdialogabout.h"
#include "updatesite.h"

#include <QChartView>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileSystemModel>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QSortFilterProxyModel>
#include <QStatusBar>
#include <QThread>
#include <QToolButton>

MainWindow::MainWindow(QWidget *parent)
    : MainWindow(QStringList(), parent)
{ }

MainWindow::MainWindow(const QStringList &startDirectories, QWidget *parent)
    : MainWindow(startDirectories, Catalogue::AsSet, parent)
{ }

MainWindow::MainWindow(const QStringList &startDirectories, Catalogue catalogue, QWidget *parent)
    : QMainWindow(parent)
    , ui(new Ui::MainWindow)
    , catalogueSwitchedOff(catalogue == Catalogue::SwitchedOff)
    , startDirectories(startDirectories)
{
    ui->setupUi(this);
    createMoreUI();
    createStatusBar();
    readSettings();
    createViewMenu();
    prepareTreeModel();
    prepareTreeView();
    createDBAndTable();
    prepareTableModel();
    prepareTableViewRawData();
    createRawDataActions();
    setupConnections();
    if (checkForUpdatesOnStart)
        checkForUpdates();
    ui->tabWidget->setCurrentIndex(lastTab);
    // The tree has the remembered (or the given) directories selected: this starts the first scan.
    onDirectorySelectionChanged();
}

MainWindow::~MainWindow()
{
    // A thread that is destroyed while it runs takes the whole process down; the window is the
    // thread's parent, so a scan still running when the window goes is stopped first.
    if (workerThread && workerThread->isRunning())
        stopWorkerThread();
    delete ui;
    // The proxy has no parent; the tree view lets go of it when it is destroyed.
    delete proxyModel;
}

void MainWindow::createMoreUI()
{
    setWindowTitle(QCoreApplication::applicationName() + " Version "
                   + QCoreApplication::applicationVersion());

    auto *themeLabel = new QLabel(tr("Date-Chart Theme:"), ui->toolBar);
    comboBoxThemeDate = new QComboBox(ui->toolBar);
    ui->toolBar->insertWidget(ui->actionGlobalSettings, themeLabel);
    ui->toolBar->insertWidget(ui->actionGlobalSettings, comboBoxThemeDate);
    ui->toolBar->insertSeparator(ui->actionGlobalSettings);

    // The user data is the number of QtDataVisualization's built-in theme (Q3DTheme::Theme).
    const QList<QString> themes { "Qt",        "Primary Colors", "Digia", "Stone Moss",
                                  "Army Blue", "Retro",          "Ebony", "Isabelle" };
    for (int theme = 0; theme < themes.size(); ++theme)
        comboBoxThemeDate->addItem(themes.at(theme), theme);

    statisticTabs = makeStatisticTabs(ui->tabWidget);
    dateViews = new DateViews(ui->tabWidget, ui->verticalLayout_7, this);
    connect(dateViews, &DateViews::hidingChanged, this, &MainWindow::updateCharts);
    nameHints = new NameHints(statisticTabs, this);
    connect(nameHints, &NameHints::mergeRequested, this, [this] {
        nameRules.mergeBlanksAndCase = true;
        // The filter's lists and the photos it keeps follow the merged names.
        renewFilterAfterScan();
        updateCharts();
    });
    // With every statistic's tab the bar is wider than most windows: it scrolls, and the tabs'
    // texts stay whole.
    ui->tabWidget->setUsesScrollButtons(true);
    ui->tabWidget->setElideMode(Qt::ElideNone);
    createTabListButton();

    createFilterDock();
    connectTableDrillDown();

    // The window opens the chart settings dialog from the statistic charts' context menu.
    for (const StatisticTab &tab : std::as_const(statisticTabs))
        tab.chartView->installEventFilter(this);
}

// A button beside the tabs lists every shown tab, so that a tab scrolled out of sight is one
// click away.
void MainWindow::createTabListButton()
{
    auto *button = new QToolButton(ui->tabWidget);
    button->setObjectName(QStringLiteral("tabListButton"));
    button->setText(QStringLiteral("☰"));
    button->setToolTip(tr("All tabs"));
    button->setAutoRaise(true);
    button->setPopupMode(QToolButton::InstantPopup);
    auto *menu = new QMenu(button);
    button->setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        QTabWidget *tabs = ui->tabWidget;
        for (int index = 0; index < tabs->count(); ++index) {
            if (!tabs->isTabVisible(index))
                continue;
            QAction *action = menu->addAction(tabs->tabText(index));
            action->setCheckable(true);
            action->setChecked(index == tabs->currentIndex());
            connect(action, &QAction::triggered, tabs,
                    [tabs, index] { tabs->setCurrentIndex(index); });
        }
    });
    ui->tabWidget->setCornerWidget(button, Qt::TopRightCorner);
}

void MainWindow::createViewMenu()
{
    for (const Statistic &statistic : Statistics::all()) {
        QAction *action = ui->menuView->addAction(statistic.tabTitle);
        action->setObjectName(QStringLiteral("actionView") + statistic.widgetName);
        action->setCheckable(true);
        const bool shown = !hiddenStatistics.contains(statistic.key);
        action->setChecked(shown);
        showStatisticTab(statistic, shown);
        connect(action, &QAction::toggled, this,
                [this, &statistic](bool checked) { showStatisticTab(statistic, checked); });
    }
    QAction *calendar =
        dateViews->addViewAction(ui->menuView, !hiddenStatistics.contains(DateViews::calendarKey));
    connect(calendar, &QAction::toggled, this, [this](bool shown) {
        hiddenStatistics.removeAll(DateViews::calendarKey);
        if (!shown)
            hiddenStatistics.append(DateViews::calendarKey);
    });
    ui->menuView->addSeparator();
    ui->menuView->addAction(filterDock->toggleViewAction());
}

void MainWindow::showStatisticTab(const Statistic &statistic, bool shown)
{
    if (QWidget *page = statisticPage(ui->tabWidget, statistic))
        ui->tabWidget->setTabVisible(ui->tabWidget->indexOf(page), shown);
    hiddenStatistics.removeAll(statistic.key);
    if (!shown)
        hiddenStatistics.append(statistic.key);
}

QList<QString> MainWindow::rangesOf(const Statistic &statistic) const
{
    return statistic.rangeGroups ? rangeGroups.value(statistic.rangeGroups->settingsKey)
                                 : QList<QString>();
}

void MainWindow::createStatusBar()
{
    labelStatus = new QLabel("  ");
    labelStatus->setAlignment(Qt::AlignLeft);
    ui->statusbar->addWidget(labelStatus, 0);
}

void MainWindow::prepareTreeModel()
{
    fileSystemModel = new QFileSystemModel(this);
    fileSystemModel->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    // Where macOS mounts its volumes; elsewhere the tree simply starts at the top.
    fileSystemModel->setRootPath("/Volumes");
    fileSystemModel->setReadOnly(false);
    proxyModel = new QSortFilterProxyModel();
    proxyModel->setSourceModel(fileSystemModel);
}

void MainWindow::prepareTreeView()
{
    QTreeView *tree = ui->treeViewDir;
    tree->setModel(proxyModel);
    tree->setSortingEnabled(true);
    tree->sortByColumn(0, Qt::AscendingOrder);
    tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    tree->setSelectionBehavior(QAbstractItemView::SelectRows);
    if (startDirectories.isEmpty()) {
        const QModelIndex index = proxyModel->mapFromSource(fileSystemModel->index(lastDirectory));
        tree->setCurrentIndex(index);
        tree->expand(index);
        tree->scrollTo(index, QAbstractItemView::PositionAtCenter);
    } else {
        selectStartDirectories();
    }
    tree->setAlternatingRowColors(true);
    for (int column = 1; column <= 3; ++column)
        tree->hideColumn(column);
}

void MainWindow::selectStartDirectories()
{
    QTreeView *tree = ui->treeViewDir;
    bool first = true;
    for (const QString &directory : std::as_const(startDirectories)) {
        const QModelIndex index = proxyModel->mapFromSource(fileSystemModel->index(directory));
        if (!index.isValid())
            continue;
        if (first) {
            tree->setCurrentIndex(index);
            tree->scrollTo(index, QAbstractItemView::PositionAtCenter);
            first = false;
        } else {
            tree->selectionModel()->select(index,
                                           QItemSelectionModel::Select | QItemSelectionModel::Rows);
        }
        tree->expand(index);
    }

    // Directories named on the command line are meant to be scanned: with every file type off
    // the scan would find nothing, so this run reads every type until the user switches one. The
    // switches and the stored choice stay as the user left them.
    everyTypeUntilSwitched = fileFilters.isEmpty();
}

void MainWindow::setupConnections()
{
    connect(ui->treeViewDir->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &MainWindow::onDirectorySelectionChanged);
    connect(comboBoxThemeDate, &QComboBox::currentIndexChanged, this,
            &MainWindow::onCurrentThemeDateChanged);
    connect(ui->tabWidget, &QTabWidget::currentChanged, this,
            &MainWindow::onCurrentTabWidgetChanged);
}

QList<QString> MainWindow::scanPatterns() const
{
    if (!everyTypeUntilSwitched)
        return fileFilters;
    QList<QString> every;
    for (const auto &[action, patterns] : fileTypeActions())
        every.append(patterns);
    return every;
}

// Each type's switch is the form's action whose name ends in "_" and the type's name in small
// letters ("actionCanon_cr2", "action_heif").
QList<QPair<QAction *, QStringList>> MainWindow::fileTypeActions() const
{
    QList<QPair<QAction *, QStringList>> switches;
    for (const FileTypes::FileType &type : FileTypes::all()) {
        const QString suffix = QLatin1Char('_') + type.name.toLower();
        for (QAction *action : ui->toolBar->actions()) {
            if (action->objectName().endsWith(suffix))
                switches.append({ action, type.patterns });
        }
    }
    return switches;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    const bool quit = userReallyWantsToQuit();
    if (quit)
        saveSettings();
    event->setAccepted(quit);
}

bool MainWindow::userReallyWantsToQuit()
{
    QMessageBox question;
    question.setIcon(QMessageBox::Question);
    question.setText(tr("Do you really want to quit the application?"));
    question.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
    question.setDefaultButton(QMessageBox::Cancel);
    return question.exec() == QMessageBox::Ok;
}

void MainWindow::on_actionQuit_triggered()
{
    close();
}

void MainWindow::on_actionAbout_Kelvaro_triggered()
{
    TDialogAbout about(UpdateSite::host(), nullptr);
    about.exec();
}

void MainWindow::on_actionAbout_Qt_triggered()
{
    QMessageBox::aboutQt(this, tr("About Qt"));
}
