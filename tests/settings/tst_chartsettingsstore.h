#pragma once

#include <QObject>

class tst_ChartSettingsStore : public QObject
{
    Q_OBJECT

private slots:
    void roundTripKeepsEveryField_data();
    void roundTripKeepsEveryField();
    void legendPositionIsWrittenWithCapitalC_data();
    void legendPositionIsWrittenWithCapitalC();
    void writesEveryKeyUnderThePrefix();
    void emptyStoreGivesFirstStartDefaults_data();
    void emptyStoreGivesFirstStartDefaults();
    void categoryLimitIsStoredOnlyWhenChanged_data();
    void categoryLimitIsStoredOnlyWhenChanged();
    void unusableCategoryLimitReadsAsOne_data();
    void unusableCategoryLimitReadsAsOne();
    void prefixesKeepChartsApart();
    void foreignValuesConvertByVariantRules_data();
    void foreignValuesConvertByVariantRules();
};
