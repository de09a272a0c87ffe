// The scan on a cold page cache: before every timed run each corpus file's pages are dropped
// (posix_fadvise DONTNEED on the file alone, not the machine's cache), so that every read goes to
// the disk as on a photographer's first scan after a restart. Prints, as RESULT lines:
//   cold_walk        the scan's walk alone (directory listing, pattern, file check)
//   cold_floor_N     open, read 16 KiB, close of every file on N threads (file list made untimed)
//   cold_scan_N      the real TMyWorkerObject in its thread with N readers, rows checked
//   warm_scan_N      the same with the pages left in memory (one untimed warm-up first)
//   rows             whether every scan stored the same rows, in the same order, as one reader
//   memory           peak memory growth (VmHWM) over the default pool's cold scans, which run first
#include "benchstats.h"
#include "photodatabase.h"
#include "readerpool.h"
#include "scanwalk.h"
#include "tmyworkerobject.h"
#include "workertiming.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QSqlQuery>
#include <QVariant>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <thread>

namespace {

const QStringList patterns { "*.arw", "*.raf", "*.nef", "*.cr2", "*.cr3",
                             "*.rw2", "*.jpg", "*.dng", "*.orf" };

std::vector<std::string> corpusFiles(const QString &root)
{
    std::vector<std::string> files;
    ScanWalk walk({ root }, patterns, true);
    ScanWalk::File file;
    while (walk.next(file))
        files.push_back(file.path.toStdString());
    return files;
}

// Drops the page-cache pages of every file; needs no special rights.
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

double floorRead(const std::vector<std::string> &files, int threads)
{
    std::atomic<size_t> next { 0 };
    auto work = [&] {
        std::vector<char> buffer(16 * 1024);
        for (size_t i = next++; i < files.size(); i = next++) {
            const int fd = ::open(files[i].c_str(), O_RDONLY | O_CLOEXEC);
            if (fd < 0)
                continue;
            if (::read(fd, buffer.data(), buffer.size()) < 0)
                std::fprintf(stderr, "read failed: %s\n", files[i].c_str());
            ::close(fd);
        }
    };
    const auto start = benchstats::Clock::now();
    std::vector<std::thread> pool;
    for (int t = 0; t < threads; ++t)
        pool.emplace_back(work);
    for (std::thread &thread : pool)
        thread.join();
    return benchstats::secondsBetween(start, benchstats::Clock::now());
}

double walkOnce(const QString &root, long &files)
{
    const auto start = benchstats::Clock::now();
    files = long(corpusFiles(root).size());
    return benchstats::secondsBetween(start, benchstats::Clock::now());
}

double scanOnce(const QString &root, int threads)
{
    QList<QString> directories { root };
    QList<QString> filters = patterns;
    QList<QString> none;
    auto *worker = new TMyWorkerObject(directories, filters, true, none, none);
    worker->setReaderThreads(threads);
    return benchstats::timeWorkerScan(worker);
}

// Every row in id order (ids counted from the scan's first), hashed.
QByteArray rowsDigest(QSqlDatabase &db, long &count)
{
    QSqlQuery query(db);
    // Else the query keeps every row it has passed, which the memory row would count.
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT * FROM DATEIEN ORDER BY id"));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    qint64 firstId = -1;
    count = 0;
    while (query.next()) {
        if (firstId < 0)
            firstId = query.value(0).toLongLong();
        hash.addData(QByteArray::number(query.value(0).toLongLong() - firstId));
        for (int i = 1; i < 13; ++i)
            hash.addData(query.value(i).toString().toUtf8() + '|');
        ++count;
    }
    return hash.result();
}

struct Rows
{
    QByteArray first;
    bool identical = true;
    bool countsRight = true;
};

void check(QSqlDatabase &db, long expected, Rows &rows)
{
    long count = 0;
    const QByteArray digest = rowsDigest(db, count);
    if (rows.first.isEmpty())
        rows.first = digest;
    rows.identical = rows.identical && digest == rows.first;
    rows.countsRight = rows.countsRight && count == expected;
    PhotoDatabase::clear(db);
}

void print(const std::string &label, long files, const std::vector<double> &seconds)
{
    const double median = benchstats::median(seconds);
    std::printf("RESULT %s files=%ld median_s=%.4f files_per_s=%.0f runs_s=%s\n", label.c_str(),
                files, median, files / median, benchstats::joined(seconds, 4).c_str());
    std::fflush(stdout);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s ROOT RUNS EXPECTED_ROWS [POOL_SIZE...]\n", argv[0]);
        return 2;
    }
    const QString root = QString::fromLocal8Bit(argv[1]);
    const int runs = std::max(1, std::atoi(argv[2]));
    const long expected = std::atol(argv[3]);
    std::vector<int> sizes;
    for (int i = 4; i < argc; ++i)
        sizes.push_back(std::atoi(argv[i]));
    if (sizes.empty())
        sizes = { 1, 2, 4, 8, 16, 32, 64 };
    // One reader is the sequential scan everything is compared with; the default pool is
    // measured first, alone, for the memory row (the peak is the process's since its start).
    if (std::find(sizes.begin(), sizes.end(), 1) == sizes.end())
        sizes.push_back(1);
    sizes.erase(std::remove(sizes.begin(), sizes.end(), ReaderPool::defaultThreads), sizes.end());
    sizes.insert(sizes.begin(), ReaderPool::defaultThreads);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});

    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db)) {
        std::fprintf(stderr, "cannot open the photo database\n");
        return 1;
    }
    const std::vector<std::string> files = corpusFiles(root);
    const long count = long(files.size());

    std::vector<double> walk;
    for (int run = 0; run < runs; ++run) {
        evict(files);
        long walked = 0;
        walk.push_back(walkOnce(root, walked));
    }
    print("cold_walk", count, walk);

    for (int threads : { 1, 64 }) {
        std::vector<double> seconds;
        for (int run = 0; run < runs; ++run) {
            evict(files);
            seconds.push_back(floorRead(files, threads));
        }
        print("cold_floor_" + std::to_string(threads), count, seconds);
    }

    Rows rows;
    const long hwmBefore = benchstats::procStatusKb("VmHWM");
    long hwmAfterDefault = 0;
    for (int threads : sizes) {
        std::vector<double> seconds;
        for (int run = 0; run < runs; ++run) {
            evict(files);
            seconds.push_back(scanOnce(root, threads));
            check(db, expected, rows);
        }
        if (threads == ReaderPool::defaultThreads)
            hwmAfterDefault = benchstats::procStatusKb("VmHWM");
        print("cold_scan_" + std::to_string(threads), count, seconds);
    }
    // Warm: one reader and the default, in turn, so that drift weighs on both alike.
    std::vector<double> warm1, warmDefault;
    scanOnce(root, 1);
    check(db, expected, rows);
    for (int run = 0; run < runs; ++run) {
        for (int threads : { 1, ReaderPool::defaultThreads }) {
            const double seconds = scanOnce(root, threads);
            check(db, expected, rows);
            (threads == 1 ? warm1 : warmDefault).push_back(seconds);
        }
    }
    print("warm_scan_1", count, warm1);
    print("warm_scan_default", count, warmDefault);
    std::printf("RESULT rows identical=%s counts_right=%s default_threads=%d\n",
                rows.identical ? "yes" : "NO", rows.countsRight ? "yes" : "NO",
                ReaderPool::defaultThreads);
    std::printf("RESULT memory default_hwm_growth_mb=%.1f\n",
                (hwmAfterDefault - hwmBefore) / 1024.0);
    return rows.identical && rows.countsRight ? 0 : 1;
}
