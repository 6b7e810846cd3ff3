// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/AbstractSettingsStorage.h"

namespace ko
{

AbstractSettingsStorage::AbstractSettingsStorage() = default;
AbstractSettingsStorage::~AbstractSettingsStorage() = default;

} // namespace ko
