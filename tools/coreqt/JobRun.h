// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_JOBRUN_H
#define COREQT_TOOL_JOBRUN_H

#include <QString>

#include <functional>

namespace ko
{
class komQtThreadPool;
}

namespace tool
{

/**
 * Runs @p jobs jobs, each calling @p work with its job id on a worker thread, on a
 * ko::komQtThreadPool named @p name with at most @p threads workers. Waits for all of them
 * while the caller's event loop runs (calling @p progress with the number done every 100 ms),
 * then shuts the workers down and waits until they are deleted. @p setUp, when given, is called
 * with the pool before the first job is scheduled.
 * Returns the time from the first schedule to the last job's end, in nanoseconds.
 */
qint64 runJobs(const QString &name, int jobs, int threads,
    const std::function<void(int jobId)> &work,
    const std::function<void(int done)> &progress = nullptr,
    const std::function<void(ko::komQtThreadPool &pool)> &setUp = nullptr);

} // namespace tool

#endif // COREQT_TOOL_JOBRUN_H
