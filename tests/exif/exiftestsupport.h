#pragma once

#include "photofixture.h"
#include "testutils.h"
#include "texiffile.h"

#include <memory>

namespace exiftest {

// Writes bytes under name into the sandbox and reads them back with a TExifFile.
inline std::unique_ptr<TExifFile> read(const testutils::Sandbox &sandbox, const QString &name,
                                       const QByteArray &bytes, bool *recognised = nullptr)
{
    const QString path = sandbox.filePath(name);
    if (!fixture::writeBytes(path, bytes))
        qFatal("cannot write the test file %s", qPrintable(path));
    auto file = std::make_unique<TExifFile>(path);
    const bool ok = file->processFile();
    if (recognised)
        *recognised = ok;
    return file;
}

// What the scan and the value operations give, one "name=value" line each, so that a mismatch
// names the member.
inline QStringList readings(const TExifFile &f)
{
    return {
        QStringLiteral("fileTyp=%1").arg(f.fileTyp()),
        QStringLiteral("bigEndian=%1").arg(f.bigEndian),
        QStringLiteral("firstIfdOffset=%1").arg(f.firstIfdOffset),
        QStringLiteral("ifdCounter=%1").arg(f.ifdCounter),
        QStringLiteral("nextIfdOffset=%1").arg(f.nextIfdOffset),
        QStringLiteral("Make=") + f.Make,
        QStringLiteral("Model=") + f.Model,
        QStringLiteral("LensModel=") + f.LensModel,
        QStringLiteral("DateTimeOriginal=") + f.DateTimeOriginal,
        QStringLiteral("ModifyDate=") + f.ModifyDate,
        QStringLiteral("ISO=%1").arg(f.ISO),
        QStringLiteral("FocalLengthIn35mmFormat=%1").arg(f.FocalLengthIn35mmFormat),
        QStringLiteral("Compression=%1").arg(f.Compression),
        QStringLiteral("Thumbnail=%1,%2").arg(f.ThumbnailOffset[1]).arg(f.ThumbnailLength[1]),
        QStringLiteral("FocalLength=%1").arg(f.exif_0x920A_FocalLengthAsReal()),
        QStringLiteral("FocalLengthText=") + f.exif_0x920A_FocalLengthAsString(),
        QStringLiteral("FNumber=") + f.exif_0x829D_FNumberAsString(),
        QStringLiteral("ExposureTime=%1").arg(f.exif_0x829A_ExposureTime()),
        QStringLiteral("ExposureTimeText=") + f.exif_0x829A_ExposureTimeAsString(),
        QStringLiteral("MeteringMode=") + f.exif_0x9207_MeteringModeAsString(),
        QStringLiteral("ExposureProgram=") + f.exif_0x8822_ExpProgAsString(),
        QStringLiteral("ScaleFactor35=%1").arg(f.composite_ScaleFactor35()),
        QStringLiteral("LightValue=%1").arg(f.composite_LightValue()),
    };
}

} // namespace exiftest
