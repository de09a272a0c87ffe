#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

// The photo catalogue: an SQLite file in the user's cache folder that remembers, per photo file,
// what identified the version that was read (size, modification time, inode, device) and what
// the reader made of it, so that a later scan hands out an unchanged file's values without
// opening it. It is a cache: deleting the file loses nothing but time.
//
// Files are grouped by their folder, so that a scan loads a folder's entries with one query and
// a folder's path is stored once. Writes are collected and committed in transactions of at most
// batchSize entries: a process killed meanwhile loses at most the last batch, and the write-ahead
// log keeps the file intact. Two processes may use the same file; each waits for the other's
// write for up to busyTimeoutMs.
//
// Opened, used and closed on one thread (the scan's worker).
class PhotoCatalogue
{
public:
    static constexpr int schemaVersion = 1;
    static constexpr int batchSize = 500;
    static constexpr int busyTimeoutMs = 10000;
    // A folder no scan has looked at for a year is dropped: most likely a disk that is gone.
    static constexpr int defaultForgetUnseenAfterDays = 365;

    // What identifies the version of a file that was read.
    struct FileStamp
    {
        qint64 size = -1;
        qint64 modifiedNs = 0;
        qint64 inode = 0;
        qint64 device = 0;
        friend bool operator==(const FileStamp &a, const FileStamp &b)
        {
            return a.size == b.size && a.modifiedNs == b.modifiedNs && a.inode == b.inode
                && a.device == b.device;
        }
        // Taken with stat(), links followed as the reader follows them; nullopt when the file
        // cannot be looked at.
        static std::optional<FileStamp> of(const QString &path);
        // The same for a file of the folder open as folderFd: the path is not walked again.
        static std::optional<FileStamp> of(int folderFd, const QString &name);
    };

    // One remembered file of a folder. A file that is not a photo has an empty record.
    struct Entry
    {
        FileStamp stamp;
        QByteArray record;
    };

    // Where the window and kelvaro-stats keep it: in QStandardPaths::CacheLocation.
    static QString defaultFile();

    explicit PhotoCatalogue(QString file);
    ~PhotoCatalogue();
    PhotoCatalogue(const PhotoCatalogue &) = delete;
    PhotoCatalogue &operator=(const PhotoCatalogue &) = delete;

    // Opens the file, creating it and its folder. A file that is not a usable catalogue (damaged,
    // cut short, of a newer version) is moved aside, kept under a name that says why and when,
    // and a new one is started. False when no catalogue can be used (the folder cannot be
    // written): the scan then reads every file. Either way note() may say what happened.
    bool open(qint64 nowSeconds);
    bool isOpen() const { return db.isOpen(); }
    // A sentence for the user about a problem with the catalogue, or empty.
    QString note() const { return message; }

    // The remembered files of a folder, by file name.
    QHash<QString, Entry> folderEntries(const QString &folder);
    // The folders at or below `root` that hold entries (only `root` itself without subfolders).
    QStringList foldersUnder(const QString &root, bool includeSubfolders);

    // Queued; committed when batchSize entries are waiting, or by commit().
    void remember(const QString &folder, const QString &name, const FileStamp &stamp,
                  const QByteArray &record);
    void forget(const QString &folder, const QStringList &names);
    void markSeen(const QString &folder);
    void commit();

    // Forgets the folders no scan has seen since `cutoffSeconds` (seconds since the epoch).
    void pruneUnseenSince(qint64 cutoffSeconds);
    // Forgets every entry.
    void clear();

    // Called after each committed batch, with the number of batches this catalogue committed so
    // far; tests use it to end a process at a chosen point. Set it while no scan runs.
    static void setBatchCommittedHook(std::function<void(int batch)> hook);

private:
    enum class Fault { None, Damaged, Newer, Unusable };

    Fault tryOpen();
    void moveAside(const QString &reason);
    void closeConnection();
    qint64 folderId(const QString &folder, bool create);
    void loadEntries(qint64 folder, QHash<QString, Entry> &entries);
    // SQLite's error code of the first write that failed, 0 when all were written.
    int writeEntries();
    void dropAfterFault(int sqliteCode);

    const QString file;
    const QString connectionName;
    QSqlDatabase db;
    QString message;
    QString problem; // why the last open failed
    qint64 now = 0;
    QHash<QString, qint64> folderIds;
    // The statements run per folder and per file, prepared once per connection.
    struct Statements;
    std::unique_ptr<Statements> statements;
    struct Write
    {
        QString folder;
        QString name;
        FileStamp stamp;
        QByteArray record;
    };
    QList<Write> writes;
    QList<QPair<QString, QStringList>> removals;
    QStringList seenFolders;
    int batches = 0;
};
