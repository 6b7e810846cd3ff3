// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// The compatibility helpers of the Qt 5 build that are not inline (see QtCompat_p.h).
#include "compat/QtCompat_p.h"

#include "threads/JobActivity_p.h"

#include <QDateTime>

namespace ko::compat
{

namespace
{

constexpr int msecsPerDay = 86400000;

// The local time of day, as QTime::currentTime() gives it, for a job timer started before every
// job. QTime::currentTime() converts to local time on each call, and the C library then checks
// the time zone file each time (a file system call unless TZ is set), which would cost more than
// the job pool's own work per job. The offset from UTC is looked up at most once a second per
// thread instead; a time zone or daylight saving change is seen within that second.
// @p monotonicNs, when given, receives the same instant on the monotonic clock of the job's running
// time, from an offset between the two clocks that is looked up with the other: the job's start
// costs no clock read of its own.
QTime currentLocalTime(qint64 *monotonicNs = nullptr)
{
    thread_local qint64 offsetValidFrom = 0;
    thread_local qint64 offsetValidUntil = 0;
    thread_local qint64 offsetMsecs = 0;
    thread_local qint64 monotonicOffsetNs = 0;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now < offsetValidFrom || now >= offsetValidUntil) {
        offsetMsecs = qint64(QDateTime::fromMSecsSinceEpoch(now).offsetFromUtc()) * 1000;
        monotonicOffsetNs = monotonicNsecs() - now * 1000000;
        offsetValidFrom = now;
        offsetValidUntil = now + 1000;
    }
    if (monotonicNs)
        *monotonicNs = now * 1000000 + monotonicOffsetNs;
    return QTime::fromMSecsSinceStartOfDay(
        int(((now + offsetMsecs) % msecsPerDay + msecsPerDay) % msecsPerDay));
}

} // namespace

qint64 startJobTimer(JobTimer &timer)
{
    qint64 startNs = 0;
    timer = currentLocalTime(&startNs); // as QTime::start() would set it
    return startNs;
}

int jobTimerElapsed(const JobTimer &timer)
{
    // What QTime::elapsed() gives (a start later in the day than now counts as one on the day
    // before), read against currentLocalTime().
    const int msecs = timer.msecsTo(currentLocalTime());
    return msecs < 0 ? msecs + msecsPerDay : msecs;
}

} // namespace ko::compat
