#pragma once

#include <QObject>

// Reading well-formed photo files of every supported layout with TExifFile.
class tst_Reader : public QObject
{
    Q_OBJECT

private slots:
    void readsEveryFormat_data();
    void readsEveryFormat();
    void jpegSegmentOrder_data();
    void jpegSegmentOrder();
    void rawMagicOnlyWithItsSuffix_data();
    void rawMagicOnlyWithItsSuffix();
    void thumbnailsOfIfd0AndIfd1AreKeptApart();
    void missingTagsKeepTheirDefaults();
    void shortTextIsReadFromTheOffsetItsBytesForm();
    void emptyTextsAreNeverNull();
    void rafIsReadFromByte148_data();
    void rafIsReadFromByte148();
    void cr3TakesIfd0FromCmt1AndExifFromCmt2_data();
    void cr3TakesIfd0FromCmt1AndExifFromCmt2();
    void cr3FileTypeBoxBrands_data();
    void cr3FileTypeBoxBrands();
    void gpsDirectoryIsWalked();
    void entryDescriptionsGoToTheLogWhenEnabled();
    void arraysShorterThanTheValueFieldStandInline();
    void fileHandleIsReleasedWhenProcessFileReturns();
    void readOnlyFileIsRead();
    void contentsInMemoryGiveWhatTheFileGives_data();
    void contentsInMemoryGiveWhatTheFileGives();
};
