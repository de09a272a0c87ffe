#include "tst_readerpool.h"

#include "photodatabase.h"
#include "readerpool.h"
#include "reorderbuffer.h"
#include "scanfixtures.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QMutex>
#include <QProcess>
#include <QSemaphore>
#include <QSqlQuery>
#include <QTest>
#include <QThread>
#include <QWaitCondition>

#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

namespace {

// Notes what a reader did with it, and on which thread.
class NotingCompanion : public ReaderPool::Companion
{
public:
    void beforeRead(const QString &path) override
    {
        calls << QStringLiteral("before ") + path;
        threads << QThread::currentThread();
    }
    void afterRead(const QString &path, const PhotoRead &read) override
    {
        calls << QStringLiteral("after %1 %2").arg(path).arg(int(read.outcome));
        threads << QThread::currentThread();
    }
    QStringList calls;
    QList<QThread *> threads;
};

const int defaultThreads = ReaderPool::defaultThreads;

PhotoRead photoNamed(const QString &name)
{
    PhotoRead read;
    read.outcome = PhotoRead::Outcome::Photo;
    read.values = { name };
    return read;
}

// Makes each even-numbered file's result wait until the next file's has been handed over, so
// that every pair arrives reversed; records the order of arrival. Deadlock-free with two or more
// readers: the odd file of a pair never waits, and the queue hands the pair out in order.
class PairSwapper
{
public:
    explicit PairSwapper(qint64 files)
        : files(files)
    { }

    ReaderPool::StepHook hook()
    {
        return [this](ReaderPool::Step step, qint64 sequence, const QString &) {
            QMutexLocker lock(&mutex);
            if (step == ReaderPool::Step::Read && sequence % 2 == 0 && sequence + 1 < files) {
                while (!arrived.contains(sequence + 1))
                    changed.wait(&mutex);
            } else if (step == ReaderPool::Step::HandedOver) {
                arrived << sequence;
                changed.wakeAll();
            }
        };
    }

    void install() { ReaderPool::setStepHook(hook()); }

    QList<qint64> arrivals()
    {
        QMutexLocker lock(&mutex);
        return arrived;
    }

private:
    const qint64 files;
    QMutex mutex;
    QWaitCondition changed;
    QList<qint64> arrived;
};

// Every row in id order, ids counted from the scan's first, so that scans after one another
// compare.
QStringList rows(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    query.exec(QStringLiteral(
        "SELECT id, FILENAME, DATE, MAKER, MODEL, LENS, FOCALLENGTH, ISO, FNUMBER, EXPTIME, "
        "EXPTIMESTRING, METERINGMODE, EXPOSUREMODE FROM DATEIEN ORDER BY id"));
    QStringList rows;
    qint64 firstId = -1;
    while (query.next()) {
        if (firstId < 0)
            firstId = query.value(0).toLongLong();
        QStringList values { QString::number(query.value(0).toLongLong() - firstId) };
        for (int i = 1; i < 13; ++i)
            values << query.value(i).toString();
        rows << values.join(QLatin1Char('|'));
    }
    return rows;
}

enum class Tree { Varied, SampleLibrary, VanishingFile, UnreadableDirectory, Fifo };

const QString vanishing = QStringLiteral("vanishing.jpg");

// Builds the tree once; returns the directories to scan.
QList<QString> buildTree(Tree tree, const QString &root, QString *failure)
{
    if (tree == Tree::SampleLibrary) {
        QProcess process;
        process.start(QStringLiteral(KELVARO_MAKE_SAMPLES), { root });
        if (!process.waitForFinished(120000) || process.exitCode() != 0) {
            *failure = QStringLiteral("kelvaro-make-samples failed");
            return {};
        }
        return { root };
    }
    const QStringList folders = scantest::writePhotoTree(root + "/a", 170, 4);
    if (folders.isEmpty() || !scantest::writePhotos(root + "/b", 60, QStringLiteral("B_"))) {
        *failure = QStringLiteral("the photos could not be written");
        return {};
    }
    if (tree == Tree::VanishingFile)
        QFile::copy(folders.first() + "/F0_00001.jpg", root + "/a/f0/" + vanishing);
    fixture::writeBytes(root + "/a/notes.jpg", QByteArray("not a photo"));
#ifdef Q_OS_UNIX
    if (tree == Tree::Fifo)
        ::mkfifo(QFile::encodeName(root + "/a/f0/pipe.jpg").constData(), 0644);
#endif
    if (tree == Tree::UnreadableDirectory) {
        scantest::writePhotos(root + "/a/locked", 5, QStringLiteral("L_"));
        QFile::setPermissions(root + "/a/locked", QFileDevice::Permissions());
    }
    return { root + "/a", root + "/b" };
}

} // namespace

void tst_ReaderPool::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_ReaderPool::init()
{
    PhotoDatabase::clear(db);
}

void tst_ReaderPool::cleanup()
{
    ReaderPool::setStepHook({});
}

void tst_ReaderPool::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_ReaderPool::reorderBufferHandsBackInSequence_data()
{
    QTest::addColumn<QList<int>>("arrivals");

    QTest::newRow("in order") << QList<int> { 0, 1, 2, 3, 4 };
    QTest::newRow("reversed") << QList<int> { 4, 3, 2, 1, 0 };
    QTest::newRow("pairs swapped") << QList<int> { 1, 0, 3, 2, 5, 4 };
    QTest::newRow("the first last") << QList<int> { 1, 2, 3, 4, 0 };
}

void tst_ReaderPool::reorderBufferHandsBackInSequence()
{
    QFETCH(QList<int>, arrivals);

    ReorderBuffer buffer;
    for (int sequence : arrivals)
        buffer.put(sequence, photoNamed(QString::number(sequence)));
    QCOMPARE(buffer.held(), arrivals.size());
    for (int expected = 0; expected < arrivals.size(); ++expected)
        QCOMPARE(buffer.takeNext().values.value(0).toString(), QString::number(expected));
    QCOMPARE(buffer.held(), 0);
}

void tst_ReaderPool::resultsComeBackInSubmissionOrder_data()
{
    QTest::addColumn<int>("threads");
    QTest::addColumn<bool>("swapPairs");

    QTest::newRow("1 reader") << 1 << false;
    QTest::newRow("2 readers, every pair arriving reversed") << 2 << true;
    QTest::newRow("default readers, every pair arriving reversed") << defaultThreads << true;
}

void tst_ReaderPool::resultsComeBackInSubmissionOrder()
{
    QFETCH(int, threads);
    QFETCH(bool, swapPairs);

    testutils::Sandbox sandbox;
    const int files = 40;
    QVERIFY(scantest::writePhotos(sandbox.path(), files));
    PairSwapper swapper(files);
    if (swapPairs)
        swapper.install();

    QStringList expected, taken;
    {
        ReaderPool pool(threads, [] { return false; });
        QCOMPARE(pool.threadCount(), threads);
        QStringList paths;
        for (int i = 1; i <= files; ++i) {
            expected << QStringLiteral("IMG_%1.jpg").arg(i, 5, 10, QLatin1Char('0'));
            paths << sandbox.filePath(expected.last());
        }
        // In two batches, so that the second is queued while readers work on the first.
        pool.submit(paths.mid(0, files / 2));
        pool.submit(paths.mid(files / 2));
        for (int i = 0; i < files; ++i) {
            const PhotoRead read = pool.takeNext();
            QCOMPARE(int(read.outcome), int(PhotoRead::Outcome::Photo));
            taken << read.values.value(0).toString();
        }
    }
    QCOMPARE(taken, expected);
    if (swapPairs) {
        const QList<qint64> arrivals = swapper.arrivals();
        for (qint64 even = 0; even < files; even += 2)
            QVERIFY2(
                arrivals.indexOf(even + 1) < arrivals.indexOf(even),
                qPrintable(QStringLiteral("file %1 arrived before %2").arg(even).arg(even + 1)));
    }
    QCOMPARE(ReaderPool::readersRunning(), 0);
}

void tst_ReaderPool::stopLetsReadersFinishOnlyTheFileInHand_data()
{
    QTest::addColumn<int>("threads");

    QTest::newRow("1 reader") << 1;
    QTest::newRow("4 readers") << 4;
    QTest::newRow("default readers") << defaultThreads;
}

// Every reader is held with a file in hand; then the stop comes. The files in hand are read to
// the end, no further file is read, and what was not taken is dropped with the pool.
void tst_ReaderPool::stopLetsReadersFinishOnlyTheFileInHand()
{
    QFETCH(int, threads);

    testutils::Sandbox sandbox;
    const int files = 3 * threads;
    QVERIFY(scantest::writePhotos(sandbox.path(), files));
    QSemaphore inHand, gate;
    std::atomic<int> taken { 0 };
    ReaderPool::setStepHook([&](ReaderPool::Step step, qint64, const QString &) {
        if (step != ReaderPool::Step::Taken)
            return;
        ++taken;
        inHand.release();
        gate.acquire();
    });
    std::atomic<bool> stop { false };
    {
        ReaderPool pool(threads, [&stop] { return stop.load(); });
        QStringList paths;
        for (int i = 1; i <= files; ++i)
            paths << sandbox.filePath(QStringLiteral("IMG_%1.jpg").arg(i, 5, 10, QChar('0')));
        pool.submit(paths);
        inHand.acquire(threads);
        stop = true;
        gate.release(files);
        for (int i = 0; i < threads; ++i)
            QCOMPARE(int(pool.takeNext().outcome), int(PhotoRead::Outcome::Photo));
        QCOMPARE(int(pool.takeNext().outcome), int(PhotoRead::Outcome::NotRead));
        // The rest is never taken: the pool drops it.
    }
    QCOMPARE(taken.load(), threads);
    QCOMPARE(ReaderPool::readersRunning(), 0);
}

// Every second file has a companion: it is told of the file before the read and of the result
// after it, on a reader's thread, and its notes are complete once the result is taken.
void tst_ReaderPool::companionsAreCalledOnTheReaderAroundTheRead()
{
    testutils::Sandbox sandbox;
    const int files = 20;
    QVERIFY(scantest::writePhotos(sandbox.path(), files));
    QStringList paths;
    QList<std::shared_ptr<ReaderPool::Companion>> companions;
    QList<std::shared_ptr<NotingCompanion>> noting;
    for (int i = 1; i <= files; ++i) {
        paths << sandbox.filePath(QStringLiteral("IMG_%1.jpg").arg(i, 5, 10, QChar('0')));
        noting << (i % 2 == 0 ? std::make_shared<NotingCompanion>() : nullptr);
        companions << noting.last();
    }
    ReaderPool pool(4, [] { return false; });
    pool.submit(paths, companions);
    for (int i = 0; i < files; ++i) {
        const PhotoRead read = pool.takeNext();
        QCOMPARE(int(read.outcome), int(PhotoRead::Outcome::Photo));
        if (!noting.at(i))
            continue;
        QCOMPARE(noting.at(i)->calls,
                 QStringList({ QStringLiteral("before ") + paths.at(i),
                               QStringLiteral("after %1 %2")
                                   .arg(paths.at(i))
                                   .arg(int(PhotoRead::Outcome::Photo)) }));
        for (QThread *thread : std::as_const(noting.at(i)->threads))
            QVERIFY(thread != QThread::currentThread());
    }
}

// One reader holds the first file when the stop comes: that file's companion is called, the
// next file is handed back unread and its companion never hears of it.
void tst_ReaderPool::companionOfAFilePassedOverForAStopIsNotCalled()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 2));
    QSemaphore inHand, gate;
    ReaderPool::setStepHook([&](ReaderPool::Step step, qint64, const QString &) {
        if (step != ReaderPool::Step::Taken)
            return;
        inHand.release();
        gate.acquire();
    });
    std::atomic<bool> stop { false };
    auto first = std::make_shared<NotingCompanion>();
    auto second = std::make_shared<NotingCompanion>();
    {
        ReaderPool pool(1, [&stop] { return stop.load(); });
        pool.submit({ sandbox.filePath(QStringLiteral("IMG_00001.jpg")),
                      sandbox.filePath(QStringLiteral("IMG_00002.jpg")) },
                    { first, second });
        inHand.acquire();
        stop = true;
        gate.release(2);
        QCOMPARE(int(pool.takeNext().outcome), int(PhotoRead::Outcome::Photo));
        QCOMPARE(int(pool.takeNext().outcome), int(PhotoRead::Outcome::NotRead));
    }
    QCOMPARE(first->calls.size(), 2);
    QVERIFY(second->calls.isEmpty());
}

void tst_ReaderPool::rowsAreTheSameForEveryPoolSize_data()
{
    QTest::addColumn<int>("tree");

    QTest::newRow("photos, a text file and exclusions in nested folders") << int(Tree::Varied);
    QTest::newRow("the sample library") << int(Tree::SampleLibrary);
    QTest::newRow("a file that vanishes between the walk and its read") << int(Tree::VanishingFile);
    QTest::newRow("a directory that cannot be read") << int(Tree::UnreadableDirectory);
    QTest::newRow("a FIFO named like a photo") << int(Tree::Fifo);
}

// One reader reads the files one after another, as the scan did before it had a pool; more
// readers, whose results arrive out of order, must store exactly the same rows with the same ids
// and report the same progress.
void tst_ReaderPool::rowsAreTheSameForEveryPoolSize()
{
    QFETCH(int, tree);

    testutils::Sandbox sandbox;
    QString failure;
    const QList<QString> directories = buildTree(Tree(tree), sandbox.path(), &failure);
    QVERIFY2(!directories.isEmpty(), qPrintable(failure));
    const QString vanishingPath = sandbox.path() + "/a/f0/" + vanishing;
    QFile original(vanishingPath);
    const QByteArray vanishingBytes =
        original.open(QIODevice::ReadOnly) ? original.readAll() : QByteArray();
    QCOMPARE(vanishingBytes.isEmpty(), Tree(tree) != Tree::VanishingFile);

    QStringList firstRows, firstEvents;
    // Counted by the one-reader scan: the files the walk hands to the readers, so that the
    // swapper knows the last one, which has no partner to wait for.
    std::atomic<qint64> walked { 0 };
    for (int threads : { 1, 2, defaultThreads }) {
        PairSwapper swapper(walked.load());
        const ReaderPool::StepHook swap = threads > 1 ? swapper.hook() : ReaderPool::StepHook();
        if (Tree(tree) == Tree::VanishingFile)
            QVERIFY(fixture::writeBytes(vanishingPath, vanishingBytes));
        ReaderPool::setStepHook(
            [&walked, swap](ReaderPool::Step step, qint64 sequence, const QString &path) {
                if (step == ReaderPool::Step::Taken) {
                    ++walked;
                    if (path.endsWith(vanishing))
                        QFile::remove(path);
                }
                if (swap)
                    swap(step, sequence, path);
            });
        walked = 0;
        PhotoDatabase::clear(db);
        auto worker = scantest::makeWorker(directories, scantest::allPatterns, true,
                                           { QStringLiteral("SONY") }, { QStringLiteral("X-T3") });
        worker->setReaderThreads(threads);
        const QStringList events = scantest::scanHere(*worker);
        ReaderPool::setStepHook({});
        const QStringList stored = rows(db);
        QVERIFY2(!stored.isEmpty(), "the scan stored nothing");
        if (threads == 1) {
            firstRows = stored;
            firstEvents = events;
            continue;
        }
        QCOMPARE(events, firstEvents);
        QCOMPARE(stored, firstRows);
        const QList<qint64> arrivals = swapper.arrivals();
        QVERIFY2(arrivals.indexOf(1) < arrivals.indexOf(0), "the readers kept to the order");
    }
    if (Tree(tree) == Tree::VanishingFile)
        QVERIFY(!firstRows.join('\n').contains(vanishing));
#ifdef Q_OS_UNIX
    if (Tree(tree) == Tree::UnreadableDirectory)
        QFile::setPermissions(sandbox.path() + "/a/locked",
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                  | QFileDevice::ExeOwner);
#endif
}

void tst_ReaderPool::stopAtTheFiftiethFileDropsWhatWasReadAhead_data()
{
    QTest::addColumn<int>("threads");

    QTest::newRow("1 reader") << 1;
    QTest::newRow("2 readers") << 2;
    QTest::newRow("default readers") << defaultThreads;
    QTest::newRow("64 readers") << 64;
}

// The stop comes at the 50th file, once the readers have read up to the 56th: what they read
// past the 49th is dropped, the rows are those of the first 49 files walked, in the walk's order,
// and the next directory is read up to its next multiple of 50 (never reached with 30 files).
void tst_ReaderPool::stopAtTheFiftiethFileDropsWhatWasReadAhead()
{
    QFETCH(int, threads);

    testutils::Sandbox sandbox;
    const QString first = sandbox.filePath("A");
    const QString second = sandbox.filePath("B");
    QVERIFY(scantest::writePhotos(first, 120, QStringLiteral("A_")));
    QVERIFY(scantest::writePhotos(second, 30, QStringLiteral("B_")));

    QMutex mutex;
    QWaitCondition handedOver;
    qint64 read = 0;
    bool readAhead = false;
    ReaderPool::setStepHook([&](ReaderPool::Step step, qint64 sequence, const QString &) {
        QMutexLocker lock(&mutex);
        if (step == ReaderPool::Step::Read)
            ++read;
        if (step == ReaderPool::Step::HandedOver && sequence >= 55) {
            readAhead = true;
            handedOver.wakeAll();
        }
    });
    auto worker = scantest::makeWorker({ first, second });
    worker->setReaderThreads(threads);
    QObject context;
    connect(
        worker.get(), &TMyWorkerObject::operationUpdate, &context,
        [&](int count) {
            if (count != 50)
                return;
            QMutexLocker lock(&mutex);
            while (!readAhead)
                handedOver.wait(&mutex);
            QThread::currentThread()->requestInterruption();
        },
        Qt::DirectConnection);
    QCOMPARE(scantest::scanOnThread(*worker, false), (QStringList { "update 50", "done" }));
    ReaderPool::setStepHook({});

    const QStringList names = scantest::column(db, QStringLiteral("FILENAME"));
    QStringList walked;
    QDirIterator walk(first, QDir::Files);
    while (walk.hasNext()) {
        walk.next();
        walked << walk.fileName();
    }
    QCOMPARE(names.mid(0, 49), walked.mid(0, 49));
    QCOMPARE(names.filter(QStringLiteral("A_")).size(), 49);
    QCOMPARE(names.filter(QStringLiteral("B_")).size(), 30);
    QVERIFY2(read >= 56, qPrintable(QStringLiteral("the readers read only %1 files").arg(read)));
    QCOMPARE(ReaderPool::readersRunning(), 0);
}

void tst_ReaderPool::stopEndsOnlyTheCurrentDirectoryForEveryPoolSize_data()
{
    QTest::addColumn<int>("threads");

    QTest::newRow("1 reader") << 1;
    QTest::newRow("2 readers") << 2;
    QTest::newRow("default readers") << defaultThreads;
    QTest::newRow("64 readers") << 64;
}

// Asked to stop before the first file: the readers read nothing, and the worker stores what the
// stop rule takes in (each directory up to the next multiple of 50) in the walk's order.
void tst_ReaderPool::stopEndsOnlyTheCurrentDirectoryForEveryPoolSize()
{
    QFETCH(int, threads);

    testutils::Sandbox sandbox;
    QList<QString> directories;
    for (int i = 0; i < 3; ++i) {
        directories << sandbox.filePath(QStringLiteral("D%1").arg(i));
        QVERIFY(scantest::writePhotos(directories.last(), i == 2 ? 10 : 80,
                                      QStringLiteral("D%1_").arg(i)));
    }
    auto worker = scantest::makeWorker(directories);
    worker->setReaderThreads(threads);
    QCOMPARE(scantest::scanOnThread(*worker, true),
             (QStringList { "update 50", "update 100", "done" }));
    const QStringList names = scantest::column(db, QStringLiteral("FILENAME"));
    QCOMPARE(names.size(), 49 + 49 + 10);
    QCOMPARE(names.filter(QStringLiteral("D0_")).size(), 49);
    QCOMPARE(names.filter(QStringLiteral("D1_")).size(), 49);
    QCOMPARE(ReaderPool::readersRunning(), 0);
}
