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
    enum Error { NoError, NoSuchSocket, NotListening, NoAccess, NotAConsole, NoAnswer, UnknownVersion };

    /** The outcome of a fetch. */
    struct Reply
    {
        /** NoError, or why it failed. */
        Error error = NoError;
        /** On failure: the name or path, a colon and what went wrong, such as "x: no such socket". */
        QString message;
        /** The bytes received. */
        QByteArray json;
        /** The document read from them, when there is no error. */
        ConsoleDocument document;
    };

    ConsoleClient() = delete;

    /** The time limit of fetch() unless told otherwise. */
    static constexpr int kDefaultTimeoutMs = 5000;

    /**
     * Connects to the console at @p nameOrPath (see Console::socketPath) and reads its document,
     * waiting at most @p timeoutMs in all (negative: no limit). Blocks; needs no event loop.
     */
    static Reply fetch(const QString& nameOrPath, int timeoutMs = kDefaultTimeoutMs);
};

} // namespace ko

#endif // KO_CONSOLECLIENT_H
