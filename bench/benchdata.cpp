#include "benchdata.h"

#include <algorithm>

namespace benchdata {

std::uint64_t Random::next()
{
    std::uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

int Random::below(int bound)
{
    return bound <= 1 ? 0 : int(next() % std::uint64_t(bound));
}

bool Random::chance(int percent)
{
    return below(100) < percent;
}

const QList<Maker> &makers()
{
    static const QList<Maker> table {
        { "Canon", "IMG_", 0, 9 },         { "NIKON CORPORATION", "DSC_", 9, 9 },
        { "SONY", "DSC", 18, 8 },          { "FUJIFILM", "DSCF", 26, 8 },
        { "Panasonic", "P", 34, 7 },       { "OLYMPUS CORPORATION", "P", 41, 7 },
        { "LEICA CAMERA AG", "L", 48, 6 }, { "RICOH IMAGING COMPANY, LTD.", "IMGP", 54, 6 },
    };
    return table;
}

const QList<Camera> &cameras()
{
    using F = fixture::Format;
    static const QList<Camera> table {
        { 0, "Canon EOS 5D Mark IV", F::TiffLittle, ".CR2", 10 },
        { 0, "Canon EOS 6D Mark II", F::TiffLittle, ".CR2", 10 },
        { 0, "Canon EOS 90D", F::TiffLittle, ".CR2", 16 },
        { 0, "Canon EOS R5", F::Cr3, ".CR3", 10 },
        { 0, "Canon EOS R6", F::Cr3, ".CR3", 10 },
        { 1, "NIKON D850", F::TiffBig, ".NEF", 10 },
        { 1, "NIKON D750", F::TiffBig, ".NEF", 10 },
        { 1, "NIKON Z 6_2", F::TiffBig, ".NEF", 10 },
        { 1, "NIKON Z 7", F::TiffBig, ".NEF", 10 },
        { 1, "NIKON Z 50", F::TiffBig, ".NEF", 15 },
        { 2, "ILCE-7M3", F::TiffLittle, ".ARW", 10 },
        { 2, "ILCE-7RM4", F::TiffLittle, ".ARW", 10 },
        { 2, "ILCE-9", F::TiffLittle, ".ARW", 10 },
        { 2, "ILCE-6400", F::TiffLittle, ".ARW", 15 },
        { 3, "X-T4", F::Raf, ".RAF", 15 },
        { 3, "X-T30", F::Raf, ".RAF", 15 },
        { 3, "X-Pro3", F::Raf, ".RAF", 15 },
        { 3, "X100V", F::Raf, ".RAF", 15 },
        { 4, "DC-GH5", F::Rw2, ".RW2", 20 },
        { 4, "DC-G9", F::Rw2, ".RW2", 20 },
        { 4, "DC-S5", F::Rw2, ".RW2", 10 },
        { 5, "E-M1MarkII", F::Orf, ".ORF", 20 },
        { 5, "E-M5MarkIII", F::Orf, ".ORF", 20 },
        { 5, "E-M10MarkIV", F::Orf, ".ORF", 20 },
        { 6, "LEICA Q2", F::TiffLittle, ".DNG", 10 },
        { 6, "LEICA M10", F::TiffLittle, ".DNG", 10 },
        { 6, "LEICA SL2", F::TiffLittle, ".DNG", 10 },
        { 7, "PENTAX K-1 Mark II", F::TiffLittle, ".DNG", 10 },
        { 7, "PENTAX K-3 Mark III", F::TiffLittle, ".DNG", 15 },
        { 7, "PENTAX KP", F::TiffLittle, ".DNG", 15 },
    };
    return table;
}

const QList<Lens> &lenses()
{
    static const QList<Lens> table {
        // Canon
        { "EF24-70mm f/2.8L II USM", 24, 70, 28 },
        { "EF70-200mm f/2.8L IS III USM", 70, 200, 28 },
        { "EF16-35mm f/4L IS USM", 16, 35, 40 },
        { "EF50mm f/1.8 STM", 50, 50, 18 },
        { "EF100mm f/2.8L Macro IS USM", 100, 100, 28 },
        { "RF24-105mm F4 L IS USM", 24, 105, 40 },
        { "RF15-35mm F2.8 L IS USM", 15, 35, 28 },
        { "RF85mm F1.2 L USM", 85, 85, 12 },
        { "RF100-500mm F4.5-7.1 L IS USM", 100, 500, 45 },
        // Nikon
        { "AF-S NIKKOR 24-70mm f/2.8E ED VR", 24, 70, 28 },
        { "AF-S NIKKOR 70-200mm f/2.8E FL ED VR", 70, 200, 28 },
        { "AF-S NIKKOR 14-24mm f/2.8G ED", 14, 24, 28 },
        { "AF-S NIKKOR 50mm f/1.8G", 50, 50, 18 },
        { "NIKKOR Z 24-70mm f/4 S", 24, 70, 40 },
        { "NIKKOR Z 14-30mm f/4 S", 14, 30, 40 },
        { "NIKKOR Z 85mm f/1.8 S", 85, 85, 18 },
        { "NIKKOR Z 100-400mm f/4.5-5.6 VR S", 100, 400, 45 },
        { "NIKKOR Z DX 16-50mm f/3.5-6.3 VR", 16, 50, 35 },
        // Sony
        { "FE 24-70mm F2.8 GM", 24, 70, 28 },
        { "FE 70-200mm F2.8 GM OSS", 70, 200, 28 },
        { "FE 16-35mm F4 ZA OSS", 16, 35, 40 },
        { "FE 85mm F1.8", 85, 85, 18 },
        { "FE 55mm F1.8 ZA", 55, 55, 18 },
        { "FE 200-600mm F5.6-6.3 G OSS", 200, 600, 56 },
        { "E 18-135mm F3.5-5.6 OSS", 18, 135, 35 },
        { "FE 90mm F2.8 Macro G OSS", 90, 90, 28 },
        // Fujifilm
        { "XF16-55mmF2.8 R LM WR", 16, 55, 28 },
        { "XF50-140mmF2.8 R LM OIS WR", 50, 140, 28 },
        { "XF10-24mmF4 R OIS WR", 10, 24, 40 },
        { "XF23mmF1.4 R", 23, 23, 14 },
        { "XF35mmF2 R WR", 35, 35, 20 },
        { "XF56mmF1.2 R", 56, 56, 12 },
        { "XF18-55mmF2.8-4 R LM OIS", 18, 55, 28 },
        { "XF100-400mmF4.5-5.6 R LM OIS WR", 100, 400, 45 },
        // Panasonic
        { "LEICA DG 12-60/F2.8-4.0", 12, 60, 28 },
        { "LUMIX G VARIO 12-35/F2.8II", 12, 35, 28 },
        { "LUMIX G VARIO 35-100/F2.8II", 35, 100, 28 },
        { "LEICA DG 25/F1.4II", 25, 25, 14 },
        { "LUMIX G 42.5/F1.7", 42, 42, 17 },
        { "LUMIX S 24-105/F4", 24, 105, 40 },
        { "LEICA DG 100-400/F4.0-6.3", 100, 400, 40 },
        // Olympus
        { "OLYMPUS M.12-40mm F2.8", 12, 40, 28 },
        { "OLYMPUS M.40-150mm F2.8", 40, 150, 28 },
        { "OLYMPUS M.7-14mm F2.8", 7, 14, 28 },
        { "OLYMPUS M.25mm F1.2", 25, 25, 12 },
        { "OLYMPUS M.45mm F1.8", 45, 45, 18 },
        { "OLYMPUS M.12-100mm F4.0", 12, 100, 40 },
        { "OLYMPUS M.60mm F2.8 Macro", 60, 60, 28 },
        // Leica
        { "SUMMILUX 1:1.7/28 ASPH.", 28, 28, 17 },
        { "Summicron-M 1:2/35 ASPH.", 35, 35, 20 },
        { "Summilux-M 1:1.4/50 ASPH.", 50, 50, 14 },
        { "Elmarit-M 1:2.8/90", 90, 90, 28 },
        { "VARIO-ELMARIT-SL 1:2.8-4/24-90 ASPH.", 24, 90, 28 },
        { "APO-SUMMICRON-SL 1:2/50 ASPH.", 50, 50, 20 },
        // Pentax
        { "HD PENTAX-D FA 24-70mmF2.8ED SDM WR", 24, 70, 28 },
        { "HD PENTAX-D FA 70-200mmF2.8ED DC AW", 70, 200, 28 },
        { "HD PENTAX-D FA 15-30mmF2.8ED SDM WR", 15, 30, 28 },
        { "smc PENTAX-FA 50mm F1.4", 50, 50, 14 },
        { "HD PENTAX-DA 16-85mmF3.5-5.6ED DC WR", 16, 85, 35 },
        { "smc PENTAX-DA 35mm F2.4 AL", 35, 35, 24 },
    };
    return table;
}

namespace {

const int isoSteps[] = { 64,   100,  125,  160,  200,  250,  320,  400,  500,  640,  800,
                         1000, 1250, 1600, 2000, 2500, 3200, 4000, 5000, 6400, 12800 };
const int fNumbers10[] = { 12, 14, 18, 20, 24, 28, 35, 40, 45, 56, 63, 71, 80, 90, 110, 160, 220 };
const fixture::Rational exposureTimes[] = {
    { 1, 8000 }, { 1, 4000 }, { 1, 2000 }, { 1, 1000 }, { 1, 500 }, { 1, 250 },
    { 1, 200 },  { 1, 160 },  { 1, 125 },  { 1, 100 },  { 1, 80 },  { 1, 60 },
    { 1, 50 },   { 1, 40 },   { 1, 30 },   { 1, 15 },   { 1, 8 },   { 1, 4 },
    { 1, 2 },    { 1, 1 },    { 2, 1 },    { 5, 1 },    { 15, 1 },  { 30, 1 },
};
const quint16 meteringModes[] = { 5, 5, 5, 5, 3, 2, 2, 6, 1 }; // pattern metering dominates
const quint16 programs[] = { 2, 2, 2, 3, 3, 3, 1, 4, 7, 8 }; // mostly P and A

template<class T, int N> const T &pick(Random &random, const T (&values)[N])
{
    return values[random.below(N)];
}

// Focal lengths a zoom lens is really used at: its ends more often than the middle.
int focalFor(Random &random, const Lens &lens)
{
    if (lens.minFocal == lens.maxFocal)
        return lens.minFocal;
    const int roll = random.below(10);
    if (roll < 3)
        return lens.minFocal;
    if (roll < 6)
        return lens.maxFocal;
    const int steps = (lens.maxFocal - lens.minFocal) / 5;
    return std::min(lens.maxFocal, lens.minFocal + 5 * random.below(steps + 1));
}

QString serial(Random &random, int digits)
{
    QString text;
    for (int i = 0; i < digits; ++i)
        text += QChar('0' + random.below(10));
    return text;
}

} // namespace

QString exifDate(const QDateTime &when)
{
    return when.toString(QStringLiteral("yyyy:MM:dd HH:mm:ss"));
}

Photo randomPhoto(Random &random, int camera, const QDateTime &when)
{
    const Camera &body = cameras().at(camera);
    const Maker &maker = makers().at(body.maker);
    Photo photo;
    photo.camera = camera;
    photo.lens = maker.firstLens + random.below(maker.lensCount);
    const Lens &lens = lenses().at(photo.lens);

    fixture::PhotoTags &tags = photo.tags;
    tags.make = QString::fromLatin1(maker.make);
    tags.model = QString::fromLatin1(body.model);
    tags.lensModel = QString::fromLatin1(lens.name);
    tags.dateTimeOriginal = exifDate(when);
    // Some photos were edited in the camera later.
    tags.modifyDate = exifDate(random.chance(10) ? when.addDays(1 + random.below(30)) : when);

    // Low ISO in daylight, high at night.
    const int hour = when.time().hour();
    const bool night = hour < 7 || hour >= 20;
    const int isoIndex = night ? 12 + random.below(9) : random.below(14);
    tags.iso = quint16(isoSteps[isoIndex]);
    const int exposureIndex = night ? 11 + random.below(13) : random.below(16);
    tags.exposureTime = exposureTimes[exposureIndex];

    int f10 = pick(random, fNumbers10);
    while (f10 < lens.minFNumber10)
        f10 = pick(random, fNumbers10);
    tags.fNumber = fixture::Rational { quint32(f10), 10 };
    const int focal = focalFor(random, lens);
    tags.focalLength = fixture::Rational { quint32(focal * 10), 10 };
    tags.focalLengthIn35mm = quint16(focal * body.cropFactor10 / 10);
    tags.meteringMode = pick(random, meteringModes);
    tags.exposureProgram = pick(random, programs);

    photo.software = QStringLiteral("Ver.%1.%2%3")
                         .arg(1 + random.below(3))
                         .arg(random.below(10))
                         .arg(random.below(10));
    photo.artist = random.chance(60) ? QStringLiteral("Kelvaro Benchmark") : QString();
    photo.serialNumber = serial(random, 10);
    photo.lensSerial = serial(random, 7);
    const bool portrait = random.chance(25);
    photo.width = portrait ? 4000 : 6000;
    photo.height = portrait ? 6000 : 4000;
    photo.hasGps = random.chance(30);
    photo.latitude[0] = quint32(35 + random.below(25));
    photo.latitude[1] = quint32(random.below(60));
    photo.latitude[2] = quint32(random.below(6000));
    photo.longitude[0] = quint32(random.below(30));
    photo.longitude[1] = quint32(random.below(60));
    photo.longitude[2] = quint32(random.below(6000));
    photo.flash = random.chance(8) ? 9 : 16;
    photo.exposureBias3 = random.chance(70) ? 0 : random.below(7) - 3;
    return photo;
}

} // namespace benchdata
