#pragma once

#include <QObject>
#include <QSqlDatabase>

// The scan's reader pool: results taken back in submission order however the reads overtake each
// other, a stop that lets readers finish only the file in hand, and rows that are the same for
// every pool size.
class tst_ReaderPool : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void reorderBufferHandsBackInSequence_data();
    void reorderBufferHandsBackInSequence();
    void resultsComeBackInSubmissionOrder_data();
    void resultsComeBackInSubmissionOrder();
    void stopLetsReadersFinishOnlyTheFileInHand_data();
    void stopLetsReadersFinishOnlyTheFileInHand();
    void companionsAreCalledOnTheReaderAroundTheRead();
    void companionOfAFilePassedOverForAStopIsNotCalled();
    void rowsAreTheSameForEveryPoolSize_data();
    void rowsAreTheSameForEveryPoolSize();
    void stopAtTheFiftiethFileDropsWhatWasReadAhead_data();
    void stopAtTheFiftiethFileDropsWhatWasReadAhead();
    void stopEndsOnlyTheCurrentDirectoryForEveryPoolSize_data();
    void stopEndsOnlyTheCurrentDirectoryForEveryPoolSize();

private:
    QSqlDatabase db;
};
