#ifndef KOMQTTHREADSPAWNER_H
#define KOMQTTHREADSPAWNER_H

#include "coreqt_export.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komSmart.h"
#include "platform/kom/komSynchronization.h"

#include <QThread>

/**
 * The middleware's thread spawner over a QThread (its base): runs one runnable in a new thread.
 * Misuse is reported through kom::terminal; progress as status messages of type 40.
 */
class COREQT_EXPORT komQtThreadSpawner : public QThread,
                                         public komObject,
                                         public virtual komThreadSpawnerInterface
{
    Q_OBJECT

public:
    /** A spawner without runnable. */
    komQtThreadSpawner();
    /** Waits for a spawned thread that was not waited for, then releases the runnable. */
    ~komQtThreadSpawner() override;

    /** Installs the runnable; reports when one was already installed, and replaces it all the same. */
    void setRunnable(kom::smart<komRunnableInterface> runnable) override;
    /** Starts the thread with QThread::InheritPriority; reports a missing runnable and a second start. */
    void spawnThread() override;
    /** Waits without time limit for a spawned thread; reports a second call. */
    void waitUntilThreadHasTerminated() override;

protected:
    /** The thread body: runs the runnable between two status messages. */
    void run() override;

private:
    Q_DISABLE_COPY(komQtThreadSpawner)

    kom::smart<komRunnableInterface> mRunnable;
    bool mSpawned;
    bool mWaitedUpon;
};

#endif // KOMQTTHREADSPAWNER_H
