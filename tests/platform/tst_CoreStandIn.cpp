// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "platform/core/Enigma.h"
#include "platform/core/Exception.h"
#include "platform/core/Log.h"
#include "platform/core/Mutex.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <sstream>
#include <thread>
#include <unistd.h>

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

QByteArray contents(const std::string &path)
{
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
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
    void logFiles();
    void logStdOutRedirect();
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

// Files per level, appended or shared by all levels; a file that cannot be opened leaves the
// previous output in place and is reported at the error level.
void tst_CoreStandIn::logFiles()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const std::string errors = dir.filePath(QStringLiteral("errors.log")).toStdString();
    const std::string all = dir.filePath(QStringLiteral("all.log")).toStdString();

    ko::Log log;
    log.setLogFile(ko::Log::Error, errors, false);
    *log.getStream(ko::Log::Error) << "first" << std::endl;
    log.setLogFile(ko::Log::Error, errors, true);
    *log.getStream(ko::Log::Error) << "appended" << std::endl;
    QCOMPARE(log.getStream(ko::Log::Warning), &std::cerr);
    QCOMPARE(contents(errors), QByteArray("first\nappended\n"));

    std::ostringstream warnings, reports;
    log.setStream(ko::Log::Warning, &warnings, false);
    log.setStream(ko::Log::Error, &reports, false);
    log.setLogFile(ko::Log::Warning, "/nonexistent-dir/x.log", false);
    QCOMPARE(log.getStream(ko::Log::Warning), &warnings);
    log.setLogFile("/nonexistent-dir/all.log", true);
    QCOMPARE(log.getStream(ko::Log::Error), &reports);
    const QStringList lines
        = QString::fromStdString(reports.str()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 2);
    QCOMPARE(LogCapture::stripPrefix(lines.at(0)),
        QStringLiteral("Cannot open log file /nonexistent-dir/x.log: ")
            + QString::fromLatin1(std::strerror(ENOENT)));

    log.setLogFile(all, false);
    std::ostream *shared = log.getStream(ko::Log::Debug);
    for (int level = 0; level < ko::Log::LevelCount; ++level) {
        QCOMPARE(log.getStream(ko::Log::ELevel(level)), shared);
        *shared << level << '\n';
    }
    shared->flush();
    QCOMPARE(contents(all), QByteArray("0\n1\n2\n3\n4\n"));
}

void tst_CoreStandIn::logStdOutRedirect()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("stdout.txt"));
    std::cout.flush();
    fflush(stdout);
    const int saved = dup(STDOUT_FILENO);
    ko::Log::setStdOut(path.toStdString(), false, false);
    printf("redirected\n");
    fflush(stdout);
    dup2(saved, STDOUT_FILENO);
    close(saved);
    QCOMPARE(contents(path.toStdString()), QByteArray("redirected\n"));

    LogCapture capture;
    ko::Log::setStdOut("/nonexistent-dir/out.txt", true, true);
    QCOMPARE(capture.lines(ko::Log::Error).size(), 1);
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
