// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "console/ConsoleServer_p.h"

#include "console/Console.h"
#include "console/ConsoleDocument.h"
#include "log/LogQt.h"

#include <QFile>
#include <QLocalSocket>
#include <QTimer>

#include <sys/stat.h>

namespace ko
{

namespace
{

// True when a server accepts connections on @p path.
bool answers(const QString &path)
{
    QLocalSocket probe;
    probe.connectToServer(path, QIODevice::ReadOnly);
    return probe.waitForConnected(1000);
}

} // namespace

ConsoleServer::ConsoleServer(QObject *parent)
    : QObject(parent)
    , mServer(this) // moves to the console's thread with its parent
{
    mServer.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&mServer, &QLocalServer::newConnection, this, &ConsoleServer::serve);
}

bool ConsoleServer::listen(const QString &nameOrPath)
{
    const QString path = Console::socketPath(nameOrPath);
    const auto refuse = [&path](const QString &reason) {
        LogLine(Log::Warning) << "console: cannot listen on " << path << ": " << reason;
        return false;
    };
    // Qt would move the new socket into the place of whatever is there: a socket on which another
    // server answers, or a file that is not a socket, is left alone; a socket left behind by a
    // process that has ended is replaced.
    struct stat status;
    if (::lstat(QFile::encodeName(path).constData(), &status) == 0) {
        if (!S_ISSOCK(status.st_mode))
            return refuse(QStringLiteral("a file that is not a socket is there"));
        if (answers(path))
            return refuse(QStringLiteral("another server answers there"));
        QLocalServer::removeServer(path);
    }
    if (!mServer.listen(path))
        return refuse(mServer.errorString());
    // Qt gives the owner read, write and execute; a socket needs only the first two.
    QFile::setPermissions(mServer.fullServerName(), QFile::ReadOwner | QFile::WriteOwner);
    LogLine(Log::Message) << "console: listening on " << mServer.fullServerName();
    return true;
}

void ConsoleServer::serve()
{
    while (QLocalSocket *client = mServer.nextPendingConnection()) {
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        if (mClients >= Console::kMaxClients) {
            client->abort();
            continue;
        }
        ++mClients;
        connect(client, &QObject::destroyed, this, [this]() { --mClients; });
        // Clients cannot tell the console anything: their input is read and dropped.
        connect(client, &QIODevice::readyRead, client, [client]() { client->readAll(); });
        connect(client, &QIODevice::bytesWritten, client, [client]() {
            if (client->bytesToWrite() == 0)
                client->disconnectFromServer();
        });
        // A child of the client, so that it goes with it: thousands of short clients leave no
        // timers.
        auto *limit = new QTimer(client);
        limit->setSingleShot(true);
        connect(limit, &QTimer::timeout, client, &QLocalSocket::abort);
        limit->start(Console::kClientTimeLimitMs);
        client->write(ConsoleDocument::current(Console::kLockTimeoutMs).toJson());
    }
}

} // namespace ko
