// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_SIGNALCLEANUP_H
#define COREQT_TOOL_SIGNALCLEANUP_H

#include <csignal>

namespace tool
{

/**
 * While it exists, SIGINT, SIGTERM, SIGHUP, SIGQUIT and SIGPIPE end the process at once with the
 * status 128 + the signal's number, after removing the file registered with removeOnSignal().
 * Nothing else runs on the way out; commands print their results only once they have succeeded.
 * One at a time.
 */
class SignalCleanup
{
public:
    /** Installs the handlers. */
    SignalCleanup();
    /** Puts the previous handlers back and forgets the registered file. */
    ~SignalCleanup();

    SignalCleanup(const SignalCleanup &) = delete;
    SignalCleanup &operator=(const SignalCleanup &) = delete;

    /** Holds the signals back until release(), so that a file created meanwhile is registered
     * first. */
    void hold();
    /** Lets held signals through; one that came meanwhile is handled now. */
    void release();
    /** Registers the file open as descriptor @p fd, to be removed on a signal. */
    void removeOnSignal(int fd);
    /** Forgets the registered file: it is complete, or gone. */
    void keepOnSignal();

private:
    sigset_t mSignals;
    struct sigaction mPrevious[5];
};

} // namespace tool

#endif // COREQT_TOOL_SIGNALCLEANUP_H
