// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_DEMOCOMMAND_H
#define COREQT_TOOL_DEMOCOMMAND_H

#include "Command.h"

namespace tool
{

/** "demo" (also coreqt without a command): a short tour of each area of the library on sample data.
 */
extern const Command kDemoCommand;

} // namespace tool

#endif // COREQT_TOOL_DEMOCOMMAND_H
