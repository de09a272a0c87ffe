#include "tst_samplelibrary.h"

#include "photodatabase.h"
#include "scanfixtures.h"
#include "testutils.h"
#include "tmyworkerobject.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QTest>

namespace {

struct Written
{
    int files = -1;
    int photos = -1;
    int unreadable = -1;
};

// Runs the generator into dir and reads its summary line.
Written makeSamples(const QString &dir, QString *failure)
{
    QProcess process;
    process.start(QStringLiteral(KELVARO_MAKE_SAMPLES), { dir });
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit
        || process.exitCode() != 0) {
        *failure = QString::fromLocal8Bit(process.readAllStandardError());
        return {};
    }
    const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
    const QRegularExpression summary(
        QStringLiteral(R"(^Wrote (\d+) files to .+: (\d+) photos, (\d+) unreadable files$)"),
        QRegularExpression::MultilineOption);
    const QRegularExpressionMatch match = summary.match(output);
    if (!match.hasMatch()) {
        *failure = QStringLiteral("unexpected output: ") + output;
        return {};
    }
    return { match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt() };
}

struct Library
{
    int files = 0;
    QStringList suffixes; // lower case, sorted
    QStringList folders; // relative to the root, sorted
    QByteArray digest; // of every relative path and content
};

Library look(const QString &root)
{
    Library library;
    QStringList paths;
    QDirIterator it(root, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        paths << it.next();
    paths.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    const QDir top(root);
    for (const QString &path : std::as_const(paths)) {
        QFile file(path);
        if (file.open(QIODevice::ReadOnly))
            hash.addData(top.relativeFilePath(path).toUtf8() + '\n' + file.readAll());
        const QFileInfo info(path);
        const QString suffix = info.suffix().toLower();
        if (!library.suffixes.contains(suffix))
            library.suffixes << suffix;
        const QString folder = top.relativeFilePath(info.path());
        if (!library.folders.contains(folder))
            library.folders << folder;
    }
    library.suffixes.sort();
    library.folders.sort();
    library.files = int(paths.size());
    library.digest = hash.result();
    return library;
}

QVariant single(const QSqlDatabase &db, const QString &statement)
{
    QSqlQuery query(db);
    if (!query.exec(statement) || !query.next())
        return {};
    return query.value(0);
}

} // namespace

void tst_SampleLibrary::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the main connection could not be set up");
}

void tst_SampleLibrary::cleanupTestCase()
{
    scantest::closeMainConnection(db);
}

void tst_SampleLibrary::helpPrintsUsage()
{
    QProcess process;
    process.start(QStringLiteral(KELVARO_MAKE_SAMPLES), { QStringLiteral("--help") });
    QVERIFY2(process.waitForFinished(30000), "the generator did not end");
    QCOMPARE(process.exitCode(), 0);
    const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
    QVERIFY2(output.contains("Usage:") && output.contains("DIR"), qPrintable(output));
}

void tst_SampleLibrary::libraryIsScannedCompletely()
{
    testutils::Sandbox sandbox;
    const QString root = sandbox.filePath("library");
    QString failure;
    const Written written = makeSamples(root, &failure);
    QVERIFY2(written.files > 0, qPrintable(failure));
    QCOMPARE(written.photos + written.unreadable, written.files);
    QVERIFY2(written.unreadable > 0, "the library has no unreadable files");

    const Library library = look(root);
    QCOMPARE(library.files, written.files);
    QCOMPARE(library.suffixes,
             (QStringList { "arw", "cr2", "cr3", "dng", "jpg", "nef", "orf", "raf", "rw2" }));
    QVERIFY2(library.folders.size() >= 3, qPrintable(library.folders.join(' ')));
    for (const QString &folder : library.folders)
        QVERIFY2(QRegularExpression("^20\\d\\d$").match(folder).hasMatch(), qPrintable(folder));

    auto worker = scantest::makeWorker({ root }, scantest::allPatterns, true);
    scantest::scanHere(*worker);
    QCOMPARE(scantest::rowCount(db), written.photos);

    // The variety the statistics are meant to show.
    QCOMPARE(single(db, "SELECT count(DISTINCT MAKER) FROM DATEIEN").toInt(), 7);
    QVERIFY(single(db, "SELECT count(DISTINCT MODEL) FROM DATEIEN").toInt() >= 8);
    QVERIFY(single(db, "SELECT count(DISTINCT LENS) FROM DATEIEN").toInt() >= 20);
    QVERIFY(
        single(db, "SELECT min(FOCALLENGTH) FROM DATEIEN WHERE LENS NOT LIKE 'iPhone%'").toDouble()
        <= 10.0);
    QVERIFY(single(db, "SELECT max(FOCALLENGTH) FROM DATEIEN").toDouble() >= 500.0);
    QCOMPARE(single(db, "SELECT min(ISO) FROM DATEIEN").toInt(), 50);
    QCOMPARE(single(db, "SELECT max(ISO) FROM DATEIEN").toInt(), 25600);
    QCOMPARE(single(db, "SELECT count(DISTINCT METERINGMODE) FROM DATEIEN").toInt(), 8);
    QCOMPARE(single(db, "SELECT count(DISTINCT EXPOSUREMODE) FROM DATEIEN").toInt(), 10);
    QVERIFY2(single(db, "SELECT count(*) FROM DATEIEN WHERE DATE = 'n.a.'").toInt() > 0,
             "every photo has a DateTimeOriginal");
    QVERIFY2(single(db, "SELECT count(*) FROM DATEIEN WHERE EXPTIMESTRING = 'n.a'").toInt() > 0,
             "every exposure time is in the camera's table");
    QVERIFY(single(db,
                   "SELECT count(DISTINCT substr(DATE, 1, 4)) FROM DATEIEN WHERE DATE <> "
                   "'n.a.'")
                .toInt()
            >= 3);
    PhotoDatabase::clear(db);
}

void tst_SampleLibrary::libraryIsTheSameEveryTime()
{
    testutils::Sandbox sandbox;
    QString failure;
    QVERIFY2(makeSamples(sandbox.filePath("one"), &failure).files > 0, qPrintable(failure));
    QVERIFY2(makeSamples(sandbox.filePath("two"), &failure).files > 0, qPrintable(failure));
    QCOMPARE(look(sandbox.filePath("one")).digest.toHex(),
             look(sandbox.filePath("two")).digest.toHex());
}
