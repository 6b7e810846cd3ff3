// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/komQtSynchronizationFactory.h"

#include "kom/komQtConditionVariable.h"
#include "kom/komQtLock.h"
#include "kom/komQtThreadSpawner.h"
#include "platform/kom/komTerminal.h"

komQtSynchronizationFactory::komQtSynchronizationFactory() = default;

komQtSynchronizationFactory::~komQtSynchronizationFactory() = default;

komThreadSpawnerInterface *komQtSynchronizationFactory::newThreadSpawner()
{
    return new komQtThreadSpawner;
}

komLockInterface *komQtSynchronizationFactory::newLock()
{
    return new komQtLock(komQtLock::NonRecursive);
}

komConditionVariableInterface *komQtSynchronizationFactory::newConditionVariable(
    komLockInterface *lock)
{
    komQtLock *qtLock = dynamic_cast<komQtLock *>(lock);
    if (!qtLock) {
        kom::terminal("incompatible lock implementation!", this);
        return nullptr;
    }
    return new komQtConditionVariable(qtLock);
}
