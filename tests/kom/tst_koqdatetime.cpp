// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/koqdatetime.h"

#include <QDateTime>
#include <QTimeZone>
#include <QtTest>

// Registered three times: with TZ=UTC, TZ=Europe/Berlin and TZ=America/Sao_Paulo (daylight saving,
// once starting at midnight) for the local-time paths.

namespace
{

const unsigned long long kSecond = 1000000ULL;
const unsigned long long kLastSecond = 4294967295ULL; // 2106-02-07 06:28:15 UTC
const QString kFormat = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");

QDateTime utc(
    int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int msec = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second, msec), Qt::UTC);
}

} // namespace

class tst_koqdatetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toDateTime_data();
    void toDateTime();
    void fromDateTime();
    void localTime_data();
    void localTime();
};

void tst_koqdatetime::toDateTime_data()
{
    QTest::addColumn<qulonglong>("frame");
    QTest::addColumn<QDateTime>("whole");
    QTest::addColumn<QDateTime>("precise");
    QTest::newRow("epoch") << 0ULL << utc(1970, 1, 1) << utc(1970, 1, 1);
    QTest::newRow("under two seconds")
        << 1999999ULL << utc(1970, 1, 1, 0, 0, 1) << utc(1970, 1, 1, 0, 0, 1, 999);
    QTest::newRow("millennium") << 946684800123456ULL << utc(2000, 1, 1)
                                << utc(2000, 1, 1, 0, 0, 0, 123);
    QTest::newRow("last second") << kLastSecond * kSecond + 999999 << utc(2106, 2, 7, 6, 28, 15)
                                 << utc(2106, 2, 7, 6, 28, 15, 999);
    QTest::newRow("cut to 32 bits")
        << (kLastSecond + 1) * kSecond + 5999 << utc(1970, 1, 1) << utc(1970, 1, 1, 0, 0, 0, 5);
}

void tst_koqdatetime::toDateTime()
{
    QFETCH(qulonglong, frame);
    QFETCH(QDateTime, whole);
    QFETCH(QDateTime, precise);
    QCOMPARE(ko::dateTime(frame), whole);
    QCOMPARE(ko::dateTime(frame).timeSpec(), Qt::LocalTime);
    QCOMPARE(ko::toQDateTime(frame), precise);
    QCOMPARE(ko::toQDateTime(frame).timeSpec(), Qt::LocalTime);
    // With a time spec: whole seconds, in that spec.
    const QDateTime inUtc = ko::toQDateTime(frame, Qt::UTC);
    QCOMPARE(inUtc.timeSpec(), Qt::UTC);
    QCOMPARE(inUtc.toString(kFormat), whole.toString(kFormat));
    QCOMPARE(ko::toQDateTime(frame, Qt::LocalTime), whole);
    QCOMPARE(ko::toQDateTime(frame, Qt::LocalTime).timeSpec(), Qt::LocalTime);
    // There and back: milliseconds survive the precise pair, whole seconds the others (below the
    // limit, frame truncated to milliseconds or seconds).
    const qulonglong ms = precise.toMSecsSinceEpoch() * 1000ULL,
                     s = whole.toSecsSinceEpoch() * kSecond;
    QCOMPARE(ko::fromQDateTime(ko::toQDateTime(frame)), ms);
    QCOMPARE(ko::frameTime(ko::dateTime(frame)), s);
    QCOMPARE(ko::fromQDateTime(inUtc), s);
}

void tst_koqdatetime::fromDateTime()
{
    const QDateTime millennium = utc(2000, 1, 1, 0, 0, 0, 123);
    QCOMPARE(ko::frameTime(millennium), 946684800000000ULL);
    QCOMPARE(ko::fromQDateTime(millennium), 946684800123000ULL);
    QCOMPARE(ko::fromQDateTime(millennium.toOffsetFromUtc(3600)), 946684800123000ULL);
    // The 32-bit seconds limit: later instants and invalid ones read as its last second.
    QCOMPARE(ko::frameTime(utc(2106, 2, 7, 6, 28, 16)), kLastSecond * kSecond);
    QCOMPARE(ko::fromQDateTime(utc(2106, 2, 7, 6, 28, 16)), kLastSecond * kSecond);
    QCOMPARE(ko::frameTime(QDateTime()), 4294967295000000ULL);
    // Without a valid date, a valid time is a duration since midnight.
    QCOMPARE(ko::fromQDateTime(QDate(), QTime(1, 2, 3, 4)), 3723004000ULL);
    QCOMPARE(ko::fromQDateTime(QDate(), QTime(23, 59, 59, 999)), 86399999000ULL);
    QCOMPARE(ko::fromQDateTime(QDate(), QTime()), 0ULL);
}

// Rows for the zone the process runs in (TZ): the wall clock time of a frame and the first instant
// of that local day, in seconds.
void tst_koqdatetime::localTime_data()
{
    QTest::addColumn<qulonglong>("frame");
    QTest::addColumn<QString>("wall");
    QTest::addColumn<qulonglong>("dayStart");

    struct Row
    {
        const char *zone;
        const char *name;
        qulonglong frame;
        const char *wall;
        qulonglong dayStart;
    };
    static const Row rows[] = {
        { "UTC", "winter", 1610712000250750ULL, "2021-01-15 12:00:00.250", 1610668800 },
        { "UTC", "late evening", 1626301800000999ULL, "2021-07-14 22:30:00.000", 1626220800 },
        { "Europe/Berlin", "winter", 1610712000250750ULL, "2021-01-15 13:00:00.250", 1610665200 },
        { "Europe/Berlin", "summer", 1626350400250750ULL, "2021-07-15 14:00:00.250", 1626300000 },
        { "Europe/Berlin", "before spring forward", 1616893199999000ULL, "2021-03-28 01:59:59.999",
            1616886000 },
        { "Europe/Berlin", "after spring forward", 1616893200000000ULL, "2021-03-28 03:00:00.000",
            1616886000 },
        { "Europe/Berlin", "next day locally", 1626301800000999ULL, "2021-07-15 00:30:00.000",
            1626300000 },
        // Clocks went from 23:59:59 straight to 01:00 on 2018-11-04: that day has no midnight.
        { "America/Sao_Paulo", "day without midnight", 1541300400000000ULL,
            "2018-11-04 01:00:00.000", 1541300400 },
        { "America/Sao_Paulo", "last instant before it", 1541300399999000ULL,
            "2018-11-03 23:59:59.999", 1541214000 },
        { "America/Sao_Paulo", "after the hour repeated", 1550372400000000ULL,
            "2019-02-17 00:00:00.000", 1550372400 },
        { "America/Sao_Paulo", "no daylight saving", 1626350400250750ULL, "2021-07-15 09:00:00.250",
            1626318000 },
    };
    const QByteArray zone = qgetenv("TZ");
    QVERIFY2(QTimeZone(zone).isValid(), "no time zone data for TZ (tzdata)");
    for (const Row &row : rows) {
        if (zone == row.zone)
            QTest::newRow(row.name) << row.frame << QString::fromLatin1(row.wall) << row.dayStart;
    }
}

void tst_koqdatetime::localTime()
{
    QFETCH(qulonglong, frame);
    QFETCH(QString, wall);
    QFETCH(qulonglong, dayStart);

    const QString wholeWall = wall.left(20) + QStringLiteral("000");
    QCOMPARE(ko::dateTime(frame).toString(kFormat), wholeWall);
    QCOMPARE(ko::toQDateTime(frame).toString(kFormat), wall);
    QCOMPARE(ko::toQDateTime(frame, Qt::LocalTime).toString(kFormat), wholeWall);

    const QDateTime local = QDateTime::fromString(wall, kFormat);
    QCOMPARE(ko::fromQDateTime(local.date(), local.time()), frame / 1000 * 1000);
    // A valid date without a valid time stands for the start of its local day: midnight where it
    // exists.
    QCOMPARE(ko::fromQDateTime(local.date(), QTime()), dayStart * kSecond);
}

QTEST_GUILESS_MAIN(tst_koqdatetime)
#include "tst_koqdatetime.moc"
