// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOMQTLOCK_H
#define KOMQTLOCK_H

#include "compat/QtCompat.h"
#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSynchronization.h"

/**
 * The middleware's lock over a QMutex (its base: QMutex itself on Qt 5, ko::RecursionModeMutex on
 * Qt 6); the factory makes non-recursive ones.
 */
class COREQT_EXPORT komQtLock : public ko::RecursionModeMutex,
                                public komObject,
                                public virtual komLockInterface
{
public:
    /** A lock whose mutex has the recursion @p mode (komQtLock::Recursive or
     * komQtLock::NonRecursive). */
    explicit komQtLock(
        ko::RecursionModeMutex::RecursionMode mode = ko::RecursionModeMutex::NonRecursive);
    /** Destroys the lock; it must not be held. */
    ~komQtLock() override;

    /** Locks the mutex. */
    void acquire() override;
    /** Unlocks the mutex. */
    void release() override;

private:
    Q_DISABLE_COPY(komQtLock)
};

#endif // KOMQTLOCK_H
