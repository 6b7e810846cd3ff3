// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QtTest>

#include <memory>
#include <thread>
#include <vector>

using ko::komQtThreadPool;

class tst_komQtThreadPoolRaces : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void queryDuringHandOver();
    void concurrentWaits_data();
    void concurrentWaits();
};

void tst_komQtThreadPoolRaces::queryDuringHandOver()
{
    // While the worker takes each job from its queue into its current entry, another thread asks
    // about that job. It is queued or running all along, so no answer may be false before it ran.
    constexpr int rounds = 300, perRound = 50;
    Worker worker;
    ko::komQtWorkerThread *thread = worker.thread;
    long checks = 0, misses = 0;
    int nextId = 1;
    for (int round = 0; round < rounds; ++round) {
        QSemaphore gate;
        worker.add(nextId++, 3, &gate);
        std::vector<std::pair<int, kom::smart<RecordingJob>>> jobs;
        for (int i = 0; i < perRound; ++i, ++nextId)
            jobs.emplace_back(nextId, worker.add(nextId));
        std::thread asker([&]() {
            for (const auto &job : jobs) {
                for (;;) {
                    const bool answer = thread->isScheduledOrRunning(job.first);
                    if (job.second->mRuns
                        == 1) // looked at after the answer: it may have ended since
                        break;
                    ++checks;
                    misses += answer ? 0 : 1;
                }
            }
        });
        gate.release();
        asker.join();
    }
    QCOMPARE(misses, 0L);
    QVERIFY(checks > rounds);
}

void tst_komQtThreadPoolRaces::concurrentWaits_data()
{
    // Each list holds the limits (ms, -1: none) of waits started in that order from threads of
    // their own, first those for all jobs, then those for the one held job.
    QTest::addColumn<QList<int>>("forAll");
    QTest::addColumn<QList<int>>("forJob");
    QTest::addColumn<bool>(
        "mainWaits"); // the test's thread waits for the job too, with a nested wait for all inside
    QTest::newRow("all from two threads, the shorter first")
        << QList<int> { 30, 150 } << QList<int>() << false;
    QTest::newRow("all from two threads, the longer first")
        << QList<int> { 150, 30 } << QList<int>() << false;
    QTest::newRow("one job from four threads")
        << QList<int>() << QList<int> { 20, 60, -1, -1 } << false;
    QTest::newRow("all and one job from four threads")
        << QList<int> { 20, -1 } << QList<int> { 40, -1 } << false;
    QTest::newRow("four threads and a nested wait")
        << QList<int> { 40, -1 } << QList<int> { 20, -1 } << true;
}

void tst_komQtThreadPoolRaces::concurrentWaits()
{
    QFETCH(QList<int>, forAll);
    QFETCH(QList<int>, forJob);
    QFETCH(bool, mainWaits);
    LogCapture capture(ko::Log::Warning);
    TestPool pool(QStringLiteral("Waits"), 1);
    QSemaphore gate;
    int id;
    kom::smart<RecordingJob> held = scheduleJob(pool, id, &gate);
    QVERIFY(held->waitStarted());

    struct Wait
    {
        int limit;
        std::atomic<int> result { -1 };
        std::unique_ptr<QThread> thread;
    };
    std::vector<std::unique_ptr<Wait>> waits;
    const QList<int> limits = forAll + forJob;
    for (int i = 0; i < limits.size(); ++i) {
        auto *wait = new Wait;
        waits.emplace_back(wait);
        wait->limit = limits.at(i);
        const bool all = i < forAll.size();
        wait->thread.reset(QThread::create([&pool, wait, all, id]() {
            wait->result = all ? pool.waitForAllFinished(wait->limit)
                               : pool.waitForFinished(id, wait->limit);
        }));
        wait->thread->start();
        QTest::qWait(10); // lets the waits begin in list order
    }
    const auto limitedOver = [&waits]() {
        return std::all_of(waits.cbegin(), waits.cend(),
            [](const std::unique_ptr<Wait> &w) { return w->limit < 0 || w->thread->isFinished(); });
    };
    // The held job cannot end before every limited wait is over, so those all time out.
    bool mainResult = true, nestedResult = true;
    if (mainWaits) {
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&]() {
            if (!limitedOver())
                return;
            poll.stop();
            gate.release();
            nestedResult = pool.waitForAllFinished(-1);
        });
        poll.start(5);
        mainResult = pool.waitForFinished(id, -1);
    } else {
        QVERIFY(spinUntil(limitedOver));
        gate.release();
    }
    QVERIFY(spinUntil([&waits]() {
        return std::all_of(waits.cbegin(), waits.cend(),
            [](const std::unique_ptr<Wait> &w) { return w->thread->isFinished(); });
    }));
    QVERIFY(mainResult);
    QVERIFY(nestedResult);
    for (const auto &wait : waits)
        QCOMPARE(wait->result.load(), wait->limit < 0 ? 1 : 0);
    // Every wait has left the pool: waiting for a new job touches none of them.
    QVERIFY(pool.waitForFinished(pool.schedule(kom::smart<RecordingJob>(new RecordingJob)), 10000));
    const int timedOutForAll
        = int(std::count_if(forAll.cbegin(), forAll.cend(), [](int l) { return l >= 0; }));
    QCOMPARE(capture.allLines(),
        QStringList(QVector<QString>(timedOutForAll, "2|jobs in progress").toList()));
    QVERIFY(pool.retire());
}

QTEST_GUILESS_MAIN(tst_komQtThreadPoolRaces)
#include "tst_komQtThreadPoolRaces.moc"
