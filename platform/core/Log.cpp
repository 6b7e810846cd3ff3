// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Log.h"

#include "platform/core/Mutex.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <unistd.h>

namespace ko
{

Log::Log()
    : mMutex(new Mutex(true))
    , mLevel(Message)
    , mPrefixSecond(-1)
    , mPrefixTime {}
{
    mStreams[Debug] = &std::cout;
    mStreams[Message] = &std::cout;
    mStreams[Warning] = &std::cerr;
    mStreams[Error] = &std::cerr;
    mStreams[FatalError] = &std::cerr;
}

// Owned streams flush when they are released; streams of callers are theirs to flush.
Log::~Log() = default;

Log &Log::instance()
{
    static Log log;
    return log;
}

Mutex &Log::mutex()
{
    return *mMutex;
}

const char *Log::levelName(ELevel level)
{
    static const char *const names[LevelCount]
        = { "Debug", "Message", "Warning", "Error", "FatalError" };
    // Levels outside the enumeration are written under Debug's name, as they use its stream.
    return (level >= 0 && level < LevelCount) ? names[level] : names[Debug];
}

int Log::slot(ELevel level) const
{
    return (level >= 0 && level < LevelCount) ? level : Debug;
}

void Log::pre(ELevel level)
{
    MutexLocker lock(*mMutex);
    std::ostream *os = mStreams[slot(level)];
    if (!os)
        return;
    const auto now = std::chrono::system_clock::now();
    const long long msSinceEpoch
        = std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count();
    const std::time_t seconds = std::time_t(msSinceEpoch / 1000);
    // Lines come many per second: the date and time are formatted once per second (under the
    // mutex).
    if (seconds != mPrefixSecond) {
        std::tm local;
        localtime_r(&seconds, &local);
        std::strftime(mPrefixTime, sizeof mPrefixTime, "%Y-%m-%d %H:%M:%S.", &local);
        mPrefixSecond = seconds;
    }
    // One write of the whole prefix: "yyyy-mm-dd hh:mm:ss.zzz <Level> ".
    char prefix[64];
    const size_t timeLength = std::strlen(mPrefixTime);
    std::memcpy(prefix, mPrefixTime, timeLength);
    char *p = prefix + timeLength;
    const int ms = int(msSinceEpoch % 1000);
    *p++ = char('0' + ms / 100);
    *p++ = char('0' + ms / 10 % 10);
    *p++ = char('0' + ms % 10);
    *p++ = ' ';
    const char *name = levelName(level);
    const size_t nameLength = std::strlen(name);
    std::memcpy(p, name, nameLength);
    p += nameLength;
    *p++ = ' ';
    os->write(prefix, p - prefix);
}

std::ostream *Log::getStream(ELevel level)
{
    MutexLocker lock(*mMutex);
    return mStreams[slot(level)];
}

Log::ELevel Log::logLevel() const
{
    return ELevel(mLevel.load(std::memory_order_relaxed));
}

void Log::setLogLevel(ELevel level)
{
    mLevel.store(level, std::memory_order_relaxed);
}

void Log::setStream(ELevel level, std::ostream *stream, bool takeOwnership)
{
    MutexLocker lock(*mMutex);
    const int i = slot(level);
    if (mStreams[i])
        mStreams[i]->flush();
    mStreams[i] = stream;
    if (takeOwnership && stream)
        mOwned[i].reset(stream);
    else
        mOwned[i].reset();
}

std::ofstream *Log::openFile(const std::string &path, bool append)
{
    auto *file = new std::ofstream(
        path, append ? std::ios::out | std::ios::app : std::ios::out | std::ios::trunc);
    if (!file->is_open()) {
        const int error = errno;
        delete file;
        reportError("Cannot open log file " + path + ": " + std::strerror(error));
        return nullptr;
    }
    return file;
}

void Log::setLogFile(ELevel level, const std::string &path, bool append)
{
    MutexLocker lock(*mMutex);
    if (std::ofstream *file = openFile(path, append))
        setStream(level, file, true);
}

void Log::setLogFile(const std::string &path, bool append)
{
    MutexLocker lock(*mMutex);
    std::ofstream *file = openFile(path, append);
    if (!file)
        return;
    // One stream for all levels, so lines keep their order in the file.
    std::shared_ptr<std::ostream> shared(file);
    for (int i = 0; i < LevelCount; ++i) {
        if (mStreams[i])
            mStreams[i]->flush();
        mStreams[i] = file;
        mOwned[i] = shared;
    }
}

void Log::setDefaultLogFile(const std::string &path, bool append)
{
    instance().setLogFile(path, append);
}

void Log::setStdOut(const std::string &path, bool append, bool alsoStdErr)
{
    Log &log = instance();
    MutexLocker lock(log.mutex());
    const int fd = ::open(
        path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC), 0644);
    if (fd < 0) {
        log.reportError("Cannot redirect standard output to " + path + ": " + std::strerror(errno));
        return;
    }
    std::cout.flush();
    std::fflush(stdout);
    ::dup2(fd, STDOUT_FILENO);
    if (alsoStdErr) {
        std::cerr.flush();
        std::fflush(stderr);
        ::dup2(fd, STDERR_FILENO);
    }
    ::close(fd);
}

void Log::reportError(const std::string &text)
{
    MutexLocker lock(*mMutex);
    std::ostream *os = mStreams[Error];
    if (!os || logLevel() > Error)
        return;
    pre(Error);
    *os << text << std::endl;
}

} // namespace ko
