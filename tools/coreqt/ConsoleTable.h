// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_CONSOLETABLE_H
#define COREQT_TOOL_CONSOLETABLE_H

#include <QString>

namespace ko
{
struct ConsoleDocument;
}

namespace tool
{

/** Running jobs are shown as stalled past this many milliseconds when their pool's watchdog is off.
 */
constexpr int kDefaultStallMs = 5000;

/**
 * A console document as the table that coreqt top shows: the process, then per pool its totals
 * and one row per worker with its running job, running time and queue. Rows of stalled jobs end
 * in "stalled" and, with @p highlight (for a terminal), are drawn in reverse video.
 */
QString consoleTable(const ko::ConsoleDocument &document, bool highlight);

} // namespace tool

#endif // COREQT_TOOL_CONSOLETABLE_H
