#pragma once

#include <QObject>

class tst_GlobalSettingsDialog : public QObject
{
    Q_OBJECT

private slots:
    void validateGroups_data();
    void validateGroups();

    void formHasTitleSizeAndPages();
    void pageListEntries_data();
    void pageListEntries();
    void pageContents_data();
    void pageContents();
    void changePageFollowsTheList();

    void checkForUpdateRoundTrip_data();
    void checkForUpdateRoundTrip();
    void nameSettingsRoundTrip_data();
    void nameSettingsRoundTrip();
    void catalogueSettingsRoundTrip_data();
    void catalogueSettingsRoundTrip();
    void forgetButtonIsOnlyARequestUntilOk();
    void readerThreadsRoundTrip_data();
    void readerThreadsRoundTrip();
    void pairsOnceRoundTrip_data();
    void pairsOnceRoundTrip();
    void exclusionListsJoinAndSplit_data();
    void exclusionListsJoinAndSplit();
    void groupGettersReturnTheAcceptedList();

    void invalidGroupsRefusedWhenLeavingField_data();
    void invalidGroupsRefusedWhenLeavingField();
    void returnPressedDecidesWhetherOkCloses_data();
    void returnPressedDecidesWhetherOkCloses();
    void validGroupsLeftFieldAreSplit_data();
    void validGroupsLeftFieldAreSplit();
    void cancelClosesWhateverFieldsHold();
    void okClosesWhenBothGroupsValid();
};
