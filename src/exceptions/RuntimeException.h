// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_RUNTIMEEXCEPTION_H
#define KO_RUNTIMEEXCEPTION_H

#include "exceptions/ExceptionQt.h"

namespace ko
{

/** A failure found while the program runs that no other class of the family describes. */
class COREQT_EXPORT RuntimeException : public ExceptionQt
{
public:
    /** Creates the exception with @p message and no cause. */
    explicit RuntimeException(const QString &message);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~RuntimeException() override;
    /** A new heap copy; the caller owns it. */
    RuntimeException *clone() const override;
};

} // namespace ko

#endif // KO_RUNTIMEEXCEPTION_H
