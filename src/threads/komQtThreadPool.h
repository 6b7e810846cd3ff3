// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOMQTTHREADPOOL_H
#define KO_KOMQTTHREADPOOL_H

#include "coreqt_export.h"
#include "platform/kom/komSmart.h"
#include "threads/PoolSnapshot.h"

#include <QList>
#include <QMultiMap>
#include <QObject>
#include <QSet>
#include <QTime>

#include <atomic>
#include <memory>

class QEventLoop;
class QTimer;
class komQtLock;

namespace ko
{

class IRunnable;
class JobPoolActivity;
class komQtWorkerThread;

/**
 * Runs ko::IRunnable jobs on worker threads created on demand up to a maximum,
 * relays their start and end, lets callers abort or re-prioritise queued jobs
 * and wait (with a time limit) for one job or for all of them.
 *
 * The pool is idle while at least one worker is free for a new job, busy otherwise.
 * A worker goes back to the idle list after each job even when more jobs wait in its
 * queue; the queries, the waits, changePriority() and requestAbort() ask busy workers
 * only, so those jobs are hidden from them until the worker is handed a new job.
 *
 * The pool lock is taken before any worker's queue lock, never the other way.
 * The pool's slots run in the pool's thread, which needs an event loop.
 * What the workers run, and the pool's counts, are also published without the
 * pool lock, for snapshots of a pool whose lock is held and for the stall watchdog.
 */
class COREQT_EXPORT komQtThreadPool : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(komQtThreadPool)

public:
    /**
     * A QThread::Priority in the low 11 bits; ScheduleLifo (0x800) asks for LIFO
     * order among equal priorities. Combine with operator|. The priority sets the
     * worker thread's priority while the job runs; queues keep arrival order.
     */
    enum SchedulePriority {
        /** QThread::IdlePriority. */
        ScheduleIdlePriority = 0,
        /** QThread::LowestPriority. */
        ScheduleLowestPriority = 1,
        /** QThread::LowPriority. */
        ScheduleLowPriority = 2,
        /** QThread::NormalPriority, the default. */
        ScheduleNormalPriority = 3,
        /** QThread::HighPriority. */
        ScheduleHighPriority = 4,
        /** QThread::HighestPriority. */
        ScheduleHighestPriority = 5,
        /** QThread::TimeCriticalPriority. */
        ScheduleTimeCriticalPriority = 6,
        /** QThread::InheritPriority: the worker keeps the priority it has. */
        ScheduleInheritPriority = 7,
        /** The bits that hold the priority. */
        SchedulePriorityMask = 0x7ff,
        /**
         * Asks for LIFO order among jobs of equal priority. Kept as it always was: queues keep
         * arrival order (see komQtWorkerThread::insertIndexOf()), so it changes nothing in
         * practice.
         */
        ScheduleLifo = 0x800
    };

    /**
     * A pool named @p name with at most @p maxThreads workers (0 or less: no limit). Kept as it
     * always was: it emits idle() before anyone can connect to it, although isIdle() stays false
     * until a first job has ended.
     */
    komQtThreadPool(const QString &name, int maxThreads, QObject *parent = nullptr);
    /**
     * Shuts down the busy workers, which finish their job in hand, drop their queues and delete
     * themselves. Kept as it always was: idle workers are not shut down and stay parked, with any
     * jobs still in their queues, until the process ends.
     */
    ~komQtThreadPool() override;

    /** The process-wide pool "ThreadPool" with QThread::idealThreadCount() workers, created on
     * first use. */
    static komQtThreadPool *globalInstance();
    /** Deletes the process-wide pool; false when there is none. */
    static bool deleteGlobalInstance();

    /** Draws the next job id; ids are process-wide, shared by all pools, and the first is 1. */
    int newJobId();

    /**
     * Clears the abort flag of @p job and queues it with @p priority under @p jobId (a negative id
     * draws a new one) on the most recently freed worker, a new one, or the least-loaded busy one;
     * returns the id. A caller's own id is used as given: a clash with an issued id is not
     * detected. A null job is refused (-1). When no worker thread can be started and none is
     * running, the job is flagged as aborted and its id returned.
     */
    virtual int schedule(kom::smart<IRunnable> job,
        SchedulePriority priority = ScheduleNormalPriority, int jobId = -1);
    /**
     * Moves the queued job @p jobId of a busy worker as komQtWorkerThread::changePriority() does
     * (to the back of its queue, keeping its old priority); true when some busy worker had it
     * queued.
     */
    virtual bool changePriority(int jobId, SchedulePriority priority);
    /**
     * Sets the maximum number of workers and discards idle workers above it; busy ones stay. Kept
     * as it always was: a maximum of 0 or less means no limit for new workers, yet discards every
     * idle worker.
     */
    virtual void setMaxThreads(int maxThreads);

    /**
     * Aborts the queued jobs of @p jobIds on the busy workers. An id leaves the set
     * when aborted, or as soon as one busy worker does not hold it; ids of running
     * jobs stay. Only busy workers are asked: a worker back in the idle list hides the
     * jobs still in its queue. An aborted job sends no end signal, so a worker left with
     * nothing but aborted jobs stays busy until it is given another job, and
     * waitForAllFinished(-1) waits that long: wait on the id of the last job that is
     * not aborted, or count jobFinished(), instead.
     */
    void requestAbort(QSet<int> &jobIds);

    /** Number of workers, idle and busy; a worker being discarded no longer counts. */
    int countThreads() const;
    /** Number of busy workers. */
    int countBusyThreads() const;
    /** True when at least one worker is free for a new job. */
    bool isIdle() const;
    /** When the pool last became idle; invalid while it is busy. Read without locking. */
    const QTime &isIdleSince() const;
    /** True when a busy worker runs @p jobId (busy workers only, see the class). */
    bool isRunning(int jobId) const;
    /** True when a busy worker has @p jobId queued and not aborted (busy workers only, see the
     * class). */
    bool isScheduled(int jobId) const;
    /** True when a busy worker runs or queues @p jobId (busy workers only, see the class). */
    bool isScheduledOrRunning(int jobId) const;
    /**
     * True when @p jobId was issued and no busy worker runs or queues it (busy workers only, see
     * the class); false for an id not issued yet.
     */
    bool isFinished(int jobId) const;

    /** For a non-negative @p timeout (ms), makes @p timer a precise single shot that quits @p loop.
     */
    void setupEventLoopTimer(QEventLoop &loop, QTimer &timer, long timeout);
    /**
     * Waits in a nested event loop until @p jobId ends (true) or @p timeout ms (-1: no limit)
     * pass (false). For an id that no busy worker holds it returns at once: true when the id was
     * issued, false otherwise. A worker back in the idle list hides the jobs still in its queue:
     * for those this returns true at once. A job aborted while it is waited for sends no end
     * signal, so the wait runs to its limit. To wait for a batch, wait on the id of its
     * last job (scheduled last, not aborted), or count jobFinished().
     * Kept as it always was: an unexpected end of the loop logs "Unexpected loop termination" at
     * level 3 here, at level 2 in waitForAllFinished().
     */
    bool waitForFinished(int jobId, long timeout = -1);
    /**
     * Waits in a nested event loop until no worker is busy (true) or @p timeout ms pass
     * (false, with "jobs in progress" logged at level 2 while workers are still busy; also false
     * when the last worker came free just as the time ran out). A worker back in the idle list
     * hides the jobs still in its queue, so this can return before they ran; a worker whose jobs
     * were all aborted stays busy until it is given another job, so with -1 this can wait forever.
     * Wait on the id of the last job (scheduled last, not aborted), or count jobFinished(),
     * instead. Kept as it always was: an unexpected end of the loop logs "Unexpected loop
     * termination" at level 2 here, at level 3 in waitForFinished().
     */
    bool waitForAllFinished(long timeout = -1);

    /**
     * The pool at this moment: its workers with their running job and queue, and its totals,
     * read under the pool lock and each worker's queue lock, so that they fit together.
     */
    JobPoolSnapshot snapshot() const;
    /**
     * As snapshot(), waiting at most @p lockTimeoutMs for the pool lock. When the lock is not
     * had by then, the result is marked lockBusy and holds what the workers publish without
     * it: which job each one runs, since when, and the totals.
     */
    JobPoolSnapshot snapshot(int lockTimeoutMs) const;

    /**
     * Watches for jobs that run longer than @p ms (0, the default, switches the watchdog off).
     * From a thread of its own it logs one warning per such job, "job 17 on Pool-Thread-2 has
     * been running for 5.0 s", and the job's end writes one message, "job 17 on Pool-Thread-2
     * finished after 7.3 s". Nothing else is logged, and nothing changes while it is off.
     */
    void setStallThreshold(int ms);
    /** The stall watchdog's threshold in milliseconds; 0 while it is off. */
    int stallThreshold() const;

Q_SIGNALS:
    /** A job started on a worker; relayed from the worker's thread. */
    void jobStarted(int jobId);
    /**
     * A job ended after @p elapsedTime ms. Kept as it always was: emitted twice per job, relayed
     * from the worker and again by reclaimThread(); listeners that count jobs count every second
     * one.
     */
    void jobFinished(int jobId, int elapsedTime);
    /** The pool has a free worker again (emitted by reclaimThread() and, once, by the constructor).
     */
    void idle();
    /** The last free worker was taken; a newly created worker never causes it. */
    void busy();

public Q_SLOTS:
    /**
     * Takes the most recently freed worker, or creates one below the maximum, and makes it busy;
     * null otherwise, and also when a new worker's thread cannot start. A new worker is named
     * "<pool>-Thread-<n>", moved to the pool's thread (which deletes it when it ends) and counted
     * in a level-1 log line "QtThreadPool: count worker threads: <n>".
     */
    komQtWorkerThread *allocateIdleThread();
    /** The busy worker with the smallest work load (the earliest on ties); null when none is busy.
     */
    komQtWorkerThread *allocateBusyThread();
    /**
     * Returns a worker (by default the sender) to the idle list after @p jobId ended, ends the
     * waits on that job and on all jobs, and emits jobFinished() a second time (see there). A
     * worker that was discarded meanwhile is not taken back.
     */
    void reclaimThread(int jobId, int elapsedTime = 0, komQtWorkerThread *thread = nullptr);
    /**
     * Takes a worker (by default the sender) out of the pool and shuts it down; a worker in neither
     * list is left alone. It never emits idle(), as it only shrinks the idle list.
     */
    void discardThread(komQtWorkerThread *thread = nullptr);

protected:
    /** Recursive; guards every member below. */
    std::unique_ptr<komQtLock> mLock;
    /** Workers free for a new job. */
    QList<komQtWorkerThread *> mIdleThreads;
    /** Workers handed a job whose end has not been reported. */
    QList<komQtWorkerThread *> mBusyThreads;
    /** Maximum number of workers; 0 or less: no limit. */
    int mMaxThreads;
    /**
     * The loops of waiting callers by job id, 0 for callers of waitForAllFinished();
     * each wait, in any thread and at any depth, has an entry of its own.
     */
    QMultiMap<int, QEventLoop *> mEventLoops;
    /** Started when the pool becomes idle, invalid while busy. */
    QTime mIdleSince;

    /** The next job id, shared by all pools. */
    static std::atomic<int> gJobSequence;
    /** The process-wide pool, or null. */
    static std::atomic<komQtThreadPool *> gInstance;

private:
    komQtWorkerThread *workerFromSender() const;
    JobPoolSnapshot snapshot_locked() const;

    std::unique_ptr<JobPoolActivity> mActivity; // read without the lock
};

/** Combines a priority with ScheduleLifo. */
inline komQtThreadPool::SchedulePriority operator|(
    komQtThreadPool::SchedulePriority a, komQtThreadPool::SchedulePriority b)
{
    return komQtThreadPool::SchedulePriority(int(a) | int(b));
}

} // namespace ko

#endif // KO_KOMQTTHREADPOOL_H
