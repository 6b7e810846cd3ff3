// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_ILLEGALARGUMENTEXCEPTION_H
#define KO_ILLEGALARGUMENTEXCEPTION_H

#include "exceptions/ExceptionQt.h"

namespace ko
{

/** An argument or variable holds a value the callee cannot accept. */
class COREQT_EXPORT IllegalArgumentException : public ExceptionQt
{
public:
    /** Creates the exception for the argument named @p argument, with @p message and a copy of @p
     * cause. */
    IllegalArgumentException(
        const QString &argument, const QString &message, const ExceptionQt *cause = nullptr);
    /** Copies every field and the whole cause chain. */
    IllegalArgumentException(const IllegalArgumentException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    IllegalArgumentException &operator=(const IllegalArgumentException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~IllegalArgumentException() override;
    /** A new heap copy; the caller owns it. */
    IllegalArgumentException *clone() const override;

    /** Writes the argument name when there is one, then ", " when both are present, then the
     * message. */
    void printMessage(QTextStream &s) const override;

protected:
    /** The name of the offending argument or variable; subclasses render it. */
    QString mArgument;
};

} // namespace ko

#endif // KO_ILLEGALARGUMENTEXCEPTION_H
