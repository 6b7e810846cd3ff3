// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOMQTCONDITIONVARIABLE_H
#define KOMQTCONDITIONVARIABLE_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSynchronization.h"

#include <QWaitCondition>

class QMutex;
class komQtLock;

/** The middleware's condition variable over a QWaitCondition (its base), paired with a komQtLock.
 */
class COREQT_EXPORT komQtConditionVariable : public QWaitCondition,
                                             public komObject,
                                             public virtual komConditionVariableInterface
{
public:
    /**
     * A condition variable paired with @p lock (not owned, and to outlive it); paired with nothing,
     * for a null lock, wait() fails at once.
     */
    explicit komQtConditionVariable(komQtLock *lock);
    /** Destroys the condition variable; no thread may be waiting on it. */
    ~komQtConditionVariable() override;

    /**
     * Waits without time limit on the paired lock, which the caller holds; QWaitCondition::wait's
     * result. Qt does not wait on a recursive mutex: with a recursive lock this returns false at
     * once, after Qt's warning.
     */
    bool wait() override;
    /** Wakes one waiter. */
    void signal() override;
    /** Wakes all waiters. */
    void signalAll() override;

private:
    Q_DISABLE_COPY(komQtConditionVariable)

    QMutex *mMutex;
};

#endif // KOMQTCONDITIONVARIABLE_H
