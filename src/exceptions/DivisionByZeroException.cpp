// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/DivisionByZeroException.h"

namespace ko
{

DivisionByZeroException::DivisionByZeroException(const QString &message)
    : RuntimeException(message)
{ }

DivisionByZeroException::~DivisionByZeroException() = default;

DivisionByZeroException *DivisionByZeroException::clone() const
{
    return new DivisionByZeroException(*this);
}

} // namespace ko
