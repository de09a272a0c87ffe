#include "peakmemory.h"

#include <QByteArray>
#include <QFile>

namespace peakmemory {

qint64 peakKiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
        return -1;
    // The line reads "VmHWM:     12345 kB".
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
        if (!line.startsWith("VmHWM:"))
            continue;
        bool ok = false;
        const qint64 kib = line.mid(6).trimmed().split(' ').value(0).toLongLong(&ok);
        return ok ? kib : -1;
    }
    return -1;
}

bool resetPeak()
{
    QFile clearRefs(QStringLiteral("/proc/self/clear_refs"));
    if (!clearRefs.open(QIODevice::WriteOnly))
        return false;
    return clearRefs.write("5") == 1;
}

} // namespace peakmemory
