#pragma once

#include <QObject>

// Real camera files: values compared with ExifTool's reference table, and malformed files from
// public test suites read without a crash. Skipped when the sample folders are absent.
class tst_Samples : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void realSampleAgreesWithReference_data();
    void realSampleAgreesWithReference();
    void malformedFileIsSurvived_data();
    void malformedFileIsSurvived();
    void cleanupTestCase();

private:
    int filesCompared = 0;
    int fieldsCompared = 0;
    int fieldsAgreeing = 0;
    int malformedRead = 0;
    int malformedRecognised = 0;
};
