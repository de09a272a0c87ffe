#include "tst_scanaccess.h"

#include "accesswatch.h"
#include "photodatabase.h"
#include "photofixture.h"
#include "testutils.h"
#include "workerscan.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QTest>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#endif

namespace {

// What must stay as it was: the bytes, the modification time and the time of the last change of
// the file's attributes (which a chmod or a touch would move).
struct FileState
{
    QByteArray sha256;
    QDateTime modified;
    QDateTime metadataChanged;
    qint64 size = -1;

    bool operator==(const FileState &other) const
    {
        return sha256 == other.sha256 && modified == other.modified
            && metadataChanged == other.metadataChanged && size == other.size;
    }
};

FileState stateOf(const QString &path)
{
    FileState state;
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        state.sha256 = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
    const QFileInfo info(path);
    state.modified = info.lastModified();
    state.metadataChanged = info.metadataChangeTime();
    state.size = info.size();
    return state;
}

// One photo of each format the fixture builder makes, under the suffix the scan looks for.
QStringList writeFixturePhotos(const QString &folder, const QString &prefix)
{
    const QList<std::pair<fixture::Format, QString>> kinds {
        { fixture::Format::TiffLittle, "cr2" }, { fixture::Format::TiffBig, "nef" },
        { fixture::Format::TiffLittle, "arw" }, { fixture::Format::TiffBig, "dng" },
        { fixture::Format::Jpeg, "jpg" },       { fixture::Format::JpegApp0, "JPG" },
        { fixture::Format::Raf, "raf" },        { fixture::Format::Rw2, "rw2" },
        { fixture::Format::Orf, "orf" },        { fixture::Format::Cr3, "cr3" }
    };
    QStringList paths;
    for (const auto &[format, suffix] : kinds) {
        const QString path = QString("%1/%2_%3.%4").arg(folder, prefix, suffix.toLower(), suffix);
        if (fixture::writePhoto(path, format, fixture::typicalTags()))
            paths << path;
    }
    return paths;
}

} // namespace

void tst_ScanAccess::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the in-memory photo database must open");
}

void tst_ScanAccess::cleanupTestCase()
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void tst_ScanAccess::scanOpensPhotosForReadingOnly_data()
{
    QTest::addColumn<bool>("readOnlyFiles");
    QTest::newRow("photos the owner may write") << false;
    QTest::newRow("photos marked read-only") << true;
}

void tst_ScanAccess::scanOpensPhotosForReadingOnly()
{
#ifndef Q_OS_LINUX
    QSKIP("watching file access needs Linux's inotify");
#else
    QFETCH(bool, readOnlyFiles);

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("photos");
    const QString sub = sandbox.makeDir("photos/day2");
    const QStringList photos = writeFixturePhotos(top, "a") + writeFixturePhotos(sub, "b");
    QCOMPARE(photos.size(), 20);
    if (readOnlyFiles) {
        for (const QString &photo : std::as_const(photos))
            QVERIFY(QFile::setPermissions(
                photo, QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther));
    }

    QHash<QString, FileState> before;
    for (const QString &photo : std::as_const(photos))
        before.insert(photo, stateOf(photo));

    AccessWatch watch({ top, sub });
    QVERIFY2(watch.isValid(), "inotify could not watch the photo folders");
    watch.events(); // anything left over from writing the fixtures

    const ScanOutcome outcome = WorkerScan::run(db, { top }, WorkerScan::allPatterns(), true);
    const QList<AccessWatch::Event> events = watch.events();

    QVERIFY2(outcome.finished, "the scan did not end");
    QCOMPARE(outcome.doneSignals, 1);
    QCOMPARE(outcome.fileNames.size(), photos.size());

    QStringList changes;
    QSet<QString> opened;
    QSet<QString> closedAfterReading;
    for (const AccessWatch::Event &event : events) {
        if (event.mask & AccessWatch::changeMask())
            changes << AccessWatch::describe(event);
        if (event.mask & IN_OPEN)
            opened.insert(event.path);
        if (event.mask & IN_CLOSE_NOWRITE)
            closedAfterReading.insert(event.path);
    }
    QVERIFY2(changes.isEmpty(),
             qPrintable("the scan changed the photo folders: " + changes.join("; ")));

    // The watch demonstrably sees the scan: every photo was opened and closed after reading.
    for (const QString &photo : std::as_const(photos)) {
        QVERIFY2(opened.contains(photo), qPrintable("no open seen for " + photo));
        QVERIFY2(closedAfterReading.contains(photo),
                 qPrintable("no close-after-reading seen for " + photo));
    }

    for (const QString &photo : std::as_const(photos))
        QVERIFY2(stateOf(photo) == before.value(photo),
                 qPrintable(photo + " changed its bytes or times"));

    if (readOnlyFiles) {
        for (const QString &photo : std::as_const(photos))
            QFile::setPermissions(photo, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
#endif
}
