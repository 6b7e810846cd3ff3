// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_LOGQT_H
#define KO_LOGQT_H

#include "coreqt_export.h"

#include "platform/core/Log.h"
#include "platform/core/Mutex.h"
#include "platform/kom/komStatusMessage.h"

#include <QString>
#include <QStringView>
#include <QTextStream>
#include <QVector>

#include <ios>
#include <memory>
#include <streambuf>
#include <type_traits>

namespace ko
{

template <class Streambuf> class TStreambufDevice;

/**
 * The Qt face of ko::Log: a QTextStream per level writing into the same stream
 * buffer as the log's level stream, file names as QString, and the routing of
 * Qt's and the middleware's messages into the log.
 *
 * The process-wide instance s_instance fronts ko::Log::instance(); the library
 * logs through it with ko::LogLine / LogQt::write(). File names given as QString
 * pass through QString::toAscii() (Latin-1): other characters become '?'.
 */
class COREQT_EXPORT LogQt : public Log
{
public:
    /** A front of its own ko::Log part: every call goes to this object's own log. */
    LogQt();
    /** A front of @p log, which must outlive it. */
    explicit LogQt(Log &log);
    /** Releases the tables; the devices and text streams are left alive for late writers. */
    ~LogQt();

    /** Not copyable: the per-level devices and text streams belong to one front. */
    LogQt(const LogQt &) = delete;
    /** Not assignable, as it is not copyable. */
    LogQt &operator=(const LogQt &) = delete;

    /** The process-wide front of ko::Log::instance(), constructed when the library is loaded. */
    static LogQt s_instance;

    /** The fronted log's recursive mutex. */
    Mutex &mutex();
    /** Writes the line prefix of @p level onto the fronted log's level stream (level 0's if
     * negative). */
    void pre(ELevel level);
    /** Sets the fronted log's threshold. */
    void setLogLevel(ELevel level);
    /** The fronted log's threshold. */
    ELevel logLevel() const;
    /** Threshold 0. */
    void setDebugLogLevel();
    /** Threshold 1. */
    void setMessageLogLevel();
    /** Threshold 2. Kept as it always was: the same level as setWarningLogLevel(). */
    void setImportantLogLevel();
    /** Threshold 2, which setImportantLogLevel() sets too. */
    void setWarningLogLevel();
    /** Threshold 3. */
    void setErrorLogLevel();
    /** Threshold 4. */
    void setFatalErrorLogLevel();
    /** Sets the fronted log's stream of @p level, owned by it when @p takeOwnership; null silences
     * it. */
    void setStream(ELevel level, std::ostream *stream, bool takeOwnership);
    /** Sends the fronted log's @p level to the file @p path, appended to or truncated. */
    void setLogFile(ELevel level, const char *path, bool append);
    /** Sends every level of the fronted log to the file @p path, appended to or truncated. */
    void setLogFile(const char *path, bool append);
    /**
     * Sends @p level of this object's own ko::Log part (not the fronted log) to @p path.
     * Kept apart from the const char* overload on purpose: callers rely on the difference.
     */
    void setLogFile(ELevel level, const QString &path, bool append);
    /**
     * Sends every level of this object's own ko::Log part (not the fronted log) to @p path; kept
     * apart from the const char* overload, as the one-level form is.
     */
    void setLogFile(const QString &path, bool append);
    /** Redirects the process's standard output (and error) to @p path; see ko::Log::setStdOut. */
    static void setStdOut(const QString &path, bool append, bool alsoStdErr);
    /** Sends every level of the process-wide log, ko::Log::instance(), to @p path. */
    static void setDefaultLogFile(const QString &path, bool append);

    /**
     * The text stream of @p level's slot (levels above 4, and negative ones, use slot 0), renewed
     * when the fronted log's stream buffer for that slot was replaced; null when the log has no
     * stream there.
     */
    QTextStream *getStream(ELevel level);

    /**
     * Writes one line in the library's logging idiom through s_instance: under the
     * log mutex, when the level's stream exists and the threshold allows, the
     * prefix, @p text and a line end, keeping the stream's number flags.
     */
    static void write(ELevel level, const QString &text);

    /**
     * The number of lines written at @p level since the library was loaded: the library's and
     * the application's lines, Qt's messages and the middleware's status messages. Lines below
     * the threshold or without a stream are not counted; levels outside 0..4 count as 0.
     */
    static quint64 lineCount(ELevel level);

    /**
     * Qt message handler: warnings, critical and fatal messages go to ko::Log::instance() at levels
     * 2, 3, 4 with " Qt> " after the prefix; debug, info and other messages are dropped. A fatal
     * message does not end the process here: that is left to Qt.
     */
    static void qtMsgHandler(QtMsgType type, const char *text);
    /** Announces itself through qDebug(), then installs qtMsgHandler() as Qt's message handler. */
    static void installQtHandler();
    /** Routes the middleware's status messages into the log (KomLogHandler::install). */
    static void installKomHandler(kom::StatusMessageType verbosity);

private:
    friend class LogLine;
    QTextStream *getStream_locked(int slot);
    std::streambuf *directTarget_locked(int slot);

    Log *log;
    QVector<TStreambufDevice<std::streambuf> *> devices;
    QVector<QTextStream *> streams;
};

/**
 * One log line in the library's logging idiom: the constructor locks the log
 * mutex, and when the level's stream exists and the threshold allows, writes the
 * prefix; values streamed in follow, formatted as the level's text stream formats
 * them; the destructor ends the line (flushing it), keeps the stream's number
 * flags and unlocks.
 *
 *     ko::LogLine(ko::Log::Warning) << "Unexpected return code " << code;
 *
 * Texts and integers go straight to the level's stream buffer as long as the text
 * stream is in a state that would pass them on unchanged; anything else, and all
 * that follows it on the line, goes through the text stream itself.
 */
class COREQT_EXPORT LogLine
{
public:
    /** Starts a line of @p level on ko::LogQt::s_instance. */
    explicit LogLine(Log::ELevel level);
    /** Ends the line and releases the log mutex. */
    ~LogLine();

    /** Not copyable: a line holds the log mutex until it ends. */
    LogLine(const LogLine &) = delete;
    /** Not assignable, as it is not copyable. */
    LogLine &operator=(const LogLine &) = delete;

    /**
     * Writes one whole line from another source, marked with @p marker (" Qt> ", " kom> "),
     * straight onto ko::Log::instance()'s std::ostream of @p level, keeping that stream's format
     * flags. A null
     * @p text sets the stream's bad bit, as writing a null character pointer does.
     */
    static void writeMarked(Log::ELevel level, const char *marker, const char *text);

    /** True when the line is written (a stream exists and the threshold allows the level). */
    bool isActive() const { return mStream != nullptr; }
    /** Appends @p value with QTextStream's formatting; does nothing for an inactive line. */
    template <class T> LogLine &operator<<(const T &value)
    {
        if (mStream && !(mTarget && appendDirect(value))) {
            leaveDirect();
            using Plain = std::decay_t<T>;
            if constexpr (std::is_same_v<T, QString> || std::is_same_v<T, QStringView>) {
                writeUtf16(value);
            } else if constexpr (std::is_same_v<T, QChar>) {
                writeUtf16(QStringView(&value, 1));
            } else {
                writePendingSurrogate();
                // Character pointers are Latin-1, as Qt 5's text stream reads them (Qt 6's reads
                // UTF-8).
                if constexpr (std::is_same_v<Plain, const char *> || std::is_same_v<Plain, char *>)
                    *mStream << QLatin1String(value);
                else
                    *mStream << value;
            }
        }
        return *this;
    }

private:
    LogLine(Log::ELevel level, const char *marker);

    // Appends a value the text stream would pass on unchanged; false for any other.
    template <class T> bool appendDirect(const T &value)
    {
        using Plain = std::decay_t<T>;
        if constexpr (std::is_same_v<Plain, const char *> || std::is_same_v<Plain, char *>)
            return appendCString(value);
        else if constexpr (std::is_same_v<T, char>)
            return appendLatin1(&value, 1);
        else if constexpr (std::is_same_v<T, QLatin1String>)
            return appendLatin1(value.data(), value.size());
        else if constexpr (std::is_same_v<T, QString>)
            return appendUtf16(value.constData(), value.size());
        else if constexpr (std::is_same_v<T, QStringView>)
            return appendUtf16(value.data(), value.size());
        else if constexpr (std::is_same_v<T, QChar>)
            return appendUtf16(&value, 1);
        else if constexpr (
            std::is_same_v<T,
                short> || std::is_same_v<T, int> || std::is_same_v<T, long> || std::is_same_v<T, long long>)
            return appendInteger(value < 0 ? 0 - qulonglong(value) : qulonglong(value), value < 0);
        else if constexpr (
            std::is_same_v<T,
                unsigned short> || std::is_same_v<T, unsigned> || std::is_same_v<T, unsigned long> || std::is_same_v<T, unsigned long long>)
            return appendInteger(qulonglong(value), false);
        else
            return false;
    }

    char *room(qsizetype size);
    bool appendCString(const char *text);
    bool appendLatin1(const char *text, qsizetype size);
    bool appendUtf16(const QChar *text, qsizetype size);
    bool appendInteger(qulonglong magnitude, bool negative);
    void leaveDirect();
    void writeUtf16(QStringView text);
    void writePendingSurrogate();

    MutexLocker mLocker;
    QTextStream *mStream
        = nullptr; // the level's text stream; null for an inactive or a marked line
    std::streambuf *mTarget = nullptr; // where mBytes go; null once the line goes through mStream
    std::ostream *mMarkedStream = nullptr; // the stream of a marked line
    int mSlot = 0; // the level's slot; a level outside the enumeration is not kept as one
    QTextStream::NumberFlags mNumberFlags;
    std::ios_base::fmtflags mFormatFlags = {};
    signed char mPlainNumbers
        = -1; // whether the text stream writes integers as plain digits; -1 unknown
    // The line's text in UTF-8 while it goes straight to mTarget: in mInline, or on the heap when
    // longer.
    char *mBytes = mInline;
    qsizetype mSize = 0;
    qsizetype mCapacity = sizeof mInline;
    std::unique_ptr<char[]> mHeap;
    char mInline[480];
    QChar mPendingHigh; // a high surrogate that ended the last text, held back for its low one; or
                        // null
};

} // namespace ko

#endif // KO_LOGQT_H
