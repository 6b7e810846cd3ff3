// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/ConfigItemNotRetrievedException.h"

namespace ko
{

ConfigItemNotRetrievedException::ConfigItemNotRetrievedException(const QString &message)
    : RuntimeException(message)
{ }

// The object is neither stored nor printed: both forms must print the same.
ConfigItemNotRetrievedException::ConfigItemNotRetrievedException(
    const QString &message, komObject *)
    : RuntimeException(message)
{ }

ConfigItemNotRetrievedException::~ConfigItemNotRetrievedException() = default;

ConfigItemNotRetrievedException *ConfigItemNotRetrievedException::clone() const
{
    return new ConfigItemNotRetrievedException(*this);
}

} // namespace ko
