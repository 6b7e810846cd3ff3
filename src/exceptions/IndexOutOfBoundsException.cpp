// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/IndexOutOfBoundsException.h"

#include <QTextStream>

namespace ko
{

IndexOutOfBoundsException::IndexOutOfBoundsException(
    const QString &argument, int invalidIndex, int minIndex, int maxIndex)
    : IllegalArgumentException(argument, QString())
    , mInvalidIndex(invalidIndex)
    , mMinIndex(minIndex)
    , mMaxIndex(maxIndex)
{ }

IndexOutOfBoundsException &IndexOutOfBoundsException::operator=(
    const IndexOutOfBoundsException &other)
{
    if (chainHolds(other))
        return *this = IndexOutOfBoundsException(other);
    IllegalArgumentException::operator=(other);
    mInvalidIndex = other.mInvalidIndex;
    mMinIndex = other.mMinIndex;
    mMaxIndex = other.mMaxIndex;
    return *this;
}

IndexOutOfBoundsException::~IndexOutOfBoundsException() = default;

IndexOutOfBoundsException *IndexOutOfBoundsException::clone() const
{
    return new IndexOutOfBoundsException(*this);
}

int IndexOutOfBoundsException::invalidIndex() const
{
    return mInvalidIndex;
}

int IndexOutOfBoundsException::minIndex() const
{
    return mMinIndex;
}

int IndexOutOfBoundsException::maxIndex() const
{
    return mMaxIndex;
}

void IndexOutOfBoundsException::printMessage(QTextStream &s) const
{
    s << mArgument << QLatin1Char('[') << mInvalidIndex << QLatin1Char(']');
    if (mMaxIndex > mMinIndex)
        s << QLatin1String("; allowed range is ") << mMinIndex << QLatin1String(" to ") << mMaxIndex
          << QLatin1String(", exclusive");
    if (!mMessage.isEmpty())
        s << QLatin1String(", ") << mMessage;
}

} // namespace ko
