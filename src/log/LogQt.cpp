// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "log/LogQt.h"

#include "compat/QtCompat_p.h"
#include "log/KomLogHandler.h"
#include "log/StreambufDevice.h"

#include <QLocale>
#include <QString>
#include <QtDebug>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <cstring>
#include <ostream>

namespace ko
{

namespace
{
constexpr int SlotCount = 5;

int slotOf(Log::ELevel level)
{
    // Negative levels are outside the contract; they share slot 0 with the levels above the last.
    return level >= 0 && level < SlotCount ? int(level) : 0;
}

// Lines written per slot. Every writer holds the log mutex, so a plain load and store count
// exactly; the atomics let lineCount() read them from any thread.
std::atomic<quint64> sLineCounts[SlotCount] = {};

void countLine_locked(int slot)
{
    std::atomic<quint64> &count = sLineCounts[slot];
    count.store(count.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

} // namespace

LogQt LogQt::s_instance(Log::instance());

LogQt::LogQt()
    : log(this)
    , devices(SlotCount, nullptr)
    , streams(SlotCount, nullptr)
{ }

LogQt::LogQt(Log &other)
    : log(&other)
    , devices(SlotCount, nullptr)
    , streams(SlotCount, nullptr)
{ }

// The devices and text streams stay alive: code that runs during exit may still log through them.
LogQt::~LogQt() = default;

Mutex &LogQt::mutex()
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

void LogQt::setStream(ELevel level, std::ostream *stream, bool takeOwnership)
{
    log->setStream(level, stream, takeOwnership);
}

void LogQt::setLogFile(ELevel level, const char *path, bool append)
{
    log->setLogFile(level, std::string(path), append);
}

void LogQt::setLogFile(const char *path, bool append)
{
    log->setLogFile(std::string(path), append);
}

void LogQt::setLogFile(ELevel level, const QString &path, bool append)
{
    Log::setLogFile(level, compat::toAscii(path).toStdString(), append);
}

void LogQt::setLogFile(const QString &path, bool append)
{
    Log::setLogFile(compat::toAscii(path).toStdString(), append);
}

void LogQt::setStdOut(const QString &path, bool append, bool alsoStdErr)
{
    Log::setStdOut(compat::toAscii(path).toStdString(), append, alsoStdErr);
}

void LogQt::setDefaultLogFile(const QString &path, bool append)
{
    Log::setDefaultLogFile(compat::toAscii(path).toStdString(), append);
}

QTextStream *LogQt::getStream(ELevel level)
{
    // Levels above the last slot use slot 0, and so do negative ones (outside the contract).
    MutexLocker lock(log->mutex(), true);
    return getStream_locked(slotOf(level));
}

QTextStream *LogQt::getStream_locked(int slot)
{
    // The slot number, not the raw level, is what the fronted log is asked for.
    std::ostream *os = log->getStream(ELevel(slot));
    std::streambuf *buffer = os ? os->rdbuf() : nullptr;
    TStreambufDevice<std::streambuf> *&device = devices[slot];
    QTextStream *&stream = streams[slot];
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

// The buffer a line's text may be written to directly, bypassing the slot's text stream: only
// where the stream would pass ASCII and UTF-8 text on unchanged, straight to its own device.
std::streambuf *LogQt::directTarget_locked(int slot)
{
    QTextStream *stream = streams[slot];
    TStreambufDevice<std::streambuf> *device = devices[slot];
    if (stream->device() != device || !device->isWritable() || stream->status() != QTextStream::Ok
        || stream->fieldWidth() != 0 || stream->generateByteOrderMark()
        || !compat::writesUtf8(*stream))
        return nullptr;
    return device->writeStreambuf() ? device->writeStreambuf() : device->streambuf();
}

void LogQt::write(ELevel level, const QString &text)
{
    LogLine(level) << text;
}

quint64 LogQt::lineCount(ELevel level)
{
    return sLineCounts[slotOf(level)].load(std::memory_order_relaxed);
}

void LogQt::qtMsgHandler(QtMsgType type, const char *text)
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
    LogLine::writeMarked(level, " Qt> ", text);
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

LogLine::LogLine(Log::ELevel level)
    : LogLine(level, nullptr)
{ }

// The idiom's common part for both kinds of line: the lock, the level's stream, the threshold, the
// saved flags and the prefix. A marked line works on the fronted log's std::ostream,
// ko::Log::instance().
LogLine::LogLine(Log::ELevel level, const char *marker)
    : mLocker(LogQt::s_instance.mutex(), true)
    , mSlot(slotOf(level))
{
    LogQt &front = LogQt::s_instance;
    if (marker) {
        mMarkedStream = front.log->getStream(level);
        if (!mMarkedStream || front.logLevel() > level) {
            mMarkedStream = nullptr;
            return;
        }
        mFormatFlags = mMarkedStream->flags();
        front.pre(level);
        *mMarkedStream << marker;
        return;
    }
    mStream = front.getStream_locked(mSlot);
    if (!mStream || front.logLevel() > level) {
        mStream = nullptr;
        return;
    }
    mNumberFlags = mStream->numberFlags();
    front.pre(level);
    // Text a caller left in the stream follows the prefix, ahead of this line's own.
    mStream->flush();
    mTarget = front.directTarget_locked(mSlot);
}

LogLine::~LogLine()
{
    if (!mStream)
        return;
    if (mTarget) {
        // As the text stream's device does: one write of the text, then a sync of the buffer.
        *room(1) = '\n';
        ++mSize;
        const std::streamsize written = mTarget->sputn(mBytes, mSize);
        mTarget->pubsync();
        if (written != mSize)
            mStream->setStatus(QTextStream::WriteFailed);
    } else {
        // Only a line the text stream wrote may have changed its number flags (with a manipulator).
        writePendingSurrogate();
        *mStream << Qt::endl;
        mStream->setNumberFlags(mNumberFlags);
    }
    countLine_locked(mSlot);
}

void LogLine::writeMarked(Log::ELevel level, const char *marker, const char *text)
{
    LogLine line(level, marker);
    std::ostream *os = line.mMarkedStream;
    if (!os)
        return;
    if (text)
        *os << text;
    else
        os->setstate(std::ios_base::badbit);
    *os << '\n';
    os->flush();
    os->flags(line.mFormatFlags);
    countLine_locked(line.mSlot);
}

// Hands the text so far to the text stream, which then writes the rest of the line as well.
void LogLine::leaveDirect()
{
    if (!mTarget)
        return;
    mTarget = nullptr;
    if (mSize > 0)
        *mStream << QString::fromUtf8(mBytes, int(mSize));
}

// Text for the text stream. Qt 5's UTF-8 encoder wrote '?' for a surrogate without its partner, Qt
// 6's writes U+FFFD: such a surrogate is made '?' here, and a high one that ends the text is held
// back for the low one that may start the next.
void LogLine::writeUtf16(QStringView text)
{
    QString out;
    out.reserve(text.size() + 1);
    if (!mPendingHigh.isNull())
        out += mPendingHigh;
    out += text;
    mPendingHigh = QChar();
    if (!out.isEmpty() && out.at(out.size() - 1).isHighSurrogate()) {
        mPendingHigh = out.at(out.size() - 1);
        out.chop(1);
    }
    QChar *const c = out.data();
    for (int i = 0; i < out.size(); ++i) {
        if (c[i].isHighSurrogate() && i + 1 < out.size() && c[i + 1].isLowSurrogate())
            ++i;
        else if (c[i].isSurrogate())
            c[i] = QLatin1Char('?');
    }
    *mStream << out;
}

// A high surrogate held back and not followed by its low one.
void LogLine::writePendingSurrogate()
{
    if (mPendingHigh.isNull())
        return;
    mPendingHigh = QChar();
    *mStream << QLatin1Char('?');
}

// Room for @p size more bytes at the end of the line's text.
char *LogLine::room(qsizetype size)
{
    if (mSize + size > mCapacity) {
        mCapacity = std::max(2 * mCapacity, mSize + size);
        std::unique_ptr<char[]> heap(new char[size_t(mCapacity)]);
        std::memcpy(heap.get(), mBytes, size_t(mSize));
        mHeap = std::move(heap);
        mBytes = mHeap.get();
    }
    return mBytes + mSize;
}

bool LogLine::appendCString(const char *text)
{
    // A null pointer writes nothing, as the text stream does.
    const qsizetype size = text ? qsizetype(std::strlen(text)) : 0;
    return appendLatin1(text, size);
}

bool LogLine::appendLatin1(const char *text, qsizetype size)
{
    // Log text is mostly ASCII, copied as it is: eight bytes at a time are checked.
    qsizetype ascii = 0;
    for (quint64 eight; size - ascii >= 8; ascii += 8) {
        std::memcpy(&eight, text + ascii, sizeof eight);
        if (eight & Q_UINT64_C(0x8080808080808080))
            break;
    }
    ascii = std::find_if(text + ascii, text + size, [](char c) { return uchar(c) >= 0x80; }) - text;
    // Latin-1 letters above ASCII take two bytes in UTF-8.
    char *const start = room(ascii + 2 * (size - ascii));
    char *out = std::copy(text, text + ascii, start);
    for (const char *c = text + ascii; c != text + size; ++c) {
        const uchar byte = uchar(*c);
        if (byte < 0x80) {
            *out++ = char(byte);
        } else {
            *out++ = char(0xc0 | byte >> 6);
            *out++ = char(0x80 | (byte & 0x3f));
        }
    }
    mSize += out - start;
    return true;
}

bool LogLine::appendUtf16(const QChar *text, qsizetype size)
{
    const qsizetype before = mSize;
    char *const start = room(size);
    char *out = start;
    const QChar *c = text;
    const QChar *const end = text + size;
    // Log text is mostly ASCII: four characters at a time are checked and narrowed.
    for (quint64 four; end - c >= 4; c += 4, out += 4) {
        std::memcpy(&four, c, sizeof four);
        if (four & Q_UINT64_C(0xff80ff80ff80ff80))
            break;
        out[0] = char(c[0].unicode());
        out[1] = char(c[1].unicode());
        out[2] = char(c[2].unicode());
        out[3] = char(c[3].unicode());
    }
    for (; c != end && c->unicode() < 0x80; ++c)
        *out++ = char(c->unicode());
    mSize += out - start;
    if (c == end)
        return true;
    // Room for three bytes a character from here on.
    out = room(3 * (end - c));
    for (; c != end; ++c) {
        const ushort u = c->unicode();
        if (u < 0x80) {
            *out++ = char(u);
        } else if (u < 0x800) {
            *out++ = char(0xc0 | u >> 6);
            *out++ = char(0x80 | (u & 0x3f));
        } else if (!c->isSurrogate()) {
            *out++ = char(0xe0 | u >> 12);
            *out++ = char(0x80 | (u >> 6 & 0x3f));
            *out++ = char(0x80 | (u & 0x3f));
        } else {
            // A pair may be split across values, and a lone one is replaced: the text stream's
            // encoder decides.
            mSize = before;
            return false;
        }
    }
    mSize = out - mBytes;
    return true;
}

bool LogLine::appendInteger(qulonglong magnitude, bool negative)
{
    // Plain digits need the default number flags, base 10 and the C locale (no group separators).
    if (mPlainNumbers < 0) {
        const int base = mStream->integerBase();
        mPlainNumbers
            = !mNumberFlags && (base == 0 || base == 10) && mStream->locale() == QLocale::c();
    }
    if (!mPlainNumbers)
        return false;
    char *const start = room(21); // a sign and 20 digits
    char *end = start;
    if (negative)
        *end++ = '-';
    end = std::to_chars(end, start + 21, magnitude).ptr;
    mSize += end - start;
    return true;
}

} // namespace ko
