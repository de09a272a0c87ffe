#include "testscanstress.h"

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

void TestScanStress::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void TestScanStress::init()
{
    PhotoDatabase::clear(db);
}

void TestScanStress::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void TestScanStress::chartRefreshDuringScanKeepsEveryRow()
{
    // Enough photos that the scan outlasts several rebuilds, however fast it reads.
    constexpr int photos = 6000;
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), photos));

    // The window's charts, rebuilt over and over on the main connection while the worker writes.
    ChartWall charts(db);
    ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
    run.start();
    int refreshes = 0;
    while (run.doneCount() == 0) {
        charts.rebuild();
        ++refreshes;
        QCoreApplication::processEvents();
    }
    qInfo("charts rebuilt %d times during the scan", refreshes);
    QVERIFY2(refreshes > 1, "the scan ended before the charts were rebuilt during it");
    QCOMPARE(scantest::rowCount(db), photos);
    charts.rebuild();
    QCOMPARE(charts.photosInMakerTable(), photos);
}

void TestScanStress::statisticsQueriedDuringScanKeepEveryRow()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 2000));

    // The charts' statements alone, in a tight loop: far more reads overlap the worker's writes.
    ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
    run.start();
    int refreshes = 0;
    while (run.doneCount() == 0) {
        refreshStatistics(db);
        ++refreshes;
        QCoreApplication::processEvents();
    }
    qInfo("statistics queried %d times during the scan", refreshes);
    QVERIFY2(refreshes > 1, "the scan ended before the statistics were queried during it");
    QCOMPARE(scantest::rowCount(db), 2000);
}

void TestScanStress::readerLocksAndInserts_data()
{
    QTest::addColumn<bool>("readUncommitted");
    QTest::addColumn<bool>("rowsLost");

    QTest::newRow("main connection, reading uncommitted: no row lost") << true << false;
    QTest::newRow("a reader without read-uncommitted: rows lost") << false << true;
}

// The worker's INSERT without the retry, as a plain loop on a thread of its own, while the
// charts' statements run on the main thread.
void TestScanStress::readerLocksAndInserts()
{
    QFETCH(bool, readUncommitted);
    QFETCH(bool, rowsLost);

    QSqlDatabase reader = db;
    if (!readUncommitted) {
        reader = PhotoDatabase::addConnection(unprotectedReader);
        QVERIFY(reader.open());
    }

    constexpr int attempts = 5000;
    std::atomic<int> failed { 0 };
    std::atomic<bool> started { false };
    std::unique_ptr<QThread> writer(QThread::create([&] {
        {
            QSqlDatabase own = PhotoDatabase::addConnection("PlainWriter");
            own.open();
            QSqlQuery insert(own);
            insert.prepare(PhotoDatabase::insertStatement);
            started = true;
            for (int i = 0; i < attempts; ++i) {
                const fixture::PhotoTags tags = scantest::variedTags(i);
                insert.bindValue(":filename", QStringLiteral("IMG_%1.JPG").arg(i));
                insert.bindValue(":date", tags.dateTimeOriginal);
                insert.bindValue(":maker", tags.make);
                insert.bindValue(":model", tags.model);
                insert.bindValue(":lens", tags.lensModel);
                insert.bindValue(":focallength", double(tags.focalLength->num));
                insert.bindValue(":iso", int(*tags.iso));
                insert.bindValue(":fnumber", QString::number(tags.fNumber->num / 10.0));
                insert.bindValue(":exptime", 1.0 / tags.exposureTime->den);
                insert.bindValue(":exptimestring", "1/250");
                insert.bindValue(":meteringmode", "Matrix");
                insert.bindValue(":exposuremode", "Manual");
                if (!insert.exec())
                    ++failed;
            }
            own.close();
        }
        QSqlDatabase::removeDatabase("PlainWriter");
    }));
    writer->start();
    QTRY_VERIFY(started);
    while (!writer->isFinished())
        refreshStatistics(reader);
    writer->wait();

    const int stored = scantest::rowCount(db);
    qInfo("%d of %d rows lost", attempts - stored, attempts);
    QCOMPARE(stored + failed, attempts);
    if (rowsLost)
        QVERIFY2(failed > 0, "no INSERT was refused: the lock this guards against did not occur");
    else
        QCOMPARE(int(failed), 0);

    if (!readUncommitted) {
        reader.close();
        reader = QSqlDatabase();
        QSqlDatabase::removeDatabase(unprotectedReader);
    }
}

void TestScanStress::workerKeepsRowsWhenAReaderLacksThePragma()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 2000));
    {
        QSqlDatabase reader = PhotoDatabase::addConnection(unprotectedReader);
        QVERIFY(reader.open());
        ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
        run.start();
        int refreshes = 0;
        while (run.doneCount() == 0) {
            refreshStatistics(reader);
            ++refreshes;
            QCoreApplication::processEvents();
        }
        qInfo("statistics refreshed %d times during the scan", refreshes);
        QVERIFY2(refreshes > 1, "the scan ended before the charts were refreshed during it");
        reader.close();
    }
    QSqlDatabase::removeDatabase(unprotectedReader);
    QCOMPARE(scantest::rowCount(db), 2000);
}

void TestScanStress::fiftyScansStoppedAtRandomPoints()
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

void TestScanStress::writeWatchSeesWritesButNotReads()
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

void TestScanStress::largeReadOnlyTreeStoppedAtRandomPoints()
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
