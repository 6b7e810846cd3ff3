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

namespace
{

// What kom::terminal reported while a TerminalRecorder was installed.
struct Report
{
    QString message;
    const komObject* sender;
};
QList<Report> sReports;

void recordTerminal(const komString& message, const komObject* sender)
{
    sReports << Report{QString::fromLatin1(message.text()), sender};
}

// Installs a terminal handler that records and returns; restores the previous one.
class TerminalRecorder
{
public:
    TerminalRecorder()
        : mPrevious(kom::setTerminalHandler(&recordTerminal))
    {
        sReports.clear();
    }
    ~TerminalRecorder() { kom::setTerminalHandler(mPrevious); }
    QStringList messages() const
    {
        QStringList result;
        for (const Report& report : qAsConst(sReports))
            result << report.message;
        return result;
    }

private:
    kom::TerminalHandler mPrevious;
};

// Records the status messages of the default processor, from any thread.
class StatusRecorder : public komStatusMessageHandlerInterface
{
public:
    StatusRecorder() { kom::komStatusMessageProcessor::defaultProcessor()->addStatusMessageHandler(this); }
    ~StatusRecorder() override
    {
        kom::komStatusMessageProcessor::defaultProcessor()->removeStatusMessageHandler(this);
    }
    void sendStatusMessage(kom::StatusMessageType type, const komString& text, const komObject* sender) override
    {
        QMutexLocker lock(&mMutex);
        mMessages << QStringLiteral("%1 %2").arg(int(type)).arg(QString::fromLatin1(text.text()));
        mSenders << sender;
    }
    void setStatusMessageVerbosity(kom::StatusMessageType) override {}
    kom::StatusMessageType statusMessageVerbosity() const override { return kom::StatusTrace; }
    QStringList messages()
    {
        QMutexLocker lock(&mMutex);
        return mMessages;
    }
    QList<const komObject*> senders()
    {
        QMutexLocker lock(&mMutex);
        return mSenders;
    }

private:
    QMutex mMutex;
    QStringList mMessages;
    QList<const komObject*> mSenders;
};

class OtherLock : public komLockInterface
{
public:
    void acquire() override {}
    void release() override {}
};

// Counts its runs; holds at a gate first when it has one.
class CountingRunnable : public komRunnableInterface
{
public:
    explicit CountingRunnable(QSemaphore* gate = nullptr)
        : mGate(gate)
    {
    }
    void run() override
    {
        if (mGate)
            mGate->acquire();
        ++mRuns;
    }
    QSemaphore* mGate;
    std::atomic<int> mRuns{0};
};

const QString kWaiting = QStringLiteral("40 waiting for thread to terminate...");
const QString kTerminated = QStringLiteral("40 thread has terminated");
const QString kSpawned = QStringLiteral("40 thread spawned, executing runnable...");
const QString kReturned = QStringLiteral("40 thread returned from runnable, terminating...");

} // namespace

class tst_komQtSynchronization : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lock_data();
    void lock();
    void factoryMakesQtObjects();
    void incompatibleLock_data();
    void incompatibleLock();
    void conditionVariableWakes();
    void conditionVariableOnRecursiveLock();
    void spawnerRunsAndReports();
    void spawnerMisuse_data();
    void spawnerMisuse();
    void spawnerDestructorWaits_data();
    void spawnerDestructorWaits();
    void signalBlocker_data();
    void signalBlocker();
};

void tst_komQtSynchronization::lock_data()
{
    QTest::addColumn<bool>("recursive");
    QTest::newRow("non-recursive") << false;
    QTest::newRow("recursive") << true;
}

void tst_komQtSynchronization::lock()
{
    QFETCH(bool, recursive);
    komQtLock lock(recursive ? QMutex::Recursive : QMutex::NonRecursive);
    QCOMPARE(lock.isRecursive(), recursive);
    komLockInterface& face = lock;
    face.acquire();
    QCOMPARE(lock.tryLock(), recursive); // only a recursive lock may be taken again by its owner
    if (recursive)
        face.release();
    bool takenElsewhere = true;
    std::thread([&]() { takenElsewhere = lock.tryLock(); }).join();
    QVERIFY(!takenElsewhere);
    face.release();
    std::thread([&]() {
        takenElsewhere = lock.tryLock();
        lock.unlock();
    }).join();
    QVERIFY(takenElsewhere);
}

void tst_komQtSynchronization::factoryMakesQtObjects()
{
    komQtSynchronizationFactory factory;
    std::unique_ptr<komLockInterface> lock(factory.newLock());
    auto* qtLock = dynamic_cast<komQtLock*>(lock.get());
    QVERIFY(qtLock);
    QVERIFY(!qtLock->isRecursive());
    std::unique_ptr<komConditionVariableInterface> condition(factory.newConditionVariable(lock.get()));
    QVERIFY(dynamic_cast<komQtConditionVariable*>(condition.get()));
    std::unique_ptr<komThreadSpawnerInterface> spawner(factory.newThreadSpawner());
    auto* qtSpawner = dynamic_cast<komQtThreadSpawner*>(spawner.get());
    QVERIFY(qtSpawner);
    QVERIFY(!qtSpawner->parent());
}

void tst_komQtSynchronization::incompatibleLock_data()
{
    QTest::addColumn<bool>("nullLock");
    QTest::newRow("null") << true;
    QTest::newRow("other implementation") << false;
}

void tst_komQtSynchronization::incompatibleLock()
{
    QFETCH(bool, nullLock);
    TerminalRecorder recorder;
    komQtSynchronizationFactory factory;
    OtherLock other;
    QVERIFY(!factory.newConditionVariable(nullLock ? nullptr : &other));
    QCOMPARE(recorder.messages(), QStringList("incompatible lock implementation!"));
    QCOMPARE(sReports.first().sender, static_cast<const komObject*>(&factory));
}

void tst_komQtSynchronization::conditionVariableWakes()
{
    komQtLock lock(QMutex::NonRecursive);
    komQtConditionVariable condition(&lock);
    int ready = 0;
    int woken = 0;
    std::atomic<int> failedWaits{0};
    // signal() wakes one waiter, signalAll() the rest.
    auto waiter = [&]() {
        lock.acquire();
        ++ready;
        while (woken == 0) {
            if (!condition.wait())
                ++failedWaits;
        }
        --woken;
        lock.release();
    };
    std::thread first(waiter), second(waiter), third(waiter);
    QTRY_VERIFY([&]() {
        QMutexLocker locker(&lock);
        return ready == 3;
    }());
    lock.acquire();
    woken = 1;
    condition.signal();
    lock.release();
    QTRY_VERIFY([&]() {
        QMutexLocker locker(&lock);
        return woken == 0;
    }());
    lock.acquire();
    woken = 2;
    condition.signalAll();
    lock.release();
    first.join();
    second.join();
    third.join();
    QCOMPARE(woken, 0);
    QCOMPARE(failedWaits.load(), 0);
}

void tst_komQtSynchronization::conditionVariableOnRecursiveLock()
{
    // Qt does not wait on a recursive mutex: wait() reports failure at once; so does a
    // condition variable made without a lock.
    komQtLock lock(QMutex::Recursive);
    komQtConditionVariable condition(&lock);
    lock.acquire();
    QTest::ignoreMessage(QtWarningMsg, "QWaitCondition: cannot wait on recursive mutexes");
    QVERIFY(!condition.wait());
    lock.release();
    komQtConditionVariable unbound(nullptr);
    QVERIFY(!unbound.wait());
}

void tst_komQtSynchronization::spawnerRunsAndReports()
{
    TerminalRecorder terminal;
    StatusRecorder status;
    auto* runnable = new CountingRunnable;
    {
        komQtThreadSpawner spawner;
        spawner.setRunnable(kom::smart<komRunnableInterface>(runnable));
        spawner.spawnThread();
        spawner.waitUntilThreadHasTerminated();
        QCOMPARE(runnable->mRuns.load(), 1);
        // The thread's two messages come between the waiting caller's two.
        const QStringList messages = status.messages();
        QCOMPARE(messages.size(), 4);
        QCOMPARE(messages.first(), kWaiting);
        QCOMPARE(messages.last(), kTerminated);
        QVERIFY(messages.indexOf(kSpawned) < messages.indexOf(kReturned));
        for (const komObject* sender : status.senders())
            QCOMPARE(sender, static_cast<const komObject*>(&spawner));
    }
    QVERIFY(terminal.messages().isEmpty());
}

void tst_komQtSynchronization::spawnerMisuse_data()
{
    QTest::addColumn<QString>("steps"); // s: set runnable, p: spawn, w: wait
    QTest::addColumn<QStringList>("reports");
    QTest::addColumn<int>("runs");
    QTest::newRow("runnable set twice") << "sspw" << QStringList("runnable has already been set!") << 1;
    QTest::newRow("spawned without runnable") << "pw" << QStringList("no runnable installed!") << 0;
    QTest::newRow("spawned twice") << "sppw" << QStringList("thread has already been spawned!") << 1;
    QTest::newRow("waited twice") << "spww" << QStringList("thread has already been waited upon!") << 1;
    QTest::newRow("spawned after the wait")
        << "spwp" << QStringList({"thread has already been waited upon!", "thread has already been spawned!"}) << 2;
    QTest::newRow("waited, never spawned") << "ww" << QStringList("thread has already been waited upon!") << 0;
}

void tst_komQtSynchronization::spawnerMisuse()
{
    QFETCH(QString, steps);
    QFETCH(QStringList, reports);
    QFETCH(int, runs);
    TerminalRecorder terminal;
    QSemaphore gate;
    QList<CountingRunnable*> runnables;
    {
        komQtThreadSpawner spawner;
        for (const QChar step : steps) {
            if (step == QLatin1Char('s')) {
                runnables << new CountingRunnable(&gate);
                spawner.setRunnable(kom::smart<komRunnableInterface>(runnables.last()));
            } else if (step == QLatin1Char('p')) {
                spawner.spawnThread();
            } else {
                gate.release(10); // a second start of a running thread is ignored by Qt
                spawner.waitUntilThreadHasTerminated();
            }
        }
        QCOMPARE(terminal.messages(), reports);
        for (const Report& report : qAsConst(sReports))
            QCOMPARE(report.sender, static_cast<const komObject*>(&spawner));
        gate.release(10);
        spawner.wait(); // a restart after the wait is not waited for by the spawner itself
        int total = 0;
        for (CountingRunnable* runnable : qAsConst(runnables))
            total += runnable->mRuns;
        QCOMPARE(total, runs);
    }
}

void tst_komQtSynchronization::spawnerDestructorWaits_data()
{
    QTest::addColumn<bool>("spawn");
    QTest::addColumn<QStringList>("messages");
    QTest::newRow("spawned") << true << QStringList({kSpawned, kReturned, kWaiting, kTerminated});
    QTest::newRow("never spawned") << false << QStringList();
}

void tst_komQtSynchronization::spawnerDestructorWaits()
{
    QFETCH(bool, spawn);
    QFETCH(QStringList, messages);
    StatusRecorder status;
    auto* runnable = new CountingRunnable;
    kom::smart<komRunnableInterface> handle(runnable);
    {
        komQtThreadSpawner spawner;
        spawner.setRunnable(handle);
        if (spawn) {
            spawner.spawnThread();
            QTRY_COMPARE(status.messages().size(), 2); // the thread has returned from the runnable
        }
    }
    QCOMPARE(runnable->mRuns.load(), spawn ? 1 : 0);
    QCOMPARE(status.messages(), messages);
    QCOMPARE(handle.useCount(), 1L); // the spawner let go of the runnable
}

void tst_komQtSynchronization::signalBlocker_data()
{
    QTest::addColumn<bool>("initially");
    QTest::addColumn<bool>("outer");
    QTest::addColumn<bool>("inner");
    QTest::newRow("unblocked, block, block") << false << true << true;
    QTest::newRow("unblocked, block, unblock") << false << true << false;
    QTest::newRow("blocked, unblock, block") << true << false << true;
    QTest::newRow("blocked, block, unblock") << true << true << false;
}

void tst_komQtSynchronization::signalBlocker()
{
    QFETCH(bool, initially);
    QFETCH(bool, outer);
    QFETCH(bool, inner);
    QObject object;
    object.blockSignals(initially);
    {
        komQtSignalBlocker first(&object, outer);
        QCOMPARE(object.signalsBlocked(), outer);
        {
            komQtSignalBlocker second(&object, inner);
            QCOMPARE(object.signalsBlocked(), inner);
        }
        QCOMPARE(object.signalsBlocked(), outer);
    }
    QCOMPARE(object.signalsBlocked(), initially);
    // Outside the guard's contract: a null object is left alone.
    komQtSignalBlocker none(nullptr, true);
}

QTEST_GUILESS_MAIN(tst_komQtSynchronization)
#include "tst_komQtSynchronization.moc"
