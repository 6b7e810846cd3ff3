// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/komQtConditionVariable.h"

#include "compat/QtCompat_p.h"
#include "kom/komQtLock.h"

komQtConditionVariable::komQtConditionVariable(komQtLock *lock)
    : mMutex(lock)
{ }

komQtConditionVariable::~komQtConditionVariable() = default;

bool komQtConditionVariable::wait()
{
    // The mutex is always a komQtLock's.
    return ko::compat::wait(*this, static_cast<ko::RecursionModeMutex *>(mMutex));
}

void komQtConditionVariable::signal()
{
    wakeOne();
}

void komQtConditionVariable::signalAll()
{
    wakeAll();
}
