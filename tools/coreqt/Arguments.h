// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_ARGUMENTS_H
#define COREQT_TOOL_ARGUMENTS_H

#include <QString>

namespace tool
{

/**
 * Rejects the input @p input (described as @p what, such as "mask") for @p reason: throws a
 * ko::IllegalArgumentException whose message names both.
 */
[[noreturn]] void badInput(const QString &what, const QString &input, const QString &reason);

/** Rejects the way the arguments were combined: throws a ko::IllegalArgumentException saying @p
 * reason. */
[[noreturn]] void badUsage(const QString &reason);

/** True when @p text starts like a negative number ("-1", "-.5"): an argument, not an option. */
bool isNegativeNumber(const QString &text);
/** A 32-bit number written in decimal or in hexadecimal with the prefix "0x". */
quint32 parseUInt32(const QString &what, const QString &text);
/** A decimal integer of at least @p minimum. */
int parseInteger(const QString &what, const QString &text, int minimum);
/** A finite number in the C locale's notation ("12.5", "-1e3"). */
double parseNumber(const QString &what, const QString &text);

} // namespace tool

#endif // COREQT_TOOL_ARGUMENTS_H
