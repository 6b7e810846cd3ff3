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
    int pings = 0;

Q_SIGNALS:
    void ping(int value);
    void pong();

public Q_SLOTS:
    void onPing(int value)
    {
        last = value;
        ++pings;
    }
    void onTimeout() {}
};

typedef std::function<bool(Emitter* sender, Emitter* receiver)> Call;
Q_DECLARE_METATYPE(Call)

namespace
{

const char* const kPing = "2ping(int)";
const char* const kOnPing = "1onPing(int)";

} // namespace

class tst_SignalUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectFailures_data();
    void connectFailures();
    void connectOverloads_data();
    void connectOverloads();
    void disconnectLogging_data();
    void disconnectLogging();
    void existsSignal_data();
    void existsSignal();
    void invoke_data();
    void invoke();
    void slotName_data();
    void slotName();
    void signalConnectionGuards();
};

void tst_SignalUtils::connectFailures_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<bool>("nullSender");
    QTest::addColumn<bool>("expected");
    QTest::addColumn<QStringList>("errors");
    QTest::newRow("connects") << QByteArray(kPing) << QByteArray(kOnPing) << false << true << QStringList();
    QTest::newRow("signal to signal") << QByteArray(kPing) << QByteArray(kPing) << false << true << QStringList();
    QTest::newRow("no such signal")
        << QByteArray("2nothing()") << QByteArray(kOnPing) << false << false
        << QStringList("Connect Emitter.2nothing() to Emitter.1onPing(int) failed.");
    QTest::newRow("no such slot") << QByteArray(kPing) << QByteArray("1missing()") << false << false
                                  << QStringList("Connect Emitter.2ping(int) to Emitter.1missing() failed.");
    QTest::newRow("arguments do not fit")
        << QByteArray("2pong()") << QByteArray(kOnPing) << false << false
        << QStringList("Connect Emitter.2pong() to Emitter.1onPing(int) failed.");
    QTest::newRow("code digit missing") << QByteArray("ping(int)") << QByteArray(kOnPing) << false << false
                                        << QStringList("Connect Emitter.ping(int) to Emitter.1onPing(int) failed.");
    // Outside the callers' contract: a null object is shown, not read.
    QTest::newRow("null sender") << QByteArray(kPing) << QByteArray(kOnPing) << true << false
                                 << QStringList("Connect (null).2ping(int) to Emitter.1onPing(int) failed.");
}

void tst_SignalUtils::connectFailures()
{
    QFETCH(QByteArray, signal);
    QFETCH(QByteArray, method);
    QFETCH(bool, nullSender);
    QFETCH(bool, expected);
    QFETCH(QStringList, errors);
    LogCapture capture;
    Emitter sender, receiver;
    QCOMPARE(ko::connect(nullSender ? nullptr : &sender, signal.constData(), &receiver, method.constData()),
             expected);
    QCOMPARE(capture.lines(ko::Log::Error), errors);
    QCOMPARE(capture.allLines().size(), errors.size());
}

void tst_SignalUtils::connectOverloads_data()
{
    QTest::addColumn<Call>("connectCall");
    QTest::addColumn<Call>("failingCall");
    QTest::newRow("objects and codes")
        << Call([](Emitter* s, Emitter* r) { return ko::connect(s, kPing, r, kOnPing, Qt::DirectConnection); })
        << Call([](Emitter* s, Emitter* r) { return ko::connect(s, "2pong()", r, kOnPing); });
    QTest::newRow("SignalConnection")
        << Call([](Emitter* s, Emitter* r) { return ko::connect(ko::SignalConnection(s, kPing, r, kOnPing)); })
        << Call([](Emitter* s, Emitter* r) { return ko::connect(ko::SignalConnection(s, "2pong()", r, kOnPing)); });
    QTest::newRow("QtSignal and QtSlot")
        << Call([](Emitter* s, Emitter* r) { return ko::connect(ko::QtSignal(s, kPing), ko::QtSlot(r, kOnPing)); })
        << Call([](Emitter* s, Emitter* r) {
               return ko::connect(ko::QtSignal(s, "2pong()"), ko::QtSlot(r, kOnPing));
           });
    QTest::newRow("QtSignal and codes")
        << Call([](Emitter* s, Emitter* r) { return ko::connect(ko::QtSignal(s, kPing), r, kOnPing); })
        << Call([](Emitter* s, Emitter* r) { return ko::connect(ko::QtSignal(s, "2pong()"), r, kOnPing); });
    QTest::newRow("codes and QtSlot")
        << Call([](Emitter* s, Emitter* r) { return ko::connect(s, kPing, ko::QtSlot(r, kOnPing)); })
        << Call([](Emitter* s, Emitter* r) { return ko::connect(s, "2pong()", ko::QtSlot(r, kOnPing)); });
}

void tst_SignalUtils::connectOverloads()
{
    QFETCH(Call, connectCall);
    QFETCH(Call, failingCall);
    LogCapture capture;
    Emitter sender, receiver;
    QVERIFY(connectCall(&sender, &receiver));
    Q_EMIT sender.ping(7);
    QCOMPARE(receiver.last, 7);
    QVERIFY(!failingCall(&sender, &receiver));
    QCOMPARE(capture.lines(ko::Log::Error), QStringList("Connect Emitter.2pong() to Emitter.1onPing(int) failed."));
}

void tst_SignalUtils::disconnectLogging_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<bool>("logs");
    QTest::addColumn<bool>("disconnects");
    QTest::newRow("four arguments") << Call([](Emitter* s, Emitter* r) {
        return ko::disconnect(s, kPing, r, kOnPing);
    }) << true << true;
    QTest::newRow("SignalConnection") << Call([](Emitter* s, Emitter* r) {
        return ko::disconnect(ko::SignalConnection(s, kPing, r, kOnPing, Qt::QueuedConnection));
    }) << true << true;
    QTest::newRow("QtSignal, receiver, method") << Call([](Emitter* s, Emitter* r) {
        return ko::disconnect(ko::QtSignal(s, kPing), r, kOnPing);
    }) << true << true;
    QTest::newRow("sender and receiver") << Call([](Emitter* s, Emitter* r) { return ko::disconnect(s, r); })
                                         << false << true;
    QTest::newRow("from sender's signal") << Call([](Emitter* s, Emitter*) { return ko::disconnectFrom(s, kPing); })
                                          << false << true;
    QTest::newRow("from QtSignal") << Call([](Emitter* s, Emitter*) {
        return ko::disconnectFrom(ko::QtSignal(s, kPing));
    }) << false << true;
    // Qt refuses a null sender, so these never disconnect anything.
    QTest::newRow("to receiver's method") << Call([](Emitter*, Emitter* r) { return ko::disconnectTo(r, kOnPing); })
                                          << false << false;
    QTest::newRow("to QtSlot") << Call([](Emitter*, Emitter* r) { return ko::disconnectTo(ko::QtSlot(r, kOnPing)); })
                               << false << false;
}

void tst_SignalUtils::disconnectLogging()
{
    QFETCH(Call, call);
    QFETCH(bool, logs);
    QFETCH(bool, disconnects);
    LogCapture capture;
    Emitter sender, receiver;
    // Nothing connected: false, and a line only when all four parts were given.
    QVERIFY(!call(&sender, &receiver));
    QCOMPARE(capture.lines(ko::Log::Error),
             logs ? QStringList("Disconnect Emitter.2ping(int) to Emitter.1onPing(int) failed.") : QStringList());
    capture.clear();
    // Connected: Qt's result, and the connection is gone when it is true.
    QVERIFY(QObject::connect(&sender, kPing, &receiver, kOnPing));
    QCOMPARE(call(&sender, &receiver), disconnects);
    Q_EMIT sender.ping(3);
    QCOMPARE(receiver.pings, disconnects ? 0 : 1);
    QVERIFY(capture.allLines().isEmpty());
}

void tst_SignalUtils::existsSignal_data()
{
    QTest::addColumn<QByteArray>("signal");
    QTest::addColumn<bool>("nullObject");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("inherited") << QByteArray("2destroyed(QObject*)") << false << QStringList();
    QTest::newRow("own") << QByteArray(kPing) << false << QStringList();
    QTest::newRow("blanks are normalised") << QByteArray("2ping( int )") << false << QStringList();
    QTest::newRow("a slot is no signal") << QByteArray(kOnPing) << false
                                         << QStringList("Signal not found: Emitter::1onPing(int)");
    QTest::newRow("unknown") << QByteArray("2nothing()") << false
                             << QStringList("Signal not found: Emitter::2nothing()");
    QTest::newRow("wrong arguments") << QByteArray("2ping(QString)") << false
                                     << QStringList("Signal not found: Emitter::2ping(QString)");
    QTest::newRow("null object") << QByteArray(kPing) << true << QStringList("Signal not found: (null)::2ping(int)");
}

void tst_SignalUtils::existsSignal()
{
    QFETCH(QByteArray, signal);
    QFETCH(bool, nullObject);
    QFETCH(QStringList, warnings);
    LogCapture capture;
    Emitter object;
    QCOMPARE(ko::existsSignal(nullObject ? nullptr : &object, signal.constData()), warnings.isEmpty());
    QCOMPARE(capture.lines(ko::Log::Warning), warnings);
    QCOMPARE(capture.allLines().size(), warnings.size());
}

void tst_SignalUtils::invoke_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<bool>("queued");
    QTest::addColumn<QStringList>("errors");
    QTest::newRow("invoke") << Call([](Emitter* o, Emitter*) {
        return ko::invoke(o, "onPing", Qt::AutoConnection, Q_ARG(int, 5));
    }) << false << QStringList();
    QTest::newRow("invokeDirect") << Call([](Emitter* o, Emitter*) {
        return ko::invokeDirect(o, "invokable", Q_ARG(int, 5));
    }) << false << QStringList();
    QTest::newRow("invokeQueued") << Call([](Emitter* o, Emitter*) {
        return ko::invokeQueued(o, "onPing", Q_ARG(int, 5));
    }) << true << QStringList();
    QTest::newRow("invoke, unknown")
        << Call([](Emitter* o, Emitter*) { return ko::invokeDirect(o, "missing", Q_ARG(int, 5)); }) << false
        << QStringList("invokeMethod Emitter.missing failed.");
    QTest::newRow("invoke, wrong argument")
        << Call([](Emitter* o, Emitter*) { return ko::invokeDirect(o, "onPing", Q_ARG(QString, QString())); })
        << false << QStringList("invokeMethod Emitter.onPing failed.");
    QTest::newRow("invoke, null object")
        << Call([](Emitter*, Emitter*) { return ko::invokeDirect(nullptr, "onPing", Q_ARG(int, 5)); }) << false
        << QStringList("invokeMethod (null).onPing failed.");
    QTest::newRow("invokeSlot") << Call([](Emitter* o, Emitter*) {
        return ko::invokeSlot(o, kOnPing, Qt::AutoConnection, Q_ARG(int, 5));
    }) << false << QStringList();
    QTest::newRow("invokeSlotDirect, blanks") << Call([](Emitter* o, Emitter*) {
        return ko::invokeSlotDirect(o, "1onPing( int )", Q_ARG(int, 5));
    }) << false << QStringList();
    QTest::newRow("invokeSlotQueued") << Call([](Emitter* o, Emitter*) {
        return ko::invokeSlotQueued(o, kOnPing, Q_ARG(int, 5));
    }) << true << QStringList();
    QTest::newRow("invokeSlot, not a slot")
        << Call([](Emitter* o, Emitter*) { return ko::invokeSlotDirect(o, "1invokable(int)", Q_ARG(int, 5)); })
        << false << QStringList("invokeMethod Emitter.1invokable(int) failed.");
    QTest::newRow("invokeSlot, a signal")
        << Call([](Emitter* o, Emitter*) { return ko::invokeSlotDirect(o, kPing, Q_ARG(int, 5)); }) << false
        << QStringList("invokeMethod Emitter.2ping(int) failed.");
    QTest::newRow("invokeSlot, argument missing")
        << Call([](Emitter* o, Emitter*) { return ko::invokeSlotDirect(o, kOnPing); }) << false
        << QStringList("invokeMethod Emitter.1onPing(int) failed.");
    QTest::newRow("invokeSlot, null object")
        << Call([](Emitter*, Emitter*) { return ko::invokeSlotDirect(nullptr, kOnPing, Q_ARG(int, 5)); }) << false
        << QStringList("invokeMethod (null).1onPing(int) failed.");
}

void tst_SignalUtils::invoke()
{
    QFETCH(Call, call);
    QFETCH(bool, queued);
    QFETCH(QStringList, errors);
    LogCapture capture;
    Emitter object;
    QCOMPARE(call(&object, nullptr), errors.isEmpty());
    QCOMPARE(capture.lines(ko::Log::Error), errors);
    QCOMPARE(capture.allLines().size(), errors.size());
    if (errors.isEmpty()) {
        QCOMPARE(object.last, queued ? 0 : 5);
        QTRY_COMPARE(object.last, 5);
    }
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
    Emitter object;
    const ko::QtSlot slot(&object, code.constData());
    const char* first = slot.slotName();
    QCOMPARE(QString::fromLatin1(first), name);
    QCOMPARE(QString::fromStdString(slot.name), name);
    if (!name.isEmpty())
        QCOMPARE(slot.slotName(), first); // the cached text itself
    // Outside the record's contract: a null code has an empty name.
    QCOMPARE(ko::QtSlot(&object, nullptr).slotName(), "");
}

void tst_SignalUtils::signalConnectionGuards()
{
    auto* sender = new Emitter;
    Emitter receiver;
    ko::SignalConnection conn(sender, kPing, &receiver, kOnPing);
    QCOMPARE(conn.type, Qt::AutoConnection);
    const ko::SignalConnection copy = conn;
    QCOMPARE(copy.sender.data(), static_cast<QObject*>(sender));
    QCOMPARE(copy.signal, kPing);
    QCOMPARE(copy.method, kOnPing);
    QVERIFY(ko::connect(copy));
    delete sender;
    QVERIFY(conn.sender.isNull());
    QVERIFY(copy.sender.isNull());
    QCOMPARE(copy.receiver.data(), static_cast<QObject*>(&receiver));
    // With the sender gone, undoing the connection is a wildcard call: false and silent.
    LogCapture capture;
    QVERIFY(!ko::disconnect(copy));
    QVERIFY(capture.allLines().isEmpty());
}

QTEST_GUILESS_MAIN(tst_SignalUtils)
#include "tst_SignalUtils.moc"
