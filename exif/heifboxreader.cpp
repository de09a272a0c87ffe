#include "heifboxreader.h"

#include "exifbytereader.h"
#include "exifoffsets.h"
#include "exifreaderlimits.h"

#include <algorithm>
#include <iterator>

/* HEIF and AVIF (ISO base media file with a meta box), every field big-endian:
 *
 *   box header   size(4) type(4) [largesize(8) when size == 1]; size 0: to the parent's end
 *   full box     a box header, then version(1) flags(3)
 *
 *   ftyp         major brand(4) minor version(4) compatible brands(4 each)
 *   meta         full box; children:
 *     pitm       primary item: ID (v0: 2 bytes, else 4)
 *     iinf       item count (v0: 2 bytes, else 4), then one infe box per item:
 *       infe     full box, v2: ID(2) protection index(2) type(4) name ...
 *                           v3: ID(4) protection index(2) type(4) name ...
 *     iref       full box; children named by reference type ("cdsc": from describes to):
 *                  from ID, reference count(2), to IDs (IDs: v0 2 bytes, else 4)
 *     iloc       full box; offset size(4 bits) length size(4 bits) base offset size(4 bits)
 *                index size(4 bits, v1 and v2; reserved in v0), item count (v0, v1: 2, v2: 4),
 *                then per item: ID (v0, v1: 2, v2: 4), [reserved(12 bits) construction
 *                method(4 bits), v1 and v2], data reference index(2), base offset, extent
 *                count(2), per extent: [index, v1 and v2], offset, length. Sizes are 0, 4 or
 *                8 bytes; a zero-size field is 0. A zero extent length runs to the data's end.
 *     idat       item data for construction method 1 (offsets count from its payload)
 *
 *   The Exif item (infe type "Exif"): a 4-byte offset from behind itself to the TIFF header,
 *   then the TIFF structure.
 */

namespace {

constexpr quint32 fourCC(const char (&c)[5])
{
    return quint32(quint8(c[0])) << 24 | quint32(quint8(c[1])) << 16 | quint32(quint8(c[2])) << 8
        | quint8(c[3]);
}

// The brands of HEIF images and sequences (HEVC and others) and of AVIF.
constexpr quint32 heifBrands[] = { fourCC("heic"), fourCC("heix"), fourCC("heim"), fourCC("heis"),
                                   fourCC("hevc"), fourCC("hevx"), fourCC("mif1"), fourCC("mif2"),
                                   fourCC("msf1"), fourCC("avif"), fourCC("avis") };

bool isHeifBrand(quint32 brand)
{
    return std::find(std::begin(heifBrands), std::end(heifBrands), brand) != std::end(heifBrands);
}

} // namespace

HeifBoxReader::HeifBoxReader(ExifByteReader &stream)
    : stream(stream)
{ }

bool HeifBoxReader::readBox(qint64 pos, qint64 parentEnd, Box &box)
{
    if (!exifoffsets::fits(quint64(pos), 8, quint64(parentEnd)))
        return false;
    stream.seek(pos);
    const quint32 size = stream.readU32();
    box.type = stream.readU32();
    box.payload = pos + 8;
    quint64 claimed = size;
    if (size == 1) {
        if (!exifoffsets::fits(pos, 16, parentEnd))
            return false;
        claimed = quint64(stream.readU32()) << 32;
        claimed |= stream.readU32();
        box.payload = pos + 16;
    }
    if (size == 0) {
        box.end = parentEnd;
    } else {
        if (claimed < quint64(box.payload - pos))
            return false; // a size that doesn't cover its own header
        // A box that claims more than its parent (or the file) holds ends with it.
        box.end = exifoffsets::fits(pos, claimed, parentEnd) ? pos + qint64(claimed) : parentEnd;
    }
    return true;
}

bool HeifBoxReader::isHeif()
{
    Box ftyp;
    if (!readBox(0, stream.size(), ftyp) || ftyp.type != fourCC("ftyp"))
        return false;
    stream.seek(ftyp.payload);
    if (ftyp.end - ftyp.payload >= 4 && isHeifBrand(stream.readU32()))
        return true;
    // The minor version stands between the major and the compatible brands.
    qint64 pos = ftyp.payload + 8;
    for (int i = 0; i < exiflimits::maxHeifBrands && pos + 4 <= ftyp.end; ++i, pos += 4) {
        stream.seek(pos);
        if (isHeifBrand(stream.readU32()))
            return true;
    }
    return false;
}

bool HeifBoxReader::findMeta(Box &meta)
{
    qint64 pos = 0;
    for (int i = 0; i < exiflimits::maxHeifBoxes && readBox(pos, stream.size(), meta); ++i) {
        if (meta.type == fourCC("meta"))
            return true;
        pos = meta.end; // past its header at least: a size never covers less
    }
    return false;
}

QByteArray HeifBoxReader::exifItem()
{
    Box meta;
    if (!findMeta(meta))
        return {};
    Box pitm, iinf, iref, iloc, idat;
    bool hasPitm = false, hasIinf = false, hasIref = false, hasIloc = false, hasIdat = false;
    qint64 pos = meta.payload + 4; // behind version and flags
    Box child;
    for (int i = 0; i < exiflimits::maxHeifBoxes && readBox(pos, meta.end, child); ++i) {
        // The first of each kind counts, as for a reader that stops at it.
        const auto take = [&child](quint32 type, Box &box, bool &has) {
            if (child.type == type && !has) {
                box = child;
                has = true;
            }
        };
        take(fourCC("pitm"), pitm, hasPitm);
        take(fourCC("iinf"), iinf, hasIinf);
        take(fourCC("iref"), iref, hasIref);
        take(fourCC("iloc"), iloc, hasIloc);
        take(fourCC("idat"), idat, hasIdat);
        pos = child.end;
    }
    if (!hasIinf || !hasIloc)
        return {};
    const QList<quint32> exifItems = readExifItems(iinf);
    if (exifItems.isEmpty())
        return {};
    const quint32 primary = hasPitm ? readPrimaryItem(pitm) : 0;
    const quint32 item = chooseExifItem(hasIref ? &iref : nullptr, exifItems, primary);
    Location location;
    if (!findLocation(iloc, item, location))
        return {};
    return assemble(location, hasIdat ? &idat : nullptr);
}

quint32 HeifBoxReader::readPrimaryItem(const Box &pitm)
{
    stream.seek(pitm.payload);
    const quint8 version = stream.readU8();
    stream.skip(3);
    return version == 0 ? stream.readU16() : stream.readU32();
}

// The IDs of the items of type "Exif", in the order listed; protected items are left out.
QList<quint32> HeifBoxReader::readExifItems(const Box &iinf)
{
    QList<quint32> items;
    stream.seek(iinf.payload);
    const quint8 version = stream.readU8();
    stream.skip(3);
    const quint32 count = version == 0 ? stream.readU16() : stream.readU32();
    qint64 pos = stream.pos();
    Box infe;
    const quint32 bound = qMin<quint32>(count, exiflimits::maxHeifItems);
    for (quint32 i = 0; i < bound && readBox(pos, iinf.end, infe); ++i) {
        pos = infe.end;
        if (infe.type != fourCC("infe"))
            continue;
        stream.seek(infe.payload);
        const quint8 infeVersion = stream.readU8();
        stream.skip(3);
        // Versions 0 and 1 name no item type. Version, flags, ID, protection index and type.
        const quint64 need = infeVersion == 2 ? 12 : 14;
        if ((infeVersion != 2 && infeVersion != 3)
            || !exifoffsets::fits(quint64(infe.payload), need, quint64(infe.end)))
            continue;
        const quint32 id = infeVersion == 2 ? stream.readU16() : stream.readU32();
        const quint16 protection = stream.readU16();
        if (stream.readU32() == fourCC("Exif") && protection == 0
            && items.size() < exiflimits::maxHeifExifItems)
            items.append(id);
    }
    return items;
}

// The Exif item that a "cdsc" reference links to the primary item; else the first one listed.
// Only direct references count, so references that loop lead nowhere.
quint32 HeifBoxReader::chooseExifItem(const Box *iref, const QList<quint32> &exifItems,
                                      quint32 primary)
{
    if (!iref)
        return exifItems.first();
    stream.seek(iref->payload);
    const int idSize = stream.readU8() == 0 ? 2 : 4;
    qint64 pos = iref->payload + 4;
    Box reference;
    int references = 0;
    while (references < exiflimits::maxHeifItems && readBox(pos, iref->end, reference)) {
        ++references;
        pos = reference.end;
        if (reference.type != fourCC("cdsc"))
            continue;
        stream.seek(reference.payload);
        const quint32 from = quint32(readSized(idSize));
        if (!exifItems.contains(from))
            continue;
        const quint16 count = stream.readU16();
        for (quint16 k = 0; k < count && references < exiflimits::maxHeifItems; ++k, ++references) {
            if (!exifoffsets::fits(stream.pos(), quint64(idSize), quint64(reference.end)))
                break;
            if (quint32(readSized(idSize)) == primary)
                return from;
        }
    }
    return exifItems.first();
}

// A big-endian unsigned field of 0, 2, 4 or 8 bytes; a zero-size field is 0.
quint64 HeifBoxReader::readSized(int bytes)
{
    switch (bytes) {
    case 2:
        return stream.readU16();
    case 4:
        return stream.readU32();
    case 8: {
        const quint64 high = stream.readU32();
        return high << 32 | stream.readU32();
    }
    default:
        return 0;
    }
}

bool HeifBoxReader::findLocation(const Box &iloc, quint32 item, Location &location)
{
    stream.seek(iloc.payload);
    const quint8 version = stream.readU8();
    stream.skip(3);
    if (version > 2)
        return false;
    const quint8 sizes = stream.readU8();
    const quint8 moreSizes = stream.readU8();
    const int offsetSize = sizes >> 4;
    const int lengthSize = sizes & 0xF;
    const int baseOffsetSize = moreSizes >> 4;
    const int indexSize = version > 0 ? moreSizes & 0xF : 0;
    for (const int size : { offsetSize, lengthSize, baseOffsetSize, indexSize }) {
        if (size != 0 && size != 4 && size != 8)
            return false;
    }
    const quint32 count = version < 2 ? stream.readU16() : stream.readU32();
    const int idSize = version < 2 ? 2 : 4;
    const qint64 extentSize = indexSize + offsetSize + lengthSize;
    const quint32 bound = qMin<quint32>(count, exiflimits::maxHeifItems);
    for (quint32 i = 0; i < bound; ++i) {
        // ID, construction method, data reference index, base offset and extent count.
        const qint64 headerSize = idSize + (version > 0 ? 2 : 0) + 2 + baseOffsetSize + 2;
        if (!exifoffsets::fits(stream.pos(), headerSize, iloc.end))
            return false;
        const quint32 id = quint32(readSized(idSize));
        const int method = version > 0 ? stream.readU16() & 0xF : 0;
        const quint16 dataReference = stream.readU16();
        const quint64 baseOffset = readSized(baseOffsetSize);
        const quint16 extents = stream.readU16();
        const qint64 extentsStart = stream.pos();
        if (!exifoffsets::fits(extentsStart, extents * extentSize, iloc.end))
            return false;
        if (id != item) {
            stream.seek(extentsStart + extents * extentSize);
            continue;
        }
        // Only this file's own data (reference 0), at file offsets or in idat, in few pieces.
        if (dataReference != 0 || method > 1 || extents == 0
            || extents > exiflimits::maxHeifExtents)
            return false;
        location.constructionMethod = method;
        for (quint16 k = 0; k < extents; ++k) {
            readSized(indexSize);
            Extent extent;
            if (!exifoffsets::add(baseOffset, readSized(offsetSize), extent.offset))
                return false;
            extent.length = readSized(lengthSize);
            location.extents.append(extent);
        }
        return true;
    }
    return false;
}

// The item's bytes from its extents, in order; refused when any lies outside its data.
QByteArray HeifBoxReader::assemble(const Location &location, const Box *idat)
{
    qint64 dataStart = 0;
    qint64 dataEnd = stream.size();
    if (location.constructionMethod == 1) {
        if (!idat)
            return {};
        dataStart = idat->payload;
        dataEnd = idat->end;
    }
    const quint64 dataSize = quint64(dataEnd - dataStart);
    QByteArray item;
    for (const Extent &extent : location.extents) {
        const quint64 length =
            extent.length ? extent.length : dataSize - qMin(dataSize, extent.offset);
        if (!exifoffsets::fits(extent.offset, length, dataSize)
            || length > quint64(exiflimits::maxHeifExifItemSize - item.size()))
            return {};
        stream.seek(dataStart + qint64(extent.offset));
        item += stream.readBytes(qint64(length), qint64(length));
    }
    return item;
}
