#pragma once

#include <QObject>

// HEIF and AVIF files: every layout of the Exif item gives what a JPEG with the same Exif gives;
// damaged and hostile layouts end with a defined result within the reader's bounds.
class tst_HeifReader : public QObject
{
    Q_OBJECT

private slots:
    void layoutGivesWhatAJpegGives_data();
    void layoutGivesWhatAJpegGives();
    void exifItemLinkedToThePrimaryIsPreferred_data();
    void exifItemLinkedToThePrimaryIsPreferred();
    void hostileHeifEndsWithDefinedResult_data();
    void hostileHeifEndsWithDefinedResult();
    void onlyMetaAndExifExtentAreRead_data();
    void onlyMetaAndExifExtentAreRead();
    void offsetArithmeticNeverWraps_data();
    void offsetArithmeticNeverWraps();
    void additionRefusesToPass64Bits_data();
    void additionRefusesToPass64Bits();
    void byteReaderReadsBytesAsAFile();
};
