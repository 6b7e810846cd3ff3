// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "exceptions/RuntimeException.h"
#include "threads/komQtSignalThreadPool.h"

#include <QTimer>
#include <QtTest>

#include <memory>
#include <sstream>

using ko::komQtSignalThreadPool;
using ko::komQtSignalWorkerThread;

namespace
{

// An object that records the thread its slots and timers run in.
class Probe : public QObject
{
    Q_OBJECT
public:
    QAtomicPointer<QThread> slotThread;
    QAtomicPointer<QThread> timerThread;

public Q_SLOTS:
    void record() { slotThread.storeRelease(QThread::currentThread()); }
    void startTimer()
    {
        auto *timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this,
            [this] { timerThread.storeRelease(QThread::currentThread()); });
        timer->start(1);
    }
};

// Runs @p function inside the thread of @p context and returns once it has run.
template <class Function> void runIn(QObject *context, Function function)
{
    QMetaObject::invokeMethod(context, function, Qt::BlockingQueuedConnection);
}

// A log stream that deletes an object once the first line has been written to it.
struct DeletingStreambuf : std::stringbuf
{
    QObject *victim;
    int sync() override
    {
        delete victim;
        victim = nullptr;
        return 0;
    }
};

int totalLoad(const komQtSignalThreadPool &pool)
{
    int sum = 0;
    for (komQtSignalWorkerThread *thread : pool.threads())
        sum += thread->load();
    return sum;
}

} // namespace

class tst_komQtSignalThreadPool : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void globalPoolWithManyObjects();
    void choiceRule_data();
    void choiceRule();
    void stoppedWorkerDiscarded();
    void objectsInWorker();
    void objectGoneDuringDetach();
    void nullObjectsRefused();
    void escapingException_data();
    void escapingException();
    void stress();
};

void tst_komQtSignalThreadPool::globalPoolWithManyObjects()
{
    komQtSignalThreadPool *pool = komQtSignalThreadPool::globalInstance();
    QCOMPARE(komQtSignalThreadPool::globalInstance(), pool);
    QCOMPARE(pool->objectName(), QStringLiteral("SignalThreadPool"));
    QCOMPARE(pool->maxThreads(), 4);
    QCOMPARE(pool->priority(), QThread::LowPriority);
    std::vector<std::unique_ptr<QObject>> objects;
    for (int i = 0; i < 1000; ++i) {
        objects.emplace_back(new QObject);
        pool->attachToThread(objects.back().get());
        if (i < 4) { // every worker is busy: a new one is made up to the limit
            komQtSignalWorkerThread *worker = pool->threads().at(i);
            QCOMPARE(worker->objectName(), QStringLiteral("SignalThreadPool-Thread-%1").arg(i + 1));
            QCOMPARE(worker->priority(), QThread::LowPriority);
            QCOMPARE(objects.back()->thread(), worker);
        }
    }
    QCOMPARE(pool->threads().size(), 4);
    QCOMPARE(totalLoad(*pool), 1000);
    QList<QPointer<QThread>> workers;
    for (komQtSignalWorkerThread *thread : pool->threads())
        workers << thread;
    LogCapture capture;
    QVERIFY(komQtSignalThreadPool::deleteGlobalInstance());
    QVERIFY(!komQtSignalThreadPool::deleteGlobalInstance());
    QCOMPARE(workers.count(nullptr), 4); // stopped, waited for and deleted
    QCOMPARE(capture.lines(ko::Log::Message),
        QStringList({ "SignalThreadPool-Thread-4 finished.", "SignalThreadPool-Thread-3 finished.",
            "SignalThreadPool-Thread-2 finished.", "SignalThreadPool-Thread-1 finished." }));
}

void tst_komQtSignalThreadPool::choiceRule_data()
{
    QTest::addColumn<int>("maxThreads");
    QTest::addColumn<QList<int>>(
        "detachFrom"); // worker indexes whose first object is detached (load drops)
    QTest::addColumn<int>("objects"); // attached one after the other (after that setup)
    QTest::addColumn<QList<int>>("loads"); // loads of the workers at the end
    QTest::newRow("limit reached: least loaded, earliest on ties")
        << 2 << QList<int> {} << 5 << QList<int> { 3, 2 };
    QTest::newRow("no limit: a worker per object")
        << 0 << QList<int> {} << 3 << QList<int> { 1, 1, 1 };
    QTest::newRow("negative limit: no limit") << -1 << QList<int> {} << 2 << QList<int> { 1, 1 };
    QTest::newRow("an idle worker is reused first")
        << 0 << QList<int> { 0 } << 1 << QList<int> { 1, 1 };
}

void tst_komQtSignalThreadPool::choiceRule()
{
    QFETCH(int, maxThreads);
    QFETCH(QList<int>, detachFrom);
    QFETCH(int, objects);
    komQtSignalThreadPool pool(
        QStringLiteral("Render%1"), maxThreads); // a name that looks like a placeholder
    std::vector<std::unique_ptr<QObject>> owned;
    if (!detachFrom.isEmpty()) {
        // Two workers with one object each, then the given workers lose theirs.
        for (int i = 0; i < 2; ++i) {
            owned.emplace_back(new QObject);
            pool.attachToThread(owned.back().get());
        }
        for (int index : detachFrom)
            pool.threads().at(index)->detach(0);
    }
    for (int i = 0; i < objects; ++i) {
        owned.emplace_back(new QObject);
        pool.attachToThread(owned.back().get());
    }
    QList<int> seen;
    for (komQtSignalWorkerThread *thread : pool.threads())
        seen << thread->load();
    QTEST(seen, "loads");
    QCOMPARE(pool.threads().first()->objectName(), QStringLiteral("Render%1-Thread-1"));
}

void tst_komQtSignalThreadPool::stoppedWorkerDiscarded()
{
    komQtSignalThreadPool pool(QStringLiteral("P"), 0);
    QObject a, b, c;
    pool.attachToThread(&a);
    pool.attachToThread(&b);
    QPointer<komQtSignalWorkerThread> first(pool.threads().first());
    first->quit();
    QVERIFY(first->wait(5000));
    pool.attachToThread(&c);
    QVERIFY(first.isNull());
    QCOMPARE(pool.threads().size(), 2);
    // Numbered from the list length: "P-Thread-2" is given a second time.
    QCOMPARE(pool.threads().at(0)->objectName() + pool.threads().at(1)->objectName(),
        "P-Thread-2P-Thread-2");
}

void tst_komQtSignalThreadPool::objectsInWorker()
{
    komQtSignalThreadPool pool(QStringLiteral("D"), 1);
    QThread *main = QThread::currentThread();
    Probe moved;
    QObject forgotten, orphan;
    auto *doomed = new QObject;
    orphan.setObjectName(QStringLiteral("orphan"));
    for (QObject *object : { doomed, static_cast<QObject *>(&moved), &forgotten, &orphan })
        pool.attachToThread(object);
    komQtSignalWorkerThread *worker = pool.threads().first();
    QMetaObject::invokeMethod(&moved, "record", Qt::QueuedConnection);
    QMetaObject::invokeMethod(&moved, "startTimer", Qt::QueuedConnection);
    QTRY_COMPARE(moved.slotThread.loadAcquire(), worker);
    QTRY_COMPARE(moved.timerThread.loadAcquire(), worker);

    // A destroyed object stays as a null entry in its place and keeps counting.
    runIn(doomed, [doomed] { delete doomed; });
    QCoreApplication::processEvents(); // delivers destroyed() to the worker object
    QTest::qWait(20);
    QCOMPARE(worker->load(), 4);
    QCOMPARE(worker->indexOf(nullptr), 0);
    QCOMPARE(worker->indexOf(&moved), 1);

    // From the pool's thread only the bookkeeping goes; the object stays in the worker.
    pool.detachFromThread(&forgotten, main);
    QCOMPARE(worker->indexOf(&forgotten), -1);
    QCOMPARE(forgotten.thread(), worker);
    // From inside the worker the object really moves.
    runIn(&moved, [&] { worker->detach(&moved, main); });
    QCOMPARE(moved.thread(), main);
    QCOMPARE(worker->load(), 2);

    LogCapture capture;
    runIn(&orphan, [&] { worker->detach(&orphan, nullptr); });
    QCOMPARE(orphan.thread(), nullptr);
    QCOMPARE(capture.lines(ko::Log::Warning),
        QStringList { "detaching QObject.orphan. event processing will stop." });
    worker->detach(7); // a bad index is ignored
    QCOMPARE(worker->load(), 1);
    runIn(&forgotten, [&] { forgotten.moveToThread(main); });
}

void tst_komQtSignalThreadPool::objectGoneDuringDetach()
{
    // The object is destroyed while detach() runs, here by the log stream that receives detach()'s
    // line: its entry goes, the entry an object destroyed earlier left behind stays.
    komQtSignalThreadPool pool(QStringLiteral("G"), 1);
    QObject kept;
    auto *earlier = new QObject;
    auto *gone = new QObject;
    for (QObject *object : { earlier, &kept, gone })
        pool.attachToThread(object);
    komQtSignalWorkerThread *worker = pool.threads().first();
    runIn(earlier, [earlier] { delete earlier; });
    QPointer<QObject> watch(gone);
    DeletingStreambuf deleting;
    deleting.victim = gone;
    std::ostream stream(&deleting);
    LogCapture capture; // puts the previous streams back before this one goes
    ko::Log::instance().setStream(ko::Log::Warning, &stream, false);
    runIn(&kept, [worker, gone] { worker->detach(gone, nullptr); });
    QVERIFY(watch.isNull());
    QCOMPARE(worker->load(), 2);
    QCOMPARE(worker->indexOf(nullptr), 0);
    QCOMPARE(worker->indexOf(&kept), 1);
    runIn(&kept, [&kept] { kept.moveToThread(QCoreApplication::instance()->thread()); });
}

void tst_komQtSignalThreadPool::nullObjectsRefused()
{
    LogCapture capture;
    QObject object;
    komQtSignalThreadPool pool(QStringLiteral("N"), 0);
    pool.attachToThread(nullptr);
    QCOMPARE(pool.threads().size(), 0); // no worker is made for nothing
    pool.attachToThread(&object);
    komQtSignalWorkerThread *worker = pool.threads().first();
    worker->attach(nullptr);
    QCOMPARE(worker->load(), 1);
    QCOMPARE(capture.allLines(),
        QStringList({ "2|attaching null object to N. nothing attached.",
            "2|attaching null object to N-Thread-1. nothing attached." }));
}

void tst_komQtSignalThreadPool::escapingException_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QStringList>("line");
    QTest::newRow("ExceptionQt")
        << 0 << QStringList(ko::RuntimeException(QStringLiteral("broken")).toString().trimmed());
    QTest::newRow("anything else") << 1 << QStringList("in worker thread E-Thread-1: ");
}

void tst_komQtSignalThreadPool::escapingException()
{
    QFETCH(int, kind);
    const QtMessageHandler previous
        = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    LogCapture capture;
    komQtSignalThreadPool pool(QStringLiteral("E"), 0);
    QObject target;
    pool.attachToThread(&target);
    QPointer<komQtSignalWorkerThread> worker = pool.threads().first();
    // The job pool's worker tests go through every class of the catch table they share.
    QMetaObject::invokeMethod(
        &target,
        [kind] {
            if (kind == 0)
                throw ko::RuntimeException(QStringLiteral("broken"));
            throw 42;
        },
        Qt::QueuedConnection);
    QVERIFY(worker->wait(5000));
    qInstallMessageHandler(previous);
    QTEST(capture.lines(ko::Log::FatalError), "line");
    QCOMPARE(capture.lines(ko::Log::Message), QStringList { "E-Thread-1 finished." });

    // The dead worker is discarded by the next attach.
    QObject next;
    pool.attachToThread(&next);
    QCOMPARE(pool.threads().size(), 1);
    QVERIFY(worker.isNull());
}

void tst_komQtSignalThreadPool::stress()
{
    komQtSignalThreadPool pool(QStringLiteral("S"), 4);
    constexpr int count = 10000;
    QThread *main = QThread::currentThread();
    std::vector<QObject *> objects(count);
    for (int i = 0; i < count; ++i) {
        objects[i] = new QObject;
        pool.attachToThread(objects[i]);
    }
    QCOMPARE(totalLoad(pool), count);

    // Every third object is detached to the main thread and every third deleted, each from inside
    // its worker.
    QAtomicInt done;
    for (int i = 0; i < count; ++i) {
        QObject *object = objects[i];
        auto *worker = static_cast<komQtSignalWorkerThread *>(object->thread());
        if (i % 3 != 2) {
            QMetaObject::invokeMethod(object, [=, &done] {
                if (i % 3 == 0)
                    worker->detach(object, main);
                else
                    delete object;
                done.ref();
            });
        }
    }
    const int queued = count - count / 3;
    QTRY_COMPARE_WITH_TIMEOUT(done.loadAcquire(), queued, 30000);
    QCoreApplication::processEvents();

    for (int i = 0; i < count; ++i) {
        if (i % 3 == 0) {
            QCOMPARE(objects[i]->thread(), main);
            for (komQtSignalWorkerThread *worker : pool.threads())
                QCOMPARE(worker->indexOf(objects[i]), -1);
            delete objects[i];
        } else if (i % 3 == 2) {
            QVERIFY(
                static_cast<komQtSignalWorkerThread *>(objects[i]->thread())->indexOf(objects[i])
                >= 0);
        }
    }
    // Destroyed objects stay as null entries and keep counting; detached ones are gone.
    QCOMPARE(totalLoad(pool), count - (count + 2) / 3);
    for (int i = 2; i < count; i += 3)
        delete objects[i];
}

QTEST_GUILESS_MAIN(tst_komQtSignalThreadPool)
#include "tst_komQtSignalThreadPool.moc"
