// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_TERMINAL_H
#define KOM_TERMINAL_H

#include "platform/kom/komObject.h"
#include "platform/kom/komString.h"
#include "platform/kom/kom_export.h"

namespace kom
{

/** Receives the middleware's fatal-error reports. */
typedef void (*TerminalHandler)(const komString &message, const komObject *sender);

/**
 * Reports a fatal misuse. The default handler sends @p message as a status
 * message of type 80 (StatusFatal) and throws komTerminalException; an
 * installed handler may return instead.
 */
KOM_EXPORT void terminal(const komString &message, const komObject *sender);

/** Installs @p handler (null restores the default) and returns the previous one. */
KOM_EXPORT TerminalHandler setTerminalHandler(TerminalHandler handler);

/** The handler installed by default. */
KOM_EXPORT void defaultTerminalHandler(const komString &message, const komObject *sender);

} // namespace kom

#endif // KOM_TERMINAL_H
