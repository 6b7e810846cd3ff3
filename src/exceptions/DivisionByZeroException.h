// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_DIVISIONBYZEROEXCEPTION_H
#define KO_DIVISIONBYZEROEXCEPTION_H

#include "exceptions/RuntimeException.h"

namespace ko
{

/** A division by zero was attempted. */
class COREQT_EXPORT DivisionByZeroException : public RuntimeException
{
public:
    /** Creates the exception with @p message and no cause. */
    explicit DivisionByZeroException(const QString &message);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~DivisionByZeroException() override;
    /** A new heap copy; the caller owns it. */
    DivisionByZeroException *clone() const override;
};

} // namespace ko

#endif // KO_DIVISIONBYZEROEXCEPTION_H
