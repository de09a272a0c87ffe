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
// Brands read from a HEIF file-type box. Real files name two to eight.
constexpr int maxHeifBrands = 64;
// Boxes looked at on the top level of a HEIF file before its meta box, and children of the meta
// box. Real files have three to six of each; nested boxes are never entered beyond the meta box.
constexpr int maxHeifBoxes = 64;
// Items looked at in the item information box and in the item location box, and references in
// the item reference box. A 8K photo split into 512 tiles has some 520 items.
constexpr int maxHeifItems = 16384;
// Exif items considered in one file. Real files have one.
constexpr int maxHeifExifItems = 64;
// Extents of the Exif item. Writers put it in one; an item in more pieces than this is refused.
constexpr int maxHeifExtents = 256;
// Size of the Exif item, which the reader assembles from its extents and then walks. Exif with
// maker notes and a preview stays below 256 KiB.
constexpr qint64 maxHeifExifItemSize = 1024 * 1024;

// Crop factors believed, from a file's 35 mm focal length or from its focal plane: beyond them a
// value is nonsense, not a camera. A 645 digital back is about 0.6, a phone's or a compact's
// smallest sensor about 8.
constexpr double minCropFactor = 0.1;
constexpr double maxCropFactor = 20.0;

} // namespace exiflimits
