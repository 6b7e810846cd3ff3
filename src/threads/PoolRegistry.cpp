// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/PoolRegistry.h"

#include "threads/komQtSignalThreadPool.h"
#include "threads/komQtThreadPool.h"

#include <QMutex>
#include <QMutexLocker>

#include <algorithm>

namespace ko
{

namespace
{

struct Registry
{
    QMutex mutex;
    QVector<komQtThreadPool *> jobPools;
    QVector<komQtSignalThreadPool *> signalPools;
};

// Never destroyed: a process-wide pool may be deleted after the static objects are gone.
Registry &registry()
{
    static Registry *const instance = new Registry;
    return *instance;
}

// Adds @p pool to the list @p pools of the registry, unless it, or a pool of its name, is there.
template <class Pool> bool addTo(QVector<Pool *> Registry::*pools, Pool *pool)
{
    if (!pool)
        return false;
    Registry &known = registry();
    QMutexLocker lock(&known.mutex);
    QVector<Pool *> &list = known.*pools;
    const auto taken = [pool](const Pool *other) {
        return other == pool || other->objectName() == pool->objectName();
    };
    if (std::any_of(list.cbegin(), list.cend(), taken))
        return false;
    list.append(pool);
    return true;
}

// Compared as QObject pointers: @p pool may be a pool of the other kind, or one being destroyed.
template <class Pool> void removeFrom(QVector<Pool *> &pools, const QObject *pool)
{
    pools.erase(std::remove_if(pools.begin(), pools.end(),
                    [pool](const QObject *known) { return known == pool; }),
        pools.end());
}

// A snapshot of each pool of the list @p pools, under the registry's lock.
template <class Snapshot, class Pool>
QVector<Snapshot> snapshotsOf(QVector<Pool *> Registry::*pools, int lockTimeoutMs)
{
    Registry &known = registry();
    QMutexLocker lock(&known.mutex);
    QVector<Snapshot> snapshots;
    snapshots.reserve((known.*pools).size());
    for (const Pool *pool : qAsConst(known.*pools))
        snapshots.append(pool->snapshot(lockTimeoutMs));
    return snapshots;
}

} // namespace

bool PoolRegistry::add(komQtThreadPool *pool)
{
    return addTo(&Registry::jobPools, pool);
}

bool PoolRegistry::add(komQtSignalThreadPool *pool)
{
    return addTo(&Registry::signalPools, pool);
}

void PoolRegistry::remove(const QObject *pool)
{
    Registry &known = registry();
    QMutexLocker lock(&known.mutex);
    removeFrom(known.jobPools, pool);
    removeFrom(known.signalPools, pool);
}

QVector<JobPoolSnapshot> PoolRegistry::jobPools(int lockTimeoutMs)
{
    return snapshotsOf<JobPoolSnapshot>(&Registry::jobPools, lockTimeoutMs);
}

QVector<SignalPoolSnapshot> PoolRegistry::signalPools(int lockTimeoutMs)
{
    return snapshotsOf<SignalPoolSnapshot>(&Registry::signalPools, lockTimeoutMs);
}

} // namespace ko
