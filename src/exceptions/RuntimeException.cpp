// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/RuntimeException.h"

namespace ko
{

RuntimeException::RuntimeException(const QString &message)
    : ExceptionQt(message)
{ }

RuntimeException::~RuntimeException() = default;

RuntimeException *RuntimeException::clone() const
{
    return new RuntimeException(*this);
}

} // namespace ko
