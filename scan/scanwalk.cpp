#include "scanwalk.h"

#include <QDir>

ScanWalk::ScanWalk(const QList<QString> &directories, const QStringList &patterns,
                   bool includeSubDirs)
    : directories(directories)
    , patterns(patterns)
    , flags(includeSubDirs ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags)
{ }

bool ScanWalk::next(File &file)
{
    for (;;) {
        if (!iterator) {
            if (current + 1 >= directories.size())
                return false;
            ++current;
            iterator = std::make_unique<QDirIterator>(directories.at(current), QDir::Files, flags);
        }
        while (iterator->hasNext()) {
            const QString path = iterator->next();
            // QDir::Files also lists links to FIFOs and devices; opening one could block forever,
            // and they are no photos, so they are neither counted nor read.
            if (!patterns.matches(iterator->fileName()) || !iterator->fileInfo().isFile())
                continue;
            file = { current, path };
            return true;
        }
        iterator.reset();
        if (listed)
            listed(current);
    }
}

bool ScanWalk::leaveDirectory(int directory)
{
    if (directory != current || !iterator)
        return false;
    iterator.reset();
    return true;
}

void ScanWalk::onDirectoryListed(std::function<void(int)> listed)
{
    this->listed = std::move(listed);
}
