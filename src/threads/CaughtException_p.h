// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CAUGHTEXCEPTION_P_H
#define KO_CAUGHTEXCEPTION_P_H

#include "platform/core/Log.h"

class QString;

namespace ko
{

/**
 * Writes one log line at @p level for the exception being handled, as the worker threads of both
 * pools report what escaped their work: a ko::ExceptionQt as it prints itself, anything else after
 * "in worker thread <threadName>: ". Call it only inside a catch block; thread cancellation
 * passes through.
 */
void logCaughtException(Log::ELevel level, const QString &threadName);

} // namespace ko

#endif // KO_CAUGHTEXCEPTION_P_H
