#pragma once

#include <QByteArray>
#include <QString>

#include <iterator>

// How fuzz_exiffile reads one input: byte 0 chooses the file name's suffix, the rest is the
// file's contents. Shared with the test that replays the kept corpus and the regressions.
//
//   byte 0   bits 0..6, modulo 12: .cr2 .cr3 .raf .nef .arw .rw2 .orf .dng .jpg .xyz .heic .avif
//            bit 7 set: the suffix in upper case
namespace fuzzinput {

// A name only: nothing is written or opened there.
inline QString path(quint8 selector)
{
    static const char *const suffixes[] = { ".cr2", ".cr3", ".raf", ".nef", ".arw",  ".rw2",
                                            ".orf", ".dng", ".jpg", ".xyz", ".heic", ".avif" };
    QString suffix = QLatin1String(suffixes[(selector & 0x7F) % std::size(suffixes)]);
    if (selector & 0x80)
        suffix = suffix.toUpper();
    return QStringLiteral("/fuzz/input") + suffix;
}

} // namespace fuzzinput
