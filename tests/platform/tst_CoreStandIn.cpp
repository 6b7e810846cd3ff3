// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers

#include "platform/core/Enigma.h"
#include "platform/core/Exception.h"
#include "platform/core/Log.h"
#include "platform/core/Mutex.h"

#include <QtTest>

#include <iostream>
#include <sstream>
#include <thread>

namespace
{

// An exception with a field of its own that counts its live instances and, like the library's own
// exception classes, deletes its cause copy itself.
class CountedException : public ko::Exception
{
public:
    static int live;
    explicit CountedException(const std::string &text, const ko::Exception *cause = nullptr)
        : ko::Exception(text, cause)
        , field(text)
    {
        ++live;
    }
    CountedException(const CountedException &other)
        : ko::Exception(other)
        , field(other.field)
    {
        ++live;
    }
    CountedException &operator=(const CountedException &other) = default;
    ~CountedException() override
    {
        --live;
        delete releaseCause();
    }
    CountedException *clone() const override { return new CountedException(*this); }
    // Copied by the default assignment after the base part, from an object that must still be
    // alive.
    std::string field;
};
int CountedException::live = 0;

QString chain(const ko::Exception *e)
{
    QStringList texts;
    for (; e; e = e->cause())
        texts << QString::fromStdString(e->what());
    return texts.join(QLatin1String(" <- "));
}

} // namespace

class tst_CoreStandIn : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mutexRelock();
    void mutexCountsUnderContention();
    void exceptionCauseCopies();
    void logStreams();
    void enigmaSeeds();
};

// The log's mutex is recursive: a thread takes it again inside a line; a deferred locker takes
// nothing.
void tst_CoreStandIn::mutexRelock()
{
    ko::Mutex mutex(true);
    {
        ko::MutexLocker deferred(mutex, false);
        QVERIFY(!deferred.isLocked());
        ko::MutexLocker outer(mutex, true);
        ko::MutexLocker inner(mutex, true);
        QCOMPARE(mutex.lockCount(), 2);
    }
    QCOMPARE(mutex.lockCount(), 0);
}

void tst_CoreStandIn::mutexCountsUnderContention()
{
    ko::Mutex mutex(true);
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 20000; ++i) {
                ko::MutexLocker outer(mutex, true);
                ko::MutexLocker inner(mutex, true);
                ++counter;
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
    QCOMPARE(counter, 80000L);
}

// Every copy owns its own cause copy; a subclass that deletes its cause itself sees no double
// delete, and a plain ko::Exception frees its copies (LeakSanitizer checks that).
void tst_CoreStandIn::exceptionCauseCopies()
{
    CountedException::live = 0;
    {
        CountedException root("root");
        CountedException middle("middle", &root);
        CountedException top("top", &middle);
        QCOMPARE(chain(&top), QStringLiteral("top <- middle <- root"));
        QVERIFY(top.cause() != &middle);

        CountedException copy(top);
        QVERIFY(copy.cause() != top.cause());
        CountedException assigned("other", &root);
        assigned = top;
        const auto &self = assigned;
        assigned = self; // self-assignment keeps everything
        std::unique_ptr<ko::Exception> cloned(top.clone());
        const ko::Exception *copies[] = { &copy, &assigned, cloned.get() };
        for (const ko::Exception *e : copies)
            QCOMPARE(chain(e), chain(&top));

        top.setCause(&root);
        top.setCause(&root);
        // The new cause lives inside the chain the old copy owns: it is cloned before that copy
        // goes.
        copy.setCause(copy.cause()->cause());
        QCOMPARE(chain(&copy), QStringLiteral("top <- root"));
        top.setCause(nullptr);
        QVERIFY(!top.cause());
        QCOMPARE(chain(&assigned), QStringLiteral("top <- middle <- root"));

        // Assigned from its own cause chain at depth 1 and 3: the subclass copies its field once
        // the base part is done, so the object it reads from must outlive the base's assignment.
        CountedException outer("outer", &assigned);
        outer = static_cast<const CountedException &>(*outer.cause());
        QCOMPARE(outer.field, std::string("top"));
        QCOMPARE(chain(&outer), QStringLiteral("top <- middle <- root"));
        outer = CountedException("outer", &assigned);
        outer = static_cast<const CountedException &>(*outer.cause()->cause()->cause());
        QCOMPARE(outer.field, std::string("root"));
        QCOMPARE(chain(&outer), QStringLiteral("root"));
    }
    QCOMPARE(CountedException::live, 0);

    ko::RuntimeError plainRoot("r");
    ko::Exception plain("p", &plainRoot);
    plain.setCause(&plain);
    QCOMPARE(chain(&plain), QStringLiteral("p <- p <- r"));
}

void tst_CoreStandIn::logStreams()
{
    ko::Log log;
    QCOMPARE(log.logLevel(), ko::Log::Message);
    std::ostream *const expected[] = { &std::cout, &std::cout, &std::cerr, &std::cerr, &std::cerr };
    for (int level = 0; level < ko::Log::LevelCount; ++level)
        QCOMPARE(log.getStream(ko::Log::ELevel(level)), expected[level]);
    QCOMPARE(log.getStream(ko::Log::ELevel(7)), &std::cout);
    QVERIFY(log.mutex().isRecursive());
    QCOMPARE(&ko::Log::instance(), &ko::Log::instance());

    std::ostringstream first, second;
    log.setStream(ko::Log::Warning, &first, false);
    log.setStream(ko::Log::Warning, &second, false);
    log.pre(ko::Log::Warning);
    second << "text";
    QVERIFY(first.str().empty());
    const QString line = QString::fromStdString(second.str());
    QVERIFY2(
        QRegularExpression(
            QStringLiteral("^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} Warning text$"))
            .match(line)
            .hasMatch(),
        qPrintable(line));

    // An owned stream is deleted when replaced; a null stream silences the level.
    log.setStream(ko::Log::Message, new std::ostringstream, true);
    log.setStream(ko::Log::Message, nullptr, false);
    QVERIFY(!log.getStream(ko::Log::Message));
    log.pre(ko::Log::Message); // harmless without a stream
}

// The stand-in's byte loop itself is checked against the fast engine in tst_EnigmaFast.
void tst_CoreStandIn::enigmaSeeds()
{
    ko::Enigma seeded { ko::Random(0x89abcdefu) };
    QCOMPARE(seeded.seed(), 0x89abcdefu);
    QCOMPARE(seeded.initialState(), 0x89abcdefu);
    ko::Enigma engine { ko::Random(0, 0) };
    QVERIFY(engine.seed() != 0);
    QCOMPARE(engine.state(), engine.initialState());
    unsigned char buffer[4] = { 1, 2, 3, 4 };
    unsigned state = engine.state();
    QCOMPARE(engine.encode(nullptr, 4, buffer, 4, state), -1);
    QCOMPARE(engine.encode(buffer, 4, buffer, 3, state), -1);
    QCOMPARE(state, engine.state());
}

QTEST_GUILESS_MAIN(tst_CoreStandIn)
#include "tst_CoreStandIn.moc"
