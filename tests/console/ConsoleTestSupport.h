// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TESTS_CONSOLETESTSUPPORT_H
#define COREQT_TESTS_CONSOLETESTSUPPORT_H

#include "../threads/JobTestSupport.h"

#include "console/ConsoleDocument.h"
#include "threads/PoolRegistry.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>

/** A job pool known to the console, with one job held at a gate and two queued behind it. */
struct HeldPool
{
    TestPool pool;
    QSemaphore gate;
    int held = -1, second = -1, third = -1;
    kom::smart<RecordingJob> job;

    explicit HeldPool(const QString &name)
        : pool(name, 1)
    {
        ko::PoolRegistry::add(&pool);
        job = scheduleJob(pool, held, &gate);
        job->waitStarted();
        scheduleJob(pool, second);
        scheduleJob(pool, third);
    }
    ~HeldPool()
    {
        gate.release();
        pool.retire();
    }
};

/** The path of a console's socket, in a folder of its own that goes with the object. */
struct SocketPath
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("console"));
};

/** The job pool named @p name in @p document, or null. */
inline const ko::JobPoolSnapshot *poolNamed(
    const ko::ConsoleDocument &document, const QString &name)
{
    const auto found = std::find_if(document.jobPools.cbegin(), document.jobPools.cend(),
        [&name](const ko::JobPoolSnapshot &pool) { return pool.name == name; });
    return found == document.jobPools.cend() ? nullptr : &*found;
}

/** Leaves a socket file at @p path with nobody behind it, as a process that ended leaves it. */
inline bool leaveStaleSocket(const QString &path)
{
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
    ::close(fd);
    return bound;
}

#endif // COREQT_TESTS_CONSOLETESTSUPPORT_H
