// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/NullPointerException.h"

#include <QTextStream>

namespace ko
{

NullPointerException::NullPointerException(const QString &argument, void *invalidAddress)
    : IllegalArgumentException(argument, QString())
    , mInvalidAddress(invalidAddress)
{ }

NullPointerException &NullPointerException::operator=(const NullPointerException &other)
{
    if (chainHolds(other))
        return *this = NullPointerException(other);
    IllegalArgumentException::operator=(other);
    mInvalidAddress = other.mInvalidAddress;
    return *this;
}

NullPointerException::~NullPointerException() = default;

NullPointerException *NullPointerException::clone() const
{
    return new NullPointerException(*this);
}

void *NullPointerException::invalidAddress() const
{
    return mInvalidAddress;
}

void NullPointerException::printMessage(QTextStream &s) const
{
    if (!mArgument.isEmpty())
        s << mArgument;
    if (mInvalidAddress) {
        // The address is printed as a signed 32-bit value: its low 32 bits, with a "-" and the
        // magnitude when bit 31 is set. Readers of existing logs rely on this form.
        const qint64 address = qint32(quint32(reinterpret_cast<quintptr>(mInvalidAddress)));
        s << QLatin1String(" invalid address ");
        if (address < 0)
            s << QLatin1Char('-');
        s << QString::number(quint64(address < 0 ? -address : address), 16);
    }
    if (!mMessage.isEmpty())
        s << QLatin1String(", ") << mMessage;
}

} // namespace ko
