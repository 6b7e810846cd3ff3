// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "signals/SignalUtils.h"

#include "log/LogQt.h"
#include "signals/QtSlot.h"

#include <QMetaMethod>
#include <QMetaObject>

namespace ko
{

namespace
{

// A null object is outside the callers' contract; it is shown as "(null)" rather than read.
const char *classOf(const QObject *object)
{
    return object ? object->metaObject()->className() : "(null)";
}

// The metaobject index of a method code's signature (the text after the code digit), or -1.
int indexOfCode(
    const QObject *object, const char *code, int (QMetaObject::*lookup)(const char *) const)
{
    // A null object or code is outside the callers' contract: nothing is found.
    if (!object || !code || !*code)
        return -1;
    return (object->metaObject()->*lookup)(QMetaObject::normalizedSignature(code + 1).constData());
}

} // namespace

QtSignal::QtSignal(const QObject *sender_, const char *signal_)
    : sender(sender_)
    , signal(signal_)
{ }

SignalConnection::SignalConnection(const QObject *sender_, const char *signal_,
    const QObject *receiver_, const char *method_, Qt::ConnectionType type_)
    : sender(const_cast<QObject *>(sender_))
    , signal(signal_)
    , receiver(const_cast<QObject *>(receiver_))
    , method(method_)
    , type(type_)
{ }

bool connect(const QObject *sender, const char *signal, const QObject *receiver, const char *method,
    Qt::ConnectionType type)
{
    if (QObject::connect(sender, signal, receiver, method, type))
        return true;
    LogLine(Log::Error) << "Connect " << classOf(sender) << "." << signal << " to "
                        << classOf(receiver) << "." << method << " failed.";
    return false;
}

bool connect(const SignalConnection &conn)
{
    return connect(conn.sender.data(), conn.signal, conn.receiver.data(), conn.method, conn.type);
}

bool connect(const QtSignal &s, const QtSlot &r, Qt::ConnectionType type)
{
    return connect(s.sender, s.signal, r.receiver, r.slot, type);
}

bool connect(
    const QtSignal &s, const QObject *receiver, const char *method, Qt::ConnectionType type)
{
    return connect(s.sender, s.signal, receiver, method, type);
}

bool connect(const QObject *sender, const char *signal, const QtSlot &r, Qt::ConnectionType type)
{
    return connect(sender, signal, r.receiver, r.slot, type);
}

bool disconnect(
    const QObject *sender, const char *signal, const QObject *receiver, const char *method)
{
    const bool done = QObject::disconnect(sender, signal, receiver, method);
    // Wildcard disconnects finding nothing are normal and stay silent.
    if (!done && sender && signal && receiver && method)
        LogLine(Log::Error) << "Disconnect " << classOf(sender) << "." << signal << " to "
                            << classOf(receiver) << "." << method << " failed.";
    return done;
}

bool disconnect(const SignalConnection &conn)
{
    return disconnect(conn.sender.data(), conn.signal, conn.receiver.data(), conn.method);
}

bool disconnect(const QObject *sender, const QObject *receiver)
{
    return disconnect(sender, nullptr, receiver, nullptr);
}

bool disconnectFrom(const QObject *sender, const char *signal)
{
    return disconnect(sender, signal, nullptr, nullptr);
}

bool disconnectTo(const QObject *receiver, const char *method)
{
    return disconnect(nullptr, nullptr, receiver, method);
}

bool disconnectFrom(const QtSignal &s)
{
    return disconnectFrom(s.sender, s.signal);
}

bool disconnectTo(const QtSlot &r)
{
    return disconnectTo(r.receiver, r.slot);
}

bool disconnect(const QtSignal &s, const QObject *receiver, const char *method)
{
    return disconnect(s.sender, s.signal, receiver, method);
}

bool existsSignal(const QObject *object, const char *signal)
{
    if (indexOfCode(object, signal, &QMetaObject::indexOfSignal) >= 0)
        return true;
    LogLine(Log::Warning) << "Signal not found: " << classOf(object) << "::" << signal;
    return false;
}

bool invoke(QObject *object, const char *member, Qt::ConnectionType type, QGenericArgument val0,
    QGenericArgument val1, QGenericArgument val2, QGenericArgument val3, QGenericArgument val4,
    QGenericArgument val5, QGenericArgument val6, QGenericArgument val7, QGenericArgument val8,
    QGenericArgument val9)
{
    if (QMetaObject::invokeMethod(object, member, type, QGenericReturnArgument(), val0, val1, val2,
            val3, val4, val5, val6, val7, val8, val9))
        return true;
    LogLine(Log::Error) << "invokeMethod " << classOf(object) << "." << member << " failed.";
    return false;
}

bool invokeDirect(QObject *object, const char *member, QGenericArgument val0, QGenericArgument val1,
    QGenericArgument val2, QGenericArgument val3, QGenericArgument val4, QGenericArgument val5,
    QGenericArgument val6, QGenericArgument val7, QGenericArgument val8, QGenericArgument val9)
{
    return invoke(object, member, Qt::DirectConnection, val0, val1, val2, val3, val4, val5, val6,
        val7, val8, val9);
}

bool invokeQueued(QObject *object, const char *member, QGenericArgument val0, QGenericArgument val1,
    QGenericArgument val2, QGenericArgument val3, QGenericArgument val4, QGenericArgument val5,
    QGenericArgument val6, QGenericArgument val7, QGenericArgument val8, QGenericArgument val9)
{
    return invoke(object, member, Qt::QueuedConnection, val0, val1, val2, val3, val4, val5, val6,
        val7, val8, val9);
}

bool invokeSlot(QObject *object, const char *slot, Qt::ConnectionType type, QGenericArgument val0,
    QGenericArgument val1, QGenericArgument val2, QGenericArgument val3, QGenericArgument val4,
    QGenericArgument val5, QGenericArgument val6, QGenericArgument val7, QGenericArgument val8,
    QGenericArgument val9)
{
    const int index = indexOfCode(object, slot, &QMetaObject::indexOfSlot);
    // indexOfSlot() also finds Q_INVOKABLE methods; only real slots are invoked here.
    const QMetaMethod method = index >= 0 ? object->metaObject()->method(index) : QMetaMethod();
    if (method.methodType() == QMetaMethod::Slot
        && method.invoke(object, type, QGenericReturnArgument(), val0, val1, val2, val3, val4, val5,
            val6, val7, val8, val9))
        return true;
    LogLine(Log::Error) << "invokeMethod " << classOf(object) << "." << slot << " failed.";
    return false;
}

bool invokeSlotDirect(QObject *object, const char *slot, QGenericArgument val0,
    QGenericArgument val1, QGenericArgument val2, QGenericArgument val3, QGenericArgument val4,
    QGenericArgument val5, QGenericArgument val6, QGenericArgument val7, QGenericArgument val8,
    QGenericArgument val9)
{
    return invokeSlot(object, slot, Qt::DirectConnection, val0, val1, val2, val3, val4, val5, val6,
        val7, val8, val9);
}

bool invokeSlotQueued(QObject *object, const char *slot, QGenericArgument val0,
    QGenericArgument val1, QGenericArgument val2, QGenericArgument val3, QGenericArgument val4,
    QGenericArgument val5, QGenericArgument val6, QGenericArgument val7, QGenericArgument val8,
    QGenericArgument val9)
{
    return invokeSlot(object, slot, Qt::QueuedConnection, val0, val1, val2, val3, val4, val5, val6,
        val7, val8, val9);
}

StSignals::StSignals() = default;

StSignals::~StSignals() = default;

StConnectSignals::StConnectSignals() = default;

StConnectSignals::StConnectSignals(const StSignals &other)
{
    for (const auto &entry : other.record())
        connect(entry.first);
}

StConnectSignals::~StConnectSignals()
{
    // Every entry, also those whose connect failed: their disconnect fails and is logged.
    const auto entries = connections;
    for (const auto &entry : entries) {
        if (!entry.second)
            ko::disconnect(entry.first);
    }
}

bool StConnectSignals::connect(const SignalConnection &conn)
{
    const bool connected = ko::connect(conn);
    connections.append(qMakePair(conn, false));
    return connected;
}

bool StConnectSignals::connect(const QObject *sender, const char *signal, const QObject *receiver,
    const char *method, Qt::ConnectionType type)
{
    return connect(SignalConnection(sender, signal, receiver, method, type));
}

StDisconnectSignals::StDisconnectSignals() = default;

StDisconnectSignals::StDisconnectSignals(const StSignals &other)
{
    for (const auto &entry : other.record())
        disconnect(entry.first);
}

StDisconnectSignals::~StDisconnectSignals()
{
    // Only what was really broken comes back, so no connection is created that did not exist.
    const auto entries = connections;
    for (const auto &entry : entries) {
        if (entry.second)
            ko::connect(entry.first);
    }
}

bool StDisconnectSignals::disconnect(const SignalConnection &conn)
{
    const bool disconnected = ko::disconnect(conn);
    connections.append(qMakePair(conn, disconnected));
    return disconnected;
}

bool StDisconnectSignals::disconnect(
    const QObject *sender, const char *signal, const QObject *receiver, const char *method)
{
    return disconnect(SignalConnection(sender, signal, receiver, method, Qt::AutoConnection));
}

} // namespace ko
