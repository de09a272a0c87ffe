#include "tst_scanworker.h"

#include "photodatabase.h"
#include "photofixture.h"
#include "scanfixtures.h"
#include "scanrun.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QMetaMethod>
#include <QSqlQuery>
#include <QTest>
#include <QThread>

#include <memory>

Q_DECLARE_METATYPE(fixture::Format)

namespace {

const QString groupedIndex =
    QStringLiteral("CREATE INDEX IF NOT EXISTS StatTestGroups ON DATEIEN (case when ISO between 1 "
                   "and 100 then '0001-0100' else 'Others' end)");

// The indexes the program made on the table, sorted by name.
QStringList indexNames(const QSqlDatabase &db)
{
    QSqlQuery indexes(db);
    indexes.exec(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL "
                       "ORDER BY name"));
    QStringList names;
    while (indexes.next())
        names << indexes.value(0).toString();
    return names;
}

using fixture::Format;
using fixture::Rational;

QStringList events(const QList<int> &updates)
{
    QStringList expected;
    for (int count : updates)
        expected << QStringLiteral("update %1").arg(count);
    return expected << QStringLiteral("done");
}

fixture::PhotoTags cameraTags(const QString &make, const QString &model)
{
    fixture::PhotoTags tags = fixture::typicalTags();
    tags.make = make;
    tags.model = model;
    return tags;
}

QString writePhoto(const QString &dir, const QString &name, Format format,
                   const fixture::PhotoTags &tags)
{
    QDir().mkpath(dir);
    const QString path = QDir(dir).filePath(name);
    return fixture::writePhoto(path, format, tags) ? path : QString();
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

// Counts the rows whose FILENAME starts with each prefix.
QList<int> rowsPerPrefix(const QSqlDatabase &db, const QStringList &prefixes)
{
    QList<int> counts(prefixes.size(), 0);
    for (const QString &name : scantest::column(db, QStringLiteral("FILENAME"))) {
        for (int i = 0; i < prefixes.size(); ++i) {
            if (name.startsWith(prefixes[i]))
                ++counts[i];
        }
    }
    return counts;
}

} // namespace

void tst_ScanWorker::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_ScanWorker::init()
{
    PhotoDatabase::clear(db);
}

void tst_ScanWorker::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_ScanWorker::progressSignals_data()
{
    QTest::addColumn<QList<int>>("filesPerDirectory");
    QTest::addColumn<QList<QString>>("patterns");
    QTest::addColumn<QList<int>>("updates");
    QTest::addColumn<int>("rows");

    const QList<QString> all = scantest::allPatterns;
    QTest::newRow("no enabled file type: done at once")
        << QList<int> { 60 } << QList<QString> {} << QList<int> {} << 0;
    QTest::newRow("no directory: done at once") << QList<int> {} << all << QList<int> {} << 0;
    QTest::newRow("49 files: no update") << QList<int> { 49 } << all << QList<int> {} << 49;
    QTest::newRow("50 files: one update") << QList<int> { 50 } << all << QList<int> { 50 } << 50;
    QTest::newRow("120 files: 50 and 100, the last count not sent")
        << QList<int> { 120 } << all << QList<int> { 50, 100 } << 120;
    QTest::newRow("two directories of 30: one update")
        << QList<int> { 30, 30 } << all << QList<int> { 50 } << 60;
    QTest::newRow("the count runs on over three directories")
        << QList<int> { 49, 1, 50 } << all << QList<int> { 50, 100 } << 100;
}

void tst_ScanWorker::progressSignals()
{
    QFETCH(QList<int>, filesPerDirectory);
    QFETCH(QList<QString>, patterns);
    QFETCH(QList<int>, updates);
    QFETCH(int, rows);

    testutils::Sandbox sandbox;
    QList<QString> directories;
    for (int i = 0; i < filesPerDirectory.size(); ++i) {
        const QString dir = sandbox.filePath(QStringLiteral("dir%1").arg(i));
        QVERIFY(scantest::writePhotos(dir, filesPerDirectory[i]));
        directories << dir;
    }
    auto worker = scantest::makeWorker(directories, patterns);
    QCOMPARE(scantest::scanHere(*worker), events(updates));
    QCOMPARE(scantest::rowCount(db), rows);
}

void tst_ScanWorker::updateIsSentWhileTheSecondDirectoryIsRead()
{
    testutils::Sandbox sandbox;
    const QString first = sandbox.filePath("first");
    const QString second = sandbox.filePath("second");
    QVERIFY(scantest::writePhotos(first, 30, cameraTags("First", "A"), "A_"));
    QVERIFY(scantest::writePhotos(second, 30, cameraTags("Second", "B"), "B_"));

    auto worker = scantest::makeWorker({ first, second });
    QList<int> rowsAtUpdate;
    connect(worker.get(), &TMyWorkerObject::operationUpdate, this, [&] {
        rowsAtUpdate = rowsPerPrefix(db, { "A_", "B_" });
    });
    QCOMPARE(scantest::scanHere(*worker), events({ 50 }));
    // The 50th file is met after 30 of the first directory and 19 of the second have been read.
    QCOMPARE(rowsAtUpdate, (QList<int> { 30, 19 }));
}

void tst_ScanWorker::exclusions_data()
{
    QTest::addColumn<QStringList>("photos"); // "maker|model"
    QTest::addColumn<QList<QString>>("makerExcludes");
    QTest::addColumn<QList<QString>>("modelExcludes");
    QTest::addColumn<QStringList>("stored");

    const QStringList canons { "Canon|Canon EOS R5", "Canon Inc.|Canon EOS R5",
                               "canon|Canon EOS R5" };
    QTest::newRow("maker Canon keeps Canon Inc. and canon")
        << canons << QList<QString> { "Canon" } << QList<QString> {}
        << QStringList { "Canon Inc.|Canon EOS R5", "canon|Canon EOS R5" };
    QTest::newRow("maker entries are not trimmed")
        << canons << QList<QString> { "Canon " } << QList<QString> {} << canons;
    QTest::newRow("model exclusion matches the whole text with case")
        << QStringList { "SONY|ILCE-7M3", "SONY|ILCE-7M3 II", "SONY|ilce-7m3", "SONY|ILCE-7" }
        << QList<QString> {} << QList<QString> { "ILCE-7M3" }
        << QStringList { "SONY|ILCE-7", "SONY|ILCE-7M3 II", "SONY|ilce-7m3" };
    QTest::newRow("maker and model lists together")
        << QStringList { "Canon|Canon EOS R5", "NIKON CORPORATION|NIKON Z 6_2", "SONY|ILCE-7M3" }
        << QList<QString> { "NIKON CORPORATION" } << QList<QString> { "ILCE-7M3" }
        << QStringList { "Canon|Canon EOS R5" };
    QTest::newRow("a model text in the maker list excludes nothing")
        << QStringList { "SONY|ILCE-7M3" } << QList<QString> { "ILCE-7M3" } << QList<QString> {}
        << QStringList { "SONY|ILCE-7M3" };
    QTest::newRow("empty lists keep every photo")
        << canons << QList<QString> {} << QList<QString> {} << canons;
}

void tst_ScanWorker::exclusions()
{
    QFETCH(QStringList, photos);
    QFETCH(QList<QString>, makerExcludes);
    QFETCH(QList<QString>, modelExcludes);
    QFETCH(QStringList, stored);

    testutils::Sandbox sandbox;
    for (int i = 0; i < photos.size(); ++i) {
        const QStringList parts = photos[i].split('|');
        QVERIFY(!writePhoto(sandbox.path(), QStringLiteral("IMG_%1.JPG").arg(i), Format::Jpeg,
                            cameraTags(parts[0], parts[1]))
                     .isEmpty());
    }
    auto worker = scantest::makeWorker({ sandbox.path() }, scantest::allPatterns, false,
                                       makerExcludes, modelExcludes);
    scantest::scanHere(*worker);

    QStringList found;
    QSqlQuery query(db);
    QVERIFY(query.exec("SELECT MAKER, MODEL FROM DATEIEN"));
    while (query.next())
        found << query.value(0).toString() + '|' + query.value(1).toString();
    QCOMPARE(sorted(found), sorted(stored));
}

void tst_ScanWorker::subdirectories_data()
{
    QTest::addColumn<bool>("includeSubDirs");
    QTest::addColumn<QStringList>("found");

    QTest::newRow("off: only the directory itself") << false << QStringList { "top.jpg" };
    QTest::newRow("on: every level below it")
        << true << QStringList { "one.jpg", "three.jpg", "top.jpg", "two.jpg" };
}

void tst_ScanWorker::subdirectories()
{
    QFETCH(bool, includeSubDirs);
    QFETCH(QStringList, found);

    testutils::Sandbox sandbox;
    const fixture::PhotoTags tags = fixture::typicalTags();
    const QString root = sandbox.makeDir("root");
    QVERIFY(!writePhoto(root, "top.jpg", Format::Jpeg, tags).isEmpty());
    QVERIFY(!writePhoto(root, ".hidden.jpg", Format::Jpeg, tags).isEmpty());
    QVERIFY(!writePhoto(root + "/l1", "one.jpg", Format::Jpeg, tags).isEmpty());
    QVERIFY(!writePhoto(root + "/l1/l2", "two.jpg", Format::Jpeg, tags).isEmpty());
    QVERIFY(!writePhoto(root + "/l1/l2/l3", "three.jpg", Format::Jpeg, tags).isEmpty());

    auto worker = scantest::makeWorker({ root }, scantest::allPatterns, includeSubDirs);
    scantest::scanHere(*worker);
    QCOMPARE(sorted(scantest::column(db, "FILENAME")), found);
}

void tst_ScanWorker::patterns_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<Format>("format");
    QTest::addColumn<QList<QString>>("patterns");
    QTest::addColumn<bool>("found");

    const QList<QString> all = scantest::allPatterns;
    QTest::newRow("photo.JPG is found by *.jpg")
        << "photo.JPG" << Format::Jpeg << QList<QString> { "*.jpg" } << true;
    QTest::newRow("IMG_0001.CR2 by *.cr2")
        << "IMG_0001.CR2" << Format::TiffLittle << QList<QString> { "*.cr2" } << true;
    QTest::newRow("IMG_0001.CR3 by *.cr3")
        << "IMG_0001.CR3" << Format::Cr3 << QList<QString> { "*.cr3" } << true;
    QTest::newRow("DSC_0001.NEF by *.nef")
        << "DSC_0001.NEF" << Format::TiffBig << QList<QString> { "*.nef" } << true;
    QTest::newRow("DSC00001.ARW by *.arw")
        << "DSC00001.ARW" << Format::TiffLittle << QList<QString> { "*.arw" } << true;
    QTest::newRow("DSCF0001.RAF by *.raf")
        << "DSCF0001.RAF" << Format::Raf << QList<QString> { "*.raf" } << true;
    QTest::newRow("P1000001.RW2 by *.rw2")
        << "P1000001.RW2" << Format::Rw2 << QList<QString> { "*.rw2" } << true;
    QTest::newRow("P5010001.ORF by *.orf")
        << "P5010001.ORF" << Format::Orf << QList<QString> { "*.orf" } << true;
    QTest::newRow("IMG_0001.HEIC by *.heic")
        << "IMG_0001.HEIC" << Format::Heic << QList<QString> { "*.heic" } << true;
    QTest::newRow("photo.Heif by *.heif")
        << "photo.Heif" << Format::Heic << QList<QString> { "*.heif" } << true;
    QTest::newRow("R5_0001.HIF by *.hif")
        << "R5_0001.HIF" << Format::Heic << QList<QString> { "*.hif" } << true;
    QTest::newRow("photo.AVIF by *.avif")
        << "photo.AVIF" << Format::Avif << QList<QString> { "*.avif" } << true;
    QTest::newRow("photo.heic is not read when only *.jpg is enabled")
        << "photo.heic" << Format::Heic << QList<QString> { "*.jpg" } << false;
    QTest::newRow("IMG_0001.dng by *.dng")
        << "IMG_0001.dng" << Format::TiffLittle << QList<QString> { "*.dng" } << true;
    QTest::newRow("photo.jpg is not read when only *.cr2 is enabled")
        << "photo.jpg" << Format::Jpeg << QList<QString> { "*.cr2" } << false;
    QTest::newRow("photo.jpeg is not matched by *.jpg")
        << "photo.jpeg" << Format::Jpeg << all << false;
    QTest::newRow("photo.jpg.bak is not matched")
        << "photo.jpg.bak" << Format::Jpeg << all << false;
}

void tst_ScanWorker::patterns()
{
    QFETCH(QString, fileName);
    QFETCH(Format, format);
    QFETCH(QList<QString>, patterns);
    QFETCH(bool, found);

    testutils::Sandbox sandbox;
    QVERIFY(!writePhoto(sandbox.path(), fileName, format, fixture::typicalTags()).isEmpty());
    auto worker = scantest::makeWorker({ sandbox.path() }, patterns);
    scantest::scanHere(*worker);
    QCOMPARE(scantest::column(db, "FILENAME"), found ? QStringList { fileName } : QStringList {});
}

void tst_ScanWorker::unreadableFiles_data()
{
    QTest::addColumn<QString>("fileName");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("counted");

    const QByteArray tiff = fixture::photo(Format::TiffLittle, fixture::typicalTags());
    QTest::newRow("empty file") << "empty.jpg" << fixture::zeroLengthFile() << true;
    QTest::newRow("text named .jpg") << "notes.jpg" << QByteArray("shopping list\n") << true;
    QTest::newRow("PNG named .jpg")
        << "image.jpg" << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << true;
    QTest::newRow("JPEG without an Exif segment")
        << "plain.jpg" << QByteArray("\xFF\xD8\xFF\xDB\x00\x43\x00\x01\x02\x03", 10) << true;
    // Reads past the end give zeros, so three bytes "II*" would still make the magic 42.
    QTest::newRow("TIFF cut after its byte-order mark")
        << "DSC_0001.NEF" << fixture::truncated(tiff, 2) << true;
    QTest::newRow("RAF shorter than its header")
        << "DSCF0001.RAF" << fixture::truncated(fixture::photo(Format::Raf, {}), 100) << true;
    QTest::newRow("folder named like a photo is not a file")
        << "album.jpg" << QByteArray() << false;
}

void tst_ScanWorker::unreadableFiles()
{
    QFETCH(QString, fileName);
    QFETCH(QByteArray, bytes);
    QFETCH(bool, counted);

    // 49 photos and the file under test: an update at 50 shows that the file was counted.
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 49));
    const QString path = sandbox.filePath(fileName);
    if (counted)
        QVERIFY(fixture::writeBytes(path, bytes));
    else
        QVERIFY(QDir().mkpath(path));

    auto worker = scantest::makeWorker({ sandbox.path() });
    QCOMPARE(scantest::scanHere(*worker), events(counted ? QList<int> { 50 } : QList<int> {}));
    QCOMPARE(scantest::rowCount(db), 49);
    QVERIFY(!scantest::column(db, "FILENAME").contains(fileName));
}

void tst_ScanWorker::stopEndsOnlyTheCurrentDirectory_data()
{
    QTest::addColumn<QList<int>>("filesPerDirectory");
    QTest::addColumn<QList<int>>("updates");
    QTest::addColumn<QList<int>>("rowsPerDirectory");

    // Asked to stop before the first file: each directory is left at the next multiple of 50,
    // whose file is not read any more.
    QTest::newRow("80, 80, 10: left at 50 and 100, the last read whole")
        << QList<int> { 80, 80, 10 } << QList<int> { 50, 100 } << QList<int> { 49, 49, 10 };
    QTest::newRow("120, 30: the second never reaches a multiple of 50")
        << QList<int> { 120, 30 } << QList<int> { 50 } << QList<int> { 49, 30 };
    QTest::newRow("40, 40, 40: the stop is seen in the second directory only")
        << QList<int> { 40, 40, 40 } << QList<int> { 50 } << QList<int> { 40, 9, 40 };
}

void tst_ScanWorker::stopEndsOnlyTheCurrentDirectory()
{
    QFETCH(QList<int>, filesPerDirectory);
    QFETCH(QList<int>, updates);
    QFETCH(QList<int>, rowsPerDirectory);

    testutils::Sandbox sandbox;
    QList<QString> directories;
    QStringList prefixes;
    for (int i = 0; i < filesPerDirectory.size(); ++i) {
        prefixes << QStringLiteral("D%1_").arg(i);
        directories << sandbox.filePath(prefixes.last());
        QVERIFY(scantest::writePhotos(directories.last(), filesPerDirectory[i], prefixes.last()));
    }
    auto worker = scantest::makeWorker(directories);
    QCOMPARE(scantest::scanOnThread(*worker, true), events(updates));
    QCOMPARE(rowsPerPrefix(db, prefixes), rowsPerDirectory);
}

void tst_ScanWorker::idsContinueInTheNextScan()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 5));
    auto first = scantest::makeWorker({ sandbox.path() });
    scantest::scanHere(*first);
    const QStringList firstIds = scantest::column(db, "id");
    QCOMPARE(firstIds.size(), 5);

    // What the main window does before every scan.
    PhotoDatabase::clear(db);
    QCOMPARE(scantest::rowCount(db), 0);

    auto second = scantest::makeWorker({ sandbox.path() });
    scantest::scanHere(*second);
    const QStringList secondIds = scantest::column(db, "id");
    QCOMPARE(secondIds.size(), 5);
    QCOMPARE(secondIds.first().toInt(), firstIds.last().toInt() + 1);
}

void tst_ScanWorker::indexesAreBuiltWhenTheRowsAreIn()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 3));
    auto worker = scantest::makeWorker({ sandbox.path() });
    worker->setGroupedStatisticIndexes({ groupedIndex });
    scantest::scanHere(*worker);

    QStringList expected { QStringLiteral("StatTestGroups") };
    for (const QString &statement : PhotoDatabase::statisticIndexStatements)
        expected << statement.section(' ', 5, 5);
    expected.sort();
    QCOMPARE(indexNames(db), expected);
    QCOMPARE(scantest::rowCount(db), 3);
}

// A stopped scan's rows are dropped by the window at once: building indexes over them would
// only keep the window waiting.
void tst_ScanWorker::stoppedScanBuildsNoIndexes()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 120));
    auto worker = scantest::makeWorker({ sandbox.path() });
    worker->setGroupedStatisticIndexes({ groupedIndex });
    QCOMPARE(scantest::scanOnThread(*worker, true), (QStringList { "update 50", "done" }));
    QCOMPARE(scantest::rowCount(db), 49);
    QCOMPARE(indexNames(db), QStringList());
}

void tst_ScanWorker::rowsAreSeenFromAnotherThread()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 12));
    ScanRun run({ sandbox.path() }, scantest::allPatterns, false);
    run.start();
    QVERIFY2(run.waitDone(60000), "the scan did not end");

    int seen = -1;
    std::unique_ptr<QThread> reader(QThread::create([&seen] {
        {
            QSqlDatabase other = PhotoDatabase::addConnection("SecondReader");
            other.open();
            seen = scantest::rowCount(other);
        }
        QSqlDatabase::removeDatabase("SecondReader");
    }));
    reader->start();
    reader->wait();
    QCOMPARE(seen, 12);
}

void tst_ScanWorker::workerConnection()
{
    testutils::Sandbox sandbox;
    QVERIFY(scantest::writePhotos(sandbox.path(), 3));
    auto first = scantest::makeWorker({ sandbox.path() });
    QSqlDatabase handle = QSqlDatabase::database(PhotoDatabase::workerConnection, false);
    QVERIFY2(handle.isValid(), "the constructor did not add the worker's connection");
    QVERIFY2(!handle.isOpen(), "the constructor opened the connection");
    QCOMPARE(handle.driverName(), PhotoDatabase::driver);
    QCOMPARE(handle.databaseName(), PhotoDatabase::databaseName);
    QCOMPARE(handle.connectOptions(), PhotoDatabase::connectOptions);
    handle = QSqlDatabase();

    // The next scan's worker replaces the connection of the same name; it still works.
    auto second = scantest::makeWorker({ sandbox.path() });
    QCOMPARE(QSqlDatabase::connectionNames().count(PhotoDatabase::workerConnection), 1);
    QCOMPARE(scantest::scanHere(*second), events({}));
    QCOMPARE(scantest::rowCount(db), 3);
    QVERIFY2(!QSqlDatabase::database(PhotoDatabase::workerConnection, false).isOpen(),
             "the scan left its connection open");
}

void tst_ScanWorker::metaObjectOrder()
{
    const QMetaObject &meta = TMyWorkerObject::staticMetaObject;
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods << QString::fromLatin1(meta.method(i).methodSignature());
    QCOMPARE(methods, (QStringList { "operationDone()", "operationUpdate(int)", "doOperation()" }));
    QCOMPARE(meta.method(meta.methodOffset()).methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.method(meta.methodOffset() + 2).methodType(), QMetaMethod::Slot);
}

void tst_ScanWorker::emptyWorkerEndsAtOnce()
{
    TMyWorkerObject worker(nullptr);
    QCOMPARE(scantest::scanHere(worker), events({}));
    QCOMPARE(scantest::rowCount(db), 0);
}
