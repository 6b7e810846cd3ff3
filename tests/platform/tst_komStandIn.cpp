#include "platform/kom/komException.h"
#include "platform/kom/komList.h"
#include "platform/kom/komPerlStyleHash.h"
#include "platform/kom/komSmart.h"
#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komTerminal.h"

#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

namespace
{

struct Counted : virtual komInterface
{
    static std::atomic<int> live, deleted;
    Counted() { ++live; }
    ~Counted() override { --live, ++deleted; }
};
std::atomic<int> Counted::live(0), Counted::deleted(0);

struct Derived : komObject, Counted
{
    int value = 42;
};

// A list node that holds the next node through a handle.
struct Node : Counted
{
    explicit Node(int v)
        : value(v)
    { }
    int value;
    kom::smart<Node> next;
};

struct RecordingHandler : komStatusMessageHandlerInterface
{
    explicit RecordingHandler(kom::StatusMessageType verbosity = kom::StatusTrace)
        : mVerbosity(verbosity)
    { }
    void sendStatusMessage(
        kom::StatusMessageType type, const komString& text, const komObject* sender) override
    {
        received << QStringLiteral("%1:%2").arg(int(type)).arg(QString::fromLatin1(text.text()));
        lastSender = sender;
    }
    void setStatusMessageVerbosity(kom::StatusMessageType verbosity) override { mVerbosity = verbosity; }
    kom::StatusMessageType statusMessageVerbosity() const override { return mVerbosity; }
    QStringList received;
    const komObject* lastSender = nullptr;
    kom::StatusMessageType mVerbosity;
};

QStringList gTerminalCalls;
void recordingTerminal(const komString& message, const komObject*)
{
    gTerminalCalls << QString::fromLatin1(message.text());
}

} // namespace

class tst_komStandIn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smartOwnership();
    void smartSharedAcrossThreads();
    void statusVerbosity_data();
    void statusVerbosity();
    void statusHandlerRemoval();
    void terminalHandlers();
    void containers();
};

void tst_komStandIn::smartOwnership()
{
    Counted::deleted = 0;
    {
        kom::smart<Counted> empty;
        QVERIFY(!empty && !empty.get() && empty.useCount() == 0);
        kom::smart<Derived> derived(new Derived);
        kom::smart<Counted> base(derived); // upcast through a virtual base
        QCOMPARE(derived.useCount(), 2L);
        QVERIFY(static_cast<Counted*>(derived.get()) == base.get() && derived->value == 42);
        kom::smart<Counted> assigned;
        assigned = base;
        const auto& self = assigned;
        assigned = self; // self-assignment keeps everything
        QCOMPARE(base.useCount(), 3L);
        derived.reset();
        base.reset();
        QVERIFY(Counted::deleted == 0 && assigned.useCount() == 1);
        // createGroup with a null object makes an empty handle, as JobEntry::clear() does.
        assigned.createGroup(nullptr, nullptr);
        QCOMPARE(Counted::deleted.load(), 1);

        // Assigned from a handle inside the object it holds last: the object goes, the handle read
        // from it must not.
        kom::smart<Node> head(new Node(1));
        head->next = kom::smart<Node>(new Node(2));
        head = head->next;
        QCOMPARE(Counted::deleted.load(), 2);
        QCOMPARE(head->value, 2);
        QCOMPARE(head.useCount(), 1L);
    }
    QCOMPARE(Counted::live.load(), 0);
}

void tst_komStandIn::smartSharedAcrossThreads()
{
    Counted::deleted = 0;
    for (int round = 0; round < 50; ++round) {
        std::vector<std::thread> threads;
        {
            kom::smart<Counted> origin(new Counted);
            for (int t = 0; t < 4; ++t) {
                threads.emplace_back([copy = origin]() mutable {
                    for (int i = 0; i < 2000; ++i) {
                        kom::smart<Counted> local(copy), other;
                        other = local;
                        local.reset();
                    }
                });
            }
        }
        for (auto& thread : threads)
            thread.join();
        QCOMPARE(Counted::deleted.load(), round + 1);
    }
    QCOMPARE(Counted::live.load(), 0);
}

void tst_komStandIn::statusVerbosity_data()
{
    QTest::addColumn<int>("verbosity");
    QTest::addColumn<QStringList>("received");
    const QStringList all { "40:a", "45:b", "50:c", "60:d", "70:e", "80:f" };
    QTest::newRow("40 receives all") << 40 << all;
    QTest::newRow("60 receives 60 and above") << 60 << QStringList(all.mid(3));
    QTest::newRow("80 receives only fatal") << 80 << QStringList(all.mid(5));
    QTest::newRow("90 receives nothing") << 90 << QStringList();
}

void tst_komStandIn::statusVerbosity()
{
    QFETCH(int, verbosity);
    QFETCH(QStringList, received);
    kom::komStatusMessageProcessor processor;
    RecordingHandler handler { kom::StatusMessageType(verbosity) };
    processor.addStatusMessageHandler(&handler);
    const komObject sender;
    for (const char* text : { "40a", "45b", "50c", "60d", "70e", "80f" })
        processor.sendStatusMessage(kom::StatusMessageType(QByteArray(text, 2).toInt()), text + 2, &sender);
    QCOMPARE(handler.received, received);
    QCOMPARE(handler.lastSender, received.isEmpty() ? nullptr : &sender);
}

void tst_komStandIn::statusHandlerRemoval()
{
    kom::komStatusMessageProcessor* processor = kom::komStatusMessageProcessor::defaultProcessor();
    QCOMPARE(kom::komStatusMessageProcessor::defaultProcessor(), processor);
    RecordingHandler first, second;
    processor->addStatusMessageHandler(&first);
    processor->addStatusMessageHandler(&second);
    kom::sendStatusMessage(kom::StatusInfo, "both", nullptr);
    processor->removeStatusMessageHandler(&first);
    kom::sendStatusMessage(kom::StatusInfo, "second", nullptr);
    processor->removeStatusMessageHandlers();
    kom::sendStatusMessage(kom::StatusInfo, "nobody", nullptr);
    QCOMPARE(first.received, QStringList { "50:both" });
    QCOMPARE(second.received, QStringList({ "50:both", "50:second" }));
    QCOMPARE(processor->handlerCount(), 0);
}

void tst_komStandIn::terminalHandlers()
{
    RecordingHandler status;
    kom::komStatusMessageProcessor::defaultProcessor()->addStatusMessageHandler(&status);
    bool thrown = false;
    try {
        kom::terminal("boom", nullptr);
    } catch (const komTerminalException&) {
        thrown = true;
    }
    QVERIFY(thrown);
    QCOMPARE(status.received, QStringList { "80:boom" });
    gTerminalCalls.clear();
    QVERIFY(kom::setTerminalHandler(&recordingTerminal) == &kom::defaultTerminalHandler);
    kom::terminal("returns", nullptr);
    QCOMPARE(gTerminalCalls, QStringList { "returns" });
    QVERIFY(kom::setTerminalHandler(nullptr) == &recordingTerminal);
    try {
        kom::terminal("again", nullptr);
        QFAIL("the default handler throws");
    } catch (const komTerminalException& e) {
        QVERIFY(QByteArray(e.what()) == "again" && e.messages().size() == 1);
    }
    kom::komStatusMessageProcessor::defaultProcessor()->removeStatusMessageHandlers();
}

void tst_komStandIn::containers()
{
    komStringList list;
    list.add("a", false);
    list.add("a", false);
    list.add("a", true);
    list.add("b", true);
    QVERIFY(list.size() == 3 && QByteArray(list[2].text()) == "b");
    QCOMPARE(komString(nullptr).length(), 0);

    komPerlStyleHash hash;
    hash["k2"] = "v2";
    hash["k1"] = "v1";
    hash["k2"] = "v3";
    QVERIFY(hash.size() == 2 && !hash.contains("k3"));
    auto it = hash.iterator();
    QStringList pairs;
    while (const komPerlStyleHash::KeyValuePair* pair = it.nextItem())
        pairs << QString::fromLatin1(pair->key().text()) + '=' + QString::fromLatin1(pair->value().text());
    QCOMPARE(pairs, QStringList({ "k2=v3", "k1=v1" }));

    komException e("inner");
    e.addMessage("outer");
    QCOMPARE(QByteArray(e.what()), QByteArray("inner; outer"));
}

QTEST_GUILESS_MAIN(tst_komStandIn)
#include "tst_komStandIn.moc"
