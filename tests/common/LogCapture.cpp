// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "platform/core/Mutex.h"

#include <QRegularExpression>

LogCapture::LogCapture(ko::Log::ELevel threshold, bool oneStream)
{
    ko::Log &log = ko::Log::instance();
    ko::MutexLocker lock(log.mutex(), true);
    mPreviousLevel = log.logLevel();
    for (int i = 0; i < ko::Log::LevelCount; ++i) {
        const auto level = ko::Log::ELevel(i);
        mPrevious[i] = log.getStream(level);
        log.setStream(level, &mStreams[oneStream ? 0 : i], false);
    }
    log.setLogLevel(threshold);
}

LogCapture::~LogCapture()
{
    ko::Log &log = ko::Log::instance();
    ko::MutexLocker lock(log.mutex(), true);
    for (int i = 0; i < ko::Log::LevelCount; ++i)
        log.setStream(ko::Log::ELevel(i), mPrevious[i], false);
    log.setLogLevel(mPreviousLevel);
}

QString LogCapture::text(ko::Log::ELevel level) const
{
    ko::MutexLocker lock(ko::Log::instance().mutex(), true);
    return QString::fromStdString(mStreams[level].str());
}

QStringList LogCapture::lines(ko::Log::ELevel level) const
{
    QStringList result;
    const QStringList raw = text(level).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : raw)
        result << stripPrefix(line);
    return result;
}

QStringList LogCapture::allLines() const
{
    QStringList result;
    for (int i = 0; i < ko::Log::LevelCount; ++i) {
        for (const QString &line : lines(ko::Log::ELevel(i)))
            result << QString::number(i) + QLatin1Char('|') + line;
    }
    return result;
}

QStringList LogCapture::orderedLines() const
{
    QStringList result = text(ko::Log::Debug).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString &line : result)
        line.remove(0, 24); // "yyyy-MM-dd hh:mm:ss.zzz "
    return result;
}

void LogCapture::clear()
{
    ko::MutexLocker lock(ko::Log::instance().mutex(), true);
    for (auto &stream : mStreams) {
        stream.str(std::string());
        stream.clear();
    }
}

QString LogCapture::stripPrefix(const QString &line)
{
    static const QRegularExpression prefix(
        QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\w+ "));
    const QRegularExpressionMatch match = prefix.match(line);
    return match.hasMatch() ? line.mid(match.capturedLength()) : line;
}
