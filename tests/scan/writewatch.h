#pragma once

#include <QHash>
#include <QStringList>

// Watches folders for any file in them being opened for writing, changed, having its attributes
// changed, made or removed (Linux inotify; reading a file causes no event). Events are collected
// from the moment of construction until changes() is called.
class WriteWatch
{
public:
    explicit WriteWatch(const QStringList &folders);
    ~WriteWatch();
    WriteWatch(const WriteWatch &) = delete;
    WriteWatch &operator=(const WriteWatch &) = delete;

    // False where inotify is missing or a folder could not be watched.
    bool isValid() const { return valid; }
    // "<event> <path>" for each event since construction.
    QStringList changes();

private:
    int fd = -1;
    bool valid = false;
    QHash<int, QString> folderOfWatch;
};
