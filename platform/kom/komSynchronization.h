// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_SYNCHRONIZATION_H
#define KOM_SYNCHRONIZATION_H

#include "platform/kom/komObject.h"
#include "platform/kom/komSmart.h"
#include "platform/kom/kom_export.h"

/** Work that a spawned middleware thread runs. */
class KOM_EXPORT komRunnableInterface : public virtual komInterface
{
public:
    /** Runs when the last kom::smart handle to the runnable goes. */
    ~komRunnableInterface() override;
    /** The work, run once in the spawned thread. */
    virtual void run() = 0;
};

/** A lock of the middleware. */
class KOM_EXPORT komLockInterface : public virtual komInterface
{
public:
    /** Destroys the lock; it must not be held. */
    ~komLockInterface() override;
    /** Takes the lock, waiting as long as needed. */
    virtual void acquire() = 0;
    /** Releases the lock. */
    virtual void release() = 0;
};

/** A condition variable paired with a middleware lock. */
class KOM_EXPORT komConditionVariableInterface : public virtual komInterface
{
public:
    /** Destroys the condition variable; no thread may be waiting on it. */
    ~komConditionVariableInterface() override;
    /** Releases the paired lock, waits for a signal and takes the lock again; false on failure. */
    virtual bool wait() = 0;
    /** Wakes one waiter. */
    virtual void signal() = 0;
    /** Wakes all waiters. */
    virtual void signalAll() = 0;
};

/** Starts one thread that runs one runnable. */
class KOM_EXPORT komThreadSpawnerInterface : public virtual komInterface
{
public:
    /** Destroys the spawner; implementations wait for a spawned thread first. */
    ~komThreadSpawnerInterface() override;
    /** Installs the runnable the thread will run. */
    virtual void setRunnable(kom::smart<komRunnableInterface> runnable) = 0;
    /** Starts the thread. */
    virtual void spawnThread() = 0;
    /** Waits until the thread has ended. */
    virtual void waitUntilThreadHasTerminated() = 0;
};

/** Makes the synchronization objects of one implementation; the caller owns what it returns. */
class KOM_EXPORT komSynchronizationFactoryInterface : public virtual komInterface
{
public:
    /** Destroys the factory; what it made lives on. */
    ~komSynchronizationFactoryInterface() override;
    /** A new thread spawner. */
    virtual komThreadSpawnerInterface *newThreadSpawner() = 0;
    /** A new non-recursive lock. */
    virtual komLockInterface *newLock() = 0;
    /** A new condition variable paired with @p lock, which must come from this factory. */
    virtual komConditionVariableInterface *newConditionVariable(komLockInterface *lock) = 0;
};

#endif // KOM_SYNCHRONIZATION_H
