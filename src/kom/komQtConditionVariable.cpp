#include "kom/komQtConditionVariable.h"

#include "kom/komQtLock.h"

komQtConditionVariable::komQtConditionVariable(komQtLock* lock)
    : mMutex(lock)
{
}

komQtConditionVariable::~komQtConditionVariable() = default;

bool komQtConditionVariable::wait()
{
    return QWaitCondition::wait(mMutex);
}

void komQtConditionVariable::signal()
{
    wakeOne();
}

void komQtConditionVariable::signalAll()
{
    wakeAll();
}
