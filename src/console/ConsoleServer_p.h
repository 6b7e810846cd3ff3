// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CONSOLESERVER_P_H
#define KO_CONSOLESERVER_P_H

#include <QLocalServer>
#include <QObject>

namespace ko
{

/**
 * The console's server, living in the console's thread: sends each client the current
 * document, drops what the client sends, and disconnects it when the document is out or the
 * time limit has passed. At most Console::kMaxClients at once.
 */
class ConsoleServer : public QObject
{
    Q_OBJECT

public:
    /** A server that does not listen yet. */
    explicit ConsoleServer(QObject *parent = nullptr);

    /** Listens on @p nameOrPath (see Console::listen); call it in the server's thread. */
    bool listen(const QString &nameOrPath);
    /** The socket's path while it listens. */
    QString fullServerName() const { return mServer.fullServerName(); }

private:
    void serve();

    QLocalServer mServer;
    int mClients = 0;
};

} // namespace ko

#endif // KO_CONSOLESERVER_P_H
