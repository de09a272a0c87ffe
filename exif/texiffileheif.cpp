// The HEIF path of TExifFile: the Exif item of a HEIF or AVIF file is walked as a JPEG's Exif
// segment is.
#include "texiffile.h"

#include "exifoffsets.h"
#include "heifboxreader.h"

#include <QtEndian>

/* The Exif item, as HeifBoxReader assembles it from its extents:
 *   offset(4, big-endian) | offset bytes (often "Exif\0\0") | TIFF header | directories ...
 * The offset counts from behind its own four bytes; a TIFF header that doesn't lie wholly
 * inside the item leaves the file not recognised.
 */
bool TExifFile::readHeif()
{
    stream.setBigEndian(true);
    HeifBoxReader boxes(stream);
    if (!boxes.isHeif())
        return false;
    const QByteArray item = boxes.exifItem();
    if (item.size() < 4)
        return false;
    const quint64 header = 4 + quint64(qFromBigEndian<quint32>(item.constData()));
    if (!exifoffsets::fits(header, 8, quint64(item.size())))
        return false;
    // From here on the item is the only source: offsets beyond it read zeros, never the file.
    stream.openBytes(item);
    stream.seek(qint64(header));
    if (!readTiffHeader(true))
        return false;
    firstIfdOffset = qint32(stream.readU32());
    stream.seek(tiffBase + quint32(firstIfdOffset));
    walkChain();
    return true;
}
