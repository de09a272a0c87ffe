#pragma once

#include <QtGlobal>

// The process's peak resident set size (VmHWM in /proc/self/status, Linux).
namespace peakmemory {

// The peak in KiB, or -1 where the system doesn't report it.
qint64 peakKiB();

// Lowers the peak to the present resident size (writing 5 to /proc/self/clear_refs), so that the
// next peakKiB() tells how far memory rose since. False where the system doesn't allow it; the
// peak then only ever grows, and a rise measured across a call still bounds that call.
bool resetPeak();

} // namespace peakmemory
