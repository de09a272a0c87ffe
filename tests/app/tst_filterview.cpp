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
#include <QPushButton>
#include <QSignalSpy>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTabWidget>
#include <QTableView>
#include <QTest>

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
    void drillDownFromATableRow();
    void drillDownFromAChartBar();
    void openAndShowInFolder();

private:
    std::unique_ptr<testutils::Sandbox> sandbox;
    std::unique_ptr<ExportWindow> window;
    // A window whose first scan read the folder "photos": four Canon photos of 2023, two Nikon
    // photos of 2021 and a Sony photo without a date.
    bool scanned(const QVariantMap &store = {});
    // A NEF with its JPEG and a JPEG alone.
    bool scannedPairs(const QVariantMap &store = {});
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
        QVERIFY2(tableTotal(tab) == 4, qPrintable(tab.statistic->tabTitle));
        const QString title = tab.chartView->chart()->title();
        QVERIFY2(title == titled(tab.settings, "Canon"), qPrintable(title));
    }
    QCOMPARE(probe.tableModel()->rowCount(), 4);
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
             QString("Valid files: 3 — showing 2: RAW+JPEG once (1 RAW+JPEG pairs merged)"));
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
             QString("Valid files: 3 — showing 2: RAW+JPEG once (1 RAW+JPEG pairs merged)"));
    probe.saveSettings();
    QCOMPARE(readStore("OtherSettings/pairsOnce").toBool(), true);
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
