// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "signals/QtSlot.h"
#include "signals/SignalUtils.h"

#include <QtTest>

#include <functional>

class Emitter : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void invokable(int value) { last = value; }
    int last = 0;

Q_SIGNALS:
    void ping(int value);
    void pong();

public Q_SLOTS:
    void onPing(int value) { last = value; }
};

typedef std::function<bool(Emitter *a, Emitter *b)> Call;
Q_DECLARE_METATYPE(Call)

namespace
{
const char *const kPing = "2ping(int)";
const char *const kOnPing = "1onPing(int)";
} // namespace

class tst_SignalUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logLines_data();
    void logLines();
    void slotName_data();
    void slotName();
    void signalConnection();
};

void tst_SignalUtils::logLines_data()
{
    using ko::QtSignal;
    using ko::QtSlot;
    QTest::addColumn<Call>("call");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QStringList>("lines"); // "<level>|<text>"
    const auto row
        = [](const char *name, Call call, bool result, const QStringList &lines = QStringList()) {
              QTest::newRow(name) << call << result << lines;
          };
    const QString pongFailed = "3|Connect Emitter.2pong() to Emitter.1onPing(int) failed.";
    const QString disconnectFailed
        = "3|Disconnect Emitter.2ping(int) to Emitter.1onPing(int) failed.";
    row(
        "connect", [](Emitter *a, Emitter *b) { return ko::connect(a, kPing, b, kOnPing); }, true);
    // Outside the callers' contract: a null object is shown as "(null)", not read.
    row("connect, no code digit or null",
        [](Emitter *a, Emitter *b) {
            return ko::connect(a, "ping(int)", b, kOnPing)
                || ko::connect(nullptr, kPing, b, kOnPing);
        },
        false,
        { "3|Connect Emitter.ping(int) to Emitter.1onPing(int) failed.",
            "3|Connect (null).2ping(int) to Emitter.1onPing(int) failed." });
    row("connect, records",
        [](Emitter *a, Emitter *b) {
            return ko::connect(ko::SignalConnection(a, "2pong()", b, kOnPing))
                || ko::connect(QtSignal(a, "2pong()"), QtSlot(b, kOnPing))
                || ko::connect(QtSignal(a, "2pong()"), b, kOnPing)
                || ko::connect(a, "2pong()", QtSlot(b, kOnPing));
        },
        false, { pongFailed, pongFailed, pongFailed, pongFailed });
    // With nothing connected, only a disconnect naming all four parts logs.
    row("disconnect",
        [](Emitter *a, Emitter *b) {
            return ko::disconnect(a, kPing, b, kOnPing)
                || ko::disconnect(ko::SignalConnection(a, kPing, b, kOnPing))
                || ko::disconnect(QtSignal(a, kPing), b, kOnPing) || ko::disconnect(a, b)
                || ko::disconnectFrom(QtSignal(a, kPing)) || ko::disconnectTo(QtSlot(b, kOnPing));
        },
        false, { disconnectFailed, disconnectFailed, disconnectFailed });
    row(
        "disconnect, connected",
        [](Emitter *a, Emitter *b) {
            return QObject::connect(a, kPing, b, kOnPing) && ko::disconnectFrom(a, kPing)
                && !QObject::disconnect(a, kPing, b, kOnPing);
        },
        true);
    row(
        "existsSignal",
        [](Emitter *a, Emitter *) {
            return ko::existsSignal(a, "2destroyed(QObject*)")
                && ko::existsSignal(a, "2ping( int )");
        },
        true);
    row("existsSignal, a slot or null",
        [](Emitter *a, Emitter *) {
            return ko::existsSignal(a, kOnPing) || ko::existsSignal(nullptr, kPing);
        },
        false,
        { "2|Signal not found: Emitter::1onPing(int)", "2|Signal not found: (null)::2ping(int)" });
    row(
        "invoke",
        [](Emitter *a, Emitter *) {
            return ko::invokeDirect(a, "invokable", Q_ARG(int, 5))
                && ko::invokeQueued(a, "onPing", Q_ARG(int, 6)) && a->last == 5
                && QTest::qWaitFor([a]() { return a->last == 6; });
        },
        true);
    row("invoke, wrong argument or null",
        [](Emitter *a, Emitter *) {
            return ko::invoke(a, "onPing", Qt::AutoConnection, Q_ARG(QString, "x"))
                || ko::invokeDirect(nullptr, "onPing", Q_ARG(int, 5));
        },
        false, { "3|invokeMethod Emitter.onPing failed.", "3|invokeMethod (null).onPing failed." });
    row(
        "invokeSlot",
        [](Emitter *a, Emitter *) {
            return ko::invokeSlotDirect(a, "1onPing( int )", Q_ARG(int, 5))
                && ko::invokeSlotQueued(a, kOnPing, Q_ARG(int, 6)) && a->last == 5
                && QTest::qWaitFor([a]() { return a->last == 6; });
        },
        true);
    row("invokeSlot, not slots",
        [](Emitter *a, Emitter *) {
            return ko::invokeSlot(a, "1invokable(int)", Qt::DirectConnection, Q_ARG(int, 5))
                || ko::invokeSlotDirect(a, kPing, Q_ARG(int, 5)) || ko::invokeSlotDirect(a, kOnPing)
                || ko::invokeSlotDirect(nullptr, kOnPing);
        },
        false,
        { "3|invokeMethod Emitter.1invokable(int) failed.",
            "3|invokeMethod Emitter.2ping(int) failed.",
            "3|invokeMethod Emitter.1onPing(int) failed.",
            "3|invokeMethod (null).1onPing(int) failed." });
}

void tst_SignalUtils::logLines()
{
    QFETCH(Call, call);
    LogCapture capture;
    Emitter a, b;
    QTEST(call(&a, &b), "result");
    QTEST(capture.allLines(), "lines");
}

void tst_SignalUtils::slotName_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<QString>("name");
    QTest::newRow("no arguments") << QByteArray("1onTimeout()") << "onTimeout";
    QTest::newRow("arguments") << QByteArray("1onPing(const QString &, int)") << "onPing";
    QTest::newRow("no parenthesis") << QByteArray("1bare") << "bare";
    QTest::newRow("digit only") << QByteArray("1") << "";
}

void tst_SignalUtils::slotName()
{
    QFETCH(QByteArray, code);
    QFETCH(QString, name);
    const ko::QtSlot slot(this, code.constData());
    const char *first = slot.slotName();
    QCOMPARE(QString::fromLatin1(first), name);
    QVERIFY(name.isEmpty() || slot.slotName() == first); // the cached text itself
    QCOMPARE(ko::QtSlot(this, nullptr).slotName(), ""); // outside the contract: no name
}

void tst_SignalUtils::signalConnection()
{
    auto *sender = new Emitter;
    Emitter receiver;
    const ko::SignalConnection conn(sender, kPing, &receiver, kOnPing);
    const ko::SignalConnection copy = conn;
    QCOMPARE(copy.type, Qt::AutoConnection);
    QCOMPARE(copy.sender.data(), sender);
    QCOMPARE(copy.receiver.data(), &receiver);
    QVERIFY(copy.signal == kPing); // the caller's text, not a copy
    QVERIFY(copy.method == kOnPing);
    QVERIFY(ko::connect(copy));
    delete sender;
    QVERIFY(conn.sender.isNull());
    QVERIFY(copy.sender.isNull());
}

QTEST_GUILESS_MAIN(tst_SignalUtils)
#include "tst_SignalUtils.moc"
