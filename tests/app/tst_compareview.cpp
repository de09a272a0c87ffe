// "Compare with..." on the filter panel: period B beside the filter's own days in every
// statistic's table and chart, the status line, an empty period, the clipboard copy, "Clear
// filter", turning it off again (every statement as before) and keeping it between runs.
#include "apptestsupport.h"
#include "chartcontroller.h"
#include "filterpanel.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "statistic.h"
#include "tdialognachricht.h"
#include "testutils.h"

#include <QAbstractBarSeries>
#include <QAction>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDateEdit>
#include <QGuiApplication>
#include <QListWidget>
#include <QMimeData>
#include <QPieSeries>
#include <QPushButton>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <memory>

using namespace apptest;

namespace {

// The sum of one column of a statistic's table.
qint64 columnTotal(const StatisticTab &tab, int column)
{
    const QAbstractItemModel *model = tab.tableView->model();
    qint64 total = 0;
    for (int row = 0; model && row < model->rowCount(); ++row)
        total += model->index(row, column).data().toLongLong();
    return total;
}

QStringList headers(const QAbstractItemModel *model)
{
    QStringList texts;
    for (int column = 0; model && column < model->columnCount(); ++column)
        texts << model->headerData(column, Qt::Horizontal).toString();
    return texts;
}

// What the chart draws per period: the bar sets' names, or one entry per pie.
QStringList drawnPeriods(QChart *chart)
{
    QStringList periods;
    for (QAbstractSeries *series : chart->series()) {
        if (auto *bars = qobject_cast<QAbstractBarSeries *>(series)) {
            for (QBarSet *set : bars->barSets())
                periods << set->label();
        } else if (qobject_cast<QPieSeries *>(series)) {
            periods << QStringLiteral("pie");
        }
    }
    return periods;
}

QString titled(const TChartSettings &settings, const QString &filterLine)
{
    const QString title = settings.wantsChartTitle ? settings.chartTitleText : QString();
    if (filterLine.isEmpty())
        return title;
    return title.isEmpty() ? filterLine : title.toHtmlEscaped() + "<br>" + filterLine;
}

} // namespace

class tst_CompareView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void compareWithShowsBothPeriodsEverywhere();
    void turnedOffEveryStatementIsAsBefore();
    void presetsOfPeriodB_data();
    void presetsOfPeriodB();
    void emptyPeriodSaysSo();
    void clipboardCarriesBothPeriods();
    void clearFilterKeepsTheComparison();
    void comparisonStoredBetweenRuns();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<MainWindow> window;
    // Four Canon photos of 2023, two Nikon photos of 2021 and a Sony photo without a date; the
    // panel counts its presets from 2022-03-01.
    bool scanned();
    FilterPanel *panel() const { return window->findChild<FilterPanel *>(); }
    QCheckBox *compareBox() const { return panel()->findChild<QCheckBox *>("checkBoxCompare"); }
    void pickPresetB(int preset)
    {
        auto *combo = panel()->findChild<QComboBox *>("comboBoxComparePreset");
        combo->setCurrentIndex(preset);
        emit combo->activated(preset);
    }
};

void tst_CompareView::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_CompareView::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_CompareView::scanned()
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
    if (!waitForScanEnd(*window))
        return false;
    panel()->setToday(QDate(2022, 3, 1));
    return true;
}

void tst_CompareView::compareWithShowsBothPeriodsEverywhere()
{
    QVERIFY(scanned());
    QCOMPARE(compareBox()->text(), QString("Compare with..."));
    QVERIFY(!compareBox()->isChecked());
    // Turned on, period B is last year.
    compareBox()->click();
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(), QString("Valid files: 7 — comparing A: all (7) with B: 2021 (2)"));
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        const int count = tab.statistic->countColumn();
        const QString name = tab.statistic->tabTitle;
        QVERIFY2(headers(tab.tableView->model()).mid(count)
                     == (QStringList { "A: all", "B: 2021" }),
                 qPrintable(name));
        QVERIFY2(columnTotal(tab, count) == 7, qPrintable(name));
        QVERIFY2(columnTotal(tab, count + 1) == 2, qPrintable(name));
        const QStringList periods = drawnPeriods(tab.chartView->chart());
        QVERIFY2(periods == (QStringList { "A: all", "B: 2021" })
                     || periods == (QStringList { "pie", "pie" }),
                 qPrintable(name + ": " + periods.join(", ")));
        QVERIFY2(tab.chartView->chart()->title()
                     == titled(tab.settings, "A: all compared with B: 2021"),
                 qPrintable(tab.chartView->chart()->title()));
    }
    // The raw-data tab stays on period A.
    QCOMPARE(probe.tableModel()->rowCount(), 7);
}

void tst_CompareView::turnedOffEveryStatementIsAsBefore()
{
    QVERIFY(scanned());
    compareBox()->click();
    compareBox()->click();
    QVERIFY(!panel()->comparison().active);
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(), QString("Valid files: 7"));
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        const auto *model = qobject_cast<const QSqlQueryModel *>(tab.tableView->model());
        QVERIFY(model);
        QCOMPARE(model->query().lastQuery(), tab.statistic->selectStatement());
        QCOMPARE(headers(model), tab.statistic->headers);
        QCOMPARE(tab.chartView->chart()->title(), titled(tab.settings, QString()));
    }
}

void tst_CompareView::presetsOfPeriodB_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<QString>("status");

    QTest::newRow("this year (2022)")
        << int(FilterPanel::ThisYear) << "Valid files: 7 — comparing A: all (7) with B: 2022 (0)";
    QTest::newRow("last 12 months") << int(FilterPanel::LastTwelveMonths)
                                    << "Valid files: 7 — comparing A: all (7) with B: 2021-03-02 "
                                       "– 2022-03-01 (2)";
    QTest::newRow("all") << int(FilterPanel::AllDays)
                         << "Valid files: 7 — comparing A: all (7) with B: all (7)";
}

void tst_CompareView::presetsOfPeriodB()
{
    QFETCH(int, preset);
    QFETCH(QString, status);
    QVERIFY(scanned());
    compareBox()->click();
    pickPresetB(preset);
    QCOMPARE(MainWindowProbe(*window).status(), status);
}

void tst_CompareView::emptyPeriodSaysSo()
{
    QVERIFY(scanned());
    compareBox()->click();
    PeriodComparison empty = panel()->comparison();
    empty.from = QDate(2019, 1, 1);
    empty.to = QDate(2019, 12, 31);
    panel()->setComparison(empty);
    // The user edits the last day, which shows the same.
    panel()->findChild<QDateEdit *>("dateEditCompareTo")->setDate(QDate(2019, 12, 30));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(),
             QString("Valid files: 7 — comparing A: all (7) with B: 2019-01-01 – 2019-12-30 (0)"));
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        QCOMPARE(columnTotal(tab, tab.statistic->countColumn() + 1), qint64(0));
        QCOMPARE(columnTotal(tab, tab.statistic->countColumn()), qint64(7));
        QVERIFY2(tab.chartView->chart()->title().endsWith(
                     "No photo matches the filter in B: 2019-01-01 – 2019-12-30"),
                 qPrintable(tab.chartView->chart()->title()));
    }
}

void tst_CompareView::clipboardCarriesBothPeriods()
{
    QVERIFY(scanned());
    window->findChild<QTabWidget *>("tabWidget")->setCurrentIndex(0);
    NextModal first(isA<TDialogNachricht>(),
                    [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionCopyChartToClipboard")->trigger();
    QVERIFY(first.answered());
    // Without a comparison the clipboard holds the image alone, as ever.
    QVERIFY(!QGuiApplication::clipboard()->image().isNull());
    QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasText());

    compareBox()->click();
    NextModal second(isA<TDialogNachricht>(),
                     [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionCopyChartToClipboard")->trigger();
    QVERIFY(second.answered());
    QVERIFY(!QGuiApplication::clipboard()->image().isNull());
    QCOMPARE(QGuiApplication::clipboard()->text(),
             QString("Maker;A: all;B: 2021\nCanon;4;0\nNIKON CORPORATION;2;2\nSONY;1;0\n"));
}

void tst_CompareView::clearFilterKeepsTheComparison()
{
    QVERIFY(scanned());
    QListWidget *makers = panel()->findChild<QListWidget *>("listWidgetmaker");
    makers->item(0)->setCheckState(Qt::Checked);
    compareBox()->click();
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(),
             QString("Valid files: 7 — showing 4: Canon — comparing A: all (4) with B: 2021 (0)"));
    panel()->findChild<QPushButton *>("pushButtonClear")->click();
    QCOMPARE(probe.status(), QString("Valid files: 7 — comparing A: all (7) with B: 2021 (2)"));
}

void tst_CompareView::comparisonStoredBetweenRuns()
{
    QVERIFY(scanned());
    MainWindowProbe(*window).saveSettings();
    QVERIFY(!readStore("Filter/compare").isValid());
    compareBox()->click();
    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("Filter/compare").toBool(), true);
    QCOMPARE(readStore("Filter/compareFrom").toString(), QString("2021-01-01"));
    QCOMPARE(readStore("Filter/compareTo").toString(), QString("2021-12-31"));
    window.reset();
    releaseDatabase();

    window = std::make_unique<MainWindow>();
    QVERIFY(waitForScanEnd(*window));
    QVERIFY(compareBox()->isChecked());
    QCOMPARE(MainWindowProbe(*window).status(),
             QString("Valid files: 7 — comparing A: all (7) with B: 2021 (2)"));
    // Turned off, the store holds nothing of it again.
    compareBox()->click();
    MainWindowProbe(*window).saveSettings();
    QVERIFY(!readStore("Filter/compare").isValid());
    QVERIFY(!readStore("Filter/compareFrom").isValid());
}

std::unique_ptr<QObject> makeCompareViewTest()
{
    return std::make_unique<tst_CompareView>();
}

#include "tst_compareview.moc"
