#include "filetypes.h"

namespace FileTypes {

const QList<FileType> &all()
{
    static const QList<FileType> types {
        { "ARW", { "*.arw" } }, { "CR2", { "*.cr2" } },
        { "CR3", { "*.cr3" } }, { "DNG", { "*.dng" } },
        { "JPG", { "*.jpg" } }, { "NEF", { "*.nef" } },
        { "RAF", { "*.raf" } }, { "RW2", { "*.rw2" } },
        { "ORF", { "*.orf" } }, { "HEIF", { "*.heic", "*.heif", "*.hif", "*.avif" } },
    };
    return types;
}

QString nameOf(const QString &path)
{
    const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (dot < 0 || dot < slash)
        return {};
    const QString pattern = QLatin1Char('*') + path.mid(dot).toLower();
    for (const FileType &type : all()) {
        if (type.patterns.contains(pattern))
            return type.name;
    }
    return path.mid(dot + 1).toUpper();
}

QStringList patternsOf(const QString &nameOrSuffix)
{
    for (const FileType &type : all()) {
        if (type.name.compare(nameOrSuffix, Qt::CaseInsensitive) == 0)
            return type.patterns;
    }
    return { QStringLiteral("*.") + nameOrSuffix.toLower() };
}

QStringList allPatterns()
{
    QStringList patterns;
    for (const FileType &type : all())
        patterns << type.patterns;
    return patterns;
}

} // namespace FileTypes
