// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/OutOfMemoryException.h"

#include <QTextStream>

namespace ko
{

OutOfMemoryException::OutOfMemoryException(int size, const QString &message)
    : RuntimeException(message)
    , mSize(size)
{ }

OutOfMemoryException &OutOfMemoryException::operator=(const OutOfMemoryException &other)
{
    if (chainHolds(other))
        return *this = OutOfMemoryException(other);
    RuntimeException::operator=(other);
    mSize = other.mSize;
    return *this;
}

OutOfMemoryException::~OutOfMemoryException() = default;

OutOfMemoryException *OutOfMemoryException::clone() const
{
    return new OutOfMemoryException(*this);
}

const char *OutOfMemoryException::what() const noexcept
{
    return Exception::what();
}

void OutOfMemoryException::printMessage(QTextStream &s) const
{
    // ". " is written even when no message follows; callers compare these texts.
    if (mSize > 0)
        s << QLatin1String("failed to allocate ") << mSize << QLatin1String(" bytes. ");
    s << mMessage;
}

} // namespace ko
