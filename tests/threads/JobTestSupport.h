#ifndef COREQT_TESTS_JOBTESTSUPPORT_H
#define COREQT_TESTS_JOBTESTSUPPORT_H

#include "kom/komQtLock.h"
#include "threads/IRunnable.h"
#include "threads/komQtThreadPool.h"
#include "threads/komQtWorkerThread.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QMutex>
#include <QPointer>
#include <QSemaphore>
#include <QThread>
#include <QTime>
#include <QTimer>

#include <atomic>
#include <functional>

/**
 * Runs an event loop until @p done (asked every @p pollMs) is true or @p timeoutMs pass;
 * returns @p done's last answer.
 */
inline bool spinUntil(const std::function<bool()>& done, int timeoutMs = 10000, int pollMs = 1)
{
    QElapsedTimer clock;
    clock.start();
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&]() {
        if (done() || clock.elapsed() > timeoutMs)
            loop.quit();
    });
    poll.start(pollMs);
    if (!done())
        loop.exec();
    return done();
}

/** The order in which jobs ran, shared between jobs. */
struct RunLog
{
    QMutex mutex;
    QList<int> tags;
    void add(int tag)
    {
        QMutexLocker lock(&mutex);
        tags << tag;
    }
    QList<int> snapshot()
    {
        QMutexLocker lock(&mutex);
        return tags;
    }
};

/** A job that records where, how and how often it ran; it may hold at a gate or sleep first. */
class RecordingJob : public ko::IRunnable
{
public:
    explicit RecordingJob(int tag = 0, RunLog* log = nullptr, QSemaphore* gate = nullptr, int sleepMs = 0)
        : mTag(tag)
        , mLog(log)
        , mGate(gate)
        , mSleepMs(sleepMs)
    {
        ++sAlive;
    }
    ~RecordingJob() override { --sAlive; }

    void run(int jobId, QTime& timer) override
    {
        QThread* self = QThread::currentThread();
        mJobId = jobId;
        mThreadName = self->objectName();
        mThread = self;
        mPriority = self->priority();
        mTimerValid = timer.isValid();
        mStarted.release();
        if (mGate)
            mGate->acquire();
        if (mSleepMs > 0)
            QThread::msleep(mSleepMs);
        if (mLog)
            mLog->add(mTag);
        ++mRuns;
    }

    /** Waits until the job has started (it may still be held at its gate). */
    bool waitStarted(int timeoutMs = 10000) { return mStarted.tryAcquire(1, timeoutMs); }

    static std::atomic<int> sAlive;
    int mTag;
    RunLog* mLog;
    QSemaphore* mGate;
    int mSleepMs;
    QSemaphore mStarted;
    std::atomic<int> mRuns{0};
    int mJobId = 0;
    QString mThreadName;
    QPointer<QThread> mThread;
    QThread::Priority mPriority = QThread::InheritPriority;
    bool mTimerValid = false;
};

inline std::atomic<int> RecordingJob::sAlive{0};

/** A pool whose internals a test can reach. */
class TestPool : public ko::komQtThreadPool
{
public:
    explicit TestPool(const QString& name = QStringLiteral("Test"), int maxThreads = 2)
        : komQtThreadPool(name, maxThreads, nullptr)
    {
    }

    /** Every worker, idle and busy. */
    QList<QPointer<ko::komQtWorkerThread>> workers() const
    {
        QList<QPointer<ko::komQtWorkerThread>> all;
        for (ko::komQtWorkerThread* thread : mIdleThreads + mBusyThreads)
            all << thread;
        return all;
    }

    /** Queued and running jobs of every worker, idle or busy. */
    int totalWorkLoad() const
    {
        QMutexLocker locker(mLock);
        int load = 0;
        for (ko::komQtWorkerThread* thread : mIdleThreads + mBusyThreads)
            load += thread->workLoad();
        return load;
    }

    /** Ends the loop of the caller waiting under @p key with @p code; false when nobody waits there. */
    bool exitWaitLoop(int key, int code)
    {
        QEventLoop* loop = mEventLoops.value(key);
        if (loop)
            loop->exit(code);
        return loop != nullptr;
    }

    /** Discards every worker once no job is left, and waits until they have deleted themselves. */
    bool retire(int timeoutMs = 10000)
    {
        const QList<QPointer<ko::komQtWorkerThread>> all = workers();
        if (!waitForAllFinished(timeoutMs))
            return false;
        setMaxThreads(-1);
        return spinUntil(
            [&all]() {
                for (const auto& worker : all) {
                    if (worker)
                        return false;
                }
                return true;
            },
            timeoutMs);
    }
};

/** Schedules a new RecordingJob on @p pool and returns its handle; @p id receives the job id. */
inline kom::smart<RecordingJob> scheduleJob(ko::komQtThreadPool& pool, int& id, int tag = 0, RunLog* log = nullptr,
                                            QSemaphore* gate = nullptr, int sleepMs = 0,
                                            ko::komQtThreadPool::SchedulePriority priority
                                            = ko::komQtThreadPool::ScheduleNormalPriority)
{
    kom::smart<RecordingJob> job(new RecordingJob(tag, log, gate, sleepMs));
    id = pool.schedule(job, priority);
    return job;
}

#endif // COREQT_TESTS_JOBTESTSUPPORT_H
