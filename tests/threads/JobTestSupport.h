// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TESTS_JOBTESTSUPPORT_H
#define COREQT_TESTS_JOBTESTSUPPORT_H

#include "kom/komQtLock.h"
#include "threads/IRunnable.h"
#include "threads/komQtThreadPool.h"
#include "threads/komQtWorkerThread.h"

#include <QPointer>
#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <functional>

/** Processes events until @p done is true or @p timeoutMs pass. */
inline bool spinUntil(const std::function<bool()> &done, int timeoutMs = 10000)
{
    return QTest::qWaitFor(done, timeoutMs);
}

/** A job that records where and how it ran; it may hold at a gate or sleep first. */
struct RecordingJob : ko::IRunnable
{
    void run(int jobId, ko::JobTimer &timer) override
    {
        mThread = QThread::currentThread();
        mThreadName = mThread->objectName();
        mPriority = mThread->priority(); // Qt keeps values above InheritPriority too
        mTimerLag = int(timer.elapsed());
        if (mNewPriority != QThread::InheritPriority)
            mThread->setPriority(mNewPriority);
        mStarted.release();
        if (mGate)
            mGate->acquire();
        QThread::msleep(mSleepMs);
        if (mOrder)
            *mOrder << jobId; // one worker at a time writes here
        ++mRuns;
    }
    bool waitStarted() { return mStarted.tryAcquire(1, 10000); }

    QSemaphore *mGate = nullptr;
    int mSleepMs = 0;
    QList<int> *mOrder = nullptr;
    QSemaphore mStarted;
    std::atomic<int> mRuns { 0 };
    QPointer<QThread> mThread;
    QString mThreadName;
    int mPriority = QThread::InheritPriority;
    QThread::Priority mNewPriority
        = QThread::InheritPriority; // given to its own thread, unless Inherit
    int mTimerLag = -1; // ms from the job timer's start to the job's own look at the clock
};

/** A job that only counts its runs, into a counter shared by many jobs. */
struct TickJob : ko::IRunnable
{
    explicit TickJob(std::atomic<int> &runs)
        : mRuns(runs)
    { }
    void run(int, ko::JobTimer &) override { ++mRuns; }
    std::atomic<int> &mRuns;
};

/** A started worker outside any pool, shut down at the end. */
struct Worker
{
    QPointer<ko::komQtWorkerThread> thread = new ko::komQtWorkerThread(QStringLiteral("Unit"));
    QList<int> order;

    Worker() { thread->start(); }
    ~Worker()
    {
        if (thread)
            thread->shutDown();
        spinUntil([this]() { return thread.isNull(); });
    }
    kom::smart<RecordingJob> add(int id, int priority = 3, QSemaphore *gate = nullptr)
    {
        kom::smart<RecordingJob> job(new RecordingJob);
        job->mGate = gate;
        job->mOrder = &order;
        thread->schedule(id, job, ko::komQtThreadPool::SchedulePriority(priority));
        return job;
    }
};

/** A pool whose internals a test can reach. */
struct TestPool : ko::komQtThreadPool
{
    explicit TestPool(const QString &name = QStringLiteral("Test"), int max = 2)
        : komQtThreadPool(name, max)
    { }
    QList<QPointer<ko::komQtWorkerThread>> workers() const
    {
        const QList<ko::komQtWorkerThread *> all = mIdleThreads + mBusyThreads;
        return QList<QPointer<ko::komQtWorkerThread>>(all.begin(), all.end());
    }
    /** Queued and running jobs of every worker, idle or busy. */
    int totalWorkLoad() const
    {
        QMutexLocker locker(mLock.get());
        int load = 0;
        for (ko::komQtWorkerThread *thread : mIdleThreads + mBusyThreads)
            load += thread->workLoad();
        return load;
    }
    /** The pool lock as a plain QMutex, for a test that holds it from another thread. */
    QMutex &poolLock() { return *mLock; }
    void exitWaitLoop(int key, int code)
    {
        QMutexLocker locker(mLock.get());
        for (QEventLoop *loop : mEventLoops.values(key))
            loop->exit(code);
    }
    /**
     * Once no job is left, discards every worker and waits until they have deleted themselves.
     * Busy ones too: a worker whose last job was aborted while queued never reports an end, so
     * it stays in the busy list.
     */
    bool retire(int timeoutMs = 10000)
    {
        const auto all = workers();
        if (!spinUntil([this]() { return totalWorkLoad() == 0; }, timeoutMs))
            return false;
        for (ko::komQtWorkerThread *thread : all)
            discardThread(thread);
        return spinUntil([&all]() { return all.count(nullptr) == all.size(); }, timeoutMs);
    }
};

/** Schedules a new RecordingJob on @p pool; @p id receives the job id. */
inline kom::smart<RecordingJob> scheduleJob(
    ko::komQtThreadPool &pool, int &id, QSemaphore *gate = nullptr, int sleepMs = 0)
{
    kom::smart<RecordingJob> job(new RecordingJob);
    job->mGate = gate;
    job->mSleepMs = sleepMs;
    id = pool.schedule(job);
    return job;
}

#endif // COREQT_TESTS_JOBTESTSUPPORT_H
