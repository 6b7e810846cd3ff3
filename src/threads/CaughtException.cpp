// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/CaughtException_p.h"

#include "exceptions/ExceptionQt.h"
#include "kom/koqtextstream.h"
#include "log/LogQt.h"

#include "platform/kom/komException.h"

#include <QObject>
#include <QString>

#include <exception>

#ifdef __GLIBCXX__
#include <cxxabi.h>
#endif

namespace ko
{

void logCaughtException(Log::ELevel level, const QString &threadName)
{
    const QString where = QStringLiteral("in worker thread ") + threadName + QStringLiteral(": ");
#if defined(__clang__)
    // Clang takes char* and const char* handlers for one and the same; the table lists both.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wexceptions"
#endif
    try {
        throw;
#ifdef __GLIBCXX__
    } catch (abi::__forced_unwind &) {
        throw; // a cancelled thread must unwind to its end
#endif
    } catch (ko::ExceptionQt &e) {
        LogLine(level) << e;
    } catch (char *text) {
        LogLine(level) << where << text;
    } catch (const char *text) {
        LogLine(level) << where << text;
    } catch (komTerminalException &e) {
        LogLine(level) << where << e;
    } catch (komException &e) {
        LogLine(level) << where << e;
    } catch (std::exception &e) {
        LogLine(level) << where << e.what();
    } catch (QObject &o) {
        LogLine(level) << where << o.metaObject()->className();
    } catch (...) {
        LogLine(level) << where;
    }
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
}

} // namespace ko
