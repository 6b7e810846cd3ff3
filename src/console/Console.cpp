// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "console/Console.h"

#include "console/ConsoleServer_p.h"

#include <QCoreApplication>
#include <QDir>
#include <QMutex>
#include <QMutexLocker>
#include <QThread>

#include <memory>

namespace ko
{

namespace
{

// The open console: its thread, and the socket's path (empty while none is open).
struct Endpoint
{
    QMutex mutex;
    std::unique_ptr<QThread> thread;
    QString path;

    ~Endpoint() { stop_locked(); }

    // Ends the thread; the server, deleted as the thread finishes, removes its socket.
    void stop_locked()
    {
        if (!thread)
            return;
        thread->quit();
        thread->wait();
        thread.reset();
        path.clear();
    }
};

Endpoint &endpoint()
{
    static Endpoint instance;
    return instance;
}

void closeAtExit()
{
    Console::close();
}

} // namespace

bool Console::listen(const QString &nameOrPath)
{
    Endpoint &open = endpoint();
    QMutexLocker lock(&open.mutex);
    open.stop_locked();
    auto thread = std::make_unique<QThread>();
    thread->setObjectName(QStringLiteral("CoreQt-Console"));
    auto *server = new ConsoleServer;
    server->moveToThread(thread.get());
    QObject::connect(thread.get(), &QThread::finished, server, &QObject::deleteLater);
    thread->start();
    QString path;
    QMetaObject::invokeMethod(
        server,
        [server, &nameOrPath, &path]() {
            if (server->listen(nameOrPath))
                path = server->fullServerName();
        },
        Qt::BlockingQueuedConnection);
    open.thread = std::move(thread);
    if (path.isEmpty()) {
        open.stop_locked();
        return false;
    }
    open.path = path;
    // The thread is ended before the application goes; registered once per process.
    static const bool registered = [] {
        qAddPostRoutine(closeAtExit);
        return true;
    }();
    Q_UNUSED(registered)
    return true;
}

void Console::close()
{
    Endpoint &open = endpoint();
    QMutexLocker lock(&open.mutex);
    open.stop_locked();
}

bool Console::isListening()
{
    Endpoint &open = endpoint();
    QMutexLocker lock(&open.mutex);
    return !open.path.isEmpty();
}

QString Console::serverPath()
{
    Endpoint &open = endpoint();
    QMutexLocker lock(&open.mutex);
    return open.path;
}

QString Console::socketPath(const QString &nameOrPath)
{
    return QDir::isAbsolutePath(nameOrPath) ? nameOrPath
                                            : QDir::tempPath() + QLatin1Char('/') + nameOrPath;
}

} // namespace ko
