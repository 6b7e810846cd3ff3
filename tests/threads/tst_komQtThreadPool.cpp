// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QProcess>
#include <QSignalSpy>
#include <QtTest>

#include <pthread.h>
#include <sys/resource.h>

#include <thread>
#include <vector>

using ko::komQtThreadPool;

static QStringList finishedLines(const LogCapture &capture)
{
    QStringList lines = capture.lines(ko::Log::Message).filter(QStringLiteral(" finished."));
    lines.sort();
    return lines;
}

// Counts its runs, and the runs that happened although its abort flag was set.
struct CountingJob : ko::IRunnable
{
    void run(int, ko::JobTimer &) override { ++(mAbortRequested ? mRunsWhileAborted : mRuns); }
    std::atomic<int> mRuns { 0 }, mRunsWhileAborted { 0 };
};

class tst_komQtThreadPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void idsAndWaitsThatReturnAtOnce();
    void newPoolSignalsAndWorkers();
    void waits_data();
    void waits();
    void waitLimitNeverEarly_data();
    void waitLimitNeverEarly();
    void threadLimit_data();
    void threadLimit();
    void abortAndPriority();
    void singleWorker();
    void setMaxThreadsDiscardsIdleOnly_data();
    void setMaxThreadsDiscardsIdleOnly();
    void nestedWaits_data();
    void nestedWaits();
    void waitFromAnotherThread();
    void deleteGlobalInstanceWithBusyWorkers();
    void stress();
};

void tst_komQtThreadPool::idsAndWaitsThatReturnAtOnce()
{
    LogCapture capture;
    TestPool pool; // runs first: ids are process-wide
    QVERIFY(!pool.isFinished(1));
    // A null job is refused before it costs an id or a worker.
    QCOMPARE(pool.schedule(kom::smart<ko::IRunnable>()), -1);
    QCOMPARE(pool.countThreads(), 0);
    QCOMPARE(capture.allLines(), QStringList("2|QtThreadPool: null job not scheduled"));
    QCOMPARE(pool.newJobId(), 1);
    QVERIFY(pool.isFinished(1));
    QVERIFY(!pool.isFinished(5));
    QVERIFY(pool.waitForFinished(1, -1)); // issued, held by no worker
    QVERIFY(!pool.waitForFinished(2, -1)); // not issued yet
    QVERIFY(pool.waitForAllFinished(-1));
    // A caller's id is kept as given, 0 included, and takes nothing from the sequence.
    const kom::smart<RecordingJob> job(new RecordingJob);
    QCOMPARE(pool.schedule(job, komQtThreadPool::SchedulePriority(3), 0), 0);
    QCOMPARE(pool.schedule(job, komQtThreadPool::SchedulePriority(3), 77), 77);
    QVERIFY(spinUntil([&]() { return job->mRuns == 2; }));
    QVERIFY(pool.retire());
    QCOMPARE(pool.newJobId(), 2);
}

void tst_komQtThreadPool::newPoolSignalsAndWorkers()
{
    LogCapture capture;
    QStringList events;
    TestPool pool(QStringLiteral("Render"), 2);
    connect(&pool, &komQtThreadPool::idle, this, [&]() { events << "idle"; });
    connect(&pool, &komQtThreadPool::busy, this, [&]() { events << "busy"; });
    QSignalSpy started(&pool, &komQtThreadPool::jobStarted),
        finished(&pool, &komQtThreadPool::jobFinished);
    // idle() came from the constructor, before anyone listened; without workers the pool is not
    // idle.
    QVERIFY(!pool.isIdle());
    QVERIFY(pool.isIdleSince().isValid());
    int id;
    kom::smart<RecordingJob> job1 = scheduleJob(pool, id, nullptr, 20);
    QVERIFY(events.isEmpty()); // a new worker triggers no busy()
    QVERIFY(pool.waitForFinished(id, -1));
    QVERIFY(spinUntil([&]() { return pool.isIdle(); }));
    QCOMPARE(events, QStringList({ "idle" }));
    // Two jobFinished per job, relayed and from reclaimThread(), both with the elapsed time.
    QCOMPARE(started.count(), 1);
    QCOMPARE(finished.count(), 2);
    QCOMPARE(finished.at(0), finished.at(1));
    QVERIFY(finished.at(0).at(1).toInt() >= 15);

    QSemaphore gate;
    QList<kom::smart<RecordingJob>> jobs { scheduleJob(pool, id, &gate),
        scheduleJob(pool, id, &gate), scheduleJob(pool, id, &gate) };
    QCOMPARE(events, QStringList({ "idle", "busy" }));
    QVERIFY(!pool.isIdleSince().isValid());
    QCOMPARE(pool.countThreads(), 2); // the third job went to a busy worker
    gate.release(3);
    QVERIFY(spinUntil([&]() { return finished.count() == 8; }));
    QCOMPARE(job1->mThreadName + jobs.at(1)->mThreadName,
        QStringLiteral("Render-Thread-1Render-Thread-2"));
    QCOMPARE(jobs.at(2)->mThreadName,
        QStringLiteral("Render-Thread-1")); // least loaded, earliest on ties
    QCOMPARE(capture.lines(ko::Log::Message).mid(0, 2),
        QStringList(
            { "QtThreadPool: count worker threads: 1", "QtThreadPool: count worker threads: 2" }));
    QVERIFY(pool.retire());
    QCOMPARE(finishedLines(capture),
        QStringList({ "Render-Thread-1 finished.", "Render-Thread-2 finished." }));
}

void tst_komQtThreadPool::waits_data()
{
    QTest::addColumn<bool>("all");
    QTest::addColumn<int>("timeout");
    QTest::addColumn<int>(
        "exitCode"); // ends the wait's loop at 20 ms when not 0; the job ends at 40 ms
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("one, 0 ms") << false << 0 << 0 << false << QStringList();
    QTest::newRow("one, 30 ms") << false << 30 << 0 << false << QStringList();
    QTest::newRow("one, no limit") << false << -1 << 0 << true << QStringList();
    QTest::newRow("one, limit not reached") << false << 5000 << 0 << true << QStringList();
    QTest::newRow("one, foreign code")
        << false << -1 << 99 << true << QStringList("2|Unexpected return code 99");
    QTest::newRow("one, negative code")
        << false << -1 << -2 << false << QStringList("3|Unexpected loop termination");
    QTest::newRow("all, 30 ms") << true << 30 << 0 << false << QStringList("2|jobs in progress");
    QTest::newRow("all, no limit") << true << -1 << 0 << true << QStringList();
    QTest::newRow("all, positive code") << true << -1 << 99 << true << QStringList();
    QTest::newRow("all, negative code")
        << true << -1 << -2 << false
        << QStringList({ "2|Unexpected loop termination", "2|jobs in progress" });
}

void tst_komQtThreadPool::waits()
{
    QFETCH(bool, all);
    QFETCH(int, timeout);
    QFETCH(int, exitCode);
    QFETCH(bool, expected);
    LogCapture capture(ko::Log::Warning);
    TestPool pool;
    QSemaphore gate;
    QObject context;
    int id;
    kom::smart<RecordingJob> job = scheduleJob(pool, id, &gate);
    const bool timesOut = !expected && !exitCode;
    if (!timesOut)
        QTimer::singleShot(40, &context, [&gate]() { gate.release(); });
    if (exitCode)
        QTimer::singleShot(20, &context, [&]() { pool.exitWaitLoop(all ? 0 : id, exitCode); });
    QCOMPARE(all ? pool.waitForAllFinished(timeout) : pool.waitForFinished(id, timeout), expected);
    QTEST(capture.allLines(), "lines");
    gate.release(timesOut ? 1 : 0);
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::waitLimitNeverEarly_data()
{
    QTest::addColumn<bool>("all");
    QTest::newRow("one job") << false;
    QTest::newRow("all jobs") << true;
}

void tst_komQtThreadPool::waitLimitNeverEarly()
{
    // A coarse timer of 100 ms may end up to 5 ms early, on a multiple of 100 ms of the monotonic
    // clock; the limit is set to end 10 ms past one, where such a timer would be rounded down.
    QFETCH(bool, all);
    LogCapture capture;
    TestPool pool;
    QSemaphore gate;
    int id;
    kom::smart<RecordingJob> job = scheduleJob(pool, id, &gate);
    QElapsedTimer clock;
    do
        clock.start();
    while (clock.msecsSinceReference() % 100 != 10);
    QVERIFY(!(all ? pool.waitForAllFinished(100) : pool.waitForFinished(id, 100)));
    QVERIFY2(clock.elapsed() >= 100, qPrintable(QString::number(clock.elapsed())));
    gate.release();
    QVERIFY(pool.retire());
}

namespace
{

// Caps the address space at what the process uses plus half a thread stack, so that
// pthread_create() fails for want of room, as under any resource limit; returns the limit it
// replaced. The limit on the number of threads (RLIMIT_NPROC) would be the obvious one, but it
// does not bind root, and these tests may run as root.
rlimit capThreadCreation()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QRegularExpressionMatch size = QRegularExpression(QStringLiteral("VmSize:\\s*(\\d+) kB"))
                                             .match(QString::fromLatin1(status.readAll()));
    pthread_attr_t attr;
    size_t stack = 0;
    pthread_getattr_default_np(&attr);
    pthread_attr_getstacksize(&attr, &stack);
    pthread_attr_destroy(&attr);
    rlimit previous, capped;
    getrlimit(RLIMIT_AS, &previous);
    capped = previous;
    capped.rlim_cur = size.captured(1).toULongLong() * 1024 + stack / 2;
    setrlimit(RLIMIT_AS, &capped);
    return previous;
}

// The child process of threadLimit(): schedules jobs on a pool while no new thread can be
// created and prints what came of it, one fact a line.
int threadLimitChild(const QString &which)
{
    LogCapture capture(ko::Log::Warning);
    QTextStream out(stdout);
    TestPool pool(QStringLiteral("Capped"), 2);
    QSemaphore gate;
    int first = 0, second;
    kom::smart<RecordingJob> running;
    if (which == QLatin1String("one running")) {
        running = scheduleJob(pool, first, &gate);
        running->waitStarted();
    }
    const rlimit previous = capThreadCreation();
    kom::smart<RecordingJob> job = scheduleJob(pool, second);
    setrlimit(RLIMIT_AS, &previous);
    out << "id " << second << "\nworkers " << pool.countThreads() << "\naborted "
        << job->mAbortRequested << "\n";
    gate.release();
    // Either the job runs on the worker that was running, or it was never queued.
    out << "waited " << pool.waitForFinished(second, 10000) << "\nruns " << job->mRuns.load()
        << "\n";
    for (const QString &line : capture.allLines())
        out << line << "\n";
    out.flush();
    return pool.retire() ? 0 : 1;
}

} // namespace

void tst_komQtThreadPool::threadLimit_data()
{
    QTest::addColumn<QString>("which");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("no running worker")
        << "none running"
        << QStringList { "id 1", "workers 0", "aborted 1", "waited 1", "runs 0",
               "3|QtThreadPool: no worker thread could be started; job 1 aborted" };
    QTest::newRow("one running worker takes the job")
        << "one running" << QStringList { "id 2", "workers 1", "aborted 0", "waited 1", "runs 1" };
}

void tst_komQtThreadPool::threadLimit()
{
    // A worker whose thread cannot start is dropped; its job goes to a running worker, or is
    // flagged as aborted when there is none. Run in a child process, whose limits are its own.
    QFETCH(QString, which);
    QProcess child;
    child.start(
        QCoreApplication::applicationFilePath(), { QStringLiteral("--thread-limit"), which });
    QVERIFY(child.waitForFinished(60000));
    const QString errors = QString::fromLocal8Bit(child.readAllStandardError());
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QVERIFY2(child.exitCode() == 0, qPrintable(errors));
    QTEST(QString::fromLocal8Bit(child.readAllStandardOutput())
              .split(QLatin1Char('\n'), Qt::SkipEmptyParts),
        "lines");
    QVERIFY2(errors.contains(QLatin1String("QThread::start: Thread creation error")),
        qPrintable(errors));
}

void tst_komQtThreadPool::abortAndPriority()
{
    // Two busy workers: g1 runs with a and c queued behind it, g2 runs with b queued.
    TestPool pool;
    QSignalSpy started(&pool, &komQtThreadPool::jobStarted);
    QSemaphore gate;
    int g1, g2, a, b, c;
    QList<kom::smart<RecordingJob>> jobs { scheduleJob(pool, g1, &gate),
        scheduleJob(pool, g2, &gate), scheduleJob(pool, a), scheduleJob(pool, b),
        scheduleJob(pool, c) };
    QVERIFY(jobs.at(0)->waitStarted() && jobs.at(1)->waitStarted());
    QCOMPARE(pool.workers().at(0)->workLoad(), 3); // one running, two queued
    QVERIFY(pool.changePriority(c, komQtThreadPool::ScheduleHighPriority));
    QVERIFY(!pool.changePriority(g1, komQtThreadPool::ScheduleHighPriority)); // running
    // An id leaves the set at the first worker that does not hold it: b is dropped by the first
    // worker and never aborted; the running g1 is kept by the first and dropped by the second.
    QSet<int> ids { g1, a, b, 999999 };
    pool.requestAbort(ids);
    QVERIFY(ids.isEmpty());
    QVERIFY(jobs.at(2)->mAbortRequested);
    QVERIFY(!jobs.at(3)->mAbortRequested);
    QVERIFY(!jobs.at(0)->mAbortRequested);
    QVERIFY(!pool.isScheduled(a));
    QVERIFY(pool.isScheduled(b));
    QVERIFY(pool.isRunning(g2));
    gate.release(2);
    QVERIFY(pool.retire());
    QCOMPARE(jobs.at(2)->mRuns.load(), 0);
    QCOMPARE(jobs.at(3)->mRuns.load(), 1);
    QCOMPARE(jobs.at(4)->mRuns.load(), 1);
    QCOMPARE(started.count(), 4);
    QVERIFY(!started.contains({ a })); // an aborted job never starts
}

void tst_komQtThreadPool::singleWorker()
{
    TestPool pool(QStringLiteral("Single"), 1);
    QSemaphore gate1, gate2;
    int first, second, third;
    kom::smart<RecordingJob> job1 = scheduleJob(pool, first, &gate1),
                             job2 = scheduleJob(pool, second, &gate2);
    gate1.release();
    QVERIFY(job2->waitStarted());
    QVERIFY(spinUntil([&]() { return pool.isIdle(); }));
    // Back in the idle list after its first job, the worker runs the second one unseen.
    QVERIFY(!pool.isRunning(second));
    QVERIFY(pool.isFinished(second));
    QVERIFY(pool.waitForFinished(second, -1)); // at once
    QVERIFY(pool.waitForAllFinished(-1));
    QCOMPARE(job2->mRuns.load(), 0);
    scheduleJob(pool, third); // busy again: seen again
    QVERIFY(pool.isRunning(second));
    QVERIFY(!pool.isFinished(second));
    gate2.release();
    // Deleted outside the pool's use, the worker stops its loop and just leaves the pool's lists.
    QVERIFY(spinUntil([&]() { return pool.isIdle() && pool.totalWorkLoad() == 0; }));
    delete pool.workers().first().data();
    QCOMPARE(pool.countThreads(), 0);
    QVERIFY(pool.waitForFinished(pool.schedule(kom::smart<RecordingJob>(new RecordingJob)), -1));
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::setMaxThreadsDiscardsIdleOnly_data()
{
    QTest::addColumn<int>("idle");
    QTest::addColumn<int>("busy");
    QTest::addColumn<int>("maxThreads");
    QTest::addColumn<int>("remaining");
    QTest::newRow("three idle and one busy, to 1") << 3 << 1 << 1 << 1;
    QTest::newRow("two busy, to 1") << 0 << 2 << 1 << 2;
    QTest::newRow("0 is no limit, yet discards every idle worker") << 2 << 1 << 0 << 1;
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
    int id;
    for (int i = 0; i < idle + busy; ++i)
        scheduleJob(pool, id, i < idle ? &idleGate : &busyGate);
    idleGate.release(idle);
    QVERIFY(spinUntil(
        [&]() { return pool.countBusyThreads() == busy && pool.totalWorkLoad() == busy; }));
    const auto workers = pool.workers();
    pool.setMaxThreads(maxThreads);
    QCOMPARE(pool.countThreads(), remaining);
    QCOMPARE(pool.countBusyThreads(), busy);
    // The discarded workers end their loops and delete themselves.
    QVERIFY(spinUntil([&]() { return workers.count(nullptr) == idle + busy - remaining; }));
    QCOMPARE(finishedLines(capture).size(), idle + busy - remaining);
    busyGate.release(busy);
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::nestedWaits_data()
{
    QTest::addColumn<int>("outerSleep");
    QTest::addColumn<int>("innerSleep"); // -1: the inner wait is on the outer job too
    QTest::newRow("inner job ends first") << 120 << 20;
    QTest::newRow("outer job ends first") << 20 << 120;
    QTest::newRow("same job") << 60 << -1;
}

void tst_komQtThreadPool::nestedWaits()
{
    QFETCH(int, outerSleep);
    QFETCH(int, innerSleep);
    LogCapture capture(ko::Log::Warning);
    TestPool pool;
    int outer, inner;
    kom::smart<RecordingJob> outerJob = scheduleJob(pool, outer, nullptr, outerSleep);
    kom::smart<RecordingJob> innerJob
        = innerSleep < 0 ? outerJob : scheduleJob(pool, inner, nullptr, innerSleep);
    inner = innerSleep < 0 ? outer : inner;
    int calls = 0;
    bool nested = false;
    connect(&pool, &komQtThreadPool::jobStarted, this, [&](int id) {
        if (id == outer && calls++ == 0)
            nested = pool.waitForFinished(inner, -1);
    });
    QVERIFY(pool.waitForFinished(outer, -1));
    QVERIFY(nested);
    QCOMPARE(calls, 1);
    QCOMPARE(outerJob->mRuns.load(), 1);
    QCOMPARE(innerJob->mRuns.load(), 1);
    QCOMPARE(capture.allLines(), QStringList());
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::waitFromAnotherThread()
{
    // The end of the wait is handed to the waiting thread's own loop, so it is not lost even if
    // the job ends before that loop runs.
    TestPool pool;
    QSemaphore gate;
    int id;
    kom::smart<RecordingJob> job = scheduleJob(pool, id, &gate);
    std::atomic<int> result { -1 };
    QScopedPointer<QThread> waiter(
        QThread::create([&]() { result = pool.waitForFinished(id, 10000); }));
    waiter->start();
    gate.release();
    QVERIFY(spinUntil([&]() { return waiter->isFinished(); }));
    QCOMPARE(result.load(), 1);
    QVERIFY(pool.retire());
}

void tst_komQtThreadPool::deleteGlobalInstanceWithBusyWorkers()
{
    LogCapture capture;
    QVERIFY(!komQtThreadPool::deleteGlobalInstance());
    komQtThreadPool *pool = komQtThreadPool::globalInstance();
    QCOMPARE(komQtThreadPool::globalInstance(), pool);
    QCOMPARE(pool->objectName(), QStringLiteral("ThreadPool"));
    pool->setMaxThreads(2);
    QSemaphore gate;
    int id;
    QList<kom::smart<RecordingJob>> jobs { scheduleJob(*pool, id, &gate),
        scheduleJob(*pool, id, &gate) };
    QVERIFY(jobs.at(0)->waitStarted());
    QVERIFY(jobs.at(1)->waitStarted());
    kom::smart<RecordingJob> queued = scheduleJob(*pool, id);
    QVERIFY(komQtThreadPool::deleteGlobalInstance());
    QVERIFY(!komQtThreadPool::deleteGlobalInstance());
    QCOMPARE(queued.useCount(), 1L); // dropped from its queue
    // The busy jobs finish, then their workers delete themselves and let go of the jobs.
    gate.release(2);
    QVERIFY(spinUntil([&]() { return !jobs.at(0)->mThread && !jobs.at(1)->mThread; }));
    for (const auto &job : qAsConst(jobs)) {
        QCOMPARE(job->mRuns.load(), 1);
        QCOMPARE(job.useCount(), 1L);
    }
    QCOMPARE(queued->mRuns.load(), 0);
    QCOMPARE(finishedLines(capture),
        QStringList({ "ThreadPool-Thread-1 finished.", "ThreadPool-Thread-2 finished." }));
}

void tst_komQtThreadPool::stress()
{
    // Four threads schedule at once onto two workers and abort or move jobs they queued a moment
    // ago, while this thread takes workers back.
    constexpr int producers = 4, perProducer = 25000;
    LogCapture capture;
    TestPool pool(QStringLiteral("Stress"), 2);
    std::vector<std::vector<std::pair<kom::smart<CountingJob>, int>>> scheduled(producers);
    std::atomic<int> done { 0 };
    std::vector<std::thread> threads;
    for (auto &mine : scheduled) {
        threads.emplace_back([&]() {
            for (int i = 0; i < perProducer; ++i) {
                kom::smart<CountingJob> job(new CountingJob);
                const auto priority
                    = komQtThreadPool::SchedulePriority((i % 7) | (i % 3 ? 0 : 0x800));
                mine.emplace_back(job, pool.schedule(job, priority));
                QSet<int> ids { mine[std::max(i - 1, 0)].second, mine[std::max(i - 3, 0)].second };
                if (i % 5 == 4)
                    pool.requestAbort(ids);
                if (i % 7 == 6)
                    pool.changePriority(mine[i - 2].second, komQtThreadPool::ScheduleHighPriority);
                // Queues are searched from the front: keep them short enough for a quick run.
                while (i % 64 == 63 && pool.totalWorkLoad() > 256)
                    std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
            ++done;
        });
    }
    QVERIFY(spinUntil([&]() { return done == producers; }, 60000));
    for (auto &thread : threads)
        thread.join();
    // waitForAllFinished() can return while a worker back in the idle list still has queued jobs,
    // and never while a worker whose last job was aborted stays busy: wait until every job has
    // run or carries its abort flag.
    QVERIFY(spinUntil(
        [&]() {
            for (const auto &list : scheduled)
                for (const auto &entry : list)
                    if (entry.first->mRuns == 0 && !entry.first->mAbortRequested)
                        return false;
            return true;
        },
        60000));
    QVERIFY(pool.retire(60000));
    int ran = 0, aborted = 0;
    QSet<int> ids;
    for (const auto &list : scheduled) {
        for (const auto &entry : list) {
            const CountingJob &job = *entry.first;
            QCOMPARE(job.mRunsWhileAborted.load(), 0);
            QCOMPARE(entry.first.useCount(), 1L);
            QCOMPARE(job.mRuns + (job.mAbortRequested ? 1 : 0), 1); // ran, or was aborted
            ran += job.mRuns;
            aborted += job.mAbortRequested ? 1 : 0;
            ids.insert(entry.second);
        }
    }
    QCOMPARE(ran + aborted, producers * perProducer);
    QCOMPARE(ids.size(), producers * perProducer);
    QVERIFY(aborted > 0);
}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--thread-limit") == 0)
        return threadLimitChild(QString::fromLocal8Bit(argv[2]));
    tst_komQtThreadPool test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_komQtThreadPool.moc"
