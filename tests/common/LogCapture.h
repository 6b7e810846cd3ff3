// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TESTS_LOGCAPTURE_H
#define COREQT_TESTS_LOGCAPTURE_H

#include "platform/core/Log.h"

#include <QStringList>

#include <sstream>

/**
 * Captures every level of ko::Log::instance() in memory for the lifetime of
 * the object and restores the previous streams and threshold afterwards.
 * The threshold is set to @p threshold (Debug by default) while capturing.
 * With @p oneStream every level writes into one stream, read with orderedLines(); lines() and
 * allLines() then find every line under Debug.
 */
class LogCapture
{
public:
    explicit LogCapture(ko::Log::ELevel threshold = ko::Log::Debug, bool oneStream = false);
    ~LogCapture();

    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    /** Everything written at @p level, prefixes included. */
    QString text(ko::Log::ELevel level) const;
    /** The lines written at @p level, each without its time and level prefix. */
    QStringList lines(ko::Log::ELevel level) const;
    /** The lines of all levels, each as "<level>|<text without prefix>", in level order. */
    QStringList allLines() const;
    /** With one stream for all levels: its lines in order, each as "<Level> <text>". */
    QStringList orderedLines() const;

    /** Forgets what was captured so far. */
    void clear();

    /** Removes the "yyyy-MM-dd hh:mm:ss.zzz <Level> " prefix from one line. */
    static QString stripPrefix(const QString &line);

private:
    std::ostringstream mStreams[ko::Log::LevelCount];
    std::ostream *mPrevious[ko::Log::LevelCount];
    ko::Log::ELevel mPreviousLevel;
};

#endif // COREQT_TESTS_LOGCAPTURE_H
