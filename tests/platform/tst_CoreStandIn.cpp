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
#include <fstream>
#include <iostream>
#include <sstream>
#include <thread>
#include <unistd.h>

namespace
{

// An exception that counts its live instances and, like the library's own
// exception classes, deletes its cause copy itself.
class CountedException : public ko::Exception
{
public:
    static int live;
    explicit CountedException(const std::string& text, const ko::Exception* cause = nullptr)
        : ko::Exception(text, cause)
    {
        ++live;
    }
    CountedException(const CountedException& other)
        : ko::Exception(other)
    {
        ++live;
    }
    CountedException& operator=(const CountedException& other) = default;
    ~CountedException() override
    {
        --live;
        delete releaseCause();
    }
    CountedException* clone() const override { return new CountedException(*this); }
};
int CountedException::live = 0;

QString chain(const ko::Exception* e)
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
    void mutexRelock_data();
    void mutexRelock();
    void mutexUnlockByOtherThreadFails();
    void mutexLockerScopes();
    void mutexCountsUnderContention();

    void exceptionCauseCopies();
    void exceptionSubclassReleasesCause();
    void exceptionSetCauseFromOwnChain();

    void logDefaultsAndSlots();
    void logPrefix();
    void logThreshold_data();
    void logThreshold();
    void logFilePerLevelAndShared();
    void logFileFailureKeepsOutput();
    void logStreamBufferReplacement();
    void logStdOutRedirect();

    void enigmaRoundTrip_data();
    void enigmaRoundTrip();
    void enigmaZeroSeedAndErrors();
};

void tst_CoreStandIn::mutexRelock_data()
{
    QTest::addColumn<bool>("recursive");
    QTest::newRow("recursive") << true;
    QTest::newRow("non-recursive") << false;
}

void tst_CoreStandIn::mutexRelock()
{
    QFETCH(bool, recursive);
    ko::Mutex mutex(recursive);
    mutex.lock();
    if (recursive) {
        mutex.lock();
        QCOMPARE(mutex.lockCount(), 2);
        mutex.unlock();
    } else {
        try {
            mutex.lock();
            QFAIL("relocking a non-recursive mutex must throw");
        } catch (const ko::RuntimeError& e) {
            QCOMPARE(QString::fromLatin1(e.what()), QStringLiteral("Nonrecursive mutex locked twice"));
        }
    }
    QCOMPARE(mutex.lockCount(), 1);
    mutex.unlock();
    QCOMPARE(mutex.lockCount(), 0);
}

void tst_CoreStandIn::mutexUnlockByOtherThreadFails()
{
    ko::Mutex mutex(true);
    mutex.lock();
    std::string error;
    std::thread other([&] {
        try {
            mutex.unlock();
        } catch (const ko::RuntimeError& e) {
            error = e.what();
        }
    });
    other.join();
    QCOMPARE(QString::fromStdString(error), QString::fromLatin1(std::strerror(EPERM)));
    mutex.unlock();
}

void tst_CoreStandIn::mutexLockerScopes()
{
    ko::Mutex mutex(false);
    {
        ko::MutexLocker deferred(mutex, false);
        QVERIFY(!deferred.isLocked());
        QCOMPARE(mutex.lockCount(), 0);
        ko::MutexLocker locker(mutex, true);
        QCOMPARE(mutex.lockCount(), 1);
    }
    QCOMPARE(mutex.lockCount(), 0);
    mutex.lock(); // free again
    mutex.unlock();
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
    for (auto& thread : threads)
        thread.join();
    QCOMPARE(counter, 80000L);
}

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
        QCOMPARE(chain(&copy), chain(&top));

        CountedException assigned("other", &root);
        assigned = top;
        QCOMPARE(chain(&assigned), chain(&top));
        assigned = assigned; // self-assignment keeps everything
        QCOMPARE(chain(&assigned), chain(&top));

        std::unique_ptr<ko::Exception> cloned(top.clone());
        QCOMPARE(chain(cloned.get()), chain(&top));

        top.setCause(nullptr);
        QVERIFY(!top.cause());
        QCOMPARE(chain(&copy), QStringLiteral("top <- middle <- root"));
    }
    QCOMPARE(CountedException::live, 0);

    // A plain ko::Exception frees its cause copies itself (LeakSanitizer checks this).
    ko::Exception plainRoot("r");
    ko::Exception plain("p", &plainRoot);
    plain.setCause(&plain);
    QCOMPARE(chain(&plain), QStringLiteral("p <- p <- r"));
}

void tst_CoreStandIn::exceptionSubclassReleasesCause()
{
    CountedException::live = 0;
    {
        ko::RuntimeError base("base");
        CountedException e("e", &base);
        e.setCause(&base);
        e.setCause(&base);
        QCOMPARE(CountedException::live, 1);
    }
    QCOMPARE(CountedException::live, 0);
}

void tst_CoreStandIn::exceptionSetCauseFromOwnChain()
{
    ko::RuntimeError root("root");
    ko::RuntimeError mid("mid", &root);
    ko::RuntimeError top("top", &mid);
    // The new cause lives inside the chain the old copy owns: it is cloned before that copy goes.
    top.setCause(top.cause()->cause());
    QCOMPARE(chain(&top), QStringLiteral("top <- root"));
}

void tst_CoreStandIn::logDefaultsAndSlots()
{
    ko::Log log;
    QCOMPARE(log.logLevel(), ko::Log::Message);
    QCOMPARE(log.getStream(ko::Log::Debug), &std::cout);
    QCOMPARE(log.getStream(ko::Log::Message), &std::cout);
    QCOMPARE(log.getStream(ko::Log::Warning), &std::cerr);
    QCOMPARE(log.getStream(ko::Log::Error), &std::cerr);
    QCOMPARE(log.getStream(ko::Log::FatalError), &std::cerr);
    QCOMPARE(log.getStream(ko::Log::ELevel(7)), log.getStream(ko::Log::Debug));
    QVERIFY(log.mutex().isRecursive());
    QCOMPARE(&ko::Log::instance(), &ko::Log::instance());
}

void tst_CoreStandIn::logPrefix()
{
    ko::Log log;
    std::ostringstream out;
    log.setStream(ko::Log::Warning, &out, false);
    log.pre(ko::Log::Warning);
    out << "text";
    const QString line = QString::fromStdString(out.str());
    QVERIFY2(QRegExp(QStringLiteral("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} Warning text")).exactMatch(line),
             qPrintable(line));
    QCOMPARE(LogCapture::stripPrefix(line), QStringLiteral("text"));
}

void tst_CoreStandIn::logThreshold_data()
{
    QTest::addColumn<int>("threshold");
    QTest::addColumn<QString>("written");
    QTest::newRow("debug") << 0 << QStringLiteral("01234");
    QTest::newRow("message") << 1 << QStringLiteral("1234");
    QTest::newRow("warning") << 2 << QStringLiteral("234");
    QTest::newRow("fatal") << 4 << QStringLiteral("4");
}

void tst_CoreStandIn::logThreshold()
{
    QFETCH(int, threshold);
    QFETCH(QString, written);
    LogCapture capture{ko::Log::ELevel(threshold)};
    ko::Log& log = ko::Log::instance();
    QString seen;
    for (int level = 0; level < ko::Log::LevelCount; ++level) {
        // The caller's side of a line: the log only supplies streams, prefix and threshold.
        ko::MutexLocker lock(log.mutex(), true);
        if (log.logLevel() <= level) {
            log.pre(ko::Log::ELevel(level));
            *log.getStream(ko::Log::ELevel(level)) << level << std::endl;
        }
    }
    for (int level = 0; level < ko::Log::LevelCount; ++level)
        seen += capture.lines(ko::Log::ELevel(level)).join(QString());
    QCOMPARE(seen, written);
}

void tst_CoreStandIn::logFilePerLevelAndShared()
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

    log.setLogFile(all, false);
    std::ostream* shared = log.getStream(ko::Log::Debug);
    for (int level = 0; level < ko::Log::LevelCount; ++level) {
        QCOMPARE(log.getStream(ko::Log::ELevel(level)), shared);
        *shared << level << '\n';
    }
    shared->flush();

    std::ifstream errorFile(errors), allFile(all);
    std::stringstream errorText, allText;
    errorText << errorFile.rdbuf();
    allText << allFile.rdbuf();
    QCOMPARE(QString::fromStdString(errorText.str()), QStringLiteral("first\nappended\n"));
    QCOMPARE(QString::fromStdString(allText.str()), QStringLiteral("0\n1\n2\n3\n4\n"));
}

void tst_CoreStandIn::logFileFailureKeepsOutput()
{
    ko::Log log;
    std::ostringstream warnings, errors;
    log.setStream(ko::Log::Warning, &warnings, false);
    log.setStream(ko::Log::Error, &errors, false);
    log.setLogFile(ko::Log::Warning, "/nonexistent-dir/x.log", false);
    QCOMPARE(log.getStream(ko::Log::Warning), &warnings);
    log.setLogFile("/nonexistent-dir/all.log", true);
    QCOMPARE(log.getStream(ko::Log::Error), &errors);
    const QStringList reports = QString::fromStdString(errors.str()).split(QLatin1Char('\n'), QString::SkipEmptyParts);
    QCOMPARE(reports.size(), 2);
    QCOMPARE(LogCapture::stripPrefix(reports.at(0)),
             QStringLiteral("Cannot open log file /nonexistent-dir/x.log: ") + QString::fromLatin1(std::strerror(ENOENT)));
}

void tst_CoreStandIn::logStreamBufferReplacement()
{
    ko::Log log;
    std::ostringstream first, second;
    log.setStream(ko::Log::Message, &first, false);
    std::streambuf* before = log.getStream(ko::Log::Message)->rdbuf();
    log.setStream(ko::Log::Message, &second, false);
    QVERIFY(log.getStream(ko::Log::Message)->rdbuf() != before);

    // An owned stream is deleted when replaced; a null stream silences the level.
    log.setStream(ko::Log::Message, new std::ostringstream, true);
    log.setStream(ko::Log::Message, nullptr, false);
    QVERIFY(!log.getStream(ko::Log::Message));
    log.pre(ko::Log::Message); // harmless without a stream
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
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("redirected\n"));

    LogCapture capture;
    ko::Log::setStdOut("/nonexistent-dir/out.txt", true, true);
    QCOMPARE(capture.lines(ko::Log::Error).size(), 1);
}

void tst_CoreStandIn::enigmaRoundTrip_data()
{
    QTest::addColumn<uint>("seed");
    QTest::addColumn<int>("length");
    QTest::newRow("small seed") << 7u << 1;
    QTest::newRow("large seed") << 0x89abcdefu << 1000;
    QTest::newRow("all ones") << 0xffffffffu << 4096;
}

void tst_CoreStandIn::enigmaRoundTrip()
{
    QFETCH(uint, seed);
    QFETCH(int, length);
    ko::Enigma enigma{ko::Random(seed)};
    QCOMPARE(enigma.seed(), seed);
    QCOMPARE(enigma.initialState(), seed);

    QByteArray plain(length, Qt::Uninitialized);
    for (int i = 0; i < length; ++i)
        plain[i] = char(i * 31 + 7);
    QByteArray cipher(length, '\0');
    unsigned state = enigma.initialState();
    auto* in = reinterpret_cast<const unsigned char*>(plain.constData());
    auto* out = reinterpret_cast<unsigned char*>(cipher.data());
    QCOMPARE(enigma.encode(in, unsigned(length), out, unsigned(length), state), length);

    unsigned expected = seed;
    for (int i = 0; i < length; ++i)
        expected = ko::Enigma::step(expected);
    QCOMPARE(state, expected);
    if (length > 8)
        QVERIFY(cipher != plain);

    state = enigma.initialState();
    QCOMPARE(enigma.decode(out, unsigned(length), out, unsigned(length), state), length);
    QCOMPARE(cipher, plain);
}

void tst_CoreStandIn::enigmaZeroSeedAndErrors()
{
    ko::Enigma engine{ko::Random(0, 0)};
    QVERIFY(engine.seed() != 0);
    QCOMPARE(engine.state(), engine.initialState());
    unsigned char buffer[4] = {1, 2, 3, 4};
    unsigned state = engine.state();
    QCOMPARE(engine.encode(nullptr, 4, buffer, 4, state), -1);
    QCOMPARE(engine.encode(buffer, 4, buffer, 3, state), -1);
    QCOMPARE(state, engine.state());
    QCOMPARE(ko::Enigma::step(0), 12345u >> 16);
    QCOMPARE(ko::Enigma::step(1), ((1103515245u + 12345u) >> 16) & 0x7fffu);
}

QTEST_GUILESS_MAIN(tst_CoreStandIn)
#include "tst_CoreStandIn.moc"
