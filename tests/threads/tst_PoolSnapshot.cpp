// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Snapshots of a job pool: komQtThreadPool::snapshot() under the locks, and without them.
#include "JobTestSupport.h"
#include "LogCapture.h"

#include "threads/PoolSnapshot.h"

#include <QtTest>

#include <numeric>
#include <thread>

using ko::JobPoolSnapshot;
using ko::komQtThreadPool;

namespace
{

QList<int> queuedIds(const ko::JobWorkerSnapshot &worker)
{
    QList<int> ids;
    for (const ko::QueuedJobSnapshot &job : worker.queue)
        ids << job.jobId;
    return ids;
}

} // namespace

class tst_PoolSnapshot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void heldJobRunsWithItsQueueBehind();
    void queuedEntries_data();
    void queuedEntries();
    void totalsCountAbortsAndMoves();
    void busyLockReportedWithinTheLimit();
    void snapshotsWhileJobsRun();
};

void tst_PoolSnapshot::heldJobRunsWithItsQueueBehind()
{
    LogCapture capture;
    TestPool pool(QStringLiteral("Snap"), 1);
    QSemaphore gate;
    int held, second, third;
    const kom::smart<RecordingJob> job = scheduleJob(pool, held, &gate);
    QVERIFY(job->waitStarted());
    const kom::smart<RecordingJob> b = scheduleJob(pool, second);
    const kom::smart<RecordingJob> c = scheduleJob(pool, third);

    const JobPoolSnapshot first = pool.snapshot();
    QCOMPARE(first.name, QStringLiteral("Snap"));
    QCOMPARE(first.maxThreads, 1);
    QVERIFY(!first.lockBusy);
    QVERIFY(!first.idle);
    QCOMPARE(first.idleSinceMs, qint64(-1));
    QCOMPARE(first.workers.size(), 1);
    const ko::JobWorkerSnapshot worker = first.workers.at(0);
    QCOMPARE(worker.name, QStringLiteral("Snap-Thread-1"));
    QVERIFY(worker.busy);
    QCOMPARE(worker.runningJobId, held);
    QCOMPARE(worker.runningPriority, 3);
    QCOMPARE(queuedIds(worker), QList<int>({ second, third }));
    QCOMPARE(worker.workLoad, 3);
    QCOMPARE(first.totals.scheduled, quint64(3));
    QCOMPARE(first.totals.started, quint64(1));
    QCOMPARE(first.totals.finished, quint64(0));

    // While the job is held, its running time and the ages of the jobs behind it grow.
    QVERIFY(spinUntil([&]() {
        const ko::JobWorkerSnapshot later = pool.snapshot().workers.value(0);
        return later.runningMs > worker.runningMs
            && later.queue.value(1).queuedMs > worker.queue.at(1).queuedMs;
    }));
    QCOMPARE(pool.snapshot().workers.value(0).runningJobId, held);

    gate.release();
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == 3 && pool.isIdle(); }));
    const JobPoolSnapshot after = pool.snapshot();
    QCOMPARE(after.totals.started, quint64(3));
    QVERIFY(after.idle);
    QVERIFY(after.idleSinceMs >= 0);
    QVERIFY(!after.workers.value(0).busy);
    QCOMPARE(after.workers.value(0).runningJobId, -1);
    QCOMPARE(after.workers.value(0).workLoad, 0);
    QCOMPARE(c->mRuns.load(), 1);
    QVERIFY(pool.retire());
    // Workers that have ended keep their counts in the totals.
    QCOMPARE(pool.snapshot().workers.size(), 0);
    QCOMPARE(pool.snapshot().totals.finished, quint64(3));
}

void tst_PoolSnapshot::queuedEntries_data()
{
    QTest::addColumn<QList<int>>("scheduled"); // priorities, ScheduleLifo included
    QTest::addColumn<QList<int>>("priorities");
    QTest::addColumn<QList<bool>>("lifo");
    QTest::newRow("normal") << QList<int> { 3 } << QList<int> { 3 } << QList<bool> { false };
    QTest::newRow("LIFO bit kept beside the masked priority")
        << QList<int> { 0x800 | 3 } << QList<int> { 3 } << QList<bool> { true };
    QTest::newRow("arrival order, whatever the priority") << QList<int> { 4, 0,
        0x800 | 6 } << QList<int> { 4, 0, 6 } << QList<bool> { false, false, true };
    QTest::newRow("bits above the LIFO bit dropped")
        << QList<int> { 0x1000 | 2 } << QList<int> { 2 } << QList<bool> { false };
}

void tst_PoolSnapshot::queuedEntries()
{
    QFETCH(QList<int>, scheduled);
    QFETCH(QList<bool>, lifo);
    LogCapture capture;
    TestPool pool(QStringLiteral("Queue"), 1);
    QSemaphore gate;
    int held;
    const kom::smart<RecordingJob> job = scheduleJob(pool, held, &gate);
    QVERIFY(job->waitStarted());
    for (int priority : scheduled)
        pool.schedule(kom::smart<RecordingJob>(new RecordingJob),
            komQtThreadPool::SchedulePriority(priority));

    const QVector<ko::QueuedJobSnapshot> queue = pool.snapshot().workers.value(0).queue;
    QList<int> seenPriorities;
    QList<bool> seenLifo;
    for (const ko::QueuedJobSnapshot &entry : queue) {
        seenPriorities << entry.priority;
        seenLifo << entry.lifo;
    }
    QTEST(seenPriorities, "priorities");
    QCOMPARE(seenLifo, lifo);
    gate.release();
    QVERIFY(pool.retire());
}

void tst_PoolSnapshot::totalsCountAbortsAndMoves()
{
    LogCapture capture;
    TestPool pool(QStringLiteral("Totals"), 1);
    QSemaphore gate;
    int held, a, b, c;
    const kom::smart<RecordingJob> job = scheduleJob(pool, held, &gate);
    QVERIFY(job->waitStarted());
    const kom::smart<RecordingJob> jobA = scheduleJob(pool, a);
    const kom::smart<RecordingJob> jobB = scheduleJob(pool, b);
    const kom::smart<RecordingJob> jobC = scheduleJob(pool, c);
    QVERIFY(pool.changePriority(a, komQtThreadPool::ScheduleHighPriority));
    QVERIFY(
        !pool.changePriority(held, komQtThreadPool::ScheduleHighPriority)); // running: not moved
    QSet<int> abort { c };
    pool.requestAbort(abort);

    const JobPoolSnapshot queued = pool.snapshot();
    QCOMPARE(queuedIds(queued.workers.value(0)), QList<int>({ b, a })); // a moved to the back
    QCOMPARE(queued.totals.scheduled, quint64(4));
    QCOMPARE(queued.totals.reprioritised, quint64(1));
    QCOMPARE(queued.totals.abortedWhileQueued, quint64(1));
    QCOMPARE(queued.totals.started, quint64(1));

    gate.release();
    QVERIFY(spinUntil([&]() { return jobA->mRuns == 1 && jobB->mRuns == 1; }));
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == 3; }));
    const JobPoolSnapshot done = pool.snapshot();
    QCOMPARE(done.totals.started, quint64(3)); // the aborted job never started
    QCOMPARE(done.totals.abortedWhileQueued, quint64(1));
    QCOMPARE(jobC->mRuns.load(), 0);
    QVERIFY(pool.retire());
}

void tst_PoolSnapshot::busyLockReportedWithinTheLimit()
{
    LogCapture capture;
    TestPool pool(QStringLiteral("Locked"), 2);
    pool.setStallThreshold(60000);
    QSemaphore gate;
    int held;
    const kom::smart<RecordingJob> job = scheduleJob(pool, held, &gate);
    QVERIFY(job->waitStarted());

    // A snapshot that took the lock and gave it back leaves nothing behind: the next one waits
    // for another holder as the first did.
    QVERIFY(!pool.snapshot(100).lockBusy);
    QSemaphore locked, unlock;
    std::thread holder([&]() {
        QMutexLocker lock(&pool.poolLock());
        locked.release();
        unlock.acquire();
    });
    locked.acquire();
    const JobPoolSnapshot busy = pool.snapshot(100);
    unlock.release();
    holder.join();

    QVERIFY(busy.lockBusy);
    QCOMPARE(busy.lockWaitMs, 100);
    QCOMPARE(busy.name, QStringLiteral("Locked"));
    QCOMPARE(busy.maxThreads, 2);
    QCOMPARE(busy.stallThresholdMs, 60000);
    QCOMPARE(busy.idleSinceMs, qint64(-1));
    QCOMPARE(busy.totals.scheduled, quint64(1));
    QCOMPARE(busy.totals.started, quint64(1));
    QCOMPARE(busy.workers.size(), 1);
    // What the worker publishes without a lock: its running job, not its queue.
    QCOMPARE(busy.workers.at(0).name, QStringLiteral("Locked-Thread-1"));
    QVERIFY(busy.workers.at(0).busy);
    QCOMPARE(busy.workers.at(0).runningJobId, held);
    QCOMPARE(busy.workers.at(0).workLoad, -1);
    // Once the lock is free, the same call takes it.
    QVERIFY(!pool.snapshot(100).lockBusy);
    gate.release();
    QVERIFY(pool.retire());
}

// Snapshots with and without the lock, from another thread, while thousands of jobs pass through
// three workers: every snapshot adds up, and the final one accounts for every job.
void tst_PoolSnapshot::snapshotsWhileJobsRun()
{
    constexpr int jobs = 3000;
    LogCapture capture(ko::Log::Warning);
    TestPool pool(QStringLiteral("Race"), 3);
    std::atomic<bool> done { false };
    std::atomic<int> snapshots { 0 };
    QString failure; // the first snapshot that did not add up
    std::thread reader([&]() {
        for (int i = 0; !done; ++i) {
            const JobPoolSnapshot s = pool.snapshot(i % 2 == 0 ? 0 : 1000);
            const ko::JobPoolTotals &t = s.totals;
            const int load = std::accumulate(s.workers.cbegin(), s.workers.cend(), 0,
                [](int sum, const ko::JobWorkerSnapshot &w) { return sum + w.workLoad; });
            const bool addsUp = t.started >= t.finished
                && (s.lockBusy
                        ? load == -s.workers.size()
                        : t.scheduled >= t.started && quint64(load) <= t.scheduled - t.finished);
            if (!addsUp && failure.isEmpty()) {
                failure = QStringLiteral("scheduled %1 started %2 finished %3 load %4 lockBusy %5")
                              .arg(t.scheduled)
                              .arg(t.started)
                              .arg(t.finished)
                              .arg(load)
                              .arg(s.lockBusy);
            }
            ++snapshots;
        }
    });
    // The jobs come once the reader runs, so that even a loaded machine races the two.
    QVERIFY(spinUntil([&]() { return snapshots > 0; }));
    std::atomic<int> runs { 0 };
    for (int i = 0; i < jobs; ++i)
        pool.schedule(kom::smart<ko::IRunnable>(new TickJob(runs)));
    QVERIFY(spinUntil([&]() { return runs == jobs; }, 60000));
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == jobs; }));
    done = true;
    reader.join();
    QCOMPARE(failure, QString());
    QVERIFY(snapshots > 0);
    const JobPoolSnapshot last = pool.snapshot();
    QCOMPARE(last.totals.scheduled, quint64(jobs));
    QCOMPARE(last.totals.started, quint64(jobs));
    QCOMPARE(last.totals.abortedWhileQueued, quint64(0));
    QVERIFY(pool.retire());
}

QTEST_GUILESS_MAIN(tst_PoolSnapshot)
#include "tst_PoolSnapshot.moc"
