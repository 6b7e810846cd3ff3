#include "kom/komQtLock.h"

komQtLock::komQtLock(QMutex::RecursionMode mode)
    : QMutex(mode)
{
}

komQtLock::~komQtLock() = default;

void komQtLock::acquire()
{
    QMutex::lock();
}

void komQtLock::release()
{
    QMutex::unlock();
}
