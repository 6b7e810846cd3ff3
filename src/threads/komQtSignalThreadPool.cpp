#include "threads/komQtSignalThreadPool.h"

#include "exceptions/ExceptionQt.h"
#include "kom/koqtextstream.h"
#include "log/LogQt.h"
#include "signals/SignalUtils.h"

#include "platform/kom/komException.h"

#include <QAbstractEventDispatcher>
#include <QMutex>

#include <exception>
#include <memory>

namespace ko
{

namespace
{

komQtSignalThreadPool* gSignalPool = nullptr;

// Locks the worker's mutex when it still exists; after the thread body ended it is gone.
class OptionalLocker
{
public:
    explicit OptionalLocker(QMutex* mutex) : mMutex(mutex)
    {
        if (mMutex)
            mMutex->lock();
    }
    ~OptionalLocker()
    {
        if (mMutex)
            mMutex->unlock();
    }

private:
    Q_DISABLE_COPY(OptionalLocker)
    QMutex* mMutex;
};

} // namespace

komQtSignalWorkerThread::komQtSignalWorkerThread(const QString& name, QObject* parent)
    : QThread(parent)
    , mMutex(new QMutex(QMutex::Recursive))
    , mLoad(0)
{
    setObjectName(name);
}

// The mutex belongs to the thread body, which deletes it when it ends; a worker
// that never ran still has it.
komQtSignalWorkerThread::~komQtSignalWorkerThread()
{
    delete mMutex;
}

void komQtSignalWorkerThread::syncLoad_locked()
{
    mLoad.store(mAttached.size(), std::memory_order_relaxed);
}

void komQtSignalWorkerThread::attach(QObject* object)
{
    OptionalLocker lock(mMutex);
    object->moveToThread(this);
    mAttached.append(QPointer<QObject>(object));
    syncLoad_locked();
    ko::connect(object, "2destroyed(QObject*)", this, "1attachedDestroyed(QObject*)", Qt::AutoConnection);
}

void komQtSignalWorkerThread::detach(QObject* object, QThread* target)
{
    OptionalLocker lock(mMutex);
    const int index = indexOf(object);
    if (index >= 0)
        detach(index, target);
}

void komQtSignalWorkerThread::detach(int index, QThread* target)
{
    OptionalLocker lock(mMutex);
    QPointer<QObject> object;
    if (index >= 0 && index < mAttached.size()) {
        object = mAttached.at(index);
        mAttached.removeAt(index);
        syncLoad_locked();
    }
    if (!object)
        return;
    // Only the worker itself may give away an object that lives in it; from
    // anywhere else the object is just forgotten.
    if (object->thread() == this && QThread::currentThread() == this) {
        object->moveToThread(target);
        if (!target) {
            LogLine(Log::Warning) << "detaching " << object->metaObject()->className() << "."
                                  << object->objectName() << ". event processing will stop.";
        }
    }
    mAttached.removeAll(object);
    syncLoad_locked();
}

int komQtSignalWorkerThread::indexOf(QObject* object) const
{
    OptionalLocker lock(mMutex);
    for (int i = 0; i < mAttached.size(); ++i) {
        if (mAttached.at(i) == object)
            return i;
    }
    return -1;
}

int komQtSignalWorkerThread::load() const
{
    return mLoad.load(std::memory_order_relaxed);
}

void komQtSignalWorkerThread::attachedDestroyed(QObject* object)
{
    OptionalLocker lock(mMutex);
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
    const QString where = QStringLiteral("in worker thread ") + name + QStringLiteral(": ");
#if defined(__clang__)
    // Clang takes char* and const char* handlers for one and the same; the table lists both.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wexceptions"
#endif
    try {
        exec();
    } catch (ko::ExceptionQt& e) {
        LogLine(Log::FatalError) << e;
    } catch (char* text) {
        LogLine(Log::FatalError) << where << text;
    } catch (const char* text) {
        LogLine(Log::FatalError) << where << text;
    } catch (komTerminalException& e) {
        LogLine(Log::FatalError) << where << e;
    } catch (komException& e) {
        LogLine(Log::FatalError) << where << e;
    } catch (std::exception& e) {
        LogLine(Log::FatalError) << where << e.what();
    } catch (QObject& o) {
        LogLine(Log::FatalError) << where << o.metaObject()->className();
    } catch (...) {
        LogLine(Log::FatalError) << where;
    }
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
    if (mMutex)
        LogLine(Log::Message) << name << " finished.";
    else
        LogLine(Log::Warning) << "zombie task " << name << " deleted";
    delete mMutex;
    mMutex = nullptr;
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
    komQtSignalWorkerThread* chosen = nullptr;
    int smallest = 2147483647;
    for (auto it = mThreads.begin(); it != mThreads.end();) {
        komQtSignalWorkerThread* thread = *it;
        if (!thread->isRunning()) {
            discardThread(thread);
            it = mThreads.erase(it);
            continue;
        }
        const int load = thread->load();
        if (load < smallest) {
            chosen = thread;
            smallest = load;
        }
        ++it;
    }
    if (smallest == 0)
        return chosen;
    if (mMaxThreads > 0 && mThreads.size() >= mMaxThreads)
        return chosen;
    // Numbered from the current list length: a number may be given again after a discard.
    auto* thread = new komQtSignalWorkerThread(
        QStringLiteral("%1-Thread-%2").arg(objectName()).arg(mThreads.size() + 1), this);
    thread->start(QThread::InheritPriority);
    thread->setPriority(mPriority);
    mThreads.append(thread);
    return thread;
}

void komQtSignalThreadPool::attachToThread(QObject* object)
{
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
        dispatcher->flush();
    thread->exit(0);
    if (!thread->wait(2000)) {
        // Left alive on purpose: it stays a child of the pool.
        LogLine(Log::Warning) << "Thread not properly deleted";
        return;
    }
    delete thread;
}

} // namespace ko
