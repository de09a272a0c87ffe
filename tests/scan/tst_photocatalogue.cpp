#include "tst_photocatalogue.h"

#include "cataloguerecord.h"
#include "photocatalogue.h"
#include "photodatabase.h"
#include "readerpool.h"
#include "scanfixtures.h"
#include "scannedrows.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QCryptographicHash>
#include <QDate>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSqlError>
#include <QSqlQuery>
#include <QTest>

#include <atomic>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

struct Scan
{
    QStringList rows;
    int read = 0; // files the readers opened
    QString note;
};

// One scan of the directories on this thread, with the catalogue file or (empty) without one.
Scan scan(QSqlDatabase &db, const QList<QString> &directories, const QString &catalogue,
          TMyWorkerObject::CatalogueUse use = {}, QList<QString> patterns = scantest::allPatterns,
          QList<QString> makerExcludes = {})
{
    PhotoDatabase::clear(db);
    std::atomic<int> read { 0 };
    ReaderPool::setStepHook([&read](ReaderPool::Step step, qint64, const QString &) {
        if (step == ReaderPool::Step::Taken)
            ++read;
    });
    auto worker = scantest::makeWorker(directories, patterns, true, makerExcludes);
    Scan result;
    use.file = catalogue;
    use.noteTo = [&result](const QString &note) { result.note = note; };
    worker->setCatalogue(use);
    scantest::scanHere(*worker);
    ReaderPool::setStepHook({});
    result.rows = scantest::exactRows(db);
    result.read = read;
    return result;
}

// Looks into a catalogue file through a connection of its own.
class CatalogueFile
{
public:
    explicit CatalogueFile(const QString &file)
    {
        db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(file);
        db.open();
    }
    ~CatalogueFile()
    {
        db.close();
        db = QSqlDatabase();
        QSqlDatabase::removeDatabase(name);
    }
    QString integrity()
    {
        QSqlQuery query(db);
        return query.exec(QStringLiteral("PRAGMA integrity_check")) && query.next()
            ? query.value(0).toString()
            : query.lastError().text();
    }
    qint64 count(const QString &table)
    {
        QSqlQuery query(db);
        return query.exec(QStringLiteral("SELECT count(*) FROM ") + table) && query.next()
            ? query.value(0).toLongLong()
            : -1;
    }
    bool exec(const QString &statement)
    {
        QSqlQuery query(db);
        return query.exec(statement);
    }

    QSqlDatabase db;

private:
    const QString name = QStringLiteral("CatalogueFileCheck");
};

QString childOutput(QProcess &process, const QString &key)
{
    const QStringList lines =
        QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    QString value;
    for (const QString &line : lines) {
        if (line.startsWith(key + QLatin1Char(' ')))
            value = line.mid(key.size() + 1);
    }
    return value;
}

QString digest(const QStringList &rows)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(rows.join(QLatin1Char('\n')).toUtf8(), QCryptographicHash::Sha256)
            .toHex());
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(bytes) == bytes.size();
}

} // namespace

void tst_PhotoCatalogue::initTestCase()
{
    QVERIFY(PhotoDatabase::openMainConnection(db));
}

void tst_PhotoCatalogue::init()
{
    PhotoDatabase::clear(db);
}

void tst_PhotoCatalogue::cleanup()
{
    ReaderPool::setStepHook({});
    PhotoCatalogue::setBatchCommittedHook({});
}

void tst_PhotoCatalogue::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_PhotoCatalogue::recordGivesBackEveryValueExactly_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QVariantList>("values");

    const QString path = QStringLiteral("/photos/2024/IMG_0001.CR3");
    QTest::newRow("texts: null, empty, plain, non-Latin")
        << path
        << QVariantList { QString(), QStringLiteral(""), QStringLiteral("Canon"),
                          QStringLiteral("Ästhetik 日本") };
    QTest::newRow("repeated texts, the file's own name and path")
        << path
        << QVariantList { QStringLiteral("IMG_0001.CR3"), QStringLiteral("EOS R5"),
                          QStringLiteral("EOS R5"), path, QStringLiteral("EOS R5") };
    QTest::newRow("reals keep their bits")
        << path
        << QVariantList { 0.0,
                          -0.0,
                          1.0 / 3.0,
                          std::numeric_limits<double>::denorm_min(),
                          std::numeric_limits<double>::quiet_NaN(),
                          -1e308,
                          35.0 };
    QTest::newRow("ints and long longs, negative and large")
        << path
        << QVariantList { 0,
                          -1,
                          std::numeric_limits<int>::max(),
                          std::numeric_limits<int>::min(),
                          qlonglong(1) << 62,
                          qlonglong(-5) };
    QTest::newRow("missing values") << path << QVariantList { QVariant(), 3, QVariant() };
    QTest::newRow("a text UTF-8 cannot carry (lone surrogate)")
        << path << QVariantList { QString(QChar(0xd800)) + QStringLiteral("x") };
    QTest::newRow("a type of its own") << path << QVariantList { QDate(2024, 2, 29) };
    QTest::newRow("a file directly in the root")
        << QStringLiteral("/a.jpg") << QVariantList { QStringLiteral("a.jpg") };
}

void tst_PhotoCatalogue::recordGivesBackEveryValueExactly()
{
    QFETCH(QString, path);
    QFETCH(QVariantList, values);

    PhotoRead read;
    read.outcome = PhotoRead::Outcome::Photo;
    read.make = QStringLiteral("Canon");
    read.model = QStringLiteral("EOS R5");
    read.values = values;
    read.info = QVariantList { path, QVariant(), 1.6 };
    const QByteArray blob = CatalogueRecord::encode(read, path);

    PhotoRead back;
    QVERIFY(CatalogueRecord::decode(blob, path, back));
    QCOMPARE(back.outcome, PhotoRead::Outcome::Photo);
    QCOMPARE(back.make, read.make);
    QCOMPARE(back.model, read.model);
    const QVariantList all = read.values + read.info;
    const QVariantList allBack = back.values + back.info;
    QCOMPARE(allBack.size(), all.size());
    for (qsizetype i = 0; i < all.size(); ++i) {
        const QVariant &a = all.at(i);
        const QVariant &b = allBack.at(i);
        QVERIFY2(a.typeId() == b.typeId(),
                 qPrintable(QStringLiteral("value %1 changed its type").arg(i)));
        QCOMPARE(b.isNull(), a.isNull());
        if (a.typeId() == QMetaType::Double) {
            const double x = a.toDouble(), y = b.toDouble();
            QCOMPARE(std::signbit(y), std::signbit(x));
            QVERIFY2(std::memcmp(&x, &y, sizeof x) == 0, "a real lost bits");
        } else {
            QCOMPARE(b, a);
        }
    }
}

void tst_PhotoCatalogue::recordCutShortOrDamagedIsRefused()
{
    const QString path = QStringLiteral("/p/IMG_1.JPG");
    PhotoRead read;
    read.outcome = PhotoRead::Outcome::Photo;
    read.make = QStringLiteral("NIKON CORPORATION");
    read.model = QStringLiteral("NIKON Z 6");
    read.values = { QStringLiteral("IMG_1.JPG"), QStringLiteral("2023:01:01 10:00:00"), 50.0, 400 };
    read.info = { path, QStringLiteral("JPEG"), QVariant() };
    const QByteArray blob = CatalogueRecord::encode(read, path);
    for (qsizetype size = 0; size < blob.size(); ++size) {
        PhotoRead back;
        QVERIFY2(!CatalogueRecord::decode(blob.left(size), path, back),
                 qPrintable(QStringLiteral("accepted the first %1 bytes").arg(size)));
    }
    PhotoRead back;
    QVERIFY2(!CatalogueRecord::decode(blob + '\0', path, back), "accepted a trailing byte");
    // Every byte changed in turn: refused or decoded, never a crash or a read past the end.
    for (qsizetype at = 0; at < blob.size(); ++at) {
        QByteArray damaged = blob;
        damaged[at] = char(damaged.at(at) ^ 0xff);
        CatalogueRecord::decode(damaged, path, back);
    }
}

void tst_PhotoCatalogue::rescanGivesTheSameRowsWithoutOpeningAFile_data()
{
    QTest::addColumn<QString>("tree");
    QTest::addColumn<QStringList>("makerExcludes");

    QTest::newRow("one folder") << "flat" << QStringList();
    QTest::newRow("nested folders, files before and after subfolders") << "tree" << QStringList();
    QTest::newRow("an excluded maker") << "tree" << QStringList { QStringLiteral("Canon") };
    QTest::newRow("files that are no photos") << "junk" << QStringList();
    QTest::newRow("the sample library") << "samples" << QStringList();
}

void tst_PhotoCatalogue::rescanGivesTheSameRowsWithoutOpeningAFile()
{
    QFETCH(QString, tree);
    QFETCH(QStringList, makerExcludes);

    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    int files = 0;
    if (tree == QLatin1String("flat")) {
        QVERIFY(scantest::writePhotos(root, 120));
        files = 120;
    } else if (tree == QLatin1String("tree")) {
        QVERIFY(!scantest::writePhotoTree(root, 300, 7).isEmpty());
        QVERIFY(scantest::writePhotos(root, 20, QStringLiteral("TOP_")));
        files = 320;
    } else if (tree == QLatin1String("junk")) {
        QVERIFY(scantest::writePhotos(root, 60));
        for (int i = 0; i < 10; ++i)
            QVERIFY(writeFile(root + QStringLiteral("/junk%1.jpg").arg(i), "not a photo"));
        QVERIFY(writeFile(root + QStringLiteral("/empty.nef"), QByteArray()));
        files = 71;
    } else {
        QProcess make;
        make.start(QStringLiteral(KELVARO_MAKE_SAMPLES), { root });
        QVERIFY(make.waitForFinished(120000));
        QCOMPARE(make.exitCode(), 0);
        files = 600;
    }
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));

    const Scan without = scan(db, { root }, QString(), {}, scantest::allPatterns, makerExcludes);
    QVERIFY2(!without.rows.isEmpty(), "the scan stored nothing");
    QCOMPARE(without.read, files);
    const Scan first = scan(db, { root }, catalogue, {}, scantest::allPatterns, makerExcludes);
    QCOMPARE(first.read, files);
    QCOMPARE(first.rows, without.rows);
    QVERIFY2(first.note.isEmpty(), qPrintable(first.note));
    const Scan again = scan(db, { root }, catalogue, {}, scantest::allPatterns, makerExcludes);
    QCOMPARE(again.read, 0);
    QCOMPARE(again.rows, without.rows);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(files));
}

void tst_PhotoCatalogue::realSamplesGiveTheSameRowsFromTheCatalogue()
{
    const QString samples = QStringLiteral(KELVARO_SAMPLES_DIR);
    if (!QDir(samples).exists())
        QSKIP(qPrintable(QStringLiteral("no camera samples at %1").arg(samples)));
    testutils::Sandbox sandbox;
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    const Scan without = scan(db, { samples }, QString());
    QVERIFY2(!without.rows.isEmpty(), "the samples gave no row");
    const Scan first = scan(db, { samples }, catalogue);
    QCOMPARE(first.rows, without.rows);
    const Scan again = scan(db, { samples }, catalogue);
    QCOMPARE(again.read, 0);
    QCOMPARE(again.rows, without.rows);
}

void tst_PhotoCatalogue::changedFileIsReadAgain_data()
{
    QTest::addColumn<QString>("change");

    QTest::newRow("rewritten with other values (size changes)") << "values";
    QTest::newRow("same bytes, new modification time") << "time";
    QTest::newRow("replaced by a copy (new inode)") << "inode";
    QTest::newRow("a photo becomes junk") << "junk";
}

void tst_PhotoCatalogue::changedFileIsReadAgain()
{
    QFETCH(QString, change);

    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotos(root, 30));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    QCOMPARE(scan(db, { root }, catalogue).read, 30);

    const QString path = root + QStringLiteral("/IMG_00007.jpg");
    QVERIFY(QFile::exists(path));
    if (change == QLatin1String("values")) {
        fixture::PhotoTags tags = scantest::variedTags(99);
        tags.model = QStringLiteral("A much longer model name than before");
        QVERIFY(fixture::writePhoto(path, fixture::Format::Jpeg, tags));
    } else if (change == QLatin1String("time")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(file.fileTime(QFileDevice::FileModificationTime).addSecs(-3600),
                                 QFileDevice::FileModificationTime));
    } else if (change == QLatin1String("inode")) {
        QVERIFY(QFile::copy(path, path + QStringLiteral(".copy")));
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::rename(path + QStringLiteral(".copy"), path));
    } else {
        QVERIFY(writeFile(path, "no longer a photo"));
    }

    const Scan without = scan(db, { root }, QString());
    const Scan again = scan(db, { root }, catalogue);
    QCOMPARE(again.read, 1);
    QCOMPARE(again.rows, without.rows);
    QCOMPARE(scan(db, { root }, catalogue).read, 0);
}

void tst_PhotoCatalogue::goneFilesAreForgottenAndOtherTypesKept()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotos(root + QStringLiteral("/a"), 10));
    QVERIFY(scantest::writePhotos(root + QStringLiteral("/a/deep"), 10));
    QVERIFY(scantest::writePhotos(root + QStringLiteral("/b"), 10));
    QVERIFY(writeFile(root + QStringLiteral("/b/raw.nef"), "a NEF that is no photo"));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    QCOMPARE(scan(db, { root }, catalogue).read, 31);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(31));

    // A file of a folder, a whole subfolder; and a scan for JPEG files only.
    QVERIFY(QFile::remove(root + QStringLiteral("/a/IMG_00003.jpg")));
    QVERIFY(QDir(root + QStringLiteral("/a/deep")).removeRecursively());
    const Scan jpegs = scan(db, { root }, catalogue, {}, { QStringLiteral("*.jpg") });
    QCOMPARE(jpegs.read, 0);
    QCOMPARE(jpegs.rows.size(), 19);
    // The NEF stays: it was not looked for, not gone.
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(20));
    QCOMPARE(scan(db, { root }, catalogue).read, 0);

    // Without subfolders only the root's own files are looked at: b keeps its entries.
    QVERIFY(QDir(root + QStringLiteral("/b")).removeRecursively());
    auto worker = scantest::makeWorker({ root }, scantest::allPatterns, false);
    TMyWorkerObject::CatalogueUse use;
    use.file = catalogue;
    worker->setCatalogue(use);
    scantest::scanHere(*worker);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(20));
    QCOMPARE(scan(db, { root }, catalogue).read, 0);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(9));
}

void tst_PhotoCatalogue::newReaderVersionReadsEveryFileAgain()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotos(root, 40));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    QCOMPARE(scan(db, { root }, catalogue).read, 40);
    {
        CatalogueFile file(catalogue);
        QVERIFY(file.exec(QStringLiteral("UPDATE settings SET value = '0/older' WHERE key = "
                                         "'values'")));
    }
    const Scan again = scan(db, { root }, catalogue);
    QCOMPARE(again.read, 40);
    QVERIFY2(again.note.isEmpty(), "an older reader's catalogue is no fault");
    QCOMPARE(scan(db, { root }, catalogue).read, 0);
}

void tst_PhotoCatalogue::unusableCatalogueIsMovedAsideAndANewOneStarted_data()
{
    QTest::addColumn<QString>("damage");
    QTest::addColumn<QString>("reason");

    QTest::newRow("cut short") << "truncated"
                               << "damaged";
    QTest::newRow("garbage") << "garbage"
                             << "damaged";
    QTest::newRow("pages overwritten") << "overwritten"
                                       << "damaged";
    QTest::newRow("a newer version") << "newer"
                                     << "newer-version";
    QTest::newRow("another program's database") << "foreign"
                                                << "damaged";
}

void tst_PhotoCatalogue::unusableCatalogueIsMovedAsideAndANewOneStarted()
{
    QFETCH(QString, damage);
    QFETCH(QString, reason);

    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotoTree(root, 1500, 4).size() > 0);
    const QString folder = sandbox.makeDir(QStringLiteral("cache"));
    const QString catalogue = folder + QStringLiteral("/photo-catalogue.sqlite");
    const QString without = digest(scan(db, { root }, QString(), {}, { "*.jpg" }).rows);
    QCOMPARE(scan(db, { root }, catalogue).read, 1500);
    {
        // Everything into the main file, so that damaging it damages the catalogue.
        CatalogueFile file(catalogue);
        QVERIFY(file.exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)")));
        if (damage == QLatin1String("newer"))
            QVERIFY(file.exec(
                QStringLiteral("PRAGMA user_version = %1").arg(PhotoCatalogue::schemaVersion + 1)));
    }
    QFile file(catalogue);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 size = file.size();
    QVERIFY(size > 16 * 4096);
    QRandomGenerator random(14);
    QByteArray noise(4096 * 4, Qt::Uninitialized);
    for (char &c : noise)
        c = char(random.bounded(256));
    if (damage == QLatin1String("truncated")) {
        QVERIFY(file.resize(size / 2 + 100));
    } else if (damage == QLatin1String("garbage")) {
        QVERIFY(file.resize(0));
        QCOMPARE(file.write(noise), noise.size());
    } else if (damage == QLatin1String("overwritten")) {
        QVERIFY(file.seek(4096 * 3));
        QCOMPARE(file.write(noise), noise.size());
    } else if (damage == QLatin1String("foreign")) {
        file.close();
        QVERIFY(QFile::remove(catalogue));
        CatalogueFile other(catalogue);
        QVERIFY(other.exec(QStringLiteral("CREATE TABLE notes (text TEXT)")));
    }
    file.close();
    QFile damaged(catalogue);
    QVERIFY(damaged.open(QIODevice::ReadOnly));
    const QByteArray damagedBytes = damaged.readAll();
    damaged.close();

    // The next start of the program: a process of its own, which checks the file as it opens it.
    QProcess after;
    after.start(QStringLiteral(KELVARO_CATALOGUE_CHILD), { catalogue, root });
    QVERIFY(after.waitForFinished(120000));
    QCOMPARE(after.exitCode(), 0);
    const QString output = QString::fromUtf8(after.readAllStandardOutput());
    QVERIFY2(output.contains(QStringLiteral("digest ") + without + QLatin1Char('\n')),
             qPrintable(output));
    QVERIFY2(output.contains(QStringLiteral("\nnote "))
                 && output.contains(QLatin1String("kept as")),
             qPrintable(output));
    const QStringList aside = QDir(folder).entryList(
        { QStringLiteral("photo-catalogue.sqlite.") + reason + "-*" }, QDir::Files);
    const QStringList main = aside.filter(QRegularExpression(QStringLiteral("-\\d{8}T\\d{6}$")));
    QVERIFY2(main.size() == 1,
             qPrintable(QDir(folder).entryList(QDir::Files).join(QLatin1Char(' '))));
    QFile kept(folder + QLatin1Char('/') + main.first());
    QVERIFY(kept.open(QIODevice::ReadOnly));
    QCOMPARE(kept.readAll(), damagedBytes);
    QCOMPARE(CatalogueFile(catalogue).integrity(), QStringLiteral("ok"));
    QCOMPARE(scan(db, { root }, catalogue, {}, { "*.jpg" }).read, 0);
}

void tst_PhotoCatalogue::unwritableCacheFolderScansWithoutCatalogue()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotos(root, 30));
    // A folder that cannot be made, whoever runs the test: its parent is a file.
    QVERIFY(writeFile(sandbox.filePath(QStringLiteral("cache")), "a file"));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/Kelvaro/catalogue.sqlite"));
    const Scan without = scan(db, { root }, QString());
    for (int run = 0; run < 2; ++run) {
        const Scan scanned = scan(db, { root }, catalogue);
        QCOMPARE(scanned.rows, without.rows);
        QCOMPARE(scanned.read, 30);
        QVERIFY2(scanned.note.contains(QLatin1String("cannot be used")), qPrintable(scanned.note));
    }
}

void tst_PhotoCatalogue::foldersNotSeenForTheSetTimeArePruned_data()
{
    QTest::addColumn<int>("forgetAfterDays");
    QTest::addColumn<int>("daysLater");
    QTest::addColumn<bool>("pruned");

    QTest::newRow("kept: never pruned") << 0 << 1000 << false;
    QTest::newRow("kept: seen 89 days ago, pruned after 90") << 90 << 89 << false;
    QTest::newRow("pruned: seen 91 days ago, pruned after 90") << 90 << 91 << true;
    QTest::newRow("pruned: seen 2 days ago, pruned after 1") << 1 << 2 << true;
}

void tst_PhotoCatalogue::foldersNotSeenForTheSetTimeArePruned()
{
    QFETCH(int, forgetAfterDays);
    QFETCH(int, daysLater);
    QFETCH(bool, pruned);

    testutils::Sandbox sandbox;
    const QString old = sandbox.makeDir(QStringLiteral("old"));
    const QString recent = sandbox.makeDir(QStringLiteral("recent"));
    QVERIFY(scantest::writePhotos(old, 10));
    QVERIFY(scantest::writePhotos(recent, 10));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    qint64 now = 1700000000;
    TMyWorkerObject::CatalogueUse use;
    use.forgetUnseenAfterDays = forgetAfterDays;
    use.now = [&now] { return now; };
    scan(db, { old }, catalogue, use);
    scan(db, { recent }, catalogue, use);
    now += qint64(daysLater) * 24 * 3600;
    QCOMPARE(scan(db, { recent }, catalogue, use).read, 0);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(pruned ? 10 : 20));
    QCOMPARE(scan(db, { old }, catalogue, use).read, pruned ? 10 : 0);
}

void tst_PhotoCatalogue::forgettingEverythingEmptiesTheCatalogue()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotos(root, 25));
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    scan(db, { root }, catalogue);
    TMyWorkerObject::CatalogueUse forget;
    forget.forgetEverything = true;
    QCOMPARE(scan(db, { root }, catalogue, forget).read, 25);
    QCOMPARE(CatalogueFile(catalogue).count(QStringLiteral("photos")), qint64(25));
    QCOMPARE(scan(db, { root }, catalogue).read, 0);
}

void tst_PhotoCatalogue::twoProcessesScanningAtOnceBothFinish()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotoTree(root, 1600, 6).size() > 0);
    const QString catalogue = sandbox.filePath(QStringLiteral("cache/photo-catalogue.sqlite"));
    const QString expected = digest(scan(db, { root }, QString(), {}, { "*.jpg" }).rows);

    for (int round = 0; round < 2; ++round) {
        QProcess first, second;
        first.start(QStringLiteral(KELVARO_CATALOGUE_CHILD), { catalogue, root });
        second.start(QStringLiteral(KELVARO_CATALOGUE_CHILD), { catalogue, root });
        for (QProcess *process : { &first, &second }) {
            QVERIFY(process->waitForFinished(120000));
            QCOMPARE(process->exitStatus(), QProcess::NormalExit);
            QCOMPARE(process->exitCode(), 0);
            const QString output = QString::fromLocal8Bit(process->readAllStandardOutput());
            QVERIFY2(output.contains(QStringLiteral("rows 1600")), qPrintable(output));
            QVERIFY2(output.contains(QStringLiteral("digest ") + expected), qPrintable(output));
        }
        CatalogueFile file(catalogue);
        QCOMPARE(file.integrity(), QStringLiteral("ok"));
        QCOMPARE(file.count(QStringLiteral("photos")), qint64(1600));
    }
}

void tst_PhotoCatalogue::killedScansLeaveASoundCatalogueForTheNextRun()
{
    constexpr int files = 1300;
    constexpr int kills = 20;
    testutils::Sandbox sandbox;
    const QString root = sandbox.makeDir(QStringLiteral("photos"));
    QVERIFY(scantest::writePhotoTree(root, files, 5).size() > 0);
    const QString expected = digest(scan(db, { root }, QString(), {}, { "*.jpg" }).rows);

    QRandomGenerator random(20261124);
    for (int kill = 0; kill < kills; ++kill) {
        const QString catalogue =
            sandbox.filePath(QStringLiteral("cache%1/photo-catalogue.sqlite").arg(kill));
        // Every fourth starts from a catalogue that an earlier killed run left.
        const int killedRuns = kill % 4 == 0 ? 2 : 1;
        int batches = 0;
        qint64 known = 0;
        for (int run = 0; run < killedRuns && files - known > 1; ++run) {
            const int killAfter = 1 + int(random.bounded(int(files - known) - 1));
            QProcess child;
            child.start(QStringLiteral(KELVARO_CATALOGUE_CHILD),
                        { catalogue, root, QString::number(killAfter) });
            QVERIFY(child.waitForFinished(120000));
            QVERIFY2(child.exitStatus() == QProcess::CrashExit,
                     qPrintable(QStringLiteral("not killed after %1 files").arg(killAfter)));
            batches = std::max(batches, childOutput(child, QStringLiteral("batch")).toInt());
            known = CatalogueFile(catalogue).count(QStringLiteral("photos"));
        }
        qint64 remembered = 0;
        {
            CatalogueFile file(catalogue);
            QCOMPARE(file.integrity(), QStringLiteral("ok"));
            remembered = file.count(QStringLiteral("photos"));
        }
        QVERIFY2(
            remembered >= qint64(batches) * PhotoCatalogue::batchSize,
            qPrintable(QStringLiteral("%1 entries after %2 batches").arg(remembered).arg(batches)));

        QProcess next;
        next.start(QStringLiteral(KELVARO_CATALOGUE_CHILD), { catalogue, root });
        QVERIFY(next.waitForFinished(120000));
        QCOMPARE(next.exitCode(), 0);
        const QString output = QString::fromLocal8Bit(next.readAllStandardOutput());
        QVERIFY2(output.contains(QStringLiteral("digest ") + expected), qPrintable(output));
        // What the killed runs committed is used: only the rest is read.
        QVERIFY2(output.contains(QStringLiteral("read %1\n").arg(files - remembered)),
                 qPrintable(output));
    }
}
