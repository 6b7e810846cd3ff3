// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/UnexpectedTypeException.h"

#include <QTextStream>

namespace ko
{

UnexpectedTypeException::UnexpectedTypeException(const QString &argument,
    const QString &unexpectedType, const QString &expectedType, const QString &message,
    const ExceptionQt *cause)
    : IllegalArgumentException(argument, message, cause)
    , mUnexpectedType(unexpectedType)
    , mExpectedType(expectedType)
{ }

UnexpectedTypeException &UnexpectedTypeException::operator=(const UnexpectedTypeException &other)
{
    if (chainHolds(other))
        return *this = UnexpectedTypeException(other);
    IllegalArgumentException::operator=(other);
    mUnexpectedType = other.mUnexpectedType;
    mExpectedType = other.mExpectedType;
    return *this;
}

UnexpectedTypeException::~UnexpectedTypeException() = default;

UnexpectedTypeException *UnexpectedTypeException::clone() const
{
    return new UnexpectedTypeException(*this);
}

const QString &UnexpectedTypeException::unexpectedType() const
{
    return mUnexpectedType;
}

const QString &UnexpectedTypeException::expectedType() const
{
    return mExpectedType;
}

// The argument name is stored but not printed, and the message follows a bare "."; both are
// kept because callers compare these texts.
void UnexpectedTypeException::printMessage(QTextStream &s) const
{
    if (!mUnexpectedType.isEmpty())
        s << mUnexpectedType << QLatin1String(" not allowed");
    if (!mExpectedType.isEmpty())
        s << QLatin1String(", expected ") << mExpectedType;
    if (!mMessage.isEmpty())
        s << QLatin1Char('.') << mMessage;
}

} // namespace ko
