// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "TopCommand.h"

#include "Arguments.h"
#include "ConsoleTable.h"
#include "Output.h"

#include "console/ConsoleClient.h"
#include "exceptions/RuntimeException.h"

#include <QJsonDocument>

#include <csignal>
#include <cstring>

#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tool
{

namespace
{

const QString kOnceOption = QStringLiteral("once");
const QString kTimeoutOption = QStringLiteral("timeout");

// Switches to the terminal's alternate screen without a cursor; the way back undoes both.
constexpr char kEnterScreen[] = "\033[?1049h\033[?25l";
constexpr char kLeaveScreen[] = "\033[?25h\033[?1049l";
constexpr char kClearScreen[] = "\033[H\033[2J";

// What the signal handler puts back: the terminal's settings from before the live view.
struct termios sSaved;

void restoreTerminal()
{
    ::tcsetattr(STDIN_FILENO, TCSANOW, &sSaved);
    [[maybe_unused]] const ssize_t written
        = ::write(STDOUT_FILENO, kLeaveScreen, sizeof kLeaveScreen - 1);
}

// Ctrl-C is one of the two ways to leave the live view; the others that end a program end it too.
extern "C" void leaveOnSignal(int signal)
{
    restoreTerminal();
    ::_exit(signal == SIGINT ? 0 : 128 + signal);
}

/**
 * The live view's hold on the terminal: keys are read one by one without echo, on the alternate
 * screen. Given back when it goes, and by SIGINT, SIGTERM and SIGHUP, which end the program.
 */
class LiveScreen
{
public:
    LiveScreen()
    {
        ::tcgetattr(STDIN_FILENO, &sSaved);
        struct termios raw = sSaved;
        raw.c_lflag &= tcflag_t(~(ICANON | ECHO));
        raw.c_cc[VMIN] = 0;
        raw.c_cc[VTIME] = 0;
        struct sigaction action = {};
        action.sa_handler = leaveOnSignal;
        sigfillset(&action.sa_mask);
        for (int i = 0; i < 3; ++i)
            ::sigaction(kSignals[i], &action, &mPrevious[i]);
        ::tcsetattr(STDIN_FILENO, TCSANOW, &raw);
        writeOut(kEnterScreen);
    }
    ~LiveScreen()
    {
        restoreTerminal();
        for (int i = 0; i < 3; ++i)
            ::sigaction(kSignals[i], &mPrevious[i], nullptr);
    }
    LiveScreen(const LiveScreen &) = delete;
    LiveScreen &operator=(const LiveScreen &) = delete;

    void draw(const QString &text) { writeOut(QByteArray(kClearScreen) + text.toUtf8()); }

    // Waits up to @p milliseconds for keys; true when one of them is q.
    bool quitWithin(int milliseconds)
    {
        pollfd input = { STDIN_FILENO, POLLIN, 0 };
        if (::poll(&input, 1, milliseconds) <= 0)
            return false;
        char keys[64];
        const ssize_t n = ::read(STDIN_FILENO, keys, sizeof keys);
        return n > 0 && (std::memchr(keys, 'q', size_t(n)) || std::memchr(keys, 'Q', size_t(n)));
    }

private:
    static constexpr int kSignals[3] = { SIGINT, SIGTERM, SIGHUP };

    static void writeOut(const QByteArray &bytes)
    {
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
        std::fflush(stdout);
    }

    struct sigaction mPrevious[3];
};

ko::ConsoleDocument fetch(const QString &target, int timeoutMs, QByteArray *json = nullptr)
{
    ko::ConsoleClient::Reply reply = ko::ConsoleClient::fetch(target, timeoutMs);
    if (reply.error != ko::ConsoleClient::NoError)
        throw ko::RuntimeException(reply.message);
    if (json)
        *json = reply.json;
    return reply.document;
}

int runTop(const Invocation &invocation)
{
    const QString target = invocation.arguments.first();
    const int timeout = invocation.isSet(kTimeoutOption)
        ? parseInteger(QStringLiteral("--timeout"), invocation.value(kTimeoutOption), 1)
        : ko::ConsoleClient::kDefaultTimeoutMs;
    const bool live = !invocation.isSet(kOnceOption) && invocation.format == Format::Text
        && ::isatty(STDIN_FILENO) == 1 && ::isatty(STDOUT_FILENO) == 1;
    QByteArray json;
    ko::ConsoleDocument document = fetch(target, timeout, &json);
    if (invocation.format == Format::Json) {
        printText(QString::fromUtf8(QJsonDocument::fromJson(json).toJson(QJsonDocument::Indented)));
        return 0;
    }
    if (!live) {
        printText(consoleTable(document, false));
        return 0;
    }
    LiveScreen screen;
    for (;;) {
        screen.draw(consoleTable(document, true)
            + QStringLiteral("\n%1: refreshed every second; q or Ctrl-C quits.\n").arg(target));
        if (screen.quitWithin(1000))
            return 0;
        document = fetch(target, timeout); // a console that went away ends the view with its error
    }
}

QList<QCommandLineOption> topOptions()
{
    return { QCommandLineOption(kOnceOption,
                 QStringLiteral("Prints one snapshot and exits (also without a terminal).")),
        QCommandLineOption(kTimeoutOption,
            QStringLiteral("Milliseconds to wait for the console's answer (default 5000)."),
            QStringLiteral("MS")) };
}

} // namespace

const Command kTopCommand = { "top", "NAME|PATH",
    "Shows the pools of a process whose live console listens on the local socket NAME (in the "
    "temporary folder) or PATH: each worker's running job and its running time, the queue with "
    "ages, the totals; stalled jobs stand out. Redrawn every second on a terminal until q or "
    "Ctrl-C.",
    1, 1, topOptions, runTop, "coreqt top recorder --once" };

} // namespace tool
