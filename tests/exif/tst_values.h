#pragma once

#include <QObject>

// The interpretation operations of TExifFile, on members set directly: value tables, number
// formats, fallbacks, GPS and composite values.
class tst_Values : public QObject
{
    Q_OBJECT

private slots:
    void exposureTimeFormA_data();
    void exposureTimeFormA();
    void exposureTimeFormB_data();
    void exposureTimeFormB();
    void fNumber_data();
    void fNumber();
    void unguardedDivisionsHaveAFallback_data();
    void unguardedDivisionsHaveAFallback();
    void rationalsAsReal_data();
    void rationalsAsReal();
    void numberTexts_data();
    void numberTexts();
    void lensInfo_data();
    void lensInfo();
    void arrayTexts();
    void isValidFile_data();
    void isValidFile();
    void composites();
    void lightValue_data();
    void lightValue();
    void gpsTexts();
    void fahrenheit2Celsius_data();
    void fahrenheit2Celsius();
    void textsOfAnEmptyFileAreNeverNull();
};
