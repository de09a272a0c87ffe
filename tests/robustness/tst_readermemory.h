#pragma once

#include <QObject>

// A hostile file must not make the reader take memory in proportion to what the file claims
// (entry counts, array lengths, box sizes, offsets): each file is read with the process's peak
// resident size measured before and after.
class tst_ReaderMemory : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void hostileLayoutStaysWithinBound_data();
    void hostileLayoutStaysWithinBound();
    void damagedFilesStayWithinBound();
};
