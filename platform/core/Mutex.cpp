// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Mutex.h"

#include "platform/core/Exception.h"

#include <cstring>

namespace ko
{

namespace
{

// Turns a failing POSIX return code into the error every Mutex operation reports.
void check(int rc)
{
    if (rc != 0)
        throw RuntimeError(std::strerror(rc));
}

} // namespace

Mutex::Mutex(bool recursive)
    : mOwner(pthread_t())
    , mCount(0)
    , mRecursive(recursive)
{
    // Error checking lets POSIX itself refuse an unlock by a thread that does not own the mutex.
    pthread_mutexattr_t attr;
    check(pthread_mutexattr_init(&attr));
    pthread_mutexattr_settype(&attr, PTHREAD_MUTEX_ERRORCHECK);
    const int rc = pthread_mutex_init(&mMutex, &attr);
    pthread_mutexattr_destroy(&attr);
    check(rc);
}

Mutex::~Mutex()
{
    pthread_mutex_destroy(&mMutex);
}

void Mutex::lock()
{
    const pthread_t self = pthread_self();
    // Only the owner ever reads mCount, so the owner test comes first.
    if (pthread_equal(mOwner.load(std::memory_order_relaxed), self) && mCount > 0) {
        if (!mRecursive)
            throw RuntimeError("Nonrecursive mutex locked twice");
        ++mCount;
        return;
    }
    check(pthread_mutex_lock(&mMutex));
    mOwner.store(self, std::memory_order_relaxed);
    mCount = 1;
}

void Mutex::unlock()
{
    const bool owner
        = pthread_equal(mOwner.load(std::memory_order_relaxed), pthread_self()) && mCount > 0;
    if (owner && mCount > 1) {
        --mCount;
        return;
    }
    if (owner) {
        mCount = 0;
        mOwner.store(pthread_t(), std::memory_order_relaxed);
    }
    // For a thread that does not own it, POSIX answers EPERM and we throw its text.
    check(pthread_mutex_unlock(&mMutex));
}

bool Mutex::isRecursive() const
{
    return mRecursive;
}

int Mutex::lockCount() const
{
    return pthread_equal(mOwner.load(std::memory_order_relaxed), pthread_self()) ? mCount : 0;
}

MutexLocker::MutexLocker(Mutex &mutex, bool lockNow)
    : mMutex(mutex)
    , mLocked(false)
{
    if (lockNow)
        lock();
}

MutexLocker::~MutexLocker()
{
    try {
        unlock();
    } catch (...) {
        // A destructor must not throw; the lock was already released or never taken.
    }
}

void MutexLocker::lock()
{
    if (mLocked)
        return;
    mMutex.lock();
    mLocked = true;
}

void MutexLocker::unlock()
{
    if (!mLocked)
        return;
    mLocked = false;
    mMutex.unlock();
}

} // namespace ko
