// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_XMLEXCEPTION_H
#define KO_XMLEXCEPTION_H

#include "exceptions/ParseException.h"

namespace ko
{

/** An error found while reading an XML text. */
class COREQT_EXPORT XmlException : public ParseException
{
public:
    /** Creates the exception with no known location. */
    explicit XmlException(const QString &message, const ExceptionQt *cause = nullptr);
    /** Creates the exception at @p lineNumber and @p columnNumber, with no known end. */
    XmlException(const QString &message, int lineNumber, int columnNumber,
        const ExceptionQt *cause = nullptr);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~XmlException() override;
    /** A new heap copy; the caller owns it. */
    XmlException *clone() const override;
};

} // namespace ko

#endif // KO_XMLEXCEPTION_H
