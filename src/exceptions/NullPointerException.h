// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_NULLPOINTEREXCEPTION_H
#define KO_NULLPOINTEREXCEPTION_H

#include "exceptions/IllegalArgumentException.h"

namespace ko
{

/** A pointer was null or pointed at an invalid address. */
class COREQT_EXPORT NullPointerException : public IllegalArgumentException
{
public:
    /** Creates the exception for the pointer named @p argument holding @p invalidAddress (may be
     * null). */
    NullPointerException(const QString &argument, void *invalidAddress);
    /** Copies every field and the whole cause chain. */
    NullPointerException(const NullPointerException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    NullPointerException &operator=(const NullPointerException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~NullPointerException() override;
    /** A new heap copy; the caller owns it. */
    NullPointerException *clone() const override;

    /** The offending address, or null. */
    void *invalidAddress() const;
    /**
     * Writes the argument name, " invalid address " and the address in lower-case hexadecimal when
     * it is not null, then ", " and the message when there is one. Kept as it always was: only the
     * low 32 bits of the address are printed, read as a signed number, so an address with bit 31
     * set gets a
     * "-" and the two's-complement magnitude.
     */
    void printMessage(QTextStream &s) const override;

private:
    void *mInvalidAddress;
};

} // namespace ko

#endif // KO_NULLPOINTEREXCEPTION_H
