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

bool isSocket(const QString& path)
{
    struct stat status;
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && S_ISSOCK(status.st_mode);
}

// True when a server accepts connections on @p path.
bool answers(const QString& path)
{
    QLocalSocket probe;
    probe.connectToServer(path, QIODevice::ReadOnly);
    return probe.waitForConnected(1000);
}

} // namespace

ConsoleServer::ConsoleServer(QObject* parent)
    : QObject(parent)
{
    mServer.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&mServer, &QLocalServer::newConnection, this, &ConsoleServer::serve);
}

bool ConsoleServer::listen(const QString& nameOrPath)
{
    const QString path = Console::socketPath(nameOrPath);
    bool listening = mServer.listen(path);
    // A socket whose process has ended is taken over; another console's, or a file that is not
    // a socket, is left alone.
    if (!listening && mServer.serverError() == QAbstractSocket::AddressInUseError && isSocket(path)
        && !answers(path)) {
        QLocalServer::removeServer(path);
        listening = mServer.listen(path);
    }
    if (!listening) {
        LogLine(Log::Warning) << "console: cannot listen on " << path << ": " << mServer.errorString();
        return false;
    }
    // Qt gives the owner's access as read, write and execute; a socket needs only the first two.
    QFile::setPermissions(mServer.fullServerName(), QFile::ReadOwner | QFile::WriteOwner);
    LogLine(Log::Message) << "console: listening on " << mServer.fullServerName();
    return true;
}

void ConsoleServer::serve()
{
    while (QLocalSocket* client = mServer.nextPendingConnection()) {
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
        QTimer::singleShot(Console::kClientTimeLimitMs, client, &QLocalSocket::abort);
        client->write(ConsoleDocument::current(Console::kLockTimeoutMs).toJson());
    }
}

} // namespace ko
