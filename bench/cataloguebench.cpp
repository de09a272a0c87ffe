// The photo catalogue's scans against the same scans without it and against a floor that walks
// the tree and lstat()s every file. Every kind of run is timed in turn with the others, run by
// run, so that load elsewhere on the machine weighs on all alike. Prints RESULT lines:
//   catalogue_warm   rescan of the unchanged library with the catalogue, the scan without it and
//                    the lstat floor, page cache warm
//   catalogue_cold   the same two scans with every photo file's pages dropped before each run
//                    (posix_fadvise DONTNEED), floor likewise
//   catalogue_first  the first scan with an empty catalogue against the scan without one
//   catalogue_size   the catalogue's size on disk and per photo
// Every scan's rows are checked against the scan without the catalogue (same order, same values).
// Next to the wall-clock figures each line gives the median processor time the process spent per
// scan (all its threads): on a machine busy with other work it shows what a change saved when the
// wall clock mostly shows the others.
//
//   kelvaro_bench_catalogue ROOT RUNS EXPECTED_ROWS CATALOGUE_DIR [LABEL]
#include "benchstats.h"
#include "photocatalogue.h"
#include "photodatabase.h"
#include "statistic.h"
#include "tmyworkerobject.h"
#include "workertiming.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace {

const QList<QString> patterns { "*.arw", "*.raf", "*.nef",  "*.cr2",  "*.cr3", "*.rw2", "*.jpg",
                                "*.dng", "*.orf", "*.heic", "*.heif", "*.hif", "*.avif" };

QtMessageHandler defaultHandler = nullptr;

void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!message.contains(QLatin1String("duplicate connection name")))
        defaultHandler(type, context, message);
}

double scanOnce(const QString &root, const QString &catalogue)
{
    QList<QString> directories { root };
    QList<QString> types = patterns;
    QList<QString> none;
    auto *worker = new TMyWorkerObject(directories, types, true, none, none);
    QStringList groupedIndexes;
    for (const Statistic &statistic : Statistics::all())
        groupedIndexes << statistic.rangeIndexStatement();
    worker->setGroupedStatisticIndexes(groupedIndexes);
    TMyWorkerObject::CatalogueUse use;
    use.file = catalogue;
    worker->setCatalogue(use);
    return benchstats::timeWorkerScan(worker);
}

// Every row as text, ids counted from the scan's first, reals with all their digits.
QStringList rowsOf(QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT d.*, i.* FROM DATEIEN d LEFT JOIN PHOTOINFO i ON i.ID = "
                              "d.id ORDER BY d.id"));
    QStringList rows;
    qint64 first = -1;
    while (query.next()) {
        if (first < 0)
            first = query.value(0).toLongLong();
        QStringList values { QString::number(query.value(0).toLongLong() - first) };
        const QSqlRecord record = query.record();
        for (int i = 1; i < record.count(); ++i) {
            const QVariant v = query.value(i);
            // The second table's id follows the first's.
            if (record.fieldName(i).compare(QLatin1String("ID"), Qt::CaseInsensitive) == 0) {
                values << QString::number(v.toLongLong() - first);
                continue;
            }
            values << QString::fromLatin1(v.typeName() ? v.typeName() : "null") + QLatin1Char(':')
                    + (v.typeId() == QMetaType::Double ? QString::number(v.toDouble(), 'g', 17)
                                                       : v.toString());
        }
        rows << values.join(QLatin1Char('|'));
    }
    return rows;
}

std::vector<std::string> listFiles(const char *root)
{
    std::vector<std::string> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (entry.is_regular_file())
            files.push_back(entry.path().string());
    }
    return files;
}

// The floor under a rescan: walk the tree and lstat() each file.
double lstatFloor(const char *root, long &files)
{
    const auto start = benchstats::Clock::now();
    files = 0;
    struct stat st;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(root)) {
        if (::lstat(entry.path().c_str(), &st) == 0 && S_ISREG(st.st_mode))
            ++files;
    }
    return benchstats::secondsBetween(start, benchstats::Clock::now());
}

void evict(const std::vector<std::string> &files)
{
    for (const std::string &path : files) {
        const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            continue;
        ::posix_fadvise(fd, 0, 0, POSIX_FADV_DONTNEED);
        ::close(fd);
    }
}

qint64 sizeOnDisk(const QString &file)
{
    qint64 bytes = 0;
    for (const QString &part : { file, file + "-wal", file + "-shm" }) {
        struct stat st;
        if (::stat(QFile::encodeName(part).constData(), &st) == 0)
            bytes += qint64(st.st_blocks) * 512;
    }
    return bytes;
}

void removeCatalogue(const QString &file)
{
    for (const QString &part : { file, file + "-wal", file + "-shm" })
        QFile::remove(part);
}

// User and system time of every thread of this process so far.
double processorSeconds()
{
    struct rusage usage;
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &t) { return double(t.tv_sec) + t.tv_usec / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct Timing
{
    double seconds;
    double processor;
};

struct Series
{
    std::vector<double> seconds;
    std::vector<double> processor;
    void add(const Timing &timing)
    {
        seconds.push_back(timing.seconds);
        processor.push_back(timing.processor);
    }
    double rate(long files) const { return files / benchstats::median(seconds); }
    double processorMedian() const { return benchstats::median(processor); }
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 5) {
        std::fprintf(stderr, "usage: %s ROOT RUNS EXPECTED_ROWS CATALOGUE_DIR [LABEL]\n", argv[0]);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const int runs = std::max(1, std::atoi(argv[2]));
    const long expected = std::atol(argv[3]);
    QDir().mkpath(QString::fromLocal8Bit(argv[4]));
    const QString catalogue = QString::fromLocal8Bit(argv[4]) + "/photo-catalogue.sqlite";
    const QString scratch = QString::fromLocal8Bit(argv[4]) + "/first-scan.sqlite";
    const char *label = argc > 5 ? argv[5] : "catalogue";
    defaultHandler = qInstallMessageHandler(messageHandler);

    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db)) {
        std::fprintf(stderr, "cannot open the photo database\n");
        return 1;
    }
    const std::vector<std::string> files = listFiles(argv[1]);
    QStringList reference;
    // Runs a scan, checks its rows against the scan without the catalogue, returns its times.
    const auto timed = [&](const QString &file, bool cold) -> Timing {
        PhotoDatabase::clear(db);
        if (cold)
            evict(files);
        const double processorBefore = processorSeconds();
        const double seconds = scanOnce(root, file);
        const double processor = processorSeconds() - processorBefore;
        const QStringList rows = rowsOf(db);
        if (rows.size() != expected || (!reference.isEmpty() && rows != reference)) {
            std::fprintf(stderr, "%s: a scan stored %lld rows (expected %ld)\n", label,
                         qint64(rows.size()), expected);
            for (qsizetype i = 0; i < std::min(rows.size(), reference.size()); ++i) {
                if (rows.at(i) != reference.at(i)) {
                    std::fprintf(stderr, "first other row:\n  %s\ninstead of\n  %s\n",
                                 qPrintable(rows.at(i)), qPrintable(reference.at(i)));
                    break;
                }
            }
            std::exit(1);
        }
        if (reference.isEmpty())
            reference = rows;
        return { seconds, processor };
    };

    // Warm-up: fills the page cache and the catalogue.
    removeCatalogue(catalogue);
    timed(QString(), false);
    timed(catalogue, false);

    Series warmWith, warmWithout, warmFloor, coldWith, coldWithout, coldFloor, firstWith,
        firstWithout;
    long floorFiles = 0;
    for (int run = 0; run < runs; ++run) {
        // The cold runs before dropped the files' pages: an untimed scan reads them in again, so
        // that the warm runs find what a rescan soon after a scan finds.
        if (run > 0)
            timed(QString(), false);
        // Each run's order turns, so that none always goes first.
        const bool withFirst = run % 2 == 0;
        for (int turn = 0; turn < 2; ++turn) {
            if ((turn == 0) == withFirst)
                warmWith.add(timed(catalogue, false));
            else
                warmWithout.add(timed(QString(), false));
        }
        warmFloor.seconds.push_back(lstatFloor(argv[1], floorFiles));
        // Still warm: the cold runs below leave the files' pages dropped.
        for (int turn = 0; turn < 2; ++turn) {
            if ((turn == 0) == withFirst) {
                removeCatalogue(scratch);
                firstWith.add(timed(scratch, false));
            } else {
                firstWithout.add(timed(QString(), false));
            }
        }
        for (int turn = 0; turn < 2; ++turn) {
            if ((turn == 0) == withFirst)
                coldWith.add(timed(catalogue, true));
            else
                coldWithout.add(timed(QString(), true));
        }
        evict(files);
        coldFloor.seconds.push_back(lstatFloor(argv[1], floorFiles));
    }
    removeCatalogue(scratch);

    const auto line = [&](const char *name, const Series &with, const Series &without,
                          const Series &floor) {
        const double withRate = with.rate(expected), withoutRate = without.rate(expected),
                     floorRate = floor.rate(floorFiles);
        std::printf("RESULT %s_%s files=%ld with_files_per_s=%.0f without_files_per_s=%.0f "
                    "floor_files_per_s=%.0f speedup=%.2f of_floor_pct=%.1f with_cpu_s=%.3f "
                    "without_cpu_s=%.3f with_runs_s=%s without_runs_s=%s floor_runs_s=%s\n",
                    label, name, expected, withRate, withoutRate, floorRate, withRate / withoutRate,
                    100 * withRate / floorRate, with.processorMedian(), without.processorMedian(),
                    benchstats::joined(with.seconds, 4).c_str(),
                    benchstats::joined(without.seconds, 4).c_str(),
                    benchstats::joined(floor.seconds, 4).c_str());
    };
    line("warm", warmWith, warmWithout, warmFloor);
    line("cold", coldWith, coldWithout, coldFloor);
    const double first = benchstats::median(firstWith.seconds),
                 plain = benchstats::median(firstWithout.seconds);
    std::printf("RESULT %s_first files=%ld with_s=%.4f without_s=%.4f slower_pct=%.1f "
                "with_cpu_s=%.3f without_cpu_s=%.3f with_runs_s=%s without_runs_s=%s\n",
                label, expected, first, plain, 100 * (first / plain - 1),
                firstWith.processorMedian(), firstWithout.processorMedian(),
                benchstats::joined(firstWith.seconds, 4).c_str(),
                benchstats::joined(firstWithout.seconds, 4).c_str());
    const qint64 bytes = sizeOnDisk(catalogue);
    std::printf("RESULT %s_size files=%ld bytes=%lld bytes_per_photo=%.0f\n", label, expected,
                bytes, double(bytes) / double(expected));
    PhotoDatabase::clear(db);
    return 0;
}
