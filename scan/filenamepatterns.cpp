#include "filenamepatterns.h"

namespace {

// ".ext" when the pattern is "*" followed by a text without further wildcard characters.
QString plainSuffix(const QString &pattern)
{
    if (pattern.size() < 2 || !pattern.startsWith(QLatin1Char('*')))
        return {};
    const QString rest = pattern.mid(1);
    for (const QChar c : rest) {
        if (c == QLatin1Char('*') || c == QLatin1Char('?') || c == QLatin1Char('[')
            || c == QLatin1Char('\\'))
            return {};
    }
    return rest;
}

} // namespace

FileNamePatterns::FileNamePatterns(const QStringList &patterns)
{
    for (const QString &pattern : patterns) {
        const QString suffix = plainSuffix(pattern);
        if (!suffix.isEmpty()) {
            suffixes.append(suffix);
            continue;
        }
        // As QDirIterator makes its name filters.
        wildcards.append(QRegularExpression::fromWildcard(pattern, Qt::CaseInsensitive));
    }
}

bool FileNamePatterns::matches(const QString &fileName) const
{
    for (const QString &suffix : suffixes) {
        if (fileName.endsWith(suffix, Qt::CaseInsensitive))
            return true;
    }
    for (const QRegularExpression &wildcard : wildcards) {
        if (wildcard.match(fileName).hasMatch())
            return true;
    }
    return false;
}
