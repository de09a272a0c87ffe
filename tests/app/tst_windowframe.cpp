// The window's frame: form structure, the widgets made in code, the directory tree, the order of
// construction and the quit question.
#include "apptestsupport.h"
#include "kelvaroversion.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "testutils.h"

#include <QAction>
#include <QChartView>
#include <QDockWidget>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QTest>
#include <QToolBar>
#include <QTreeView>

#include <memory>

using namespace apptest;

class tst_WindowFrame : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void windowAndTitle();
    void actions_data();
    void actions();
    void actionsInCreationOrder();
    void menus_data();
    void menus();
    void menuBarHoldsTheMenusInOrder();
    void toolBarEntriesInOrder();
    void themeSelectorEntries();
    void tabs_data();
    void tabs();
    void tabWidgetAndDateTab();
    void sizePolicies();
    void rawDataViewSettings();
    void dockAndTree();
    void statusLabel();
    void themeSelectorAtStart_data();
    void themeSelectorAtStart();
    void tabChangeFollowsLastTab();
    void quitQuestion_data();
    void quitQuestion();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    MainWindow &makeWindow();
    template<class T> T *child(const char *name)
    {
        T *found = window->findChild<T *>(name);
        if (!found)
            qWarning("no %s named %s", T::staticMetaObject.className(), name);
        return found;
    }
};

void tst_WindowFrame::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_WindowFrame::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

MainWindow &tst_WindowFrame::makeWindow()
{
    window = std::make_unique<MainWindow>();
    return *window;
}

void tst_WindowFrame::windowAndTitle()
{
    makeWindow();
    QCOMPARE(window->objectName(), QString("MainWindow"));
    QCOMPARE(window->windowTitle(), QString("Kelvaro Version " KELVARO_VERSION));
    QCOMPARE(window->size(), QSize(1113, 755));
#ifdef Q_OS_MACOS
    // Qt keeps the unified title and tool bar only where it exists.
    QVERIFY(window->unifiedTitleAndToolBarOnMac());
#endif
    auto *central = child<QWidget>("centralwidget");
    QVERIFY(central);
    QCOMPARE(window->centralWidget(), central);
    QCOMPARE(central->layout()->objectName(), QString("verticalLayout_2"));
    QCOMPARE(central->layout()->itemAt(0)->widget(), child<QTabWidget>("tabWidget"));
}

void tst_WindowFrame::actions_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip"); // null: none of its own
    QTest::addColumn<bool>("checkable");
    QTest::addColumn<bool>("hasIcon");

    const QString none;
    QTest::newRow("Quit") << "actionQuit"
                          << "Quit"
                          << "Leave program" << false << true;
    QTest::newRow("CR2") << "actionCanon_cr2"
                         << "Canon [*.cr2]"
                         << "Canon CR2 Raw-Files" << true << true;
    QTest::newRow("RAF") << "actionFuji_raf"
                         << "Fuji [*.raf]"
                         << "Fuji Raw-Files" << true << true;
    QTest::newRow("DNG") << "action_dng"
                         << "DNG [*.dng]"
                         << "DNG-Files" << true << true;
    QTest::newRow("NEF") << "actionNikon_nef"
                         << "Nikon [*.nef]"
                         << "Nikon Raw-Files" << true << true;
    QTest::newRow("ARW") << "actionSony_arw"
                         << "Sony [*.arw]"
                         << "Sony Raw-Files" << true << true;
    QTest::newRow("JPG") << "action_jpg"
                         << "JPEG [*.jpg]"
                         << "JPEG-Files" << true << true;
    QTest::newRow("subdirectories") << "actionIncludeSubDirs"
                                    << "Include SubDirectories" << none << true << true;
    QTest::newRow("About Kelvaro") << "actionAbout_Kelvaro"
                                   << "About Kelvaro" << none << false << false;
    QTest::newRow("About Qt") << "actionAbout_Qt"
                              << "About Qt" << none << false << false;
    QTest::newRow("copy chart") << "actionCopyChartToClipboard"
                                << "Copy Chart To Clipboard" << none << false << true;
    QTest::newRow("export") << "actionExportData"
                            << "Export Data..."
                            << "Export Data as csv-File" << false << true;
    QTest::newRow("CR3") << "actionCanon_cr3"
                         << "Canon [*.cr3]"
                         << "Canon CR3 Raw-Files" << true << true;
    QTest::newRow("RW2") << "actionPanasonic_rw2"
                         << "Panasonic [*.rw2]"
                         << "Panasonic Raw-Files" << true << true;
    QTest::newRow("ORF") << "actionOlympus_orf"
                         << "Olympus [*.orf]"
                         << "Olympus Raw-Files" << true << true;
    QTest::newRow("settings") << "actionGlobalSettings"
                              << "Settings..."
                              << "Settings" << false << true;
    QTest::newRow("HEIF") << "action_heif"
                          << "HEIF [*.heic *.heif *.hif *.avif]"
                          << "HEIF- and AVIF-Files" << true << true;
}

void tst_WindowFrame::actions()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QFETCH(QString, toolTip);
    QFETCH(bool, checkable);
    QFETCH(bool, hasIcon);

    makeWindow();
    auto *action = window->findChild<QAction *>(name);
    QVERIFY2(action, qPrintable(name));
    QCOMPARE(action->parent(), window.get());
    QCOMPARE(action->text(), text);
    // Without a tool tip of its own an action shows its text.
    QCOMPARE(action->toolTip(), toolTip.isNull() ? text : toolTip);
    QCOMPARE(action->isCheckable(), checkable);
    QVERIFY2(action->shortcut().isEmpty(), qPrintable(action->shortcut().toString()));
    QCOMPARE(!action->icon().isNull(), hasIcon);
    if (hasIcon) {
        QVERIFY2(!action->icon().pixmap(24, QIcon::Normal, QIcon::Off).isNull(),
                 "the icon's image is a compiled-in resource");
    }
    if (checkable) {
        // One image for the unchecked and one for the checked state.
        const QImage off = action->icon().pixmap(24, QIcon::Normal, QIcon::Off).toImage();
        const QImage on = action->icon().pixmap(24, QIcon::Normal, QIcon::On).toImage();
        QVERIFY(!on.isNull());
        QVERIFY2(on != off, "checked and unchecked images differ");
    }
}

void tst_WindowFrame::actionsInCreationOrder()
{
    makeWindow();
    QStringList names;
    for (QAction *action : window->findChildren<QAction *>(Qt::FindDirectChildrenOnly)) {
        if (action->objectName().startsWith("action"))
            names << action->objectName();
    }
    const QStringList expected { "actionQuit",
                                 "actionCanon_cr2",
                                 "actionFuji_raf",
                                 "action_dng",
                                 "actionNikon_nef",
                                 "actionSony_arw",
                                 "action_jpg",
                                 "actionIncludeSubDirs",
                                 "actionAbout_Kelvaro",
                                 "actionAbout_Qt",
                                 "actionCopyChartToClipboard",
                                 "actionExportData",
                                 "actionCanon_cr3",
                                 "actionPanasonic_rw2",
                                 "actionOlympus_orf",
                                 "actionGlobalSettings",
                                 "action_heif" };
    QCOMPARE(names, expected);
}

namespace {

// Object names of the actions, "|" for a separator.
QStringList entries(const QList<QAction *> &actions)
{
    QStringList names;
    for (QAction *action : actions)
        names << (action->isSeparator() ? QString("|") : action->objectName());
    return names;
}

} // namespace

void tst_WindowFrame::menus_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("File, trailing separator included")
        << "menuFile"
        << "File"
        << QStringList { "actionGlobalSettings", "actionExportData", "|", "actionQuit", "|" };
    QTest::newRow("Edit") << "menuEdit"
                          << "Edit" << QStringList { "actionCopyChartToClipboard" };
    QTest::newRow("Filter, trailing separator included")
        << "menuFilter"
        << "Filter" << QStringList { "actionIncludeSubDirs", "|",
                                     "actionCanon_cr2",      "actionCanon_cr3",
                                     "actionFuji_raf",       "actionNikon_nef",
                                     "actionOlympus_orf",    "actionPanasonic_rw2",
                                     "actionSony_arw",       "|",
                                     "action_dng",           "action_jpg",
                                     "action_heif",          "|" };
    QTest::newRow("View, one entry per statistic, then the filter panel")
        << "menuView"
        << "View"
        << QStringList { "actionViewMaker",
                         "actionViewModel",
                         "actionViewLens",
                         "actionViewFocalLength",
                         "actionViewFocalLengthG",
                         "actionViewISO",
                         "actionViewISOG",
                         "actionViewFNumber",
                         "actionViewExposureTime",
                         "actionViewMeteringMode",
                         "actionViewExposureMode",
                         "actionViewDateOriginal",
                         "actionViewFocalLength35",
                         "actionViewFocalLength35G",
                         "actionViewHourOfDay",
                         "actionViewWeekday",
                         "actionViewFileType",
                         "actionViewCalendar",
                         "|",
                         "actionViewFilterPanel" };
    QTest::newRow("Help") << "menuHelp"
                          << "Help" << QStringList { "actionAbout_Kelvaro", "actionAbout_Qt" };
}

void tst_WindowFrame::menus()
{
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(QStringList, expected);

    makeWindow();
    auto *menu = window->findChild<QMenu *>(name);
    QVERIFY2(menu, qPrintable(name));
    QCOMPARE(menu->title(), title);
    QCOMPARE(entries(menu->actions()), expected);
}

void tst_WindowFrame::menuBarHoldsTheMenusInOrder()
{
    makeWindow();
    auto *menuBar = child<QMenuBar>("menubar");
    QVERIFY(menuBar);
    QCOMPARE(window->menuBar(), menuBar);
    QStringList menus;
    for (QAction *action : menuBar->actions())
        menus << action->menu()->objectName();
    QCOMPARE(menus, (QStringList { "menuFile", "menuEdit", "menuFilter", "menuView", "menuHelp" }));
    QCOMPARE(menuBar->geometry(), QRect(0, 0, 1113, 21));
}

void tst_WindowFrame::toolBarEntriesInOrder()
{
    makeWindow();
    auto *toolBar = child<QToolBar>("toolBar");
    QVERIFY(toolBar);
    QCOMPARE(toolBar->windowTitle(), QString("toolBar"));
    QCOMPARE(window->toolBarArea(toolBar), Qt::TopToolBarArea);

    QStringList names;
    for (QAction *action : toolBar->actions()) {
        QWidget *widget = toolBar->widgetForAction(action);
        if (auto *label = qobject_cast<QLabel *>(widget))
            names << "label " + label->text();
        else if (qobject_cast<QComboBox *>(widget))
            names << widget->metaObject()->className() + QString(" theme");
        else
            names << (action->isSeparator() ? QString("|") : action->objectName());
    }
    const QStringList expected { "actionIncludeSubDirs",
                                 "|",
                                 "actionCanon_cr2",
                                 "actionCanon_cr3",
                                 "actionFuji_raf",
                                 "actionNikon_nef",
                                 "actionOlympus_orf",
                                 "actionPanasonic_rw2",
                                 "actionSony_arw",
                                 "|",
                                 "action_dng",
                                 "action_jpg",
                                 "action_heif",
                                 "|",
                                 "label Date-Chart Theme:",
                                 "QComboBox theme",
                                 "|",
                                 "actionGlobalSettings",
                                 "|",
                                 "actionCopyChartToClipboard",
                                 "actionExportData",
                                 "|",
                                 "actionQuit" };
    QCOMPARE(names, expected);
    QCOMPARE(MainWindowProbe(*window).themeCombo()->parentWidget(), toolBar);
}

void tst_WindowFrame::themeSelectorEntries()
{
    makeWindow();
    QComboBox *combo = MainWindowProbe(*window).themeCombo();
    const QStringList themes { "Qt",        "Primary Colors", "Digia", "Stone Moss",
                               "Army Blue", "Retro",          "Ebony", "Isabelle" };
    QCOMPARE(combo->count(), themes.size());
    for (int i = 0; i < themes.size(); ++i) {
        QCOMPARE(combo->itemText(i), themes.at(i));
        QCOMPARE(combo->itemData(i).toInt(), i);
    }
}

void tst_WindowFrame::tabs_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("tab");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QString>("stat"); // splitter, table and chart view are named after it

    QTest::newRow("0") << 0 << "tabMaker"
                       << "Maker"
                       << "verticalLayout_4"
                       << "Maker";
    QTest::newRow("1") << 1 << "tabModel"
                       << "Model"
                       << "horizontalLayout"
                       << "Model";
    QTest::newRow("2") << 2 << "tabLens"
                       << "Lens"
                       << "horizontalLayout_2"
                       << "Lens";
    QTest::newRow("3") << 3 << "tabFocalLength"
                       << "Focal Length"
                       << "horizontalLayout_3"
                       << "FocalLength";
    QTest::newRow("4") << 4 << "tabFocalLengthG"
                       << "Focal Length grouped"
                       << "verticalLayout_3"
                       << "FocalLengthG";
    QTest::newRow("5") << 5 << "tabISO"
                       << "ISO"
                       << "horizontalLayout_4"
                       << "ISO";
    QTest::newRow("6") << 6 << "tabISOG"
                       << "ISO grouped"
                       << "verticalLayout_6"
                       << "ISOG";
    QTest::newRow("7") << 7 << "tabFNumber"
                       << "FNumber"
                       << "horizontalLayout_5"
                       << "FNumber";
    QTest::newRow("8") << 8 << "tabExposureTime"
                       << "Exposure Time"
                       << "horizontalLayout_6"
                       << "ExposureTime";
    QTest::newRow("9") << 9 << "tabMeteringMode"
                       << "Metering Mode"
                       << "horizontalLayout_7"
                       << "MeteringMode";
    QTest::newRow("10") << 10 << "tabExposureMode"
                        << "Exposure Mode"
                        << "horizontalLayout_8"
                        << "ExposureMode";
    QTest::newRow("11") << 11 << "tabDateOriginal"
                        << "Date Original"
                        << "verticalLayout_7"
                        << "";
    QTest::newRow("12") << 12 << "tabRawData"
                        << "- Data -"
                        << "verticalLayout_5"
                        << "";
    // The statistics the form does not have, after its tabs, built like its own.
    QTest::newRow("13") << 13 << "tabFocalLength35"
                        << "Focal Length 35mm"
                        << "layoutFocalLength35"
                        << "FocalLength35";
    QTest::newRow("14") << 14 << "tabFocalLength35G"
                        << "Focal Length 35mm grouped"
                        << "layoutFocalLength35G"
                        << "FocalLength35G";
    QTest::newRow("15") << 15 << "tabHourOfDay"
                        << "Hour of Day"
                        << "layoutHourOfDay"
                        << "HourOfDay";
    QTest::newRow("16") << 16 << "tabWeekday"
                        << "Weekday"
                        << "layoutWeekday"
                        << "Weekday";
    QTest::newRow("17") << 17 << "tabFileType"
                        << "File Type"
                        << "layoutFileType"
                        << "FileType";
    // The calendar of shooting days after every statistic's tab.
    QTest::newRow("18") << 18 << "tabCalendar"
                        << "Calendar"
                        << "layoutCalendar"
                        << "";
}

void tst_WindowFrame::tabs()
{
    QFETCH(int, index);
    QFETCH(QString, tab);
    QFETCH(QString, text);
    QFETCH(QString, layout);
    QFETCH(QString, stat);

    makeWindow();
    auto *tabWidget = child<QTabWidget>("tabWidget");
    QCOMPARE(tabWidget->count(), 19);
    QWidget *page = tabWidget->widget(index);
    QCOMPARE(page->objectName(), tab);
    QCOMPARE(tabWidget->tabText(index), text);
    QCOMPARE(page->layout()->objectName(), layout);
    if (stat.isEmpty())
        return;

    auto *splitter = qobject_cast<QSplitter *>(page->layout()->itemAt(0)->widget());
    QVERIFY(splitter);
    QCOMPARE(splitter->objectName(), "splitter" + stat);
    QCOMPARE(splitter->orientation(), Qt::Horizontal);
    QCOMPARE(splitter->count(), 2);
    QVERIFY(qobject_cast<QTableView *>(splitter->widget(0)));
    QCOMPARE(splitter->widget(0)->objectName(), "tableView" + stat);
    QVERIFY(qobject_cast<QChartView *>(splitter->widget(1)));
    QCOMPARE(splitter->widget(1)->objectName(), "chartView" + stat);
}

void tst_WindowFrame::tabWidgetAndDateTab()
{
    makeWindow();
    auto *tabWidget = child<QTabWidget>("tabWidget");
    QVERIFY(tabWidget->isMovable());
    QCOMPARE(tabWidget->tabPosition(), QTabWidget::North);
    QCOMPARE(tabWidget->layoutDirection(), Qt::LeftToRight);
    QVERIFY(!tabWidget->autoFillBackground());

    QLayout *outer = child<QWidget>("tabDateOriginal")->layout();
    QCOMPARE(outer->count(), 2);
    auto *inner = qobject_cast<QVBoxLayout *>(outer->itemAt(0)->layout());
    QVERIFY2(inner, "the date chart gets an inner vertical box layout");
    QCOMPARE(inner->objectName(), QString("layoutDateOriginal"));
    // Below the chart, the line about photos dated before 1990 or after today.
    QCOMPARE(outer->itemAt(1)->widget()->objectName(), QString("implausibleDatesBar"));

    QCOMPARE(child<QWidget>("tabRawData")->layout()->itemAt(0)->widget(),
             child<QTableView>("tableViewRawData"));
}

void tst_WindowFrame::sizePolicies()
{
    makeWindow();
    const QStringList stats { "Maker",        "Model",        "Lens",        "FocalLength",
                              "FocalLengthG", "ISO",          "ISOG",        "FNumber",
                              "ExposureTime", "MeteringMode", "ExposureMode" };
    for (const QString &stat : stats) {
        const QSizePolicy chart = window->findChild<QChartView *>("chartView" + stat)->sizePolicy();
        QCOMPARE(chart.horizontalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(chart.verticalPolicy(), QSizePolicy::Expanding);
        QCOMPARE(chart.horizontalStretch(), 2);
        QCOMPARE(chart.verticalStretch(), 0);
    }
    auto *maker = child<QTableView>("tableViewMaker");
    QCOMPARE(maker->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(maker->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(maker->sizePolicy().horizontalStretch(), 0);
    QVERIFY(!maker->isSortingEnabled());
    QVERIFY(maker->horizontalHeader()->stretchLastSection());
    // The other statistic tables keep Qt's defaults.
    QVERIFY(!child<QTableView>("tableViewModel")->horizontalHeader()->stretchLastSection());
}

void tst_WindowFrame::rawDataViewSettings()
{
    makeWindow();
    auto *view = child<QTableView>("tableViewRawData");
    QCOMPARE(view->editTriggers(), QAbstractItemView::NoEditTriggers);
    QVERIFY(view->alternatingRowColors());
    QCOMPARE(view->selectionBehavior(), QAbstractItemView::SelectRows);
    QCOMPARE(view->selectionMode(), QAbstractItemView::SingleSelection);
    QVERIFY(view->isSortingEnabled());
    QVERIFY(view->horizontalHeader()->stretchLastSection());
}

void tst_WindowFrame::dockAndTree()
{
    makeWindow();
    auto *dock = child<QDockWidget>("dockWidget");
    QVERIFY(dock);
    QCOMPARE(dock->features(), QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    QCOMPARE(window->dockWidgetArea(dock), Qt::LeftDockWidgetArea);
    QCOMPARE(dock->widget()->objectName(), QString("dockWidgetContents"));
    QCOMPARE(dock->widget()->layout()->objectName(), QString("verticalLayout"));
    auto *tree = child<QTreeView>("treeViewDir");
    QCOMPARE(dock->widget()->layout()->itemAt(0)->widget(), tree);

    MainWindowProbe probe(*window);
    QFileSystemModel *files = probe.fileSystemModel();
    QCOMPARE(files->parent(), window.get());
    QCOMPARE(files->filter(), QDir::AllDirs | QDir::NoDotAndDotDot);
    // Where macOS mounts its volumes; a root path that does not exist is not taken.
    QCOMPARE(files->rootPath(), QDir("/Volumes").exists() ? QString("/Volumes") : QString("."));
    QVERIFY(!files->isReadOnly());
    QCOMPARE(probe.proxyModel()->parent(), nullptr);
    QCOMPARE(probe.proxyModel()->sourceModel(), files);

    QCOMPARE(tree->model(), probe.proxyModel());
    QVERIFY(tree->isSortingEnabled());
    QCOMPARE(tree->header()->sortIndicatorSection(), 0);
    QCOMPARE(tree->header()->sortIndicatorOrder(), Qt::AscendingOrder);
    QCOMPARE(tree->selectionMode(), QAbstractItemView::ExtendedSelection);
    QCOMPARE(tree->selectionBehavior(), QAbstractItemView::SelectRows);
    QVERIFY(tree->alternatingRowColors());
    QVERIFY(!tree->isColumnHidden(0));
    for (int column = 1; column <= 3; ++column)
        QVERIFY2(tree->isColumnHidden(column), qPrintable(QString::number(column)));
    // No root index: the tree shows the file system from its top.
    QVERIFY(!tree->rootIndex().isValid());
}

void tst_WindowFrame::statusLabel()
{
    // A remembered directory that no longer exists: nothing is selected and no scan starts, so
    // the label keeps what the start-up left in it.
    writeStore({ { "OtherSettings/lastDirectory", sandbox->filePath("gone") } });
    makeWindow();
    auto *label = window->statusBar()->findChild<QLabel *>();
    QVERIFY(label);
    QCOMPARE(label->alignment() & Qt::AlignHorizontal_Mask, Qt::AlignLeft);
    QCOMPARE(label->text(), QString());
    QCOMPARE(MainWindowProbe(*window).workerThread(), nullptr);
    QCOMPARE(MainWindowProbe(*window).selectedDirectories(), QList<QString>());
}

void tst_WindowFrame::themeSelectorAtStart_data()
{
    QTest::addColumn<int>("lastTab");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("tab 3 is the form's own: no change is signalled, selector stays enabled")
        << 3 << true;
    QTest::newRow("date tab") << 11 << true;
    QTest::newRow("Maker tab") << 0 << false;
    QTest::newRow("raw-data tab") << 12 << false;
}

void tst_WindowFrame::themeSelectorAtStart()
{
    QFETCH(int, lastTab);
    QFETCH(bool, enabled);

    writeStore({ { "MainWindow/lastTab", lastTab } });
    makeWindow();
    QCOMPARE(child<QTabWidget>("tabWidget")->currentIndex(), lastTab);
    QCOMPARE(MainWindowProbe(*window).themeCombo()->isEnabled(), enabled);
}

void tst_WindowFrame::tabChangeFollowsLastTab()
{
    makeWindow();
    MainWindowProbe probe(*window);
    auto *tabWidget = child<QTabWidget>("tabWidget");
    for (int index : { 11, 12, 5, 11, 0 }) {
        tabWidget->setCurrentIndex(index);
        QCOMPARE(probe.lastTab(), index);
        QCOMPARE(probe.themeCombo()->isEnabled(), index == 11);
    }
}

void tst_WindowFrame::quitQuestion_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<bool>("closed");

    QTest::newRow("OK writes the settings, then the window closes") << int(QMessageBox::Ok) << true;
    QTest::newRow("Cancel keeps the window open and writes nothing")
        << int(QMessageBox::Cancel) << false;
}

void tst_WindowFrame::quitQuestion()
{
    QFETCH(int, button);
    QFETCH(bool, closed);

    makeWindow();
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    QVERIFY(storeKeys().isEmpty());

    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    QMessageBox::StandardButtons buttons;
    QObject *parent = this;
    NextModal answer(isA<QMessageBox>(), [&](QWidget *widget) {
        auto *box = static_cast<QMessageBox *>(widget);
        text = box->text();
        icon = box->icon();
        buttons = box->standardButtons();
        defaultButton = box->standardButton(box->defaultButton());
        parent = box->parent();
        clickButton(box, button);
    });
    // The Quit action closes the window, which asks first.
    child<QAction>("actionQuit")->trigger();

    QVERIFY(answer.answered());
    QCOMPARE(text, QString("Do you really want to quit the application?"));
    QCOMPARE(icon, QMessageBox::Question);
    QCOMPARE(buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(defaultButton, QMessageBox::Cancel);
    QCOMPARE(parent, nullptr);
    QCOMPARE(window->isVisible(), !closed);
    QCOMPARE(readStore("MainWindow/lastTab").isValid(), closed);
    QCOMPARE(storeKeys().isEmpty(), !closed);
}

std::unique_ptr<QObject> makeWindowFrameTest()
{
    return std::make_unique<tst_WindowFrame>();
}

#include "tst_windowframe.moc"
