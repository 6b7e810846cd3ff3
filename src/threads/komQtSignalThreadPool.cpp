// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/komQtSignalThreadPool.h"

#include "compat/QtCompat_p.h"
#include "log/LogQt.h"
#include "signals/SignalUtils.h"
#include "threads/CaughtException_p.h"
#include "threads/PoolRegistry.h"

#include <QAbstractEventDispatcher>
#include <QMutex>
#include <QMutexLocker>

#include <algorithm>
#include <mutex>

namespace ko
{

namespace
{

komQtSignalThreadPool *gSignalPool = nullptr;

// Refuses a null object given to attach: true, after one warning, when @p object is null.
bool refusedNull(const QObject *object, const QObject *to)
{
    if (object)
        return false;
    LogLine(Log::Warning) << "attaching null object to " << to->objectName()
                          << ". nothing attached.";
    return true;
}

} // namespace

// The class and object name of each attached entry, in the order of mAttached, for snapshots in
// other threads: those never look at the objects, which live and die in other threads. A lock of
// its own, as the worker's mutex goes when the thread body ends.
struct komQtSignalWorkerThread::AttachedNames
{
    QMutex mutex;
    QVector<AttachedObjectSnapshot> entries;
};

komQtSignalWorkerThread::komQtSignalWorkerThread(const QString &name, QObject *parent)
    : QThread(parent)
    , mMutex(std::make_unique<RecursionModeMutex>(RecursionModeMutex::Recursive))
    , mLoad(0)
    , mNames(std::make_unique<AttachedNames>())
{
    setObjectName(name);
}

// The mutex belongs to the thread body, which deletes it when it ends; a worker
// that never ran still has it.
komQtSignalWorkerThread::~komQtSignalWorkerThread() = default;

void komQtSignalWorkerThread::syncLoad_locked()
{
    mLoad.store(mAttached.size(), std::memory_order_relaxed);
}

void komQtSignalWorkerThread::removeAt_locked(int index)
{
    mAttached.removeAt(index);
    {
        QMutexLocker names(&mNames->mutex);
        mNames->entries.removeAt(index);
    }
    syncLoad_locked();
}

void komQtSignalWorkerThread::attach(QObject *object)
{
    // A null object is outside the contract: nothing to move or to watch.
    if (refusedNull(object, this))
        return;
    QMutexLocker lock(mMutex.get());
    // Read here, in the object's own thread, before it moves.
    const AttachedObjectSnapshot names { QString::fromLatin1(object->metaObject()->className()),
        object->objectName() };
    object->moveToThread(this);
    mAttached.append(QPointer<QObject>(object));
    {
        QMutexLocker namesLock(&mNames->mutex);
        mNames->entries.append(names);
    }
    syncLoad_locked();
    ko::connect(object, SIGNAL(destroyed(QObject *)), this, SLOT(attachedDestroyed(QObject *)),
        Qt::AutoConnection);
}

void komQtSignalWorkerThread::detach(QObject *object, QThread *target)
{
    QMutexLocker lock(mMutex.get());
    const int index = indexOf(object);
    if (index >= 0)
        detach(index, target);
}

void komQtSignalWorkerThread::detach(int index, QThread *target)
{
    QMutexLocker lock(mMutex.get());
    QPointer<QObject> object;
    if (index >= 0 && index < mAttached.size()) {
        object = mAttached.at(index);
        removeAt_locked(index);
    }
    if (!object)
        return;
    // Its other entries are found by address: should the object be destroyed meanwhile (in its
    // own thread), the null entries that other destroyed objects left must stay.
    const QObject *const address = object.data();
    // Only the worker itself may give away an object that lives in it; from anywhere else the
    // object is just forgotten (and not even looked at, as its own thread may be deleting it).
    if (QThread::currentThread() == this && object->thread() == this) {
        object->moveToThread(target);
        if (!target) {
            LogLine(Log::Warning) << "detaching " << object->metaObject()->className() << "."
                                  << object->objectName() << ". event processing will stop.";
        }
    }
    // One entry at a time, from the back, so that the names stay in step.
    for (int i = mAttached.size() - 1; i >= 0; --i) {
        if (mAttached.at(i).data() == address)
            removeAt_locked(i);
    }
}

int komQtSignalWorkerThread::indexOf(QObject *object) const
{
    QMutexLocker lock(mMutex.get());
    // Compared as addresses: @p object may be gone already (attachedDestroyed()).
    const auto found = std::find_if(mAttached.cbegin(), mAttached.cend(),
        [object](const QPointer<QObject> &entry) { return entry.data() == object; });
    return found == mAttached.cend() ? -1 : int(found - mAttached.cbegin());
}

int komQtSignalWorkerThread::load() const
{
    return mLoad.load(std::memory_order_relaxed);
}

void komQtSignalWorkerThread::attachedDestroyed(QObject *object)
{
    QMutexLocker lock(mMutex.get());
    // Qt clears the guarded pointer before destroyed() arrives, so this rarely finds
    // the entry: a destroyed object stays as a null entry and keeps counting. Kept so.
    const int index = indexOf(object);
    if (index >= 0 && index < mAttached.size())
        removeAt_locked(index);
}

SignalWorkerSnapshot komQtSignalWorkerThread::snapshot() const
{
    SignalWorkerSnapshot worker;
    worker.name = objectName();
    QMutexLocker names(&mNames->mutex);
    worker.attached = mNames->entries;
    worker.load = worker.attached.size();
    return worker;
}

void komQtSignalWorkerThread::run()
{
    const QString name = objectName();
    QThread::setTerminationEnabled(true);
    try {
        exec();
    } catch (...) {
        // Nothing leaves the thread body: logged, and the thread ends as if its loop had returned.
        logCaughtException(Log::FatalError, name);
    }
    if (mMutex)
        LogLine(Log::Message) << name << " finished.";
    else
        LogLine(Log::Warning) << "zombie task " << name << " deleted";
    mMutex.reset();
}

komQtSignalThreadPool::komQtSignalThreadPool(const QString &name, int maxThreads, QObject *parent)
    : QObject(parent)
    , mPriority(QThread::NormalPriority)
    , mMaxThreads(maxThreads)
    , mThreadsMutex(std::make_unique<QMutex>())
{
    setObjectName(name);
}

komQtSignalThreadPool::~komQtSignalThreadPool()
{
    PoolRegistry::remove(this); // before anything goes: a snapshot may be under way
    if (gSignalPool == this)
        gSignalPool = nullptr;
    QMutexLocker lock(mThreadsMutex.get());
    while (!mThreads.isEmpty())
        discardThread(mThreads.takeLast());
}

komQtSignalThreadPool *komQtSignalThreadPool::globalInstance()
{
    if (!gSignalPool) {
        gSignalPool = new komQtSignalThreadPool(QStringLiteral("SignalThreadPool"), 4, nullptr);
        gSignalPool->setPriority(QThread::LowPriority);
        PoolRegistry::add(gSignalPool);
    }
    return gSignalPool;
}

bool komQtSignalThreadPool::deleteGlobalInstance()
{
    if (!gSignalPool)
        return false;
    delete gSignalPool;
    return true;
}

void komQtSignalThreadPool::setMaxThreads(int maxThreads)
{
    QMutexLocker lock(mThreadsMutex.get());
    mMaxThreads = maxThreads;
}

void komQtSignalThreadPool::setPriority(QThread::Priority priority)
{
    if (priority == mPriority)
        return;
    QMutexLocker lock(mThreadsMutex.get());
    mPriority = priority;
    for (komQtSignalWorkerThread *thread : qAsConst(mThreads))
        thread->setPriority(priority);
}

komQtSignalWorkerThread *komQtSignalThreadPool::allocateThread()
{
    QMutexLocker lock(mThreadsMutex.get());
    // Workers that have stopped are discarded and erased, in list order.
    mThreads.erase(std::remove_if(mThreads.begin(), mThreads.end(),
                       [this](komQtSignalWorkerThread *thread) {
                           if (thread->isRunning())
                               return false;
                           discardThread(thread);
                           return true;
                       }),
        mThreads.end());
    // The least loaded worker, the earliest on ties (loads are read without the workers' locks).
    const auto least = std::min_element(mThreads.cbegin(), mThreads.cend(),
        [](const komQtSignalWorkerThread *a, const komQtSignalWorkerThread *b) {
            return a->load() < b->load();
        });
    komQtSignalWorkerThread *const chosen = least == mThreads.cend() ? nullptr : *least;
    if (chosen && chosen->load() == 0)
        return chosen;
    if (mMaxThreads > 0 && mThreads.size() >= mMaxThreads)
        return chosen;
    // Numbered from the current list length: a number may be given again after a discard.
    auto *thread = new komQtSignalWorkerThread(
        QStringLiteral("%1-Thread-%2").arg(objectName(), QString::number(mThreads.size() + 1)),
        this);
    thread->start(QThread::InheritPriority);
    thread->setPriority(mPriority);
    mThreads.append(thread);
    return thread;
}

void komQtSignalThreadPool::attachToThread(QObject *object)
{
    // A null object is outside the contract: no worker is made or chosen for it.
    if (refusedNull(object, this))
        return;
    allocateThread()->attach(object);
}

void komQtSignalThreadPool::detachFromThread(QObject *object, QThread *target)
{
    const QList<komQtSignalWorkerThread *> threads = mThreads;
    for (komQtSignalWorkerThread *thread : threads)
        thread->detach(object, target);
}

void komQtSignalThreadPool::discardThread(komQtSignalWorkerThread *thread)
{
    if (QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance(thread))
        compat::flush(dispatcher);
    thread->exit(0);
    if (!thread->wait(2000)) {
        // Left alive on purpose: it stays a child of the pool.
        LogLine(Log::Warning) << "Thread not properly deleted";
        return;
    }
    delete thread;
}

SignalPoolSnapshot komQtSignalThreadPool::snapshot(int lockTimeoutMs) const
{
    SignalPoolSnapshot snapshot;
    snapshot.name = objectName();
    if (!mThreadsMutex->tryLock(lockTimeoutMs)) {
        snapshot.lockBusy = true;
        snapshot.lockWaitMs = lockTimeoutMs;
        return snapshot;
    }
    std::unique_lock<QMutex> lock(*mThreadsMutex, std::adopt_lock);
    snapshot.maxThreads = mMaxThreads;
    snapshot.priority = mPriority;
    snapshot.workers.reserve(mThreads.size());
    for (const komQtSignalWorkerThread *thread : mThreads)
        snapshot.workers.append(thread->snapshot());
    return snapshot;
}

} // namespace ko
