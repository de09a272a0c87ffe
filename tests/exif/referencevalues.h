#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

// The reference values of the shared real-file folders: expected.csv, ';'-separated, one header
// line naming the columns (ExifTool's values), and the comparison of what the reader gives with
// them.
namespace referencevalues {

using Row = QHash<QString, QString>;

// Every row of the file, keyed by the header's names; empty when the file cannot be read.
QList<Row> read(const QString &csvPath);

// A number read as text against the reader's value; an empty text counts as 0.
bool sameReal(const QString &expected, double actual, double tolerance = 1e-6);

// The reference's text of a column, "n.a." where the reference has none (as the reader says).
QString text(const Row &expected, const char *column);

// One compared field: its column, whether it agrees, and what the reader gave.
struct Field
{
    const char *column;
    bool agrees;
    QString actual;
};

// Counts the fields into compared and agreeing and describes every one that disagrees.
QStringList disagreements(const QList<Field> &fields, const Row &expected, int &compared,
                          int &agreeing);

} // namespace referencevalues
