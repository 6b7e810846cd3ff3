// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "KomRecorders.h"

#include "platform/kom/komException.h"
#include "platform/kom/komSmart.h"

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

} // namespace

class tst_komStandIn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void smartOwnership();
    void smartSharedAcrossThreads();
    void statusVerbosity_data();
    void statusVerbosity();
    void terminalHandlers();
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
        QCOMPARE(base.get(), static_cast<Counted *>(derived.get()));
        QCOMPARE(derived->value, 42);
        kom::smart<Counted> assigned;
        assigned = base;
        const auto &self = assigned;
        assigned = self; // self-assignment keeps everything
        QCOMPARE(base.useCount(), 3L);
        derived.reset();
        base.reset();
        QCOMPARE(Counted::deleted.load(), 0);
        QCOMPARE(assigned.useCount(), 1L);
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
        for (auto &thread : threads)
            thread.join();
        QCOMPARE(Counted::deleted.load(), round + 1);
    }
    QCOMPARE(Counted::live.load(), 0);
}

void tst_komStandIn::statusVerbosity_data()
{
    QTest::addColumn<int>("verbosity");
    QTest::addColumn<QStringList>("received");
    const QStringList all { "40 a", "45 b", "50 c", "60 d", "70 e", "80 f" };
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
    StatusRecorder recorder(kom::StatusMessageType(verbosity), &processor);
    const komObject sender;
    for (const char *text : { "40a", "45b", "50c", "60d", "70e", "80f" })
        processor.sendStatusMessage(
            kom::StatusMessageType(QByteArray(text, 2).toInt()), text + 2, &sender);
    QCOMPARE(recorder.messages(), received);
    QCOMPARE(recorder.lastSender(), received.isEmpty() ? nullptr : &sender);
}

// The default handler reports at type 80 and throws; an installed one may return; null puts the
// default back.
void tst_komStandIn::terminalHandlers()
{
    StatusRecorder status;
    bool thrown = false;
    try {
        kom::terminal("boom", nullptr);
    } catch (const komTerminalException &) {
        thrown = true;
    }
    QVERIFY(thrown);
    QCOMPARE(status.messages(), QStringList { "80 boom" });
    {
        TerminalRecorder recorder;
        kom::terminal("returns", nullptr);
        QCOMPARE(TerminalRecorder::reports, QStringList { "returns" });
    }
    QVERIFY(kom::setTerminalHandler(nullptr) == &kom::defaultTerminalHandler);
    try {
        kom::terminal("again", nullptr);
        QFAIL("the default handler throws");
    } catch (const komTerminalException &e) {
        QCOMPARE(QByteArray(e.what()), QByteArray("again"));
        QCOMPARE(e.messages().size(), 1);
    }
}

QTEST_GUILESS_MAIN(tst_komStandIn)
#include "tst_komStandIn.moc"
