#include "accesswatch.h"

#include <QDir>
#include <QFile>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <sys/inotify.h>
#include <unistd.h>
#endif

#ifdef Q_OS_LINUX

namespace {

constexpr quint32 watchedMask = IN_OPEN | IN_CLOSE_NOWRITE | IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB
    | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;

} // namespace

AccessWatch::AccessWatch(const QStringList &folders)
{
    fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    valid = fd >= 0;
    for (const QString &folder : folders) {
        if (!valid)
            break;
        const int wd = inotify_add_watch(fd, QFile::encodeName(folder).constData(), watchedMask);
        valid = wd >= 0;
        folderOfWatch.insert(wd, QDir::cleanPath(folder));
    }
}

AccessWatch::~AccessWatch()
{
    if (fd >= 0)
        ::close(fd);
}

QList<AccessWatch::Event> AccessWatch::events()
{
    QList<Event> result;
    if (fd < 0)
        return result;
    // Large enough for many events at once; each is an inotify_event followed by its name.
    alignas(inotify_event) char buffer[64 * 1024];
    for (;;) {
        const ssize_t length = ::read(fd, buffer, sizeof buffer);
        if (length <= 0)
            break; // EAGAIN: nothing more queued
        for (ssize_t at = 0; at < length;) {
            const auto *event = reinterpret_cast<const inotify_event *>(buffer + at);
            QString path = folderOfWatch.value(event->wd);
            if (event->len > 0)
                path += QLatin1Char('/') + QFile::decodeName(event->name);
            result.append({ path, event->mask });
            at += ssize_t(sizeof(inotify_event)) + event->len;
        }
    }
    return result;
}

quint32 AccessWatch::changeMask()
{
    return IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB | IN_CREATE | IN_DELETE | IN_MOVED_FROM
        | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF;
}

QString AccessWatch::describe(const Event &event)
{
    static const QList<std::pair<quint32, const char *>> names { { IN_OPEN, "OPEN" },
                                                                 { IN_CLOSE_NOWRITE,
                                                                   "CLOSE_NOWRITE" },
                                                                 { IN_CLOSE_WRITE, "CLOSE_WRITE" },
                                                                 { IN_MODIFY, "MODIFY" },
                                                                 { IN_ATTRIB, "ATTRIB" },
                                                                 { IN_CREATE, "CREATE" },
                                                                 { IN_DELETE, "DELETE" },
                                                                 { IN_MOVED_FROM, "MOVED_FROM" },
                                                                 { IN_MOVED_TO, "MOVED_TO" },
                                                                 { IN_DELETE_SELF, "DELETE_SELF" },
                                                                 { IN_MOVE_SELF, "MOVE_SELF" },
                                                                 { IN_ISDIR, "ISDIR" } };
    QStringList parts;
    for (const auto &[bit, name] : names) {
        if (event.mask & bit)
            parts << QString::fromLatin1(name);
    }
    return parts.join(QLatin1Char('|')) + QLatin1Char(' ') + event.path;
}

#else

AccessWatch::AccessWatch(const QStringList &) { }
AccessWatch::~AccessWatch() { }
QList<AccessWatch::Event> AccessWatch::events()
{
    return {};
}
quint32 AccessWatch::changeMask()
{
    return 0;
}
QString AccessWatch::describe(const Event &event)
{
    return event.path;
}

#endif
