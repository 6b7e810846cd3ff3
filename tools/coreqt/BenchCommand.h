// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_BENCHCOMMAND_H
#define COREQT_TOOL_BENCHCOMMAND_H

#include "Command.h"

namespace tool
{

/** "bench jobs [--jobs N] [--threads T] [--work-us U]": the job pool and QThreadPool side by side.
 */
extern const Command kBenchCommand;

} // namespace tool

#endif // COREQT_TOOL_BENCHCOMMAND_H
