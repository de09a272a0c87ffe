#pragma once

#include "photoread.h"
#include "reorderbuffer.h"

#include <QMutex>
#include <QQueue>
#include <QString>
#include <QStringList>
#include <QWaitCondition>

#include <functional>
#include <memory>
#include <vector>

class QThread;

// Threads that read the scan's files while the worker inserts rows. A file waits on disk far
// longer than it takes to parse, and a disk serves many reads at once: so the pool is sized for
// the reads in flight, not for the cores. Files are numbered in the order they are submitted and
// their results taken in that order (ReorderBuffer), however the reads overtake each other.
//
// The caller bounds how many files are submitted but not taken, and with it the memory held.
class ReaderPool
{
public:
    // The range offered in the settings, and the default chosen from the cold-cache benchmark
    // (bench/run-benchmark.sh, the pool-size curve).
    static constexpr int minThreads = 1;
    static constexpr int maxThreads = 64;
    static constexpr int defaultThreads = 32;

    // threads is clamped to the range above. Once stopRequested() returns true, readers read no
    // further file: each file still queued is handed back as NotRead.
    ReaderPool(int threads, std::function<bool()> stopRequested);
    // Readers finish at most the file in hand; queued files and results not taken are dropped,
    // and every thread has ended when this returns.
    ~ReaderPool();
    ReaderPool(const ReaderPool &) = delete;
    ReaderPool &operator=(const ReaderPool &) = delete;

    // Work a reader does for one file besides reading it: looking at the file just before it is
    // opened and keeping something of the read after. Done on the reader's thread, so that the
    // scan's own thread only collects it with the file's result (takeNext() orders the two).
    class Companion
    {
    public:
        virtual ~Companion() = default;
        virtual void beforeRead(const QString &path) = 0;
        virtual void afterRead(const QString &path, const PhotoRead &read) = 0;
    };

    int threadCount() const { return int(threads.size()); }
    // Queues files; each one's sequence number is the count of files submitted before it. Given
    // in batches, so that the readers are woken once per batch rather than once per file.
    // companions, when given, holds one per path (null where a file has none). A file passed
    // over for a stop is handed back as NotRead without its companion having been called.
    void submit(const QStringList &paths, const QList<std::shared_ptr<Companion>> &companions = {});
    // The result of the next file in submission order; waits for its read.
    PhotoRead takeNext();

    // Points where a reader calls the test hook: having taken a file (before opening it), having
    // read it (before handing its result over), and having handed it over.
    enum class Step { Taken, Read, HandedOver };
    using StepHook = std::function<void(Step, qint64 sequence, const QString &path)>;
    // Called on the reader threads; an empty function (the default) does nothing. Tests use it to
    // hold readers, to make results arrive out of order and to remove a file between the walk and
    // its read, deliberately instead of by timing. Set it while no pool exists.
    static void setStepHook(StepHook hook);
    // Reader threads of every pool whose reading loop has not returned yet: none once the last
    // pool is destroyed.
    static int readersRunning();

private:
    struct Task
    {
        qint64 sequence;
        QString path;
        std::shared_ptr<Companion> companion;
    };

    void readLoop();

    const std::function<bool()> stopRequested;
    QMutex mutex;
    QWaitCondition work;
    QQueue<Task> tasks;
    qint64 submitted = 0;
    bool closing = false;
    ReorderBuffer results;
    std::vector<std::unique_ptr<QThread>> threads;
};
