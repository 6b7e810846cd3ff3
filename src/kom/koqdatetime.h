// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOQDATETIME_H
#define KO_KOQDATETIME_H

#include "coreqt_export.h"

#include <QtCore/qnamespace.h>

class QDate;
class QDateTime;
class QTime;

/**
 * @file
 * Conversions of frame times (unsigned microseconds since 1970-01-01 00:00:00 UTC) to and from
 * QDateTime. They pass through QDateTime's 32-bit seconds interface, so only instants up to
 * 2106-02-07 06:28:15 UTC are represented; a larger seconds count is cut to its low 32 bits.
 * Divisions truncate; nothing rounds.
 */
namespace ko
{

/** The frame time @p t in local time, whole seconds (microseconds below one second are dropped). */
COREQT_EXPORT QDateTime dateTime(unsigned long long t);
/** The frame time @p t in local time with millisecond precision. */
COREQT_EXPORT QDateTime toQDateTime(unsigned long long t);
/** The frame time @p t in the time spec @p spec, whole seconds: this overload keeps no
 * milliseconds. */
COREQT_EXPORT QDateTime toQDateTime(unsigned long long t, Qt::TimeSpec spec);
/**
 * The frame time of @p dt in whole seconds (its milliseconds are ignored); 4294967295000000 for an
 * invalid @p dt.
 */
COREQT_EXPORT unsigned long long frameTime(const QDateTime &dt);
/** The frame time of @p dt with millisecond precision: its last three decimal digits are always 0.
 */
COREQT_EXPORT unsigned long long fromQDateTime(const QDateTime &dt);
/**
 * The frame time of @p date at @p time in local time (the start of the day, midnight where it
 * exists, when
 * @p time is invalid); 0 when both are invalid. Kept as it always was: without a valid date the
 * result is a duration, the microseconds of @p time since midnight, not an instant.
 */
COREQT_EXPORT unsigned long long fromQDateTime(const QDate &date, const QTime &time);

} // namespace ko

#endif // KO_KOQDATETIME_H
