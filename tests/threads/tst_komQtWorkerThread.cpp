// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "JobTestSupport.h"
#include "LogCapture.h"

#include "exceptions/RuntimeException.h"

#include "platform/kom/komException.h"

#include <QtTest>

#include <stdexcept>
#include <type_traits>

using ko::komQtWorkerThread;
typedef ko::komQtThreadPool::SchedulePriority Priority;
typedef void (*JobBody)(ko::JobTimer &timer); // the work of a test job, given the job's timer
Q_DECLARE_METATYPE(JobBody)

namespace
{

// A job that hands its timer to a test function, then throws or returns as that function does.
struct TimerJob : ko::IRunnable
{
    explicit TimerJob(JobBody body)
        : mBody(body)
    { }
    void run(int, ko::JobTimer &timer) override { mBody(timer); }
    JobBody mBody;
};

// A QObject that can be thrown by value.
struct ThrownObject : QObject
{
    ThrownObject() = default;
    ThrownObject(const ThrownObject &)
        : QObject()
    { }
};

// The rows of a job timer that is a time of day (QTime, Qt 5): a QElapsedTimer (Qt 6) has no start
// to move.
template <typename Timer> void addTimeOfDayRows()
{
    if constexpr (std::is_same_v<Timer, QTime>) {
        QTest::newRow("started 5 s earlier")
            << JobBody(+[](Timer &t) { t = t.addMSecs(-5000); }) << 5000 << 86399999;
        // QTime::elapsed() counts a start after the current time as a start on the day before.
        QTest::newRow("started 60 s later: the day wraps")
            << JobBody(+[](Timer &t) { t = t.addMSecs(60000); }) << 86340000 << 86399999;
    }
}

// Schedules @p body as job 1 and a plain job 2 on @p worker; returns the ends in the order seen,
// each as the pair of job id and elapsed ms.
QList<QPair<int, int>> runTimerJob(Worker &worker, JobBody body)
{
    QList<QPair<int, int>> ends;
    QObject context;
    QObject::connect(worker.thread, &komQtWorkerThread::jobFinished, &context,
        [&ends](int id, int elapsed) { ends << qMakePair(id, elapsed); });
    worker.thread->schedule(1, kom::smart<ko::IRunnable>(new TimerJob(body)), Priority(3));
    worker.add(2);
    spinUntil([&ends]() { return ends.size() == 2; });
    return ends;
}

} // namespace

class tst_komQtWorkerThread : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void interfaceName();
    void runOrder_data();
    void runOrder();
    void abortMarksTheJob();
    void noWakeIsLost();
    void jobTimer_data();
    void jobTimer();
    void priorityForEveryJob_data();
    void priorityForEveryJob();
    void throwingJob_data();
    void throwingJob();
};

void tst_komQtWorkerThread::interfaceName()
{
    RecordingJob job;
    const ko::IInterface &constJob = job;
    QCOMPARE(constJob.getInterface("ko::IInterface"), &constJob);
    for (const char *name : { "ko::IInterface ", "ko::iinterface", "IInterface" }) {
        QCOMPARE(job.getInterface(name), nullptr);
        QCOMPARE(constJob.getInterface(name), nullptr);
    }
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
    QVERIFY(worker.thread->isRunning());
    QVERIFY(worker.thread->isRunning(100));
    QVERIFY(worker.thread->isScheduledOrRunning(100));
    // A running job is neither aborted nor moved; ids below 1 are refused.
    QVERIFY(!worker.thread->requestAbort(100));
    QVERIFY(!worker.thread->changePriority(100, Priority(5)));
    QVERIFY(!worker.thread->changePriority(0, Priority(5)));
    QVERIFY(!worker.thread->isScheduled(100));
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
        QCOMPARE(jobs.at(i)->mPriority, priorities.at(i) & 0x7ff);
        QVERIFY(jobs.at(i)->mTimerLag >= 0); // started at the local time
        QVERIFY(jobs.at(i)->mTimerLag < 1000);
    }
}

// An abort request marks the job itself: another queued entry of the same job is no longer
// scheduled and is dropped unrun when the worker takes it.
void tst_komQtWorkerThread::abortMarksTheJob()
{
    Worker worker;
    QSemaphore gate;
    QVERIFY(worker.add(100, 3, &gate)->waitStarted());
    const kom::smart<RecordingJob> job(new RecordingJob);
    job->mOrder = &worker.order;
    worker.thread->schedule(1, job, Priority(3));
    worker.thread->schedule(2, job, Priority(3));
    QVERIFY(worker.thread->requestAbort(1));
    QVERIFY(!worker.thread->isScheduled(2));
    gate.release();
    QVERIFY(spinUntil([&]() { return worker.thread->workLoad() == 0; }));
    QCOMPARE(job->mRuns.load(), 0);
    QCOMPARE(worker.order, QList<int> { 100 });
}

void tst_komQtWorkerThread::noWakeIsLost()
{
    // Jobs arrive while the worker is starting or about to sleep: a lost wake-up leaves one
    // waiting.
    LogCapture capture;
    for (int round = 0; round < 200; ++round) {
        Worker worker;
        for (int i = 1; i <= 10; ++i)
            QVERIFY2(worker.add(i)->waitStarted(),
                qPrintable(QStringLiteral("round %1 job %2")
                               .arg(QString::number(round), QString::number(i))));
    }
}

void tst_komQtWorkerThread::jobTimer_data()
{
    QTest::addColumn<JobBody>("body");
    QTest::addColumn<int>("least");
    QTest::addColumn<int>("most");
    addTimeOfDayRows<ko::JobTimer>();
    QTest::newRow("made invalid after 50 ms") << +[](ko::JobTimer &t) {
        QThread::msleep(50);
        t = ko::JobTimer();
    } << 0 << 0;
}

void tst_komQtWorkerThread::jobTimer()
{
    // The elapsed time reported is read from the timer the job was given, whatever the job did to
    // it.
    QFETCH(JobBody, body);
    Worker worker;
    const QList<QPair<int, int>> ends = runTimerJob(worker, body);
    QCOMPARE(ends.size(), 2);
    QCOMPARE(ends.first().first, 1);
    const int elapsed = ends.first().second;
    QFETCH(int, least);
    QFETCH(int, most);
    QVERIFY2(elapsed >= least, qPrintable(QString::number(elapsed)));
    QVERIFY2(elapsed <= most, qPrintable(QString::number(elapsed)));
}

void tst_komQtWorkerThread::priorityForEveryJob_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("firstSets"); // what the first job gives its own thread; 7: nothing
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("seen"); // the priority the second job runs at
    QTest::newRow("a job's own change does not leak") << 3 << 5 << 3 << 3;
    QTest::newRow("a job's own change is left by InheritPriority") << 3 << 1 << 7 << 1;
    QTest::newRow("InheritPriority keeps the last one") << 2 << 7 << 7 << 2;
    QTest::newRow("values above InheritPriority are Qt's to keep") << 3 << 7 << 8 << 8;
    QTest::newRow("unchanged") << 4 << 7 << 4 << 4;
}

void tst_komQtWorkerThread::priorityForEveryJob()
{
    QFETCH(int, first);
    QFETCH(int, firstSets);
    QFETCH(int, second);
    // The worker asks Qt for the job's priority every time, InheritPriority included, which Qt
    // refuses.
    if (second == QThread::InheritPriority)
        QTest::ignoreMessage(
            QtWarningMsg, "QThread::setPriority: Argument cannot be InheritPriority");
    Worker worker;
    kom::smart<RecordingJob> job1(new RecordingJob);
    job1->mNewPriority = QThread::Priority(firstSets);
    worker.thread->schedule(1, job1, Priority(first));
    kom::smart<RecordingJob> job2 = worker.add(2, second);
    QVERIFY(job2->waitStarted());
    QCOMPARE(job1->mPriority, first);
    QTEST(job2->mPriority, "seen");
}

void tst_komQtWorkerThread::throwingJob_data()
{
    QTest::addColumn<JobBody>("body");
    QTest::addColumn<QString>("line");
    static char text[] = "mutable";
    QTest::newRow("ko::ExceptionQt") << +[](ko::JobTimer &) {
        throw ko::RuntimeException(QStringLiteral("broken"));
    } << ko::RuntimeException(QStringLiteral("broken")).toString().trimmed();
    QTest::newRow("char*") << +[](ko::JobTimer &) { throw static_cast<char *>(text); }
                           << "in worker thread Unit: mutable";
    QTest::newRow("const char*") << +[](ko::JobTimer &) { throw "text"; }
                                 << "in worker thread Unit: text";
    QTest::newRow("komTerminalException") << +[](ko::JobTimer &) {
        throw komTerminalException("end");
    } << "in worker thread Unit: end";
    QTest::newRow("komException") << +[](ko::JobTimer &) {
        komException e("first");
        e.addMessage("second");
        throw e;
    } << "in worker thread Unit: first,second";
    QTest::newRow("std::exception") << +[](ko::JobTimer &) { throw std::runtime_error("what"); }
                                    << "in worker thread Unit: what";
    QTest::newRow("QObject") << +[](ko::JobTimer &) { throw ThrownObject(); }
                             << "in worker thread Unit: QObject";
    QTest::newRow("anything else")
        << +[](ko::JobTimer &) { throw 42; } << "in worker thread Unit: ";
}

void tst_komQtWorkerThread::throwingJob()
{
    // A job that throws is logged at level 3, ends as any job does, and the worker goes on.
    QFETCH(JobBody, body);
    QFETCH(QString, line);
    LogCapture capture;
    Worker worker;
    const QList<QPair<int, int>> ends = runTimerJob(worker, body);
    QCOMPARE(ends.size(), 2);
    QCOMPARE(ends.at(0).first, 1);
    QCOMPARE(ends.at(1).first, 2);
    QCOMPARE(capture.lines(ko::Log::Error), QStringList(line));
}

QTEST_GUILESS_MAIN(tst_komQtWorkerThread)
#include "tst_komQtWorkerThread.moc"
