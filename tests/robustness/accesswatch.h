#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// Records how the files of some folders are accessed (Linux inotify): opened, closed after
// reading, and anything that changes them or the folder (written, closed after writing, attributes
// changed, made, removed, renamed). Events are collected from construction until events().
class AccessWatch
{
public:
    struct Event
    {
        QString path; // the folder, or the file in it that the event is about
        quint32 mask = 0;
    };

    explicit AccessWatch(const QStringList &folders);
    ~AccessWatch();
    AccessWatch(const AccessWatch &) = delete;
    AccessWatch &operator=(const AccessWatch &) = delete;

    // False where inotify is missing or a folder could not be watched.
    bool isValid() const { return valid; }
    // Every event since construction (or since the last call).
    QList<Event> events();

    // The masks that mean a change of a file or of the folder's entries.
    static quint32 changeMask();
    static QString describe(const Event &event);

private:
    int fd = -1;
    bool valid = false;
    QHash<int, QString> folderOfWatch;
};
