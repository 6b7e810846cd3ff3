#include "log/LogQt.h"

#include "compat/QtCompat_p.h"
#include "log/KomLogHandler.h"
#include "log/LogWrite_p.h"
#include "log/StreambufDevice.h"

#include <QString>
#include <QtDebug>

#include <atomic>
#include <ostream>

namespace ko
{

namespace
{
constexpr int SlotCount = 5;

std::atomic<quint64> sLineCounts[SlotCount] = {};
} // namespace

int slotOf(Log::ELevel level)
{
    // Negative levels are outside the contract; they share slot 0 with the levels above the last.
    return level >= 0 && level < SlotCount ? int(level) : 0;
}

LogQt LogQt::s_instance(Log::instance());

LogQt::LogQt()
    : log(this)
    , devices(SlotCount, nullptr)
    , streams(SlotCount, nullptr)
{
}

LogQt::LogQt(Log& other)
    : log(&other)
    , devices(SlotCount, nullptr)
    , streams(SlotCount, nullptr)
{
}

// The devices and text streams stay alive: code that runs during exit may still log through them.
LogQt::~LogQt() = default;

Mutex& LogQt::mutex()
{
    return log->mutex();
}

void LogQt::pre(ELevel level)
{
    // Negative levels are outside the contract; they are taken as level 0 rather than passed on.
    log->pre(level < 0 ? Debug : level);
}

void LogQt::setLogLevel(ELevel level)
{
    log->setLogLevel(level);
}

Log::ELevel LogQt::logLevel() const
{
    return log->logLevel();
}

void LogQt::setDebugLogLevel()
{
    log->setLogLevel(Debug);
}

void LogQt::setMessageLogLevel()
{
    log->setLogLevel(Message);
}

void LogQt::setImportantLogLevel()
{
    log->setLogLevel(Warning);
}

void LogQt::setWarningLogLevel()
{
    log->setLogLevel(Warning);
}

void LogQt::setErrorLogLevel()
{
    log->setLogLevel(Error);
}

void LogQt::setFatalErrorLogLevel()
{
    log->setLogLevel(FatalError);
}

void LogQt::setStream(ELevel level, std::ostream* stream, bool takeOwnership)
{
    log->setStream(level, stream, takeOwnership);
}

void LogQt::setLogFile(ELevel level, const char* path, bool append)
{
    log->setLogFile(level, std::string(path), append);
}

void LogQt::setLogFile(const char* path, bool append)
{
    log->setLogFile(std::string(path), append);
}

void LogQt::setLogFile(ELevel level, const QString& path, bool append)
{
    Log::setLogFile(level, compat::toAscii(path).toStdString(), append);
}

void LogQt::setLogFile(const QString& path, bool append)
{
    Log::setLogFile(compat::toAscii(path).toStdString(), append);
}

void LogQt::setStdOut(const QString& path, bool append, bool alsoStdErr)
{
    Log::setStdOut(compat::toAscii(path).toStdString(), append, alsoStdErr);
}

void LogQt::setDefaultLogFile(const QString& path, bool append)
{
    Log::setDefaultLogFile(compat::toAscii(path).toStdString(), append);
}

QTextStream* LogQt::getStream(ELevel level)
{
    // Levels above the last slot use slot 0, and so do negative ones (outside the contract).
    const int index = slotOf(level);
    MutexLocker lock(log->mutex(), true);
    // The slot number, not the raw level, is what the fronted log is asked for.
    std::ostream* os = log->getStream(ELevel(index));
    std::streambuf* buffer = os ? os->rdbuf() : nullptr;
    TStreambufDevice<std::streambuf>*& device = devices[index];
    QTextStream*& stream = streams[index];
    if (device && buffer && device->streambuf() == buffer)
        return stream;
    delete stream;
    delete device;
    stream = nullptr;
    device = nullptr;
    // A level without a stream is outside the fronted log's contract: it gets no text stream.
    if (buffer) {
        device = new TStreambufDevice<std::streambuf>(buffer);
        stream = new QTextStream(device);
    }
    return stream;
}

void LogQt::write(ELevel level, const QString& text)
{
    LogLine(level) << text;
}

quint64 LogQt::lineCount(ELevel level)
{
    return sLineCounts[slotOf(level)].load(std::memory_order_relaxed);
}

void countLine(int slot)
{
    sLineCounts[slot].fetch_add(1, std::memory_order_relaxed);
}

void LogQt::qtMsgHandler(QtMsgType type, const char* text)
{
    Log::ELevel level;
    switch (type) {
    case QtWarningMsg:
        level = Warning;
        break;
    case QtCriticalMsg:
        level = Error;
        break;
    case QtFatalMsg:
        level = FatalError; // no abort here: that is Qt's business
        break;
    default:
        return; // debug, info and any other type are dropped
    }
    writeMarkedLine(Log::instance(), level, " Qt> ", text);
}

void LogQt::installQtHandler()
{
    qDebug() << "Installing LogQt::qtMsgHandler...";
    compat::installMessageHandler(&LogQt::qtMsgHandler);
}

void LogQt::installKomHandler(kom::StatusMessageType verbosity)
{
    KomLogHandler::install(verbosity);
}

void writeMarkedLine(Log& log, Log::ELevel level, const char* marker, const char* text)
{
    MutexLocker lock(log.mutex(), true);
    std::ostream* os = log.getStream(level);
    if (!os || log.logLevel() > level)
        return;
    const std::ios_base::fmtflags flags = os->flags();
    log.pre(level);
    *os << marker;
    if (text)
        *os << text;
    else
        os->setstate(std::ios_base::badbit);
    *os << '\n';
    os->flush();
    os->flags(flags);
    countLine(slotOf(level));
}

LogLine::LogLine(Log::ELevel level)
    : mLocker(LogQt::s_instance.mutex(), true)
    , mStream(LogQt::s_instance.getStream(level))
    , mFlags()
    , mSlot(slotOf(level))
{
    if (mStream && LogQt::s_instance.logLevel() > level)
        mStream = nullptr;
    if (!mStream)
        return;
    mFlags = mStream->numberFlags();
    LogQt::s_instance.pre(level);
}

LogLine::~LogLine()
{
    if (!mStream)
        return;
    *mStream << Qt::endl;
    mStream->setNumberFlags(mFlags);
    countLine(mSlot);
}

} // namespace ko
