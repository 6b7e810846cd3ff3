// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_POOLSNAPSHOT_H
#define KO_POOLSNAPSHOT_H

#include <QString>
#include <QVector>

namespace ko
{

/** A job waiting in a worker's queue, as a snapshot saw it. */
struct QueuedJobSnapshot
{
    /** The job's id. */
    int jobId = -1;
    /** Its scheduling priority (a QThread::Priority, without the LIFO bit). */
    int priority = 3;
    /** True when it was scheduled with komQtThreadPool::ScheduleLifo. */
    bool lifo = false;
    /** How long it has been queued, in milliseconds. */
    qint64 queuedMs = 0;
};

/** One worker of a job pool, as a snapshot saw it. */
struct JobWorkerSnapshot
{
    /** The worker's thread name, such as "ThreadPool-Thread-2". */
    QString name;
    /** In the pool's busy list; from lock-free state (JobPoolSnapshot::lockBusy): running a job. */
    bool busy = false;
    /** The id of the job it runs; -1 when it runs none. */
    int runningJobId = -1;
    /** The running job's priority. */
    int runningPriority = 3;
    /** How long the running job has been running, in milliseconds (0 while it is being started). */
    qint64 runningMs = 0;
    /** The jobs behind it, in the order they will run; empty when read from lock-free state. */
    QVector<QueuedJobSnapshot> queue;
    /** Queued jobs plus the running one; -1 when read from lock-free state. */
    int workLoad = 0;
};

/** What a job pool has done since it was created. */
struct JobPoolTotals
{
    /** Jobs handed to a worker. */
    quint64 scheduled = 0;
    /** Jobs that began to run. */
    quint64 started = 0;
    /** Jobs that ended (a job that threw counts as ended). */
    quint64 finished = 0;
    /** Queued jobs taken out by an abort request. */
    quint64 abortedWhileQueued = 0;
    /** Queued jobs moved by a priority change. */
    quint64 reprioritised = 0;
};

/** A job pool at one moment: komQtThreadPool::snapshot(). A plain value, copied freely. */
struct JobPoolSnapshot
{
    /** The pool's name. */
    QString name;
    /** The most workers it creates; 0 or less: no limit. */
    int maxThreads = 0;
    /**
     * True when the pool lock was not had within the time limit: the workers are then those that
     * publish their running job without a lock, without queues, and idle/idleSinceMs are unknown.
     */
    bool lockBusy = false;
    /** The time limit waited for the pool lock, in milliseconds, when lockBusy. */
    int lockWaitMs = 0;
    /** True when at least one worker is free for a new job. */
    bool idle = false;
    /** How long the pool has been idle, in milliseconds; -1 while busy or unknown. */
    qint64 idleSinceMs = -1;
    /** The stall watchdog's threshold in milliseconds; 0 when it is off. */
    int stallThresholdMs = 0;
    /** The workers, idle ones first, each list in the pool's order. */
    QVector<JobWorkerSnapshot> workers;
    /** Counts since the pool was created. */
    JobPoolTotals totals;
};

/** An object attached to a signal pool worker: its class and the object name it had when attached.
 */
struct AttachedObjectSnapshot
{
    /** The class name from its meta-object. */
    QString className;
    /** Its object name when it was attached. */
    QString objectName;
};

/** One worker of a signal thread pool, as a snapshot saw it. */
struct SignalWorkerSnapshot
{
    /** The worker's thread name, such as "SignalThreadPool-Thread-1". */
    QString name;
    /** Its attached entries, destroyed objects included (komQtSignalWorkerThread::load()). */
    int load = 0;
    /** The attached objects, in attach order. */
    QVector<AttachedObjectSnapshot> attached;
};

/** A signal thread pool at one moment: komQtSignalThreadPool::snapshot(). A plain value. */
struct SignalPoolSnapshot
{
    /** The pool's name. */
    QString name;
    /** The most workers it creates; 0 or less: no limit. */
    int maxThreads = 0;
    /** The QThread::Priority given to its workers. */
    int priority = 3;
    /** True when its worker list was not had within the time limit; nothing else is known then. */
    bool lockBusy = false;
    /** The time limit waited, in milliseconds, when lockBusy. */
    int lockWaitMs = 0;
    /** The workers in creation order. */
    QVector<SignalWorkerSnapshot> workers;
};

} // namespace ko

#endif // KO_POOLSNAPSHOT_H
