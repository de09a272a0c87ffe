#pragma once

#include <QMap>
#include <QObject>
#include <QStringList>

// The focal plane tags, the 35 mm crop factor and the 35 mm-equivalent focal length: fixture files
// for each way a file states them (or states nonsense), and the real camera files compared with
// ExifTool's FocalLength35efl. The real-file comparisons are skipped when their folder is absent.
class tst_Exif35mm : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void focalPlaneTagsAreRead_data();
    void focalPlaneTagsAreRead();
    void cropFactorAndEquivalentFocalLength_data();
    void cropFactorAndEquivalentFocalLength();
    void sampleAgreesWithExifTool_data();
    void sampleAgreesWithExifTool();
    void heifSampleAgreesWithExifTool_data();
    void heifSampleAgreesWithExifTool();
    void cleanupTestCase();

private:
    void compareWithExifTool(const QString &folder);

    // Per shared folder: the files for which ExifTool gives a 35 mm focal length, how many of
    // ours agree, and what the others say.
    struct Tally
    {
        int compared = 0;
        int agreeing = 0;
        QStringList disagreeing;
    };
    QMap<QString, Tally> tallies;
};
