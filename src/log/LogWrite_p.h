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

/** Counts one line written at @p level for LogQt::lineCount(). */
void countLine(Log::ELevel level);

} // namespace ko

#endif // KO_LOGWRITE_P_H
