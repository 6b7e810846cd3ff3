// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/JobActivity_p.h"

#include "log/LogQt.h"

#include <QMutexLocker>
#include <QThread>

#include <algorithm>
#include <chrono>

namespace ko
{

namespace
{

// A reader gives up after this many torn reads: the worker then runs jobs too short to matter.
constexpr int kReadAttempts = 16;

QString seconds(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e9, 'f', 1);
}

} // namespace

qint64 monotonicNsecs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

qint64 msecsBetween(qint64 fromNs, qint64 toNs)
{
    return std::max<qint64>(0, (toNs - fromNs) / 1000000);
}

WorkerActivity::WorkerActivity(const QString &name)
    : mName(name)
{ }

void WorkerActivity::start(int jobId, int priority, qint64 sinceNs)
{
    mOwnJobId = jobId;
    mOwnSinceNs = sinceNs;
    const quint64 runs = mRuns.load(std::memory_order_relaxed);
    // A reader that sees one of the stores below also sees the end of the job before.
    std::atomic_thread_fence(std::memory_order_release);
    mJobId.store(jobId, std::memory_order_relaxed);
    mPriority.store(priority, std::memory_order_relaxed);
    mSinceNs.store(sinceNs, std::memory_order_relaxed);
    mRuns.store(runs + 1, std::memory_order_release);
}

void WorkerActivity::finish()
{
    mRuns.store(mRuns.load(std::memory_order_relaxed) + 1);
    if (!mStallReported.load())
        return;
    QMutexLocker lock(&mStallMutex); // the watchdog's line is written first
    if (!mStallReported.load(std::memory_order_relaxed))
        return; // the report came too late and was withdrawn
    LogLine(Log::Message) << "job " << mOwnJobId << " on " << mName << " finished after "
                          << seconds(monotonicNsecs() - mOwnSinceNs) << " s";
    mStallReported.store(false, std::memory_order_relaxed);
}

bool WorkerActivity::running(RunningJob *job) const
{
    for (int attempt = 0; attempt < kReadAttempts; ++attempt) {
        const quint64 run = mRuns.load(std::memory_order_acquire);
        if ((run & 1) == 0)
            return false;
        job->jobId = mJobId.load(std::memory_order_relaxed);
        job->priority = mPriority.load(std::memory_order_relaxed);
        job->sinceNs = mSinceNs.load(std::memory_order_relaxed);
        std::atomic_thread_fence(std::memory_order_acquire);
        if (mRuns.load(std::memory_order_relaxed) == run) {
            job->run = run;
            return true;
        }
    }
    return false;
}

quint64 WorkerActivity::runs() const
{
    return mRuns.load(std::memory_order_acquire);
}

bool WorkerActivity::stallReported() const
{
    return mStallReported.load(std::memory_order_relaxed);
}

void WorkerActivity::reportStall(const RunningJob &job, qint64 nowNs)
{
    QMutexLocker lock(&mStallMutex);
    mStallReported.store(true);
    if (mRuns.load() != job.run) {
        mStallReported.store(false, std::memory_order_relaxed); // it ended, or another job runs
        return;
    }
    LogLine(Log::Warning) << "job " << job.jobId << " on " << mName << " has been running for "
                          << seconds(nowNs - job.sinceNs) << " s";
}

void WorkerActivity::end()
{
    mEnded.store(true, std::memory_order_release);
}

bool WorkerActivity::hasEnded() const
{
    return mEnded.load(std::memory_order_acquire);
}

void describeRunning(JobWorkerSnapshot *worker, const RunningJob &job, qint64 nowNs)
{
    worker->runningJobId = job.jobId;
    worker->runningPriority = job.priority;
    worker->runningMs = msecsBetween(job.sinceNs, nowNs);
}

JobPoolActivity::JobPoolActivity(const QString &name, int max)
    : maxThreads(max)
    , mName(name)
{ }

JobPoolActivity::~JobPoolActivity()
{
    setStallThreshold(0);
}

void JobPoolActivity::addWorker(const std::shared_ptr<WorkerActivity> &worker)
{
    QMutexLocker lock(&mWorkersMutex);
    prune_locked();
    mWorkers.append(worker);
}

void JobPoolActivity::prune_locked()
{
    // The counts of workers that have ended stay in the totals.
    const auto ended = std::stable_partition(mWorkers.begin(), mWorkers.end(),
        [](const std::shared_ptr<WorkerActivity> &worker) { return !worker->hasEnded(); });
    for (auto it = ended; it != mWorkers.end(); ++it) {
        const quint64 runs = (*it)->runs();
        mRetiredStarted += (runs + 1) / 2;
        mRetiredFinished += runs / 2;
    }
    mWorkers.erase(ended, mWorkers.end());
}

QVector<std::shared_ptr<WorkerActivity>> JobPoolActivity::workers()
{
    QMutexLocker lock(&mWorkersMutex);
    prune_locked();
    return mWorkers;
}

void JobPoolActivity::describe(JobPoolSnapshot *snapshot)
{
    snapshot->name = mName;
    snapshot->maxThreads = maxThreads.load(std::memory_order_relaxed);
    snapshot->stallThresholdMs = stallThreshold();
    JobPoolTotals &totals = snapshot->totals;
    totals.scheduled = scheduled.load(std::memory_order_relaxed);
    totals.abortedWhileQueued = abortedWhileQueued.load(std::memory_order_relaxed);
    totals.reprioritised = reprioritised.load(std::memory_order_relaxed);
    QMutexLocker lock(&mWorkersMutex);
    prune_locked();
    // Each worker's count is read once, so that no job counts as finished but not started.
    totals.started = mRetiredStarted;
    totals.finished = mRetiredFinished;
    for (const std::shared_ptr<WorkerActivity> &worker : qAsConst(mWorkers)) {
        const quint64 runs = worker->runs();
        totals.started += (runs + 1) / 2;
        totals.finished += runs / 2;
    }
}

JobPoolSnapshot JobPoolActivity::snapshotWithoutLock(int lockWaitMs)
{
    JobPoolSnapshot snapshot;
    describe(&snapshot);
    snapshot.lockBusy = true;
    snapshot.lockWaitMs = lockWaitMs;
    const qint64 now = monotonicNsecs();
    for (const std::shared_ptr<WorkerActivity> &activity : workers()) {
        JobWorkerSnapshot worker;
        worker.name = activity->name();
        worker.workLoad = -1;
        RunningJob job;
        worker.busy = activity->running(&job);
        if (worker.busy)
            describeRunning(&worker, job, now);
        snapshot.workers.append(worker);
    }
    return snapshot;
}

int JobPoolActivity::stallThreshold() const
{
    return mThresholdMs.load(std::memory_order_relaxed);
}

void JobPoolActivity::setStallThreshold(int ms)
{
    // A negative threshold is outside the contract: it switches the watchdog off like 0.
    ms = std::max(ms, 0);
    QMutexLocker control(&mControlMutex);
    {
        QMutexLocker lock(&mWatchMutex);
        mThresholdMs.store(ms, std::memory_order_relaxed);
        ++mSettings;
        mStopWatching = ms == 0;
        mWake.wakeAll();
    }
    if (ms == 0 && mWatchdog) {
        mWatchdog->wait();
        mWatchdog.reset();
    } else if (ms > 0 && !mWatchdog) {
        mWatchdog.reset(QThread::create([this]() { watch(); }));
        mWatchdog->setObjectName(mName + QStringLiteral("-Watchdog"));
        mWatchdog->start();
    }
}

void JobPoolActivity::watch()
{
    QMutexLocker lock(&mWatchMutex);
    while (!mStopWatching) {
        const quint64 settings = mSettings;
        const qint64 thresholdNs = qint64(mThresholdMs.load(std::memory_order_relaxed)) * 1000000;
        lock.unlock();
        const qint64 next = reportStalls(thresholdNs);
        lock.relock();
        const qint64 waitNs = next - monotonicNsecs();
        if (!mStopWatching && settings == mSettings && waitNs > 0)
            mWake.wait(&mWatchMutex, (unsigned long)((waitNs + 999999) / 1000000));
    }
}

// Reports every running job that has reached the threshold and is not reported yet; returns when
// to look again: at the next running job's deadline, or one threshold from now, as a job that
// starts later cannot reach it before.
qint64 JobPoolActivity::reportStalls(qint64 thresholdNs)
{
    const qint64 now = monotonicNsecs();
    qint64 next = now + thresholdNs;
    for (const std::shared_ptr<WorkerActivity> &worker : workers()) {
        RunningJob job;
        if (!worker->running(&job) || worker->stallReported())
            continue;
        const qint64 deadline = job.sinceNs + thresholdNs;
        if (deadline > now)
            next = std::min(next, deadline);
        else
            worker->reportStall(job, now);
    }
    return next;
}

} // namespace ko
