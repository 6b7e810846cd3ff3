#include "kom/komQtConditionVariable.h"
#include "kom/komQtLock.h"
#include "kom/komQtSignalBlocker.h"
#include "kom/komQtSynchronizationFactory.h"
#include "kom/komQtThreadSpawner.h"
#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komTerminal.h"

#include <QSemaphore>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace
{

QStringList sReports;
const komObject* sReportSender;

// Installs a kom::terminal handler that records and returns; restores the previous one.
struct TerminalRecorder
{
    kom::TerminalHandler previous
        = kom::setTerminalHandler([](const komString& message, const komObject* sender) {
              sReports << message.text();
              sReportSender = sender;
          });
    TerminalRecorder() { sReports.clear(), sReportSender = nullptr; }
    ~TerminalRecorder() { kom::setTerminalHandler(previous); }
};

// Records the status messages of the default processor as "<type> <text>", from any thread.
struct StatusRecorder : komStatusMessageHandlerInterface
{
    QMutex mutex;
    QStringList messages;
    StatusRecorder() { kom::komStatusMessageProcessor::defaultProcessor()->addStatusMessageHandler(this); }
    ~StatusRecorder() override
    {
        kom::komStatusMessageProcessor::defaultProcessor()->removeStatusMessageHandler(this);
    }
    void sendStatusMessage(kom::StatusMessageType type, const komString& text, const komObject*) override
    {
        QMutexLocker lock(&mutex);
        messages << QString::number(type) + " " + text.text();
    }
    void setStatusMessageVerbosity(kom::StatusMessageType) override { }
    kom::StatusMessageType statusMessageVerbosity() const override { return kom::StatusTrace; }
};

struct OtherLock : komLockInterface
{
    void acquire() override { }
    void release() override { }
};

// Holds at a gate, then counts its run.
struct GatedRunnable : komRunnableInterface
{
    void run() override { gate->acquire(), ++runs; }
    QSemaphore* gate = nullptr;
    std::atomic<int> runs { 0 };
};

} // namespace

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
    auto* qtLock = dynamic_cast<komQtLock*>(lock.get());
    QVERIFY(qtLock && !qtLock->isRecursive());
    std::unique_ptr<komConditionVariableInterface> condition(factory.newConditionVariable(lock.get()));
    std::unique_ptr<komThreadSpawnerInterface> spawner(factory.newThreadSpawner());
    QVERIFY(dynamic_cast<komQtConditionVariable*>(condition.get())
        && dynamic_cast<komQtThreadSpawner*>(spawner.get()));
    // A condition variable needs a komQtLock.
    OtherLock other;
    QVERIFY(!factory.newConditionVariable(nullptr) && !factory.newConditionVariable(&other));
    QCOMPARE(
        sReports, QStringList({ "incompatible lock implementation!", "incompatible lock implementation!" }));
    QCOMPARE(sReportSender, static_cast<const komObject*>(&factory));
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
    for (std::thread& worker : workers)
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

void tst_komQtSynchronization::conditionVariable()
{
    // The condition variable waits on its lock's mutex; Qt does not wait on a recursive one, nor
    // without one: wait() fails at once.
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
    QTest::addColumn<QString>("steps"); // s: set a runnable, p: spawn, w: wait; then destroyed
    QTest::addColumn<QStringList>("reports");
    QTest::addColumn<int>("bodies"); // runs of the thread body
    QTest::addColumn<int>("waits"); // waits that sent their two messages
    QTest::newRow("used as meant") << "spw" << QStringList() << 1 << 1;
    QTest::newRow("destroyed without wait") << "sp" << QStringList() << 1 << 1;
    QTest::newRow("never spawned") << "s" << QStringList() << 0 << 0;
    QTest::newRow("runnable set twice") << "sspw" << QStringList("runnable has already been set!") << 1 << 1;
    QTest::newRow("no runnable") << "pw" << QStringList("no runnable installed!") << 1 << 1;
    QTest::newRow("spawned twice") << "sppw" << QStringList("thread has already been spawned!") << 1 << 1;
    QTest::newRow("waited twice") << "spww" << QStringList("thread has already been waited upon!") << 1 << 2;
    QTest::newRow("spawned after the wait")
        << "spwp"
        << QStringList({ "thread has already been waited upon!", "thread has already been spawned!" }) << 2
        << 1;
}

void tst_komQtSynchronization::spawner()
{
    QFETCH(QString, steps);
    QFETCH(QStringList, reports);
    QFETCH(int, bodies);
    QFETCH(int, waits);
    TerminalRecorder terminal;
    StatusRecorder status;
    QSemaphore gate; // keeps the thread running until the first wait, so a second start is ignored
    QList<kom::smart<GatedRunnable>> runnables;
    {
        komQtThreadSpawner spawner;
        for (const QChar step : steps) {
            if (step == 's') {
                runnables << kom::smart<GatedRunnable>(new GatedRunnable);
                runnables.last()->gate = &gate;
                spawner.setRunnable(runnables.last());
            } else if (step == 'p') {
                spawner.spawnThread();
            } else {
                gate.release(2);
                spawner.waitUntilThreadHasTerminated();
            }
        }
        QCOMPARE(sReports, reports);
        QCOMPARE(sReportSender, reports.isEmpty() ? nullptr : static_cast<const komObject*>(&spawner));
        gate.release(2);
        spawner.wait(); // a restart after the wait is not waited for by the spawner
    }
    int runs = 0;
    for (const auto& runnable : qAsConst(runnables)) {
        QCOMPARE(runnable.useCount(), 1L); // the spawner let go of it
        runs += runnable->runs;
    }
    QCOMPARE(runs, runnables.isEmpty() ? 0 : bodies); // without a runnable the body runs nothing
    // The waiting side's messages in order, the thread's own two wherever they fell.
    QStringList seen = status.messages;
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
