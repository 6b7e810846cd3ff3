// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "console/ConsoleClient.h"

#include "console/Console.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>

#include <sys/stat.h>

namespace ko
{

namespace
{

// A console's document is a few kilobytes per pool; a peer that sends more is something else.
constexpr int kMaxDocumentBytes = 16 << 20;

int remaining(const QDeadlineTimer &deadline)
{
    return deadline.isForever() ? -1 : int(deadline.remainingTime());
}

} // namespace

ConsoleClient::Reply ConsoleClient::fetch(const QString &nameOrPath, int timeoutMs)
{
    Reply reply;
    const auto failed = [&reply, &nameOrPath](Error error, const QString &what) {
        reply.error = error;
        reply.message = nameOrPath + QStringLiteral(": ") + what;
        return reply;
    };
    const QString noAnswer
        = QStringLiteral("no answer within %1 s").arg(double(timeoutMs) / 1000.0, 0, 'f', 1);
    const QString notAConsole = QStringLiteral("not a CoreQt console");

    const QString path = Console::socketPath(nameOrPath);
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return failed(NoSuchSocket, QStringLiteral("no such socket"));
    if (!S_ISSOCK(status.st_mode))
        return failed(NotAConsole, notAConsole + QStringLiteral(" (not a socket)"));

    const QDeadlineTimer deadline(
        timeoutMs < 0 ? QDeadlineTimer::Forever : QDeadlineTimer(timeoutMs));
    QLocalSocket socket;
    socket.connectToServer(path, QIODevice::ReadOnly);
    if (!socket.waitForConnected(remaining(deadline))) {
        switch (socket.error()) {
        case QLocalSocket::SocketTimeoutError:
            return failed(NoAnswer, noAnswer);
        case QLocalSocket::ServerNotFoundError:
            return failed(NoSuchSocket, QStringLiteral("no such socket"));
        case QLocalSocket::SocketAccessError:
            return failed(NoAccess,
                QStringLiteral("permission denied (a console answers its own user only)"));
        case QLocalSocket::ConnectionRefusedError:
            return failed(NotListening, QStringLiteral("nothing listens on it"));
        default:
            return failed(NotListening, socket.errorString());
        }
    }
    // The document ends where the console disconnects.
    while (socket.state() == QLocalSocket::ConnectedState) {
        if (deadline.hasExpired())
            return failed(NoAnswer, noAnswer);
        if (socket.waitForReadyRead(remaining(deadline)))
            reply.json += socket.readAll();
        else if (socket.error() != QLocalSocket::SocketTimeoutError)
            break;
        if (reply.json.size() > kMaxDocumentBytes)
            return failed(NotAConsole, notAConsole + QStringLiteral(" (it sends too much)"));
    }
    reply.json += socket.readAll();
    switch (ConsoleDocument::fromJson(reply.json, &reply.document)) {
    case ConsoleDocument::Read:
        break;
    case ConsoleDocument::NotAConsole:
        return failed(NotAConsole, notAConsole);
    case ConsoleDocument::UnknownVersion:
        return failed(UnknownVersion,
            QStringLiteral("unknown format version %1 (this program reads version %2)")
                .arg(reply.document.version)
                .arg(ConsoleDocument::kFormatVersion));
    }
    return reply;
}

} // namespace ko
