#pragma once

#include <QtGlobal>

// Every bound the photo file reader applies to what a file claims, kept in one place. Real camera
// files stay far below each of them; a hostile or damaged file meets one and its walk ends early
// with the values read so far.
namespace exiflimits {

// Image file directories walked per file: the IFD chain, Exif and GPS directories together.
// Real files have two to six.
constexpr int maxDirectories = 32;
// How deep Exif pointers inside Exif directories are followed.
constexpr int maxNestingDepth = 4;
// Directory entries read per file over all directories. A directory may claim 65535 entries;
// real ones hold a few hundred at most.
constexpr int maxEntries = 16384;
// Bytes of one text (Make, Model, ...) read before the zero byte that ends it.
constexpr int maxTextLength = 4096;
// Bytes loaded from one file in total. Reads beyond this budget yield zeros, so a file whose
// offsets scatter over many megabytes can't make the reader load all of it.
constexpr qint64 maxBytesLoaded = 4 * 1024 * 1024;
// Size of one block loaded from the file. The directories of a typical photo lie in its first
// few kilobytes; a larger block only makes the kernel copy bytes nobody reads.
constexpr qint64 blockSize = 16 * 1024;
// Payload bytes of a CR3 child box kept in CR3CanonBox::data; the stream still moves to the end.
constexpr qint64 maxCr3BoxPayload = 64 * 1024;
// Compatible brands kept from a CR3 file-type box.
constexpr int maxCr3CompatibleBrands = 64;

} // namespace exiflimits
