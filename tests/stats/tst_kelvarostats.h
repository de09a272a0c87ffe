#pragma once

#include <QObject>

// kelvaro-stats run as a program on a small photo library written by the test: every option,
// every output format and every error path.
class tst_KelvaroStats : public QObject
{
    Q_OBJECT

private slots:
    void csvHasEveryStatisticAndCountsEveryPhoto();
    void jsonHoldsTheSameRows();
    void textShowsEveryTitle();
    void namedStatisticsOnly();
    void typesAndSubdirectories_data();
    void typesAndSubdirectories();
    void storedExclusionsApply();
    void messyNamesCountedTogetherOnRequest_data();
    void messyNamesCountedTogetherOnRequest();
    void secondRunTakesUnchangedFilesFromTheCatalogue_data();
    void secondRunTakesUnchangedFilesFromTheCatalogue();
    void filterOptions_data();
    void filterOptions();
    void filterNamedInTextAndJson();
    void pairsOnce();
    void usageErrors_data();
    void usageErrors();
    void missingDirectoryIsNamedAndTheRestScanned();
    void linksNoWidgetOrChartLibrary();
    void progressOnlyOnATerminal();
};
