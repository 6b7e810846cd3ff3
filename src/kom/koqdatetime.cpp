// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/koqdatetime.h"

#include "compat/QtCompat_p.h"

#include <QDateTime>

namespace ko
{

// All divisions truncate: nothing here rounds. Seconds go through QDateTime's 32-bit interface
// (setTime_t/fromTime_t/toTime_t), so a larger seconds count is cut to its low 32 bits.

QDateTime dateTime(unsigned long long t)
{
    QDateTime d;
    compat::setTime_t(d, static_cast<uint>(t / 1000000));
    return d;
}

QDateTime toQDateTime(unsigned long long t)
{
    const unsigned long long ms = t / 1000;
    const unsigned long long s = ms / 1000;
    const QDateTime d = compat::fromTime_t(static_cast<uint>(s));
    return d.addMSecs(static_cast<qint64>(ms - s * 1000));
}

QDateTime toQDateTime(unsigned long long t, Qt::TimeSpec spec)
{
    QDateTime d;
    d.setTimeSpec(spec);
    compat::setTime_t(d, static_cast<uint>(t / 1000 / 1000));
    // The millisecond remainder is deliberately not applied: this overload returns whole seconds
    // and callers rely on it; the overload without a spec keeps the milliseconds.
    return d;
}

unsigned long long frameTime(const QDateTime &dt)
{
    return static_cast<unsigned long long>(compat::toTime_t(dt)) * 1000000ULL;
}

unsigned long long fromQDateTime(const QDateTime &dt)
{
    return (static_cast<unsigned long long>(compat::toTime_t(dt)) * 1000 + dt.time().msec()) * 1000;
}

unsigned long long fromQDateTime(const QDate &date, const QTime &time)
{
    if (date.isValid()) {
        // Where clocks skip midnight the day starts later; elsewhere the start of day is midnight.
        return fromQDateTime(
            time.isValid() ? QDateTime(date, time, Qt::LocalTime) : date.startOfDay(Qt::LocalTime));
    }
    if (time.isValid()) {
        // A time of day without a date is a duration: microseconds since midnight.
        const unsigned long long seconds
            = (time.hour() * 60ULL + time.minute()) * 60 + time.second();
        return (seconds * 1000 + time.msec()) * 1000;
    }
    return 0;
}

} // namespace ko
