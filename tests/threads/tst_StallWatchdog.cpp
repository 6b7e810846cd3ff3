// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// The job pool's stall watchdog: komQtThreadPool::setStallThreshold().
#include "JobTestSupport.h"

#include "LogCapture.h"

#include <QtTest>

using ko::komQtThreadPool;

namespace
{

// Every level in one stream, so that the order of lines across levels shows.
struct OneStreamLog : LogCapture
{
    OneStreamLog()
        : LogCapture(ko::Log::Message, true)
    { }
    /** The lines about jobs, as "<Level> <text>". */
    QStringList jobLines() const { return orderedLines().filter(QStringLiteral(" job ")); }
};

const QRegularExpression kStallLine(
    QStringLiteral("^Warning job (\\d+) on (\\S+) has been running for (\\d+\\.\\d) s$"));
const QRegularExpression kEndLine(
    QStringLiteral("^Message job (\\d+) on (\\S+) finished after (\\d+\\.\\d) s$"));

bool waitWithoutEvents(const std::function<bool()> &done)
{
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 10000)
        QThread::msleep(2);
    return done();
}

} // namespace

class tst_StallWatchdog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void twoLinesPerStalledJob();
    void switchedOffAndOn();
    void endsRaceReports();
};

void tst_StallWatchdog::twoLinesPerStalledJob()
{
    OneStreamLog log;
    TestPool pool(QStringLiteral("Stall"), 1);
    pool.setStallThreshold(100);
    QCOMPARE(pool.stallThreshold(), 100);
    QSemaphore gate;
    int id;
    const kom::smart<RecordingJob> job = scheduleJob(pool, id, &gate);
    QVERIFY(job->waitStarted());
    // The pool's thread does not run its event loop meanwhile: the watchdog has a thread of its
    // own.
    QVERIFY(waitWithoutEvents([&]() { return !log.jobLines().isEmpty(); }));
    // Several thresholds later it has said nothing more.
    QVERIFY(waitWithoutEvents([&]() { return pool.snapshot().workers.value(0).runningMs >= 500; }));
    QCOMPARE(log.jobLines().size(), 1);
    gate.release();
    QVERIFY(pool.waitForFinished(id, 10000));
    // Short jobs afterwards are not reported.
    int last = -1;
    for (int i = 0; i < 20; ++i)
        scheduleJob(pool, last);
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == 21; }));

    const QStringList lines = log.jobLines();
    QCOMPARE(lines.size(), 2);
    const QRegularExpressionMatch stall = kStallLine.match(lines.at(0));
    const QRegularExpressionMatch end = kEndLine.match(lines.at(1));
    QVERIFY2(stall.hasMatch(), qPrintable(lines.at(0)));
    QVERIFY2(end.hasMatch(), qPrintable(lines.at(1)));
    QCOMPARE(stall.captured(1).toInt(), id);
    QCOMPARE(end.captured(1).toInt(), id);
    QCOMPARE(stall.captured(2), QStringLiteral("Stall-Thread-1"));
    QCOMPARE(end.captured(2), QStringLiteral("Stall-Thread-1"));
    QVERIFY(stall.captured(3).toDouble() >= 0.1);
    QVERIFY(end.captured(3).toDouble() >= 0.5);
    QVERIFY(pool.retire());
}

void tst_StallWatchdog::switchedOffAndOn()
{
    OneStreamLog log;
    TestPool pool(QStringLiteral("Switch"), 1);
    QCOMPARE(pool.stallThreshold(), 0); // off by default
    pool.setStallThreshold(50);
    pool.setStallThreshold(0);
    QSemaphore gate;
    int id;
    const kom::smart<RecordingJob> job = scheduleJob(pool, id, &gate);
    QVERIFY(job->waitStarted());
    QVERIFY(spinUntil([&]() { return pool.snapshot().workers.value(0).runningMs >= 200; }));
    QCOMPARE(log.jobLines(), QStringList());
    // Switched on again, it reports the job that is over the threshold already.
    pool.setStallThreshold(50);
    QVERIFY(spinUntil([&]() { return log.jobLines().size() == 1; }));
    // Switched off after the report, the job's end is still told.
    pool.setStallThreshold(0);
    gate.release();
    QVERIFY(pool.waitForFinished(id, 10000));
    const QStringList lines = log.jobLines();
    QCOMPARE(lines.size(), 2);
    QVERIFY2(kStallLine.match(lines.at(0)).hasMatch(), qPrintable(lines.at(0)));
    QVERIFY2(kEndLine.match(lines.at(1)).hasMatch(), qPrintable(lines.at(1)));
    QVERIFY(pool.retire());
}

// Jobs that end about when they reach the threshold, on more workers than cores: each one gets no
// line or both, the warning first, never a warning without its end.
void tst_StallWatchdog::endsRaceReports()
{
    constexpr int jobs = 4000;
    OneStreamLog log;
    TestPool pool(QStringLiteral("Race"), 8);
    pool.setStallThreshold(1);
    QSet<int> ids;
    QList<kom::smart<RecordingJob>> held;
    for (int i = 0; i < jobs; ++i) {
        int id;
        held << scheduleJob(pool, id, nullptr, 1);
        ids << id;
    }
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == jobs; }, 60000));
    pool.setStallThreshold(0);

    QHash<int, QStringList> linesOf;
    for (const QString &line : log.jobLines()) {
        const QRegularExpressionMatch stall = kStallLine.match(line);
        const QRegularExpressionMatch end = kEndLine.match(line);
        QVERIFY2(stall.hasMatch() || end.hasMatch(), qPrintable(line));
        const int id = (stall.hasMatch() ? stall : end).captured(1).toInt();
        QVERIFY(ids.contains(id));
        linesOf[id] << (stall.hasMatch() ? QStringLiteral("stall") : QStringLiteral("end"));
    }
    for (auto it = linesOf.cbegin(); it != linesOf.cend(); ++it)
        QCOMPARE(it.value(), QStringList({ "stall", "end" }));
    QVERIFY(pool.retire());
}

QTEST_GUILESS_MAIN(tst_StallWatchdog)
#include "tst_StallWatchdog.moc"
