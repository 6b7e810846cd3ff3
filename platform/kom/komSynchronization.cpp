// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komSynchronization.h"

komRunnableInterface::~komRunnableInterface() = default;
komLockInterface::~komLockInterface() = default;
komConditionVariableInterface::~komConditionVariableInterface() = default;
komThreadSpawnerInterface::~komThreadSpawnerInterface() = default;
komSynchronizationFactoryInterface::~komSynchronizationFactoryInterface() = default;
