// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_POOLREGISTRY_H
#define KO_POOLREGISTRY_H

#include "coreqt_export.h"
#include "threads/PoolSnapshot.h"

#include <QVector>

class QObject;

namespace ko
{

class komQtSignalThreadPool;
class komQtThreadPool;

/**
 * The pools a live console shows: the process-wide pools once they exist, and the pools the
 * application adds. A pool stays known until its destructor forgets it; snapshots are taken
 * under the registry's lock, so a pool is never looked at while it is being destroyed.
 * Lock order: the registry's lock before any pool's lock.
 */
class COREQT_EXPORT PoolRegistry
{
public:
    /**
     * Makes @p pool known under its object name; false for a null pool, one known already, or
     * a name another known job pool has.
     */
    static bool add(komQtThreadPool *pool);
    /** As add(komQtThreadPool*), for a signal thread pool. */
    static bool add(komQtSignalThreadPool *pool);
    /** Forgets @p pool; both pools' destructors call it first. Unknown pools are ignored. */
    static void remove(const QObject *pool);

    /** A snapshot of every known job pool, in the order they became known; see
     * komQtThreadPool::snapshot(int). */
    static QVector<JobPoolSnapshot> jobPools(int lockTimeoutMs);
    /** A snapshot of every known signal thread pool, in the order they became known. */
    static QVector<SignalPoolSnapshot> signalPools(int lockTimeoutMs);
};

} // namespace ko

#endif // KO_POOLREGISTRY_H
