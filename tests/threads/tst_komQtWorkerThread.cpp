#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QtTest>

using ko::komQtThreadPool;
using ko::komQtWorkerThread;
typedef komQtThreadPool::SchedulePriority Priority;

Q_DECLARE_METATYPE(QList<int>)

namespace
{

// Signals of one worker as "started <id>" / "finished <id>", recorded in the worker's thread.
struct SignalLog
{
    QMutex mutex;
    QStringList lines;
    void attach(komQtWorkerThread* worker)
    {
        QObject::connect(worker, &komQtWorkerThread::jobStarted, worker,
                         [this](int id) { add(QStringLiteral("started %1").arg(id)); }, Qt::DirectConnection);
        QObject::connect(worker, &komQtWorkerThread::jobFinished, worker,
                         [this](int id, int) { add(QStringLiteral("finished %1").arg(id)); }, Qt::DirectConnection);
    }
    void add(const QString& line)
    {
        QMutexLocker lock(&mutex);
        lines << line;
    }
    QStringList snapshot()
    {
        QMutexLocker lock(&mutex);
        return lines;
    }
};

// A started worker that shuts down and deletes itself when the fixture ends.
struct Worker
{
    Worker()
        : thread(new komQtWorkerThread(QStringLiteral("Unit")))
    {
        signalLog.attach(thread);
        thread->start();
    }
    ~Worker()
    {
        if (thread)
            thread->shutDown();
        spinUntil([this]() { return thread.isNull(); });
    }
    kom::smart<RecordingJob> add(int id, int tag, Priority priority, QSemaphore* gate = nullptr)
    {
        kom::smart<RecordingJob> job(new RecordingJob(tag, &runLog, gate));
        thread->schedule(id, job, priority);
        return job;
    }
    QPointer<komQtWorkerThread> thread;
    RunLog runLog;
    SignalLog signalLog;
};

} // namespace

class tst_komQtWorkerThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comparators_data();
    void comparators();
    void jobEntry();
    void runsInScheduledOrder_data();
    void runsInScheduledOrder();
    void abortWhileQueued();
    void workLoadAndQueries();
    void changePriorityMovesToBack();
    void shutDownDuringJob();
    void noWakeIsLost();
};

void tst_komQtWorkerThread::comparators_data()
{
    QTest::addColumn<int>("priorityA");
    QTest::addColumn<int>("idA");
    QTest::addColumn<int>("priorityB");
    QTest::addColumn<int>("idB");
    QTest::addColumn<bool>("fifo");
    QTest::addColumn<bool>("lifo");
    QTest::newRow("higher priority first") << 5 << 9 << 3 << 1 << true << true;
    QTest::newRow("lower priority later") << 1 << 1 << 3 << 9 << false << false;
    QTest::newRow("equal, smaller id") << 3 << 1 << 3 << 2 << true << false;
    QTest::newRow("equal, greater id") << 3 << 2 << 3 << 1 << false << true;
    QTest::newRow("equal, same id") << 3 << 4 << 3 << 4 << false << false;
}

void tst_komQtWorkerThread::comparators()
{
    QFETCH(int, priorityA);
    QFETCH(int, idA);
    QFETCH(int, priorityB);
    QFETCH(int, idB);
    QFETCH(bool, fifo);
    QFETCH(bool, lifo);
    komQtWorkerThread::JobEntry a(idA, kom::smart<ko::IRunnable>(), Priority(priorityA));
    komQtWorkerThread::JobEntry b(idB, kom::smart<ko::IRunnable>(), Priority(priorityB));
    QCOMPARE(komQtWorkerThread::lessThanByFifoPriority(a, b), fifo);
    QCOMPARE(komQtWorkerThread::lessThanByLifoPriority(a, b), lifo);
}

void tst_komQtWorkerThread::jobEntry()
{
    komQtWorkerThread::JobEntry empty;
    QCOMPARE(empty.jobId, -1);
    QVERIFY(!empty.runnable);
    QCOMPARE(int(empty.priority), 3);

    const int aliveBefore = RecordingJob::sAlive;
    {
        komQtWorkerThread::JobEntry entry(7, kom::smart<ko::IRunnable>(new RecordingJob), Priority(0x804));
        QCOMPARE(int(entry.priority), 4); // the LIFO bit is not stored
        QCOMPARE(RecordingJob::sAlive.load(), aliveBefore + 1);
        entry.clear(); // the entry held the last handle: the job dies
        QCOMPARE(RecordingJob::sAlive.load(), aliveBefore);
        QCOMPARE(entry.jobId, -1);
        QVERIFY(!entry.runnable);
        QCOMPARE(int(entry.priority), 3);
    }
}

void tst_komQtWorkerThread::runsInScheduledOrder_data()
{
    QTest::addColumn<QList<int>>("priorities");
    QTest::newRow("fifo, rising") << QList<int>{1, 2, 4, 5, 6};
    QTest::newRow("fifo, falling") << QList<int>{6, 5, 4, 2, 1};
    QTest::newRow("lifo, equal") << QList<int>{0x803, 0x803, 0x803};
    QTest::newRow("mixed") << QList<int>{2, 0x805, 4, 0x801, 3};
}

void tst_komQtWorkerThread::runsInScheduledOrder()
{
    QFETCH(QList<int>, priorities);
    Worker worker;
    QSemaphore gate;
    kom::smart<RecordingJob> first = worker.add(1, 0, komQtThreadPool::ScheduleNormalPriority, &gate);
    QVERIFY(first->waitStarted());
    QList<kom::smart<RecordingJob>> jobs;
    QList<int> expected{0};
    for (int i = 0; i < priorities.size(); ++i) {
        jobs << worker.add(i + 2, i + 1, Priority(priorities.at(i)));
        expected << i + 1;
    }
    gate.release();
    QVERIFY(spinUntil([&]() { return worker.runLog.snapshot().size() == expected.size(); }));
    QCOMPARE(worker.runLog.snapshot(), expected);
    // Each job ran at its own priority (the LIFO bit masked off), with a started timer.
    for (int i = 0; i < jobs.size(); ++i) {
        QCOMPARE(int(jobs.at(i)->mPriority), priorities.at(i) & 0x7ff);
        QVERIFY(jobs.at(i)->mTimerValid);
        QCOMPARE(jobs.at(i)->mThreadName, QStringLiteral("Unit"));
    }
}

void tst_komQtWorkerThread::abortWhileQueued()
{
    Worker worker;
    QSemaphore gate;
    kom::smart<RecordingJob> running = worker.add(1, 1, komQtThreadPool::ScheduleNormalPriority, &gate);
    QVERIFY(running->waitStarted());
    kom::smart<RecordingJob> a = worker.add(2, 2, komQtThreadPool::ScheduleNormalPriority);
    kom::smart<RecordingJob> b = worker.add(3, 3, komQtThreadPool::ScheduleNormalPriority);

    QVERIFY(!worker.thread->requestAbort(1)); // running: untouched
    QVERIFY(!running->mAbortRequested);
    QVERIFY(worker.thread->requestAbort(2));
    QVERIFY(a->mAbortRequested);
    QVERIFY(!worker.thread->isScheduled(2));
    QVERIFY(!worker.thread->requestAbort(2)); // already gone
    QVERIFY(!worker.thread->requestAbort(42));

    gate.release();
    QVERIFY(spinUntil([&]() { return b->mRuns == 1; }));
    QVERIFY(spinUntil([&]() { return !worker.thread->isRunning(); }));
    QCOMPARE(a->mRuns.load(), 0);
    QCOMPARE(worker.signalLog.snapshot(),
             QStringList({"started 1", "finished 1", "started 3", "finished 3"}));
}

void tst_komQtWorkerThread::workLoadAndQueries()
{
    Worker worker;
    komQtWorkerThread* thread = worker.thread;
    QCOMPARE(thread->workLoad(), 0);
    QVERIFY(!thread->isRunning());

    QSemaphore gate;
    kom::smart<RecordingJob> running = worker.add(5, 1, komQtThreadPool::ScheduleNormalPriority, &gate);
    QVERIFY(running->waitStarted());
    worker.add(6, 2, komQtThreadPool::ScheduleNormalPriority);
    kom::smart<RecordingJob> flagged = worker.add(7, 3, komQtThreadPool::ScheduleNormalPriority);
    QCOMPARE(thread->workLoad(), 3);
    QVERIFY(thread->isRunning());
    QVERIFY(thread->isRunning(5));
    QVERIFY(!thread->isRunning(6));
    QVERIFY(!thread->isScheduled(5));
    QVERIFY(thread->isScheduled(6));
    QVERIFY(thread->isScheduledOrRunning(5));
    QVERIFY(thread->isScheduledOrRunning(6));
    QVERIFY(!thread->isScheduledOrRunning(8));

    // A queued job whose flag is set counts as not scheduled, and the loop drops it.
    flagged->mAbortRequested = true;
    QVERIFY(!thread->isScheduled(7));
    QVERIFY(!thread->isScheduledOrRunning(7));
    QCOMPARE(thread->workLoad(), 3);

    gate.release();
    QVERIFY(spinUntil([&]() { return thread->workLoad() == 0; }));
    QCOMPARE(flagged->mRuns.load(), 0);
    QCOMPARE(worker.runLog.snapshot(), QList<int>({1, 2}));
}

void tst_komQtWorkerThread::changePriorityMovesToBack()
{
    Worker worker;
    QSemaphore gate;
    kom::smart<RecordingJob> running = worker.add(1, 0, komQtThreadPool::ScheduleNormalPriority, &gate);
    QVERIFY(running->waitStarted());
    kom::smart<RecordingJob> a = worker.add(2, 1, komQtThreadPool::ScheduleLowPriority);
    worker.add(3, 2, komQtThreadPool::ScheduleNormalPriority);
    worker.add(4, 3, komQtThreadPool::ScheduleNormalPriority);

    QVERIFY(!worker.thread->changePriority(0, komQtThreadPool::ScheduleHighPriority));
    QVERIFY(!worker.thread->changePriority(-3, komQtThreadPool::ScheduleHighPriority));
    QVERIFY(!worker.thread->changePriority(1, komQtThreadPool::ScheduleHighPriority)); // running
    QVERIFY(!worker.thread->changePriority(9, komQtThreadPool::ScheduleHighPriority));
    // Even the highest priority sends the job to the back; it keeps the priority it had.
    QVERIFY(worker.thread->changePriority(2, komQtThreadPool::ScheduleTimeCriticalPriority));
    // Now the last one, it is already where any priority would put it.
    QVERIFY(worker.thread->changePriority(2, komQtThreadPool::ScheduleLowestPriority | komQtThreadPool::ScheduleLifo));

    gate.release();
    QVERIFY(spinUntil([&]() { return worker.runLog.snapshot().size() == 4; }));
    QCOMPARE(worker.runLog.snapshot(), QList<int>({0, 2, 3, 1}));
    QCOMPARE(a->mPriority, QThread::LowPriority);
}

void tst_komQtWorkerThread::shutDownDuringJob()
{
    LogCapture capture;
    SignalLog signalLog;
    QPointer<komQtWorkerThread> thread = new komQtWorkerThread(QStringLiteral("Closing"));
    signalLog.attach(thread);
    thread->start();
    QSemaphore gate;
    kom::smart<RecordingJob> running(new RecordingJob(1, nullptr, &gate));
    kom::smart<RecordingJob> queued(new RecordingJob(2));
    thread->schedule(10, running, komQtThreadPool::ScheduleNormalPriority);
    QVERIFY(running->waitStarted());
    thread->schedule(11, queued, komQtThreadPool::ScheduleNormalPriority);
    QCOMPARE(queued.useCount(), 2L);

    thread->shutDown();
    QCOMPARE(queued.useCount(), 1L); // the queue let go of its handle
    QCOMPARE(thread->workLoad(), 1);
    gate.release();
    QVERIFY(spinUntil([&]() { return thread.isNull(); }));
    QCOMPARE(running->mRuns.load(), 1);
    QCOMPARE(queued->mRuns.load(), 0);
    QVERIFY(!queued->mAbortRequested);
    QCOMPARE(running.useCount(), 1L);
    QCOMPARE(signalLog.snapshot(), QStringList({"started 10", "finished 10"}));
    QCOMPARE(capture.lines(ko::Log::Message), QStringList("Closing finished."));
}

void tst_komQtWorkerThread::noWakeIsLost()
{
    // Each job is scheduled while the worker is about to go to sleep or is just starting; a lost
    // wake-up would leave a job waiting for good.
    LogCapture capture;
    for (int round = 0; round < 200; ++round) {
        Worker worker;
        for (int i = 1; i <= 10; ++i) {
            kom::smart<RecordingJob> job = worker.add(i, i, komQtThreadPool::ScheduleNormalPriority);
            QVERIFY2(job->waitStarted(5000), qPrintable(QStringLiteral("round %1 job %2").arg(round).arg(i)));
        }
    }
}

QTEST_GUILESS_MAIN(tst_komQtWorkerThread)
#include "tst_komQtWorkerThread.moc"
