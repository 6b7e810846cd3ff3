// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOMQTWORKERTHREAD_H
#define KO_KOMQTWORKERTHREAD_H

#include "compat/QtCompat.h"
#include "coreqt_export.h"
#include "platform/kom/komSmart.h"
#include "threads/PoolSnapshot.h"
#include "threads/komQtThreadPool.h"

#include <QList>
#include <QThread>

#include <atomic>
#include <memory>

class QMutex;
class QWaitCondition;

namespace ko
{

class IRunnable;
class WorkerActivity;

/**
 * One thread of the job pool: runs the jobs of its queue one at a time, in the
 * order they were scheduled, and reports each job's start and end by signals.
 *
 * Lock order: mWaitMutex before mQueueMutex. mWaitMutex is held while the loop
 * looks at the queue and waits, never while a job runs, so schedule() and
 * shutDown() can take it around their wake-up without waiting for a job.
 * Functions whose names end in _locked expect mQueueMutex held.
 */
class COREQT_EXPORT komQtWorkerThread : public QThread
{
    Q_OBJECT
    Q_DISABLE_COPY(komQtWorkerThread)

public:
    /** See komQtThreadPool::SchedulePriority. */
    typedef komQtThreadPool::SchedulePriority SchedulePriority;

    /**
     * A queued job: its id (-1: none), its handle and its priority (masked with 0x7ff); then the
     * LIFO bit that the masked priority drops and the time it was queued, for snapshots.
     */
    struct COREQT_EXPORT JobEntry
    {
        /** An entry that holds no job. */
        JobEntry();
        /** An entry for @p runnable under @p jobId; @p priority is masked with 0x7ff. */
        JobEntry(int jobId, const kom::smart<IRunnable> &runnable, SchedulePriority priority);
        /** Drops the job: id -1, an empty handle, priority 3. */
        void clear();

        /** The pool-wide job id; -1 when the entry holds no job. */
        int jobId;
        /** The job's handle, one of the references that keep the job alive. */
        kom::smart<IRunnable> runnable;
        /** Scheduling priority, also the thread's priority while the job runs. */
        SchedulePriority priority;
        /** True when it was scheduled with komQtThreadPool::ScheduleLifo. */
        bool lifo;
        /** When it was queued, on the job pool's monotonic clock (ns); 0 for an entry without a
         * job. */
        qint64 queuedNs;
    };

    /** A worker named @p name; the pool starts it. */
    explicit komQtWorkerThread(const QString &name, QObject *parent = nullptr);
    /** Drops the queue; waits for the thread if it is still finishing. */
    ~komQtWorkerThread() override;

    /** On different priorities the higher first, otherwise the smaller id first. */
    static bool lessThanByFifoPriority(const JobEntry &a, const JobEntry &b);
    /** On different priorities the higher first, otherwise the greater id first. */
    static bool lessThanByLifoPriority(const JobEntry &a, const JobEntry &b);

    /**
     * Queues @p runnable under @p jobId and wakes the thread; a QObject job is moved to this
     * thread. The job goes to the back of the queue whatever its priority (see insertIndexOf());
     * the priority only sets the thread's priority while the job runs.
     */
    void schedule(int jobId, kom::smart<IRunnable> runnable, SchedulePriority priority);
    /**
     * Sets the abort flag of the queued job @p jobId and drops it, so it sends neither jobStarted()
     * nor jobFinished(); false when it is not queued (a running job is not touched).
     */
    bool requestAbort(int jobId);
    /**
     * Moves the queued job @p jobId to the place insertIndexOf(@p priority) gives it, which is the
     * back of the queue; true when it is queued. Kept as it always was: the job keeps the priority
     * it was scheduled with, only its place changes. An id below 1 and a running job give false.
     */
    bool changePriority(int jobId, SchedulePriority priority);
    /** True while a job with an id of 1 or more runs. */
    bool isRunning() const;
    /** True while job @p jobId runs. */
    bool isRunning(int jobId) const;
    /** True when @p jobId is queued and not aborted. */
    bool isScheduled(int jobId) const;
    /** True when @p jobId runs, or is queued and not aborted. */
    bool isScheduledOrRunning(int jobId) const;
    /** Queued jobs plus the running one: 0 for an idle worker, 3 with one job running and two
     * queued. */
    int workLoad() const;
    /** The running job and the queue, read under the queue lock; busy is left to the pool. */
    JobWorkerSnapshot snapshot() const;
    /**
     * Drops the queue without a signal for the dropped jobs and ends the loop after the job in
     * hand, which finishes; the worker then logs "<name> finished." at level 1 and deletes itself.
     */
    void shutDown();

Q_SIGNALS:
    /** Emitted in this thread before a job runs; never for a job aborted while queued. */
    void jobStarted(int jobId);
    /**
     * Emitted in this thread after a job ran for @p elapsedTime ms (also when it threw). The job no
     * longer counts as running when this is emitted, so a receiver never sees it still running.
     */
    void jobFinished(int jobId, int elapsedTime);

protected:
    /**
     * Where a job of @p priority goes in the queue (the caller holds mQueueMutex). Kept as it
     * always was: an exact-match search that no queued job matches, so the answer is the queue's
     * end and jobs run in arrival order whatever their priority.
     */
    int insertIndexOf(SchedulePriority priority) const;
    /** Position of the queued job @p jobId, or -1 (the caller holds mQueueMutex). */
    int indexOf(int jobId) const;
    /**
     * The thread's loop: runs queued jobs at their priority, drops aborted ones silently, sleeps on
     * an empty queue, ends after shutDown(). A job that throws is caught and logged at level 3.
     */
    void run() override;

private:
    friend class komQtThreadPool; // shares the worker's activity with the pool's

    bool isScheduled_locked(int jobId) const;
    int workLoad_locked() const;
    bool takeNextJob_locked(JobEntry &next);
    void runJob(const JobEntry &entry);

    QList<JobEntry> mJobs;
    JobEntry mCurrent;
    std::unique_ptr<QWaitCondition> mWaitCondition;
    std::unique_ptr<QMutex> mWaitMutex;
    std::unique_ptr<QMutex> mQueueMutex;
    std::unique_ptr<JobTimer> mJobTimer;
    std::atomic<bool> mShutDown;
    std::shared_ptr<WorkerActivity> mActivity; // what it runs, published for lock-free readers
};

} // namespace ko

#endif // KO_KOMQTWORKERTHREAD_H
