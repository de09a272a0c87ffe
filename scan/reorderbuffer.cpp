#include "reorderbuffer.h"

void ReorderBuffer::put(qint64 sequence, PhotoRead read)
{
    QMutexLocker lock(&mutex);
    results.emplace(sequence, std::move(read));
    if (sequence == next)
        arrived.wakeAll();
}

PhotoRead ReorderBuffer::takeNext()
{
    QMutexLocker lock(&mutex);
    auto found = results.find(next);
    while (found == results.end()) {
        arrived.wait(&mutex);
        found = results.find(next);
    }
    PhotoRead read = std::move(found->second);
    results.erase(found);
    ++next;
    return read;
}

qsizetype ReorderBuffer::held() const
{
    QMutexLocker lock(&mutex);
    return qsizetype(results.size());
}
