#include "threads/komQtWorkerThread.h"

#include "log/LogQt.h"
#include "threads/IRunnable.h"

#include <QDateTime>
#include <QElapsedTimer>
#include <QMutex>
#include <QMutexLocker>
#include <QTime>
#include <QWaitCondition>

#include <climits>

namespace ko
{

namespace
{

komQtWorkerThread::SchedulePriority masked(int priority)
{
    return komQtWorkerThread::SchedulePriority(priority & komQtThreadPool::SchedulePriorityMask);
}

// The local time of day, as QTime::currentTime() gives it, for a job timer started before every
// job. QTime::currentTime() converts to local time on each call, and the C library then checks
// the time zone file each time (a file system call unless TZ is set), which would cost more than
// the job pool's own work per job. The offset from UTC is looked up at most once a second per
// thread instead; a time zone or daylight saving change is seen within that second.
QTime currentLocalTime()
{
    constexpr qint64 msecsPerDay = 86400000;
    thread_local qint64 offsetValidFrom = 0;
    thread_local qint64 offsetValidUntil = 0;
    thread_local qint64 offsetMsecs = 0;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now < offsetValidFrom || now >= offsetValidUntil) {
        offsetMsecs = qint64(QDateTime::fromMSecsSinceEpoch(now).offsetFromUtc()) * 1000;
        offsetValidFrom = now;
        offsetValidUntil = now + 1000;
    }
    return QTime::fromMSecsSinceStartOfDay(
        int(((now + offsetMsecs) % msecsPerDay + msecsPerDay) % msecsPerDay));
}

} // namespace

komQtWorkerThread::JobEntry::JobEntry()
{
    clear();
}

komQtWorkerThread::JobEntry::JobEntry(int id, const kom::smart<IRunnable>& job, SchedulePriority prio)
    : jobId(id)
    , runnable(job)
    , priority(masked(prio))
{
}

void komQtWorkerThread::JobEntry::clear()
{
    jobId = -1;
    runnable.reset();
    runnable.createGroup(nullptr, nullptr);
    priority = komQtThreadPool::ScheduleNormalPriority;
}

komQtWorkerThread::komQtWorkerThread(const QString& name, QObject* parent)
    : QThread(parent)
    , mWaitCondition(new QWaitCondition)
    , mWaitMutex(new QMutex(QMutex::NonRecursive))
    , mQueueMutex(new QMutex(QMutex::NonRecursive))
    , mJobTimer(new QTime)
    , mShutDown(false)
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
            QMutexLocker waitLock(mWaitMutex);
            mWaitCondition->wakeAll();
        }
        wait();
    }
    mJobs.clear();
    mCurrent = JobEntry();
    delete mWaitCondition;
    delete mWaitMutex;
    delete mQueueMutex;
    delete mJobTimer;
}

bool komQtWorkerThread::lessThanByFifoPriority(const JobEntry& a, const JobEntry& b)
{
    if (a.priority != b.priority)
        return int(a.priority) > int(b.priority);
    return a.jobId < b.jobId;
}

bool komQtWorkerThread::lessThanByLifoPriority(const JobEntry& a, const JobEntry& b)
{
    if (a.priority != b.priority)
        return int(a.priority) > int(b.priority);
    return a.jobId > b.jobId;
}

int komQtWorkerThread::insertIndexOf(SchedulePriority priority) const
{
    const int count = mJobs.count();
    if (count == 0)
        return 0;
    const bool lifo = (priority & komQtThreadPool::ScheduleLifo) != 0;
    bool (*lessThan)(const JobEntry&, const JobEntry&)
        = lifo ? &lessThanByLifoPriority : &lessThanByFifoPriority;
    JobEntry probe;
    probe.jobId = INT_MAX;
    probe.priority = masked(priority);
    // Exact-match search: the lower bound counts only when the entry there compares equal to
    // the probe. No queued job does, so new jobs go to the back and the queue keeps arrival
    // order; callers rely on that order.
    int first = 0;
    int length = count;
    while (length > 0) {
        const int half = length / 2;
        if (lessThan(mJobs.at(first + half), probe)) {
            first += half + 1;
            length -= half + 1;
        } else {
            length = half;
        }
    }
    if (first == count || lessThan(probe, mJobs.at(first)))
        return count;
    return first;
}

int komQtWorkerThread::indexOf(int jobId) const
{
    for (int i = 0; i < mJobs.count(); ++i) {
        if (mJobs.at(i).jobId == jobId)
            return i;
    }
    return -1;
}

void komQtWorkerThread::schedule(int jobId, kom::smart<IRunnable> runnable, SchedulePriority priority)
{
    const JobEntry entry(jobId, runnable, priority);
    if (QObject* object = dynamic_cast<QObject*>(runnable.get()))
        object->moveToThread(this);
    bool wake;
    {
        QMutexLocker queueLock(mQueueMutex);
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
        QMutexLocker waitLock(mWaitMutex);
        mWaitCondition->wakeAll();
    }
}

bool komQtWorkerThread::requestAbort(int jobId)
{
    kom::smart<IRunnable> dropped;
    QMutexLocker queueLock(mQueueMutex);
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
    QMutexLocker queueLock(mQueueMutex);
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
    QMutexLocker queueLock(mQueueMutex);
    return mCurrent.jobId > 0;
}

bool komQtWorkerThread::isRunning(int jobId) const
{
    QMutexLocker queueLock(mQueueMutex);
    return mCurrent.jobId == jobId;
}

bool komQtWorkerThread::isScheduled(int jobId) const
{
    QMutexLocker queueLock(mQueueMutex);
    const int i = indexOf(jobId);
    // An empty handle is outside the scheduling contract; it counts as not scheduled.
    return i >= 0 && mJobs.at(i).runnable && !mJobs.at(i).runnable->mAbortRequested;
}

bool komQtWorkerThread::isScheduledOrRunning(int jobId) const
{
    {
        QMutexLocker queueLock(mQueueMutex);
        if (mCurrent.jobId == jobId)
            return true;
    }
    return isScheduled(jobId);
}

int komQtWorkerThread::workLoad() const
{
    QMutexLocker queueLock(mQueueMutex);
    return mJobs.count() + (mCurrent.jobId >= 1 ? 1 : 0);
}

void komQtWorkerThread::shutDown()
{
    mShutDown = true;
    QList<JobEntry> dropped;
    {
        QMutexLocker queueLock(mQueueMutex);
        dropped.swap(mJobs);
    }
    QMutexLocker waitLock(mWaitMutex);
    mWaitCondition->wakeAll();
    waitLock.unlock();
    dropped.clear(); // the jobs may die with their last handles: not under a worker lock
}

void komQtWorkerThread::run()
{
    QThread::setTerminationEnabled(true);
    int appliedPriority = -1; // the thread priority last set here
    kom::smart<IRunnable> job; // the job in hand; let go of only while no worker lock is held
    while (!mShutDown) {
        mWaitMutex->lock();
        mQueueMutex->lock();
        for (;;) {
            mCurrent.clear();
            if (mJobs.isEmpty())
                break;
            mCurrent = mJobs.takeFirst();
            const int jobId = mCurrent.jobId;
            const int priority = mCurrent.priority;
            // An empty handle is outside the scheduling contract: it is dropped like an aborted job.
            const bool drop = !mCurrent.runnable || mCurrent.runnable->mAbortRequested;
            mQueueMutex->unlock();
            // No worker lock is held while a job runs: schedule() never waits for a job.
            mWaitMutex->unlock();
            job = mCurrent.runnable; // only this thread changes mCurrent
            if (!drop) {
                // Only real thread priorities are applied; InheritPriority and larger values keep
                // the thread's priority as it is.
                if (priority <= QThread::TimeCriticalPriority && priority != appliedPriority) {
                    setPriority(QThread::Priority(priority));
                    appliedPriority = priority;
                }
                // Started like QTime::start(); the elapsed time is read from the monotonic clock,
                // which agrees with QTime::elapsed() and stays right across clock changes.
                *mJobTimer = currentLocalTime();
                QElapsedTimer clock;
                clock.start();
                Q_EMIT jobStarted(jobId);
                job->run(jobId, *mJobTimer);
                const int elapsed = int(clock.elapsed());
                // Cleared before the end is announced: once the pool has taken the worker back, the
                // job must not show as running any more.
                mQueueMutex->lock();
                mCurrent.clear();
                mQueueMutex->unlock();
                Q_EMIT jobFinished(jobId, elapsed);
            }
            mWaitMutex->lock();
            mQueueMutex->lock();
        }
        if (job) {
            // Let go of the last job with no lock held (it may die here), then look again.
            mQueueMutex->unlock();
            mWaitMutex->unlock();
            job.reset();
            continue;
        }
        const bool stopping = mShutDown;
        mQueueMutex->unlock();
        // shutDown() sets the flag before it takes the wait mutex: either the flag is seen here,
        // or its wake reaches the wait below.
        if (!stopping)
            mWaitCondition->wait(mWaitMutex);
        mWaitMutex->unlock();
    }
    LogLine(Log::Message) << objectName() << " finished.";
    deleteLater();
}

} // namespace ko
