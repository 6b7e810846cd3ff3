#ifndef KO_LOGWRITE_P_H
#define KO_LOGWRITE_P_H

#include "platform/core/Log.h"

namespace ko
{

/**
 * Writes one line straight onto @p log's std::ostream of @p level, marked as
 * coming from another source: under the log mutex, when the stream exists and
 * the threshold allows, the prefix, @p marker, @p text and a flushed newline,
 * keeping the stream's format flags. A null @p text sets the stream's bad bit,
 * as writing a null character pointer does.
 */
void writeMarkedLine(Log& log, Log::ELevel level, const char* marker, const char* text);

/** The slot of @p level in the per-level tables: 0 to 4; levels outside that range use 0. */
int slotOf(Log::ELevel level);

/** Counts one line written in @p slot for LogQt::lineCount(). */
void countLine(int slot);

} // namespace ko

#endif // KO_LOGWRITE_P_H
