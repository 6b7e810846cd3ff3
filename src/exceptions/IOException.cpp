// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/IOException.h"

#include "exceptions/ErrorNames_p.h"

namespace ko
{

namespace
{

const detail::ErrorName sStatusNames[] = {
    { QTextStream::Ok, QT_TRANSLATE_NOOP("QTextStream", "Ok") },
    { QTextStream::ReadPastEnd, QT_TRANSLATE_NOOP("QTextStream", "ReadPastEnd") },
    { QTextStream::ReadCorruptData, QT_TRANSLATE_NOOP("QTextStream", "ReadCorruptData") },
};

const char *const sUnknownStatus = QT_TRANSLATE_NOOP("QTextStream", "UnknownError");

} // namespace

IOException::IOException(const QString &message, const ExceptionQt *cause)
    : ExceptionQt(message, cause)
{ }

IOException::IOException(QTextStream::Status status)
    : ExceptionQt(
        detail::translatedErrorName("QTextStream", sStatusNames, int(status), sUnknownStatus))
{ }

IOException::~IOException() = default;

IOException *IOException::clone() const
{
    return new IOException(*this);
}

} // namespace ko
