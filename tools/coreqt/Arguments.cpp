// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "Arguments.h"

#include "exceptions/IllegalArgumentException.h"

#include <QRegularExpression>

#include <cmath>
#include <limits>

namespace tool
{

void badInput(const QString &what, const QString &input, const QString &reason)
{
    throw ko::IllegalArgumentException(QStringLiteral("%1 '%2'").arg(what, input), reason);
}

void badUsage(const QString &reason)
{
    throw ko::IllegalArgumentException(QString(), reason);
}

bool isNegativeNumber(const QString &text)
{
    static const QRegularExpression pattern(QStringLiteral("^-\\.?[0-9]"));
    return pattern.match(text).hasMatch();
}

quint32 parseUInt32(const QString &what, const QString &text)
{
    static const QRegularExpression hex(QStringLiteral("^0[xX]([0-9A-Fa-f]+)$"));
    static const QRegularExpression decimal(QStringLiteral("^[0-9]+$"));
    bool ok = false;
    qulonglong value = 0;
    const QRegularExpressionMatch match = hex.match(text);
    // A leading 0 does not mean octal here: camera logs write masks in decimal or 0x-hex only.
    if (match.hasMatch())
        value = match.captured(1).toULongLong(&ok, 16);
    else if (decimal.match(text).hasMatch())
        value = text.toULongLong(&ok, 10);
    else if (isNegativeNumber(text))
        badInput(what, text, QStringLiteral("negative; write a number from 0 to 0xFFFFFFFF"));
    else
        badInput(what, text,
            QStringLiteral("not a number; write it in decimal or as 0x-prefixed hexadecimal"));
    if (!ok || value > 0xFFFFFFFFull)
        badInput(what, text, QStringLiteral("out of range: larger than 32 bits (0xFFFFFFFF)"));
    return quint32(value);
}

int parseInteger(const QString &what, const QString &text, int minimum)
{
    static const QRegularExpression integer(QStringLiteral("^[-+]?[0-9]+$"));
    if (!integer.match(text).hasMatch())
        badInput(what, text, QStringLiteral("not a decimal integer"));
    bool ok = false;
    const int value = text.toInt(&ok, 10);
    if (ok && value >= minimum)
        return value;
    if (!ok && !text.startsWith(QLatin1Char('-')))
        badInput(what, text,
            QStringLiteral("out of range: at most %1").arg(std::numeric_limits<int>::max()));
    badInput(what, text, QStringLiteral("must be at least %1").arg(minimum));
}

double parseNumber(const QString &what, const QString &text)
{
    static const QRegularExpression number(
        QStringLiteral("^[-+]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][-+]?[0-9]+)?$"));
    if (!number.match(text).hasMatch())
        badInput(what, text, QStringLiteral("not a finite number"));
    bool ok = false;
    const double value = text.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        badInput(what, text, QStringLiteral("out of range for a double"));
    return value;
}

} // namespace tool
