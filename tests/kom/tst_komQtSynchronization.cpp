// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "KomRecorders.h"

#include "kom/komQtConditionVariable.h"
#include "kom/komQtLock.h"
#include "kom/komQtSignalBlocker.h"
#include "kom/komQtSynchronizationFactory.h"
#include "kom/komQtThreadSpawner.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{

struct OtherLock : komLockInterface
{
    void acquire() override { }
    void release() override { }
};

// Holds at a gate, then counts its run.
struct GatedRunnable : komRunnableInterface
{
    void run() override { gate->acquire(), ++runs; }
    QSemaphore *gate = nullptr;
    std::atomic<int> runs { 0 };
};

// What a spawner test does with the spawner, in order; the spawner is destroyed afterwards.
enum Step { SetRunnable, Spawn, Wait };
using Steps = QVector<Step>;

} // namespace

Q_DECLARE_METATYPE(Steps)

class tst_komQtSynchronization : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lockAndFactory();
    void lockRaces_data();
    void lockRaces();
    void conditionVariable();
    void spawner_data();
    void spawner();
    void signalBlocker();
};

void tst_komQtSynchronization::lockAndFactory()
{
    TerminalRecorder recorder;
    komQtSynchronizationFactory factory;
    std::unique_ptr<komLockInterface> lock(factory.newLock());
    auto *qtLock = dynamic_cast<komQtLock *>(lock.get());
    QVERIFY(qtLock);
    QVERIFY(!qtLock->isRecursive());
    std::unique_ptr<komConditionVariableInterface> condition(
        factory.newConditionVariable(lock.get()));
    std::unique_ptr<komThreadSpawnerInterface> spawner(factory.newThreadSpawner());
    QVERIFY(dynamic_cast<komQtConditionVariable *>(condition.get()));
    QVERIFY(dynamic_cast<komQtThreadSpawner *>(spawner.get()));
    // A condition variable needs a komQtLock.
    OtherLock other;
    QVERIFY(!factory.newConditionVariable(nullptr));
    QVERIFY(!factory.newConditionVariable(&other));
    QCOMPARE(TerminalRecorder::reports,
        QStringList({ "incompatible lock implementation!", "incompatible lock implementation!" }));
    QCOMPARE(TerminalRecorder::lastSender, static_cast<const komObject *>(&factory));
}

void tst_komQtSynchronization::lockRaces_data()
{
    QTest::addColumn<bool>("recursive");
    QTest::newRow("non-recursive") << false;
    QTest::newRow("recursive") << true;
}

// Threads that take the lock (a recursive one twice) are let in one at a time; a lock taken twice
// stays held until its second release.
void tst_komQtSynchronization::lockRaces()
{
    QFETCH(bool, recursive);
    komQtLock lock(recursive ? komQtLock::Recursive : komQtLock::NonRecursive);
    const int threads = 4, rounds = 20000;
    int counter = 0, inside = 0; // written under the lock only
    std::atomic<int> overlaps { 0 };
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([&]() {
            for (int i = 0; i < rounds; ++i) {
                lock.acquire();
                if (recursive)
                    lock.acquire();
                if (++inside != 1)
                    ++overlaps;
                ++counter;
                --inside;
                if (recursive)
                    lock.release();
                lock.release();
            }
        });
    }
    for (std::thread &worker : workers)
        worker.join();
    QCOMPARE(counter, threads * rounds);
    QCOMPARE(overlaps.load(), 0);

    const auto takenElsewhere = [&lock]() {
        bool taken = false;
        std::thread([&]() {
            taken = lock.tryLock();
            if (taken)
                lock.unlock();
        }).join();
        return taken;
    };
    lock.acquire();
    if (recursive) {
        QVERIFY(lock.tryLock()); // its holder takes it again at once
        lock.release();
    }
    QVERIFY(!takenElsewhere());
    lock.release();
    QVERIFY(takenElsewhere());
}

// The condition variable waits on its lock's mutex; on a recursive one (Qt 5's rule, kept on Qt 6)
// and without a lock wait() fails at once.
void tst_komQtSynchronization::conditionVariable()
{
    komQtLock lock(komQtLock::NonRecursive), recursive(komQtLock::Recursive);
    komQtConditionVariable condition(&lock), onRecursive(&recursive);
    bool woken = false;
    lock.acquire(); // the waker gets the lock only once the wait below has given it up
    std::thread waker([&]() {
        QMutexLocker locker(&lock);
        woken = true;
        condition.signalAll();
    });
    while (!woken)
        QVERIFY(condition.wait());
    lock.release();
    waker.join();
    recursive.acquire();
    QTest::ignoreMessage(QtWarningMsg, "QWaitCondition: cannot wait on recursive mutexes");
    QVERIFY(!onRecursive.wait());
    recursive.release();
    QVERIFY(!komQtConditionVariable(nullptr).wait());
}

void tst_komQtSynchronization::spawner_data()
{
    QTest::addColumn<Steps>("steps");
    QTest::addColumn<QStringList>("reports");
    QTest::addColumn<int>("bodies"); // runs of the thread body
    QTest::addColumn<int>("waits"); // waits that sent their two messages
    const auto row
        = [](const char *name, const Steps &steps, const QStringList &reports, int bodies,
              int waits) { QTest::newRow(name) << steps << reports << bodies << waits; };
    row("used as meant", { SetRunnable, Spawn, Wait }, {}, 1, 1);
    row("destroyed without wait", { SetRunnable, Spawn }, {}, 1, 1);
    row("never spawned", { SetRunnable }, {}, 0, 0);
    row("runnable set twice", { SetRunnable, SetRunnable, Spawn, Wait },
        { "runnable has already been set!" }, 1, 1);
    row("no runnable", { Spawn, Wait }, { "no runnable installed!" }, 1, 1);
    row("spawned twice", { SetRunnable, Spawn, Spawn, Wait },
        { "thread has already been spawned!" }, 1, 1);
    row("waited twice", { SetRunnable, Spawn, Wait, Wait },
        { "thread has already been waited upon!" }, 1, 2);
    row("spawned after the wait", { SetRunnable, Spawn, Wait, Spawn },
        { "thread has already been waited upon!", "thread has already been spawned!" }, 2, 1);
}

void tst_komQtSynchronization::spawner()
{
    QFETCH(Steps, steps);
    QFETCH(QStringList, reports);
    QFETCH(int, bodies);
    QFETCH(int, waits);
    TerminalRecorder terminal;
    StatusRecorder status;
    QSemaphore gate; // keeps the thread running until the first wait, so a second start is ignored
    QList<kom::smart<GatedRunnable>> runnables;
    {
        komQtThreadSpawner spawner;
        for (const Step step : steps) {
            if (step == SetRunnable) {
                runnables << kom::smart<GatedRunnable>(new GatedRunnable);
                runnables.last()->gate = &gate;
                spawner.setRunnable(runnables.last());
            } else if (step == Spawn) {
                spawner.spawnThread();
            } else {
                gate.release(2);
                spawner.waitUntilThreadHasTerminated();
            }
        }
        QCOMPARE(TerminalRecorder::reports, reports);
        QCOMPARE(TerminalRecorder::lastSender,
            reports.isEmpty() ? nullptr : static_cast<const komObject *>(&spawner));
        gate.release(2);
        spawner.wait(); // a restart after the wait is not waited for by the spawner
    }
    int runs = 0;
    for (const auto &runnable : qAsConst(runnables)) {
        QCOMPARE(runnable.useCount(), 1L); // the spawner let go of it
        runs += runnable->runs;
    }
    QCOMPARE(runs, runnables.isEmpty() ? 0 : bodies); // without a runnable the body runs nothing
    // The waiting side's messages in order, the thread's own two wherever they fell.
    QStringList seen = status.messages();
    QCOMPARE(seen.removeAll("40 thread spawned, executing runnable..."), bodies);
    QCOMPARE(seen.removeAll("40 thread returned from runnable, terminating..."), bodies);
    QStringList expected;
    for (int i = 0; i < waits; ++i)
        expected << "40 waiting for thread to terminate..."
                 << "40 thread has terminated";
    QCOMPARE(seen, expected);
}

void tst_komQtSynchronization::signalBlocker()
{
    // Nested guards give the object back its state from before the first one.
    for (int states = 0; states < 8; ++states) {
        const bool initially = states & 1, outer = states & 2, inner = states & 4;
        QObject object;
        object.blockSignals(initially);
        {
            komQtSignalBlocker first(&object, outer);
            {
                komQtSignalBlocker second(&object, inner);
                QCOMPARE(object.signalsBlocked(), inner);
            }
            QCOMPARE(object.signalsBlocked(), outer);
        }
        QCOMPARE(object.signalsBlocked(), initially);
    }
    komQtSignalBlocker none(nullptr, true); // outside the contract: left alone
}

QTEST_GUILESS_MAIN(tst_komQtSynchronization)
#include "tst_komQtSynchronization.moc"
