#pragma once

#include <QObject>

// Real HEIF and AVIF files from cameras and phones: values compared with ExifTool's reference
// table, the file without Exif and the broken files rejected cleanly. Skipped when the folder of
// HEIF samples is absent.
class tst_HeifSamples : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void heifSampleGivesItsExpectedResult_data();
    void heifSampleGivesItsExpectedResult();
    void cleanupTestCase();

private:
    int filesCompared = 0;
    int fieldsCompared = 0;
    int fieldsAgreeing = 0;
    int filesRejected = 0;
};
