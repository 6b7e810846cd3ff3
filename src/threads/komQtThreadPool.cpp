// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/komQtThreadPool.h"

#include "kom/komQtLock.h"
#include "log/LogQt.h"
#include "signals/SignalUtils.h"
#include "threads/IRunnable.h"
#include "threads/JobActivity_p.h"
#include "threads/PoolRegistry.h"
#include "threads/komQtWorkerThread.h"

#include <QEventLoop>
#include <QMutexLocker>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <mutex>

namespace ko
{

std::atomic<int> komQtThreadPool::gJobSequence(1);
std::atomic<komQtThreadPool *> komQtThreadPool::gInstance(nullptr);

namespace
{

// Ends a waiting caller's loop with @p code. A loop of the current thread is ended at once; a
// loop of another thread gets the call queued to it, so that it is not lost when that loop has
// not started to run yet.
void exitLoop(QEventLoop *loop, int code)
{
    if (loop->thread() == QThread::currentThread())
        loop->exit(code);
    else
        QMetaObject::invokeMethod(
            loop, [loop, code]() { loop->exit(code); }, Qt::QueuedConnection);
}

// True when @p query is true for one of @p threads, asked in list order up to the first yes.
template <class Query> bool anyOf(const QList<komQtWorkerThread *> &threads, Query query)
{
    return std::any_of(threads.cbegin(), threads.cend(), query);
}

} // namespace

komQtThreadPool::komQtThreadPool(const QString &name, int maxThreads, QObject *parent)
    : QObject(parent)
    , mLock(std::make_unique<komQtLock>(komQtLock::Recursive))
    , mMaxThreads(maxThreads)
    , mActivity(std::make_unique<JobPoolActivity>(name, maxThreads))
{
    setObjectName(name);
    mIdleSince = QTime::currentTime();
    // Announced although the pool has no worker yet, before anyone can listen: kept as it is.
    Q_EMIT idle();
}

komQtThreadPool::~komQtThreadPool()
{
    PoolRegistry::remove(this); // before anything goes: a snapshot may be under way
    {
        QMutexLocker locker(mLock.get());
        komQtThreadPool *self = this;
        gInstance.compare_exchange_strong(self, nullptr);
        const QList<komQtWorkerThread *> busyThreads = mBusyThreads;
        for (komQtWorkerThread *thread : busyThreads)
            thread->shutDown();
        // Each worker leaves its list before discardThread() sees it, so it is not shut down a
        // second time, and idle workers stay parked: kept in this order on purpose.
        while (!mIdleThreads.isEmpty())
            discardThread(mIdleThreads.takeLast());
        while (!mBusyThreads.isEmpty())
            discardThread(mBusyThreads.takeLast());
    }
}

komQtThreadPool *komQtThreadPool::globalInstance()
{
    komQtThreadPool *instance = gInstance.load();
    if (instance)
        return instance;
    auto *created
        = new komQtThreadPool(QStringLiteral("ThreadPool"), QThread::idealThreadCount(), nullptr);
    if (gInstance.compare_exchange_strong(instance, created)) {
        PoolRegistry::add(created);
        return created;
    }
    delete created; // another thread was first
    return instance;
}

bool komQtThreadPool::deleteGlobalInstance()
{
    komQtThreadPool *instance = gInstance.load();
    if (!instance)
        return false;
    delete instance;
    return true;
}

int komQtThreadPool::newJobId()
{
    QMutexLocker locker(mLock.get());
    return gJobSequence.fetch_add(1);
}

int komQtThreadPool::schedule(kom::smart<IRunnable> job, SchedulePriority priority, int jobId)
{
    // A null job is outside the contract; it would leave a worker busy for good.
    if (!job) {
        LogLine(Log::Warning) << "QtThreadPool: null job not scheduled";
        return -1;
    }
    QMutexLocker locker(mLock.get());
    if (jobId < 0)
        jobId = newJobId();
    job->mAbortRequested = false;
    komQtWorkerThread *thread = allocateIdleThread();
    if (!thread)
        thread = allocateBusyThread();
    if (!thread) {
        // Only when no worker thread could be started and none runs: the job cannot be queued.
        job->mAbortRequested = true;
        LogLine(Log::Error) << "QtThreadPool: no worker thread could be started; job " << jobId
                            << " aborted";
        return jobId;
    }
    thread->schedule(jobId, job, priority);
    mActivity->scheduled.fetch_add(1, std::memory_order_relaxed);
    return jobId;
}

komQtWorkerThread *komQtThreadPool::allocateIdleThread()
{
    QMutexLocker locker(mLock.get());
    const bool wasIdle = isIdle();
    komQtWorkerThread *thread;
    if (mIdleThreads.isEmpty()) {
        const int count = countThreads();
        if (mMaxThreads > 0 && count >= mMaxThreads)
            return nullptr;
        thread = new komQtWorkerThread(
            QStringLiteral("%1-Thread-%2").arg(objectName(), QString::number(count + 1)), nullptr);
        thread->start(QThread::InheritPriority);
        // A thread that could not be created (Qt has said why) would hold its jobs for good: the
        // worker is dropped, and the job goes to a running one. Nothing is connected yet, as a
        // worker emits nothing before it is given a job.
        if (!thread->QThread::isRunning()) { // the worker's own isRunning() is about jobs
            delete thread;
            return nullptr;
        }
        // Moved to the pool's thread, which deletes it when it ends, also when it was created
        // by a caller in another thread.
        thread->moveToThread(QObject::thread());
        ko::connect(
            thread, SIGNAL(jobStarted(int)), this, SIGNAL(jobStarted(int)), Qt::AutoConnection);
        ko::connect(thread, SIGNAL(jobFinished(int, int)), this, SIGNAL(jobFinished(int, int)),
            Qt::AutoConnection);
        ko::connect(thread, SIGNAL(jobFinished(int, int)), this, SLOT(reclaimThread(int, int)),
            Qt::AutoConnection);
        // Qt 5 has no terminated() signal to connect.
        ko::connect(thread, SIGNAL(finished()), this, SLOT(discardThread()), Qt::AutoConnection);
        ko::connect(thread, SIGNAL(destroyed()), this, SLOT(discardThread()), Qt::AutoConnection);
        mActivity->addWorker(thread->mActivity);
        LogLine(Log::Message) << "QtThreadPool: count worker threads: " << count + 1;
    } else {
        thread = mIdleThreads.takeLast();
    }
    if (wasIdle && !isIdle()) {
        mIdleSince = QTime();
        Q_EMIT busy();
    }
    mBusyThreads.append(thread);
    return thread;
}

komQtWorkerThread *komQtThreadPool::allocateBusyThread()
{
    QMutexLocker locker(mLock.get());
    komQtWorkerThread *best = nullptr;
    int bestLoad = 0;
    // One pass that reads each load once: a load is taken under the worker's queue lock.
    for (komQtWorkerThread *thread : qAsConst(mBusyThreads)) {
        const int load = thread->workLoad();
        if (!best || load < bestLoad) {
            best = thread;
            bestLoad = load;
        }
    }
    return best;
}

komQtWorkerThread *komQtThreadPool::workerFromSender() const
{
    // The sender is matched against the pool's own workers before it is looked at: a worker's
    // finished() can arrive after the worker has deleted itself, and a worker in neither list
    // is no longer the pool's business.
    const QObject *object = sender();
    const auto isSender = [object](const komQtWorkerThread *thread) { return thread == object; };
    for (const QList<komQtWorkerThread *> *list : { &mBusyThreads, &mIdleThreads }) {
        const auto found = std::find_if(list->cbegin(), list->cend(), isSender);
        if (found != list->cend())
            return *found;
    }
    return nullptr;
}

void komQtThreadPool::reclaimThread(int jobId, int elapsedTime, komQtWorkerThread *thread)
{
    if (!thread) {
        thread = qobject_cast<komQtWorkerThread *>(sender());
        if (!thread)
            return;
    }
    {
        QMutexLocker locker(mLock.get());
        const bool wasIdle = !mIdleThreads.isEmpty();
        const bool known = mBusyThreads.removeAll(thread) + mIdleThreads.removeAll(thread) > 0;
        // A worker in neither list was discarded and shut down; taking it back would hand the
        // next job to a worker that is ending, and leave a dangling one in the idle list.
        if (known)
            mIdleThreads.append(thread);
        // Every wait for this job and every wait for all jobs, whatever its thread or depth.
        for (int key : { jobId, 0 }) {
            for (QEventLoop *loop : mEventLoops.values(key))
                exitLoop(loop, jobId);
        }
        if (!wasIdle && !mIdleThreads.isEmpty()) {
            mIdleSince = QTime::currentTime();
            Q_EMIT idle();
        }
    }
    // The relayed signal already told listeners; this second emission is kept, callers count on it.
    Q_EMIT jobFinished(jobId, elapsedTime);
}

void komQtThreadPool::discardThread(komQtWorkerThread *thread)
{
    QMutexLocker locker(mLock.get());
    bool beingDestroyed = false;
    if (!thread) {
        thread = workerFromSender();
        if (!thread)
            return;
        static const int destroyedSignal
            = QObject::staticMetaObject.indexOfSignal("destroyed(QObject*)");
        beingDestroyed = senderSignalIndex() == destroyedSignal;
    }
    const bool wasIdle = isIdle();
    bool found = mBusyThreads.removeAll(thread) > 0;
    if (!found)
        found = mIdleThreads.removeAll(thread) > 0;
    // Deleting a worker is outside the pool's use; one announcing its own destruction is only
    // taken out of the lists, since it can no longer be shut down.
    if (found && !beingDestroyed) {
        // The worker's finished() would arrive after it has deleted itself, when a new worker may
        // already live at its address: it is not listened to any more.
        QObject::disconnect(thread, &QThread::finished, this, nullptr);
        thread->shutDown();
    }
    // Discarding only shrinks the idle list, so this never fires; kept as the other slots have it.
    if (!wasIdle && isIdle()) {
        mIdleSince = QTime::currentTime();
        Q_EMIT idle();
    }
}

void komQtThreadPool::setMaxThreads(int maxThreads)
{
    QMutexLocker locker(mLock.get());
    mMaxThreads = maxThreads;
    mActivity->maxThreads.store(maxThreads, std::memory_order_relaxed);
    while (countThreads() > mMaxThreads && !mIdleThreads.isEmpty())
        discardThread(mIdleThreads.last());
}

bool komQtThreadPool::changePriority(int jobId, SchedulePriority priority)
{
    QMutexLocker locker(mLock.get());
    const bool moved = anyOf(mBusyThreads,
        [=](komQtWorkerThread *thread) { return thread->changePriority(jobId, priority); });
    if (moved)
        mActivity->reprioritised.fetch_add(1, std::memory_order_relaxed);
    return moved;
}

void komQtThreadPool::requestAbort(QSet<int> &jobIds)
{
    QMutexLocker locker(mLock.get());
    for (komQtWorkerThread *thread : qAsConst(mBusyThreads)) {
        // An id leaves the set at the first worker that does not hold it, before later workers
        // see it: callers rely on this rule as it stands.
        for (auto it = jobIds.begin(); it != jobIds.end();) {
            if (!thread->isScheduledOrRunning(*it)) {
                it = jobIds.erase(it);
            } else if (thread->requestAbort(*it)) {
                mActivity->abortedWhileQueued.fetch_add(1, std::memory_order_relaxed);
                it = jobIds.erase(it);
            } else {
                ++it;
            }
        }
    }
}

int komQtThreadPool::countThreads() const
{
    QMutexLocker locker(mLock.get());
    return mIdleThreads.count() + mBusyThreads.count();
}

int komQtThreadPool::countBusyThreads() const
{
    QMutexLocker locker(mLock.get());
    return mBusyThreads.count();
}

bool komQtThreadPool::isIdle() const
{
    QMutexLocker locker(mLock.get());
    return !mIdleThreads.isEmpty();
}

const QTime &komQtThreadPool::isIdleSince() const
{
    return mIdleSince;
}

bool komQtThreadPool::isRunning(int jobId) const
{
    QMutexLocker locker(mLock.get());
    return anyOf(
        mBusyThreads, [jobId](komQtWorkerThread *thread) { return thread->isRunning(jobId); });
}

bool komQtThreadPool::isScheduled(int jobId) const
{
    QMutexLocker locker(mLock.get());
    return anyOf(
        mBusyThreads, [jobId](komQtWorkerThread *thread) { return thread->isScheduled(jobId); });
}

bool komQtThreadPool::isScheduledOrRunning(int jobId) const
{
    QMutexLocker locker(mLock.get());
    return anyOf(mBusyThreads,
        [jobId](komQtWorkerThread *thread) { return thread->isScheduledOrRunning(jobId); });
}

bool komQtThreadPool::isFinished(int jobId) const
{
    QMutexLocker locker(mLock.get());
    if (jobId >= gJobSequence)
        return false;
    return !isScheduledOrRunning(jobId);
}

void komQtThreadPool::setupEventLoopTimer(QEventLoop &loop, QTimer &timer, long timeout)
{
    if (timeout < 0)
        return;
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit, Qt::DirectConnection);
    // A coarse timer may fire up to 5% early; a wait never ends before its limit.
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    timer.setInterval(int(timeout));
    timer.start();
}

bool komQtThreadPool::waitForFinished(int jobId, long timeout)
{
    QMutexLocker locker(mLock.get());
    if (!isScheduledOrRunning(jobId))
        return jobId < gJobSequence;
    QEventLoop loop;
    QTimer timer;
    mEventLoops.insert(jobId, &loop);
    setupEventLoopTimer(loop, timer, timeout);
    locker.unlock();

    bool result = false;
    for (;;) {
        const int code = loop.exec();
        if (code == 0)
            break;
        if (code == jobId) {
            result = true;
            break;
        }
        if (code < 0) {
            // Level 3 here and level 2 in waitForAllFinished(): callers filter on it.
            LogLine(Log::Error) << "Unexpected loop termination";
            break;
        }
        LogLine(Log::Warning) << "Unexpected return code " << code;
    }

    locker.relock();
    mEventLoops.remove(jobId, &loop);
    return result;
}

bool komQtThreadPool::waitForAllFinished(long timeout)
{
    QMutexLocker locker(mLock.get());
    if (mBusyThreads.isEmpty())
        return true;
    QEventLoop loop;
    QTimer timer;
    mEventLoops.insert(0, &loop);
    setupEventLoopTimer(loop, timer, timeout);

    bool result = false;
    for (;;) {
        locker.unlock();
        const int code = loop.exec();
        locker.relock();
        if (code == 0)
            break;
        if (mBusyThreads.isEmpty()) {
            result = true;
            break;
        }
        if (code < 0) {
            LogLine(Log::Warning) << "Unexpected loop termination";
            break;
        }
    }
    // A timer expiry gives false, also when the last busy worker was reclaimed just then.
    if (!result && !mBusyThreads.isEmpty())
        LogLine(Log::Warning) << "jobs in progress";

    mEventLoops.remove(0, &loop);
    return result;
}

JobPoolSnapshot komQtThreadPool::snapshot() const
{
    QMutexLocker locker(mLock.get());
    return snapshot_locked();
}

JobPoolSnapshot komQtThreadPool::snapshot(int lockTimeoutMs) const
{
    if (!mLock->tryLock(lockTimeoutMs))
        return mActivity->snapshotWithoutLock(lockTimeoutMs);
    // Unlocked through komQtLock's own unlock(): on Qt 6 a plain QMutex::unlock() would leave the
    // recursion bookkeeping saying this thread still holds it.
    std::unique_lock<komQtLock> locker(*mLock, std::adopt_lock);
    return snapshot_locked();
}

JobPoolSnapshot komQtThreadPool::snapshot_locked() const
{
    JobPoolSnapshot snapshot;
    mActivity->describe(&snapshot);
    snapshot.idle = !mIdleThreads.isEmpty();
    if (snapshot.idle && mIdleSince.isValid()) {
        // Milliseconds since the time of day the pool went idle, over midnight as QTime::elapsed()
        // counts.
        const int msecsPerDay = 86400000;
        snapshot.idleSinceMs
            = (mIdleSince.msecsTo(QTime::currentTime()) + msecsPerDay) % msecsPerDay;
    } else {
        snapshot.idleSinceMs = -1;
    }
    for (const QList<komQtWorkerThread *> *list : { &mIdleThreads, &mBusyThreads }) {
        for (const komQtWorkerThread *thread : *list) {
            snapshot.workers.append(thread->snapshot());
            snapshot.workers.last().busy = list == &mBusyThreads;
        }
    }
    // In the order of their numbers, whichever list they are in, so that rows stay in place.
    std::stable_sort(snapshot.workers.begin(), snapshot.workers.end(),
        [](const JobWorkerSnapshot &a, const JobWorkerSnapshot &b) {
            return a.name.size() != b.name.size() ? a.name.size() < b.name.size() : a.name < b.name;
        });
    return snapshot;
}

void komQtThreadPool::setStallThreshold(int ms)
{
    mActivity->setStallThreshold(ms);
}

int komQtThreadPool::stallThreshold() const
{
    return mActivity->stallThreshold();
}

} // namespace ko
