// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOMQTTHREADSPAWNER_H
#define KOMQTTHREADSPAWNER_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSmart.h"
#include "platform/kom/komSynchronization.h"

#include <QThread>

/**
 * The middleware's thread spawner over a QThread (its base): runs one runnable in a new thread.
 * Misuse is reported through kom::terminal; progress as status messages of type 40.
 */
class COREQT_EXPORT komQtThreadSpawner : public QThread,
                                         public komObject,
                                         public virtual komThreadSpawnerInterface
{
    Q_OBJECT

public:
    /** A spawner without runnable and without parent; its thread is not started yet. */
    komQtThreadSpawner();
    /**
     * Waits for a spawned thread that was not waited for (so destroying a running spawner blocks
     * until its runnable returns), then releases the runnable.
     */
    ~komQtThreadSpawner() override;

    /**
     * Installs the runnable; reports "runnable has already been set!" when one was already
     * installed, and replaces it all the same if that report returns.
     */
    void setRunnable(kom::smart<komRunnableInterface> runnable) override;
    /**
     * Starts the thread with QThread::InheritPriority; reports "no runnable installed!", "thread
     * has already been waited upon!" and "thread has already been spawned!" as they apply, and
     * starts the thread all the same if those reports return (Qt ignores a start of a running
     * thread).
     */
    void spawnThread() override;
    /**
     * Waits without time limit for a spawned thread, between the status messages "waiting for
     * thread to terminate..." and "thread has terminated"; reports a second call with "thread has
     * already been waited upon!". A spawner never spawned is marked as waited upon without waiting
     * or messages.
     */
    void waitUntilThreadHasTerminated() override;

protected:
    /**
     * The thread body: runs the runnable between the status messages "thread spawned, executing
     * runnable..." and "thread returned from runnable, terminating..." (type 40, the spawner as
     * sender).
     */
    void run() override;

private:
    Q_DISABLE_COPY(komQtThreadSpawner)

    kom::smart<komRunnableInterface> mRunnable;
    bool mSpawned;
    bool mWaitedUpon;
};

#endif // KOMQTTHREADSPAWNER_H
