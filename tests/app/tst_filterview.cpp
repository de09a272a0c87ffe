// The filter panel: its lists of the scan's values, every statistic, the date chart, the status
// line and the raw-data tab narrowed by it, an empty result, the presets of the date range, the
// RAW+JPEG pairs, the export under a filter, and the filter kept over a rescan and between runs.
#include "apptestsupport.h"
#include "calendarchart.h"
#include "chartcontroller.h"
#include "chartdate3d.h"
#include "filterpanel.h"
#include "mainwindow.h"
#include "mainwindowprobe.h"
#include "statistic.h"
#include "tdialogglobalsettings.h"
#include "tdialognachricht.h"
#include "testutils.h"
#include "urlcatcher.h"

#include <QAbstractBarSeries>
#include <QAbstractItemModel>
#include <QAction>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QFile>
#include <QListWidget>
#include <QPieSeries>
#include <QPieSlice>
#include <QPushButton>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

#include <cmath>
#include <memory>

using namespace apptest;

namespace {

// The product asks with a file dialog; this window is told the answer beforehand.
class ExportWindow : public MainWindow
{
public:
    using MainWindow::MainWindow;
    QString exportFileName;

protected:
    QString askExportFileName() override { return exportFileName; }
};

const PhotoFilterField &field(const QString &key)
{
    for (const PhotoFilterField &row : PhotoFilterFields::all()) {
        if (row.key == key)
            return row;
    }
    qFatal("no filter field %s", qPrintable(key));
}

QStringList texts(const QListWidget *list)
{
    QStringList result;
    for (int row = 0; row < list->count(); ++row)
        result << list->item(row)->text();
    return result;
}

// Checks or unchecks the entry whose text starts with the value, as a click on its box does.
bool setChecked(QListWidget *list, const QString &value, bool checked)
{
    for (int row = 0; row < list->count(); ++row) {
        QListWidgetItem *item = list->item(row);
        if (item->text().startsWith(value + " (")) {
            item->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
            return true;
        }
    }
    return false;
}

// The chart's title under a filter line: the line below the title, or alone.
QString titled(const TChartSettings &settings, const QString &filterLine)
{
    const QString title = settings.wantsChartTitle ? settings.chartTitleText : QString();
    if (filterLine.isEmpty())
        return title;
    return title.isEmpty() ? filterLine : title.toHtmlEscaped() + "<br>" + filterLine;
}

int tableTotal(const StatisticTab &tab)
{
    const QAbstractItemModel *model = tab.tableView->model();
    int total = 0;
    for (int row = 0; model && row < model->rowCount(); ++row)
        total += model->index(row, tab.statistic->countColumn()).data().toInt();
    return total;
}

} // namespace

class tst_FilterView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void panelListsTheScansValuesWithCounts();
    void viewMenuShowsThePanel();
    void checkedMakerNarrowsEveryStatistic();
    void calendarFollowsTheFilter();
    void clearFilterRestoresTodaysStatements();
    void emptyResultSaysSo();
    void datePresets_data();
    void datePresets();
    void exportUnderAFilter();
    void filterKeptOverARescanWhereItsValuesExist();
    void filterStoredBetweenRuns();
    void pairsCountedOnceWhenSwitchedOn();
    void pairsSwitchedOnInTheSettingsDialog();
    void morePairsThanOneReadPlural();
    void drillDownFromATableRow();
    void drillDownFromAChartBar();
    void aFilterChangeDrawsTheShownTabAndTheOthersWhenShown();
    void oneFilterChangeDrawsOnce();
    void copyOfAStaleChartDrawsItFirst();
    void drillDownFromEveryNumericRow_data();
    void drillDownFromEveryNumericRow();
    void pickedRowIsListedAndRemovable();
    void drillDownFromANumericChartBar();
    void drillDownFromAPieSlice();
    void pickedRowsAreDroppedOnRestart();
    void openAndShowInFolder();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<ExportWindow> window;
    // A window whose first scan read the folder "photos": four Canon photos of 2023, two Nikon
    // photos of 2021 and a Sony photo without a date.
    bool scanned(const QVariantMap &store = {});
    // A NEF with its JPEG and a JPEG alone.
    bool scannedPairs(const QVariantMap &store = {});
    // Six Canon photos whose settings differ: three at ISO 100, 24 mm, f/2.8, 1/250 s on a Monday
    // morning; two at ISO 800, 200 mm, f/8, 1/1000 s on a Saturday evening; one at 600 mm, f/5.6,
    // 2 s without ISO, 35 mm focal length and date.
    bool scannedVaried();
    // The Data tab's rows after a double-click on the statistic's table row.
    int drilledPhotos(const StatisticTab &tab, int row);
    FilterPanel *panel() const { return window->findChild<FilterPanel *>(); }
    QListWidget *list(const QString &key) const { return panel()->list(field(key)); }
};

void tst_FilterView::init()
{
    sandbox = std::make_unique<testutils::Sandbox>();
}

void tst_FilterView::cleanup()
{
    window.reset();
    releaseDatabase();
    sandbox.reset();
}

bool tst_FilterView::scannedPairs(const QVariantMap &store)
{
    const QString directory = sandbox->makeDir("pairs");
    const fixture::PhotoTags tags = photoTags("Canon", "EOS R5", "RF24-70mm F2.8");
    if (!fixture::writePhoto(directory + "/A.NEF", fixture::Format::TiffLittle, tags)
        || !fixture::writePhoto(directory + "/A.jpg", fixture::Format::Jpeg, tags)
        || !fixture::writePhoto(directory + "/B.jpg", fixture::Format::Jpeg, tags))
        return false;
    QVariantMap values { { "OtherSettings/lastDirectory", directory },
                         { "OtherSettings/fileFilters", QStringList { "*.jpg", "*.nef" } } };
    values.insert(store);
    writeStore(values);
    window = std::make_unique<ExportWindow>();
    return waitForScanEnd(*window);
}

bool tst_FilterView::scanned(const QVariantMap &store)
{
    const QString directory = sandbox->makeDir("photos");
    fixture::PhotoTags nikon = photoTags("NIKON CORPORATION", "NIKON D70", "18-70mm");
    nikon.dateTimeOriginal = "2021:07:03 18:00:00";
    fixture::PhotoTags sony = photoTags("SONY", "ILCE-7M3", "FE 24-105mm");
    sony.dateTimeOriginal = QString();
    if (!writePhotos(directory, 4, photoTags("Canon", "EOS R5", "RF24-70mm F2.8"), "canon")
        || !writePhotos(directory, 2, nikon, "nikon") || !writePhotos(directory, 1, sony, "sony"))
        return false;
    QVariantMap values { { "OtherSettings/lastDirectory", directory },
                         { "OtherSettings/fileFilters", QStringList { "*.jpg", "*.nef" } } };
    values.insert(store);
    writeStore(values);
    window = std::make_unique<ExportWindow>();
    return waitForScanEnd(*window);
}

bool tst_FilterView::scannedVaried()
{
    const QString directory = sandbox->makeDir("varied");
    fixture::PhotoTags morning = photoTags("Canon", "EOS R5", "RF24-70mm F2.8");
    morning.dateTimeOriginal = "2023:05:01 10:00:00";
    morning.iso = 100;
    morning.focalLength = fixture::Rational { 24, 1 };
    morning.focalLengthIn35mm = 24;
    morning.fNumber = fixture::Rational { 28, 10 };
    morning.exposureTime = fixture::Rational { 1, 250 };
    morning.meteringMode = 5;
    morning.exposureProgram = 1;
    fixture::PhotoTags evening = morning;
    evening.dateTimeOriginal = "2021:07:03 18:00:00";
    evening.iso = 800;
    evening.focalLength = fixture::Rational { 200, 1 };
    evening.focalLengthIn35mm = 200;
    evening.fNumber = fixture::Rational { 8, 1 };
    evening.exposureTime = fixture::Rational { 1, 1000 };
    evening.meteringMode = 2;
    evening.exposureProgram = 3;
    fixture::PhotoTags bare = morning;
    bare.dateTimeOriginal = QString();
    bare.iso.reset();
    bare.focalLength = fixture::Rational { 600, 1 };
    bare.focalLengthIn35mm.reset();
    bare.fNumber = fixture::Rational { 56, 10 };
    bare.exposureTime = fixture::Rational { 2, 1 };
    bare.meteringMode = 3;
    bare.exposureProgram = 2;
    if (!writePhotos(directory, 3, morning, "morning")
        || !writePhotos(directory, 2, evening, "evening")
        || !writePhotos(directory, 1, bare, "bare"))
        return false;
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg" } } });
    window = std::make_unique<ExportWindow>();
    return waitForScanEnd(*window);
}

int tst_FilterView::drilledPhotos(const StatisticTab &tab, int row)
{
    showTabOf(tab.page);
    emit tab.tableView->doubleClicked(tab.tableView->model()->index(row, 0));
    return MainWindowProbe(*window).tableModel()->rowCount();
}

void tst_FilterView::panelListsTheScansValuesWithCounts()
{
    QVERIFY(scanned());
    QCOMPARE(texts(list("maker")),
             (QStringList { "Canon (4)", "NIKON CORPORATION (2)", "SONY (1)" }));
    QCOMPARE(texts(list("model")), (QStringList { "EOS R5 (4)", "ILCE-7M3 (1)", "NIKON D70 (2)" }));
    QCOMPARE(texts(list("lens")),
             (QStringList { "18-70mm (2)", "FE 24-105mm (1)", "RF24-70mm F2.8 (4)" }));
    QCOMPARE(texts(list("fileType")), QStringList { "JPG (7)" });
    for (const char *key : { "maker", "model", "lens", "fileType" }) {
        for (int row = 0; row < list(key)->count(); ++row)
            QCOMPARE(list(key)->item(row)->checkState(), Qt::Unchecked);
    }
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 7"));
}

void tst_FilterView::viewMenuShowsThePanel()
{
    window = std::make_unique<ExportWindow>();
    window->show();
    auto *dock = window->findChild<QDockWidget *>("dockWidgetFilter");
    QVERIFY(dock);
    QCOMPARE(dock->widget(), panel());
    QCOMPARE(window->dockWidgetArea(dock), Qt::LeftDockWidgetArea);
    auto *action = window->findChild<QAction *>("actionViewFilterPanel");
    QVERIFY(action);
    QCOMPARE(action->text(), QString("Filter panel"));
    QVERIFY(action->isChecked());
    QVERIFY(dock->isVisible());
    action->trigger();
    QVERIFY(!dock->isVisible());
    action->trigger();
    QVERIFY(dock->isVisible());
}

void tst_FilterView::checkedMakerNarrowsEveryStatistic()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("maker"), "Canon", true));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 4: Canon"));
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        QVERIFY2(tableTotal(tab) == 4, qPrintable(tab.statistic->tabTitle));
        const QString title = tab.chartView->chart()->title();
        QVERIFY2(title == titled(tab.settings, "Canon"), qPrintable(title));
    }
    QCOMPARE(probe.tableModel()->rowCount(), 4);
    showTabOf(window->findChild<QWidget *>("tabDateOriginal"));
    float dated = 0;
    for (const QList<float> &row : probe.chartDate3D()->rowValues()) {
        for (float count : row)
            dated += count;
    }
    QCOMPARE(dated, 4.0f);
    for (int row = 0; row < 4; ++row)
        QCOMPARE(probe.tableModel()->index(row, 3).data().toString(), QString("Canon"));
    // A second maker widens it again; a model narrows it.
    QVERIFY(setChecked(list("maker"), "SONY", true));
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 5: Canon, SONY"));
    QVERIFY(setChecked(list("model"), "ILCE-7M3", true));
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 1: Canon, SONY, ILCE-7M3"));
    QCOMPARE(probe.tableModel()->rowCount(), 1);
}

void tst_FilterView::calendarFollowsTheFilter()
{
    QVERIFY(scanned());
    const auto *calendar = window->findChild<CalendarChart *>("calendarChart");
    QVERIFY(calendar);
    showTabOf(const_cast<CalendarChart *>(calendar));
    const QDate nikonDay(2021, 7, 3);
    QVERIFY2(calendar->years().size() == 2, qPrintable(QString::number(calendar->years().size())));
    QVERIFY(setChecked(list("maker"), "NIKON CORPORATION", true));
    QCOMPARE(calendar->years(), QList<int> { 2021 });
    QCOMPARE(calendar->busiestDay(), qint64(2));
    QVERIFY(!calendar->cellRect(nikonDay).isEmpty());
    // Only the photo without a date: no year is drawn.
    QVERIFY(setChecked(list("maker"), "NIKON CORPORATION", false));
    QVERIFY(setChecked(list("maker"), "SONY", true));
    QVERIFY(calendar->years().isEmpty());
    panel()->findChild<QPushButton *>("pushButtonClear")->click();
    QCOMPARE(calendar->years().size(), 2);
}

void tst_FilterView::clearFilterRestoresTodaysStatements()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("lens"), "18-70mm", true));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.tableModel()->rowCount(), 2);
    panel()->findChild<QPushButton *>("pushButtonClear")->click();
    QCOMPARE(probe.status(), QString("Valid files: 7"));
    QCOMPARE(probe.tableModel()->rowCount(), 7);
    QCOMPARE(probe.tableModel()->restrictionCondition(), QString());
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        QCOMPARE(tableTotal(tab), 7);
        const auto *model = qobject_cast<const QSqlQueryModel *>(tab.tableView->model());
        QVERIFY(model);
        QCOMPARE(model->query().lastQuery(), tab.statistic->selectStatement());
        QCOMPARE(tab.chartView->chart()->title(), titled(tab.settings, QString()));
    }
    for (int row = 0; row < list("lens")->count(); ++row)
        QCOMPARE(list("lens")->item(row)->checkState(), Qt::Unchecked);
}

void tst_FilterView::emptyResultSaysSo()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("maker"), "SONY", true));
    QVERIFY(setChecked(list("lens"), "18-70mm", true));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(),
             QString("Valid files: 7 — showing 0: SONY, 18-70mm. No photo matches "
                     "the filter"));
    QCOMPARE(probe.tableModel()->rowCount(), 0);
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        const StatisticTab &tab = probe.statisticTab(i);
        showTabOf(tab.page);
        QCOMPARE(tab.tableView->model()->rowCount(), 0);
        QVERIFY2(tab.chartView->chart()->title()
                     == titled(tab.settings, "No photo matches the filter"),
                 qPrintable(tab.chartView->chart()->title()));
    }
}

void tst_FilterView::datePresets_data()
{
    QTest::addColumn<int>("preset");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<QString>("status");

    QTest::newRow("this year, 2023")
        << int(FilterPanel::ThisYear) << QDate(2023, 12, 31) << "Valid files: 7 — showing 4: 2023";
    QTest::newRow("last year, 2022")
        << int(FilterPanel::LastYear) << QDate(2022, 1, 1) << "Valid files: 7 — showing 2: 2021";
    QTest::newRow("last 12 months, to the Nikon's day")
        << int(FilterPanel::LastTwelveMonths) << QDate(2021, 7, 3)
        << "Valid files: 7 — showing 2: 2020-07-04 – 2021-07-03";
    QTest::newRow("last 12 months, a day after the Nikon's year")
        << int(FilterPanel::LastTwelveMonths) << QDate(2022, 7, 3)
        << "Valid files: 7 — showing 0: 2021-07-04 – 2022-07-03. No photo matches the filter";
    QTest::newRow("all") << int(FilterPanel::AllDays) << QDate(2023, 1, 1) << "Valid files: 7";
}

void tst_FilterView::datePresets()
{
    QFETCH(int, preset);
    QFETCH(QDate, today);
    QFETCH(QString, status);
    QVERIFY(scanned());
    panel()->setToday(today);
    auto *combo = panel()->findChild<QComboBox *>("comboBoxDatePreset");
    QCOMPARE(
        combo->itemText(preset),
        (QStringList { "all", "this year", "last year", "last 12 months", "custom" }).at(preset));
    combo->setCurrentIndex(preset);
    emit combo->activated(preset);
    QCOMPARE(MainWindowProbe(*window).status(), status);
}

void tst_FilterView::exportUnderAFilter()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("maker"), "NIKON CORPORATION", true));
    const QString path = sandbox->filePath("export.csv");
    window->exportFileName = path;
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionExportData")->trigger();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = file.readAll().chopped(1).split('\n');
    QCOMPARE(lines.size(), 2);
    for (const QByteArray &line : lines)
        QCOMPARE(line.split(';').at(3), QByteArray("NIKON CORPORATION"));
}

void tst_FilterView::filterKeptOverARescanWhereItsValuesExist()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("maker"), "NIKON CORPORATION", true));
    QVERIFY(setChecked(list("maker"), "SONY", true));
    // The Sony photo goes; the next scan has no Sony any more.
    QVERIFY(QFile::remove(sandbox->filePath("photos/sony0001.jpg")));
    MainWindowProbe probe(*window);
    probe.rescan();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 2: NIKON CORPORATION"));
    QCOMPARE(texts(list("maker")), (QStringList { "Canon (4)", "NIKON CORPORATION (2)" }));
    QCOMPARE(list("maker")->item(1)->checkState(), Qt::Checked);
    QCOMPARE(probe.tableModel()->rowCount(), 2);
}

void tst_FilterView::filterStoredBetweenRuns()
{
    QVERIFY(scanned());
    QVERIFY(setChecked(list("model"), "EOS R5", true));
    panel()->setToday(QDate(2023, 6, 1));
    auto *combo = panel()->findChild<QComboBox *>("comboBoxDatePreset");
    combo->setCurrentIndex(FilterPanel::ThisYear);
    emit combo->activated(FilterPanel::ThisYear);
    MainWindowProbe(*window).saveSettings();
    QCOMPARE(readStore("Filter/model").toStringList(), QStringList { "EOS R5" });
    QCOMPARE(readStore("Filter/from").toString(), QString("2023-01-01"));
    QCOMPARE(readStore("Filter/to").toString(), QString("2023-12-31"));
    window.reset();
    releaseDatabase();

    window = std::make_unique<ExportWindow>();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(MainWindowProbe(*window).status(),
             QString("Valid files: 7 — showing 4: EOS R5, 2023"));
}

void tst_FilterView::pairsCountedOnceWhenSwitchedOn()
{
    QVERIFY(scannedPairs({ { "OtherSettings/pairsOnce", true } }));
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(),
             QString("Valid files: 3 — showing 2: RAW+JPEG once (1 RAW+JPEG pair merged)"));
    for (int i = 0; i < probe.chartedStatistics(); ++i)
        QCOMPARE(tableTotal(probe.statisticTab(i)), 2);
    QCOMPARE(probe.tableModel()->rowCount(), 2);
}

void tst_FilterView::pairsSwitchedOnInTheSettingsDialog()
{
    QVERIFY(scannedPairs());
    MainWindowProbe probe(*window);
    QCOMPARE(probe.status(), QString("Valid files: 3"));
    NextModal dialog(isA<TDialogGlobalSettings>(), [](QWidget *widget) {
        widget->findChild<QCheckBox *>("checkBoxPairsOnce")->setChecked(true);
        clickButton(widget, QDialogButtonBox::Ok);
    });
    window->findChild<QAction *>("actionGlobalSettings")->trigger();
    QVERIFY(dialog.answered());
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(probe.status(),
             QString("Valid files: 3 — showing 2: RAW+JPEG once (1 RAW+JPEG pair merged)"));
    probe.saveSettings();
    QCOMPARE(readStore("OtherSettings/pairsOnce").toBool(), true);
}

void tst_FilterView::morePairsThanOneReadPlural()
{
    const QString directory = sandbox->makeDir("pairs");
    const fixture::PhotoTags tags = photoTags("Canon", "EOS R5", "RF24-70mm F2.8");
    for (const char *name : { "/A.NEF", "/A.jpg", "/B.NEF", "/B.jpg" })
        QVERIFY(fixture::writePhoto(directory + name,
                                    QString(name).endsWith(".NEF") ? fixture::Format::TiffLittle
                                                                   : fixture::Format::Jpeg,
                                    tags));
    writeStore({ { "OtherSettings/lastDirectory", directory },
                 { "OtherSettings/fileFilters", QStringList { "*.jpg", "*.nef" } },
                 { "OtherSettings/pairsOnce", true } });
    window = std::make_unique<ExportWindow>();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(MainWindowProbe(*window).status(),
             QString("Valid files: 4 — showing 2: RAW+JPEG once (2 RAW+JPEG pairs merged)"));
}

void tst_FilterView::drillDownFromATableRow()
{
    QVERIFY(scanned());
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    MainWindowProbe probe(*window);
    auto *tabs = window->findChild<QTabWidget *>("tabWidget");
    const StatisticTab &lens = probe.statisticTab(2);
    QCOMPARE(lens.statistic->key, QString("lens"));
    tabs->setCurrentWidget(lens.page);
    QCoreApplication::sendPostedEvents();
    QTableView *table = lens.tableView;
    QCOMPARE(table->model()->index(0, 0).data().toString(), QString("18-70mm"));
    const QPoint cell = table->visualRect(table->model()->index(0, 1)).center();
    QSignalSpy doubleClicked(table, &QAbstractItemView::doubleClicked);
    // The press that starts a double-click marks the row the double-click then acts on.
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
    QCOMPARE(doubleClicked.size(), 1);
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 2: 18-70mm"));
    QCOMPARE(tabs->currentWidget(), window->findChild<QWidget *>("tabRawData"));
    QCOMPARE(probe.tableModel()->rowCount(), 2);
    // The value stands checked in the panel and goes like any other.
    QCOMPARE(list("lens")->item(0)->checkState(), Qt::Checked);
    QVERIFY(setChecked(list("lens"), "18-70mm", false));
    QCOMPARE(probe.status(), QString("Valid files: 7"));
}

// A double-click on the second bar of the maker chart (NIKON CORPORATION), at half its height.
void tst_FilterView::drillDownFromAChartBar()
{
    QVERIFY(scanned());
    window->resize(1400, 900);
    window->show();
    MainWindowProbe probe(*window);
    const StatisticTab &maker = probe.statisticTab(0);
    QCOMPARE(maker.statistic->key, QString("maker"));
    window->findChild<QTabWidget *>("tabWidget")->setCurrentWidget(maker.page);
    QChart *chart = maker.chartView->chart();
    auto *bars = qobject_cast<QAbstractBarSeries *>(chart->series().value(0));
    QVERIFY2(bars, "the maker chart draws bars");
    // The bars are laid out anew without growing, so that they stand where they end.
    chart->setAnimationOptions(QChart::NoAnimation);
    maker.chartView->resize(maker.chartView->size() + QSize(1, 1));
    QCoreApplication::sendPostedEvents();
    QTRY_VERIFY(chart->plotArea().height() > 10);
    const QPointF inChart = chart->mapToPosition(QPointF(1, 1.0), bars);
    const QPoint inView = maker.chartView->mapFromScene(chart->mapToScene(inChart));
    QTest::mouseDClick(maker.chartView->viewport(), Qt::LeftButton, {}, inView);
    QTRY_COMPARE(probe.status(), QString("Valid files: 7 — showing 2: NIKON CORPORATION"));
    QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->currentWidget(),
             window->findChild<QWidget *>("tabRawData"));
    QCOMPARE(list("maker")->item(1)->checkState(), Qt::Checked);
}

void tst_FilterView::aFilterChangeDrawsTheShownTabAndTheOthersWhenShown()
{
    QVERIFY(scanned());
    MainWindowProbe probe(*window);
    const StatisticTab &maker = probe.statisticTab(0);
    const StatisticTab &lens = probe.statisticTab(2);
    QCOMPARE(lens.statistic->key, QString("lens"));
    showTabOf(maker.page);
    const int drawn = probe.statisticsDrawn();
    QVERIFY(!lens.stale);

    QVERIFY(setChecked(list("lens"), "18-70mm", true));
    QCOMPARE(probe.statisticsDrawn(), drawn + 1);
    QCOMPARE(tableTotal(maker), 2);
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 2: 18-70mm"));
    QCOMPARE(probe.tableModel()->rowCount(), 2);
    // The lens tab still holds the numbers of every photo, and says so.
    QVERIFY(lens.stale);
    QCOMPARE(tableTotal(lens), 7);
    QVERIFY(probe.dateViewsStale());

    showTabOf(lens.page);
    QCOMPARE(probe.statisticsDrawn(), drawn + 2);
    QVERIFY(!lens.stale);
    QCOMPARE(tableTotal(lens), 2);
    QCOMPARE(lens.chartView->chart()->title(), titled(lens.settings, "18-70mm"));
    // Shown again, a tab drawn under the current filter is not drawn again.
    showTabOf(maker.page);
    QCOMPARE(probe.statisticsDrawn(), drawn + 2);

    showTabOf(window->findChild<QWidget *>("tabDateOriginal"));
    QVERIFY(!probe.dateViewsStale());
    float dated = 0;
    for (const QList<float> &row : probe.chartDate3D()->rowValues()) {
        for (float count : row)
            dated += count;
    }
    QCOMPARE(dated, 2.0f);
}

void tst_FilterView::oneFilterChangeDrawsOnce()
{
    QVERIFY(scanned());
    MainWindowProbe probe(*window);
    showTabOf(probe.statisticTab(0).page);
    const int drawn = probe.statisticsDrawn();
    auto *clear = panel()->findChild<QPushButton *>("pushButtonClear");
    auto *presets = panel()->findChild<QComboBox *>("comboBoxDatePreset");
    // Nothing to clear, and "all" days already: the filter stays as it is.
    clear->click();
    presets->setCurrentIndex(FilterPanel::AllDays);
    emit presets->activated(FilterPanel::AllDays);
    QCOMPARE(probe.statisticsDrawn(), drawn);

    QVERIFY(setChecked(list("maker"), "Canon", true));
    QCOMPARE(probe.statisticsDrawn(), drawn + 1);
    panel()->setToday(QDate(2023, 6, 1));
    presets->setCurrentIndex(FilterPanel::ThisYear);
    emit presets->activated(FilterPanel::ThisYear);
    QCOMPARE(probe.statisticsDrawn(), drawn + 2);
    QCOMPARE(probe.status(), QString("Valid files: 7 — showing 4: Canon, 2023"));
    clear->click();
    QCOMPARE(probe.statisticsDrawn(), drawn + 3);
    QCOMPARE(probe.status(), QString("Valid files: 7"));
}

void tst_FilterView::copyOfAStaleChartDrawsItFirst()
{
    QVERIFY(scanned());
    MainWindowProbe probe(*window);
    const StatisticTab &lens = probe.statisticTab(2);
    showTabOf(probe.statisticTab(0).page);
    QVERIFY(setChecked(list("lens"), "18-70mm", true));
    QVERIFY(lens.stale);
    // The copy takes the tab the window last knew as current.
    probe.lastTab() = lens.tabIndex;
    NextModal nachricht(isA<TDialogNachricht>(),
                        [](QWidget *widget) { static_cast<QDialog *>(widget)->accept(); });
    window->findChild<QAction *>("actionCopyChartToClipboard")->trigger();
    QVERIFY(nachricht.answered());
    QVERIFY(!lens.stale);
    QCOMPARE(tableTotal(lens), 2);
}

void tst_FilterView::drillDownFromEveryNumericRow_data()
{
    QTest::addColumn<QString>("statistic");
    QTest::addColumn<int>("rows");
    // The rows each statistic gives for the six photos; the photo without a value has a row of
    // its own in each but the exposure settings, which every photo has.
    QTest::newRow("focal length") << "focalLength" << 3;
    QTest::newRow("focal length grouped") << "focalLengthGrouped" << 3;
    QTest::newRow("ISO, 0 for the photo without one") << "iso" << 3;
    QTest::newRow("ISO grouped, the photo without one in Others") << "isoGrouped" << 3;
    QTest::newRow("f-number") << "fNumber" << 3;
    QTest::newRow("exposure time") << "exposureTime" << 3;
    QTest::newRow("metering mode") << "meteringMode" << 3;
    QTest::newRow("exposure program") << "exposureMode" << 3;
    QTest::newRow("35 mm focal length, unknown") << "focalLength35" << 3;
    QTest::newRow("35 mm focal length classes, unknown") << "focalLength35Grouped" << 3;
    QTest::newRow("hour of day, n.a.") << "hourOfDay" << 3;
    QTest::newRow("weekday, n.a.") << "weekday" << 3;
}

// Each row's double-click shows exactly the photos the row counts. A row without a value picks
// the photos without one: the bare photo, which a count of the column itself leaves at 0.
void tst_FilterView::drillDownFromEveryNumericRow()
{
    QFETCH(QString, statistic);
    QFETCH(int, rows);
    QVERIFY(scannedVaried());
    MainWindowProbe probe(*window);
    const StatisticTab *tab = nullptr;
    for (int i = 0; i < probe.chartedStatistics(); ++i) {
        if (probe.statisticTab(i).statistic->key == statistic)
            tab = &probe.statisticTab(i);
    }
    QVERIFY(tab);
    QCOMPARE(tab->tableView->model()->rowCount(), rows);
    QCOMPARE(tableTotal(*tab), 6);
    auto *clear = panel()->findChild<QPushButton *>("pushButtonClear");
    for (int row = 0; row < rows; ++row) {
        showTabOf(tab->page);
        const QAbstractItemModel *model = tab->tableView->model();
        const QVariant value = model->index(row, 0).data();
        const int counted = model->index(row, tab->statistic->countColumn()).data().toInt();
        const int expected = value.isNull() && counted == 0 ? 1 : counted;
        const QString label = model->index(row, tab->statistic->valueColumn()).data().toString();
        QVERIFY2(drilledPhotos(*tab, row) == expected,
                 qPrintable(QString("row %1 (%2): %3 photos shown, %4 counted")
                                .arg(row)
                                .arg(label)
                                .arg(probe.tableModel()->rowCount())
                                .arg(expected)));
        QVERIFY2(probe.status().startsWith(QString("Valid files: 6 — showing %1: %2 ")
                                               .arg(expected)
                                               .arg(tab->statistic->tabTitle)),
                 qPrintable(probe.status()));
        QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->currentWidget(),
                 window->findChild<QWidget *>("tabRawData"));
        // The statistic itself, drawn under its own row, counts that row alone.
        showTabOf(tab->page);
        QCOMPARE(tab->tableView->model()->rowCount(), 1);
        clear->click();
        QCOMPARE(probe.status(), QString("Valid files: 6"));
    }
}

void tst_FilterView::pickedRowIsListedAndRemovable()
{
    QVERIFY(scannedVaried());
    MainWindowProbe probe(*window);
    const StatisticTab &iso = probe.statisticTab(5);
    QCOMPARE(iso.statistic->key, QString("iso"));
    QCOMPARE(iso.tableView->model()->index(2, 0).data().toInt(), 800);
    auto *picked = panel()->findChild<QListWidget *>("listWidgetPicked");
    QVERIFY(picked);
    QVERIFY(picked->isHidden());
    QCOMPARE(drilledPhotos(iso, 2), 2);
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 2: ISO 800"));
    QCOMPARE(texts(picked), QStringList { "ISO 800" });
    QCOMPARE(picked->item(0)->checkState(), Qt::Checked);
    QVERIFY(!picked->isHidden());
    // The ISO statistic now counts ISO 800 alone; a row of another statistic narrows further,
    // and a list value joins them.
    QCOMPARE(iso.tableView->model()->rowCount(), 1);
    const StatisticTab &weekday = probe.statisticTab(probe.chartedStatistics() - 2);
    QCOMPARE(weekday.statistic->key, QString("weekday"));
    QCOMPARE(drilledPhotos(weekday, 0), 2);
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 2: ISO 800, Weekday Saturday"));
    QCOMPARE(texts(picked), (QStringList { "ISO 800", "Weekday Saturday" }));
    QVERIFY(setChecked(list("maker"), "Canon", true));
    QCOMPARE(probe.status(),
             QString("Valid files: 6 — showing 2: Canon, ISO 800, Weekday Saturday"));
    // Unchecked, an entry goes, and the statistic counts every photo it kept out again.
    picked->item(0)->setCheckState(Qt::Unchecked);
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 2: Canon, Weekday Saturday"));
    QTRY_COMPARE(texts(picked), QStringList { "Weekday Saturday" });
    showTabOf(iso.page);
    QCOMPARE(iso.tableView->model()->rowCount(), 1);
    QCOMPARE(iso.tableView->model()->index(0, 0).data().toInt(), 800);
    picked->item(0)->setCheckState(Qt::Unchecked);
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 6: Canon"));
    QCOMPARE(iso.tableView->model()->rowCount(), 3);
    panel()->findChild<QPushButton *>("pushButtonClear")->click();
    QCOMPARE(probe.status(), QString("Valid files: 6"));
    QVERIFY(picked->isHidden());
}

// A double-click on the ISO chart's third bar (ISO 800; the first counts the photo without an ISO,
// which the scan stores as 0), one photo's length from its base.
void tst_FilterView::drillDownFromANumericChartBar()
{
    QVERIFY(scannedVaried());
    window->resize(1400, 900);
    window->show();
    MainWindowProbe probe(*window);
    const StatisticTab &iso = probe.statisticTab(5);
    QCOMPARE(iso.statistic->key, QString("iso"));
    showTabOf(iso.page);
    QChart *chart = iso.chartView->chart();
    auto *bars = qobject_cast<QAbstractBarSeries *>(chart->series().value(0));
    QVERIFY2(bars, "the ISO chart draws bars");
    chart->setAnimationOptions(QChart::NoAnimation);
    iso.chartView->resize(iso.chartView->size() + QSize(1, 1));
    QCoreApplication::sendPostedEvents();
    QTRY_VERIFY(chart->plotArea().height() > 10);
    // The ISO chart lies on its side: the counts run along the horizontal axis.
    QCOMPARE(bars->type(), QAbstractSeries::SeriesTypeHorizontalBar);
    const QPointF inChart = chart->mapToPosition(QPointF(1.0, 2), bars);
    const QPoint inView = iso.chartView->mapFromScene(chart->mapToScene(inChart));
    QTest::mouseDClick(iso.chartView->viewport(), Qt::LeftButton, {}, inView);
    QTRY_COMPARE(probe.status(), QString("Valid files: 6 — showing 2: ISO 800"));
    QCOMPARE(probe.tableModel()->rowCount(), 2);
    QCOMPARE(window->findChild<QTabWidget *>("tabWidget")->currentWidget(),
             window->findChild<QWidget *>("tabRawData"));
}

// The weekday statistic drawn as a pie: a double-click inside the Saturday slice, halfway out
// along its middle.
void tst_FilterView::drillDownFromAPieSlice()
{
    QVERIFY(scannedVaried());
    window->resize(1400, 900);
    window->show();
    MainWindowProbe probe(*window);
    const int index = probe.chartedStatistics() - 2;
    const StatisticTab &weekday = probe.statisticTab(index);
    QCOMPARE(weekday.statistic->key, QString("weekday"));
    probe.chartSettings(index).chartTyp = 2;
    probe.updateCharts();
    showTabOf(weekday.page);
    QChart *chart = weekday.chartView->chart();
    chart->setAnimationOptions(QChart::NoAnimation);
    auto *pie = qobject_cast<QPieSeries *>(chart->series().value(0));
    QVERIFY2(pie, "the weekday chart draws a pie");
    QCOMPARE(pie->count(), 3);
    weekday.chartView->resize(weekday.chartView->size() + QSize(1, 1));
    QCoreApplication::sendPostedEvents();
    QTRY_VERIFY(chart->plotArea().height() > 10);
    const QPieSlice *saturday = pie->slices().at(1);
    QCOMPARE(weekday.tableView->model()->index(1, 0).data().toString(), QString("Saturday"));
    const QRectF area = chart->plotArea();
    const qreal radius = pie->pieSize() * qMin(area.width(), area.height()) / 2;
    const qreal angle = qDegreesToRadians(saturday->startAngle() + saturday->angleSpan() / 2);
    const QPointF centre(area.left() + area.width() * pie->horizontalPosition(),
                         area.top() + area.height() * pie->verticalPosition());
    const QPointF inChart = centre + QPointF(std::sin(angle), -std::cos(angle)) * radius / 2;
    const QPoint inView = weekday.chartView->mapFromScene(chart->mapToScene(inChart));
    QTest::mouseDClick(weekday.chartView->viewport(), Qt::LeftButton, {}, inView);
    QTRY_COMPARE(probe.status(), QString("Valid files: 6 — showing 2: Weekday Saturday"));
    QCOMPARE(probe.tableModel()->rowCount(), 2);
}

// A picked row is a step of one session's search; the lists and the range are what the user set
// up to stay.
void tst_FilterView::pickedRowsAreDroppedOnRestart()
{
    QVERIFY(scannedVaried());
    MainWindowProbe probe(*window);
    QVERIFY(setChecked(list("maker"), "Canon", true));
    QCOMPARE(drilledPhotos(probe.statisticTab(5), 2), 2);
    QCOMPARE(probe.status(), QString("Valid files: 6 — showing 2: Canon, ISO 800"));
    probe.saveSettings();
    QStringList filterKeys;
    for (const QString &key : storeKeys()) {
        if (key.startsWith("Filter/"))
            filterKeys << key;
    }
    for (const QString &key : std::as_const(filterKeys))
        QVERIFY2(!readStore(key).toString().contains("800"), qPrintable(key));
    QCOMPARE(readStore("Filter/maker").toStringList(), QStringList { "Canon" });
    window.reset();
    releaseDatabase();

    window = std::make_unique<ExportWindow>();
    QVERIFY(waitForScanEnd(*window));
    QCOMPARE(MainWindowProbe(*window).status(), QString("Valid files: 6 — showing 6: Canon"));
    QCOMPARE(panel()->findChild<QListWidget *>("listWidgetPicked")->count(), 0);
}

void tst_FilterView::openAndShowInFolder()
{
    QVERIFY(scanned());
    window->show();
    QVERIFY(setChecked(list("maker"), "SONY", true));
    auto *view = window->findChild<QTableView *>("tableViewRawData");
    window->findChild<QTabWidget *>("tabWidget")
        ->setCurrentWidget(window->findChild<QWidget *>("tabRawData"));
    QCOMPARE(view->contextMenuPolicy(), Qt::ActionsContextMenu);
    QStringList entries;
    for (QAction *action : view->actions())
        entries << action->text();
    QCOMPARE(entries, (QStringList { "Open", "Show in folder" }));
    view->setCurrentIndex(view->model()->index(0, 1));
    UrlCatcher catcher({ "file" });
    window->findChild<QAction *>("actionOpenPhoto")->trigger();
    window->findChild<QAction *>("actionShowInFolder")->trigger();
    view->setFocus();
    QTest::keyClick(view, Qt::Key_Return);
    const QString photo = sandbox->filePath("photos/sony0001.jpg");
    QCOMPARE(
        catcher.urls,
        (QList<QUrl> { QUrl::fromLocalFile(photo), QUrl::fromLocalFile(sandbox->filePath("photos")),
                       QUrl::fromLocalFile(photo) }));
}

std::unique_ptr<QObject> makeFilterViewTest()
{
    return std::make_unique<tst_FilterView>();
}

#include "tst_filterview.moc"
