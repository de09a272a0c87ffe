#include "readerpool.h"

#include <QThread>

#include <algorithm>
#include <atomic>

namespace {
ReaderPool::StepHook stepHook;
std::atomic<int> running { 0 };
} // namespace

int ReaderPool::readersRunning()
{
    return running.load();
}

void ReaderPool::setStepHook(StepHook hook)
{
    stepHook = std::move(hook);
}

ReaderPool::ReaderPool(int threadCount, std::function<bool()> stopRequested)
    : stopRequested(std::move(stopRequested))
{
    const int count = std::clamp(threadCount, minThreads, maxThreads);
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(QThread::create([this] {
            ++running;
            readLoop();
            --running;
        }));
        threads.back()->setObjectName(QStringLiteral("KelvaroReader"));
        threads.back()->start();
    }
}

ReaderPool::~ReaderPool()
{
    {
        QMutexLocker lock(&mutex);
        closing = true;
        work.wakeAll();
    }
    for (const auto &thread : threads)
        thread->wait();
}

void ReaderPool::submit(const QStringList &paths,
                        const QList<std::shared_ptr<Companion>> &companions)
{
    Q_ASSERT(companions.isEmpty() || companions.size() == paths.size());
    if (paths.isEmpty())
        return;
    QMutexLocker lock(&mutex);
    for (qsizetype i = 0; i < paths.size(); ++i)
        tasks.enqueue({ submitted++, paths.at(i), companions.value(i) });
    if (paths.size() == 1)
        work.wakeOne();
    else
        work.wakeAll();
}

PhotoRead ReaderPool::takeNext()
{
    return results.takeNext();
}

void ReaderPool::readLoop()
{
    for (;;) {
        Task task;
        {
            QMutexLocker lock(&mutex);
            while (tasks.isEmpty() && !closing)
                work.wait(&mutex);
            if (closing)
                return;
            task = tasks.dequeue();
        }
        PhotoRead read;
        if (!stopRequested()) {
            if (stepHook)
                stepHook(Step::Taken, task.sequence, task.path);
            if (task.companion)
                task.companion->beforeRead(task.path);
            read = PhotoRead::of(task.path);
            if (task.companion)
                task.companion->afterRead(task.path, read);
            if (stepHook)
                stepHook(Step::Read, task.sequence, task.path);
        }
        results.put(task.sequence, std::move(read));
        if (stepHook)
            stepHook(Step::HandedOver, task.sequence, task.path);
    }
}
