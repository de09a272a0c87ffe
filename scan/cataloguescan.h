#pragma once

#include "filenamepatterns.h"
#include "photocatalogue.h"
#include "photoread.h"
#include "readerpool.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

// One scan's use of the photo catalogue. The walk asks for each file in its order: an unchanged
// file's values come back without the file being opened; a new or changed one is read by the
// scan and remembered here. A new file is looked at (stat) and its entry made on the reader's
// thread that reads it, which keeps that work off the walk's thread on a first scan. Once the walk
// has listed every file of a folder, the entries of the folder's files that match the scan's
// patterns but were not listed are forgotten: those files are gone. Files of other types stay
// remembered for scans that look for them.
//
// QDirIterator walks depth first: once a file outside a folder's subtree is listed, that folder
// is complete. A folder is thus loaded with one query when its first file is listed and let go
// as soon as it is complete.
class CatalogueScan
{
public:
    CatalogueScan(PhotoCatalogue &catalogue, const QStringList &patterns);

    // What is kept of a file that is read: the version that was read (taken before the read)
    // and the entry made of it.
    class ReadToRemember : public ReaderPool::Companion
    {
    public:
        // The reader looks at the file.
        ReadToRemember() = default;
        // The walk looked at it already (none: it could not be looked at).
        explicit ReadToRemember(std::optional<PhotoCatalogue::FileStamp> walkStamp);
        void beforeRead(const QString &path) override;
        void afterRead(const QString &path, const PhotoRead &read) override;

    private:
        friend class CatalogueScan;
        bool lookedAt = false;
        std::optional<PhotoCatalogue::FileStamp> stamp; // none: the file cannot be looked at
        QByteArray record;
    };

    struct Lookup
    {
        std::optional<PhotoRead> known; // the remembered read of an unchanged file
        std::shared_ptr<ReadToRemember> toRemember; // for any other file, to go with its read
    };
    // Called for every listed file, in the walk's order.
    Lookup lookup(const QString &path);
    // The read of a file that lookup() did not know, with what its reader kept of it.
    void remember(const QString &path, const ReadToRemember &kept, const PhotoRead &read);

    // The walk listed every file under root (with or without its subfolders).
    void rootWalked(const QString &root, bool includeSubfolders);
    // The walk of the current root was cut short (a stopped scan): its open folders are let go
    // without forgetting anything.
    void rootLeft();

private:
    // A folder held open while its files are looked at: each file's stat() then walks one name
    // instead of the whole path.
    class FolderHandle
    {
    public:
        explicit FolderHandle(const QString &path);
        ~FolderHandle();
        FolderHandle(FolderHandle &&other) noexcept;
        FolderHandle &operator=(FolderHandle &&other) noexcept;
        int fd = -1;
    };

    struct OpenFolder
    {
        QString path;
        // The remembered files not listed yet.
        QHash<QString, PhotoCatalogue::Entry> unlisted;
        FolderHandle handle;
    };

    OpenFolder &folderOf(const QString &folder);
    void close(const OpenFolder &folder);
    void forgetMatching(const QString &folder, const QList<QString> &names);

    PhotoCatalogue &catalogue;
    const FileNamePatterns patterns;
    std::vector<OpenFolder> open; // the current folder and the folders above it, top last
    QSet<QString> visited; // under the current root
};
