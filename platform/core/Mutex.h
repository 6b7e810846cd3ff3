// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_MUTEX_H
#define KO_MUTEX_H

#include "platform/core/core_export.h"

#include <atomic>
#include <pthread.h>

namespace ko
{

/**
 * A POSIX mutex that knows its owner and how often the owner holds it.
 * A recursive mutex may be locked again by its owner; relocking a non-recursive
 * one from its owner throws ko::RuntimeError("Nonrecursive mutex locked twice").
 */
class CORE_EXPORT Mutex
{
public:
    /** Creates an unlocked mutex, recursive or not. */
    explicit Mutex(bool recursive = false);
    /** Destroys the mutex; it must not be locked. */
    ~Mutex();

    /** Not copyable: a mutex is one lock. */
    Mutex(const Mutex &) = delete;
    /** Not assignable, as it is not copyable. */
    Mutex &operator=(const Mutex &) = delete;

    /** Locks the mutex; throws ko::RuntimeError on relocking a non-recursive mutex or a failing
     * POSIX call. */
    void lock();
    /** Unlocks one level; throws ko::RuntimeError with strerror's text when the POSIX call fails
     * (e.g. not the owner). */
    void unlock();
    /** True when the owner may lock the mutex again. */
    bool isRecursive() const;
    /** How many times the calling thread holds the mutex (0 when another thread or nobody holds
     * it). */
    int lockCount() const;

private:
    pthread_mutex_t mMutex;
    std::atomic<pthread_t> mOwner;
    int mCount;
    const bool mRecursive;
};

/** Scoped lock on a ko::Mutex: locks on construction when asked to, unlocks on destruction. */
class CORE_EXPORT MutexLocker
{
public:
    /** Takes @p mutex and locks it at once when @p lockNow is true. */
    MutexLocker(Mutex &mutex, bool lockNow = true);
    /** Unlocks the mutex if this locker holds it; never throws. */
    ~MutexLocker();

    /** Not copyable: only one locker may unlock what it locked. */
    MutexLocker(const MutexLocker &) = delete;
    /** Not assignable, as it is not copyable. */
    MutexLocker &operator=(const MutexLocker &) = delete;

    /** Locks the mutex (once per locker). */
    void lock();
    /** Unlocks the mutex if this locker holds it. */
    void unlock();
    /** True while this locker holds the mutex. */
    bool isLocked() const { return mLocked; }

private:
    Mutex &mMutex;
    bool mLocked;
};

} // namespace ko

#endif // KO_MUTEX_H
