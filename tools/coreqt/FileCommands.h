// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_FILECOMMANDS_H
#define COREQT_TOOL_FILECOMMANDS_H

#include "Command.h"

namespace tool
{

class Report;

/** "encrypt IN OUT": writes IN as an enciphered file OUT, replacing a file OUT only when complete.
 */
extern const Command kEncryptCommand;
/** "decrypt IN OUT": writes the contents of the enciphered file IN to OUT, replacing a file only
 * when complete. */
extern const Command kDecryptCommand;
/** "inspect FILE": the plain header of an enciphered file and whether this library reads it. */
extern const Command kInspectCommand;

/** The header report of the enciphered file @p path, as inspect prints it; throws when it has no
 * header. */
Report inspectFile(const QString &path);

} // namespace tool

#endif // COREQT_TOOL_FILECOMMANDS_H
