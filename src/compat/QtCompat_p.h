// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_QTCOMPAT_P_H
#define KO_QTCOMPAT_P_H

// The library's one place for the differences between Qt 5 and Qt 6 inside its sources: each
// helper calls the Qt 5 function the library was written against, or on Qt 6 does what that
// function did. Internal, never installed.

#include "compat/QtCompat.h"

#include <QAbstractEventDispatcher>
#include <QByteArray>
#include <QDateTime>
#include <QRegExp>
#include <QStringList>
#include <QTextCodec>
#include <QTextStream>
#include <QVariant>
#include <QWaitCondition>

namespace ko::compat
{

/** A handler for Qt's messages in Qt 4's form: the message as local 8-bit text. */
using MessageHandler = void (*)(QtMsgType type, const char *text);

/** The user type marker of a serialised QVariant in Qt 5.15's data stream format, the one used. */
constexpr quint32 kStreamUserType = 1024;

/** QString::split() at each @p separator. */
inline QStringList split(const QString &text, const QString &separator, SplitBehavior behavior)
{
    return text.split(separator, behavior);
}

/**
 * Starts the timer handed to a job (QTime::start() on Qt 5); returns the same instant on the job
 * pool's monotonic clock (monotonicNsecs()).
 */
qint64 startJobTimer(JobTimer &timer);
/** The milliseconds a job's timer has run (QTime::elapsed() on Qt 5). */
int jobTimerElapsed(const JobTimer &timer);

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

/** QString::toAscii(): Latin-1 on Qt 5. */
inline QByteArray toAscii(const QString &text)
{
    return text.toAscii();
}

/** QString::fromAscii(): Latin-1 on Qt 5; @p size -1 reads up to the first zero byte. */
inline QString fromAscii(const char *text, int size = -1)
{
    return QString::fromAscii(text, size);
}

/** QDateTime::setTime_t(). */
inline void setTime_t(QDateTime &dateTime, uint seconds)
{
    dateTime.setTime_t(seconds);
}

/** QDateTime::fromTime_t(): local time. */
inline QDateTime fromTime_t(uint seconds)
{
    return QDateTime::fromTime_t(seconds);
}

/** QDateTime::toTime_t(): uint(-1) for an invalid time or one outside 32 bits. */
inline uint toTime_t(const QDateTime &dateTime)
{
    return dateTime.toTime_t();
}

/** QString::split() at the matches of @p separator. */
inline QStringList split(const QString &text, const QRegExp &separator, SplitBehavior behavior)
{
    return text.split(separator, behavior);
}

/** QVariant::canConvert(). */
inline bool canConvert(const QVariant &value, int typeId)
{
    return value.canConvert(typeId);
}

/** Converts @p value to the type @p typeId when QVariant can; false (and @p value unusable)
 * otherwise. */
inline bool convert(QVariant &value, int typeId)
{
    return value.canConvert(typeId) && value.convert(typeId);
}

/** The id of the type registered as @p name; QMetaType::UnknownType when none is. */
inline int typeId(const char *name)
{
    return QMetaType::type(name);
}

/** QVariant::isNull(): also true for a held value that is null itself (a null QString, QDate, ...).
 */
inline bool isNull(const QVariant &value)
{
    return value.isNull();
}

/** QAbstractEventDispatcher::flush(). */
inline void flush(QAbstractEventDispatcher *dispatcher)
{
    dispatcher->flush();
}

/** QWaitCondition::wait(): false at once for a recursive mutex, with Qt's warning. */
inline bool wait(QWaitCondition &condition, RecursionModeMutex *mutex)
{
    return condition.wait(mutex);
}

/** Installs @p handler for Qt's messages (qInstallMsgHandler); null puts Qt's default back. */
inline void installMessageHandler(MessageHandler handler)
{
    qInstallMsgHandler(handler);
}

/** Whether @p stream writes UTF-8: its codec's. */
inline bool writesUtf8(const QTextStream &stream)
{
    return stream.codec() && stream.codec()->mibEnum() == 106;
}

/** Makes @p stream write Latin-1: its codec. */
inline void writeLatin1(QTextStream &stream)
{
    stream.setCodec("ISO-8859-1");
}

#else

/** Qt 5's QString::toAscii(): Latin-1. */
inline QByteArray toAscii(const QString &text)
{
    return text.toLatin1();
}

/** Qt 5's QString::fromAscii(): Latin-1; @p size -1 reads up to the first zero byte. */
inline QString fromAscii(const char *text, qsizetype size = -1)
{
    return QString::fromLatin1(text, size);
}

/** Qt 5's QDateTime::setTime_t(). */
inline void setTime_t(QDateTime &dateTime, uint seconds)
{
    dateTime.setSecsSinceEpoch(qint64(seconds));
}

/** Qt 5's QDateTime::fromTime_t(): local time. */
inline QDateTime fromTime_t(uint seconds)
{
    return QDateTime::fromSecsSinceEpoch(qint64(seconds), Qt::LocalTime);
}

/** Qt 5's QDateTime::toTime_t(): uint(-1) for an invalid time or one outside 32 bits. */
inline uint toTime_t(const QDateTime &dateTime)
{
    if (!dateTime.isValid())
        return uint(-1);
    const qint64 seconds = dateTime.toMSecsSinceEpoch() / 1000;
    return quint64(seconds) >= Q_UINT64_C(0xFFFFFFFF) ? uint(-1) : uint(seconds);
}

/** Qt 5's QString::split() at the matches of @p separator. */
inline QStringList split(const QString &text, const QRegExp &separator, SplitBehavior behavior)
{
    return separator.splitString(text, behavior);
}

/**
 * Qt 5's QVariant::canConvert() where the library meets a difference: text does not become a
 * variant list but does become any enumeration, and neither a string list of other than one
 * element, a long, an unsigned long, an unsigned char, a CBOR simple type nor an enumeration
 * becomes text.
 */
bool canConvert(const QVariant &value, int typeId);

/**
 * Qt 5's QVariant::canConvert() followed by convert(): false (and @p value unusable) when either
 * fails. Text that names no enumerator becomes an enumeration as its number, as in Qt 5.
 */
bool convert(QVariant &value, int typeId);

/** The id of the type registered as @p name; QMetaType::UnknownType when none is. */
inline int typeId(const char *name)
{
    return QMetaType::fromName(name).id();
}

/** Qt 5's QVariant::isNull(): also true for a held value that is null itself (a null QString,
 * QDate, ...). */
bool isNull(const QVariant &value);

/** Qt 5's QAbstractEventDispatcher::flush(), which did nothing on Linux. */
inline void flush(QAbstractEventDispatcher *) { }

/** Qt 5's QWaitCondition::wait(): false at once for a recursive mutex, with Qt 5's warning. */
bool wait(QWaitCondition &condition, RecursionModeMutex *mutex);

/**
 * Installs @p handler for Qt's messages as Qt 5's qInstallMsgHandler did, handing it each message
 * as local 8-bit text; null puts Qt's default back.
 */
void installMessageHandler(MessageHandler handler);

/** Whether @p stream writes UTF-8: its encoding (Qt 5's codec). */
inline bool writesUtf8(const QTextStream &stream)
{
    return stream.encoding() == QStringConverter::Utf8;
}

/** Makes @p stream write Latin-1: its encoding (Qt 5's codec). */
inline void writeLatin1(QTextStream &stream)
{
    stream.setEncoding(QStringConverter::Latin1);
}

#endif

} // namespace ko::compat

#endif // KO_QTCOMPAT_P_H
