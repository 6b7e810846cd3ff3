// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/komQtWorkerThread.h"

#include "compat/QtCompat_p.h"
#include "log/LogQt.h"
#include "threads/CaughtException_p.h"
#include "threads/IRunnable.h"
#include "threads/JobActivity_p.h"

#include <QMutex>
#include <QMutexLocker>
#include <QWaitCondition>

#include <algorithm>
#include <climits>
#include <iterator>

#include <pthread.h>

namespace ko
{

namespace
{

komQtWorkerThread::SchedulePriority masked(int priority)
{
    return komQtWorkerThread::SchedulePriority(priority & komQtThreadPool::SchedulePriorityMask);
}

// Gives the calling worker thread a job's priority with QThread::setPriority(), before every job.
// That call costs three system calls, so it is left out when the thread is still exactly as the
// same call left it for an earlier job: Qt reports that priority, and the scheduling policy and
// parameter, as the C library reports them, are the ones the call produced. A job that changed its
// thread's priority through Qt or the C library is therefore seen, and the call is made again.
class JobPriority
{
public:
    void apply(QThread *thread, int priority)
    {
        // InheritPriority is passed on every time: Qt refuses it with a warning and keeps the
        // priority.
        if (priority == mPriority && priority != QThread::InheritPriority
            && thread->priority() == priority && scheduling() == mScheduling)
            return;
        thread->setPriority(QThread::Priority(priority));
        mPriority = priority;
        mScheduling = scheduling();
    }

private:
    static QPair<int, int> scheduling()
    {
        int policy = -1;
        sched_param parameter {};
        pthread_getschedparam(pthread_self(), &policy, &parameter);
        return qMakePair(policy, parameter.sched_priority);
    }

    int mPriority = -1;
    QPair<int, int> mScheduling;
};

} // namespace

komQtWorkerThread::JobEntry::JobEntry()
{
    clear();
}

komQtWorkerThread::JobEntry::JobEntry(
    int id, const kom::smart<IRunnable> &job, SchedulePriority prio)
    : jobId(id)
    , runnable(job)
    , priority(masked(prio))
    , lifo((prio & komQtThreadPool::ScheduleLifo) != 0)
    , queuedNs(monotonicNsecs())
{ }

void komQtWorkerThread::JobEntry::clear()
{
    jobId = -1;
    runnable.reset();
    runnable.createGroup(nullptr, nullptr);
    priority = komQtThreadPool::ScheduleNormalPriority;
    lifo = false;
    queuedNs = 0;
}

komQtWorkerThread::komQtWorkerThread(const QString &name, QObject *parent)
    : QThread(parent)
    , mWaitCondition(new QWaitCondition)
    , mWaitMutex(new QMutex)
    , mQueueMutex(new QMutex)
    , mJobTimer(new JobTimer)
    , mShutDown(false)
    , mActivity(std::make_shared<WorkerActivity>(name))
{
    setObjectName(name);
}

komQtWorkerThread::~komQtWorkerThread()
{
    // The loop calls deleteLater() just before it returns: wait until the thread is really over
    // before QThread's destructor looks at it. Deleting a worker that was never shut down is
    // outside the pool's use; its loop is stopped first rather than left running.
    if (QThread::currentThread() != this && QThread::isRunning()) {
        // Its finished() would reach receivers after this object is gone.
        QObject::disconnect(this, &QThread::finished, nullptr, nullptr);
        mShutDown = true;
        {
            QMutexLocker waitLock(mWaitMutex.get());
            mWaitCondition->wakeAll();
        }
        wait();
    }
    mJobs.clear();
    mCurrent = JobEntry();
    mActivity->end(); // also for a worker whose loop never ran
}

bool komQtWorkerThread::lessThanByFifoPriority(const JobEntry &a, const JobEntry &b)
{
    if (a.priority != b.priority)
        return int(a.priority) > int(b.priority);
    return a.jobId < b.jobId;
}

bool komQtWorkerThread::lessThanByLifoPriority(const JobEntry &a, const JobEntry &b)
{
    if (a.priority != b.priority)
        return int(a.priority) > int(b.priority);
    return a.jobId > b.jobId;
}

int komQtWorkerThread::insertIndexOf(SchedulePriority priority) const
{
    const bool lifo = (priority & komQtThreadPool::ScheduleLifo) != 0;
    JobEntry probe;
    probe.jobId = INT_MAX;
    probe.priority = masked(priority);
    const auto lessThan = lifo ? &lessThanByLifoPriority : &lessThanByFifoPriority;
    const auto found = std::lower_bound(mJobs.cbegin(), mJobs.cend(), probe, lessThan);
    // Exact-match search: the lower bound counts only when the entry there compares equal to
    // the probe. No queued job does, so new jobs go to the back and the queue keeps arrival
    // order; callers rely on that order.
    if (found == mJobs.cend() || lessThan(probe, *found))
        return mJobs.count();
    return int(found - mJobs.cbegin());
}

int komQtWorkerThread::indexOf(int jobId) const
{
    const auto found = std::find_if(mJobs.cbegin(), mJobs.cend(),
        [jobId](const JobEntry &entry) { return entry.jobId == jobId; });
    return found == mJobs.cend() ? -1 : int(found - mJobs.cbegin());
}

void komQtWorkerThread::schedule(
    int jobId, kom::smart<IRunnable> runnable, SchedulePriority priority)
{
    const JobEntry entry(jobId, runnable, priority);
    if (QObject *object = dynamic_cast<QObject *>(runnable.get()))
        object->moveToThread(this);
    bool wake;
    {
        QMutexLocker queueLock(mQueueMutex.get());
        const int i = insertIndexOf(priority);
        if (i < mJobs.count())
            mJobs.insert(i, entry);
        else
            mJobs.append(entry);
        // A worker in hand with a job looks at the queue again before it sleeps; only one
        // without a job may be asleep or about to sleep.
        wake = mCurrent.jobId == -1;
    }
    if (wake) {
        // Under the wait mutex, so the wake cannot fall between the loop's look at the queue and
        // its wait.
        QMutexLocker waitLock(mWaitMutex.get());
        mWaitCondition->wakeAll();
    }
}

bool komQtWorkerThread::requestAbort(int jobId)
{
    kom::smart<IRunnable> dropped;
    QMutexLocker queueLock(mQueueMutex.get());
    const int i = indexOf(jobId);
    if (i < 0)
        return false;
    dropped = mJobs.at(i).runnable;
    if (dropped)
        dropped->mAbortRequested = true;
    mJobs.removeAt(i);
    queueLock.unlock(); // the job may die with the last handle: not under the queue lock
    return true;
}

bool komQtWorkerThread::changePriority(int jobId, SchedulePriority priority)
{
    if (jobId < 1)
        return false;
    QMutexLocker queueLock(mQueueMutex.get());
    const int current = indexOf(jobId);
    if (current < 0)
        return false;
    int target = insertIndexOf(priority);
    if (current < target)
        --target;
    if (target != current) {
        // The entry keeps the priority it was scheduled with; only its place changes.
        const JobEntry entry = mJobs.takeAt(current);
        if (target < mJobs.count())
            mJobs.insert(target, entry);
        else
            mJobs.append(entry);
    }
    return true;
}

bool komQtWorkerThread::isRunning() const
{
    QMutexLocker queueLock(mQueueMutex.get());
    return mCurrent.jobId > 0;
}

bool komQtWorkerThread::isRunning(int jobId) const
{
    QMutexLocker queueLock(mQueueMutex.get());
    return mCurrent.jobId == jobId;
}

bool komQtWorkerThread::isScheduled(int jobId) const
{
    QMutexLocker queueLock(mQueueMutex.get());
    return isScheduled_locked(jobId);
}

bool komQtWorkerThread::isScheduled_locked(int jobId) const
{
    const int i = indexOf(jobId);
    // An empty handle is outside the scheduling contract; it counts as not scheduled.
    return i >= 0 && mJobs.at(i).runnable && !mJobs.at(i).runnable->mAbortRequested;
}

bool komQtWorkerThread::isScheduledOrRunning(int jobId) const
{
    // One look under one lock: the job may move from the queue to the current entry at any time.
    QMutexLocker queueLock(mQueueMutex.get());
    return mCurrent.jobId == jobId || isScheduled_locked(jobId);
}

int komQtWorkerThread::workLoad() const
{
    QMutexLocker queueLock(mQueueMutex.get());
    return workLoad_locked();
}

int komQtWorkerThread::workLoad_locked() const
{
    return mJobs.count() + (mCurrent.jobId >= 1 ? 1 : 0);
}

JobWorkerSnapshot komQtWorkerThread::snapshot() const
{
    JobWorkerSnapshot worker;
    worker.name = mActivity->name();
    QMutexLocker queueLock(mQueueMutex.get());
    const qint64 now = monotonicNsecs();
    if (mCurrent.jobId != -1) {
        worker.runningJobId = mCurrent.jobId;
        worker.runningPriority = mCurrent.priority;
        // A job taken from the queue and not yet started has run for 0 ms.
        RunningJob job;
        if (mActivity->running(&job) && job.jobId == mCurrent.jobId)
            describeRunning(&worker, job, now);
    }
    worker.queue.reserve(mJobs.count());
    std::transform(mJobs.cbegin(), mJobs.cend(), std::back_inserter(worker.queue),
        [now](const JobEntry &entry) {
            return QueuedJobSnapshot { entry.jobId, int(entry.priority), entry.lifo,
                msecsBetween(entry.queuedNs, now) };
        });
    worker.workLoad = workLoad_locked();
    return worker;
}

void komQtWorkerThread::shutDown()
{
    mShutDown = true;
    QList<JobEntry> dropped;
    {
        QMutexLocker queueLock(mQueueMutex.get());
        dropped.swap(mJobs);
    }
    QMutexLocker waitLock(mWaitMutex.get());
    mWaitCondition->wakeAll();
    waitLock.unlock();
    dropped.clear(); // the jobs may die with their last handles: not under a worker lock
}

bool komQtWorkerThread::takeNextJob_locked(JobEntry &next)
{
    if (mJobs.isEmpty())
        return false;
    next = mJobs.takeFirst();
    // A job aborted after it was queued, or an empty handle (outside the scheduling contract), is
    // dropped without a signal. It never shows as the current job, so nobody waits for its end.
    if (next.runnable && !next.runnable->mAbortRequested)
        mCurrent = next;
    return true;
}

void komQtWorkerThread::runJob(const JobEntry &entry)
{
    const qint64 startNs = compat::startJobTimer(*mJobTimer);
    mActivity->start(entry.jobId, entry.priority, startNs);
    Q_EMIT jobStarted(entry.jobId);
    try {
        entry.runnable->run(entry.jobId, *mJobTimer);
    } catch (...) {
        // Jobs must not throw; one that does is reported as the signal pool reports what escapes
        // its workers, and ends like any other job.
        logCaughtException(Log::Error, objectName());
    }
    const int elapsed = compat::jobTimerElapsed(*mJobTimer); // the job may have restarted its timer
    {
        // Cleared before the end is announced, so that a caller woken by the end never sees the
        // job still running.
        QMutexLocker queueLock(mQueueMutex.get());
        mCurrent.clear();
    }
    mActivity->finish();
    Q_EMIT jobFinished(entry.jobId, elapsed);
}

void komQtWorkerThread::run()
{
    QThread::setTerminationEnabled(true);
    JobPriority priority;
    while (!mShutDown) {
        QMutexLocker waitLock(mWaitMutex.get());
        QMutexLocker queueLock(mQueueMutex.get());
        JobEntry next;
        while (takeNextJob_locked(next)) {
            const bool runs = mCurrent.jobId != -1;
            queueLock.unlock();
            // No worker lock is held while a job runs: schedule() never waits for a job.
            waitLock.unlock();
            if (runs) {
                priority.apply(this, next.priority);
                runJob(next);
            }
            next.clear(); // the job may die with this last handle: not under a worker lock
            waitLock.relock();
            queueLock.relock();
        }
        const bool stopping = mShutDown;
        queueLock.unlock();
        // shutDown() sets the flag before it takes the wait mutex: either the flag is seen here,
        // or its wake reaches the wait below.
        if (!stopping)
            mWaitCondition->wait(mWaitMutex.get());
    }
    mActivity->end();
    LogLine(Log::Message) << objectName() << " finished.";
    deleteLater();
}

} // namespace ko
