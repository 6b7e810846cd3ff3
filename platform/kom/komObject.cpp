// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komObject.h"

komInterface::komInterface() = default;
komInterface::~komInterface() = default;

komObject::komObject() = default;
komObject::~komObject() = default;
