#pragma once

#include <QObject>
#include <QSqlDatabase>

// The photo catalogue: remembered values come back exactly, a rescan gives the rows of a scan
// without it and opens no unchanged file, changed and gone files are noticed, and a damaged,
// foreign or unwritable catalogue, two processes at once and killed scans all end in a complete
// scan and a sound catalogue.
class tst_PhotoCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void recordGivesBackEveryValueExactly_data();
    void recordGivesBackEveryValueExactly();
    void recordCutShortOrDamagedIsRefused();
    void rescanGivesTheSameRowsWithoutOpeningAFile_data();
    void rescanGivesTheSameRowsWithoutOpeningAFile();
    void realSamplesGiveTheSameRowsFromTheCatalogue();
    void changedFileIsReadAgain_data();
    void changedFileIsReadAgain();
    void goneFilesAreForgottenAndOtherTypesKept();
    void newReaderVersionReadsEveryFileAgain();
    void unusableCatalogueIsMovedAsideAndANewOneStarted_data();
    void unusableCatalogueIsMovedAsideAndANewOneStarted();
    void unwritableCacheFolderScansWithoutCatalogue();
    void foldersNotSeenForTheSetTimeArePruned_data();
    void foldersNotSeenForTheSetTimeArePruned();
    void forgettingEverythingEmptiesTheCatalogue();
    void twoProcessesScanningAtOnceBothFinish();
    void killedScansLeaveASoundCatalogueForTheNextRun();

private:
    QSqlDatabase db;
};
