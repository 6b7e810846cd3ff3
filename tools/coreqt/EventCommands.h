// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_EVENTCOMMANDS_H
#define COREQT_TOOL_EVENTCOMMANDS_H

#include "Command.h"

class QString;

namespace tool
{

class Record;

/** "events MASK [MASK MASK]": the keys of the trigger events selected by up to three masks. */
extern const Command kEventsCommand;
/** "event KEY...": the display text of trigger event keys, mailbox keys included. */
extern const Command kEventCommand;

/** The result row of the event @p key: its key, its mask (when it has a bit) and its display text.
 */
Record eventRecord(const QString &key);

} // namespace tool

#endif // COREQT_TOOL_EVENTCOMMANDS_H
