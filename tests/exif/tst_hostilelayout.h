#pragma once

#include <QObject>

// Damaged and hostile files: every one ends, none crashes, each gives a defined result. Hangs
// would show as the test's time limit; nothing here measures time.
class tst_HostileLayout : public QObject
{
    Q_OBJECT

private slots:
    void hostileFileEndsWithDefinedResult_data();
    void hostileFileEndsWithDefinedResult();
    void arraysAreFilledOnlyUpToTheirCapacity();
    void directoryBudgetEndsALongChain();
    void entryBudgetEndsAHugeDirectory();
    void nestedExifPointersEndAtTheDepthBound();
    void textsEndAtTheLengthBound();
    void fileThatCannotBeOpenedIsNotRecognised();
    void cr3WithOnlyOneCmtBoxWalksThatOne();
    void byteReaderReadsZerosPastTheEnd_data();
    void byteReaderReadsZerosPastTheEnd();
    void byteReaderStopsAtItsLoadBudget();
    void largeFileLoadsOnlyTheBlocksItNeeds();
    void entriesPastTheEndReadAsZeros_data();
    void entriesPastTheEndReadAsZeros();
};
