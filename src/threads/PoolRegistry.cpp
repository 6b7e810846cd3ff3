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
    QVector<komQtThreadPool*> jobPools;
    QVector<komQtSignalThreadPool*> signalPools;
};

// Never destroyed: a process-wide pool may be deleted after the static objects are gone.
Registry& registry()
{
    static Registry* const instance = new Registry;
    return *instance;
}

template <class Pool> bool addTo(QVector<Pool*>& pools, Pool* pool)
{
    const auto taken
        = [pool](const Pool* known) { return known == pool || known->objectName() == pool->objectName(); };
    if (std::any_of(pools.cbegin(), pools.cend(), taken))
        return false;
    pools.append(pool);
    return true;
}

// Compared as QObject pointers: @p pool may be a pool of the other kind, or one being destroyed.
template <class Pool> void removeFrom(QVector<Pool*>& pools, const QObject* pool)
{
    pools.erase(
        std::remove_if(pools.begin(), pools.end(), [pool](const QObject* known) { return known == pool; }),
        pools.end());
}

template <class Snapshot, class Pool>
QVector<Snapshot> snapshotsOf(const QVector<Pool*>& pools, int lockTimeoutMs)
{
    QVector<Snapshot> snapshots;
    snapshots.reserve(pools.size());
    for (const Pool* pool : pools)
        snapshots.append(pool->snapshot(lockTimeoutMs));
    return snapshots;
}

} // namespace

bool PoolRegistry::add(komQtThreadPool* pool)
{
    if (!pool)
        return false;
    Registry& known = registry();
    QMutexLocker lock(&known.mutex);
    return addTo(known.jobPools, pool);
}

bool PoolRegistry::add(komQtSignalThreadPool* pool)
{
    if (!pool)
        return false;
    Registry& known = registry();
    QMutexLocker lock(&known.mutex);
    return addTo(known.signalPools, pool);
}

void PoolRegistry::remove(const QObject* pool)
{
    Registry& known = registry();
    QMutexLocker lock(&known.mutex);
    removeFrom(known.jobPools, pool);
    removeFrom(known.signalPools, pool);
}

QVector<JobPoolSnapshot> PoolRegistry::jobPools(int lockTimeoutMs)
{
    Registry& known = registry();
    QMutexLocker lock(&known.mutex);
    return snapshotsOf<JobPoolSnapshot>(known.jobPools, lockTimeoutMs);
}

QVector<SignalPoolSnapshot> PoolRegistry::signalPools(int lockTimeoutMs)
{
    Registry& known = registry();
    QMutexLocker lock(&known.mutex);
    return snapshotsOf<SignalPoolSnapshot>(known.signalPools, lockTimeoutMs);
}

} // namespace ko
