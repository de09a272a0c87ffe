#include "tst_hostiletrees.h"

#include "photodatabase.h"
#include "photofixture.h"
#include "testutils.h"
#include "texiffile.h"
#include "workerscan.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <atomic>

#ifdef Q_OS_UNIX
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <sys/fsuid.h>
#endif

namespace {

// The worker reports progress at every 50th matching entry. A tree whose listed entries are
// meant to number 49 therefore sends no operationUpdate() at all, and one sends operationUpdate(50)
// as soon as a single entry too many is listed: the signals show what the walk counted, beyond
// the rows that the photos give.
constexpr int justBelowUpdate = 49;

fixture::Format formatForSuffix(const QString &suffix)
{
    const QString s = suffix.toLower();
    if (s == "jpg")
        return fixture::Format::Jpeg;
    if (s == "cr3")
        return fixture::Format::Cr3;
    if (s == "raf")
        return fixture::Format::Raf;
    if (s == "rw2")
        return fixture::Format::Rw2;
    if (s == "orf")
        return fixture::Format::Orf;
    return fixture::Format::TiffLittle; // cr2, nef, arw, dng are TIFF-based
}

// A readable photo of the type its name says.
bool writePhoto(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    return fixture::writePhoto(path, formatForSuffix(QFileInfo(path).suffix()),
                               fixture::typicalTags());
}

// Zero-length files that match "*.jpg": counted by the walk, stored as nothing.
bool writePadding(const QString &folder, int count)
{
    for (int i = 0; i < count; ++i) {
        if (!fixture::writeBytes(
                QDir(folder).filePath(QString("padding_%1.jpg").arg(i, 2, 10, QChar('0'))),
                QByteArray()))
            return false;
    }
    return true;
}

// A symbolic link holding target as given, so that relative targets stay relative.
bool link(const QString &target, const QString &linkPath)
{
#ifdef Q_OS_UNIX
    return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(linkPath).constData())
        == 0;
#else
    return QFile::link(target, linkPath);
#endif
}

QStringList sorted(QStringList list)
{
    std::sort(list.begin(), list.end());
    return list;
}

QString describe(const ScanOutcome &outcome)
{
    return QString("finished %1, operationDone %2 times, updates (%3), rows (%4)")
        .arg(outcome.finished)
        .arg(outcome.doneSignals)
        .arg([&] {
            QStringList counts;
            for (int count : outcome.updates)
                counts << QString::number(count);
            return counts.join(", ");
        }())
        .arg(outcome.fileNames.join(", "));
}

const QStringList nineSuffixes { "cr2", "cr3", "raf", "nef", "arw", "rw2", "orf", "dng", "jpg" };

bool runningAsRoot()
{
#ifdef Q_OS_UNIX
    return ::geteuid() == 0;
#else
    return false;
#endif
}

} // namespace

void tst_HostileTrees::initTestCase()
{
    QVERIFY2(PhotoDatabase::openMainConnection(db), "the in-memory photo database must open");
}

void tst_HostileTrees::cleanupTestCase()
{
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(PhotoDatabase::mainConnection);
}

void tst_HostileTrees::directoriesNamedLikePhotos_data()
{
    QTest::addColumn<bool>("includeSubDirs");
    QTest::addColumn<QStringList>("expectedRows");

    QTest::newRow("subdirectories on: the photos inside are found")
        << true << QStringList { "deep.cr2", "inside.jpg", "inside.nef", "real.jpg", "upper.jpg" };
    QTest::newRow("subdirectories off: only the top folder's photo")
        << false << QStringList { "real.jpg" };
}

// A folder named "dir.jpg" matches the pattern "*.jpg" by name. The walk lists files only, so the
// folder itself is never handed to the reader, and with subdirectories on its photos are found.
void tst_HostileTrees::directoriesNamedLikePhotos()
{
    QFETCH(bool, includeSubDirs);
    QFETCH(QStringList, expectedRows);

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    QVERIFY(writePhoto(top + "/real.jpg"));
    QVERIFY(writePhoto(top + "/dir.jpg/inside.jpg"));
    QVERIFY(writePhoto(top + "/dir.jpg/inside.nef"));
    QVERIFY(writePhoto(top + "/PHOTOS.CR2/deeper.jpg/deep.cr2"));
    QVERIFY(writePhoto(top + "/UPPER.JPG/upper.jpg"));
    sandbox.makeDir("top/empty.jpg");
    sandbox.makeDir("top/empty.cr3/nothing.orf");
    QVERIFY(writePadding(top, justBelowUpdate - int(expectedRows.size())));

    const ScanOutcome outcome =
        WorkerScan::run(db, { top }, WorkerScan::allPatterns(), includeSubDirs);
    QVERIFY2(outcome.finished, qPrintable(describe(outcome)));
    QCOMPARE(outcome.doneSignals, 1);
    QVERIFY2(outcome.updates.isEmpty(),
             qPrintable("a folder named like a photo was counted as a file: " + describe(outcome)));
    QCOMPARE(outcome.fileNames, expectedRows);
}

void tst_HostileTrees::symbolicLinksThatLoop_data()
{
    QTest::addColumn<int>("layout");
    QTest::addColumn<QStringList>("expectedRows");

    QTest::newRow("link to the folder itself") << 0 << QStringList { "a.jpg", "b.jpg" };
    QTest::newRow("link to the parent folder") << 1 << QStringList { "a.jpg", "b.jpg" };
    QTest::newRow("link to the top from two levels down") << 2 << QStringList { "a.jpg", "c.jpg" };
    QTest::newRow("two sibling folders linking each other")
        << 3 << QStringList { "a.jpg", "b.jpg" };
    QTest::newRow("absolute link to a folder above the tree") << 4 << QStringList { "b.jpg" };
    QTest::newRow("link to the folder named like a photo") << 5 << QStringList { "a.jpg" };
}

// Links to folders are not followed (the walk has no FollowSymlinks flag): that is what makes a
// loop finite, and each real photo is stored exactly once. A link to a folder is not listed as a
// file either; the padding to 49 entries shows that nothing was counted twice.
void tst_HostileTrees::symbolicLinksThatLoop()
{
#ifndef Q_OS_UNIX
    QSKIP("symbolic links to folders are a Unix matter here");
#endif
    QFETCH(int, layout);
    QFETCH(QStringList, expectedRows);

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    switch (layout) {
    case 0:
        QVERIFY(writePhoto(top + "/a.jpg"));
        QVERIFY(writePhoto(top + "/sub/b.jpg"));
        QVERIFY(link(".", top + "/self"));
        break;
    case 1:
        QVERIFY(writePhoto(top + "/a.jpg"));
        QVERIFY(writePhoto(top + "/sub/b.jpg"));
        QVERIFY(link("..", top + "/sub/up"));
        break;
    case 2:
        QVERIFY(writePhoto(top + "/a.jpg"));
        QVERIFY(writePhoto(top + "/x/y/c.jpg"));
        QVERIFY(link("../..", top + "/x/y/top"));
        break;
    case 3:
        QVERIFY(writePhoto(top + "/x/a.jpg"));
        QVERIFY(writePhoto(top + "/y/b.jpg"));
        QVERIFY(link("../y", top + "/x/toY"));
        QVERIFY(link("../x", top + "/y/toX"));
        break;
    case 4:
        QVERIFY(writePhoto(top + "/sub/b.jpg"));
        QVERIFY(link(sandbox.path(), top + "/sub/above"));
        break;
    case 5:
        QVERIFY(writePhoto(top + "/a.jpg"));
        QVERIFY(link(".", top + "/loop.jpg"));
        break;
    }
    QVERIFY(writePadding(top, justBelowUpdate - int(expectedRows.size())));

    const ScanOutcome outcome = WorkerScan::run(db, { top }, WorkerScan::allPatterns(), true);
    QVERIFY2(outcome.finished, qPrintable("the walk did not end: " + describe(outcome)));
    QCOMPARE(outcome.doneSignals, 1);
    QVERIFY2(outcome.updates.isEmpty(),
             qPrintable("a link to a folder was followed or counted: " + describe(outcome)));
    QCOMPARE(outcome.fileNames, expectedRows);
}

namespace {

enum SpecialEntry {
    Fifo,
    Socket,
    LinkToFifo,
    LinkToDevice,
    DanglingLink,
    LinkLoop,
    LinkToItself,
    LinkToPhoto,
    LinkToPhotoOutside,
    LinkToEmptyFile,
    LinkToFolder,
    EmptyFolder
};

} // namespace

void tst_HostileTrees::specialEntries_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<int>("listedEntries");
    QTest::addColumn<QStringList>("extraRows");

    QTest::newRow("FIFO named pipe.jpg") << int(Fifo) << 0 << QStringList();
    QTest::newRow("Unix socket named sock.jpg") << int(Socket) << 0 << QStringList();
    QTest::newRow("link pipelink.jpg to a FIFO") << int(LinkToFifo) << 0 << QStringList();
    QTest::newRow("link zero.jpg to /dev/zero") << int(LinkToDevice) << 0 << QStringList();
    QTest::newRow("dangling link x.jpg") << int(DanglingLink) << 0 << QStringList();
    QTest::newRow("links a.jpg and b.jpg naming each other") << int(LinkLoop) << 0 << QStringList();
    QTest::newRow("link self.jpg naming itself") << int(LinkToItself) << 0 << QStringList();
    QTest::newRow("link to a folder with a photo") << int(LinkToFolder) << 0 << QStringList();
    QTest::newRow("empty folder named dir.jpg") << int(EmptyFolder) << 0 << QStringList();
    // A link to a file is listed like the file and read through: it is stored under the link's
    // own name, as a second row where the target is in the tree too. The scan goes by names, as
    // a file manager shows them; it does not look for the same file under two names.
    QTest::newRow("link alias.jpg to the photo beside it")
        << int(LinkToPhoto) << 1 << QStringList { "alias.jpg" };
    QTest::newRow("link far.jpg to a photo outside the tree")
        << int(LinkToPhotoOutside) << 1 << QStringList { "far.jpg" };
    QTest::newRow("link blank.jpg to a zero-length file")
        << int(LinkToEmptyFile) << 1 << QStringList();
}

// None of these may hang or stop the scan. A FIFO or a device opened as a photo would block or
// never end; the walk lists regular files (and links to them) only, so none reaches the reader.
void tst_HostileTrees::specialEntries()
{
#ifndef Q_OS_UNIX
    QSKIP("FIFOs, sockets and symbolic links are Unix matters here");
#else
    QFETCH(int, entry);
    QFETCH(int, listedEntries);
    QFETCH(QStringList, extraRows);

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    const QString outside = sandbox.makeDir("outside");
    QVERIFY(writePhoto(top + "/real.jpg"));
    QStringList fifos;
    int socketFd = -1;

    switch (entry) {
    case Fifo:
        fifos << top + "/pipe.jpg";
        QVERIFY2(::mkfifo(QFile::encodeName(fifos.first()).constData(), 0644) == 0,
                 "mkfifo failed");
        break;
    case Socket: {
        socketFd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(socketFd >= 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        const QByteArray path = QFile::encodeName(top + "/sock.jpg");
        if (path.size() >= int(sizeof address.sun_path)) {
            ::close(socketFd);
            QSKIP("the sandbox path is too long for a Unix socket address");
        }
        qstrcpy(address.sun_path, path.constData());
        QVERIFY2(::bind(socketFd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0,
                 "binding the socket failed");
        QVERIFY(::listen(socketFd, 1) == 0);
        break;
    }
    case LinkToFifo:
        fifos << outside + "/pipe";
        QVERIFY(::mkfifo(QFile::encodeName(fifos.first()).constData(), 0644) == 0);
        QVERIFY(link(fifos.first(), top + "/pipelink.jpg"));
        break;
    case LinkToDevice:
        if (!QFileInfo::exists("/dev/zero"))
            QSKIP("this system has no /dev/zero");
        QVERIFY(link("/dev/zero", top + "/zero.jpg"));
        break;
    case DanglingLink:
        QVERIFY(link(top + "/gone/never.jpg", top + "/x.jpg"));
        break;
    case LinkLoop:
        QVERIFY(link("b.jpg", top + "/a.jpg"));
        QVERIFY(link("a.jpg", top + "/b.jpg"));
        break;
    case LinkToItself:
        QVERIFY(link("self.jpg", top + "/self.jpg"));
        break;
    case LinkToFolder:
        QVERIFY(writePhoto(outside + "/hidden.jpg"));
        QVERIFY(link(outside, top + "/dirlink.jpg"));
        break;
    case EmptyFolder:
        sandbox.makeDir("top/dir.jpg");
        break;
    case LinkToPhoto:
        QVERIFY(link("real.jpg", top + "/alias.jpg"));
        break;
    case LinkToPhotoOutside:
        QVERIFY(writePhoto(outside + "/far-target.jpg"));
        QVERIFY(link(outside + "/far-target.jpg", top + "/far.jpg"));
        break;
    case LinkToEmptyFile:
        QVERIFY(fixture::writeBytes(outside + "/empty", QByteArray()));
        QVERIFY(link(outside + "/empty", top + "/blank.jpg"));
        break;
    }

    // Listed entries make the count 50 (one operationUpdate(50), which a missing entry would
    // take away); unlisted ones keep it at 49 (none, which a counted entry would add).
    const int target = listedEntries > 0 ? 50 : justBelowUpdate;
    QVERIFY(writePadding(top, target - 1 - listedEntries));
    const QList<int> expectedUpdates = target == 50 ? QList<int> { 50 } : QList<int>();

    const ScanOutcome outcome =
        WorkerScan::run(db, { top }, WorkerScan::allPatterns(), true, {}, fifos);
    if (socketFd >= 0)
        ::close(socketFd);
    QVERIFY2(outcome.finished,
             qPrintable(QString(fifos.isEmpty() ? "the scan hung: "
                                                : "the scan hung; it went on only when the FIFO "
                                                  "was opened for writing: ")
                        + describe(outcome)));
    QCOMPARE(outcome.doneSignals, 1);
    QVERIFY2(outcome.updates == expectedUpdates,
             qPrintable("the walk counted a different number of entries: " + describe(outcome)));
    QCOMPARE(outcome.fileNames, sorted(QStringList { "real.jpg" } + extraRows));
#endif
}

// An unreadable file is skipped without a word and the scan goes on. Root reads every file
// whatever its permissions, so there the file is read and stored; the next test takes root's
// rights away from the worker's thread to see the skip as an ordinary user sees it.
void tst_HostileTrees::fileWithoutPermissions()
{
    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    QVERIFY(writePhoto(top + "/real.jpg"));
    QVERIFY(writePhoto(top + "/locked.jpg"));
    QVERIFY(QFile::setPermissions(top + "/locked.jpg", QFileDevice::Permissions()));

    const ScanOutcome outcome = WorkerScan::run(db, { top }, WorkerScan::allPatterns(), false);
    QFile::setPermissions(top + "/locked.jpg", QFileDevice::ReadOwner | QFileDevice::WriteOwner);

    QVERIFY2(outcome.finished, qPrintable(describe(outcome)));
    QCOMPARE(outcome.doneSignals, 1);
    const QStringList expected =
        runningAsRoot() ? QStringList { "locked.jpg", "real.jpg" } : QStringList { "real.jpg" };
    QCOMPARE(outcome.fileNames, expected);
}

void tst_HostileTrees::fileWithoutPermissionsForAnOrdinaryUser()
{
#ifndef Q_OS_LINUX
    QSKIP("dropping root's file access rights for one thread needs Linux's setfsuid");
#else
    if (!runningAsRoot())
        QSKIP("not running as root: fileWithoutPermissions already sees the file refused");

    // The worker's thread alone takes the file-system identity of "nobody"; file-system
    // identities are per thread, and a non-zero one drops root's right to ignore permissions.
    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    QVERIFY(writePhoto(top + "/real.jpg"));
    QVERIFY(writePhoto(top + "/locked.jpg"));
    const auto open = QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner
        | QFileDevice::ReadGroup | QFileDevice::ExeGroup | QFileDevice::ReadOther
        | QFileDevice::ExeOther;
    QVERIFY(QFile::setPermissions(sandbox.path(), open));
    QVERIFY(QFile::setPermissions(top, open));
    QVERIFY(QFile::setPermissions(top + "/real.jpg",
                                  QFileDevice::ReadOwner | QFileDevice::ReadGroup
                                      | QFileDevice::ReadOther));
    QVERIFY(QFile::setPermissions(top + "/locked.jpg", QFileDevice::Permissions()));

    constexpr uid_t nobody = 65534;
    std::atomic<bool> lockedOpens { false };
    std::atomic<bool> realOpens { false };
    const auto dropRights = [&] {
        ::setfsgid(nobody);
        ::setfsuid(nobody);
        QFile locked(top + "/locked.jpg");
        lockedOpens = locked.open(QIODevice::ReadOnly);
        QFile real(top + "/real.jpg");
        realOpens = real.open(QIODevice::ReadOnly);
    };
    const ScanOutcome outcome =
        WorkerScan::run(db, { top }, WorkerScan::allPatterns(), false, dropRights);
    QFile::setPermissions(top + "/locked.jpg", QFileDevice::ReadOwner | QFileDevice::WriteOwner);

    QVERIFY2(outcome.finished, qPrintable(describe(outcome)));
    if (lockedOpens)
        QSKIP("this system keeps root's access rights after setfsuid; the refusal can't be shown");
    QVERIFY2(realOpens, "the readable photo must stay readable for the dropped identity");
    QCOMPARE(outcome.doneSignals, 1);
    QCOMPARE(outcome.fileNames, QStringList { "real.jpg" });
#endif
}

void tst_HostileTrees::readerRefusesPathsItCannotOpen_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("kind");

    QTest::newRow("dangling link") << "x.jpg" << 0;
    QTest::newRow("two links naming each other") << "a.jpg" << 1;
    QTest::newRow("folder named like a photo") << "dir.jpg" << 2;
    QTest::newRow("path that does not exist") << "missing.cr3" << 3;
    QTest::newRow("empty path") << "" << 4;
    QTest::newRow("folder named like a CR3 file") << "dir.cr3" << 2;
    QTest::newRow("folder named like a RAF file") << "dir.raf" << 2;
}

// A path that can't be opened as a file reads as empty: not recognised, defaults kept.
void tst_HostileTrees::readerRefusesPathsItCannotOpen()
{
    QFETCH(QString, name);
    QFETCH(int, kind);

    testutils::Sandbox sandbox;
    const QString path = name.isEmpty() ? QString() : sandbox.filePath(name);
    switch (kind) {
    case 0:
        QVERIFY(link(sandbox.filePath("gone/never.jpg"), path));
        break;
    case 1:
        QVERIFY(link("b.jpg", path));
        QVERIFY(link("a.jpg", sandbox.filePath("b.jpg")));
        break;
    case 2:
        sandbox.makeDir(name);
        break;
    default:
        break;
    }

    TExifFile reader(path);
    QVERIFY2(!reader.processFile(), qPrintable(name + " must not be recognised"));
    QCOMPARE(reader.fileTyp(), 0);
    QCOMPARE(reader.Make, QString("n.a."));
    QCOMPARE(reader.Model, QString("n.a."));
}

void tst_HostileTrees::zeroLengthFiles_data()
{
    QTest::addColumn<QString>("suffix");
    for (const QString &suffix : nineSuffixes)
        QTest::newRow(qPrintable("zero-length ." + suffix + " and ." + suffix.toUpper())) << suffix;
}

// A half-copied card leaves files of no bytes at all: not recognised, no row, the scan goes on
// and the photo beside them is stored.
void tst_HostileTrees::zeroLengthFiles()
{
    QFETCH(QString, suffix);

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    QVERIFY(writePhoto(top + "/real." + suffix));
    const QStringList empties { top + "/empty." + suffix, top + "/EMPTY2." + suffix.toUpper(),
                                top + "/sub/empty3." + suffix };
    for (const QString &empty : empties) {
        QDir().mkpath(QFileInfo(empty).absolutePath());
        QVERIFY(fixture::writeBytes(empty, QByteArray()));
        TExifFile reader(empty);
        QVERIFY2(!reader.processFile(), qPrintable(empty + " must not be recognised"));
    }

    const ScanOutcome outcome = WorkerScan::run(db, { top }, WorkerScan::allPatterns(), true);
    QVERIFY2(outcome.finished, qPrintable(describe(outcome)));
    QCOMPARE(outcome.doneSignals, 1);
    QVERIFY(outcome.updates.isEmpty());
    QCOMPARE(outcome.fileNames, QStringList { "real." + suffix });
}

void tst_HostileTrees::copiedCollectionsUnderEverySuffix_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("damaged and crafted files") << QString(KELVARO_MALFORMED_DIR);
    QTest::newRow("camera sample files") << QString(KELVARO_SAMPLES_DIR);
}

// Every file of the collection, whatever it is, copied under each of the nine suffixes (so that
// each goes down the CR3, RAF, RW2 and ORF paths too). The scan must store exactly the files that
// the reader, called directly, accepts.
void tst_HostileTrees::copiedCollectionsUnderEverySuffix()
{
    QFETCH(QString, source);
    if (!QFileInfo(source).isDir())
        QSKIP(qPrintable(source + " is not present"));

    testutils::Sandbox sandbox;
    const QString top = sandbox.makeDir("top");
    QStringList copies;
    QDirIterator files(source, QDir::Files);
    while (files.hasNext()) {
        const QString original = files.next();
        for (const QString &suffix : nineSuffixes) {
            const QString copy = top + '/' + QFileInfo(original).fileName() + '.' + suffix;
            QVERIFY2(QFile::copy(original, copy), qPrintable("copying " + original));
            copies << copy;
        }
    }
    QVERIFY2(!copies.isEmpty(), qPrintable(source + " holds no files"));

    QStringList accepted;
    for (const QString &copy : std::as_const(copies)) {
        TExifFile reader(copy);
        if (reader.processFile())
            accepted << QFileInfo(copy).fileName();
    }

    const ScanOutcome outcome = WorkerScan::run(db, { top }, WorkerScan::allPatterns(), false);
    QVERIFY2(outcome.finished, qPrintable("the scan did not end"));
    QCOMPARE(outcome.doneSignals, 1);
    QList<int> expectedUpdates;
    for (int count = 50; count <= copies.size(); count += 50)
        expectedUpdates << count;
    QCOMPARE(outcome.updates, expectedUpdates);
    QCOMPARE(outcome.fileNames.size(), accepted.size());
    QCOMPARE(outcome.fileNames, sorted(accepted));
}
