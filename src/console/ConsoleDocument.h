// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CONSOLEDOCUMENT_H
#define KO_CONSOLEDOCUMENT_H

#include "coreqtconsole_export.h"
#include "threads/PoolSnapshot.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QVector>

namespace ko
{

/**
 * What a live console sends each client: the process, the log front's line counts and a
 * snapshot of every registered pool. Its JSON form is an object whose "console" is "CoreQt"
 * and whose "version" is the format version; fromJson() reads it back.
 */
struct COREQTCONSOLE_EXPORT ConsoleDocument
{
    /** The format version this library writes and reads. */
    static constexpr int kFormatVersion = 1;

    /** The format version of the document. */
    int version = kFormatVersion;
    /** The process that sent it. */
    qint64 processId = 0;
    /** Milliseconds since the console library was loaded, with the program that links it. */
    qint64 uptimeMs = 0;
    /** Lines written through the log front at each level, Debug (0) to FatalError (4). */
    QVector<quint64> logLines;
    /** The registered job pools. */
    QVector<JobPoolSnapshot> jobPools;
    /** The registered signal thread pools. */
    QVector<SignalPoolSnapshot> signalPools;

    /** This process now, waiting at most @p lockTimeoutMs for each pool's lock. */
    static ConsoleDocument current(int lockTimeoutMs = 1000);

    /** How fromJson() ended. */
    enum ReadResult { Read, NotAConsole, UnknownVersion };
    /** @var Read
     *  The document was read. */
    /** @var NotAConsole
     *  The bytes are not a JSON object that names itself a CoreQt console. */
    /** @var UnknownVersion
     *  A console document of another format version; only its version was read. */

    /** The JSON form. */
    QByteArray toJson(QJsonDocument::JsonFormat format = QJsonDocument::Compact) const;
    /**
     * Reads the JSON form @p json into @p document. Anything that is not a JSON object naming
     * itself a CoreQt console is NotAConsole; another format version is UnknownVersion, with
     * @p document's version set to it. Fields that are missing keep their defaults.
     */
    static ReadResult fromJson(const QByteArray &json, ConsoleDocument *document);
};

/** The name of log level @p level (0 to 4) in a document: "Debug", "Message", "Warning", "Error",
 * "FatalError". */
COREQTCONSOLE_EXPORT QString logLevelName(int level);

/** The status of a pool whose lock was not had in @p lockWaitMs: "lock busy for more than 1.0 s".
 */
COREQTCONSOLE_EXPORT QString lockBusyText(int lockWaitMs);

} // namespace ko

#endif // KO_CONSOLEDOCUMENT_H
