#pragma once

#include <QString>
#include <QVariantList>

// What reading one walked file gave, as plain values that may cross threads: the row's values of
// a photo, "not a photo", or "not read" (a reader passed over it because the scan is stopping).
struct PhotoRead
{
    enum class Outcome { NotRead, NotPhoto, Photo };

    Outcome outcome = Outcome::NotRead;
    QString make; // compared with the exclusion lists
    QString model;
    QVariantList values; // one per PhotoRowInserter::placeholders
    QVariantList info; // one per PhotoRowInserter::infoPlaceholders

    // Reads the file with TExifFile; never opens it for writing.
    static PhotoRead of(const QString &path);
};
