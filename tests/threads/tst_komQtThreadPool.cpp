#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QSignalSpy>
#include <QtTest>

using ko::komQtThreadPool;

namespace
{

// A job that is also a QObject, so the worker adopts it.
class ObjectJob : public QObject, public RecordingJob
{
public:
    void run(int jobId, QTime& timer) override
    {
        mThreadOfObject = thread();
        RecordingJob::run(jobId, timer);
    }
    QThread* mThreadOfObject = nullptr;
};

QStringList finishedLines(const LogCapture& capture)
{
    return capture.lines(ko::Log::Message).filter(QStringLiteral(" finished."));
}

} // namespace

class tst_komQtThreadPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void firstJobIdIsOne();
    void waitsThatReturnAtOnce();
    void newPoolSignalsAndWorkerNames();
    void twoJobFinishedPerJob();
    void waitLimits_data();
    void waitLimits();
    void unexpectedLoopCodes_data();
    void unexpectedLoopCodes();
    void requestAbortPruning();
    void changePriorityAsksBusyWorkers();
    void jobsBehindReclaimedWorkerAreInvisible();
    void setMaxThreadsDiscardsIdleOnly_data();
    void setMaxThreadsDiscardsIdleOnly();
    void objectJobMovesToWorker();
    void nestedWaits_data();
    void nestedWaits();
    void deleteGlobalInstanceWithBusyWorkers();
};

void tst_komQtThreadPool::firstJobIdIsOne()
{
    // Must run first: job ids are process-wide.
    TestPool pool;
    QVERIFY(!pool.isFinished(1));
    QCOMPARE(pool.newJobId(), 1);
    QVERIFY(pool.isFinished(1));
    QVERIFY(!pool.isFinished(5));
    QCOMPARE(pool.newJobId(), 2);
}

void tst_komQtThreadPool::waitsThatReturnAtOnce()
{
    TestPool pool;
    QVERIFY(pool.waitForAllFinished(-1)); // no busy worker
    const int issued = pool.newJobId();
    QVERIFY(pool.waitForFinished(issued, -1));
    QVERIFY(!pool.waitForFinished(issued + 1, -1)); // the next id is not issued yet
    QVERIFY(!pool.waitForFinished(issued + 100, 0));
    QVERIFY(!pool.isScheduledOrRunning(issued));
}

void tst_komQtThreadPool::newPoolSignalsAndWorkerNames()
{
    LogCapture capture;
    QStringList events;
    TestPool pool(QStringLiteral("Render"), 2);
    connect(&pool, &komQtThreadPool::idle, this, [&]() { events << QStringLiteral("idle"); });
    connect(&pool, &komQtThreadPool::busy, this, [&]() { events << QStringLiteral("busy"); });
    QCOMPARE(pool.metaObject()->className(), "ko::komQtThreadPool");
    QCOMPARE(pool.objectName(), QStringLiteral("Render"));
    // idle() was announced by the constructor, yet a pool without workers is not idle.
    QVERIFY(!pool.isIdle());
    QVERIFY(pool.isIdleSince().isValid());
    QCOMPARE(pool.countThreads(), 0);

    int first;
    kom::smart<RecordingJob> job1 = scheduleJob(pool, first);
    QVERIFY(events.isEmpty()); // a new worker triggers no busy()
    QCOMPARE(pool.countThreads(), 1);
    QCOMPARE(pool.countBusyThreads(), 1);
    QVERIFY(pool.waitForFinished(first, -1));
    QCOMPARE(events, QStringList({"idle"}));
    QVERIFY(pool.isIdle());
    QVERIFY(pool.isIdleSince().isValid());
    QCOMPARE(job1->mThreadName, QStringLiteral("Render-Thread-1"));

    QSemaphore gate;
    int second, third, fourth;
    kom::smart<RecordingJob> job2 = scheduleJob(pool, second, 0, nullptr, &gate);
    QCOMPARE(events, QStringList({"idle", "busy"}));
    QVERIFY(!pool.isIdleSince().isValid());
    kom::smart<RecordingJob> job3 = scheduleJob(pool, third, 0, nullptr, &gate);
    kom::smart<RecordingJob> job4 = scheduleJob(pool, fourth, 0, nullptr, &gate); // the maximum: a busy worker
    QCOMPARE(pool.countThreads(), 2);
    QVERIFY(job2->waitStarted());
    QVERIFY(job3->waitStarted());
    QCOMPARE(job2->mThreadName, QStringLiteral("Render-Thread-1"));
    QCOMPARE(job3->mThreadName, QStringLiteral("Render-Thread-2"));
    QCOMPARE(capture.lines(ko::Log::Message),
             QStringList({"QtThreadPool: count worker threads: 1", "QtThreadPool: count worker threads: 2"}));

    gate.release(3);
    QVERIFY(spinUntil([&]() { return job4->mRuns == 1; }));
    QCOMPARE(job4->mThreadName, QStringLiteral("Render-Thread-1")); // least loaded, earliest on ties
    QVERIFY(pool.retire());
    QCOMPARE(events.count(QStringLiteral("busy")), 1);
    QCOMPARE(finishedLines(capture).size(), 2);
}

void tst_komQtThreadPool::twoJobFinishedPerJob()
{
    TestPool pool;
    QSignalSpy started(&pool, &komQtThreadPool::jobStarted);
    QSignalSpy finished(&pool, &komQtThreadPool::jobFinished);
    QList<int> ids;
    QList<kom::smart<RecordingJob>> jobs;
    for (int i = 0; i < 3; ++i) {
        int id;
        jobs << scheduleJob(pool, id, i, nullptr, nullptr, 20);
        ids << id;
    }
    QVERIFY(spinUntil([&]() { return finished.count() == 6; }));
    QTest::qWait(30);
    QCOMPARE(started.count(), 3);
    QCOMPARE(finished.count(), 6);
    for (int id : ids) {
        QList<int> elapsed;
        for (const QList<QVariant>& args : qAsConst(finished)) {
            if (args.at(0).toInt() == id)
                elapsed << args.at(1).toInt();
        }
        QCOMPARE(elapsed.size(), 2);
        QCOMPARE(elapsed.at(0), elapsed.at(1));
        QVERIFY(elapsed.at(0) >= 10);
    }
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::waitLimits_data()
{
    QTest::addColumn<bool>("all");
    QTest::addColumn<int>("timeout");
    QTest::addColumn<int>("releaseAfter");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("one, 0 ms") << false << 0 << -1 << false << QStringList();
    QTest::newRow("one, 30 ms") << false << 30 << -1 << false << QStringList();
    QTest::newRow("one, no limit") << false << -1 << 40 << true << QStringList();
    QTest::newRow("one, limit not reached") << false << 5000 << 20 << true << QStringList();
    QTest::newRow("all, 30 ms") << true << 30 << -1 << false << QStringList("jobs in progress");
    QTest::newRow("all, no limit") << true << -1 << 40 << true << QStringList();
}

void tst_komQtThreadPool::waitLimits()
{
    QFETCH(bool, all);
    QFETCH(int, timeout);
    QFETCH(int, releaseAfter);
    QFETCH(bool, expected);
    QFETCH(QStringList, warnings);
    LogCapture capture;
    TestPool pool;
    QSemaphore gate;
    QObject context;
    int id;
    kom::smart<RecordingJob> job = scheduleJob(pool, id, 0, nullptr, &gate);
    if (releaseAfter >= 0)
        QTimer::singleShot(releaseAfter, &context, [&gate]() { gate.release(); });
    const bool result = all ? pool.waitForAllFinished(timeout) : pool.waitForFinished(id, timeout);
    QCOMPARE(result, expected);
    QCOMPARE(capture.lines(ko::Log::Warning), warnings);
    QVERIFY(capture.lines(ko::Log::Error).isEmpty());
    QCOMPARE(job->mRuns.load(), expected ? 1 : 0);
    if (!expected)
        gate.release();
    QVERIFY(pool.retire());
    QCOMPARE(job->mRuns.load(), 1);
}

void tst_komQtThreadPool::unexpectedLoopCodes_data()
{
    QTest::addColumn<bool>("all");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QStringList>("warnings");
    QTest::addColumn<QStringList>("errors");
    QTest::newRow("one, other job's code") << false << 99 << true << QStringList("Unexpected return code 99")
                                           << QStringList();
    QTest::newRow("one, negative code") << false << -2 << false << QStringList()
                                        << QStringList("Unexpected loop termination");
    QTest::newRow("all, positive code") << true << 99 << true << QStringList() << QStringList();
    QTest::newRow("all, negative code") << true << -2 << false
                                        << QStringList({"Unexpected loop termination", "jobs in progress"})
                                        << QStringList();
}

void tst_komQtThreadPool::unexpectedLoopCodes()
{
    QFETCH(bool, all);
    QFETCH(int, code);
    QFETCH(bool, expected);
    QFETCH(QStringList, warnings);
    QFETCH(QStringList, errors);
    LogCapture capture;
    TestPool pool;
    QSemaphore gate;
    QObject context;
    int id;
    kom::smart<RecordingJob> job = scheduleJob(pool, id, 0, nullptr, &gate);
    // First end the wait's loop with a foreign code, then let the job end.
    QTimer::singleShot(20, &context, [&]() {
        QVERIFY(pool.exitWaitLoop(all ? 0 : id, code));
        QTimer::singleShot(20, &context, [&gate]() { gate.release(); });
    });
    const bool result = all ? pool.waitForAllFinished(5000) : pool.waitForFinished(id, 5000);
    QCOMPARE(result, expected);
    QCOMPARE(capture.lines(ko::Log::Warning), warnings);
    QCOMPARE(capture.lines(ko::Log::Error), errors);
    QVERIFY(pool.retire());
    QCOMPARE(job->mRuns.load(), 1);
}

void tst_komQtThreadPool::requestAbortPruning()
{
    {
        // One busy worker: the queued ids are aborted, unknown ids dropped, the running id stays.
        TestPool pool(QStringLiteral("One"), 1);
        QSet<int> untouched{1, 2};
        pool.requestAbort(untouched); // no busy worker: nothing happens
        QCOMPARE(untouched, QSet<int>({1, 2}));

        QSemaphore gate;
        int g, a, b;
        kom::smart<RecordingJob> running = scheduleJob(pool, g, 0, nullptr, &gate);
        kom::smart<RecordingJob> jobA = scheduleJob(pool, a);
        kom::smart<RecordingJob> jobB = scheduleJob(pool, b);
        QVERIFY(running->waitStarted());
        QSet<int> ids{g, a, b, 999999};
        pool.requestAbort(ids);
        QCOMPARE(ids, QSet<int>{g});
        QVERIFY(jobA->mAbortRequested);
        QVERIFY(jobB->mAbortRequested);
        QVERIFY(!running->mAbortRequested);
        QVERIFY(!pool.isScheduled(a));
        gate.release();
        QVERIFY(pool.waitForFinished(g, -1));
        QVERIFY(pool.retire());
        QCOMPARE(jobA->mRuns.load(), 0);
        QCOMPARE(jobB->mRuns.load(), 0);
    }
    {
        // Two busy workers: the first one that does not hold an id drops it from the set, so the
        // second worker never sees it and its job stays queued.
        TestPool pool(QStringLiteral("Two"), 2);
        QSemaphore gate;
        int g1, g2, a, b;
        kom::smart<RecordingJob> running1 = scheduleJob(pool, g1, 0, nullptr, &gate);
        kom::smart<RecordingJob> running2 = scheduleJob(pool, g2, 0, nullptr, &gate);
        kom::smart<RecordingJob> jobA = scheduleJob(pool, a); // first worker
        kom::smart<RecordingJob> jobB = scheduleJob(pool, b); // second worker
        QVERIFY(running1->waitStarted());
        QVERIFY(running2->waitStarted());
        QSet<int> ids{a, b};
        pool.requestAbort(ids);
        QVERIFY(ids.isEmpty());
        QVERIFY(jobA->mAbortRequested);
        QVERIFY(!jobB->mAbortRequested);
        QVERIFY(pool.isScheduled(b));
        gate.release(2);
        QVERIFY(spinUntil([&]() { return jobB->mRuns == 1; }));
        QCOMPARE(jobB->mThreadName, running2->mThreadName);
        QVERIFY(pool.retire());
        QCOMPARE(jobA->mRuns.load(), 0);
    }
}

void tst_komQtThreadPool::changePriorityAsksBusyWorkers()
{
    TestPool pool(QStringLiteral("Prio"), 1);
    RunLog order;
    QSemaphore gate;
    int g, a, b;
    kom::smart<RecordingJob> running = scheduleJob(pool, g, 0, &order, &gate);
    kom::smart<RecordingJob> jobA = scheduleJob(pool, a, 1, &order);
    kom::smart<RecordingJob> jobB = scheduleJob(pool, b, 2, &order);
    QVERIFY(running->waitStarted());
    QVERIFY(!pool.changePriority(g, komQtThreadPool::ScheduleHighPriority)); // running
    QVERIFY(!pool.changePriority(999999, komQtThreadPool::ScheduleHighPriority));
    QVERIFY(pool.changePriority(a, komQtThreadPool::ScheduleHighPriority));
    gate.release();
    QVERIFY(spinUntil([&]() { return order.snapshot().size() == 3; }));
    QCOMPARE(order.snapshot(), QList<int>({0, 2, 1}));
    QCOMPARE(jobA->mPriority, QThread::NormalPriority);
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::jobsBehindReclaimedWorkerAreInvisible()
{
    TestPool pool(QStringLiteral("Single"), 1);
    QSemaphore gate1, gate2;
    int first, second;
    kom::smart<RecordingJob> job1 = scheduleJob(pool, first, 0, nullptr, &gate1);
    kom::smart<RecordingJob> job2 = scheduleJob(pool, second, 0, nullptr, &gate2);
    QVERIFY(pool.isScheduled(second));
    gate1.release();
    QVERIFY(pool.waitForFinished(first, -1));
    QVERIFY(job2->waitStarted());
    // The worker went back to the idle list after its first job, though it runs the second one.
    QVERIFY(pool.isIdle());
    QVERIFY(!pool.isRunning(second));
    QVERIFY(!pool.isScheduledOrRunning(second));
    QVERIFY(pool.isFinished(second));
    QVERIFY(pool.waitForFinished(second, -1)); // returns at once
    QCOMPARE(job2->mRuns.load(), 0);
    QVERIFY(pool.waitForAllFinished(-1));

    // Handing the worker a new job makes it busy, and the running job visible again.
    int third;
    kom::smart<RecordingJob> job3 = scheduleJob(pool, third);
    QVERIFY(pool.isRunning(second));
    QVERIFY(!pool.isFinished(second));
    gate2.release();
    QVERIFY(pool.waitForFinished(third, -1));
    QVERIFY(spinUntil([&]() { return pool.countBusyThreads() == 0; }));
    QVERIFY(pool.retire());
    QCOMPARE(job2->mRuns.load(), 1);
}

void tst_komQtThreadPool::setMaxThreadsDiscardsIdleOnly_data()
{
    QTest::addColumn<int>("idle");
    QTest::addColumn<int>("busy");
    QTest::addColumn<int>("maxThreads");
    QTest::addColumn<int>("remaining");
    QTest::newRow("three idle, to 1") << 3 << 0 << 1 << 1;
    QTest::newRow("three idle and one busy, to 1") << 3 << 1 << 1 << 1;
    QTest::newRow("two busy, to 1") << 0 << 2 << 1 << 2;
    QTest::newRow("no limit discards every idle worker") << 2 << 1 << 0 << 1;
    QTest::newRow("raised") << 2 << 0 << 5 << 2;
}

void tst_komQtThreadPool::setMaxThreadsDiscardsIdleOnly()
{
    QFETCH(int, idle);
    QFETCH(int, busy);
    QFETCH(int, maxThreads);
    QFETCH(int, remaining);
    LogCapture capture;
    TestPool pool(QStringLiteral("Max"), idle + busy);
    QSemaphore idleGate, busyGate;
    QList<kom::smart<RecordingJob>> jobs;
    for (int i = 0; i < idle + busy; ++i) {
        int id;
        jobs << scheduleJob(pool, id, i, nullptr, i < idle ? &idleGate : &busyGate);
    }
    QCOMPARE(pool.countThreads(), idle + busy);
    idleGate.release(idle);
    QVERIFY(spinUntil([&]() { return pool.countBusyThreads() == busy; }));
    const QList<QPointer<ko::komQtWorkerThread>> workers = pool.workers();

    pool.setMaxThreads(maxThreads);
    QCOMPARE(pool.countThreads(), remaining);
    QCOMPARE(pool.countBusyThreads(), busy);
    // The discarded workers end their loops and delete themselves.
    QVERIFY(spinUntil([&]() { return finishedLines(capture).size() == idle + busy - remaining; }));
    QVERIFY(spinUntil([&]() { return workers.count(nullptr) == idle + busy - remaining; }));

    busyGate.release(busy);
    QVERIFY(pool.retire());
    for (const auto& job : qAsConst(jobs))
        QCOMPARE(job->mRuns.load(), 1);
}

void tst_komQtThreadPool::objectJobMovesToWorker()
{
    TestPool pool;
    kom::smart<ObjectJob> job(new ObjectJob);
    const int id = pool.schedule(job);
    QVERIFY(pool.waitForFinished(id, -1));
    QVERIFY(job->mThreadOfObject);
    QCOMPARE(job->mThreadOfObject, job->mThread.data());
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::nestedWaits_data()
{
    QTest::addColumn<int>("outerSleep");
    QTest::addColumn<int>("innerSleep");
    QTest::addColumn<bool>("sameId");
    QTest::newRow("inner job ends first") << 120 << 20 << false;
    QTest::newRow("outer job ends first") << 20 << 120 << false;
    QTest::newRow("same job") << 60 << 0 << true;
}

void tst_komQtThreadPool::nestedWaits()
{
    QFETCH(int, outerSleep);
    QFETCH(int, innerSleep);
    QFETCH(bool, sameId);
    LogCapture capture;
    TestPool pool;
    int outer = 0, inner = 0;
    kom::smart<RecordingJob> outerJob = scheduleJob(pool, outer, 0, nullptr, nullptr, outerSleep);
    kom::smart<RecordingJob> innerJob;
    if (sameId)
        inner = outer;
    else
        innerJob = scheduleJob(pool, inner, 0, nullptr, nullptr, innerSleep);

    int nestedCalls = 0;
    bool nestedResult = false;
    connect(&pool, &komQtThreadPool::jobStarted, this, [&](int id) {
        if (id == outer && nestedCalls++ == 0)
            nestedResult = pool.waitForFinished(inner, -1);
    });
    QVERIFY(pool.waitForFinished(outer, -1));
    QCOMPARE(nestedCalls, 1);
    QVERIFY(nestedResult);
    QCOMPARE(outerJob->mRuns.load(), 1);
    if (innerJob)
        QCOMPARE(innerJob->mRuns.load(), 1);
    QVERIFY(capture.lines(ko::Log::Warning).isEmpty());
    QVERIFY(capture.lines(ko::Log::Error).isEmpty());
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::deleteGlobalInstanceWithBusyWorkers()
{
    LogCapture capture;
    QVERIFY(!komQtThreadPool::deleteGlobalInstance());
    komQtThreadPool* pool = komQtThreadPool::globalInstance();
    QVERIFY(pool);
    QCOMPARE(komQtThreadPool::globalInstance(), pool);
    QCOMPARE(pool->objectName(), QStringLiteral("ThreadPool"));
    pool->setMaxThreads(2);

    QSemaphore gate;
    QList<kom::smart<RecordingJob>> jobs;
    for (int i = 0; i < 2; ++i) {
        int id;
        jobs << scheduleJob(*pool, id, i, nullptr, &gate);
        QVERIFY(jobs.last()->waitStarted());
    }
    QVERIFY(jobs.at(0)->mThread != jobs.at(1)->mThread);
    QVERIFY(komQtThreadPool::deleteGlobalInstance());
    QVERIFY(!komQtThreadPool::deleteGlobalInstance());

    // The busy jobs finish, then their workers delete themselves and let go of the jobs.
    gate.release(2);
    QVERIFY(spinUntil([&]() { return !jobs.at(0)->mThread && !jobs.at(1)->mThread; }));
    for (const auto& job : qAsConst(jobs)) {
        QCOMPARE(job->mRuns.load(), 1);
        QCOMPARE(job.useCount(), 1L);
    }
    QStringList finished = finishedLines(capture);
    finished.sort();
    QCOMPARE(finished, QStringList({"ThreadPool-Thread-1 finished.", "ThreadPool-Thread-2 finished."}));
}

QTEST_GUILESS_MAIN(tst_komQtThreadPool)
#include "tst_komQtThreadPool.moc"
