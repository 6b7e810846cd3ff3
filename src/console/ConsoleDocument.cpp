// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "console/ConsoleDocument.h"

#include "log/LogQt.h"
#include "threads/PoolRegistry.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonObject>

#include <limits>

namespace ko
{

namespace
{

const QString kConsoleKey = QStringLiteral("console");
const QString kConsoleName = QStringLiteral("CoreQt");
const QString kVersionKey = QStringLiteral("version");

// Started when the library is loaded, with the program that links it.
const QElapsedTimer sLoadClock = [] {
    QElapsedTimer clock;
    clock.start();
    return clock;
}();

// A pool's status in words, written for people who read the JSON; readers take lockBusy.
struct Status
{
    bool lockBusy;
    int lockWaitMs;
};

// The fields of each type, in JSON order, listed once for the writer and the reader: @p visit is
// called with each key and member.
template <class Visit> void fields(QueuedJobSnapshot &job, Visit &&visit)
{
    visit("jobId", job.jobId);
    visit("priority", job.priority);
    visit("lifo", job.lifo);
    visit("queuedMs", job.queuedMs);
}

template <class Visit> void fields(JobWorkerSnapshot &worker, Visit &&visit)
{
    visit("name", worker.name);
    visit("busy", worker.busy);
    visit("runningJobId", worker.runningJobId);
    visit("runningPriority", worker.runningPriority);
    visit("runningMs", worker.runningMs);
    visit("queue", worker.queue);
    visit("workLoad", worker.workLoad);
}

template <class Visit> void fields(JobPoolTotals &totals, Visit &&visit)
{
    visit("scheduled", totals.scheduled);
    visit("started", totals.started);
    visit("finished", totals.finished);
    visit("abortedWhileQueued", totals.abortedWhileQueued);
    visit("reprioritised", totals.reprioritised);
}

template <class Visit> void fields(JobPoolSnapshot &pool, Visit &&visit)
{
    visit("name", pool.name);
    visit("status", Status { pool.lockBusy, pool.lockWaitMs });
    visit("maxThreads", pool.maxThreads);
    visit("lockBusy", pool.lockBusy);
    visit("lockWaitMs", pool.lockWaitMs);
    visit("idle", pool.idle);
    visit("idleSinceMs", pool.idleSinceMs);
    visit("stallThresholdMs", pool.stallThresholdMs);
    visit("totals", pool.totals);
    visit("workers", pool.workers);
}

template <class Visit> void fields(AttachedObjectSnapshot &object, Visit &&visit)
{
    visit("className", object.className);
    visit("objectName", object.objectName);
}

template <class Visit> void fields(SignalWorkerSnapshot &worker, Visit &&visit)
{
    visit("name", worker.name);
    visit("load", worker.load);
    visit("attached", worker.attached);
}

template <class Visit> void fields(SignalPoolSnapshot &pool, Visit &&visit)
{
    visit("name", pool.name);
    visit("status", Status { pool.lockBusy, pool.lockWaitMs });
    visit("maxThreads", pool.maxThreads);
    visit("priority", pool.priority);
    visit("lockBusy", pool.lockBusy);
    visit("lockWaitMs", pool.lockWaitMs);
    visit("workers", pool.workers);
}

template <class Visit> void fields(ConsoleDocument &document, Visit &&visit)
{
    visit("processId", document.processId);
    visit("uptimeMs", document.uptimeMs);
    visit("logLines", document.logLines);
    visit("jobPools", document.jobPools);
    visit("signalPools", document.signalPools);
}

struct Writer
{
    QJsonObject &object;

    template <class T> static QJsonObject toObject(const T &value)
    {
        QJsonObject object;
        // The writer only reads the members that fields() hands it.
        fields(const_cast<T &>(value), Writer { object });
        return object;
    }

    void operator()(const char *key, const QString &value)
    {
        object.insert(QLatin1String(key), value);
    }
    void operator()(const char *key, bool value) { object.insert(QLatin1String(key), value); }
    void operator()(const char *key, int value) { object.insert(QLatin1String(key), value); }
    void operator()(const char *key, qint64 value)
    {
        object.insert(QLatin1String(key), double(value));
    }
    void operator()(const char *key, quint64 value)
    {
        object.insert(QLatin1String(key), double(value));
    }
    void operator()(const char *key, const Status &status)
    {
        object.insert(QLatin1String(key),
            status.lockBusy ? lockBusyText(status.lockWaitMs) : QStringLiteral("ok"));
    }
    void operator()(const char *key, const JobPoolTotals &totals)
    {
        object.insert(QLatin1String(key), toObject(totals));
    }
    void operator()(const char *key, const QVector<quint64> &logLines)
    {
        QJsonObject counts;
        for (int level = 0; level < logLines.size(); ++level)
            counts.insert(logLevelName(level), double(logLines.at(level)));
        object.insert(QLatin1String(key), counts);
    }
    template <class T> void operator()(const char *key, const QVector<T> &list)
    {
        QJsonArray array;
        for (const T &item : list)
            array.append(toObject(item));
        object.insert(QLatin1String(key), array);
    }
};

// Reads what a peer sent: a value of another type or out of range leaves the default.
struct Reader
{
    const QJsonObject &object;

    QJsonValue value(const char *key) const { return object.value(QLatin1String(key)); }
    static qint64 integral(const QJsonValue &value, qint64 fallback, qint64 minimum)
    {
        const double number = value.toDouble(double(fallback));
        return number >= double(minimum) && number < 9.2e18 ? qint64(number) : fallback;
    }

    void operator()(const char *key, QString &member) { member = value(key).toString(member); }
    void operator()(const char *key, bool &member) { member = value(key).toBool(member); }
    void operator()(const char *key, int &member) { member = value(key).toInt(member); }
    void operator()(const char *key, qint64 &member)
    {
        member = integral(value(key), member, std::numeric_limits<qint64>::min());
    }
    void operator()(const char *key, quint64 &member)
    {
        member = quint64(integral(value(key), qint64(member), 0));
    }
    void operator()(const char *, const Status &) { }
    void operator()(const char *key, JobPoolTotals &totals)
    {
        fields(totals, Reader { value(key).toObject() });
    }
    void operator()(const char *key, QVector<quint64> &logLines)
    {
        const QJsonObject counts = value(key).toObject();
        logLines = QVector<quint64>(Log::LevelCount, 0);
        for (int level = 0; level < Log::LevelCount; ++level)
            logLines[level] = quint64(integral(counts.value(logLevelName(level)), 0, 0));
    }
    template <class T> void operator()(const char *key, QVector<T> &list)
    {
        const QJsonArray array = value(key).toArray();
        list.clear();
        list.reserve(array.size());
        for (const QJsonValue &item : array) {
            T entry;
            fields(entry, Reader { item.toObject() });
            list.append(entry);
        }
    }
};

} // namespace

QString logLevelName(int level)
{
    static const char *const names[Log::LevelCount]
        = { "Debug", "Message", "Warning", "Error", "FatalError" };
    return level >= 0 && level < Log::LevelCount ? QLatin1String(names[level]) : QString();
}

QString lockBusyText(int lockWaitMs)
{
    return QStringLiteral("lock busy for more than %1 s")
        .arg(double(lockWaitMs) / 1000.0, 0, 'f', 1);
}

ConsoleDocument ConsoleDocument::current(int lockTimeoutMs)
{
    ConsoleDocument document;
    document.processId = QCoreApplication::applicationPid();
    document.uptimeMs = sLoadClock.elapsed();
    for (int level = 0; level < Log::LevelCount; ++level)
        document.logLines.append(LogQt::lineCount(Log::ELevel(level)));
    document.jobPools = PoolRegistry::jobPools(lockTimeoutMs);
    document.signalPools = PoolRegistry::signalPools(lockTimeoutMs);
    return document;
}

QByteArray ConsoleDocument::toJson(QJsonDocument::JsonFormat format) const
{
    QJsonObject root = Writer::toObject(*this);
    root.insert(kConsoleKey, kConsoleName);
    root.insert(kVersionKey, version);
    return QJsonDocument(root).toJson(format);
}

ConsoleDocument::ReadResult ConsoleDocument::fromJson(
    const QByteArray &json, ConsoleDocument *document)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(json, &error);
    const QJsonObject root = parsed.object();
    if (error.error != QJsonParseError::NoError
        || root.value(kConsoleKey).toString() != kConsoleName
        || !root.value(kVersionKey).isDouble())
        return NotAConsole;
    *document = ConsoleDocument();
    document->version = root.value(kVersionKey).toInt();
    if (document->version != kFormatVersion)
        return UnknownVersion;
    fields(*document, Reader { root });
    return Read;
}

} // namespace ko
