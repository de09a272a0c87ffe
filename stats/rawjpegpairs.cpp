#include "rawjpegpairs.h"

#include <QSqlQuery>

namespace RawJpegPairs {

namespace {

// The file's name up to and with its last dot: what is left when every character that is no dot
// is taken off its end. Every scanned file has a suffix.
const QString withoutSuffix = QStringLiteral("rtrim(%1.FILENAME, replace(%1.FILENAME, '.', ''))");

} // namespace

int markCompanions(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (ID INTEGER PRIMARY KEY)")
                        .arg(companionsTable))
        || !query.exec(QStringLiteral("DELETE FROM %1").arg(companionsTable)))
        return -1;
    // The folders and base names are compared through an automatic index on the materialised names.
    const QString mark =
        QStringLiteral(
            "INSERT INTO %1 WITH Named AS MATERIALIZED (SELECT p.ID AS ID, p.FILETYPE AS FILETYPE, "
            "p.FOLDER AS FOLDER, %2 AS BASE FROM PHOTOINFO p JOIN DATEIEN d ON d.id = p.ID) "
            "SELECT DISTINCT c.ID FROM Named c JOIN Named r ON r.BASE = c.BASE "
            "AND r.FOLDER = c.FOLDER "
            "WHERE c.FILETYPE IN ('JPG', 'HEIF') AND r.FILETYPE NOT IN ('JPG', 'HEIF')")
            .arg(companionsTable, withoutSuffix.arg(QStringLiteral("d")));
    if (!query.exec(mark))
        return -1;
    return companionCount(db);
}

int companionCount(const QSqlDatabase &db)
{
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT count(*) FROM %1").arg(companionsTable))
        || !query.next())
        return 0;
    return query.value(0).toInt();
}

} // namespace RawJpegPairs
