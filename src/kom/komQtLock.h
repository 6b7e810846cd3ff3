#ifndef KOMQTLOCK_H
#define KOMQTLOCK_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSynchronization.h"

#include <QMutex>

/** The middleware's lock over a QMutex (its base); the factory makes non-recursive ones. */
class COREQT_EXPORT komQtLock : public QMutex, public komObject, public virtual komLockInterface
{
public:
    /** A lock whose mutex has the recursion @p mode. */
    explicit komQtLock(QMutex::RecursionMode mode = QMutex::NonRecursive);
    /** Destroys the lock; it must not be held. */
    ~komQtLock() override;

    /** QMutex::lock(). */
    void acquire() override;
    /** QMutex::unlock(). */
    void release() override;

private:
    Q_DISABLE_COPY(komQtLock)
};

#endif // KOMQTLOCK_H
