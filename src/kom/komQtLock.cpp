// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
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
