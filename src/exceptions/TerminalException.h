// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_TERMINALEXCEPTION_H
#define KO_TERMINALEXCEPTION_H

#include "exceptions/RuntimeException.h"

namespace ko
{

/** A failure after which the program cannot go on. */
class COREQT_EXPORT TerminalException : public RuntimeException
{
public:
    /** Creates the exception with @p message and a copy of @p cause (null for none). */
    explicit TerminalException(const QString &message, const ExceptionQt *cause = nullptr);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~TerminalException() override;
    /** A new heap copy; the caller owns it. */
    TerminalException *clone() const override;
};

} // namespace ko

#endif // KO_TERMINALEXCEPTION_H
