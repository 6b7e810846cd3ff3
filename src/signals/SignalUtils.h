// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_SIGNALUTILS_H
#define KO_SIGNALUTILS_H

#include "coreqt_export.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>

namespace ko
{

struct QtSlot;

/** An object and one of its signals, given by its method code ("2name(args)"); neither is owned. */
struct COREQT_EXPORT QtSignal
{
    /** @p sender's signal @p signal (a method code with the digit 2). */
    QtSignal(const QObject *sender, const char *signal);

    /** The emitting object. */
    const QObject *sender;
    /** The signal's method code. */
    const char *signal;
};

/** One connection: guarded sender and receiver (null once destroyed), the two method codes and the
 * type. */
struct COREQT_EXPORT SignalConnection
{
    /** A connection from @p sender's @p signal to @p receiver's @p method. */
    SignalConnection(const QObject *sender, const char *signal, const QObject *receiver,
        const char *method, Qt::ConnectionType type = Qt::AutoConnection);

    /** The emitting object; null once it is destroyed. */
    QPointer<QObject> sender;
    /** The signal's method code (digit 2), not owned. */
    const char *signal;
    /** The receiving object; null once it is destroyed. */
    QPointer<QObject> receiver;
    /** The receiver's method code (digit 1 or 2), not owned. */
    const char *method;
    /** The connection type. */
    Qt::ConnectionType type;
};

/**
 * QObject::connect of two method codes; a failure is logged at level 3 with both class names and
 * the codes as given, such as "Connect QTimer.2timeout() to Player.1play() failed." (a null object
 * shows as "(null)").
 */
COREQT_EXPORT bool connect(const QObject *sender, const char *signal, const QObject *receiver,
    const char *method, Qt::ConnectionType type = Qt::AutoConnection);
/** Connects the five fields of @p conn. */
COREQT_EXPORT bool connect(const SignalConnection &conn);
/** Connects @p s to @p r. */
COREQT_EXPORT bool connect(
    const QtSignal &s, const QtSlot &r, Qt::ConnectionType type = Qt::AutoConnection);
/** Connects @p s to @p receiver's @p method. */
COREQT_EXPORT bool connect(const QtSignal &s, const QObject *receiver, const char *method,
    Qt::ConnectionType type = Qt::AutoConnection);
/** Connects @p sender's @p signal to @p r. */
COREQT_EXPORT bool connect(const QObject *sender, const char *signal, const QtSlot &r,
    Qt::ConnectionType type = Qt::AutoConnection);

/**
 * QObject::disconnect (null is "any"); a failure is logged at level 3 only when all four
 * arguments are given. Kept as it always was, unlike connect(): a wildcard disconnect that finds
 * nothing to break is normal and logs nothing.
 */
COREQT_EXPORT bool disconnect(
    const QObject *sender, const char *signal, const QObject *receiver, const char *method);
/** Disconnects the connection @p conn names; its type is ignored. */
COREQT_EXPORT bool disconnect(const SignalConnection &conn);
/** Disconnects everything from @p sender to @p receiver; a wildcard disconnect, never logged. */
COREQT_EXPORT bool disconnect(const QObject *sender, const QObject *receiver);
/** Disconnects everything connected to @p sender's @p signal; a wildcard disconnect, never logged.
 */
COREQT_EXPORT bool disconnectFrom(const QObject *sender, const char *signal);
/** Disconnects everything connected to @p receiver's @p method; a wildcard disconnect, never
 * logged. */
COREQT_EXPORT bool disconnectTo(const QObject *receiver, const char *method);
/** Disconnects everything connected to @p s; a wildcard disconnect, never logged. */
COREQT_EXPORT bool disconnectFrom(const QtSignal &s);
/** Disconnects everything connected to @p r; a wildcard disconnect, never logged. */
COREQT_EXPORT bool disconnectTo(const QtSlot &r);
/** Disconnects @p s from @p receiver's @p method. */
COREQT_EXPORT bool disconnect(const QtSignal &s, const QObject *receiver, const char *method);

/**
 * True when @p object's class declares @p signal (a method code, normalised before the lookup);
 * otherwise logs "Signal not found: <class>::<signal as given>" at level 2.
 */
COREQT_EXPORT bool existsSignal(const QObject *object, const char *signal);

/**
 * QMetaObject::invokeMethod of the bare method name @p member (no digit, no argument list); a
 * failure is logged at level 3, "invokeMethod <class>.<member> failed.".
 */
COREQT_EXPORT bool invoke(QObject *object, const char *member, Qt::ConnectionType type,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());
/** invoke() with Qt::DirectConnection. */
COREQT_EXPORT bool invokeDirect(QObject *object, const char *member,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());
/** invoke() with Qt::QueuedConnection. */
COREQT_EXPORT bool invokeQueued(QObject *object, const char *member,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());

/**
 * Invokes the slot given by its method code @p slot ("1name(args)"); only slots are found, not
 * signals or other invokable methods of that signature. A failure is logged at level 3,
 * "invokeMethod <class>.<slot as given> failed.".
 */
COREQT_EXPORT bool invokeSlot(QObject *object, const char *slot, Qt::ConnectionType type,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());
/** invokeSlot() with Qt::DirectConnection. */
COREQT_EXPORT bool invokeSlotDirect(QObject *object, const char *slot,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());
/** invokeSlot() with Qt::QueuedConnection. */
COREQT_EXPORT bool invokeSlotQueued(QObject *object, const char *slot,
    QGenericArgument val0 = QGenericArgument(), QGenericArgument val1 = QGenericArgument(),
    QGenericArgument val2 = QGenericArgument(), QGenericArgument val3 = QGenericArgument(),
    QGenericArgument val4 = QGenericArgument(), QGenericArgument val5 = QGenericArgument(),
    QGenericArgument val6 = QGenericArgument(), QGenericArgument val7 = QGenericArgument(),
    QGenericArgument val8 = QGenericArgument(), QGenericArgument val9 = QGenericArgument());

/** Base of the scoped connection sets: the connections in the order of the calls, each with its
 * undo flag. */
class COREQT_EXPORT StSignals
{
public:
    /** An empty record. */
    StSignals();
    /** Releases the record; undoing is the derived classes' business. */
    virtual ~StSignals();

    /** The record: each connection with its undo flag, in call order. */
    const QList<QPair<SignalConnection, bool>> &record() const { return connections; }

protected:
    /** Each connection with its undo flag, in call order; see the derived classes for the flag. */
    QList<QPair<SignalConnection, bool>> connections;

private:
    Q_DISABLE_COPY(StSignals)
};

/**
 * Makes connections and undoes every one it attempted when it ends, in the order made,
 * including those whose connect failed.
 */
class COREQT_EXPORT StConnectSignals : public StSignals
{
public:
    /** An empty set. */
    StConnectSignals();
    /** Connects every connection of @p other, in its order, whatever its flag. */
    explicit StConnectSignals(const StSignals &other);
    /** The same for another connecting set: its connections are made once more. */
    StConnectSignals(const StConnectSignals &other)
        : StConnectSignals(static_cast<const StSignals &>(other))
    { }
    /** Not assignable: a set undoes its own connections only. */
    StConnectSignals &operator=(const StConnectSignals &) = delete;
    /**
     * Disconnects every recorded connection, first one first; an entry whose object was destroyed
     * meanwhile breaks nothing and logs nothing of its own (Qt warns about the null object).
     */
    ~StConnectSignals() override;

    /** Connects @p conn and records it, whether the connect succeeded or not. */
    bool connect(const SignalConnection &conn);
    /** Connects @p sender's @p signal to @p receiver's @p method and records it. */
    bool connect(const QObject *sender, const char *signal, const QObject *receiver,
        const char *method, Qt::ConnectionType type = Qt::AutoConnection);
};

/**
 * Breaks connections and restores, when it ends, only those it really broke, so it
 * never creates a connection that did not exist before. The objects must outlive it.
 */
class COREQT_EXPORT StDisconnectSignals : public StSignals
{
public:
    /** An empty set. */
    StDisconnectSignals();
    /** Disconnects every connection of @p other, in its order, whatever its flag. */
    explicit StDisconnectSignals(const StSignals &other);
    /** The same for another disconnecting set: its connections are broken once more. */
    StDisconnectSignals(const StDisconnectSignals &other)
        : StDisconnectSignals(static_cast<const StSignals &>(other))
    { }
    /** Not assignable: a set restores its own connections only. */
    StDisconnectSignals &operator=(const StDisconnectSignals &) = delete;
    /**
     * Reconnects, first one first, every connection that was really broken, with its own type. An
     * entry whose object was destroyed meanwhile (outside the class's use) fails and is logged.
     */
    ~StDisconnectSignals() override;

    /** Disconnects @p conn and records whether a connection was broken. */
    bool disconnect(const SignalConnection &conn);
    /** Disconnects @p sender's @p signal from @p receiver's @p method and records the result. */
    bool disconnect(
        const QObject *sender, const char *signal, const QObject *receiver, const char *method);
};

} // namespace ko

#endif // KO_SIGNALUTILS_H
