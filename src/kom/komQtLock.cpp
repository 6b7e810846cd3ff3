#include "kom/komQtLock.h"

komQtLock::komQtLock(ko::RecursionModeMutex::RecursionMode mode)
    : ko::RecursionModeMutex(mode)
{ }

komQtLock::~komQtLock() = default;

void komQtLock::acquire()
{
    lock();
}

void komQtLock::release()
{
    unlock();
}
