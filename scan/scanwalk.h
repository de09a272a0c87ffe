#pragma once

#include "filenamepatterns.h"

#include <QDirIterator>
#include <QList>
#include <QString>

#include <functional>
#include <memory>

// The scan's walk: the files matching the patterns in each directory in turn, in the file
// system's order, each tagged with the index of the directory it was found under. The walk is
// lazy, so that the scan can look only a bounded distance ahead of what it has stored.
class ScanWalk
{
public:
    struct File
    {
        int directory = -1; // index into the directories given
        QString path;
    };

    ScanWalk(const QList<QString> &directories, const QStringList &patterns, bool includeSubDirs);

    // The next matching file; false when every directory is walked.
    bool next(File &file);
    // Walks no further file of that directory (a stopped scan leaves it). True when that cut its
    // walk short, false when the walk had already gone past it.
    bool leaveDirectory(int directory);
    // Called by next() with the index of a directory whose every matching file has been listed.
    void onDirectoryListed(std::function<void(int directory)> listed);

private:
    const QList<QString> directories;
    const FileNamePatterns patterns;
    const QDirIterator::IteratorFlags flags;
    int current = -1;
    std::unique_ptr<QDirIterator> iterator;
    std::function<void(int)> listed;
};
