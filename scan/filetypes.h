#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// The photo file types the program reads, as the tool bar names and switches them, with the name
// patterns of each. The order is the tool bar's switches' when the window rebuilds its patterns.
namespace FileTypes {

struct FileType
{
    QString name; // "CR2", "HEIF"
    QStringList patterns; // "*.cr2"; HEIF and AVIF share one switch
};

const QList<FileType> &all();

// The type of a file by its name's suffix, in any case; a suffix no type has gives the suffix in
// capitals, and a name without one an empty text.
QString nameOf(const QString &path);

// The patterns a type's name stands for, in any case ("HEIF" gives all four, "cr2" its one); any
// other text is taken as a suffix of its own ("heic" gives "*.heic" only).
QStringList patternsOf(const QString &nameOrSuffix);

// The patterns of every type, in the table's order.
QStringList allPatterns();

} // namespace FileTypes
