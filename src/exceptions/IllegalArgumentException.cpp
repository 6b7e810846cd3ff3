// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/IllegalArgumentException.h"

#include <QTextStream>

namespace ko
{

IllegalArgumentException::IllegalArgumentException(
    const QString &argument, const QString &message, const ExceptionQt *cause)
    : ExceptionQt(message, cause)
    , mArgument(argument)
{ }

IllegalArgumentException &IllegalArgumentException::operator=(const IllegalArgumentException &other)
{
    if (chainHolds(other))
        return *this = IllegalArgumentException(other);
    ExceptionQt::operator=(other);
    mArgument = other.mArgument;
    return *this;
}

IllegalArgumentException::~IllegalArgumentException() = default;

IllegalArgumentException *IllegalArgumentException::clone() const
{
    return new IllegalArgumentException(*this);
}

void IllegalArgumentException::printMessage(QTextStream &s) const
{
    if (!mArgument.isEmpty()) {
        s << mArgument;
        if (!mMessage.isEmpty())
            s << QLatin1String(", ");
    }
    if (!mMessage.isEmpty())
        s << mMessage;
}

} // namespace ko
