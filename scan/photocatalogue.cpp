#include "photocatalogue.h"

#include "exifreaderversion.h"
#include "photorowinserter.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMutex>
#include <QSet>
#include <QSqlError>
#include <QSqlQuery>
#include <QStandardPaths>
#include <QVariant>

#ifdef KELVARO_DIRECT_SQLITE
#include "sqlitehandle.h"

#include <sqlite3.h>
#endif

#include <fcntl.h>
#include <sys/stat.h>

#include <atomic>

namespace {

// SQLite's primary result codes (extended codes carry them in the low byte).
constexpr int sqliteError = 1;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteNotADatabase = 26;
constexpr int sqliteIoErrShortRead = 522; // a file cut short

std::function<void(int)> batchCommittedHook;
std::atomic<int> connections { 0 };

// A damaged page can sit where a scan never looks; so the first open of a file in a process
// checks every page. Later scans of the same run trust what that found.
QMutex checkedMutex;
QSet<QString> checkedFiles;

bool firstOpenInProcess(const QString &file)
{
    QMutexLocker lock(&checkedMutex);
    if (checkedFiles.contains(file))
        return false;
    checkedFiles.insert(file);
    return true;
}

void checkAgainNextTime(const QString &file)
{
    QMutexLocker lock(&checkedMutex);
    checkedFiles.remove(file);
}

// The error's SQLite code; a generic error where the driver gives none.
int sqliteCodeOf(const QSqlError &error)
{
    bool ok = false;
    const int code = error.nativeErrorCode().toInt(&ok);
    return ok ? code : sqliteError;
}

bool isDamage(int code)
{
    return (code & 0xff) == sqliteCorrupt || (code & 0xff) == sqliteNotADatabase
        || code == sqliteIoErrShortRead;
}

bool isDamage(const QSqlError &error)
{
    return isDamage(sqliteCodeOf(error));
}

const QString loadEntriesStatement = QStringLiteral(
    "SELECT name, size, modified, inode, device, record FROM photos WHERE folder = ?");
const QString writeEntryStatement =
    QStringLiteral("INSERT OR REPLACE INTO photos VALUES (?, ?, ?, ?, ?, ?, ?)");

// What the stored values mean: the reader's version and the names of the values stored per
// photo. A change of either makes every entry useless.
QString valuesLayout()
{
    const QStringList names = PhotoRowInserter::placeholders + QStringList { QStringLiteral("|") }
        + PhotoRowInserter::infoPlaceholders;
    return QString::number(ExifReader::version) + QLatin1Char('/')
        + QString::fromLatin1(QCryptographicHash::hash(names.join(QLatin1Char(',')).toUtf8(),
                                                       QCryptographicHash::Sha1)
                                  .toHex());
}

const QStringList schema {
    QStringLiteral("CREATE TABLE IF NOT EXISTS settings (key TEXT PRIMARY KEY, value TEXT) "
                   "WITHOUT ROWID"),
    // AUTOINCREMENT: a folder's id is never given again, so entries written under the id of a
    // folder that another process pruned meanwhile never come back under another folder.
    QStringLiteral("CREATE TABLE IF NOT EXISTS folders (id INTEGER PRIMARY KEY AUTOINCREMENT, "
                   "path TEXT NOT NULL UNIQUE, seen INTEGER NOT NULL)"),
    QStringLiteral("CREATE TABLE IF NOT EXISTS photos (folder INTEGER NOT NULL, name TEXT NOT "
                   "NULL, size INTEGER NOT NULL, modified INTEGER NOT NULL, inode INTEGER NOT "
                   "NULL, device INTEGER NOT NULL, record BLOB, PRIMARY KEY (folder, name)) "
                   "WITHOUT ROWID"),
};

} // namespace

namespace {

PhotoCatalogue::FileStamp stampOf(const struct stat &st)
{
    PhotoCatalogue::FileStamp stamp;
    stamp.size = qint64(st.st_size);
    stamp.modifiedNs = qint64(st.st_mtim.tv_sec) * 1000000000 + st.st_mtim.tv_nsec;
    stamp.inode = qint64(st.st_ino);
    stamp.device = qint64(st.st_dev);
    return stamp;
}

} // namespace

#ifdef KELVARO_DIRECT_SQLITE
// Through SQLite's own interface on the connection's handle: a rescan loads every folder's
// entries and a first scan writes one entry per file, and Qt's driver costs several times what
// SQLite itself does for that. Texts go in and out as UTF-16, as through the driver.
struct PhotoCatalogue::Statements
{
    explicit Statements(sqlite3 *handle)
        : handle(handle)
    {
        load = prepare(loadEntriesStatement);
        write = prepare(writeEntryStatement);
    }
    ~Statements()
    {
        sqlite3_finalize(load);
        sqlite3_finalize(write);
    }
    Statements(const Statements &) = delete;
    Statements &operator=(const Statements &) = delete;

    sqlite3_stmt *prepare(const QString &sql) const
    {
        const QByteArray utf8 = sql.toUtf8();
        sqlite3_stmt *statement = nullptr;
        if (sqlite3_prepare_v2(handle, utf8.constData(), int(utf8.size()) + 1, &statement, nullptr)
            != SQLITE_OK) {
            sqlite3_finalize(statement);
            return nullptr;
        }
        return statement;
    }

    sqlite3 *const handle;
    sqlite3_stmt *load = nullptr;
    sqlite3_stmt *write = nullptr;
};
#else
struct PhotoCatalogue::Statements
{
};
#endif

std::optional<PhotoCatalogue::FileStamp> PhotoCatalogue::FileStamp::of(const QString &path)
{
    struct stat st;
    if (::stat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return stampOf(st);
}

std::optional<PhotoCatalogue::FileStamp> PhotoCatalogue::FileStamp::of(int folderFd,
                                                                       const QString &name)
{
    struct stat st;
    if (::fstatat(folderFd, QFile::encodeName(name).constData(), &st, 0) != 0)
        return std::nullopt;
    return stampOf(st);
}

QString PhotoCatalogue::defaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation)
        + QStringLiteral("/photo-catalogue.sqlite");
}

void PhotoCatalogue::setBatchCommittedHook(std::function<void(int)> hook)
{
    batchCommittedHook = std::move(hook);
}

PhotoCatalogue::PhotoCatalogue(QString file)
    : file(std::move(file))
    , connectionName(QStringLiteral("PhotoCatalogue%1").arg(++connections))
{ }

PhotoCatalogue::~PhotoCatalogue()
{
    commit();
    closeConnection();
}

bool PhotoCatalogue::open(qint64 nowSeconds)
{
    now = nowSeconds;
    Fault fault = tryOpen();
    if (fault == Fault::Damaged || fault == Fault::Newer) {
        closeConnection();
        const QString aside = QStringLiteral("%1.%2-%3")
                                  .arg(file,
                                       fault == Fault::Newer ? QStringLiteral("newer-version")
                                                             : QStringLiteral("damaged"),
                                       QDateTime::fromSecsSinceEpoch(now, Qt::UTC)
                                           .toString(QStringLiteral("yyyyMMddTHHmmss")));
        moveAside(aside);
        message = fault == Fault::Newer
            ? QStringLiteral("The photo catalogue was written by a newer Kelvaro; it was kept "
                             "as %1 and a new one was started.")
                  .arg(QFileInfo(aside).fileName())
            : QStringLiteral("The photo catalogue was damaged; it was kept as %1 and a new one "
                             "was started.")
                  .arg(QFileInfo(aside).fileName());
        fault = tryOpen();
    }
    if (fault != Fault::None) {
        closeConnection();
        message = QStringLiteral("The photo catalogue cannot be used (%1): every photo is read.")
                      .arg(problem);
        return false;
    }
#ifdef KELVARO_DIRECT_SQLITE
    if (sqlite3 *const handle = sqliteHandleOf(db))
        statements = std::make_unique<Statements>(handle);
#endif
    return true;
}

PhotoCatalogue::Fault PhotoCatalogue::tryOpen()
{
    problem = QFileInfo(file).absolutePath() + QStringLiteral(" cannot be written");
    if (!QDir().mkpath(QFileInfo(file).absolutePath()))
        return Fault::Unusable;
    db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), connectionName);
    db.setDatabaseName(file);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs));
    if (!db.open()) {
        problem = db.lastError().text();
        return isDamage(db.lastError()) ? Fault::Damaged : Fault::Unusable;
    }

    QSqlQuery query(db);
    const auto failed = [&] {
        problem = query.lastError().text();
        return isDamage(query.lastError()) ? Fault::Damaged : Fault::Unusable;
    };
    if (!query.exec(QStringLiteral("PRAGMA user_version")) || !query.next())
        return failed();
    const int version = query.value(0).toInt();
    if (version > schemaVersion)
        return Fault::Newer;
    if (!query.exec(QStringLiteral("SELECT count(*) FROM sqlite_master")) || !query.next())
        return failed();
    // Tables but no version: some other program's database.
    if (version == 0 && query.value(0).toInt() > 0)
        return Fault::Damaged;
    if (firstOpenInProcess(file)) {
        if (!query.exec(QStringLiteral("PRAGMA quick_check")))
            return failed();
        if (!query.next() || query.value(0).toString() != QLatin1String("ok")) {
            checkAgainNextTime(file);
            return Fault::Damaged;
        }
    }
    query.finish();
    // The write-ahead log survives a killed process and lets a second process read meanwhile.
    // Without synchronisation a killed process still loses nothing committed; a power cut may
    // damage the file, which the next start's check finds and puts aside. For a cache that is
    // the better bargain: waiting for the disk at every checkpoint made a first scan up to twice
    // as slow on a busy disk.
    if (!query.exec(QStringLiteral("PRAGMA journal_mode = WAL")) || !query.next())
        return failed();
    if (query.value(0).toString() != QLatin1String("wal"))
        return Fault::Unusable;
    query.exec(QStringLiteral("PRAGMA synchronous = OFF"));

    // The schema is made in a write transaction, which also proves that the file can be written.
    if (!query.exec(QStringLiteral("BEGIN IMMEDIATE")))
        return failed();
    for (const QString &statement : schema) {
        if (!query.exec(statement)) {
            const Fault fault = failed();
            query.exec(QStringLiteral("ROLLBACK"));
            return fault;
        }
    }
    query.exec(QStringLiteral("SELECT value FROM settings WHERE key = 'values'"));
    const QString stored = query.next() ? query.value(0).toString() : QString();
    query.finish();
    if (stored != valuesLayout()) {
        query.exec(QStringLiteral("DELETE FROM photos"));
        query.exec(QStringLiteral("DELETE FROM folders"));
        query.prepare(QStringLiteral("INSERT OR REPLACE INTO settings VALUES ('values', ?)"));
        query.addBindValue(valuesLayout());
        query.exec();
    }
    query.exec(QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion));
    if (!query.exec(QStringLiteral("COMMIT"))) {
        const Fault fault = failed();
        query.exec(QStringLiteral("ROLLBACK"));
        return fault;
    }
    return Fault::None;
}

void PhotoCatalogue::moveAside(const QString &aside)
{
    QFile::rename(file, aside);
    const QString wal = file + QStringLiteral("-wal");
    if (QFile::exists(wal))
        QFile::rename(wal, aside + QStringLiteral("-wal"));
    QFile::remove(file + QStringLiteral("-shm"));
    checkAgainNextTime(file);
}

void PhotoCatalogue::closeConnection()
{
    if (!db.isValid())
        return;
    // A statement left unfinalized would keep the file open.
    statements.reset();
    db.close();
    db = QSqlDatabase();
    QSqlDatabase::removeDatabase(connectionName);
    folderIds.clear();
}

qint64 PhotoCatalogue::folderId(const QString &folder, bool create)
{
    const auto known = folderIds.constFind(folder);
    if (known != folderIds.constEnd())
        return *known;
    QSqlQuery query(db);
    query.prepare(QStringLiteral("SELECT id FROM folders WHERE path = ?"));
    query.addBindValue(folder);
    qint64 id = -1;
    if (query.exec() && query.next()) {
        id = query.value(0).toLongLong();
    } else if (create) {
        query.prepare(QStringLiteral("INSERT INTO folders (path, seen) VALUES (?, ?)"));
        query.addBindValue(folder);
        query.addBindValue(now);
        if (query.exec())
            id = query.lastInsertId().toLongLong();
    }
    if (id >= 0)
        folderIds.insert(folder, id);
    return id;
}

QHash<QString, PhotoCatalogue::Entry> PhotoCatalogue::folderEntries(const QString &folder)
{
    QHash<QString, Entry> entries;
    if (!isOpen())
        return entries;
    const qint64 id = folderId(folder, false);
    if (id >= 0)
        loadEntries(id, entries);
    return entries;
}

void PhotoCatalogue::loadEntries(qint64 folder, QHash<QString, Entry> &entries)
{
#ifdef KELVARO_DIRECT_SQLITE
    if (statements && statements->load) {
        sqlite3_stmt *const load = statements->load;
        sqlite3_bind_int64(load, 1, folder);
        while (sqlite3_step(load) == SQLITE_ROW) {
            Entry entry;
            entry.stamp.size = sqlite3_column_int64(load, 1);
            entry.stamp.modifiedNs = sqlite3_column_int64(load, 2);
            entry.stamp.inode = sqlite3_column_int64(load, 3);
            entry.stamp.device = sqlite3_column_int64(load, 4);
            entry.record = QByteArray(static_cast<const char *>(sqlite3_column_blob(load, 5)),
                                      sqlite3_column_bytes(load, 5));
            const auto *name = static_cast<const char16_t *>(sqlite3_column_text16(load, 0));
            entries.insert(
                QString(reinterpret_cast<const QChar *>(name), sqlite3_column_bytes16(load, 0) / 2),
                entry);
        }
        // Ends the read, which would otherwise keep a snapshot of the file.
        sqlite3_reset(load);
        return;
    }
#endif
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.prepare(loadEntriesStatement);
    query.addBindValue(folder);
    if (!query.exec())
        return;
    while (query.next()) {
        Entry entry;
        entry.stamp.size = query.value(1).toLongLong();
        entry.stamp.modifiedNs = query.value(2).toLongLong();
        entry.stamp.inode = query.value(3).toLongLong();
        entry.stamp.device = query.value(4).toLongLong();
        entry.record = query.value(5).toByteArray();
        entries.insert(query.value(0).toString(), entry);
    }
}

QStringList PhotoCatalogue::foldersUnder(const QString &root, bool includeSubfolders)
{
    QStringList folders;
    if (!isOpen())
        return folders;
    // Every path below the root starts with root + '/'; '0' is the character after '/', so the
    // range holds exactly those paths, and the folders' unique index answers it.
    const QString below = root.endsWith(QLatin1Char('/')) ? root : root + QLatin1Char('/');
    QString after = below;
    after.back() = QLatin1Char('0');
    QSqlQuery query(db);
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT path FROM folders WHERE path = ? OR (? AND path >= ? AND "
                                 "path < ?)"));
    query.addBindValue(root);
    query.addBindValue(includeSubfolders);
    query.addBindValue(below);
    query.addBindValue(after);
    if (query.exec()) {
        while (query.next())
            folders << query.value(0).toString();
    }
    return folders;
}

void PhotoCatalogue::remember(const QString &folder, const QString &name, const FileStamp &stamp,
                              const QByteArray &record)
{
    if (!isOpen())
        return;
    writes.append({ folder, name, stamp, record });
    if (writes.size() >= batchSize)
        commit();
}

void PhotoCatalogue::forget(const QString &folder, const QStringList &names)
{
    if (isOpen() && !names.isEmpty())
        removals.append({ folder, names });
}

void PhotoCatalogue::markSeen(const QString &folder)
{
    if (isOpen())
        seenFolders.append(folder);
}

void PhotoCatalogue::commit()
{
    if (!isOpen() || (writes.isEmpty() && removals.isEmpty() && seenFolders.isEmpty()))
        return;
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("BEGIN IMMEDIATE"))) {
        dropAfterFault(sqliteCodeOf(query.lastError()));
        return;
    }
    int failure = writeEntries();
    bool ok = failure == 0;
    query.prepare(QStringLiteral("DELETE FROM photos WHERE folder = ? AND name = ?"));
    for (const auto &[folder, names] : std::as_const(removals)) {
        const qint64 id = folderId(folder, false);
        for (const QString &name : names) {
            query.addBindValue(id);
            query.addBindValue(name);
            ok = ok && query.exec();
        }
    }
    query.prepare(QStringLiteral("UPDATE folders SET seen = ? WHERE path = ?"));
    for (const QString &folder : std::as_const(seenFolders)) {
        query.addBindValue(now);
        query.addBindValue(folder);
        ok = ok && query.exec();
    }
    writes.clear();
    removals.clear();
    seenFolders.clear();
    if (!ok || !query.exec(QStringLiteral("COMMIT"))) {
        if (failure == 0)
            failure = sqliteCodeOf(query.lastError());
        query.exec(QStringLiteral("ROLLBACK"));
        dropAfterFault(failure);
        return;
    }
    ++batches;
    if (batchCommittedHook)
        batchCommittedHook(batches);
}

int PhotoCatalogue::writeEntries()
{
#ifdef KELVARO_DIRECT_SQLITE
    if (statements && statements->write) {
        sqlite3_stmt *const write = statements->write;
        for (const Write &entry : std::as_const(writes)) {
            const qint64 id = folderId(entry.folder, true);
            if (id < 0)
                return sqliteError;
            sqlite3_bind_int64(write, 1, id);
            // The texts and the record outlive the step, so SQLite need not copy them.
            sqlite3_bind_text16(write, 2, entry.name.utf16(), int(entry.name.size() * 2),
                                SQLITE_STATIC);
            sqlite3_bind_int64(write, 3, entry.stamp.size);
            sqlite3_bind_int64(write, 4, entry.stamp.modifiedNs);
            sqlite3_bind_int64(write, 5, entry.stamp.inode);
            sqlite3_bind_int64(write, 6, entry.stamp.device);
            // A file that is not a photo is remembered with a null record.
            if (entry.record.isEmpty())
                sqlite3_bind_null(write, 7);
            else
                sqlite3_bind_blob(write, 7, entry.record.constData(), int(entry.record.size()),
                                  SQLITE_STATIC);
            const int result = sqlite3_step(write);
            sqlite3_reset(write);
            if (result != SQLITE_DONE)
                return sqlite3_extended_errcode(statements->handle);
        }
        return 0;
    }
#endif
    QSqlQuery query(db);
    query.prepare(writeEntryStatement);
    for (const Write &write : std::as_const(writes)) {
        const qint64 id = folderId(write.folder, true);
        if (id < 0)
            return sqliteError;
        query.addBindValue(id);
        query.addBindValue(write.name);
        query.addBindValue(write.stamp.size);
        query.addBindValue(write.stamp.modifiedNs);
        query.addBindValue(write.stamp.inode);
        query.addBindValue(write.stamp.device);
        // A file that is not a photo is remembered with a null record.
        query.addBindValue(write.record.isEmpty() ? QVariant(QMetaType(QMetaType::QByteArray))
                                                  : QVariant(write.record));
        if (!query.exec())
            return sqliteCodeOf(query.lastError());
    }
    return 0;
}

// A batch that could not be written is lost (the files are read again next time). Damage found
// while writing ends the catalogue's use for this scan; the next open checks the file again.
void PhotoCatalogue::dropAfterFault(int sqliteCode)
{
    writes.clear();
    removals.clear();
    seenFolders.clear();
    if (isDamage(sqliteCode)) {
        checkAgainNextTime(file);
        closeConnection();
        message = QStringLiteral("The photo catalogue was found damaged during the scan; it is "
                                 "checked again at the next scan.");
    }
}

void PhotoCatalogue::pruneUnseenSince(qint64 cutoffSeconds)
{
    if (!isOpen())
        return;
    commit();
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("BEGIN IMMEDIATE")))
        return;
    query.prepare(QStringLiteral(
        "DELETE FROM photos WHERE folder IN (SELECT id FROM folders WHERE seen < ?)"));
    query.addBindValue(cutoffSeconds);
    query.exec();
    query.prepare(QStringLiteral("DELETE FROM folders WHERE seen < ?"));
    query.addBindValue(cutoffSeconds);
    query.exec();
    query.exec(QStringLiteral("DELETE FROM photos WHERE folder NOT IN (SELECT id FROM folders)"));
    query.exec(QStringLiteral("COMMIT"));
    folderIds.clear();
}

void PhotoCatalogue::clear()
{
    if (!isOpen())
        return;
    writes.clear();
    removals.clear();
    seenFolders.clear();
    QSqlQuery query(db);
    query.exec(QStringLiteral("BEGIN IMMEDIATE"));
    query.exec(QStringLiteral("DELETE FROM photos"));
    query.exec(QStringLiteral("DELETE FROM folders"));
    query.exec(QStringLiteral("COMMIT"));
    // Gives the emptied pages back to the file system.
    query.exec(QStringLiteral("VACUUM"));
    folderIds.clear();
}
