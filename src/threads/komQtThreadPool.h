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
     * order among equal priorities. Combine with operator|.
     */
    enum SchedulePriority {
        ScheduleIdlePriority = 0,
        ScheduleLowestPriority = 1,
        ScheduleLowPriority = 2,
        ScheduleNormalPriority = 3,
        ScheduleHighPriority = 4,
        ScheduleHighestPriority = 5,
        ScheduleTimeCriticalPriority = 6,
        ScheduleInheritPriority = 7,
        SchedulePriorityMask = 0x7ff,
        ScheduleLifo = 0x800
    };

    /** A pool named @p name with at most @p maxThreads workers (0 or less: no limit); emits idle(). */
    komQtThreadPool(const QString& name, int maxThreads, QObject* parent = nullptr);
    /** Shuts down the busy workers, which finish their job in hand and delete themselves. */
    ~komQtThreadPool() override;

    /** The process-wide pool "ThreadPool" with QThread::idealThreadCount() workers, created on first use. */
    static komQtThreadPool* globalInstance();
    /** Deletes the process-wide pool; false when there is none. */
    static bool deleteGlobalInstance();

    /** The next process-wide job id (the first is 1). */
    int newJobId();

    /**
     * Queues @p job with @p priority under @p jobId (a negative id draws a new one)
     * on a free worker, a new one, or the least-loaded busy one; returns the id.
     * A null job is refused (-1). When no worker thread can be started and none is
     * running, the job is flagged as aborted and its id returned.
     */
    virtual int schedule(
        kom::smart<IRunnable> job, SchedulePriority priority = ScheduleNormalPriority, int jobId = -1);
    /** Moves the queued job @p jobId of a busy worker; true when some busy worker had it queued. */
    virtual bool changePriority(int jobId, SchedulePriority priority);
    /** Sets the maximum number of workers and discards idle workers above it. */
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
    void requestAbort(QSet<int>& jobIds);

    /** Number of workers, idle and busy. */
    int countThreads() const;
    /** Number of busy workers. */
    int countBusyThreads() const;
    /** True when at least one worker is free for a new job. */
    bool isIdle() const;
    /** When the pool last became idle; invalid while it is busy. Read without locking. */
    const QTime& isIdleSince() const;
    /** True when a busy worker runs @p jobId. */
    bool isRunning(int jobId) const;
    /** True when a busy worker has @p jobId queued and not aborted. */
    bool isScheduled(int jobId) const;
    /** True when a busy worker runs or queues @p jobId. */
    bool isScheduledOrRunning(int jobId) const;
    /** True when @p jobId was issued and no busy worker runs or queues it. */
    bool isFinished(int jobId) const;

    /** For a non-negative @p timeout (ms), makes @p timer a precise single shot that quits @p loop. */
    void setupEventLoopTimer(QEventLoop& loop, QTimer& timer, long timeout);
    /**
     * Waits in a nested event loop until @p jobId ends (true) or @p timeout ms (-1: no limit)
     * pass (false). A worker back in the idle list hides the jobs still in its queue: for
     * those this returns true at once. A job aborted while it is waited for sends no end
     * signal, so the wait runs to its limit. To wait for a batch, wait on the id of its
     * last job (scheduled last, not aborted), or count jobFinished().
     */
    bool waitForFinished(int jobId, long timeout = -1);
    /**
     * Waits in a nested event loop until no worker is busy (true) or @p timeout ms pass
     * (false). A worker back in the idle list hides the jobs still in its queue, so this
     * can return before they ran; a worker whose jobs were all aborted stays busy until it
     * is given another job, so with -1 this can wait forever. Wait on the id of the last
     * job (scheduled last, not aborted), or count jobFinished(), instead.
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
    /** A job started on a worker. */
    void jobStarted(int jobId);
    /** A job ended after @p elapsedTime ms; emitted twice per job (relayed, then from reclaimThread()). */
    void jobFinished(int jobId, int elapsedTime);
    /** The pool has a free worker again. */
    void idle();
    /** The last free worker was taken. */
    void busy();

public Q_SLOTS:
    /** Takes a free worker, or creates one below the maximum, and makes it busy; null otherwise. */
    komQtWorkerThread* allocateIdleThread();
    /** The busy worker with the smallest work load (the earliest on ties); null when none is busy. */
    komQtWorkerThread* allocateBusyThread();
    /** Returns a worker (by default the sender) to the idle list after @p jobId ended; ends waits on it. */
    void reclaimThread(int jobId, int elapsedTime = 0, komQtWorkerThread* thread = nullptr);
    /** Takes a worker (by default the sender) out of the pool and shuts it down. */
    void discardThread(komQtWorkerThread* thread = nullptr);

protected:
    /** Recursive; guards every member below. */
    std::unique_ptr<komQtLock> mLock;
    /** Workers free for a new job. */
    QList<komQtWorkerThread*> mIdleThreads;
    /** Workers handed a job whose end has not been reported. */
    QList<komQtWorkerThread*> mBusyThreads;
    /** Maximum number of workers; 0 or less: no limit. */
    int mMaxThreads;
    /**
     * The loops of waiting callers by job id, 0 for callers of waitForAllFinished();
     * each wait, in any thread and at any depth, has an entry of its own.
     */
    QMultiMap<int, QEventLoop*> mEventLoops;
    /** Started when the pool becomes idle, invalid while busy. */
    QTime mIdleSince;

    /** The next job id, shared by all pools. */
    static std::atomic<int> gJobSequence;
    /** The process-wide pool, or null. */
    static std::atomic<komQtThreadPool*> gInstance;

private:
    komQtWorkerThread* workerFromSender() const;
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
