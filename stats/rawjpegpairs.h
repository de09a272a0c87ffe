#pragma once

#include <QSqlDatabase>
#include <QString>

// A raw file and a JPEG or HEIF of the same name in the same folder are one shot, taken twice.
// Counting each shot once means leaving out the companions (the JPEG or HEIF files); which ones
// they are follows from the photos' folders and file names and is kept in a temporary table of
// the connection.
namespace RawJpegPairs {

inline const QString companionsTable = QStringLiteral("temp.KelvaroPairCompanions");

// Finds the companions of the photos in the database anew; run after every scan on the
// connection that reads the statistics. The number of companions (pairs merged), -1 on failure.
int markCompanions(const QSqlDatabase &db);

// The number of companions marked last on this connection, 0 before the first marking.
int companionCount(const QSqlDatabase &db);

} // namespace RawJpegPairs
