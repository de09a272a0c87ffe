#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

// Decides which file names a scan reads, with the meaning of QDir's name filters: wildcards,
// without regard to case. The scan's patterns all have the form "*.ext", which is decided by
// comparing the suffix; QDir would run one regular expression per pattern for every file of the
// library. Other patterns are matched as wildcards.
class FileNamePatterns
{
public:
    explicit FileNamePatterns(const QStringList &patterns);

    bool matches(const QString &fileName) const;

private:
    QStringList suffixes; // ".ext" of every "*.ext" pattern
    QList<QRegularExpression> wildcards;
};
