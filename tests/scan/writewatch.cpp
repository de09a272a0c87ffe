#include "writewatch.h"

#include <QDir>

#ifdef Q_OS_LINUX
#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {
#ifdef Q_OS_LINUX
// IN_CLOSE_WRITE is reported for every file that was opened for writing, even one that was left
// unchanged; the others catch changes made without such an open.
constexpr quint32 watchedEvents =
    IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;

QString eventName(quint32 mask)
{
    if (mask & IN_CLOSE_WRITE)
        return QStringLiteral("closed-after-writing");
    if (mask & IN_MODIFY)
        return QStringLiteral("modified");
    if (mask & IN_ATTRIB)
        return QStringLiteral("attributes-changed");
    if (mask & IN_Q_OVERFLOW)
        return QStringLiteral("event-queue-overflow");
    return QStringLiteral("created-removed-or-moved");
}
#endif
} // namespace

WriteWatch::WriteWatch(const QStringList &folders)
{
#ifdef Q_OS_LINUX
    fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (fd < 0)
        return;
    valid = true;
    for (const QString &folder : folders) {
        const int watch =
            inotify_add_watch(fd, QFile::encodeName(folder).constData(), watchedEvents);
        if (watch < 0)
            valid = false;
        else
            folderOfWatch.insert(watch, folder);
    }
#else
    Q_UNUSED(folders);
#endif
}

WriteWatch::~WriteWatch()
{
#ifdef Q_OS_LINUX
    if (fd >= 0)
        close(fd);
#endif
}

QStringList WriteWatch::changes()
{
    QStringList found;
#ifdef Q_OS_LINUX
    alignas(inotify_event) char buffer[64 * 1024];
    for (;;) {
        const ssize_t length = read(fd, buffer, sizeof buffer);
        if (length <= 0)
            break;
        for (ssize_t at = 0; at < length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
            const QString name = event->len ? QFile::decodeName(event->name) : QString();
            found << eventName(event->mask) + QLatin1Char(' ')
                    + QDir(folderOfWatch.value(event->wd)).filePath(name);
            at += ssize_t(sizeof(inotify_event)) + event->len;
        }
    }
#endif
    return found;
}
