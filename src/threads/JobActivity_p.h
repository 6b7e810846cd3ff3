// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_JOBACTIVITY_P_H
#define KO_JOBACTIVITY_P_H

#include "threads/PoolSnapshot.h"

#include <QMutex>
#include <QString>
#include <QVector>
#include <QWaitCondition>

#include <atomic>
#include <memory>

class QThread;

namespace ko
{

/** The monotonic clock of the job pool's running times, queue ages and watchdog, in nanoseconds. */
qint64 monotonicNsecs();

/** Whole milliseconds from @p fromNs to @p toNs on the monotonic clock; 0 when @p toNs is earlier.
 */
qint64 msecsBetween(qint64 fromNs, qint64 toNs);

/** A worker's running job as read without a lock. */
struct RunningJob
{
    quint64 run = 0; // the worker's run word while the job runs: identifies this run of the job
    int jobId = -1;
    int priority = 3;
    qint64 sinceNs = 0;
};

/**
 * What a job worker publishes about the job it runs, for readers that take none of the pool's or
 * the worker's locks: the console when the pool lock is busy, and the stall watchdog. Only the
 * worker writes it, a few stores per job; readers retry until they read one job whole.
 *
 * The stall lines: the watchdog writes "has been running" under mStallMutex and leaves
 * mStallReported set; the worker, having published the job's end, looks at that flag and writes
 * "finished after" under the same mutex, after the watchdog's line. The end and the flag are both
 * sequentially consistent, so one of the two always sees the other: a job whose end the watchdog
 * missed is reported, and its end line follows; a report that comes too late is withdrawn.
 */
class WorkerActivity
{
public:
    /** The activity of the worker named @p name. */
    explicit WorkerActivity(const QString &name);

    /** The worker's name. */
    const QString &name() const { return mName; }
    /** Called by the worker before a job runs; @p sinceNs is its start on the monotonic clock. */
    void start(int jobId, int priority, qint64 sinceNs);
    /** Called by the worker after the job ended; writes the end line of a job reported as stalled.
     */
    void finish();
    /** Reads the running job into @p job; false when none runs (or jobs change too fast to read
     * one). */
    bool running(RunningJob *job) const;
    /** Jobs started plus jobs finished so far: odd while one runs. One read gives both counts. */
    quint64 runs() const;

    /** True while the running job has been reported as stalled and its end line is due. */
    bool stallReported() const;
    /** Watchdog: writes the stall line of @p job, seen at @p nowNs, unless it has ended meanwhile.
     */
    void reportStall(const RunningJob &job, qint64 nowNs);

    /** Called when the worker's loop has ended: it runs no more jobs. */
    void end();
    /** True after end(). */
    bool hasEnded() const;

private:
    const QString mName;
    std::atomic<quint64> mRuns { 0 }; // jobs started plus jobs finished: odd while one runs
    std::atomic<int> mJobId { -1 };
    std::atomic<int> mPriority { 3 };
    std::atomic<qint64> mSinceNs { 0 };
    std::atomic<bool> mStallReported { false };
    std::atomic<bool> mEnded { false };
    QMutex mStallMutex;
    // The running job as the worker itself knows it, for its end line; worker thread only.
    int mOwnJobId = -1;
    qint64 mOwnSinceNs = 0;
};

/**
 * A job pool's state that is read without the pool lock: its name and maximum, its counts, the
 * activity of its workers, and the stall watchdog, which runs in a thread of its own. Its mutexes
 * are leaves: nothing else is locked while one is held, apart from the log's.
 */
class JobPoolActivity
{
public:
    /** The activity of the pool named @p name with at most @p maxThreads workers. */
    JobPoolActivity(const QString &name, int maxThreads);
    /** Stops the watchdog. */
    ~JobPoolActivity();

    JobPoolActivity(const JobPoolActivity &) = delete;
    JobPoolActivity &operator=(const JobPoolActivity &) = delete;

    /** Mirrors the pool's maximum. */
    std::atomic<int> maxThreads;
    /** Jobs handed to a worker. */
    std::atomic<quint64> scheduled { 0 };
    /** Queued jobs taken out by an abort request. */
    std::atomic<quint64> abortedWhileQueued { 0 };
    /** Queued jobs moved by a priority change. */
    std::atomic<quint64> reprioritised { 0 };

    /** Adds a new worker's activity. */
    void addWorker(const std::shared_ptr<WorkerActivity> &worker);
    /** The workers whose loop has not ended, in creation order. */
    QVector<std::shared_ptr<WorkerActivity>> workers();

    /** Fills in the name, maximum, watchdog threshold and totals of @p snapshot. */
    void describe(JobPoolSnapshot *snapshot);
    /** The pool as seen without its lock, after waiting @p lockWaitMs for it in vain. */
    JobPoolSnapshot snapshotWithoutLock(int lockWaitMs);

    /** Sets the watchdog's threshold; 0 stops it. */
    void setStallThreshold(int ms);
    /** The watchdog's threshold; 0 when it is off. */
    int stallThreshold() const;

private:
    void prune_locked();
    void watch();
    qint64 reportStalls(qint64 thresholdNs);

    const QString mName;
    QMutex mWorkersMutex;
    QVector<std::shared_ptr<WorkerActivity>> mWorkers;
    quint64 mRetiredStarted = 0;
    quint64 mRetiredFinished = 0;

    QMutex mControlMutex; // serialises starting and stopping the watchdog thread
    std::unique_ptr<QThread> mWatchdog;
    QMutex mWatchMutex;
    QWaitCondition mWake;
    std::atomic<int> mThresholdMs { 0 };
    quint64 mSettings
        = 0; // counts threshold changes, so that the watchdog sees one made while it looked
    bool mStopWatching = false;
};

/** Fills the running job of @p worker from @p job, seen at @p nowNs. */
void describeRunning(JobWorkerSnapshot *worker, const RunningJob &job, qint64 nowNs);

} // namespace ko

#endif // KO_JOBACTIVITY_P_H
