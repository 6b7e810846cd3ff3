// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_LOG_H
#define KO_LOG_H

#include "platform/core/core_export.h"

#include <atomic>
#include <iosfwd>
#include <memory>
#include <string>

namespace ko
{

class Mutex;

/**
 * The suite's log: one output stream per level, a threshold, and a recursive
 * mutex that callers hold around each line they write.
 *
 * By default Debug and Message go to standard output and the other levels to
 * standard error. Every level has a stream unless a caller sets a null one.
 */
class CORE_EXPORT Log
{
public:
    /** Log levels; a line of level L is written when logLevel() <= L. */
    enum ELevel { Debug = 0, Message = 1, Warning = 2, Error = 3, FatalError = 4 };
    /** @var Debug
     *  Detail for developers; by default on standard output, below the default threshold. */
    /** @var Message
     *  Progress worth telling; by default on standard output. */
    /** @var Warning
     *  Something unexpected that the program handled; by default on standard error. */
    /** @var Error
     *  A failed operation; by default on standard error. */
    /** @var FatalError
     *  A failure the program cannot go on from; by default on standard error. */
    /** Number of levels, and of per-level streams. */
    static constexpr int LevelCount = 5;

    /** Creates a log on the standard streams with threshold Message. */
    Log();
    /** Releases the streams the log owns. */
    ~Log();

    /** Not copyable: a log owns its streams and its mutex. */
    Log(const Log &) = delete;
    /** Not assignable, as it is not copyable. */
    Log &operator=(const Log &) = delete;

    /** The process-wide log. */
    static Log &instance();

    /** The recursive mutex that serialises lines; hold it around pre(), the text and the line end.
     */
    Mutex &mutex();
    /** Writes the line prefix onto the level's stream: local time with milliseconds, the level's
     * name, a blank. */
    void pre(ELevel level);
    /** The stream of @p level (levels outside 0..4 use Debug's), or null when the level has none.
     */
    std::ostream *getStream(ELevel level);
    /** The level's name as pre() writes it ("Debug", "Message", "Warning", "Error", "FatalError").
     */
    static const char *levelName(ELevel level);

    /** The threshold: lines below it are not written. */
    ELevel logLevel() const;
    /** Sets the threshold. */
    void setLogLevel(ELevel level);

    /** Sets the stream of @p level; the log deletes it later when @p takeOwnership is true. Null
     * silences the level. */
    void setStream(ELevel level, std::ostream *stream, bool takeOwnership);
    /**
     * Sends @p level to the file @p path, appended to or truncated.
     * When the file cannot be opened the previous output stays and the failure is logged at Error.
     */
    void setLogFile(ELevel level, const std::string &path, bool append);
    /** Sends every level to the one file @p path (one stream shared by all levels). */
    void setLogFile(const std::string &path, bool append);

    /** Sends every level of the process-wide log to @p path. */
    static void setDefaultLogFile(const std::string &path, bool append);
    /**
     * Redirects the process's standard output (and standard error when @p alsoStdErr)
     * to the file @p path; on failure nothing changes and the failure is logged at Error.
     */
    static void setStdOut(const std::string &path, bool append, bool alsoStdErr);

private:
    int slot(ELevel level) const;
    std::ofstream *openFile(const std::string &path, bool append);
    void reportError(const std::string &text);

    std::unique_ptr<Mutex> mMutex;
    std::ostream *mStreams[LevelCount];
    std::shared_ptr<std::ostream> mOwned[LevelCount];
    std::atomic<int> mLevel;
    long long mPrefixSecond;
    char mPrefixTime[32];
};

} // namespace ko

#endif // KO_LOG_H
