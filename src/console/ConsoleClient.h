// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CONSOLECLIENT_H
#define KO_CONSOLECLIENT_H

#include "console/ConsoleDocument.h"
#include "coreqtconsole_export.h"

#include <QString>

namespace ko
{

/** Reads the document of a live console (ko::Console) from its socket. */
class COREQTCONSOLE_EXPORT ConsoleClient
{
public:
    /** Why a fetch failed. */
    enum Error {
        NoError,
        NoSuchSocket,
        NotListening,
        NoAccess,
        NotAConsole,
        NoAnswer,
        UnknownVersion
    };
    /** @var NoError
     *  The document was read. */
    /** @var NoSuchSocket
     *  There is no socket at the path. */
    /** @var NotListening
     *  A socket is there, but nothing accepts connections on it. */
    /** @var NoAccess
     *  The socket belongs to another user: a console answers its own user only. */
    /** @var NotAConsole
     *  The path is not a socket, or what came back is not a console's document. */
    /** @var NoAnswer
     *  The document did not arrive within the time limit. */
    /** @var UnknownVersion
     *  The document has a format version this library does not read. */

    /** The outcome of a fetch. */
    struct Reply
    {
        /** NoError, or why it failed. */
        Error error = NoError;
        /** On failure: the name or path, a colon and what went wrong, such as "x: no such socket".
         */
        QString message;
        /** The bytes received. */
        QByteArray json;
        /** The document read from them, when there is no error. */
        ConsoleDocument document;
    };

    /** Not instantiable: fetch() is static. */
    ConsoleClient() = delete;

    /** The time limit of fetch() unless told otherwise. */
    static constexpr int kDefaultTimeoutMs = 5000;

    /**
     * Connects to the console at @p nameOrPath (see Console::socketPath) and reads its document,
     * waiting at most @p timeoutMs in all (negative: no limit). Blocks; needs no event loop.
     */
    static Reply fetch(const QString &nameOrPath, int timeoutMs = kDefaultTimeoutMs);
};

} // namespace ko

#endif // KO_CONSOLECLIENT_H
