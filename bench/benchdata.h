#pragma once

#include "photofixture.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <cstdint>

// The cameras, lenses and shooting values that the benchmark corpus and the synthetic chart
// table are made of: 8 makers, 30 models, 60 lenses and dates over five years. Everything is
// drawn from one seeded generator, so that two runs make byte-identical corpora.
namespace benchdata {

// splitmix64: tiny, fast and the same on every platform and standard library, unlike the
// distributions of <random>.
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : state(seed)
    { }
    std::uint64_t next();
    int below(int bound); // 0 .. bound-1
    bool chance(int percent);

private:
    std::uint64_t state;
};

struct Lens
{
    const char *name;
    int minFocal; // mm
    int maxFocal;
    int minFNumber10; // widest aperture times ten
};

struct Camera
{
    int maker; // index into makers()
    const char *model;
    fixture::Format rawFormat;
    const char *rawSuffix; // upper case, as cameras name their files
    int cropFactor10; // for FocalLengthIn35mmFormat
};

struct Maker
{
    const char *make; // the Make tag as the maker's cameras write it
    const char *filePrefix;
    int firstLens; // lenses() index range of the maker's mount
    int lensCount;
};

const QList<Maker> &makers();
const QList<Camera> &cameras();
const QList<Lens> &lenses();

// One photo's values: the tags the fixture builder writes plus the extras a real camera block
// carries.
struct Photo
{
    int camera = 0;
    int lens = 0;
    fixture::PhotoTags tags;
    QString software, artist, serialNumber, lensSerial;
    int width = 6000, height = 4000;
    bool hasGps = false;
    quint32 latitude[3] {}, longitude[3] {}; // degrees, minutes, seconds*100
    bool north = true, east = true;
    int flash = 16;
    int exposureBias3 = 0; // thirds of a stop
};

// A photo taken with the camera at the time, with a lens of the camera's mount and values that
// suit that lens.
Photo randomPhoto(Random &random, int camera, const QDateTime &when);

// The EXIF date text, "2023:07:14 18:30:05".
QString exifDate(const QDateTime &when);

} // namespace benchdata
