// A scanning process of its own for the photo catalogue's tests: scans DIRECTORY with its
// subfolders and every pattern, using the catalogue FILE, and prints what it did:
//   read N      files the readers opened
//   rows N      photos stored
//   digest HEX  of the stored rows (scantest::exactRows)
//   note TEXT   what the scan said about the catalogue, if anything
// With KILL_AFTER_READ > 0 the process ends itself with SIGKILL once that many files are read;
// it prints "batch N" as each of the catalogue's batches is committed, before going on.
//
//   kelvaro_catalogue_child FILE DIRECTORY [KILL_AFTER_READ]
#include "photocatalogue.h"
#include "photodatabase.h"
#include "readerpool.h"
#include "scannedrows.h"
#include "tmyworkerobject.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QEventLoop>
#include <QThread>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s FILE DIRECTORY [KILL_AFTER_READ]\n", argv[0]);
        return 2;
    }
    const QString catalogue = QString::fromLocal8Bit(argv[1]);
    QList<QString> directories { QString::fromLocal8Bit(argv[2]) };
    const qint64 killAfter = argc > 3 ? std::atoll(argv[3]) : 0;

    std::atomic<qint64> read { 0 };
    ReaderPool::setStepHook([&read, killAfter](ReaderPool::Step step, qint64, const QString &) {
        if (step == ReaderPool::Step::Read && ++read == killAfter)
            std::raise(SIGKILL);
    });
    PhotoCatalogue::setBatchCommittedHook([](int batch) {
        std::printf("batch %d\n", batch);
        std::fflush(stdout);
    });

    QSqlDatabase db;
    if (!PhotoDatabase::openMainConnection(db))
        return 1;
    QList<QString> patterns { "*.jpg" };
    QList<QString> none;
    auto *worker = new TMyWorkerObject(directories, patterns, true, none, none);
    // Called on the scan's thread; read once that thread has ended.
    QString note;
    TMyWorkerObject::CatalogueUse use;
    use.file = catalogue;
    use.noteTo = [&note](const QString &text) { note = text; };
    worker->setCatalogue(use);
    QThread thread;
    worker->moveToThread(&thread);
    QEventLoop loop;
    QObject::connect(&thread, &QThread::started, worker, &TMyWorkerObject::doOperation);
    QObject::connect(worker, &TMyWorkerObject::operationDone, &thread, &QThread::quit);
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread.start();
    loop.exec();
    thread.wait();
    delete worker;

    const QStringList rows = scantest::exactRows(db);
    std::printf(
        "read %lld\nrows %lld\ndigest %s\n", qint64(read), qint64(rows.size()),
        QCryptographicHash::hash(rows.join(QLatin1Char('\n')).toUtf8(), QCryptographicHash::Sha256)
            .toHex()
            .constData());
    if (!note.isEmpty())
        std::printf("note %s\n", note.toUtf8().constData());
    return 0;
}
