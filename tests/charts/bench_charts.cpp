// How long the main window's chart refresh takes: the eleven statistic controllers and the date
// chart rebuilt over a large photo table. Prints the time of each part; run it with the offscreen
// platform for the controllers alone, or under xvfb-run with QT_QPA_PLATFORM=xcb to include the
// 3-D graph.
//
//   bench_charts [rows] [rounds] [--indexes] [--names]   (defaults: 200000 rows, 5 rounds)
//
// Wall-clock times suffer on a busy machine; the CPU times beside them tell more. The second
// table shows the statements alone, which is what the sorting of GROUP BY costs. --indexes first
// creates an index on every grouped column, to show what the table's owner would gain by them.
// --names counts names with both name settings on (blanks and case together, friendly makers),
// to show what reading the table through the rewritten names costs.

#include "chartdate3d.h"
#include "chartsfixture.h"
#include "namerules.h"
#include "photodatabase.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QVBoxLayout>
#include <QWidget>

#include <algorithm>
#include <cstdio>
#include <ctime>

using namespace chartsfixture;

namespace {

// Photos with the spread of a real library: a few makers, dozens of models and lenses, hundreds
// of focal lengths, ten years of dates.
QList<Photo> library(int rows)
{
    QRandomGenerator random(20240229);
    const QStringList makers = { "Canon", "Nikon", "Sony", "Fujifilm", "Panasonic", "Olympus" };
    const QStringList metering = { "Multi-segment", "Center-weighted average", "Spot", "Partial",
                                   "Average" };
    const QStringList programs = { "Manual", "Program AE", "Aperture-priority AE",
                                   "Shutter speed priority AE", "Bulb" };
    const int isos[] = { 100,  125,  160,  200,  250,  320,  400,  500,  640,   800,   1000, 1250,
                         1600, 2000, 2500, 3200, 4000, 5000, 6400, 8000, 10000, 12800, 25600 };
    const char *fNumbers[] = { "1.4", "1.8", "2",   "2.8", "3.5", "4",  "4.5",
                               "5.6", "6.3", "7.1", "8",   "11",  "16", "22" };
    QList<Photo> photos(rows);
    for (Photo &photo : photos) {
        const int maker = random.bounded(int(makers.size()));
        photo.maker = makers.at(maker);
        photo.model = photo.maker + " Model " + QString::number(random.bounded(8));
        photo.lens = photo.maker + " Lens " + QString::number(random.bounded(12));
        photo.focalLength = 10 + random.bounded(600) * 0.5;
        photo.iso = isos[random.bounded(int(std::size(isos)))];
        photo.fNumber = fNumbers[random.bounded(int(std::size(fNumbers)))];
        const int denominator = 1 << random.bounded(13);
        photo.exposureTime = 1.0 / denominator;
        photo.exposureTimeText = denominator == 1 ? "1" : "1/" + QString::number(denominator);
        photo.meteringMode = metering.at(random.bounded(int(metering.size())));
        photo.exposureMode = programs.at(random.bounded(int(programs.size())));
        photo.date = QString("%1:%2:%3 %4:15:00")
                         .arg(2014 + random.bounded(10))
                         .arg(1 + random.bounded(12), 2, 10, QChar('0'))
                         .arg(1 + random.bounded(28), 2, 10, QChar('0'))
                         .arg(random.bounded(24), 2, 10, QChar('0'));
    }
    return photos;
}

double cpuMs(std::clock_t since)
{
    return double(std::clock() - since) * 1000.0 / CLOCKS_PER_SEC;
}

// Columns the statistics group by.
const QStringList groupedColumns = { "Maker",        "Maker, Model", "Lens",    "FocalLength",
                                     "ISO",          "FNumber",      "ExpTime", "MeteringMode",
                                     "ExposureMode", "Date" };

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    const int rows = argc > 1 ? std::max(1, atoi(argv[1])) : 200000;
    const int rounds = argc > 2 ? std::max(1, atoi(argv[2])) : 5;
    const QStringList options = QCoreApplication::arguments().mid(3);
    const bool indexes = options.contains("--indexes");
    const bool names = options.contains("--names");
    if (names) {
        NameRules rules;
        rules.mergeBlanksAndCase = true;
        rules.friendlyMakers = true;
        NameRulesSql::setActive(rules);
    }

    PhotoTable table;
    if (!table.isReady() || !table.insert(library(rows))) {
        std::fprintf(stderr, "cannot fill the photo table: %s\n", qPrintable(table.lastError()));
        return 1;
    }
    if (indexes) {
        QSqlQuery query(table.database());
        for (int i = 0; i < groupedColumns.size(); ++i)
            query.exec(
                QString("CREATE INDEX bench%1 ON DATEIEN (%2)").arg(i).arg(groupedColumns[i]));
    }
    std::printf("%d rows, %d rounds, platform %s, 3-D graph %s, %s, %s\n", rows, rounds,
                qPrintable(QGuiApplication::platformName()),
                ChartDate3D::openGLAvailable() ? "drawn" : "replaced by its placeholder",
                indexes ? "with indexes" : "no indexes",
                names ? "names merged and friendly" : "names as the files hold them");

    const QList<const Statistic *> charted = chartedStatistics();
    const int statisticCount = int(charted.size());
    QList<QChartView *> chartViews;
    QList<QTableView *> tableViews;
    QList<ChartController *> controllers(statisticCount, nullptr);
    for (int i = 0; i < statisticCount; ++i) {
        chartViews.append(new QChartView);
        tableViews.append(new QTableView);
    }
    QWidget datePage;
    auto *dateLayout = new QVBoxLayout(&datePage);
    ChartDate3D *dateChart = nullptr;
    TChartSettings settings = plainSettings(0);

    QList<double> best(statisticCount + 2, 1e9);
    QList<double> bestCpu(statisticCount + 2, 1e9);
    for (int round = 0; round < rounds; ++round) {
        settings.chartTyp = round % 4;
        QElapsedTimer total;
        total.start();
        const std::clock_t totalCpu = std::clock();
        for (int i = 0; i < statisticCount; ++i) {
            QElapsedTimer one;
            one.start();
            const std::clock_t oneCpu = std::clock();
            delete controllers[i];
            controllers[i] =
                makeController(i, table.database(), chartViews[i], tableViews[i], settings);
            best[i] = std::min(best[i], one.nsecsElapsed() / 1e6);
            bestCpu[i] = std::min(bestCpu[i], cpuMs(oneCpu));
        }
        QElapsedTimer date;
        date.start();
        const std::clock_t dateCpu = std::clock();
        delete dateChart;
        dateChart =
            new ChartDate3D(table.database(), dateLayout, Q3DTheme::ThemeQt, 0, 20, 100, nullptr);
        best[statisticCount] = std::min(best[statisticCount], date.nsecsElapsed() / 1e6);
        bestCpu[statisticCount] = std::min(bestCpu[statisticCount], cpuMs(dateCpu));
        best[statisticCount + 1] = std::min(best[statisticCount + 1], total.nsecsElapsed() / 1e6);
        bestCpu[statisticCount + 1] = std::min(bestCpu[statisticCount + 1], cpuMs(totalCpu));
        std::printf("round %d (chart type %d): all charts %.1f ms, cpu %.1f ms\n", round,
                    settings.chartTyp, total.nsecsElapsed() / 1e6, cpuMs(totalCpu));
    }
    std::printf("best of %d rounds, controller made and drawn (wall / cpu):\n", rounds);
    for (int i = 0; i < statisticCount; ++i)
        std::printf("  %-8s %8.1f / %8.1f ms\n", qPrintable(charted[i]->key), best[i], bestCpu[i]);
    std::printf("  %-8s %8.1f / %8.1f ms\n", "Date3D", best[statisticCount],
                bestCpu[statisticCount]);
    std::printf("  %-8s %8.1f / %8.1f ms\n", "total", best[statisticCount + 1],
                bestCpu[statisticCount + 1]);

    std::printf("the statements alone, executed and read to the end (cpu):\n");
    QStringList statements;
    for (QTableView *view : std::as_const(tableViews))
        statements.append(qobject_cast<QSqlQueryModel *>(view->model())->query().lastQuery());
    statements.append(PhotoDatabase::photosPerDayStatement);
    for (int i = 0; i < statements.size(); ++i) {
        const std::clock_t start = std::clock();
        QSqlQuery query(table.database());
        query.setForwardOnly(true);
        query.exec(statements[i]);
        int resultRows = 0;
        while (query.next())
            ++resultRows;
        std::printf("  %-8s %8.1f ms  %5d rows\n",
                    i < statisticCount ? qPrintable(charted[i]->key) : "Date3D", cpuMs(start),
                    resultRows);
    }

    delete dateChart;
    qDeleteAll(controllers);
    qDeleteAll(chartViews);
    qDeleteAll(tableViews);
    return 0;
}
