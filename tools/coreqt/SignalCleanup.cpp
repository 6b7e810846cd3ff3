// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "SignalCleanup.h"

#include <QByteArray>

#include <atomic>
#include <climits>
#include <iterator>

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{

namespace
{

constexpr int kSignals[] = { SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE };

// What the handler reads: the path is written completely before the flag is set, and the flag is
// cleared before the path changes.
char sPath[PATH_MAX];
volatile sig_atomic_t sArmed = 0;

extern "C" void endOnSignal(int signal)
{
    if (sArmed)
        ::unlink(sPath);
    ::_exit(128 + signal);
}

} // namespace

SignalCleanup::SignalCleanup()
{
    sigemptyset(&mSignals);
    for (int signal : kSignals)
        sigaddset(&mSignals, signal);
    struct sigaction action = {};
    action.sa_handler = endOnSignal;
    action.sa_mask = mSignals; // one handler at a time
    for (int i = 0; i < int(std::size(kSignals)); ++i)
        ::sigaction(kSignals[i], &action, &mPrevious[i]);
}

SignalCleanup::~SignalCleanup()
{
    keepOnSignal();
    for (int i = 0; i < int(std::size(kSignals)); ++i)
        ::sigaction(kSignals[i], &mPrevious[i], nullptr);
}

void SignalCleanup::hold()
{
    ::pthread_sigmask(SIG_BLOCK, &mSignals, nullptr);
}

void SignalCleanup::release()
{
    ::pthread_sigmask(SIG_UNBLOCK, &mSignals, nullptr);
}

void SignalCleanup::removeOnSignal(int fd)
{
    keepOnSignal();
    // An unnamed temporary file (O_TMPFILE, which QSaveFile uses where it can) ends with the
    // process; its descriptor's link reads "<folder>/#<inode> (deleted)", a name not to remove.
    struct stat status;
    if (::fstat(fd, &status) != 0 || status.st_nlink == 0)
        return;
    // The descriptor names its file even where Qt does not tell the name (QSaveFile's temporary).
    const QByteArray link = "/proc/self/fd/" + QByteArray::number(fd);
    const ssize_t n = ::readlink(link.constData(), sPath, sizeof sPath - 1);
    if (n <= 0)
        return;
    sPath[n] = '\0';
    std::atomic_signal_fence(std::memory_order_seq_cst);
    sArmed = 1;
}

void SignalCleanup::keepOnSignal()
{
    sArmed = 0;
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

} // namespace tool
