#ifndef KOMQTCONDITIONVARIABLE_H
#define KOMQTCONDITIONVARIABLE_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSynchronization.h"

#include <QWaitCondition>

class QMutex;
class komQtLock;

/** The middleware's condition variable over a QWaitCondition (its base), paired with a komQtLock. */
class COREQT_EXPORT komQtConditionVariable : public QWaitCondition,
                                             public komObject,
                                             public virtual komConditionVariableInterface
{
public:
    /** A condition variable paired with @p lock (not owned; null pairs it with nothing). */
    explicit komQtConditionVariable(komQtLock* lock);
    /** Destroys the condition variable. */
    ~komQtConditionVariable() override;

    /** Waits without time limit on the paired lock, which the caller holds; QWaitCondition::wait's result. */
    bool wait() override;
    /** Wakes one waiter. */
    void signal() override;
    /** Wakes all waiters. */
    void signalAll() override;

private:
    Q_DISABLE_COPY(komQtConditionVariable)

    QMutex* mMutex;
};

#endif // KOMQTCONDITIONVARIABLE_H
