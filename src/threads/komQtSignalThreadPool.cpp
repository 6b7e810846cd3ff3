#include "threads/komQtSignalThreadPool.h"

#include "compat/QtCompat_p.h"
#include "log/LogQt.h"
#include "signals/SignalUtils.h"
#include "threads/CaughtException_p.h"

#include <QAbstractEventDispatcher>
#include <QMutex>
#include <QMutexLocker>

#include <algorithm>

namespace ko
{

namespace
{

komQtSignalThreadPool* gSignalPool = nullptr;

// Refuses a null object given to attach: true, after one warning, when @p object is null.
bool refusedNull(const QObject* object, const QObject* to)
{
    if (object)
        return false;
    LogLine(Log::Warning) << "attaching null object to " << to->objectName() << ". nothing attached.";
    return true;
}

} // namespace

komQtSignalWorkerThread::komQtSignalWorkerThread(const QString& name, QObject* parent)
    : QThread(parent)
    , mMutex(std::make_unique<RecursionModeMutex>(RecursionModeMutex::Recursive))
    , mLoad(0)
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

void komQtSignalWorkerThread::attach(QObject* object)
{
    // A null object is outside the contract: nothing to move or to watch.
    if (refusedNull(object, this))
        return;
    QMutexLocker lock(mMutex.get());
    object->moveToThread(this);
    mAttached.append(QPointer<QObject>(object));
    syncLoad_locked();
    ko::connect(
        object, SIGNAL(destroyed(QObject*)), this, SLOT(attachedDestroyed(QObject*)), Qt::AutoConnection);
}

void komQtSignalWorkerThread::detach(QObject* object, QThread* target)
{
    QMutexLocker lock(mMutex.get());
    const int index = indexOf(object);
    if (index >= 0)
        detach(index, target);
}

void komQtSignalWorkerThread::detach(int index, QThread* target)
{
    QMutexLocker lock(mMutex.get());
    QPointer<QObject> object;
    if (index >= 0 && index < mAttached.size()) {
        object = mAttached.at(index);
        mAttached.removeAt(index);
        syncLoad_locked();
    }
    if (!object)
        return;
    // Its other entries are found by address: should the object be destroyed meanwhile (in its
    // own thread), the null entries that other destroyed objects left must stay.
    const QObject* const address = object.data();
    // Only the worker itself may give away an object that lives in it; from anywhere else the
    // object is just forgotten (and not even looked at, as its own thread may be deleting it).
    if (QThread::currentThread() == this && object->thread() == this) {
        object->moveToThread(target);
        if (!target) {
            LogLine(Log::Warning) << "detaching " << object->metaObject()->className() << "."
                                  << object->objectName() << ". event processing will stop.";
        }
    }
    mAttached.erase(std::remove_if(mAttached.begin(), mAttached.end(),
                        [address](const QPointer<QObject>& entry) { return entry.data() == address; }),
        mAttached.end());
    syncLoad_locked();
}

int komQtSignalWorkerThread::indexOf(QObject* object) const
{
    QMutexLocker lock(mMutex.get());
    // Compared as addresses: @p object may be gone already (attachedDestroyed()).
    const auto found = std::find_if(mAttached.cbegin(), mAttached.cend(),
        [object](const QPointer<QObject>& entry) { return entry.data() == object; });
    return found == mAttached.cend() ? -1 : int(found - mAttached.cbegin());
}

int komQtSignalWorkerThread::load() const
{
    return mLoad.load(std::memory_order_relaxed);
}

void komQtSignalWorkerThread::attachedDestroyed(QObject* object)
{
    QMutexLocker lock(mMutex.get());
    // Qt clears the guarded pointer before destroyed() arrives, so this rarely finds
    // the entry: a destroyed object stays as a null entry and keeps counting. Kept so.
    const int index = indexOf(object);
    if (index >= 0 && index < mAttached.size()) {
        mAttached.removeAt(index);
        syncLoad_locked();
    }
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

komQtSignalThreadPool::komQtSignalThreadPool(const QString& name, int maxThreads, QObject* parent)
    : QObject(parent)
    , mPriority(QThread::NormalPriority)
    , mMaxThreads(maxThreads)
{
    setObjectName(name);
}

komQtSignalThreadPool::~komQtSignalThreadPool()
{
    if (gSignalPool == this)
        gSignalPool = nullptr;
    while (!mThreads.isEmpty())
        discardThread(mThreads.takeLast());
}

komQtSignalThreadPool* komQtSignalThreadPool::globalInstance()
{
    if (!gSignalPool) {
        gSignalPool = new komQtSignalThreadPool(QStringLiteral("SignalThreadPool"), 4, nullptr);
        gSignalPool->setPriority(QThread::LowPriority);
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
    mMaxThreads = maxThreads;
}

void komQtSignalThreadPool::setPriority(QThread::Priority priority)
{
    if (priority == mPriority)
        return;
    mPriority = priority;
    for (komQtSignalWorkerThread* thread : qAsConst(mThreads))
        thread->setPriority(priority);
}

komQtSignalWorkerThread* komQtSignalThreadPool::allocateThread()
{
    // Workers that have stopped are discarded and erased, in list order.
    mThreads.erase(std::remove_if(mThreads.begin(), mThreads.end(),
                       [this](komQtSignalWorkerThread* thread) {
                           if (thread->isRunning())
                               return false;
                           discardThread(thread);
                           return true;
                       }),
        mThreads.end());
    // The least loaded worker, the earliest on ties (loads are read without the workers' locks).
    const auto least = std::min_element(mThreads.cbegin(), mThreads.cend(),
        [](const komQtSignalWorkerThread* a, const komQtSignalWorkerThread* b) {
            return a->load() < b->load();
        });
    komQtSignalWorkerThread* const chosen = least == mThreads.cend() ? nullptr : *least;
    if (chosen && chosen->load() == 0)
        return chosen;
    if (mMaxThreads > 0 && mThreads.size() >= mMaxThreads)
        return chosen;
    // Numbered from the current list length: a number may be given again after a discard.
    auto* thread = new komQtSignalWorkerThread(
        QStringLiteral("%1-Thread-%2").arg(objectName(), QString::number(mThreads.size() + 1)), this);
    thread->start(QThread::InheritPriority);
    thread->setPriority(mPriority);
    mThreads.append(thread);
    return thread;
}

void komQtSignalThreadPool::attachToThread(QObject* object)
{
    // A null object is outside the contract: no worker is made or chosen for it.
    if (refusedNull(object, this))
        return;
    allocateThread()->attach(object);
}

void komQtSignalThreadPool::detachFromThread(QObject* object, QThread* target)
{
    const QList<komQtSignalWorkerThread*> threads = mThreads;
    for (komQtSignalWorkerThread* thread : threads)
        thread->detach(object, target);
}

void komQtSignalThreadPool::discardThread(komQtSignalWorkerThread* thread)
{
    if (QAbstractEventDispatcher* dispatcher = QAbstractEventDispatcher::instance(thread))
        compat::flush(dispatcher);
    thread->exit(0);
    if (!thread->wait(2000)) {
        // Left alive on purpose: it stays a child of the pool.
        LogLine(Log::Warning) << "Thread not properly deleted";
        return;
    }
    delete thread;
}

} // namespace ko
