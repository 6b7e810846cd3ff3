// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// The registry of pools that a console shows, and the signal thread pool's snapshot.
#include "JobTestSupport.h"
#include "LogCapture.h"

#include "threads/PoolRegistry.h"
#include "threads/komQtSignalThreadPool.h"

#include <QTimer>
#include <QtTest>

#include <memory>
#include <thread>

using ko::komQtSignalThreadPool;
using ko::komQtThreadPool;
using ko::PoolRegistry;

namespace
{

template <class Snapshot> QStringList namesOf(const QVector<Snapshot> &snapshots)
{
    QStringList names;
    for (const Snapshot &snapshot : snapshots)
        names << snapshot.name;
    return names;
}

QStringList jobPoolNames()
{
    return namesOf(PoolRegistry::jobPools(1000));
}

QStringList signalPoolNames()
{
    return namesOf(PoolRegistry::signalPools(1000));
}

// "Class/name" for each attached object of each worker, one list per worker.
QList<QStringList> attachedOf(const ko::SignalPoolSnapshot &pool)
{
    QList<QStringList> workers;
    for (const ko::SignalWorkerSnapshot &worker : pool.workers) {
        QStringList objects;
        for (const ko::AttachedObjectSnapshot &object : worker.attached)
            objects << object.className + QLatin1Char('/') + object.objectName;
        workers << objects;
    }
    return workers;
}

QObject *named(QObject *object, const char *name)
{
    object->setObjectName(QLatin1String(name));
    return object;
}

// Deletes objects that live in worker threads, there, and waits until they are gone.
bool deleteInTheirThreads(const QList<QObject *> &objects)
{
    QList<QPointer<QObject>> alive;
    for (QObject *object : objects) {
        alive << object;
        object->deleteLater();
    }
    return spinUntil([&alive]() { return alive.count(nullptr) == alive.size(); });
}

} // namespace

class tst_PoolRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addedUntilDestroyed();
    void processWidePoolsOnceCreated();
    void signalPoolAttachedObjects();
    void snapshotsWhilePoolsComeAndGo();
};

void tst_PoolRegistry::addedUntilDestroyed()
{
    LogCapture capture;
    QVERIFY(!PoolRegistry::add(static_cast<komQtThreadPool *>(nullptr)));
    QVERIFY(!PoolRegistry::add(static_cast<komQtSignalThreadPool *>(nullptr)));
    auto alpha = std::make_unique<TestPool>(QStringLiteral("Alpha"), 1);
    TestPool unregistered(QStringLiteral("Beta"), 1);
    TestPool sameName(QStringLiteral("Alpha"), 1);
    komQtSignalThreadPool signalAlpha(QStringLiteral("Alpha"), 1);
    QVERIFY(PoolRegistry::add(alpha.get()));
    QVERIFY(!PoolRegistry::add(alpha.get()));
    QVERIFY(!PoolRegistry::add(&sameName));
    QVERIFY(PoolRegistry::add(&signalAlpha)); // the other kind of pool: a name of its own
    QCOMPARE(jobPoolNames(), QStringList({ "Alpha" }));
    QCOMPARE(signalPoolNames(), QStringList({ "Alpha" }));
    alpha.reset();
    QCOMPARE(jobPoolNames(), QStringList());
    QVERIFY(PoolRegistry::add(&sameName)); // the name is free again
    QCOMPARE(jobPoolNames(), QStringList({ "Alpha" }));
}

void tst_PoolRegistry::processWidePoolsOnceCreated()
{
    LogCapture capture;
    QCOMPARE(jobPoolNames(), QStringList());
    QCOMPARE(signalPoolNames(), QStringList());
    komQtThreadPool::globalInstance();
    komQtSignalThreadPool::globalInstance();
    QCOMPARE(jobPoolNames(), QStringList({ "ThreadPool" }));
    QCOMPARE(signalPoolNames(), QStringList({ "SignalThreadPool" }));
    QCOMPARE(PoolRegistry::signalPools(1000).value(0).maxThreads, 4);
    QCOMPARE(PoolRegistry::signalPools(1000).value(0).priority, int(QThread::LowPriority));
    QVERIFY(komQtThreadPool::deleteGlobalInstance());
    QVERIFY(komQtSignalThreadPool::deleteGlobalInstance());
    QCOMPARE(jobPoolNames(), QStringList());
    QCOMPARE(signalPoolNames(), QStringList());
}

void tst_PoolRegistry::signalPoolAttachedObjects()
{
    LogCapture capture;
    komQtSignalThreadPool pool(QStringLiteral("Sig"), 2);
    QTimer *tick = new QTimer;
    tick->setObjectName(QStringLiteral("tick"));
    QObject *first = named(new QObject, "first");
    QObject *second = named(new QObject, "second");
    for (QObject *object : { static_cast<QObject *>(tick), first, second })
        pool.attachToThread(object);
    // The first worker takes tick, the second (new, as the first is loaded) first, the least
    // loaded, the earliest on a tie, second.
    const ko::SignalPoolSnapshot attached = pool.snapshot(1000);
    QCOMPARE(attached.name, QStringLiteral("Sig"));
    QCOMPARE(attached.maxThreads, 2);
    QCOMPARE(attached.workers.size(), 2);
    QCOMPARE(attached.workers.at(0).name, QStringLiteral("Sig-Thread-1"));
    QCOMPARE(attachedOf(attached),
        QList<QStringList>({ { "QTimer/tick", "QObject/second" }, { "QObject/first" } }));
    QCOMPARE(attached.workers.at(0).load, 2);

    // Renamed after attaching: shown under the name it had then.
    QMetaObject::invokeMethod(
        first, [first]() { first->setObjectName(QStringLiteral("renamed")); });
    // A destroyed object keeps its entry, as it keeps counting in the load.
    QVERIFY(deleteInTheirThreads({ second }));
    QCOMPARE(attachedOf(pool.snapshot(1000)),
        QList<QStringList>({ { "QTimer/tick", "QObject/second" }, { "QObject/first" } }));
    // A detach from this thread only forgets the object; its name goes with its entry.
    pool.detachFromThread(tick);
    QCOMPARE(attachedOf(pool.snapshot(1000)),
        QList<QStringList>({ { "QObject/second" }, { "QObject/first" } }));
    QCOMPARE(pool.snapshot(1000).workers.at(0).load, pool.threads().at(0)->load());
    QVERIFY(deleteInTheirThreads({ tick, first }));
}

// Pools are created, filled and destroyed in this thread while another one takes snapshots of
// every known pool; each snapshot shows whole pools, and the last accounts for every object.
void tst_PoolRegistry::snapshotsWhilePoolsComeAndGo()
{
    constexpr int rounds = 40, objectsPerRound = 6;
    LogCapture capture(ko::Log::Warning);
    std::atomic<bool> done { false };
    std::atomic<int> snapshots { 0 };
    QString failure;
    std::thread reader([&]() {
        while (!done) {
            for (const ko::SignalPoolSnapshot &pool : PoolRegistry::signalPools(1000)) {
                for (const ko::SignalWorkerSnapshot &worker : pool.workers) {
                    if (worker.load != worker.attached.size() && failure.isEmpty())
                        failure = worker.name;
                }
            }
            PoolRegistry::jobPools(1000);
            ++snapshots;
        }
    });
    komQtSignalThreadPool keeper(QStringLiteral("Keeper"), 3);
    QVERIFY(PoolRegistry::add(&keeper));
    QList<QObject *> kept;
    for (int round = 0; round < rounds; ++round) {
        komQtSignalThreadPool pool(QStringLiteral("Round"), 2);
        TestPool jobs(QStringLiteral("Jobs"), 2);
        QVERIFY(PoolRegistry::add(&pool));
        QVERIFY(PoolRegistry::add(&jobs));
        QList<QObject *> objects;
        for (int i = 0; i < objectsPerRound; ++i) {
            objects << named(new QObject, "object");
            pool.attachToThread(objects.last());
        }
        kept << named(new QObject, "kept");
        keeper.attachToThread(kept.last());
        int id;
        scheduleJob(jobs, id);
        QVERIFY(jobs.waitForFinished(id, 10000));
        QVERIFY(jobs.retire());
        QVERIFY(deleteInTheirThreads(objects));
    }
    QVERIFY(spinUntil([&]() { return snapshots > rounds; }));
    done = true;
    reader.join();
    QCOMPARE(failure, QString());
    int total = 0;
    for (const ko::SignalWorkerSnapshot &worker : keeper.snapshot(1000).workers) {
        total += int(std::count_if(worker.attached.cbegin(), worker.attached.cend(),
            [](const ko::AttachedObjectSnapshot &object) {
                return object.objectName == QLatin1String("kept");
            }));
    }
    QCOMPARE(total, rounds);
    QVERIFY(deleteInTheirThreads(kept));
}

QTEST_GUILESS_MAIN(tst_PoolRegistry)
#include "tst_PoolRegistry.moc"
