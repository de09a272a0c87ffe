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

// The patterns of the type of that name or suffix (without regard to case: "cr2", "HEIC"); empty
// when no type matches.
QStringList patternsOf(const QString &nameOrSuffix);

} // namespace FileTypes
