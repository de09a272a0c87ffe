#include "photofilter.h"

namespace {

bool isWholeYear(const QDate &from, const QDate &to)
{
    return from.isValid() && to.isValid() && from.year() == to.year() && from.month() == 1
        && from.day() == 1 && to.month() == 12 && to.day() == 31;
}

bool isWholeMonth(const QDate &from, const QDate &to)
{
    return from.isValid() && to.isValid() && from.year() == to.year() && from.month() == to.month()
        && from.day() == 1 && to.day() == to.daysInMonth();
}

} // namespace

bool PhotoFilter::isEmpty() const
{
    for (const PhotoFilterField &field : PhotoFilterFields::all()) {
        if (!(this->*field.values).isEmpty())
            return false;
    }
    return !hasDateRange() && !pairsOnce && pickedRows.isEmpty();
}

QString PhotoFilter::dateRangeText() const
{
    if (isWholeYear(from, to))
        return QString::number(from.year());
    if (isWholeMonth(from, to))
        return from.toString(QStringLiteral("yyyy-MM"));
    if (from.isValid() && to.isValid())
        return from.toString(Qt::ISODate) + QStringLiteral(" – ") + to.toString(Qt::ISODate);
    if (from.isValid())
        return QStringLiteral("from ") + from.toString(Qt::ISODate);
    if (to.isValid())
        return QStringLiteral("until ") + to.toString(Qt::ISODate);
    return QStringLiteral("all");
}

QString PhotoFilter::description() const
{
    QStringList parts;
    for (const PhotoFilterField &field : PhotoFilterFields::all())
        parts << (this->*field.values);
    if (hasDateRange())
        parts << dateRangeText();
    for (const PickedRow &row : pickedRows)
        parts << row.label;
    if (pairsOnce)
        parts << QStringLiteral("RAW+JPEG once");
    return parts.join(QStringLiteral(", "));
}

bool PhotoFilter::operator==(const PhotoFilter &other) const
{
    return makers == other.makers && models == other.models && lenses == other.lenses
        && fileTypes == other.fileTypes && from == other.from && to == other.to
        && pairsOnce == other.pairsOnce && pickedRows == other.pickedRows;
}

namespace PhotoFilterFields {

const QList<PhotoFilterField> &all()
{
    static const QList<PhotoFilterField> fields {
        { QStringLiteral("maker"), QStringLiteral("--maker"), QStringLiteral("DATEIEN"),
          QStringLiteral("MAKER"), &PhotoFilter::makers },
        { QStringLiteral("model"), QStringLiteral("--model"), QStringLiteral("DATEIEN"),
          QStringLiteral("MODEL"), &PhotoFilter::models },
        { QStringLiteral("lens"), QStringLiteral("--lens"), QStringLiteral("DATEIEN"),
          QStringLiteral("LENS"), &PhotoFilter::lenses },
        { QStringLiteral("fileType"), QString(), QStringLiteral("PHOTOINFO"),
          QStringLiteral("FILETYPE"), &PhotoFilter::fileTypes },
    };
    return fields;
}

} // namespace PhotoFilterFields
