// The compatibility helpers of the Qt 5 build that are not inline (see QtCompat_p.h).
#include "compat/QtCompat_p.h"

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
QTime currentLocalTime()
{
    thread_local qint64 offsetValidFrom = 0;
    thread_local qint64 offsetValidUntil = 0;
    thread_local qint64 offsetMsecs = 0;
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (now < offsetValidFrom || now >= offsetValidUntil) {
        offsetMsecs = qint64(QDateTime::fromMSecsSinceEpoch(now).offsetFromUtc()) * 1000;
        offsetValidFrom = now;
        offsetValidUntil = now + 1000;
    }
    return QTime::fromMSecsSinceStartOfDay(
        int(((now + offsetMsecs) % msecsPerDay + msecsPerDay) % msecsPerDay));
}

} // namespace

void startJobTimer(JobTimer& timer)
{
    timer = currentLocalTime(); // as QTime::start() would set it
}

int jobTimerElapsed(const JobTimer& timer)
{
    // What QTime::elapsed() gives (a start later in the day than now counts as one on the day
    // before), read against currentLocalTime().
    const int msecs = timer.msecsTo(currentLocalTime());
    return msecs < 0 ? msecs + msecsPerDay : msecs;
}

} // namespace ko::compat
