// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_TOPCOMMAND_H
#define COREQT_TOOL_TOPCOMMAND_H

#include "Command.h"

namespace tool
{

/** "top NAME|PATH": the pools of a process with a live console, redrawn every second on a terminal.
 */
extern const Command kTopCommand;

} // namespace tool

#endif // COREQT_TOOL_TOPCOMMAND_H
