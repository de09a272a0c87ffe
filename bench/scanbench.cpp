// Kelvaro's scan end to end, as the main window runs it but without a window: the real
// TMyWorkerObject in a QThread of its own walks the library with all ten types' patterns, reads
// every file, inserts every row into the shared in-memory database and builds the statistic
// indexes, the grouped charts' ones for the default ranges included. Timed from doOperation()'s
// start to operationDone(); the table is checked and emptied after every run.
#include "benchstats.h"
#include "photodatabase.h"
#include "statistic.h"
#include "statisticrows.h"
#include "tmyworkerobject.h"
#include "workertiming.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cstdlib>

namespace {

QtMessageHandler defaultHandler = nullptr;
int duplicateConnectionWarnings = 0;

// Every scan adds the worker's connection name again, as in the application, and Qt warns each
// time; that warning is counted instead of printed.
void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.contains(QLatin1String("duplicate connection name"))) {
        ++duplicateConnectionWarnings;
        return;
    }
    defaultHandler(type, context, message);
}

double scanOnce(const QString &root)
{
    QList<QString> directories { root };
    QList<QString> patterns { "*.arw", "*.raf", "*.nef",  "*.cr2",  "*.cr3", "*.rw2", "*.jpg",
                              "*.dng", "*.orf", "*.heic", "*.heif", "*.hif", "*.avif" };
    QList<QString> noMakers, noModels;
    auto *worker = new TMyWorkerObject(directories, patterns, true, noMakers, noModels);
    QStringList groupedIndexes;
    for (const Statistic &statistic : Statistics::all())
        groupedIndexes << statistic.rangeIndexStatement();
    worker->setGroupedStatisticIndexes(groupedIndexes);
    return benchstats::timeWorkerScan(worker);
}

long rowCount(QSqlDatabase &db)
{
    QSqlQuery count(db);
    if (!count.exec(QStringLiteral("SELECT COUNT(*) FROM DATEIEN")) || !count.next())
        return -1;
    return count.value(0).toLongLong();
}

// Times `passes` scans of root; false (with a message) when a scan stored a wrong number of rows.
bool timeScans(QSqlDatabase &db, const QString &root, long expected, int passes, const char *label,
               double &seconds)
{
    seconds = 0;
    for (int pass = 0; pass < passes; ++pass) {
        PhotoDatabase::clear(db);
        seconds += scanOnce(root);
        const long rows = rowCount(db);
        if (rows != expected) {
            std::fprintf(stderr, "%s: stored %ld rows, expected %ld\n", label, rows, expected);
            return false;
        }
    }
    return true;
}

// Every statistic's statement run over the rows the last scan stored and read to its end, as
// kelvaro-stats computes them; milliseconds.
double statisticsMs(const QSqlDatabase &db)
{
    const auto start = benchstats::Clock::now();
    QList<StatisticRow> rows;
    for (const Statistic &statistic : Statistics::all())
        readStatisticRows(statistic, db, {}, rows);
    return benchstats::secondsBetween(start, benchstats::Clock::now()) * 1000;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s ROOT RUNS EXPECTED_ROWS [LABEL [PASSES [OTHER_ROOT]]]\n",
                     argv[0]);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const int runs = std::atoi(argv[2]);
    const long expected = std::atol(argv[3]);
    const char *label = argc > 4 ? argv[4] : "scan";
    // A small library scans in milliseconds, where a moment's load elsewhere decides the figure:
    // each timed sample can add up several scans.
    const int passes = argc > 5 ? std::max(1, std::atoi(argv[5])) : 1;
    // A second library of as many photos, timed in turn with the first (sample by sample), so that
    // the machine's drift weighs on both alike; reported as other_files_per_s.
    const QString otherRoot = argc > 6 ? QString::fromLocal8Bit(argv[6]) : QString();
    defaultHandler = qInstallMessageHandler(messageHandler);

    // The main connection is open for the whole run, as in the application; it keeps the
    // in-memory database alive between the worker's connections.
    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db)) {
        std::fprintf(stderr, "cannot open the photo database\n");
        return 1;
    }
    const long hwmBefore = benchstats::procStatusKb("VmHWM");

    std::vector<double> seconds, otherSeconds, statisticsRuns;
    // The warm-up is the process's first scan, as a window's or kelvaro-stats' first scan is.
    double firstSeconds = 0;
    // Run 0 is the untimed warm-up: it fills the page cache and the allocator's pools. With two
    // libraries every other run takes the second one first, so that neither always goes first.
    for (int run = 0; run <= runs; ++run) {
        const bool otherFirst = !otherRoot.isEmpty() && run % 2 == 1;
        for (int turn = 0; turn < (otherRoot.isEmpty() ? 1 : 2); ++turn) {
            const bool other = (turn == 0) == otherFirst;
            double elapsed = 0;
            if (!timeScans(db, other ? otherRoot : root, expected, passes, label, elapsed))
                return 1;
            if (run > 0)
                (other ? otherSeconds : seconds).push_back(elapsed);
            else if (!other)
                firstSeconds = elapsed;
            if (run > 0 && !other)
                statisticsRuns.push_back(statisticsMs(db));
        }
    }
    const long hwmAfter = benchstats::procStatusKb("VmHWM");
    PhotoDatabase::clear(db);

    const double median = benchstats::median(seconds);
    std::printf(
        "RESULT %s files=%ld passes=%d median_s=%.6f files_per_s=%.0f hwm_before_mb=%.1f "
        "hwm_growth_mb=%.1f duplicate_name_warnings=%d runs_s=%s statistics_ms=%.1f first_s=%.4f",
        label, expected, passes, median, expected * passes / median, hwmBefore / 1024.0,
        (hwmAfter - hwmBefore) / 1024.0, duplicateConnectionWarnings,
        benchstats::joined(seconds, 4).c_str(), benchstats::median(statisticsRuns), firstSeconds);
    if (!otherSeconds.empty()) {
        const double otherMedian = benchstats::median(otherSeconds);
        std::printf(" other_median_s=%.6f other_files_per_s=%.0f other_runs_s=%s", otherMedian,
                    expected * passes / otherMedian, benchstats::joined(otherSeconds, 4).c_str());
    }
    std::printf("\n");
    return 0;
}
