// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/XmlException.h"

namespace ko
{

XmlException::XmlException(const QString &message, const ExceptionQt *cause)
    : ParseException(message, -1, -1, -1, -1, cause)
{ }

XmlException::XmlException(
    const QString &message, int lineNumber, int columnNumber, const ExceptionQt *cause)
    : ParseException(message, lineNumber, columnNumber, -1, -1, cause)
{ }

XmlException::~XmlException() = default;

XmlException *XmlException::clone() const
{
    return new XmlException(*this);
}

} // namespace ko
