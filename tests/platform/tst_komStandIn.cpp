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
    static std::atomic<int> live;
    static std::atomic<int> deleted;
    Counted() { ++live; }
    ~Counted() override
    {
        --live;
        ++deleted;
    }
};
std::atomic<int> Counted::live(0);
std::atomic<int> Counted::deleted(0);

struct Derived : komObject, Counted
{
    int value = 42;
};

class RecordingHandler : public komStatusMessageHandlerInterface
{
public:
    explicit RecordingHandler(kom::StatusMessageType verbosity) : mVerbosity(verbosity) {}
    void sendStatusMessage(kom::StatusMessageType type, const komString& text, const komObject* sender) override
    {
        received << QStringLiteral("%1:%2").arg(int(type)).arg(QString::fromLatin1(text.text()));
        lastSender = sender;
    }
    void setStatusMessageVerbosity(kom::StatusMessageType verbosity) override { mVerbosity = verbosity; }
    kom::StatusMessageType statusMessageVerbosity() const override { return mVerbosity; }

    QStringList received;
    const komObject* lastSender = nullptr;

private:
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
        QVERIFY(!empty);
        QVERIFY(!empty.get());
        QCOMPARE(empty.useCount(), 0L);

        kom::smart<Derived> derived(new Derived);
        kom::smart<Counted> base(derived); // upcast through a virtual base
        QCOMPARE(derived.useCount(), 2L);
        QCOMPARE(static_cast<Counted*>(derived.get()), base.get());
        QCOMPARE(derived->value, 42);

        kom::smart<Counted> assigned;
        assigned = base;
        assigned = assigned;
        QCOMPARE(base.useCount(), 3L);
        derived.reset();
        base.reset();
        QCOMPARE(Counted::deleted.load(), 0);
        QCOMPARE(assigned.useCount(), 1L);

        // createGroup with a null object makes an empty handle, as JobEntry::clear() does.
        assigned.createGroup(nullptr, nullptr);
        QCOMPARE(Counted::deleted.load(), 1);
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
                        kom::smart<Counted> local(copy);
                        kom::smart<Counted> other;
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
    const QStringList all{"40:a", "45:b", "50:c", "60:d", "70:e", "80:f"};
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
    RecordingHandler handler{kom::StatusMessageType(verbosity)};
    processor.addStatusMessageHandler(&handler);
    const komObject sender;
    const char* texts[] = {"a", "b", "c", "d", "e", "f"};
    const int types[] = {40, 45, 50, 60, 70, 80};
    for (int i = 0; i < 6; ++i)
        processor.sendStatusMessage(kom::StatusMessageType(types[i]), texts[i], &sender);
    QCOMPARE(handler.received, received);
    if (!received.isEmpty())
        QCOMPARE(handler.lastSender, &sender);
}

void tst_komStandIn::statusHandlerRemoval()
{
    kom::komStatusMessageProcessor* processor = kom::komStatusMessageProcessor::defaultProcessor();
    QCOMPARE(kom::komStatusMessageProcessor::defaultProcessor(), processor);
    RecordingHandler first(kom::StatusTrace), second(kom::StatusTrace);
    processor->addStatusMessageHandler(&first);
    processor->addStatusMessageHandler(&second);
    kom::sendStatusMessage(kom::StatusInfo, "both", nullptr);
    processor->removeStatusMessageHandler(&first);
    kom::sendStatusMessage(kom::StatusInfo, "second", nullptr);
    processor->removeStatusMessageHandlers();
    kom::sendStatusMessage(kom::StatusInfo, "nobody", nullptr);
    QCOMPARE(first.received, QStringList{"50:both"});
    QCOMPARE(second.received, (QStringList{"50:both", "50:second"}));
    QCOMPARE(processor->handlerCount(), 0);
}

void tst_komStandIn::terminalHandlers()
{
    RecordingHandler status(kom::StatusTrace);
    kom::komStatusMessageProcessor::defaultProcessor()->addStatusMessageHandler(&status);
    QVERIFY_EXCEPTION_THROWN(kom::terminal("boom", nullptr), komTerminalException);
    QCOMPARE(status.received, QStringList{"80:boom"});

    gTerminalCalls.clear();
    const kom::TerminalHandler previous = kom::setTerminalHandler(&recordingTerminal);
    QVERIFY(previous == &kom::defaultTerminalHandler);
    kom::terminal("returns", nullptr);
    QCOMPARE(gTerminalCalls, QStringList{"returns"});
    QVERIFY(kom::setTerminalHandler(nullptr) == &recordingTerminal);
    try {
        kom::terminal("again", nullptr);
        QFAIL("the default handler throws");
    } catch (const komTerminalException& e) {
        QCOMPARE(QString::fromLatin1(e.what()), QStringLiteral("again"));
        QCOMPARE(e.messages().size(), 1);
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
    QCOMPARE(list.size(), 3);
    QCOMPARE(QString::fromLatin1(list[2].text()), QStringLiteral("b"));
    QCOMPARE(komString(nullptr).length(), 0);

    komPerlStyleHash hash;
    hash["k2"] = "v2";
    hash["k1"] = "v1";
    hash["k2"] = "v3";
    QCOMPARE(hash.size(), 2);
    QVERIFY(!hash.contains("k3"));
    auto it = hash.iterator();
    QStringList pairs;
    while (const komPerlStyleHash::KeyValuePair* pair = it.nextItem())
        pairs << QString::fromLatin1(pair->key().text()) + QLatin1Char('=') + QString::fromLatin1(pair->value().text());
    QCOMPARE(pairs, (QStringList{"k2=v3", "k1=v1"}));

    komException e("inner");
    e.addMessage("outer");
    QCOMPARE(QString::fromLatin1(e.what()), QStringLiteral("inner; outer"));
}

QTEST_GUILESS_MAIN(tst_komStandIn)
#include "tst_komStandIn.moc"
