// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOMQTSYNCHRONIZATIONFACTORY_H
#define KOMQTSYNCHRONIZATIONFACTORY_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSynchronization.h"

/** Hands the middleware Qt-backed locks, condition variables and thread spawners; the caller owns
 * them. */
class COREQT_EXPORT komQtSynchronizationFactory : public komObject,
                                                  public virtual komSynchronizationFactoryInterface
{
public:
    /** A factory; it keeps no state, so one may serve the whole process. */
    komQtSynchronizationFactory();
    /** Destroys the factory; what it made lives on. */
    ~komQtSynchronizationFactory() override;

    /** A new komQtThreadSpawner. */
    komThreadSpawnerInterface *newThreadSpawner() override;
    /** A new non-recursive komQtLock. */
    komLockInterface *newLock() override;
    /**
     * A komQtConditionVariable paired with @p lock, which must be a komQtLock; for a null lock or
     * one of another implementation it reports "incompatible lock implementation!" through
     * kom::terminal and returns null if that report returns.
     */
    komConditionVariableInterface *newConditionVariable(komLockInterface *lock) override;

private:
    komQtSynchronizationFactory(const komQtSynchronizationFactory &) = delete;
    komQtSynchronizationFactory &operator=(const komQtSynchronizationFactory &) = delete;
};

#endif // KOMQTSYNCHRONIZATIONFACTORY_H
