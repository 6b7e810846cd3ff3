// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// The compatibility helpers of the Qt 6 build that are not inline (see QtCompat_p.h), and
// ko::RecursionModeMutex.
#include "compat/QtCompat_p.h"

#include "threads/JobActivity_p.h"

#include <QBitArray>
#include <QCborValue>
#include <QJsonDocument>
#include <QJsonValue>
#include <QLine>
#include <QRect>
#include <QSize>
#include <QThread>
#include <QUuid>

#include <atomic>
#include <climits>

namespace ko
{

RecursionModeMutex::RecursionModeMutex(RecursionMode mode)
    : mRecursive(mode == Recursive)
    , mOwner(nullptr)
    , mDepth(0)
{ }

RecursionModeMutex::~RecursionModeMutex() = default;

void RecursionModeMutex::lock()
{
    tryLock(-1);
}

bool RecursionModeMutex::tryLock(int timeout)
{
    // Only the holder finds itself as the owner; any other thread sees another owner or none.
    if (mRecursive && mOwner.loadRelaxed() == QThread::currentThreadId()) {
        ++mDepth;
        return true;
    }
    if (!QMutex::tryLock(timeout))
        return false;
    if (mRecursive) {
        mOwner.storeRelaxed(QThread::currentThreadId());
        mDepth = 1;
    }
    return true;
}

void RecursionModeMutex::unlock()
{
    if (mRecursive) {
        if (--mDepth > 0)
            return;
        mOwner.storeRelaxed(nullptr);
    }
    QMutex::unlock();
}

bool RecursionModeMutex::isRecursive() const
{
    return mRecursive;
}

namespace compat
{

namespace
{

std::atomic<MessageHandler> sMessageHandler { nullptr };

void forwardMessage(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (const MessageHandler handler = sMessageHandler.load())
        handler(type, message.toLocal8Bit().constData());
}

template <typename T> bool heldIsNull(const QVariant &value)
{
    return static_cast<const T *>(value.constData())->isNull();
}

bool isEnumeration(QMetaType type)
{
    return type.flags().testFlag(QMetaType::IsEnumeration);
}

// Qt 5 turned text into any enumeration by its number when no enumerator had that name.
bool textToEnumeration(QVariant &value, QMetaType type)
{
    bool ok = false;
    const qlonglong number = value.toString().toLongLong(&ok);
    if (!ok)
        return false;
    const auto store = [&value, type](auto stored) {
        value = QVariant(type, &stored);
        return true;
    };
    switch (type.sizeOf()) {
    case 1:
        return store(qint8(number));
    case 2:
        return store(qint16(number));
    case 4:
        return store(qint32(number));
    case 8:
        return store(qint64(number));
    default:
        return false;
    }
}

} // namespace

qint64 startJobTimer(JobTimer &timer)
{
    timer.start();
    return monotonicNsecs();
}

int jobTimerElapsed(const JobTimer &timer)
{
    // A job that invalidated its timer gets 0, as Qt 5's invalid QTime gave; a run beyond the int
    // range gets its end.
    return timer.isValid() ? int(qMin(timer.elapsed(), qint64(INT_MAX))) : 0;
}

bool isNull(const QVariant &value)
{
    if (value.isNull())
        return true;
    // The built-in types whose own isNull() Qt 5 asked.
    switch (value.userType()) {
    case QMetaType::QChar:
        return heldIsNull<QChar>(value);
    case QMetaType::QString:
        return heldIsNull<QString>(value);
    case QMetaType::QByteArray:
        return heldIsNull<QByteArray>(value);
    case QMetaType::QBitArray:
        return heldIsNull<QBitArray>(value);
    case QMetaType::QDate:
        return heldIsNull<QDate>(value);
    case QMetaType::QTime:
        return heldIsNull<QTime>(value);
    case QMetaType::QDateTime:
        return heldIsNull<QDateTime>(value);
    case QMetaType::QRect:
        return heldIsNull<QRect>(value);
    case QMetaType::QRectF:
        return heldIsNull<QRectF>(value);
    case QMetaType::QSize:
        return heldIsNull<QSize>(value);
    case QMetaType::QSizeF:
        return heldIsNull<QSizeF>(value);
    case QMetaType::QLine:
        return heldIsNull<QLine>(value);
    case QMetaType::QLineF:
        return heldIsNull<QLineF>(value);
    case QMetaType::QPoint:
        return heldIsNull<QPoint>(value);
    case QMetaType::QPointF:
        return heldIsNull<QPointF>(value);
    case QMetaType::QUuid:
        return heldIsNull<QUuid>(value);
    case QMetaType::QJsonValue:
        return heldIsNull<QJsonValue>(value);
    case QMetaType::QJsonDocument:
        return heldIsNull<QJsonDocument>(value);
    case QMetaType::QCborValue:
        return heldIsNull<QCborValue>(value);
    case QMetaType::QVariant:
        return isNull(*static_cast<const QVariant *>(value.constData()));
    default:
        return false;
    }
}

bool canConvert(const QVariant &value, int typeId)
{
    const QMetaType target(typeId);
    const int source = value.userType();
    if (source == QMetaType::QString) {
        if (typeId == QMetaType::QVariantList)
            return false;
        if (isEnumeration(target))
            return true;
    }
    if (typeId == QMetaType::QString) {
        if (source == QMetaType::QStringList)
            return static_cast<const QStringList *>(value.constData())->size() == 1;
        if (source == QMetaType::Long || source == QMetaType::ULong || source == QMetaType::UChar
            || source == QMetaType::QCborSimpleType || isEnumeration(value.metaType()))
            return false;
    }
    return value.canConvert(target);
}

bool convert(QVariant &value, int typeId)
{
    if (!canConvert(value, typeId))
        return false;
    const QMetaType target(typeId);
    const bool text = value.userType() == QMetaType::QString;
    QVariant converted = value;
    if (converted.convert(target)) {
        value = converted;
        return true;
    }
    return text && isEnumeration(target) && textToEnumeration(value, target);
}

bool wait(QWaitCondition &condition, RecursionModeMutex *mutex)
{
    if (!mutex)
        return false;
    if (mutex->isRecursive()) {
        qWarning("QWaitCondition: cannot wait on recursive mutexes");
        return false;
    }
    return condition.wait(mutex);
}

void installMessageHandler(MessageHandler handler)
{
    sMessageHandler.store(handler);
    qInstallMessageHandler(handler ? &forwardMessage : nullptr); // none: Qt's default again
}

} // namespace compat

} // namespace ko
