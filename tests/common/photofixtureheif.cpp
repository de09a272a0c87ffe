// The HEIF and AVIF part of the fixture builder.
#include "photofixture.h"

#include <algorithm>

namespace fixture {

namespace {

QByteArray sized(quint64 v, int bytes)
{
    QByteArray out;
    for (int i = bytes - 1; i >= 0; --i)
        out += char(v >> (8 * i));
    return out;
}

QByteArray fullBox(const QByteArray &type, int version, const QByteArray &payload)
{
    return box(type, sized(quint64(version), 1) + QByteArray(3, '\0') + payload);
}

struct ItemLocation
{
    quint32 id = 0;
    int method = 0; // construction method
    quint16 dataReference = 0;
    quint64 base = 0;
    QList<std::pair<quint64, quint64>> extents; // offset (from base), length
    std::optional<quint16> extentCountRaw;
};

struct Item
{
    quint32 id = 0;
    QByteArray type;
};

struct Reference
{
    QByteArray type;
    quint32 from = 0;
    QList<quint32> to;
};

// Everything heif() makes, plus the knobs of the hostile layouts.
struct HeifPlan
{
    HeifLayout layout;
    QByteArray exifItem; // offset field, prefix, TIFF
    QByteArray thumbnailExifItem;
    std::optional<quint32> metaSizeRaw;
    std::optional<quint32> iinfSizeRaw;
    std::optional<quint32> itemCountRaw; // written in iinf and iloc
    int extraImagesBefore = 0; // image items listed before everything else
    QByteArray beforeMeta; // a top-level box between ftyp and meta
    bool exifOffsetWraps = false; // base + offset = 2^64 + the item's true position
    quint64 exifLengthExtra = 0; // added to the Exif extent's length
    quint16 exifDataReference = 0;
    bool earlierItemClaimsManyExtents = false;
    QList<Reference> extraReferences;
};

QByteArray iinfBox(const HeifPlan &plan, const QList<Item> &items)
{
    const int v = plan.layout.infeVersion;
    QByteArray entries;
    for (const Item &item : items)
        entries +=
            fullBox("infe", v, sized(item.id, v == 2 ? 2 : 4) + sized(0, 2) + item.type + '\0');
    const quint32 count = plan.itemCountRaw.value_or(quint32(items.size()));
    QByteArray out = fullBox("iinf", 1, sized(count, 4) + entries);
    if (plan.iinfSizeRaw)
        out.replace(0, 4, sized(*plan.iinfSizeRaw, 4));
    return out;
}

QByteArray irefBox(const QList<Reference> &references)
{
    QByteArray children;
    for (const Reference &r : references) {
        QByteArray payload = sized(r.from, 2) + sized(quint64(r.to.size()), 2);
        for (const quint32 to : r.to)
            payload += sized(to, 2);
        children += box(r.type, payload);
    }
    return fullBox("iref", 0, children);
}

QByteArray ilocBox(const HeifPlan &plan, const QList<ItemLocation> &locations)
{
    const HeifLayout &l = plan.layout;
    const int v = l.ilocVersion;
    const int idSize = v < 2 ? 2 : 4;
    QByteArray out = sized(quint64(l.offsetSize << 4 | l.lengthSize), 1)
        + sized(quint64(l.baseOffsetSize << 4 | (v > 0 ? l.indexSize : 0)), 1);
    const quint32 count = plan.itemCountRaw.value_or(quint32(locations.size()));
    out += sized(count, idSize);
    for (const ItemLocation &loc : locations) {
        out += sized(loc.id, idSize);
        if (v > 0)
            out += sized(quint64(loc.method), 2);
        out += sized(loc.dataReference, 2) + sized(loc.base, l.baseOffsetSize);
        out += sized(loc.extentCountRaw.value_or(quint16(loc.extents.size())), 2);
        for (const auto &[offset, length] : loc.extents) {
            if (v > 0)
                out += sized(0, l.indexSize);
            out += sized(offset, l.offsetSize) + sized(length, l.lengthSize);
        }
    }
    return fullBox("iloc", v, out);
}

QList<QByteArray> split(const QByteArray &bytes, int pieces)
{
    QList<QByteArray> out;
    const qsizetype step = bytes.size() / pieces;
    for (int i = 0; i < pieces; ++i)
        out.append(bytes.mid(i * step, i + 1 < pieces ? step : -1));
    return out;
}

// Where a run of extents lies: absolute positions (file or idat payload) of each piece.
struct Placed
{
    QList<quint64> positions;
    QList<quint64> lengths;
};

// The pieces stored in reverse order from start; returns each piece's position.
Placed placeReversed(const QList<QByteArray> &pieces, quint64 start, QByteArray &out)
{
    Placed placed;
    for (qsizetype i = pieces.size() - 1; i >= 0; --i)
        out += pieces[i];
    quint64 pos = start + quint64(out.size());
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        placed.positions.append(0);
        placed.lengths.append(quint64(pieces[i].size()));
    }
    for (qsizetype i = 0; i < pieces.size(); ++i) {
        pos -= quint64(pieces[i].size());
        placed.positions[i] = pos;
    }
    return placed;
}

ItemLocation locate(const HeifPlan &plan, quint32 id, int method, const Placed &placed)
{
    const HeifLayout &l = plan.layout;
    ItemLocation loc;
    loc.id = id;
    loc.method = method;
    // A base offset, when there is one, is where the first piece lies; extents count from it.
    if (l.baseOffsetSize > 0 || l.offsetSize == 0)
        loc.base = *std::min_element(placed.positions.begin(), placed.positions.end());
    for (qsizetype i = 0; i < placed.positions.size(); ++i)
        loc.extents.append(
            { placed.positions[i] - loc.base, l.lengthSize ? placed.lengths[i] : 0 });
    return loc;
}

QByteArray build(const HeifPlan &plan)
{
    const HeifLayout &l = plan.layout;
    const bool thumbnail = !plan.thumbnailExifItem.isEmpty();
    QByteArray ftypPayload = l.majorBrand + sized(0, 4);
    for (const QByteArray &brand : l.compatibleBrands)
        ftypPayload += brand;
    const QByteArray ftyp = box("ftyp", ftypPayload);

    QList<Item> items;
    for (int i = 0; i < plan.extraImagesBefore; ++i)
        items.append({ quint32(100 + i), l.primaryType });
    if (thumbnail && l.thumbnailExifFirst)
        items.append({ 4, "Exif" });
    items.append({ 1, l.primaryType });
    items.append({ 2, "Exif" });
    if (thumbnail) {
        items.append({ 3, l.primaryType });
        if (!l.thumbnailExifFirst)
            items.append({ 4, "Exif" });
    }
    QList<Reference> references = plan.extraReferences;
    if (l.linkExif)
        references.append({ "cdsc", 2, { 1 } });
    if (thumbnail) {
        references.prepend({ "cdsc", 4, { 3 } });
        references.append({ "thmb", 3, { 1 } });
    }

    // Pass 1 measures the meta box with dummy positions; its size doesn't depend on them.
    const auto makeFile = [&](quint64 mdatPayloadStart, QByteArray *mdatOut) {
        QByteArray mdat;
        QByteArray idat;
        QList<ItemLocation> locations;
        const QByteArray image(l.imageBytes, '\x5A');
        const QList<QByteArray> pieces = split(plan.exifItem, l.extents);
        Placed exifPlaced;
        Placed imagePlaced;
        if (l.inIdat) {
            exifPlaced = placeReversed(pieces, 0, idat);
        } else if (l.exifAtEnd) {
            imagePlaced = placeReversed({ image }, mdatPayloadStart, mdat);
            exifPlaced = placeReversed(pieces, mdatPayloadStart, mdat);
        } else {
            exifPlaced = placeReversed(pieces, mdatPayloadStart, mdat);
        }
        if (!l.exifAtEnd || l.inIdat)
            imagePlaced = placeReversed({ image }, mdatPayloadStart, mdat);
        ItemLocation exif = locate(plan, 2, l.inIdat ? 1 : 0, exifPlaced);
        exif.dataReference = plan.exifDataReference;
        if (plan.exifOffsetWraps) {
            const quint64 truePosition = exif.base + exif.extents.first().first;
            exif.base = ~quint64(0) - 15;
            exif.extents.first().first = truePosition + 16;
        }
        if (plan.exifLengthExtra)
            exif.extents.last().second += plan.exifLengthExtra;
        ItemLocation primary = locate(plan, 1, 0, imagePlaced);
        if (plan.earlierItemClaimsManyExtents)
            primary.extentCountRaw = 65535;
        for (int i = 0; i < plan.extraImagesBefore; ++i) {
            ItemLocation extra = locate(plan, quint32(100 + i), 0, imagePlaced);
            locations.append(extra);
        }
        locations.append(primary);
        locations.append(exif);
        if (thumbnail) {
            Placed thumbExif = placeReversed({ plan.thumbnailExifItem }, mdatPayloadStart, mdat);
            locations.append(locate(plan, 3, 0, imagePlaced));
            locations.append(locate(plan, 4, 0, thumbExif));
        }
        QByteArray metaPayload = fullBox("hdlr", 0, sized(0, 4) + "pict" + QByteArray(13, '\0'))
            + fullBox("pitm", 0, sized(1, 2)) + iinfBox(plan, items) + irefBox(references)
            + ilocBox(plan, locations);
        if (l.inIdat)
            metaPayload += box("idat", idat);
        QByteArray meta = fullBox("meta", 0, metaPayload);
        if (l.metaLargeSize)
            meta = sized(1, 4) + "meta" + sized(quint64(meta.size()) + 8, 8) + meta.mid(8);
        if (plan.metaSizeRaw)
            meta.replace(0, 4, sized(*plan.metaSizeRaw, 4));
        if (mdatOut)
            *mdatOut = mdat;
        return ftyp + plan.beforeMeta + meta;
    };
    const QByteArray head = makeFile(0, nullptr);
    QByteArray mdat;
    const QByteArray finalHead = makeFile(quint64(head.size()) + 8, &mdat);
    QByteArray out = finalHead + box("mdat", mdat);
    if (l.mdatToEnd)
        out.replace(finalHead.size(), 4, sized(0, 4));
    return out;
}

QByteArray exifItemBytes(const QByteArray &tiffBytes, const QByteArray &prefix)
{
    return sized(quint64(prefix.size()), 4) + prefix + tiffBytes;
}

HeifPlan typicalPlan()
{
    HeifPlan plan;
    plan.exifItem = exifItemBytes(tiff(true, typicalTags(), true), plan.layout.tiffPrefix);
    return plan;
}

} // namespace

QByteArray heif(const QByteArray &tiffBytes, const HeifLayout &layout)
{
    HeifPlan plan;
    plan.layout = layout;
    plan.exifItem = exifItemBytes(tiffBytes, layout.tiffPrefix);
    if (layout.thumbnailExifFirst) {
        PhotoTags thumbnailTags;
        thumbnailTags.make = QStringLiteral("Thumbnail");
        plan.thumbnailExifItem = exifItemBytes(tiff(true, thumbnailTags, false), layout.tiffPrefix);
    }
    return build(plan);
}

HeifLayout avifLayout()
{
    HeifLayout layout;
    layout.majorBrand = "avif";
    layout.compatibleBrands = { "avif", "mif1", "miaf" };
    layout.primaryType = "av01";
    return layout;
}

QByteArray heifWithoutExif()
{
    HeifPlan plan = typicalPlan();
    QByteArray bytes = build(plan);
    // The Exif item becomes a second image item: same layout, no Exif anywhere.
    const qsizetype type = bytes.indexOf("Exif\0", 0);
    return bytes.replace(type, 4, "hvc1");
}

QByteArray heifMetaLargerThanFile()
{
    HeifPlan plan = typicalPlan();
    plan.metaSizeRaw = 0x7FFFFFFF;
    return build(plan);
}

QByteArray heifChildLargerThanMeta()
{
    HeifPlan plan = typicalPlan();
    plan.iinfSizeRaw = 0x00FFFFFF;
    return build(plan);
}

QByteArray heifMetaBehindDeepNesting(int depth)
{
    HeifPlan plan = typicalPlan();
    QByteArray nested = box("free", {});
    for (int i = 0; i < depth; ++i)
        nested = box("moov", nested);
    plan.beforeMeta = nested;
    return build(plan);
}

QByteArray heifItemCountsInTheMillions()
{
    HeifPlan plan = typicalPlan();
    plan.layout.ilocVersion = 2; // 32-bit item count
    plan.itemCountRaw = 5000000;
    return build(plan);
}

QByteArray heifManyItemsBeforeExif(int items)
{
    HeifPlan plan = typicalPlan();
    plan.layout.ilocVersion = 2;
    plan.layout.infeVersion = 3;
    plan.extraImagesBefore = items;
    return build(plan);
}

QByteArray heifExtentCountInTheMillions()
{
    HeifPlan plan = typicalPlan();
    plan.earlierItemClaimsManyExtents = true;
    return build(plan);
}

QByteArray heifExifInPieces(int pieces)
{
    HeifPlan plan = typicalPlan();
    plan.layout.extents = pieces;
    return build(plan);
}

QByteArray heifExtentPastEnd()
{
    HeifPlan plan = typicalPlan();
    plan.layout.exifAtEnd = true;
    plan.exifLengthExtra = 100;
    return build(plan);
}

QByteArray heifOffsetOverflow()
{
    HeifPlan plan = typicalPlan();
    plan.layout.baseOffsetSize = 8;
    plan.layout.offsetSize = 8;
    plan.exifOffsetWraps = true;
    return build(plan);
}

QByteArray heifTiffOffsetOutsideItem()
{
    HeifPlan plan = typicalPlan();
    plan.exifItem.replace(0, 4, sized(0xFFFFFFF0u, 4));
    return build(plan);
}

QByteArray heifIrefLoop()
{
    HeifPlan plan = typicalPlan();
    plan.extraReferences = { { "cdsc", 2, { 2 } }, { "cdsc", 1, { 2 } }, { "dimg", 1, { 1 } } };
    return build(plan);
}

QByteArray heifExternalData()
{
    HeifPlan plan = typicalPlan();
    plan.exifDataReference = 1;
    return build(plan);
}

} // namespace fixture
