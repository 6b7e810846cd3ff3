// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOMQTSIGNALTHREADPOOL_H
#define KO_KOMQTSIGNALTHREADPOOL_H

#include "compat/QtCompat.h"
#include "coreqt_export.h"
#include "threads/PoolSnapshot.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QThread>

#include <atomic>
#include <memory>

namespace ko
{

/**
 * One event-loop thread of a ko::komQtSignalThreadPool. Objects attached to it
 * live in the thread, so their slots, timers and queued events run there.
 *
 * Its recursive mutex guards the list of attached objects; it is deleted when
 * the thread body ends, after which the operations run without a lock. The
 * class and object names of the attached objects are kept beside the list,
 * under a lock of their own, for snapshots taken in any thread.
 */
class COREQT_EXPORT komQtSignalWorkerThread : public QThread
{
    Q_OBJECT

public:
    /** A worker named @p name, child of @p parent; not started. */
    explicit komQtSignalWorkerThread(const QString &name, QObject *parent = nullptr);
    /** Destroys the worker; it must not be running. */
    ~komQtSignalWorkerThread() override;

    /**
     * Moves @p object into this thread and records it; call it from the thread that owns
     * @p object. A null object is refused with a warning; an object attached twice gets two
     * entries.
     */
    void attach(QObject *object);
    /**
     * Forgets @p object. Only when called inside this thread for an object living
     * here is the object also moved to @p target (null leaves it without a thread).
     */
    void detach(QObject *object, QThread *target = nullptr);
    /** Forgets the object at @p index, moving it as detach(QObject*, QThread*) does; a bad index is
     * ignored. */
    void detach(int index, QThread *target = nullptr);
    /** Position of the first entry of @p object among the attached objects, or -1. */
    int indexOf(QObject *object) const;
    /** Number of attached entries, destroyed objects included; read without a lock. */
    int load() const;
    /**
     * Its name and attached entries, each with its class and the object name it had when it
     * was attached; safe from any thread, as it does not look at the objects.
     */
    SignalWorkerSnapshot snapshot() const;

protected Q_SLOTS:
    /**
     * Connected to each attached object's destroyed(QObject*). Kept as it always was: Qt clears the
     * guarded entry before the signal arrives, so the entry is rarely found and a destroyed object
     * stays as a null entry that keeps counting in load().
     */
    void attachedDestroyed(QObject *object);

protected:
    /**
     * Runs the event loop; anything escaping it is logged at level 4 and ends the thread, which
     * then logs "<name> finished." at level 1.
     */
    void run() override;

private:
    Q_DISABLE_COPY(komQtSignalWorkerThread)
    struct AttachedNames;

    void syncLoad_locked();
    void removeAt_locked(int index);

    std::unique_ptr<RecursionModeMutex> mMutex;
    QList<QPointer<QObject>> mAttached;
    std::atomic<int> mLoad; // mAttached.size(), readable from any thread
    std::unique_ptr<AttachedNames> mNames; // in step with mAttached
};

/**
 * A pool of event-loop threads to which objects are attached so that their work
 * runs off the caller's thread. Used from the thread that owns the pool; only
 * snapshot() may be called from any thread (a lock guards the worker list for it).
 */
class COREQT_EXPORT komQtSignalThreadPool : public QObject
{
    Q_OBJECT

public:
    /** A pool named @p name creating at most @p maxThreads workers (0 or less: no limit); no thread
     * yet. */
    komQtSignalThreadPool(const QString &name, int maxThreads, QObject *parent = nullptr);
    /** Stops and deletes the workers, newest first. */
    ~komQtSignalThreadPool() override;

    /**
     * The process-wide pool "SignalThreadPool" (4 threads, low priority), created on first call;
     * like the rest of the pool, for the thread that owns it only.
     */
    static komQtSignalThreadPool *globalInstance();
    /** Deletes the process-wide pool; false when there was none. */
    static bool deleteGlobalInstance();

    /** Sets the limit for later allocations; existing workers are kept. */
    void setMaxThreads(int maxThreads);
    /** The limit on the number of workers (0 or less: none). */
    int maxThreads() const { return mMaxThreads; }
    /** Sets the priority of every worker, now and later. */
    void setPriority(QThread::Priority priority);
    /** The priority given to the workers. */
    QThread::Priority priority() const { return mPriority; }
    /** The workers, in creation order. */
    const QList<komQtSignalWorkerThread *> &threads() const { return mThreads; }

    /**
     * The worker that should take the next object: the first one with nothing attached, else a new
     * one below the maximum, else the least loaded (the earliest on ties); stopped workers are
     * discarded first. New workers are named "<pool>-Thread-<n>" with n one more than the number of
     * workers, so a name may be given again after a discard: names are labels, not identities.
     */
    komQtSignalWorkerThread *allocateThread();
    /** Attaches @p object to the worker chosen by allocateThread(); refuses a null one with a
     * warning. */
    void attachToThread(QObject *object);
    /**
     * Asks every worker to detach @p object, handing it to @p target. Called from any thread but
     * the object's worker, this only forgets the object, which stays in its worker's thread.
     */
    void detachFromThread(QObject *object, QThread *target = nullptr);
    /**
     * Ends one worker's event loop, waits up to 2000 ms and deletes it; the list is the caller's
     * business. A worker that does not end in time is left alive, as a child of the pool, after the
     * level-2 line "Thread not properly deleted".
     */
    void discardThread(komQtSignalWorkerThread *thread);

    /**
     * The pool at this moment, from any thread: its workers with their attached objects. Waits at
     * most @p lockTimeoutMs for the worker list (held while a worker is created or discarded);
     * when it is not had by then, the result is marked lockBusy.
     */
    SignalPoolSnapshot snapshot(int lockTimeoutMs) const;

private:
    Q_DISABLE_COPY(komQtSignalThreadPool)
    QThread::Priority mPriority;
    QList<komQtSignalWorkerThread *> mThreads;
    int mMaxThreads;
    std::unique_ptr<QMutex> mThreadsMutex; // guards the members above against snapshot()
};

} // namespace ko

#endif // KO_KOMQTSIGNALTHREADPOOL_H
