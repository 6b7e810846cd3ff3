// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_TIMECOMMANDS_H
#define COREQT_TOOL_TIMECOMMANDS_H

#include "Command.h"

namespace tool
{

class Report;

/** "time FRAMETIME" and "time --from ISO-8601": frame times to UTC and local time, and back. */
extern const Command kTimeCommand;

/** Sets the fields "frametime", "utc" and "local" of @p report for the frame time @p frameTime. */
void addFrameTime(Report &report, unsigned long long frameTime);
/** The frame time of an ISO 8601 date and time (local time when it names no offset); throws when
 * out of range. */
unsigned long long frameTimeOf(const QString &iso);

} // namespace tool

#endif // COREQT_TOOL_TIMECOMMANDS_H
