// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CONSOLE_H
#define KO_CONSOLE_H

#include "coreqtconsole_export.h"

#include <QString>

namespace ko
{

/**
 * The live console: a local socket on which the process answers every client with one
 * ConsoleDocument in JSON (the registered pools, the log's line counts) and then disconnects.
 * It runs in a thread of its own with its own event loop, so it answers while the application's
 * threads are blocked. Clients cannot change anything: what they send is read and dropped.
 */
class COREQTCONSOLE_EXPORT Console
{
public:
    /** How long the console waits for each pool's lock before it reports the pool as busy. */
    static constexpr int kLockTimeoutMs = 1000;
    /** How long a client may take to receive the document before it is dropped. */
    static constexpr int kClientTimeLimitMs = 3000;
    /** How many clients are served at once; further ones are disconnected at once. */
    static constexpr int kMaxClients = 4;

    /** Not instantiable: the console is one per process, and its functions are static. */
    Console() = delete;

    /**
     * Opens the console on the local socket @p nameOrPath (a name, not an absolute path, is put
     * in QDir::tempPath()), readable and writable by the owning user only (mode 0600). An open
     * console is closed first. A socket left behind by a process that has ended is replaced; one
     * on which another console answers is not, nor a file that is not a socket: then false, and
     * one warning in the log. Needs a QCoreApplication.
     */
    static bool listen(const QString &nameOrPath);
    /** Closes the console, drops its clients and removes the socket; nothing happens when none is
     * open. */
    static void close();
    /** True while the console is open. */
    static bool isListening();
    /** The socket's path while the console is open; empty otherwise. */
    static QString serverPath();
    /** The path of the socket @p nameOrPath: itself when absolute, otherwise in QDir::tempPath().
     */
    static QString socketPath(const QString &nameOrPath);
};

} // namespace ko

#endif // KO_CONSOLE_H
