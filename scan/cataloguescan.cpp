#include "cataloguescan.h"

#include "cataloguerecord.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace {

QString folderOfPath(const QString &path, QString *name)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    *name = path.mid(slash + 1);
    return slash == 0 ? QStringLiteral("/") : path.left(slash);
}

bool isWithin(const QString &folder, const QString &ancestor)
{
    if (!folder.startsWith(ancestor))
        return false;
    return folder.size() == ancestor.size() || ancestor.endsWith(QLatin1Char('/'))
        || folder.at(ancestor.size()) == QLatin1Char('/');
}

} // namespace

CatalogueScan::FolderHandle::FolderHandle(const QString &path)
    : fd(::open(QFile::encodeName(path).constData(), O_PATH | O_DIRECTORY | O_CLOEXEC))
{ }

CatalogueScan::FolderHandle::~FolderHandle()
{
    if (fd >= 0)
        ::close(fd);
}

CatalogueScan::FolderHandle::FolderHandle(FolderHandle &&other) noexcept
    : fd(std::exchange(other.fd, -1))
{ }

CatalogueScan::FolderHandle &CatalogueScan::FolderHandle::operator=(FolderHandle &&other) noexcept
{
    std::swap(fd, other.fd);
    return *this;
}

CatalogueScan::CatalogueScan(PhotoCatalogue &catalogue, const QStringList &patterns)
    : catalogue(catalogue)
    , patterns(patterns)
{ }

CatalogueScan::ReadToRemember::ReadToRemember(std::optional<PhotoCatalogue::FileStamp> walkStamp)
    : lookedAt(true)
    , stamp(walkStamp)
{ }

void CatalogueScan::ReadToRemember::beforeRead(const QString &path)
{
    if (!lookedAt)
        stamp = PhotoCatalogue::FileStamp::of(path);
    lookedAt = true;
}

void CatalogueScan::ReadToRemember::afterRead(const QString &path, const PhotoRead &read)
{
    if (stamp && read.outcome == PhotoRead::Outcome::Photo)
        record = CatalogueRecord::encode(read, path);
}

CatalogueScan::Lookup CatalogueScan::lookup(const QString &path)
{
    Lookup lookup;
    QString name;
    const QString folder = folderOfPath(path, &name);
    OpenFolder &open = folderOf(folder);
    const auto entry = open.unlisted.constFind(name);
    // A file the catalogue does not know is looked at by its reader.
    if (entry == open.unlisted.constEnd()) {
        lookup.toRemember = std::make_shared<ReadToRemember>();
        return lookup;
    }
    const PhotoCatalogue::Entry remembered = *entry;
    open.unlisted.erase(entry);
    const std::optional<PhotoCatalogue::FileStamp> stamp = open.handle.fd >= 0
        ? PhotoCatalogue::FileStamp::of(open.handle.fd, name)
        : PhotoCatalogue::FileStamp::of(path);
    if (stamp && remembered.stamp == *stamp) {
        PhotoRead read;
        if (remembered.record.isEmpty())
            read.outcome = PhotoRead::Outcome::NotPhoto;
        // A damaged record is not used: the file is read again.
        if (remembered.record.isEmpty() || CatalogueRecord::decode(remembered.record, path, read)) {
            lookup.known = std::move(read);
            return lookup;
        }
    }
    lookup.toRemember = std::make_shared<ReadToRemember>(stamp);
    return lookup;
}

void CatalogueScan::remember(const QString &path, const ReadToRemember &kept, const PhotoRead &read)
{
    if (read.outcome == PhotoRead::Outcome::NotRead || !kept.stamp)
        return;
    QString name;
    const QString folder = folderOfPath(path, &name);
    catalogue.remember(folder, name, *kept.stamp,
                       read.outcome == PhotoRead::Outcome::Photo ? kept.record : QByteArray());
}

CatalogueScan::OpenFolder &CatalogueScan::folderOf(const QString &folder)
{
    while (!open.empty() && !isWithin(folder, open.back().path)) {
        close(open.back());
        open.pop_back();
    }
    if (open.empty() || open.back().path != folder)
        open.push_back({ folder, catalogue.folderEntries(folder), FolderHandle(folder) });
    return open.back();
}

void CatalogueScan::close(const OpenFolder &folder)
{
    forgetMatching(folder.path, folder.unlisted.keys());
    catalogue.markSeen(folder.path);
    visited.insert(folder.path);
}

void CatalogueScan::forgetMatching(const QString &folder, const QList<QString> &names)
{
    QStringList gone;
    for (const QString &name : names) {
        if (patterns.matches(name))
            gone << name;
    }
    catalogue.forget(folder, gone);
}

void CatalogueScan::rootWalked(const QString &root, bool includeSubfolders)
{
    while (!open.empty()) {
        close(open.back());
        open.pop_back();
    }
    // Folders that listed no file this time: gone, or holding no file of the scan's types.
    for (const QString &folder : catalogue.foldersUnder(root, includeSubfolders)) {
        if (!visited.contains(folder))
            forgetMatching(folder, catalogue.folderEntries(folder).keys());
    }
    visited.clear();
}

void CatalogueScan::rootLeft()
{
    open.clear();
    visited.clear();
}
