#include "samplelibrarywriter.h"

#include "photofixture.h"

#include <QDir>

#include <array>
#include <cmath>
#include <vector>

namespace {

using fixture::Format;
using fixture::Rational;

struct Lens
{
    const char *name;
    double shortest; // mm
    double longest; // mm; equal to shortest for a prime
    double widestAperture; // smallest f-number
};

// A file type a camera writes: its suffix as cameras spell it and the layout of its bytes.
struct FileKind
{
    const char *suffix;
    Format format;
};

struct Camera
{
    const char *make;
    const char *model;
    const char *prefix; // of the file names, as the camera numbers its files
    std::vector<FileKind> kinds;
    std::vector<Lens> lenses;
};

const FileKind jpg { ".JPG", Format::Jpeg };
const FileKind jpgApp0 { ".jpg", Format::JpegApp0 };

const std::vector<Camera> &cameras()
{
    static const std::vector<Camera> list {
        { "Canon",
          "Canon EOS R5",
          "IMG_",
          { { ".CR3", Format::Cr3 }, jpg },
          { { "RF15-35mm F2.8 L IS USM", 15, 35, 2.8 },
            { "RF24-70mm F2.8 L IS USM", 24, 70, 2.8 },
            { "RF100-500mm F4.5-7.1 L IS USM", 100, 500, 4.5 },
            { "RF50mm F1.2 L USM", 50, 50, 1.2 },
            { "RF85mm F1.2 L USM", 85, 85, 1.2 } } },
        { "Canon",
          "Canon EOS 5D Mark IV",
          "_MG_",
          { { ".CR2", Format::TiffLittle }, jpg },
          { { "EF16-35mm f/4L IS USM", 16, 35, 4 },
            { "EF24-105mm f/4L IS II USM", 24, 105, 4 },
            { "EF100-400mm f/4.5-5.6L IS II USM", 100, 400, 4.5 },
            { "EF100mm f/2.8L Macro IS USM", 100, 100, 2.8 } } },
        { "NIKON CORPORATION",
          "NIKON Z 6_2",
          "DSC_",
          { { ".NEF", Format::TiffLittle }, { ".nef", Format::TiffBig }, jpgApp0 },
          { { "NIKKOR Z 14-30mm f/4 S", 14, 30, 4 },
            { "NIKKOR Z 24-70mm f/4 S", 24, 70, 4 },
            { "NIKKOR Z 100-400mm f/4.5-5.6 VR S", 100, 400, 4.5 },
            { "NIKKOR Z 85mm f/1.8 S", 85, 85, 1.8 } } },
        { "SONY",
          "ILCE-7M3",
          "DSC0",
          { { ".ARW", Format::TiffLittle }, jpg },
          { { "FE 24-105mm F4 G OSS", 24, 105, 4 },
            { "FE 200-600mm F5.6-6.3 G OSS", 200, 600, 5.6 },
            { "FE 35mm F1.8", 35, 35, 1.8 },
            { "FE 90mm F2.8 Macro G OSS", 90, 90, 2.8 } } },
        { "FUJIFILM",
          "X-T3",
          "DSCF",
          { { ".RAF", Format::Raf }, jpg },
          { { "XF10-24mmF4 R OIS", 10, 24, 4 },
            { "XF16-55mmF2.8 R LM WR", 16, 55, 2.8 },
            { "XF100-400mmF4.5-5.6 R LM OIS WR", 100, 400, 4.5 },
            { "XF56mmF1.2 R", 56, 56, 1.2 } } },
        { "Panasonic",
          "DC-G9",
          "P10",
          { { ".RW2", Format::Rw2 }, jpg },
          { { "LEICA DG 12-60/F2.8-4.0", 12, 60, 2.8 },
            { "LUMIX G VARIO 100-300/F4.0-5.6II", 100, 300, 4 },
            { "LEICA DG SUMMILUX 25/F1.4 II", 25, 25, 1.4 } } },
        { "OLYMPUS CORPORATION",
          "E-M1MarkIII",
          "P",
          { { ".ORF", Format::Orf }, jpgApp0 },
          { { "OLYMPUS M.12-40mm F2.8", 12, 40, 2.8 },
            { "OLYMPUS M.40-150mm F2.8", 40, 150, 2.8 },
            { "OLYMPUS M.300mm F4.0", 300, 300, 4 },
            { "OLYMPUS M.17mm F1.2", 17, 17, 1.2 } } },
        { "Apple",
          "iPhone 13",
          "IMG_",
          { jpg, { ".DNG", Format::TiffLittle } },
          { { "iPhone 13 back dual wide camera 5.1mm f/1.6", 5.1, 5.1, 1.6 },
            { "iPhone 13 back dual wide camera 1.54mm f/2.4", 1.54, 1.54, 2.4 } } },
    };
    return list;
}

// Focal lengths a zoom is often used at; the ends of its range are added to them.
constexpr std::array<double, 14> zoomStops { 18,  24,  28,  35,  50,  70,  85,
                                             100, 135, 150, 200, 300, 400, 500 };
constexpr std::array<double, 17> fNumbers { 1.2, 1.4, 1.6, 1.8, 2, 2.4, 2.8, 3.5, 4,
                                            4.5, 5.6, 6.3, 7.1, 8, 11,  16,  22 };
constexpr std::array<quint16, 16> isoValues { 50,  64,  100, 125,  160,  200,  250,   320,
                                              400, 640, 800, 1600, 3200, 6400, 12800, 25600 };
// Mostly times of the camera's table, some that it lacks (1/15, 1/13, 0.5 s written as 5/10) and
// one written unreduced (10/2500 is 1/250).
constexpr std::array<Rational, 20> exposureTimes {
    { { 1, 8000 }, { 1, 4000 }, { 1, 2000 }, { 1, 1000 }, { 1, 500 }, { 1, 250 }, { 10, 2500 },
      { 1, 125 },  { 1, 60 },   { 1, 30 },   { 1, 15 },   { 1, 13 },  { 1, 8 },   { 1, 4 },
      { 5, 10 },   { 1, 2 },    { 1, 1 },    { 2, 1 },    { 4, 1 },   { 30, 1 } }
};
// Every metering mode of the tag, 0 and 255 included, and every exposure program 0 to 9.
constexpr std::array<quint16, 8> meteringModes { 0, 1, 2, 3, 4, 5, 6, 255 };
constexpr int exposurePrograms = 10;
constexpr int firstYear = 2019;
constexpr int years = 6;

template<typename T, std::size_t N> T pick(QRandomGenerator &random, const std::array<T, N> &values)
{
    return values[random.bounded(int(N))];
}

template<typename T> const T &pick(QRandomGenerator &random, const std::vector<T> &values)
{
    return values[random.bounded(int(values.size()))];
}

// A millimetre value as the camera writes it: whole numbers over 1, others in hundredths.
Rational millimetres(double mm)
{
    if (mm == std::floor(mm))
        return { quint32(mm), 1 };
    return { quint32(std::lround(mm * 100)), 100 };
}

double focalLength(QRandomGenerator &random, const Lens &lens)
{
    if (lens.shortest == lens.longest)
        return lens.shortest;
    std::vector<double> stops { lens.shortest, lens.longest };
    for (double stop : zoomStops) {
        if (stop > lens.shortest && stop < lens.longest)
            stops.push_back(stop);
    }
    return pick(random, stops);
}

Rational fNumber(QRandomGenerator &random, const Lens &lens)
{
    std::vector<double> usable;
    for (double f : fNumbers) {
        if (f >= lens.widestAperture)
            usable.push_back(f);
    }
    // Phones have a fixed aperture.
    const double f = lens.shortest < 10 ? lens.widestAperture : pick(random, usable);
    return { quint32(std::lround(f * 10)), 10 };
}

QString exifDate(QRandomGenerator &random, int year)
{
    return QStringLiteral("%1:%2:%3 %4:%5:%6")
        .arg(year)
        .arg(random.bounded(1, 13), 2, 10, QLatin1Char('0'))
        .arg(random.bounded(1, 29), 2, 10, QLatin1Char('0'))
        .arg(random.bounded(0, 24), 2, 10, QLatin1Char('0'))
        .arg(random.bounded(0, 60), 2, 10, QLatin1Char('0'))
        .arg(random.bounded(0, 60), 2, 10, QLatin1Char('0'));
}

} // namespace

SampleLibraryWriter::SampleLibraryWriter(quint32 seed)
    : random(seed)
{ }

bool SampleLibraryWriter::write(const QString &directory, int fileCount)
{
    photos = 0;
    unreadable = 0;
    for (int index = 1; index <= fileCount; ++index) {
        const bool ok = index % unreadableEvery == 0 ? writeUnreadable(directory, index)
                                                     : writePhoto(directory, index);
        if (!ok)
            return false;
    }
    return true;
}

QString SampleLibraryWriter::yearFolder(const QString &directory, int year)
{
    const QString folder = QDir(directory).filePath(QString::number(year));
    if (!QDir().mkpath(folder))
        error = QStringLiteral("cannot create %1").arg(folder);
    return folder;
}

bool SampleLibraryWriter::writePhoto(const QString &directory, int index)
{
    const Camera &camera = pick(random, cameras());
    const FileKind &kind = pick(random, camera.kinds);
    const Lens &lens = pick(random, camera.lenses);
    const int year = firstYear + random.bounded(years);

    fixture::PhotoTags tags;
    tags.make = QString::fromLatin1(camera.make);
    tags.model = QString::fromLatin1(camera.model);
    tags.lensModel = QString::fromLatin1(lens.name);
    const QString date = exifDate(random, year);
    tags.modifyDate = date;
    if ((photos + 1) % withoutDateEvery != 0)
        tags.dateTimeOriginal = date;
    const double mm = focalLength(random, lens);
    tags.focalLength = millimetres(mm);
    if (random.bounded(2) == 0)
        tags.focalLengthIn35mm = quint16(std::lround(mm));
    tags.fNumber = fNumber(random, lens);
    tags.exposureTime = pick(random, exposureTimes);
    const quint16 iso = pick(random, isoValues);
    tags.iso = lens.shortest < 10 ? qMin<quint16>(iso, 3200) : qMax<quint16>(iso, 100);
    tags.meteringMode = pick(random, meteringModes);
    tags.exposureProgram = quint16(random.bounded(exposurePrograms));

    const QString folder = yearFolder(directory, year);
    const QString name = QStringLiteral("%1%2%3")
                             .arg(QString::fromLatin1(camera.prefix))
                             .arg(index, 4, 10, QLatin1Char('0'))
                             .arg(QString::fromLatin1(kind.suffix));
    const QString path = QDir(folder).filePath(name);
    if (!fixture::writePhoto(path, kind.format, tags)) {
        error = QStringLiteral("cannot write %1").arg(path);
        return false;
    }
    ++photos;
    return true;
}

// Files with a photo's name that no reader accepts: empty, plain text, or cut off inside the
// header. CR3 files are left out: the reader takes any file named so for a photo.
bool SampleLibraryWriter::writeUnreadable(const QString &directory, int index)
{
    const QString folder = yearFolder(directory, firstYear + random.bounded(years));
    QByteArray bytes;
    QString name;
    switch (random.bounded(3)) {
    case 0:
        name = QStringLiteral("IMG_%1.JPG");
        break;
    case 1:
        name = QStringLiteral("IMG_%1.jpg");
        bytes = "Not a photo: the upload was interrupted.\n";
        break;
    default:
        // Cut after the byte-order mark: the magic number reads as 0. (A cut after three bytes
        // would not do: the missing byte reads as 0 and "II*" makes the magic 42.)
        name = QStringLiteral("DSC_%1.NEF");
        bytes = fixture::truncated(fixture::photo(Format::TiffLittle, fixture::typicalTags()), 2);
        break;
    }
    const QString path = QDir(folder).filePath(name.arg(index, 4, 10, QLatin1Char('0')));
    if (!fixture::writeBytes(path, bytes)) {
        error = QStringLiteral("cannot write %1").arg(path);
        return false;
    }
    ++unreadable;
    return true;
}
