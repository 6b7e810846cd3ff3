// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_IRUNNABLE_H
#define KO_IRUNNABLE_H

#include "compat/QtCompat.h"
#include "coreqt_export.h"
#include "threads/IInterface.h"

#include <atomic>

namespace ko
{

/**
 * A job for the thread pool, held through kom::smart<ko::IRunnable>. The pool
 * clears the abort flag when it queues the job; an abort request on the queued
 * job sets it, and a worker drops a job whose flag is set without running it.
 *
 * A job must not throw; one that does is caught by its worker, logged at level 3
 * ("in worker thread <name>: ..." as the signal thread pool reports what escapes its
 * threads) and ends like any other job, with jobFinished().
 */
class COREQT_EXPORT IRunnable : public virtual IInterface
{
public:
    /** A job whose abort flag is false. */
    IRunnable();
    /** Copies the other job's abort flag. */
    IRunnable(const IRunnable &other);
    /** Copies the other job's abort flag. */
    IRunnable &operator=(const IRunnable &other);
    /** Runs when the last kom::smart handle goes: the caller's, the worker queue's or the running
     * one's. */
    ~IRunnable() override;

    /**
     * The work, run on a worker thread with the job's id and the worker's job timer (already
     * started; a QTime on Qt 5, a QElapsedTimer on Qt 6).
     */
    virtual void run(int jobId, JobTimer &timer) = 0;

    /**
     * True asks the worker to drop the queued job without running it; komQtThreadPool::schedule()
     * clears it. Written and read from several threads, hence atomic.
     */
    std::atomic<bool> mAbortRequested;
};

} // namespace ko

#endif // KO_IRUNNABLE_H
