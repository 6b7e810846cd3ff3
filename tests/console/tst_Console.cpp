// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// The live console: ko::Console serving ko::ConsoleDocument to ko::ConsoleClient over a local
// socket.
#include "ConsoleTestSupport.h"
#include "LogCapture.h"

#include "console/Console.h"
#include "console/ConsoleClient.h"
#include "console/ConsoleDocument.h"
#include "log/LogQt.h"
#include "threads/PoolRegistry.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

#include <thread>

using ko::Console;
using ko::ConsoleClient;
using ko::ConsoleDocument;

class tst_Console : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void socketForTheOwnerOnly();
    void documentOfThisProcess();
    void busyPoolLockReported();
    void takesOverOnlyAStaleSocket();
    void zeroLimitIsOverAtOnce();
    void manyClientsAtOnceGetAWholeDocumentOrNothing();
    void floodingClientsDoNotDisturbThePool();
};

void tst_Console::cleanup()
{
    Console::close();
}

void tst_Console::socketForTheOwnerOnly()
{
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    QVERIFY(!Console::isListening());
    QVERIFY(Console::listen(path));
    QVERIFY(Console::isListening());
    QCOMPARE(Console::serverPath(), path);
    struct stat status;
    QCOMPARE(::stat(QFile::encodeName(path).constData(), &status), 0);
    QVERIFY(S_ISSOCK(status.st_mode));
    QCOMPARE(status.st_mode & 07777, mode_t(0600));
    QCOMPARE(capture.lines(ko::Log::Message), QStringList("console: listening on " + path));
    Console::close();
    QVERIFY(!Console::isListening());
    QCOMPARE(Console::serverPath(), QString());
    QVERIFY(!QFile::exists(path));
    // A name without a folder lives in the temporary folder.
    QCOMPARE(Console::socketPath(QStringLiteral("app")), QDir::tempPath() + QStringLiteral("/app"));
}

void tst_Console::documentOfThisProcess()
{
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    HeldPool held(QStringLiteral("Served"));
    QVERIFY(Console::listen(path));
    // The client blocks this thread, which runs no event loop meanwhile: the console answers from
    // its own thread.
    const ConsoleClient::Reply reply = ConsoleClient::fetch(path, 10000);
    QCOMPARE(reply.message, QString());
    QCOMPARE(reply.error, ConsoleClient::NoError);
    const ConsoleDocument &document = reply.document;
    QCOMPARE(document.version, ConsoleDocument::kFormatVersion);
    QCOMPARE(document.processId, QCoreApplication::applicationPid());
    QVERIFY(document.uptimeMs > 0);
    QCOMPARE(document.logLines.size(), 5);
    for (int level = 0; level < 5; ++level)
        QCOMPARE(document.logLines.at(level), ko::LogQt::lineCount(ko::Log::ELevel(level)));
    const ko::JobPoolSnapshot *pool = poolNamed(document, QStringLiteral("Served"));
    QVERIFY(pool);
    QCOMPARE(pool->workers.size(), 1);
    QCOMPARE(pool->workers.at(0).runningJobId, held.held);
    QCOMPARE(pool->workers.at(0).queue.size(), 2);
    QCOMPARE(pool->workers.at(0).queue.at(1).jobId, held.third);
    QCOMPARE(pool->totals.scheduled, quint64(3));
    // What was read writes back to the same bytes.
    QCOMPARE(document.toJson(), reply.json);
    const QJsonObject json = QJsonDocument::fromJson(reply.json).object();
    QCOMPARE(json.value("console").toString(), QStringLiteral("CoreQt"));
    QCOMPARE(json.value("version").toInt(), 1);
}

void tst_Console::busyPoolLockReported()
{
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    HeldPool held(QStringLiteral("Stuck"));
    QVERIFY(Console::listen(path));
    QSemaphore locked, unlock;
    std::thread holder([&]() {
        QMutexLocker lock(&held.pool.poolLock());
        locked.release();
        unlock.acquire();
    });
    locked.acquire();
    const ConsoleClient::Reply reply = ConsoleClient::fetch(path, 10000);
    unlock.release();
    holder.join();
    QCOMPARE(reply.error, ConsoleClient::NoError);
    const ko::JobPoolSnapshot *pool = poolNamed(reply.document, QStringLiteral("Stuck"));
    QVERIFY(pool);
    QVERIFY(pool->lockBusy);
    QCOMPARE(pool->lockWaitMs, Console::kLockTimeoutMs);
    QCOMPARE(pool->workers.value(0).runningJobId, held.held);
    const QJsonArray pools
        = QJsonDocument::fromJson(reply.json).object().value("jobPools").toArray();
    QCOMPARE(pools.at(0).toObject().value("status").toString(),
        QStringLiteral("lock busy for more than 1.0 s"));
}

void tst_Console::takesOverOnlyAStaleSocket()
{
    LogCapture capture;
    QTemporaryDir dir;
    const QString stale = dir.filePath(QStringLiteral("stale"));
    QVERIFY(leaveStaleSocket(stale));
    QVERIFY(Console::listen(stale));
    QCOMPARE(ConsoleClient::fetch(stale).error, ConsoleClient::NoError);

    // Another server answers on its socket: it is left alone.
    const QString taken = dir.filePath(QStringLiteral("taken"));
    QLocalServer other;
    QVERIFY(other.listen(taken));
    QVERIFY(!Console::listen(taken));
    QVERIFY(!Console::isListening()); // the earlier console was closed first
    QVERIFY(QFile::exists(taken));
    const QString plain = dir.filePath(QStringLiteral("plain"));
    QFile file(plain);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("keep me");
    file.close();
    QVERIFY(!Console::listen(plain));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("keep me"));
    const QStringList warnings = capture.lines(ko::Log::Warning);
    QCOMPARE(warnings.size(), 2);
    QVERIFY2(warnings.at(0).startsWith("console: cannot listen on " + taken + ": "),
        qPrintable(warnings.at(0)));
    QVERIFY2(warnings.at(1).startsWith("console: cannot listen on " + plain + ": "),
        qPrintable(warnings.at(1)));
}

// A limit of 0 ms is over before any answer: a peer that never answers is not waited for.
void tst_Console::zeroLimitIsOverAtOnce()
{
    const SocketPath socket;
    QLocalServer silent;
    QVERIFY(silent.listen(socket.path));
    const ConsoleClient::Reply reply = ConsoleClient::fetch(socket.path, 0);
    QCOMPARE(reply.error, ConsoleClient::NoAnswer);
    QCOMPARE(reply.message, socket.path + QStringLiteral(": no answer within 0.0 s"));
}

void tst_Console::manyClientsAtOnceGetAWholeDocumentOrNothing()
{
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    QVERIFY(Console::listen(path));
    std::vector<std::unique_ptr<QLocalSocket>> clients;
    for (int i = 0; i < 3 * Console::kMaxClients; ++i) {
        clients.emplace_back(new QLocalSocket);
        clients.back()->connectToServer(path, QIODevice::ReadOnly);
        QVERIFY(clients.back()->waitForConnected(10000));
    }
    int served = 0;
    for (const auto &client : clients) {
        QByteArray received;
        while (client->state() == QLocalSocket::ConnectedState && client->waitForReadyRead(10000))
            received += client->readAll();
        received += client->readAll();
        QCOMPARE(client->state(), QLocalSocket::UnconnectedState);
        ConsoleDocument document;
        if (received.isEmpty())
            continue;
        QCOMPARE(ConsoleDocument::fromJson(received, &document), ConsoleDocument::Read);
        ++served;
    }
    QVERIFY(served >= Console::kMaxClients);
}

// While clients flood the console (connecting in a loop, sending megabytes, never reading), a
// pool runs thousands of jobs; every one runs once, and the console still answers afterwards.
void tst_Console::floodingClientsDoNotDisturbThePool()
{
    constexpr int jobs = 3000;
    LogCapture capture(ko::Log::Warning);
    const SocketPath socket;
    const QString &path = socket.path;
    TestPool pool(QStringLiteral("Flooded"), 2);
    QVERIFY(ko::PoolRegistry::add(&pool));
    QVERIFY(Console::listen(path));

    std::atomic<bool> done { false };
    std::atomic<int> connections { 0 };
    std::atomic<bool> senderDropped { false }, silentDropped { false };
    // Qt's sockets need threads that Qt started.
    std::unique_ptr<QThread> connector(QThread::create([&]() {
        while (!done) {
            QLocalSocket socket;
            socket.connectToServer(path);
            if (socket.waitForConnected(1000))
                ++connections;
        }
    }));
    std::unique_ptr<QThread> sender(QThread::create([&]() {
        QLocalSocket socket;
        socket.connectToServer(path);
        const QByteArray chunk(1 << 16, 'x');
        while (socket.waitForConnected(1000) && socket.state() == QLocalSocket::ConnectedState) {
            socket.write(chunk);
            socket.waitForBytesWritten(100);
        }
        senderDropped = true;
    }));
    std::unique_ptr<QThread> silent(QThread::create([&]() {
        // Reads nothing until the time limit is over: by then the console is done with it.
        QLocalSocket socket;
        socket.connectToServer(path);
        if (!socket.waitForConnected(1000))
            return;
        QThread::msleep(Console::kClientTimeLimitMs + 500);
        QByteArray received;
        while (socket.waitForReadyRead(10000))
            received += socket.readAll();
        ConsoleDocument document;
        silentDropped = socket.state() == QLocalSocket::UnconnectedState
            && ConsoleDocument::fromJson(received + socket.readAll(), &document)
                == ConsoleDocument::Read;
    }));
    for (QThread *thread : { connector.get(), sender.get(), silent.get() })
        thread->start();

    std::atomic<int> runs { 0 };
    for (int i = 0; i < jobs; ++i)
        pool.schedule(kom::smart<ko::IRunnable>(new TickJob(runs)));
    QVERIFY(spinUntil([&]() { return runs == jobs; }, 60000));
    QVERIFY(spinUntil([&]() { return senderDropped && silentDropped; }, 60000));
    done = true;
    for (QThread *thread : { connector.get(), sender.get(), silent.get() })
        QVERIFY(thread->wait(10000));
    QCOMPARE(runs.load(), jobs);
    QVERIFY(spinUntil([&]() { return pool.snapshot().totals.finished == jobs; }));
    QVERIFY(connections > 0);
    const ConsoleClient::Reply reply = ConsoleClient::fetch(path, 10000);
    QCOMPARE(reply.message, QString());
    QCOMPARE(poolNamed(reply.document, QStringLiteral("Flooded"))->totals.started, quint64(jobs));
    QVERIFY(pool.retire());
}

QTEST_GUILESS_MAIN(tst_Console)
#include "tst_Console.moc"
