// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "ConsoleTable.h"

#include "console/ConsoleDocument.h"

#include <QStringList>
#include <QVector>

#include <algorithm>

namespace tool
{

namespace
{

const QString kReverse = QStringLiteral("\033[7m");
const QString kPlain = QStringLiteral("\033[0m");

QString workers(int maxThreads)
{
    if (maxThreads <= 0)
        return QStringLiteral("no limit of workers");
    return QStringLiteral("at most %1 worker%2").arg(maxThreads).arg(maxThreads == 1 ? "" : "s");
}

QString seconds(qint64 milliseconds)
{
    return QStringLiteral("%1 s").arg(double(milliseconds) / 1000.0, 0, 'f', 1);
}

// Rows of cells under a heading, each column as wide as its widest cell; the last column is not
// padded. Rows listed in @p marked are drawn in reverse video when @p highlight is set.
QString columns(const QVector<QStringList> &rows, const QVector<bool> &marked, bool highlight)
{
    QVector<int> widths;
    for (const QStringList &row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (int i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths.at(i), int(row.at(i).size()));
    }
    QString text;
    for (int r = 0; r < rows.size(); ++r) {
        QString line;
        for (int i = 0; i < rows.at(r).size(); ++i)
            line += i + 1 < rows.at(r).size() ? rows.at(r).at(i).leftJustified(widths.at(i) + 2)
                                              : rows.at(r).at(i);
        const bool reverse = highlight && marked.value(r);
        text += QStringLiteral("  ") + (reverse ? kReverse + line + kPlain : line)
            + QLatin1Char('\n');
    }
    return text;
}

QString queueText(const ko::JobWorkerSnapshot &worker, bool lockBusy)
{
    if (lockBusy)
        return QStringLiteral("?");
    QStringList entries;
    for (const ko::QueuedJobSnapshot &job : worker.queue) {
        entries << QStringLiteral("%1 (%2%3, %4)")
                       .arg(job.jobId)
                       .arg(job.priority)
                       .arg(job.lifo ? QStringLiteral(" LIFO") : QString())
                       .arg(seconds(job.queuedMs));
    }
    return entries.isEmpty() ? QStringLiteral("-") : entries.join(QStringLiteral(", "));
}

QString jobPoolText(const ko::JobPoolSnapshot &pool, bool highlight)
{
    QStringList state;
    if (pool.lockBusy)
        state << ko::lockBusyText(pool.lockWaitMs);
    else if (pool.idle)
        state << QStringLiteral("idle for %1").arg(seconds(pool.idleSinceMs));
    else
        state << QStringLiteral("busy");
    state << workers(pool.maxThreads);
    state << (pool.stallThresholdMs > 0
            ? QStringLiteral("stall watchdog at %1").arg(seconds(pool.stallThresholdMs))
            : QStringLiteral("stall watchdog off"));
    const ko::JobPoolTotals &t = pool.totals;
    QString text
        = QStringLiteral("Job pool %1: %2\n").arg(pool.name, state.join(QStringLiteral("; ")));
    text += QStringLiteral(
        "  totals: scheduled %1, started %2, finished %3, aborted while queued %4, "
        "re-prioritised %5\n")
                .arg(t.scheduled)
                .arg(t.started)
                .arg(t.finished)
                .arg(t.abortedWhileQueued)
                .arg(t.reprioritised);
    if (pool.workers.isEmpty())
        return text + QStringLiteral("  (no workers)\n");
    const qint64 stallMs = pool.stallThresholdMs > 0 ? pool.stallThresholdMs : kDefaultStallMs;
    QVector<QStringList> rows { { "WORKER", "STATE", "JOB", "PRIO", "RUNNING", "QUEUE" } };
    QVector<bool> stalled { false };
    for (const ko::JobWorkerSnapshot &worker : pool.workers) {
        const bool running = worker.runningJobId != -1;
        stalled << (running && worker.runningMs >= stallMs);
        rows << QStringList { worker.name,
            worker.busy ? QStringLiteral("busy") : QStringLiteral("idle"),
            running ? QString::number(worker.runningJobId) : QStringLiteral("-"),
            running ? QString::number(worker.runningPriority) : QStringLiteral("-"),
            running ? seconds(worker.runningMs)
                    + (stalled.last() ? QStringLiteral(" stalled") : QString())
                    : QStringLiteral("-"),
            queueText(worker, pool.lockBusy) };
    }
    return text + columns(rows, stalled, highlight);
}

QString signalPoolText(const ko::SignalPoolSnapshot &pool)
{
    QString text = QStringLiteral("Signal pool %1: ").arg(pool.name);
    if (pool.lockBusy)
        return text + ko::lockBusyText(pool.lockWaitMs) + QLatin1Char('\n');
    text += workers(pool.maxThreads) + QStringLiteral(", priority %1\n").arg(pool.priority);
    if (pool.workers.isEmpty())
        return text + QStringLiteral("  (no workers)\n");
    QVector<QStringList> rows { { "WORKER", "LOAD", "ATTACHED" } };
    for (const ko::SignalWorkerSnapshot &worker : pool.workers) {
        QStringList objects;
        for (const ko::AttachedObjectSnapshot &object : worker.attached)
            objects << QStringLiteral("%1 \"%2\"").arg(object.className, object.objectName);
        rows << QStringList { worker.name, QString::number(worker.load),
            objects.isEmpty() ? QStringLiteral("-") : objects.join(QStringLiteral(", ")) };
    }
    return text + columns(rows, {}, false);
}

} // namespace

QString consoleTable(const ko::ConsoleDocument &document, bool highlight)
{
    QStringList counts;
    for (int level = 0; level < document.logLines.size(); ++level)
        counts << QStringLiteral("%1 %2")
                      .arg(ko::logLevelName(level))
                      .arg(document.logLines.at(level));
    QString text = QStringLiteral("Process %1, up %2; log lines: %3\n")
                       .arg(document.processId)
                       .arg(seconds(document.uptimeMs))
                       .arg(counts.join(QStringLiteral(", ")));
    for (const ko::JobPoolSnapshot &pool : document.jobPools)
        text += QLatin1Char('\n') + jobPoolText(pool, highlight);
    for (const ko::SignalPoolSnapshot &pool : document.signalPools)
        text += QLatin1Char('\n') + signalPoolText(pool);
    if (document.jobPools.isEmpty() && document.signalPools.isEmpty())
        text += QStringLiteral("\n(no pools registered)\n");
    return text;
}

} // namespace tool
