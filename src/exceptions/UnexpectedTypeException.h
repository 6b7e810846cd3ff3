// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_UNEXPECTEDTYPEEXCEPTION_H
#define KO_UNEXPECTEDTYPEEXCEPTION_H

#include "exceptions/IllegalArgumentException.h"

namespace ko
{

/** A value had a type other than the one expected. */
class COREQT_EXPORT UnexpectedTypeException : public IllegalArgumentException
{
public:
    /** Creates the exception for @p argument of type @p unexpectedType where @p expectedType was
     * expected. */
    UnexpectedTypeException(const QString &argument, const QString &unexpectedType,
        const QString &expectedType, const QString &message, const ExceptionQt *cause = nullptr);
    /** Copies every field and the whole cause chain. */
    UnexpectedTypeException(const UnexpectedTypeException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    UnexpectedTypeException &operator=(const UnexpectedTypeException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~UnexpectedTypeException() override;
    /** A new heap copy; the caller owns it. */
    UnexpectedTypeException *clone() const override;

    /** The type that was found. */
    const QString &unexpectedType() const;
    /** The type that was expected. */
    const QString &expectedType() const;
    /**
     * Writes "<found> not allowed", ", expected <type>" and ".<message>" (no blank after the full
     * stop), each part only when known. Kept as it always was: the argument name is stored but
     * never printed.
     */
    void printMessage(QTextStream &s) const override;

private:
    QString mUnexpectedType;
    QString mExpectedType;
};

} // namespace ko

#endif // KO_UNEXPECTEDTYPEEXCEPTION_H
