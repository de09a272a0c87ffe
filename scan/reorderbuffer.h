#pragma once

#include "photoread.h"

#include <QMutex>
#include <QWaitCondition>

#include <map>

// Hands the readers' results back in the order of their sequence numbers, whatever order they
// arrive in: readers put(), the scan worker takes the next one, waiting for it when it is not in
// yet. Holds only what arrived ahead of the next; the caller bounds that by how far ahead it lets
// the readers run.
class ReorderBuffer
{
public:
    void put(qint64 sequence, PhotoRead read);
    // The result of the sequence number after the last one taken (0 first); waits until it is in.
    PhotoRead takeNext();
    // Results that are in but not yet taken.
    qsizetype held() const;

private:
    mutable QMutex mutex;
    QWaitCondition arrived;
    std::map<qint64, PhotoRead> results;
    qint64 next = 0;
};
