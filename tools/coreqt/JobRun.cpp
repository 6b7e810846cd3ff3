// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "JobRun.h"

#include "platform/kom/komSmart.h"
#include "threads/IRunnable.h"
#include "threads/komQtThreadPool.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMutex>
#include <QPointer>
#include <QSet>
#include <QThread>
#include <QTimer>

#include <atomic>

namespace tool
{

namespace
{

// What the jobs of one run share: the count of jobs done, the loop to end after the last one,
// and the workers they ran on.
struct Tally
{
    int total = 0;
    std::atomic<int> done { 0 };
    QEventLoop *loop = nullptr;
    QMutex mutex;
    QSet<QThread *> workers;
    QElapsedTimer clock;
    std::atomic<qint64> lastEnd { 0 };
};

class Job : public ko::IRunnable
{
public:
    Job(Tally &tally, const std::function<void(int)> &work)
        : mTally(tally)
        , mWork(work)
    { }

    void run(int jobId, ko::JobTimer &) override
    {
        {
            QMutexLocker locker(&mTally.mutex);
            mTally.workers.insert(QThread::currentThread());
        }
        mWork(jobId);
        if (++mTally.done == mTally.total) {
            mTally.lastEnd = mTally.clock.nsecsElapsed();
            QMetaObject::invokeMethod(mTally.loop, "quit", Qt::QueuedConnection);
        }
    }

private:
    Tally &mTally;
    const std::function<void(int)> &mWork;
};

// Workers delete themselves with deleteLater() from their own thread when their loop ends; the
// deletion is posted to this thread, whose event loop runs here until the last one is gone.
void waitUntilDeleted(const QList<QPointer<QThread>> &workers)
{
    QEventLoop loop;
    int alive = 0;
    for (const QPointer<QThread> &worker : workers) {
        if (!worker)
            continue;
        ++alive;
        QObject::connect(worker, &QObject::destroyed, &loop, [&loop, &alive] {
            if (--alive == 0)
                loop.quit();
        });
    }
    QTimer::singleShot(10000, &loop, &QEventLoop::quit);
    if (alive > 0)
        loop.exec();
}

} // namespace

qint64 runJobs(const QString &name, int jobs, int threads, const std::function<void(int)> &work,
    const std::function<void(int)> &progress,
    const std::function<void(ko::komQtThreadPool &)> &setUp)
{
    if (jobs <= 0)
        return 0;
    QEventLoop loop;
    Tally tally;
    tally.total = jobs;
    tally.loop = &loop;
    QTimer ticker;
    if (progress) {
        QObject::connect(&ticker, &QTimer::timeout, [&tally, &progress] { progress(tally.done); });
        ticker.start(100);
    }

    ko::komQtThreadPool pool(name, threads);
    if (setUp)
        setUp(pool);
    tally.clock.start();
    for (int i = 0; i < jobs; ++i)
        pool.schedule(kom::smart<ko::IRunnable>(new Job(tally, work)));
    loop.exec();
    ticker.stop();
    if (progress)
        progress(tally.done);

    // Every job has ended; the pool takes its workers back in this thread's event loop.
    pool.waitForAllFinished(10000);
    QList<QPointer<QThread>> workers;
    for (QThread *worker : qAsConst(tally.workers))
        workers << worker;
    // A maximum of 0 means no limit, and any worker count exceeds it: every idle worker is
    // discarded and shut down, where deleting the pool would leave idle workers parked.
    pool.setMaxThreads(0);
    waitUntilDeleted(workers);
    return tally.lastEnd;
}

} // namespace tool
