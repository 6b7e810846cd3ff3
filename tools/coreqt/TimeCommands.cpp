// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "TimeCommands.h"

#include "Arguments.h"
#include "Output.h"

#include "kom/koqdatetime.h"

#include <QCommandLineParser>
#include <QDateTime>
#include <QRegularExpression>

namespace tool
{

namespace
{

// Frame times pass through QDateTime's 32-bit seconds: the last instant they convert is
// 2106-02-07T06:28:15.999999Z.
constexpr unsigned long long kLastFrameTime = 4294967295999999ull;
constexpr qint64 kLastMSecs = 4294967295999ll;

const QString kFromOption = QStringLiteral("from");

unsigned long long parseFrameTime(const QString &text)
{
    static const QRegularExpression digits(QStringLiteral("^[0-9]+$"));
    static const QRegularExpression negative(QStringLiteral("^-[0-9]+$"));
    if (negative.match(text).hasMatch())
        badInput(QStringLiteral("frame time"), text,
            QStringLiteral("out of range: before 1970-01-01T00:00:00Z, where frame times begin"));
    if (!digits.match(text).hasMatch())
        badInput(QStringLiteral("frame time"), text,
            QStringLiteral("not a frame time (decimal microseconds since 1970-01-01T00:00:00Z)"));
    bool ok = false;
    const unsigned long long frameTime = text.toULongLong(&ok);
    if (!ok || frameTime > kLastFrameTime)
        badInput(QStringLiteral("frame time"), text,
            QStringLiteral("out of range: after 2106-02-07T06:28:15Z, the last instant frame times "
                           "convert (%1)")
                .arg(kLastFrameTime));
    return frameTime;
}

QString isoWithOffset(const QDateTime &local)
{
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs);
}

int runTime(const Invocation &invocation)
{
    const bool from = invocation.isSet(kFromOption);
    if (from == !invocation.arguments.isEmpty())
        badUsage(from ? QStringLiteral("give either FRAMETIME or --from ISO-8601, not both")
                      : QStringLiteral("missing FRAMETIME or --from ISO-8601"));
    Report report(Report::Properties);
    addFrameTime(report,
        from ? frameTimeOf(invocation.value(kFromOption))
             : parseFrameTime(invocation.arguments.first()));
    report.print(invocation.format);
    return 0;
}

QList<QCommandLineOption> timeOptions()
{
    return { QCommandLineOption(kFromOption,
        QStringLiteral(
            "Converts an ISO 8601 date and time (local time unless it has Z or an offset) to a "
            "frame time."),
        QStringLiteral("ISO-8601")) };
}

} // namespace

void addFrameTime(Report &report, unsigned long long frameTime)
{
    const QDateTime local = ko::toQDateTime(frameTime);
    // Frame times up to kLastFrameTime are below 2^53, so a JSON number holds them exactly.
    report.set(QStringLiteral("frametime"), double(frameTime));
    report.set(QStringLiteral("utc"), local.toUTC().toString(Qt::ISODateWithMs));
    report.set(QStringLiteral("local"), isoWithOffset(local));
}

unsigned long long frameTimeOf(const QString &iso)
{
    const QDateTime dateTime = QDateTime::fromString(iso, Qt::ISODateWithMs);
    if (!dateTime.isValid())
        badInput(QStringLiteral("time"), iso,
            QStringLiteral("not an ISO 8601 date and time such as 2024-05-17T08:30:00.250Z"));
    const qint64 msecs = dateTime.toMSecsSinceEpoch();
    if (msecs < 0)
        badInput(QStringLiteral("time"), iso,
            QStringLiteral("before 1970-01-01T00:00:00Z, where frame times begin"));
    if (msecs > kLastMSecs)
        badInput(QStringLiteral("time"), iso,
            QStringLiteral("after 2106-02-07T06:28:15Z, the last instant frame times convert"));
    return ko::fromQDateTime(dateTime);
}

const Command kTimeCommand = { "time", "[FRAMETIME]",
    "Converts a frame time (microseconds since 1970-01-01T00:00:00Z) to UTC and local time, or "
    "with --from an ISO 8601 time to a frame time (millisecond precision).",
    0, 1, timeOptions, runTime, "coreqt time 946684800123000" };

} // namespace tool
