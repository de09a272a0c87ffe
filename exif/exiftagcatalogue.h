#ifndef EXIFTAGCATALOGUE_H
#define EXIFTAGCATALOGUE_H

#include <QString>
#include <QtGlobal>

#include <cstddef>

// Names of TIFF/EXIF tags and types, used to describe the entries of a directory while it is
// walked. All functions are pure and thread-safe.

struct ExifTagCatalogueEntry
{
    quint16 tag;
    const char *name; // "[Exif] " + the tag's name, Latin-1
};

// Read-only view of the whole catalogue, sorted by tag number.
struct ExifTagCatalogue
{
    const ExifTagCatalogueEntry *first;
    std::size_t count;

    const ExifTagCatalogueEntry *begin() const { return first; }
    const ExifTagCatalogueEntry *end() const { return first + count; }
    std::size_t size() const { return count; }
};

ExifTagCatalogue exifTagCatalogue();

// "[Exif] <name>" for a tag of the main, Exif and DNG directories; "[Exif] --- unknown ---"
// for any other number.
QString exifTagName(int tag);

// "[GPS] <name>" for the GPS tags 0..31; any other number gives "[Sony] --- unknown ---".
QString gpsTagName(int tag);

// Name of a TIFF field type code (1 BYTE ... 10 SRATIONAL); "unknown" for the codes not named.
QString tiffTypeName(int type);

// One line describing a directory entry:
// "Tag: 0x<tag> <name>, Typ: <type>, Count: <count>,  Länge: <length>", the tag in lower-case
// hexadecimal padded to four places with blanks.
QString entryDescription(quint16 tag, quint16 type, quint32 count, quint32 length);

// The same line for an entry of the GPS directory, without the length. The name comes from the
// Exif catalogue, not from gpsTagName(), so GPS tag 1 reads "[Exif] InteropIndex".
QString gpsEntryDescription(quint16 tag, quint16 type, quint32 count);

#endif // EXIFTAGCATALOGUE_H
