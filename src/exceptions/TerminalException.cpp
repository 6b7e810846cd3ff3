// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/TerminalException.h"

namespace ko
{

TerminalException::TerminalException(const QString &message, const ExceptionQt *cause)
    : RuntimeException(message)
{
    setCause(cause);
}

TerminalException::~TerminalException() = default;

TerminalException *TerminalException::clone() const
{
    return new TerminalException(*this);
}

} // namespace ko
