#include "photorowinserter.h"

#include "filetypes.h"
#include "photodatabase.h"
#include "photodate.h"
#include "photoinfoinserter.h"
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

const QStringList PhotoRowInserter::infoPlaceholders {
    QStringLiteral(":path"),       QStringLiteral(":filetype"), QStringLiteral(":focallength35"),
    QStringLiteral(":cropfactor"), QStringLiteral(":hour"),     QStringLiteral(":weekday"),
};

PhotoRowInserter::Target PhotoRowInserter::photoRows()
{
    return { PhotoDatabase::insertStatement, placeholders };
}

namespace {

// Zero is the reader's "unknown"; the table holds null for it.
QVariant knownOrNull(double value)
{
    return value > 0 ? QVariant(value) : QVariant();
}

QVariant knownOrNull(std::optional<int> value)
{
    return value ? QVariant(*value) : QVariant();
}

} // namespace

QVariantList PhotoRowInserter::infoValues(const TExifFile &exif, const QString &path)
{
    const QDate day = PhotoDate::date(exif.DateTimeOriginal);
    return {
        path,
        FileTypes::nameOf(path),
        knownOrNull(exif.composite_FocalLength35efl()),
        knownOrNull(exif.composite_CropFactor35()),
        knownOrNull(PhotoDate::hour(exif.DateTimeOriginal)),
        day.isValid() ? QVariant(day.dayOfWeek()) : QVariant(),
    };
}

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
    return create(db, photoRows());
}

std::unique_ptr<PhotoRowInserter> PhotoRowInserter::create(const QSqlDatabase &db,
                                                           const Target &target)
{
#ifdef KELVARO_DIRECT_SQLITE
    return std::make_unique<SqliteRowInserter>(db, target);
#else
    return std::make_unique<QueryRowInserter>(db, target);
#endif
}

std::unique_ptr<PhotoRowInserter> PhotoRowInserter::createInfo(const QSqlDatabase &db)
{
    return std::make_unique<PhotoInfoInserter>(db);
}
