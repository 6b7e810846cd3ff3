#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QtTest>

using ko::komQtWorkerThread;
typedef ko::komQtThreadPool::SchedulePriority Priority;

namespace
{

// A started worker, shut down at the end.
struct Worker
{
    QPointer<komQtWorkerThread> thread = new komQtWorkerThread(QStringLiteral("Unit"));
    QList<int> order;

    Worker() { thread->start(); }
    ~Worker()
    {
        if (thread)
            thread->shutDown();
        spinUntil([this]() { return thread.isNull(); });
    }
    kom::smart<RecordingJob> add(int id, int priority = 3, QSemaphore* gate = nullptr)
    {
        kom::smart<RecordingJob> job(new RecordingJob);
        job->mGate = gate;
        job->mOrder = &order;
        thread->schedule(id, job, Priority(priority));
        return job;
    }
};

} // namespace

class tst_komQtWorkerThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interfaceName();
    void runOrder_data();
    void runOrder();
    void noWakeIsLost();
};

void tst_komQtWorkerThread::interfaceName()
{
    RecordingJob job;
    const ko::IInterface& constJob = job;
    QCOMPARE(constJob.getInterface("ko::IInterface"), &constJob);
    for (const char* name : { "ko::IInterface ", "ko::iinterface", "IInterface" })
        QVERIFY(!job.getInterface(name) && !constJob.getInterface(name));
    QVERIFY(!job.mAbortRequested);
}

void tst_komQtWorkerThread::runOrder_data()
{
    QTest::addColumn<QList<int>>("priorities");
    QTest::addColumn<int>("moved"); // id of a job sent to the back with changePriority(), or 0
    QTest::addColumn<QList<int>>("order");
    QTest::newRow("rising") << QList<int> { 1, 2, 4, 6 } << 0 << QList<int> { 1, 2, 3, 4 };
    QTest::newRow("falling") << QList<int> { 6, 4, 2, 1 } << 0 << QList<int> { 1, 2, 3, 4 };
    QTest::newRow("lifo") << QList<int> { 0x803, 0x805, 0x803 } << 0 << QList<int> { 1, 2, 3 };
    QTest::newRow("changePriority") << QList<int> { 2, 3, 3 } << 1 << QList<int> { 2, 3, 1 };
}

void tst_komQtWorkerThread::runOrder()
{
    QFETCH(QList<int>, priorities);
    QFETCH(int, moved);
    QFETCH(QList<int>, order);
    Worker worker;
    QSemaphore gate;
    QVERIFY(worker.add(100, 3, &gate)->waitStarted());
    QVERIFY(worker.thread->isRunning() && worker.thread->isRunning(100)
        && worker.thread->isScheduledOrRunning(100));
    // A running job is neither aborted nor moved; ids below 1 are refused.
    QVERIFY(!worker.thread->requestAbort(100) && !worker.thread->changePriority(100, Priority(5)));
    QVERIFY(!worker.thread->changePriority(0, Priority(5)) && !worker.thread->isScheduled(100));
    QList<kom::smart<RecordingJob>> jobs;
    for (int i = 0; i < priorities.size(); ++i)
        jobs << worker.add(i + 1, priorities.at(i));
    // Any priority sends the job to the back; it keeps the priority it was scheduled with.
    if (moved)
        QVERIFY(worker.thread->changePriority(moved, Priority(6)));
    gate.release();
    QVERIFY(spinUntil([&]() { return worker.thread->workLoad() == 0; }));
    QCOMPARE(worker.order, QList<int> { 100 } + order);
    for (int i = 0; i < jobs.size(); ++i) {
        QCOMPARE(int(jobs.at(i)->mPriority), priorities.at(i) & 0x7ff);
        QVERIFY(jobs.at(i)->mTimerLag >= 0 && jobs.at(i)->mTimerLag < 1000); // started at the local time
    }
}

void tst_komQtWorkerThread::noWakeIsLost()
{
    // Jobs arrive while the worker is starting or about to sleep: a lost wake-up leaves one waiting.
    LogCapture capture;
    for (int round = 0; round < 200; ++round) {
        Worker worker;
        for (int i = 1; i <= 10; ++i)
            QVERIFY2(worker.add(i)->waitStarted(),
                qPrintable(QStringLiteral("round %1 job %2").arg(round).arg(i)));
    }
}

QTEST_GUILESS_MAIN(tst_komQtWorkerThread)
#include "tst_komQtWorkerThread.moc"
