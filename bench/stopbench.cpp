// How long stopping a scan keeps the window waiting, with many rows stored: the table holds ROWS
// rows when a scan of the library starts; once the worker has sent its first progress report the
// scan is stopped the way the main window stops it (interruption request, quit, a wait without a
// time limit) and the table is emptied as before the next scan. Timed from the stop request until
// the table is empty again, the point where the window handles events again.
//
//   kelvaro_bench_stop LIBRARY ROWS RUNS
#include "benchstats.h"
#include "photodatabase.h"
#include "tmyworkerobject.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QThread>
#include <QVariant>

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

bool fillTable(QSqlDatabase &db, int rows)
{
    db.transaction();
    QSqlQuery insert(db);
    insert.prepare(PhotoDatabase::insertStatement);
    for (int i = 0; i < rows; ++i) {
        insert.bindValue(":filename", QStringLiteral("IMG_%1.JPG").arg(i));
        insert.bindValue(
            ":date",
            QStringLiteral("2023:07:%1 18:30:05").arg(1 + i % 28, 2, 10, QLatin1Char('0')));
        insert.bindValue(":maker", QStringLiteral("Maker %1").arg(i % 8));
        insert.bindValue(":model", QStringLiteral("Model %1").arg(i % 30));
        insert.bindValue(":lens", QStringLiteral("Lens %1").arg(i % 60));
        insert.bindValue(":focallength", double(10 + i % 300));
        insert.bindValue(":iso", 100 << (i % 7));
        insert.bindValue(":fnumber", QString::number(1.4 + (i % 20) / 2.0));
        insert.bindValue(":exptime", 1.0 / (1 + i % 4000));
        insert.bindValue(":exptimestring", QStringLiteral("1/%1").arg(1 + i % 4000));
        insert.bindValue(":meteringmode", QStringLiteral("Multi-segment"));
        insert.bindValue(":exposuremode", QStringLiteral("Manual"));
        if (!insert.exec())
            return false;
    }
    return db.commit();
}

int rowCount(const QSqlDatabase &db)
{
    QSqlQuery query(QStringLiteral("SELECT count(*) FROM DATEIEN"), db);
    return query.next() ? query.value(0).toInt() : -1;
}

// Seconds from the stop request to the emptied table.
double stopOnce(QSqlDatabase &db, const QString &library, int rows)
{
    if (!fillTable(db, rows) || rowCount(db) != rows) {
        std::fprintf(stderr, "kelvaro_bench_stop: the table could not be filled\n");
        std::exit(1);
    }
    QList<QString> directories { library };
    QList<QString> patterns { "*.arw", "*.raf", "*.nef", "*.cr2", "*.cr3",
                              "*.rw2", "*.jpg", "*.dng", "*.orf" };
    QList<QString> noMakers, noModels;
    auto *worker = new TMyWorkerObject(directories, patterns, true, noMakers, noModels);
    QThread thread;
    worker->moveToThread(&thread);
    std::atomic<bool> reported { false };
    QObject::connect(
        worker, &TMyWorkerObject::operationUpdate, worker, [&](int) { reported = true; },
        Qt::DirectConnection);
    QObject::connect(&thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    QObject::connect(worker, &TMyWorkerObject::operationDone, &thread, &QThread::quit);
    QObject::connect(&thread, &QThread::finished, worker, &QObject::deleteLater);
    thread.start();
    while (!reported && !thread.isFinished())
        QThread::yieldCurrentThread();

    const auto start = benchstats::Clock::now();
    thread.requestInterruption();
    thread.exit(0);
    thread.wait();
    PhotoDatabase::clear(db);
    const double seconds = benchstats::secondsBetween(start, benchstats::Clock::now());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return seconds;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: kelvaro_bench_stop LIBRARY ROWS RUNS\n");
        return 2;
    }
    const QString library = QString::fromLocal8Bit(argv[1]);
    const int rows = std::atoi(argv[2]);
    const int runs = std::atoi(argv[3]);

    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db)) {
        std::fprintf(stderr, "kelvaro_bench_stop: no database\n");
        return 1;
    }
    std::vector<double> times;
    for (int run = 0; run < runs; ++run)
        times.push_back(stopOnce(db, library, rows));
    std::printf("RESULT stop rows=%d median_ms=%.1f runs_ms=", rows,
                1000 * benchstats::median(times));
    for (size_t i = 0; i < times.size(); ++i)
        std::printf("%s%.1f", i ? "," : "", 1000 * times[i]);
    std::printf("\n");
    return 0;
}
