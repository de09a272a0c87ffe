// The CR3 box reader of TExifFile: finds the two TIFF structures of a Canon CR3 file.
#include "texiffile.h"

#include "exifreaderlimits.h"

/* CR3 (ISO base media file), read in this fixed order without searching, big-endian:
 *   ftyp box: size, "ftyp", major brand, minor version, (size - 16) / 4 compatible brands
 *   container box header (moov), entered
 *   uuid box header + 16-byte UUID, entered
 *   six child boxes, each skipped whole; "CMT1" holds a TIFF structure with IFD0, "CMT2" one
 *   with the Exif IFD, each directory directly behind its 8-byte TIFF header.
 */
void TExifFile::read_CR3Box(CR3Box &box)
{
    box.size = qint32(stream.readU32());
    box.type = QString::fromLatin1(stream.readBytes(4, 4));
}

void TExifFile::read_CR3UuidBox(CR3UuidBox &box)
{
    read_CR3Box(box);
    if (box.type == QLatin1String("uuid"))
        box.uuid = stream.readBytes(16, 16);
}

void TExifFile::read_CR3CanonBox(CR3CanonBox &box)
{
    read_CR3Box(box);
    const qint64 payload = stream.pos();
    if (box.type == QLatin1String("CMT1")) {
        cr3Ifd0Base = quint32(payload);
        cr3Ifd0Pos = quint32(payload + 8);
    } else if (box.type == QLatin1String("CMT2")) {
        cr3ExifIfdBase = quint32(payload);
        cr3ExifIfdPos = quint32(payload + 8);
    }
    box.data = stream.readBytes(qint64(box.size) - 8, exiflimits::maxCr3BoxPayload);
}

void TExifFile::read_CR3FileTypBox(CR3FileTypeBox &box)
{
    const qint64 start = stream.pos();
    read_CR3Box(box);
    box.majorBrand = QString::fromLatin1(stream.readBytes(4, 4));
    box.minorVersion = stream.readU32();
    const qint64 brands = box.size >= 16 ? (qint64(box.size) - 16) / 4 : 0;
    for (qint64 i = 0; i < qMin<qint64>(brands, exiflimits::maxCr3CompatibleBrands); ++i)
        box.compatibleBrands.append(QString::fromLatin1(stream.readBytes(4, 4)));
    if (box.size >= 16)
        stream.seek(start + box.size); // the next box, also when brands were left unread
}

bool TExifFile::preProcessCR3()
{
    stream.setBigEndian(true);
    CR3FileTypeBox fileTypeBox;
    read_CR3FileTypBox(fileTypeBox);
    CR3Box container;
    read_CR3Box(container);
    CR3UuidBox uuidBox;
    read_CR3UuidBox(uuidBox);
    for (int i = 0; i < 6; ++i) {
        CR3CanonBox child;
        read_CR3CanonBox(child);
        if (child.size < 8)
            break; // a size that doesn't even cover the header leaves no next box to find
    }
    return true;
}
