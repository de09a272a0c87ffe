#include "tst_scanstress.h"

#include "chartwall.h"
#include "photodatabase.h"
#include "scanfixtures.h"
#include "scanrun.h"
#include "testutils.h"
#include "writewatch.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDirIterator>
#include <QRandomGenerator>
#include <QSqlQuery>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <optional>

namespace {

const QString unprotectedReader = QStringLiteral("ReaderWithoutPragma");
constexpr int scanTimeoutMs = 300000;

// Runs every statistic statement once on db, reading each result to its end, as the charts do
// when they are rebuilt.
void refreshStatistics(const QSqlDatabase &db)
{
    for (const QString &statement : scantest::statisticQueries) {
        QSqlQuery query(db);
        query.exec(statement);
        while (query.next()) { }
    }
}

// Size, modification time and content of every file below root.
QByteArray treeSnapshot(const QString &root, int *files)
{
    QStringList paths;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        paths << it.next();
    paths.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &path : std::as_const(paths)) {
        const QFileInfo info(path);
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        hash.addData(path.toUtf8() + ' ' + QByteArray::number(info.size()) + ' '
                     + QByteArray::number(info.lastModified().toMSecsSinceEpoch()) + ' '
                     + file.readAll());
    }
    *files = int(paths.size());
    return hash.result().toHex();
}

bool makeReadOnly(const QString &root)
{
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        if (!QFile::setPermissions(it.next(),
                                   QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther))
            return false;
    }
    return true;
}

} // namespace

void tst_ScanStress::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_ScanStress::init()
{
    PhotoDatabase::clear(db);
}

void tst_ScanStress::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_ScanStress::readersDuringScanKeepEveryRow_data()
{
    QTest::addColumn<bool>("throughCharts");
    QTest::newRow("the chart controllers rebuilt") << true;
    QTest::newRow("the statistic statements alone") << false;
}

// At every 50th file the worker waits while the main connection rebuilds the charts and then
// leaves a statement half read, as the raw-data table does until it has fetched every row; the
// worker's next INSERTs meet that open reader every time, not only when the threads happen to
// overlap. The main connection reads uncommitted, so no INSERT is ever refused.
void tst_ScanStress::readersDuringScanKeepEveryRow()
{
    QFETCH(bool, throughCharts);
    constexpr int photos = 2000;
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), photos));

    ChartWall charts(db);
    std::unique_ptr<QSqlQuery> halfRead;
    int refreshes = 0;
    std::atomic<int> refusals { 0 };
    PhotoDatabase::setLockedRetryHook([&] { ++refusals; });
    {
        ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
        run.onEveryUpdate([&](int) {
            halfRead.reset();
            if (throughCharts)
                charts.rebuild();
            else
                refreshStatistics(db);
            halfRead = scantest::openHalfReadSelect(db);
            ++refreshes;
        });
        run.start();
        QVERIFY2(run.waitDone(scanTimeoutMs), "the scan did not end");
    }
    halfRead.reset();
    PhotoDatabase::setLockedRetryHook({});

    QCOMPARE(refreshes, photos / 50);
    QCOMPARE(int(refusals), 0);
    QCOMPARE(scantest::rowCount(db), photos);
    charts.rebuild();
    QCOMPARE(charts.photosInMakerTable(), photos);
}

void tst_ScanStress::readerLocksAndInserts_data()
{
    QTest::addColumn<bool>("mainConnection");
    QTest::addColumn<bool>("rowsLost");

    QTest::newRow("main connection, reading uncommitted: no row lost") << true << false;
    QTest::newRow("a reader without read-uncommitted: rows lost") << false << true;
}

// A plain INSERT (no retry) on the worker's own connection while a reader holds a half-read
// SELECT. Without read-uncommitted that reader holds the table's read lock for as long as its
// statement is open, so every INSERT is refused; the main connection must take no such lock.
void tst_ScanStress::readerLocksAndInserts()
{
    QFETCH(bool, mainConnection);
    QFETCH(bool, rowsLost);

    std::optional<scantest::OwnConnection> unprotected;
    if (!mainConnection)
        unprotected.emplace(unprotectedReader);
    const QSqlDatabase reader = mainConnection ? db : unprotected->db;
    QVERIFY(scantest::insertRows(db, 3));
    auto halfRead = scantest::openHalfReadSelect(reader);
    QVERIFY2(halfRead->isActive(), "the reading statement did not start");

    constexpr int attempts = 50;
    int refusedForLock = 0;
    {
        scantest::OwnConnection writer(QStringLiteral("PlainWriter"));
        for (int i = 0; i < attempts; ++i) {
            QSqlQuery insert(writer.db);
            insert.prepare(PhotoDatabase::insertStatement);
            scantest::bindRow(insert, QStringLiteral("PLAIN_%1.JPG").arg(i));
            if (!insert.exec() && PhotoDatabase::failedOnTableLock(insert))
                ++refusedForLock;
        }
    }
    halfRead.reset();

    const int stored = scantest::rowCount(db) - 3;
    qInfo("%d of %d rows lost", attempts - stored, attempts);
    QCOMPARE(stored + refusedForLock, attempts);
    QCOMPARE(refusedForLock, rowsLost ? attempts : 0);
}

// A reader without the pragma (not the window's, which has it) holds a half-read SELECT at every
// 50th file; the worker's INSERT is refused, and when it is retried the reader has let go (on the
// main thread, while the worker waits): the retry keeps every row.
void tst_ScanStress::workerKeepsRowsWhenAReaderLacksThePragma()
{
    constexpr int photos = 2000;
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), photos));
    {
        scantest::OwnConnection reader(unprotectedReader);
        std::unique_ptr<QSqlQuery> halfRead;
        QObject mainThread;
        int refusals = 0;
        PhotoDatabase::setLockedRetryHook([&] {
            QMetaObject::invokeMethod(
                &mainThread,
                [&] {
                    ++refusals;
                    halfRead.reset();
                },
                Qt::BlockingQueuedConnection);
        });
        {
            ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
            run.onEveryUpdate([&](int) {
                refreshStatistics(reader.db);
                halfRead = scantest::openHalfReadSelect(reader.db);
            });
            run.start();
            QVERIFY2(run.waitDone(scanTimeoutMs), "the scan did not end");
        }
        PhotoDatabase::setLockedRetryHook({});
        QCOMPARE(refusals, photos / 50);
    }
    QCOMPARE(scantest::rowCount(db), photos);
}

void tst_ScanStress::fiftyScansStoppedAtRandomPoints()
{
    testutils::Sandbox sandbox;
    const QStringList folders = scantest::writePhotoTree(sandbox.path(), 1000, 4);
    QVERIFY(!folders.isEmpty());

    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("random stop points from seed %u", seed);
    QRandomGenerator random(seed);
    std::vector<std::unique_ptr<ScanRun>> runs;
    constexpr int scans = 50;
    for (int i = 0; i < scans; ++i) {
        // As the main window: stop and wait, empty the table, start the next scan.
        if (!runs.empty())
            runs.back()->stop();
        PhotoDatabase::clear(db);
        runs.push_back(std::make_unique<ScanRun>(QList<QString> { sandbox.path() },
                                                 scantest::allPatterns, true));
        runs.back()->start();
        if (i < scans - 1 && random.bounded(4) != 0)
            QTest::qWait(random.bounded(40));
    }
    QVERIFY2(runs.back()->waitDone(scanTimeoutMs), "the last scan did not end");
    QCOMPARE(scantest::rowCount(db), 1000);

    // Every stopped scan still sends operationDone() exactly once; it arrives late, queued.
    QTRY_VERIFY_WITH_TIMEOUT(std::all_of(runs.begin(), runs.end(),
                                         [](const auto &run) { return run->threadFinished(); }),
                             scanTimeoutMs);
    QCoreApplication::processEvents();
    for (int i = 0; i < scans; ++i)
        QVERIFY2(runs[i]->doneCount() == 1,
                 qPrintable(QStringLiteral("scan %1 sent operationDone() %2 times")
                                .arg(i)
                                .arg(runs[i]->doneCount())));
}

void tst_ScanStress::writeWatchSeesWritesButNotReads()
{
    testutils::Sandbox sandbox;
    const QString path = sandbox.filePath("photo.jpg");
    QVERIFY(fixture::writePhoto(path, fixture::Format::Jpeg, fixture::typicalTags()));
    WriteWatch watch({ sandbox.path() });
    if (!watch.isValid())
        QSKIP("file-change notification is not available here");

    QFile reading(path);
    QVERIFY(reading.open(QIODevice::ReadOnly));
    QVERIFY(!reading.readAll().isEmpty());
    reading.close();
    QCOMPARE(watch.changes(), QStringList {});

    // Opened for writing and closed, nothing written: still reported.
    QFile writing(path);
    QVERIFY(writing.open(QIODevice::ReadWrite));
    writing.close();
    QCOMPARE(watch.changes(), QStringList { "closed-after-writing " + path });
}

void tst_ScanStress::largeReadOnlyTreeStoppedAtRandomPoints()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.filePath("photos");
    constexpr int photos = 20000;
    const QStringList folders = scantest::writePhotoTree(root, photos, 20);
    QVERIFY(!folders.isEmpty());
    QVERIFY(makeReadOnly(root));
    int files = 0;
    const QByteArray before = treeSnapshot(root, &files);
    QCOMPARE(files, photos);
    WriteWatch watch(QStringList(folders) << root);
    if (!watch.isValid())
        QSKIP("file-change notification is not available here");

    const quint32 seed = QRandomGenerator::global()->generate();
    qInfo("random stop points from seed %u", seed);
    QRandomGenerator random(seed);
    for (int i = 0; i < 8; ++i) {
        PhotoDatabase::clear(db);
        ScanRun run({ root }, scantest::allPatterns, true);
        run.start();
        QTest::qWait(random.bounded(400));
        run.stop();
        QVERIFY(scantest::rowCount(db) <= photos);
    }
    PhotoDatabase::clear(db);
    ScanRun last({ root }, scantest::allPatterns, true);
    last.start();
    QVERIFY2(last.waitDone(scanTimeoutMs), "the last scan did not end");
    QCOMPARE(scantest::rowCount(db), photos);

    const QStringList changes = watch.changes();
    QVERIFY2(changes.isEmpty(), qPrintable(changes.mid(0, 5).join('\n')));
    QCOMPARE(treeSnapshot(root, &files), before);
}
