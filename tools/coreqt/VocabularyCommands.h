// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_VOCABULARYCOMMANDS_H
#define COREQT_TOOL_VOCABULARYCOMMANDS_H

#include "Command.h"

namespace tool
{

/** "vocab [TABLE] [--key KEY | --value N]": the camera parameter tables, or one lookup in them. */
extern const Command kVocabCommand;
/** "fps VALUE": a frame rate in hundredths of a frame per second, as the library renders it. */
extern const Command kFpsCommand;

} // namespace tool

#endif // COREQT_TOOL_VOCABULARYCOMMANDS_H
