// The statistics the window shows beyond its form's: the View menu that shows and hides each
// statistic's tab, and the tables that agree with kelvaro-stats on the same folder.
#include "apptestsupport.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "statistic.h"
#include "testutils.h"

#include <QAction>
#include <QMap>
#include <QProcess>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

class tst_StatisticsView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void viewMenuShowsAndHidesTabs();
    void hiddenTabsAreRemembered();
    void tablesAgreeWithKelvaroStats();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    // A window whose first scan read the folder "photos": photos of three cameras, one of them
    // without a date.
    bool scanned();
    bool tabShown(const QString &widgetName) const;
};

void tst_StatisticsView::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_StatisticsView::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_StatisticsView::scanned()
{
    const QString directory = sandbox->makeDir("photos");
    fixture::PhotoTags nikon = photoTags("NIKON CORPORATION", "NIKON D70", "18-70mm");
    nikon.dateTimeOriginal = "2021:07:03 18:00:00";
    fixture::PhotoTags sony = photoTags("SONY", "ILCE-7M3", "FE 24-105mm");
    sony.dateTimeOriginal = QString();
    if (!writePhotos(directory, 4, photoTags("Canon", "EOS R5", "RF24-70mm F2.8"), "canon")
        || !writePhotos(directory, 2, nikon, "nikon") || !writePhotos(directory, 1, sony, "sony"))
        return false;
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<MainWindow>();
    return waitForScanEnd(*window)
        && MainWindowProbe(*window).status() == QString("Valid files: 7");
}

bool tst_StatisticsView::tabShown(const QString &widgetName) const
{
    auto *tabs = window->findChild<QTabWidget *>("tabWidget");
    return tabs->isTabVisible(tabs->indexOf(window->findChild<QWidget *>("tab" + widgetName)));
}

void tst_StatisticsView::viewMenuShowsAndHidesTabs()
{
    window = std::make_unique<MainWindow>();
    for (const Statistic &statistic : Statistics::all()) {
        auto *action = window->findChild<QAction *>("actionView" + statistic.widgetName);
        QVERIFY2(action, qPrintable(statistic.tabTitle));
        QCOMPARE(action->text(), statistic.tabTitle);
        QVERIFY(action->isCheckable());
        QVERIFY(action->isChecked());
        QVERIFY(tabShown(statistic.widgetName));
    }
    auto *weekday = window->findChild<QAction *>("actionViewWeekday");
    auto *maker = window->findChild<QAction *>("actionViewMaker");
    weekday->trigger();
    maker->trigger();
    QVERIFY(!tabShown("Weekday"));
    QVERIFY(!tabShown("Maker"));
    QVERIFY(tabShown("Model"));
    // Hidden, not removed: every tab keeps its index.
    QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->count(), 19);
    QCOMPARE(MainWindowProbe(*window).hiddenStatistics(), (QStringList { "weekday", "maker" }));
    maker->trigger();
    QVERIFY(tabShown("Maker"));
    QCOMPARE(MainWindowProbe(*window).hiddenStatistics(), QStringList { "weekday" });
}

void tst_StatisticsView::hiddenTabsAreRemembered()
{
    window = std::make_unique<MainWindow>();
    window->findChild<QAction *>("actionViewHourOfDay")->trigger();
    window->findChild<QAction *>("actionViewDateOriginal")->trigger();
    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("MainWindow/hiddenStatistics").toStringList(),
             (QStringList { "hourOfDay", "dateOriginal" }));
    window.reset();
    releaseDatabase();

    window = std::make_unique<MainWindow>();
    QVERIFY(!tabShown("HourOfDay"));
    QVERIFY(!tabShown("DateOriginal"));
    QVERIFY(tabShown("Weekday"));
    QVERIFY(!window->findChild<QAction *>("actionViewHourOfDay")->isChecked());
    QVERIFY(window->findChild<QAction *>("actionViewWeekday")->isChecked());
}

void tst_StatisticsView::tablesAgreeWithKelvaroStats()
{
    QVERIFY(scanned());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_CONFIG_HOME", sandbox->configDir());
    QProcess stats;
    stats.setProcessEnvironment(environment);
    stats.start(KELVARO_STATS_TOOL,
                { "--format", "csv", "--type", "jpg", sandbox->filePath("photos") });
    QVERIFY(stats.waitForFinished(60000));
    QCOMPARE(stats.exitCode(), 0);
    QMap<QString, QStringList> fromProgram;
    const QStringList lines = QString::fromUtf8(stats.readAllStandardOutput()).split('\n');
    for (const QString &line : lines.mid(1)) {
        const QStringList fields = line.split(';');
        if (fields.size() == 3)
            fromProgram[fields[0]] << fields[1] + "=" + fields[2];
    }

    MainWindowProbe probe(*window);
    QCOMPARE(probe.chartedStatistics(), Statistics::all().size() - 1);
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        const QAbstractItemModel *model = tab.tableView->model();
        QVERIFY(model);
        QStringList shown;
        int total = 0;
        for (int row = 0; row < model->rowCount(); ++row) {
            const int count = model->index(row, tab.statistic->countColumn()).data().toInt();
            shown << model->index(row, tab.statistic->valueColumn()).data().toString() + "="
                    + QString::number(count);
            total += count;
        }
        QCOMPARE(shown, fromProgram.value(tab.statistic->tabTitle));
        QVERIFY2(total == 7, qPrintable(tab.statistic->tabTitle));
    }
    QCOMPARE(fromProgram.value("Date Original"),
             (QStringList { "2021-07-03=2", "2023-07-14=4", "n.a.=1" }));
}

std::unique_ptr<QObject> makeStatisticsViewTest()
{
    return std::make_unique<tst_StatisticsView>();
}

#include "tst_statisticsview.moc"
