// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "signals/SignalUtils.h"

#include <QtTest>

namespace
{

// Counts its slot calls; objectNameChanged(QString) of a second Emitter is the signal used.
class Receiver : public QObject
{
    Q_OBJECT
public:
    int calls = 0;
public Q_SLOTS:
    void onName(const QString &) { ++calls; }
};

const char *const kSignal = "2objectNameChanged(QString)";
const char *const kSlot = "1onName(QString)";

// Emits the signal once and returns how many times the receiver heard it.
int heard(QObject &sender, Receiver &receiver)
{
    const int before = receiver.calls;
    sender.setObjectName(sender.objectName() + QLatin1Char('x'));
    return receiver.calls - before;
}

} // namespace

class tst_StSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectGuard();
    void disconnectGuard();
    void guardsBuiltFromEachOther();
    void destroyedObjects();
};

void tst_StSignals::connectGuard()
{
    QObject sender;
    Receiver receiver;
    LogCapture capture;
    {
        ko::StConnectSignals guard;
        QVERIFY(guard.connect(&sender, kSignal, &receiver, kSlot));
        QVERIFY(guard.connect(
            ko::SignalConnection(&sender, kSignal, &receiver, kSlot, Qt::DirectConnection)));
        QVERIFY(!guard.connect(&sender, "2nothing()", &receiver, kSlot)); // recorded all the same
        QCOMPARE(guard.record().size(), 3);
        QVERIFY(!guard.record().at(0).second);
        QCOMPARE(heard(sender, receiver), 2);
        capture.clear();
    }
    QCOMPARE(heard(sender, receiver), 0);
    // Undone in record order: the first disconnect breaks both equal connections, so the
    // second finds nothing; the failed connect is undone too. Both failures are logged.
    QCOMPARE(capture.lines(ko::Log::Error),
        (QStringList {
            "Disconnect QObject.2objectNameChanged(QString) to Receiver.1onName(QString) failed.",
            "Disconnect QObject.2nothing() to Receiver.1onName(QString) failed." }));
}

void tst_StSignals::disconnectGuard()
{
    QObject sender;
    Receiver receiver;
    QObject::connect(&sender, kSignal, &receiver, kSlot);
    {
        ko::StDisconnectSignals guard;
        QVERIFY(guard.disconnect(&sender, kSignal, &receiver, kSlot));
        QVERIFY(!guard.disconnect(&sender, kSignal, &receiver, kSlot)); // nothing left to break
        QVERIFY(!guard.disconnect(&receiver, "2destroyed()", &sender, "1deleteLater()"));
        QCOMPARE(guard.record().at(0).second, true);
        QCOMPARE(guard.record().at(1).second, false);
        QCOMPARE(heard(sender, receiver), 0);
    }
    QCOMPARE(heard(sender, receiver), 1); // restored exactly once, nothing else created
}

void tst_StSignals::guardsBuiltFromEachOther()
{
    QObject sender;
    Receiver receiver;
    ko::StConnectSignals *connecting = new ko::StConnectSignals;
    connecting->connect(&sender, kSignal, &receiver, kSlot);
    {
        ko::StDisconnectSignals breaking(*connecting);
        QCOMPARE(heard(sender, receiver), 0);
    }
    QCOMPARE(heard(sender, receiver), 1);
    {
        ko::StConnectSignals again(*connecting); // a second connection of the same pair
        QCOMPARE(heard(sender, receiver), 2);
    }
    delete connecting;
    QCOMPARE(heard(sender, receiver), 0);
}

void tst_StSignals::destroyedObjects()
{
    Receiver receiver;
    LogCapture capture;
    {
        ko::StConnectSignals guard;
        auto *sender = new QObject;
        guard.connect(sender, kSignal, &receiver, kSlot);
        delete sender; // the undo meets a null sender: refused by Qt, nothing logged
    }
    QVERIFY(capture.allLines().isEmpty());

    // Outside the contract: a broken connection whose receiver died cannot come back;
    // the reconnect fails harmlessly and its line shows the missing object as null.
    QObject sender;
    {
        auto *doomed = new Receiver;
        QObject::connect(&sender, kSignal, doomed, kSlot);
        ko::StDisconnectSignals guard;
        QVERIFY(guard.disconnect(&sender, kSignal, doomed, kSlot));
        delete doomed;
    }
    QCOMPARE(capture.lines(ko::Log::Error),
        QStringList {
            "Connect QObject.2objectNameChanged(QString) to (null).1onName(QString) failed." });
}

QTEST_GUILESS_MAIN(tst_StSignals)
#include "tst_StSignals.moc"
