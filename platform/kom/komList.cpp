// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komList.h"

komStringList::komStringList() = default;
komStringList::~komStringList() = default;
