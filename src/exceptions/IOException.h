// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_IOEXCEPTION_H
#define KO_IOEXCEPTION_H

#include "exceptions/ExceptionQt.h"

#include <QTextStream>

namespace ko
{

/** An input or output operation failed. */
class COREQT_EXPORT IOException : public ExceptionQt
{
public:
    /** Creates the exception with @p message and a copy of @p cause (null for none). */
    explicit IOException(const QString &message, const ExceptionQt *cause = nullptr);
    /**
     * Creates the exception whose message is the name of the text stream @p status ("Ok",
     * "ReadPastEnd", "ReadCorruptData", "UnknownError" for any other value), translated in context
     * "QTextStream".
     */
    explicit IOException(QTextStream::Status status);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~IOException() override;
    /** A new heap copy; the caller owns it. */
    IOException *clone() const override;
};

} // namespace ko

#endif // KO_IOEXCEPTION_H
