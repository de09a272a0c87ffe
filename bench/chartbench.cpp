// The chart side of the application: the time of MainWindow::updateCharts() (every statistic's
// controller and the date chart's data) over a photo table of 200,000 rows, each part's share, a
// filter change (one maker, one year) with the tab shown at the time and with every tab, that
// filter compared with the year before (two periods side by side in every table and chart), and the
// number of live chart objects after 1 and after 200 refreshes (over the first 20,000 rows, so
// that the 200 refreshes stay quick). The real window is built headless with a sandboxed settings
// store; its first scan covers an empty directory, then the table is filled directly through the
// window's own main connection.
//
//   kelvaro_bench_charts [ROWS [TIMED_RUNS [REFRESHES [COUNT_ROWS]]]]
#include "benchdata.h"
#include "benchstats.h"
#include "chartcontroller.h"
#include "chartdate3d.h"
#include "dateviews.h"
#include "filetypes.h"
#include "filterpanel.h"
#include "kelvaroversion.h"
#include "mainwindow.h"
#include "periodcomparison.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photofilter.h"
#include "photofolders.h"
#include "statistic.h"
#include "statisticcontrollers.h"
#include "texiffile.h"

#include <QApplication>
#include <QChart>
#include <QChartView>
#include <QElapsedTimer>
#include <QLabel>
#include <QMutex>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTabWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QThread>
#include <QTreeView>
#include <QVBoxLayout>
#include <QVariant>
#include <QWidget>

#include <cstdlib>
#include <functional>

// Qt's object hooks (the ones debugging tools such as GammaRay use): QObject's constructor and
// destructor call these, so every object of the process is seen, whoever owns it.
extern quintptr qtHookData[];

namespace {

enum HookIndex { hookDataSize = 1, hookQtVersion = 2, hookAddQObject = 3, hookRemoveQObject = 4 };

QMutex liveMutex;
QSet<QObject *> *liveObjects = nullptr;

void objectAdded(QObject *object)
{
    QMutexLocker lock(&liveMutex);
    liveObjects->insert(object);
}

void objectRemoved(QObject *object)
{
    QMutexLocker lock(&liveMutex);
    liveObjects->remove(object);
}

bool installObjectHooks()
{
    if (qtHookData[hookQtVersion] != QT_VERSION || qtHookData[hookDataSize] <= hookRemoveQObject)
        return false;
    liveObjects = new QSet<QObject *>;
    qtHookData[hookAddQObject] = reinterpret_cast<quintptr>(&objectAdded);
    qtHookData[hookRemoveQObject] = reinterpret_cast<quintptr>(&objectRemoved);
    return true;
}

struct LiveCount
{
    int charts = 0, queryModels = 0, controllers = 0, dateCharts = 0, all = 0;
};

LiveCount countLive()
{
    QMutexLocker lock(&liveMutex);
    LiveCount count;
    for (QObject *object : std::as_const(*liveObjects)) {
        ++count.all;
        if (qobject_cast<QChart *>(object))
            ++count.charts;
        else if (qobject_cast<QSqlQueryModel *>(object))
            ++count.queryModels;
        else if (qobject_cast<ChartDate3D *>(object))
            ++count.dateCharts;
        else if (object->inherits("ChartController"))
            ++count.controllers;
    }
    return count;
}

} // namespace

// The window keeps updateCharts() and its database to itself; it names this class its friend.
class MainWindowProbe
{
public:
    explicit MainWindowProbe(MainWindow &window)
        : w(window)
    { }
    QSqlDatabase &db() { return w.db; }
    void updateCharts() { w.updateCharts(); }
    bool scanning() const { return !w.workerThread.isNull(); }
    QString status() const { return w.labelStatus->text(); }
    ChartDate3D *dateChart() const { return w.chartDate3D; }
    QStringList groupedStatisticIndexes() const { return w.groupedStatisticIndexes(); }
    // As the filter panel changes the filter: the photos selected, the shown tab drawn.
    void changeFilter(const PhotoFilter &filter)
    {
        w.filterPanel->setFilter(filter);
        w.onFilterChanged(filter);
    }
    // The photos selected and every tab drawn at once, as a filter change did while hidden tabs
    // were drawn with the shown one.
    void changeFilterDrawingEveryTab(const PhotoFilter &filter)
    {
        w.filterPanel->setFilter(filter);
        w.selectFilteredPhotos();
        w.updateCharts();
    }
    // The tabs a filter change draws: every statistic's, the date chart's and the calendar's.
    QList<std::pair<QString, QWidget *>> filteredPages() const
    {
        QList<std::pair<QString, QWidget *>> pages;
        for (const StatisticTab &tab : w.statisticTabs)
            pages.append({ tab.statistic->key, tab.page });
        pages.append({ QStringLiteral("date"), w.findChild<QWidget *>("tabDateOriginal") });
        pages.append({ QStringLiteral("calendar"), w.dateViews->calendarPage() });
        return pages;
    }
    void show(QWidget *page) { w.findChild<QTabWidget *>("tabWidget")->setCurrentWidget(page); }
    qint64 selected() const { return w.photoSelection.count(w.db); }
    // As "Compare with..." changes the comparison: both periods selected, every chart redrawn.
    void changeComparison(const PeriodComparison &comparison)
    {
        w.filterPanel->setComparison(comparison);
        emit w.filterPanel->comparisonChanged(comparison);
    }
    qint64 comparedB() const { return w.comparedPeriods.photosB(); }

private:
    MainWindow &w;
};

namespace {

// Rows as the scan stores them: the texts come from the reader's own interpretation operations,
// a few photos lack lens information, the dates spread over five years.
bool fillTable(QSqlDatabase &db, benchdata::Random &random, int firstRow, int rows)
{
    using namespace benchdata;
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(QStringLiteral(
        "INSERT INTO DATEIEN (FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, ISO, FNUMBER, "
        "EXPTIME, EXPTIMESTRING, METERINGMODE, EXPOSUREMODE) VALUES (?,?,?,?,?,?,?,?,?,?,?,?)"));
    // What the scan derives beside each row; one photo in five has no 35 mm focal length.
    QSqlQuery info(db);
    info.prepare(PhotoDatabase::insertInfoStatement);
    PhotoFolders folders(db);
    const QList<FileTypes::FileType> &types = FileTypes::all();
    const QDateTime first(QDate(2020, 1, 1), QTime(0, 0));
    TExifFile values;
    for (int row = firstRow; row < firstRow + rows; ++row) {
        const QDateTime when =
            first.addDays(random.below(5 * 365)).addSecs(7 * 3600 + random.below(16 * 3600));
        const Photo p = randomPhoto(random, random.below(cameras().size()), when);
        const fixture::PhotoTags &t = p.tags;
        values.ExposureTimeNumerator = t.exposureTime->num;
        values.ExposureTimeDenominator = t.exposureTime->den;
        values.FNumberNumerator = t.fNumber->num;
        values.FNumberDenominator = t.fNumber->den;
        values.FocalLengthNumerator = t.focalLength->num;
        values.FocalLengthDenominator = t.focalLength->den;
        values.MeteringMode = *t.meteringMode;
        values.ExposureProgram = *t.exposureProgram;
        insert.addBindValue(QStringLiteral("IMG_%1.JPG").arg(row, 6, 10, QLatin1Char('0')));
        insert.addBindValue(t.dateTimeOriginal);
        insert.addBindValue(t.make);
        insert.addBindValue(t.model);
        insert.addBindValue(random.chance(3) ? QStringLiteral("n.a.") : t.lensModel);
        insert.addBindValue(values.exif_0x920A_FocalLengthAsReal());
        insert.addBindValue(int(*t.iso));
        insert.addBindValue(values.exif_0x829D_FNumberAsString());
        insert.addBindValue(values.exif_0x829A_ExposureTime());
        insert.addBindValue(values.exif_0x829A_ExposureTimeAsString());
        insert.addBindValue(values.exif_0x9207_MeteringModeAsString());
        insert.addBindValue(values.exif_0x8822_ExpProgAsString());
        if (!insert.exec()) {
            std::fprintf(stderr, "insert failed: %s\n", qPrintable(insert.lastError().text()));
            db.rollback();
            return false;
        }
        const double crop = 1.0 + random.below(6) * 0.1;
        const auto hour = PhotoDate::hour(t.dateTimeOriginal);
        const QDate day = PhotoDate::date(t.dateTimeOriginal);
        info.bindValue(0, folders.idOfFile(QStringLiteral("/photos/IMG_%1.JPG").arg(row)));
        info.bindValue(1, types.at(random.below(int(types.size()))).name);
        info.bindValue(2,
                       random.chance(20) ? QVariant()
                                         : QVariant(values.exif_0x920A_FocalLengthAsReal() * crop));
        info.bindValue(3, crop);
        info.bindValue(4, hour ? QVariant(*hour) : QVariant());
        info.bindValue(5, day.isValid() ? QVariant(day.dayOfWeek()) : QVariant());
        if (!info.exec()) {
            std::fprintf(stderr, "insert failed: %s\n", qPrintable(info.lastError().text()));
            db.rollback();
            return false;
        }
    }
    return db.commit();
}

long rowCount(QSqlDatabase &db)
{
    QSqlQuery count(db);
    if (!count.exec(QStringLiteral("SELECT COUNT(*) FROM DATEIEN")) || !count.next())
        return -1;
    return count.value(0).toLongLong();
}

// What the event loop does between two refreshes in the application: deferred deletions.
void settle()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
}

} // namespace

// Each part of a refresh on its own: every statistic's controller and the date chart made one by
// one on views of their own, as updateCharts() makes them, plus the bare SQL of one statistic.
std::string partTimes(QSqlDatabase &db, int runs)
{
    QWidget host;
    auto *layout = new QVBoxLayout(&host);
    QChartView chartView(&host);
    QTableView tableView(&host);
    TChartSettings settings;
    using Make = std::function<QObject *(QObject *)>;
    QList<std::pair<QByteArray, Make>> parts;
    for (const Statistic &statistic : Statistics::all()) {
        if (statistic.shape == Statistic::Shape::DayCounts)
            continue;
        const Make make = [&](QObject *parent) -> QObject * {
            return createStatisticController(statistic, db, &chartView, &tableView, settings, {},
                                             parent);
        };
        parts.append({ statistic.key.toLatin1(), make });
    }
    parts << QList<std::pair<QByteArray, Make>> {
        { "date",
          [&](QObject *parent) {
              return new ChartDate3D(db, layout, Q3DTheme::ThemeQt, 30, 30, 100, parent);
          } },
        { "sql_lens_only",
          [&](QObject *) {
              QSqlQuery query(db);
              query.setForwardOnly(true);
              query.exec(
                  QStringLiteral("SELECT Distinct Lens, count(Lens) FROM Dateien group by Lens"));
              while (query.next()) { }
              return nullptr;
          } },
    };
    std::string text;
    for (const auto &[name, make] : parts) {
        std::vector<double> ms;
        for (int run = 0; run <= runs; ++run) {
            QObject parent;
            const auto start = benchstats::Clock::now();
            make(&parent);
            if (run > 0)
                ms.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000);
        }
        char item[64];
        std::snprintf(item, sizeof item, " %s_ms=%.1f", name.constData(), benchstats::median(ms));
        text += item;
    }
    return text;
}

int main(int argc, char **argv)
{
    const int rows = argc > 1 ? std::atoi(argv[1]) : 200000;
    const int timedRuns = argc > 2 ? std::atoi(argv[2]) : 5;
    const int refreshes = argc > 3 ? std::atoi(argv[3]) : 200;
    const int countRows = argc > 4 ? std::atoi(argv[4]) : 20000;

    const bool hooked = installObjectHooks();
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A settings store of its own, so that neither the user's store is read nor written.
    QTemporaryDir sandbox;
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(sandbox.filePath(QStringLiteral("config"))));
    const QString emptyLibrary = sandbox.filePath(QStringLiteral("empty"));
    QDir().mkpath(emptyLibrary);

    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Kelvaro"));
    QApplication::setApplicationVersion(QStringLiteral(KELVARO_VERSION));

    MainWindow window(QStringList { emptyLibrary });
    MainWindowProbe probe(window);
    // The first scan (of the empty directory) ends with a refresh of its own. While the tree's
    // file-system model loads, its selection may change again and start further scans, each of
    // which empties the table: the tree is given time to settle, and is then kept from starting
    // scans while the table is filled and measured.
    QElapsedTimer waited;
    waited.start();
    while ((probe.scanning() || waited.elapsed() < 2000) && waited.elapsed() < 60000)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    settle();
    if (probe.scanning()) {
        std::fprintf(stderr, "the window's first scan did not end\n");
        return 1;
    }
    auto *tree = window.findChild<QTreeView *>(QStringLiteral("treeViewDir"));
    if (!tree || !tree->selectionModel()) {
        std::fprintf(stderr, "the window has no directory tree\n");
        return 1;
    }
    tree->selectionModel()->blockSignals(true);

    // The live objects first, over a table of a library's size so that many refreshes stay
    // quick; the table then grows to its full size for the timing.
    benchdata::Random random(0x43686172747321ULL);
    // The first scan left the statistic indexes behind; without them the rows go in as a scan
    // inserts them, and the indexes are built below, where their cost is measured.
    PhotoDatabase::clear(probe.db());
    if (!fillTable(probe.db(), random, 0, countRows))
        return 1;
    probe.updateCharts();
    settle();
    const LiveCount afterOne = countLive();
    for (int refresh = 2; refresh <= refreshes; ++refresh) {
        probe.updateCharts();
        settle();
    }
    const LiveCount afterAll = countLive();
    if (rowCount(probe.db()) != countRows) {
        std::fprintf(stderr, "the table lost rows during the refreshes\n");
        return 1;
    }
    if (!fillTable(probe.db(), random, countRows, rows - countRows))
        return 1;
    // A scan ends by building the statistic indexes; a table filled here gets them the same way,
    // and their cost is reported beside the refresh.
    const auto indexStart = benchstats::Clock::now();
    PhotoDatabase::createStatisticIndexes(probe.db(), probe.groupedStatisticIndexes());
    const double indexMs = benchstats::secondsBetween(indexStart, benchstats::Clock::now()) * 1000;

    // One untimed refresh warms SQLite's page cache and Qt's lazily built tables.
    probe.updateCharts();
    settle();
    std::vector<double> ms;
    for (int run = 0; run < timedRuns; ++run) {
        const auto start = benchstats::Clock::now();
        probe.updateCharts();
        ms.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000);
        settle();
    }
    const std::string parts = partTimes(probe.db(), timedRuns);

    // A filter change: one maker and one year, after no filter. What the user waits for is the
    // tab shown at the time (the status line and the Data tab's restriction included), timed with
    // each tab shown in turn; the others are drawn when they are shown. "all tabs" adds showing
    // every other tab after the change; "every tab at once" draws them all in the change itself.
    PhotoFilter makerYear;
    makerYear.makers = QStringList { QStringLiteral("Canon") };
    makerYear.from = QDate(2021, 1, 1);
    makerYear.to = QDate(2021, 12, 31);
    const QList<std::pair<QString, QWidget *>> pages = probe.filteredPages();
    // Each tab shown in turn while `change` runs after `reset`: the median per tab, the median of
    // those and the slowest tab.
    struct ShownTabTimes
    {
        std::vector<double> medians;
        QString slowestPage;
        double slowestMs = 0;
    };
    const auto timeShownTabs = [&](const std::function<void()> &reset,
                                   const std::function<void()> &change) {
        ShownTabTimes times;
        for (const auto &[name, page] : pages) {
            std::vector<double> ms;
            for (int run = 0; run <= timedRuns; ++run) {
                reset();
                probe.show(page);
                settle();
                const auto start = benchstats::Clock::now();
                change();
                if (run > 0)
                    ms.push_back(benchstats::secondsBetween(start, benchstats::Clock::now())
                                 * 1000);
                settle();
            }
            times.medians.push_back(benchstats::median(ms));
            if (times.medians.back() > times.slowestMs) {
                times.slowestMs = times.medians.back();
                times.slowestPage = name;
            }
        }
        return times;
    };
    const ShownTabTimes filterShown = timeShownTabs([&] { probe.changeFilter(PhotoFilter()); },
                                                    [&] { probe.changeFilter(makerYear); });
    std::vector<double> allTabsMs;
    std::vector<double> atOnceMs;
    qint64 filtered = 0;
    for (int run = 0; run <= timedRuns; ++run) {
        probe.changeFilter(PhotoFilter());
        probe.show(pages.first().second);
        settle();
        auto start = benchstats::Clock::now();
        probe.changeFilter(makerYear);
        for (const auto &[name, page] : pages)
            probe.show(page);
        if (run > 0)
            allTabsMs.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000);
        filtered = probe.selected();
        settle();
        probe.changeFilter(PhotoFilter());
        settle();
        start = benchstats::Clock::now();
        probe.changeFilterDrawingEveryTab(makerYear);
        if (run > 0)
            atOnceMs.push_back(benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000);
        settle();
    }

    // The same filter compared with the year before: period B selected beside it, every
    // statistic's table and chart holding both periods. Timed from the comparison turned on, with
    // each tab shown in turn, and with every tab shown after it.
    const PeriodComparison yearBefore { true, QDate(2020, 1, 1), QDate(2020, 12, 31) };
    probe.changeFilter(makerYear);
    const ShownTabTimes compareShown =
        timeShownTabs([&] { probe.changeComparison(PeriodComparison()); },
                      [&] { probe.changeComparison(yearBefore); });
    std::vector<double> compareAllTabsMs;
    qint64 comparedPhotos = 0;
    for (int run = 0; run <= timedRuns; ++run) {
        probe.changeComparison(PeriodComparison());
        probe.show(pages.first().second);
        settle();
        const auto start = benchstats::Clock::now();
        probe.changeComparison(yearBefore);
        for (const auto &[name, page] : pages)
            probe.show(page);
        if (run > 0)
            compareAllTabsMs.push_back(benchstats::secondsBetween(start, benchstats::Clock::now())
                                       * 1000);
        comparedPhotos = probe.comparedB();
        settle();
    }
    probe.changeComparison(PeriodComparison());
    probe.changeFilter(PhotoFilter());
    settle();
    if (rowCount(probe.db()) != rows) {
        std::fprintf(stderr, "the table lost rows during the timing\n");
        return 1;
    }
    settle();

    ChartDate3D *date = probe.dateChart();
    const bool graph = date && date->graph();
    int dateRows = 0;
    if (date) {
        for (const QList<float> &row : date->rowValues())
            dateRows += row.isEmpty() ? 0 : 1;
    }
    std::printf("RESULT charts rows=%d median_ms=%.1f index_ms=%.1f runs_ms=%s refreshes=%d "
                "hooks=%d charts_1=%d charts_n=%d models_1=%d models_n=%d controllers_1=%d "
                "controllers_n=%d datecharts_1=%d datecharts_n=%d objects_1=%d objects_n=%d "
                "count_rows=%d date_graph=%d date_rows=%d platform=%s "
                "filter_shown_tab_median_ms=%.1f filter_shown_tab_slowest_ms=%.1f "
                "filter_shown_tab_slowest=%s filter_all_tabs_ms=%.1f "
                "filter_every_tab_at_once_ms=%.1f filter_photos=%lld "
                "compare_shown_tab_median_ms=%.1f compare_shown_tab_slowest_ms=%.1f "
                "compare_shown_tab_slowest=%s compare_all_tabs_ms=%.1f compare_photos_b=%lld%s\n",
                rows, benchstats::median(ms), indexMs, benchstats::joined(ms, 1).c_str(), refreshes,
                hooked ? 1 : 0, afterOne.charts, afterAll.charts, afterOne.queryModels,
                afterAll.queryModels, afterOne.controllers, afterAll.controllers,
                afterOne.dateCharts, afterAll.dateCharts, afterOne.all, afterAll.all, countRows,
                graph ? 1 : 0, dateRows, qPrintable(QGuiApplication::platformName()),
                benchstats::median(filterShown.medians), filterShown.slowestMs,
                qPrintable(filterShown.slowestPage), benchstats::median(allTabsMs),
                benchstats::median(atOnceMs), filtered, benchstats::median(compareShown.medians),
                compareShown.slowestMs, qPrintable(compareShown.slowestPage),
                benchstats::median(compareAllTabsMs), comparedPhotos, parts.c_str());
    return hooked ? 0 : 1;
}
