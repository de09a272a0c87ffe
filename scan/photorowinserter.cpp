#include "photorowinserter.h"

#include "queryrowinserter.h"
#include "texiffile.h"

#ifdef KELVARO_DIRECT_SQLITE
#include "sqliterowinserter.h"
#endif

const QStringList PhotoRowInserter::placeholders {
    QStringLiteral(":filename"),      QStringLiteral(":date"),
    QStringLiteral(":datemod"),       QStringLiteral(":maker"),
    QStringLiteral(":model"),         QStringLiteral(":lens"),
    QStringLiteral(":focallength"),   QStringLiteral(":iso"),
    QStringLiteral(":fnumber"),       QStringLiteral(":exptime"),
    QStringLiteral(":exptimestring"), QStringLiteral(":meteringmode"),
    QStringLiteral(":exposuremode"),
};

QVariantList PhotoRowInserter::rowValues(const TExifFile &exif)
{
    // The column EXPOSUREMODE receives the exposure program (tag 0x8822).
    return {
        exif.fileName(),
        exif.DateTimeOriginal,
        exif.ModifyDate,
        exif.Make,
        exif.Model,
        exif.LensModel,
        exif.exif_0x920A_FocalLengthAsReal(),
        int(exif.ISO),
        exif.exif_0x829D_FNumberAsString(),
        exif.exif_0x829A_ExposureTime(),
        exif.exif_0x829A_ExposureTimeAsString(),
        exif.exif_0x9207_MeteringModeAsString(),
        exif.exif_0x8822_ExpProgAsString(),
    };
}

std::unique_ptr<PhotoRowInserter> PhotoRowInserter::create(const QSqlDatabase &db)
{
#ifdef KELVARO_DIRECT_SQLITE
    return std::make_unique<SqliteRowInserter>(db);
#else
    return std::make_unique<QueryRowInserter>(db);
#endif
}
