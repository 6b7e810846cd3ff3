// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komTerminal.h"

#include "platform/kom/komException.h"
#include "platform/kom/komStatusMessage.h"

#include <atomic>

namespace kom
{

namespace
{
std::atomic<TerminalHandler> gTerminalHandler(&defaultTerminalHandler);
}

void defaultTerminalHandler(const komString &message, const komObject *sender)
{
    sendStatusMessage(StatusFatal, message, sender);
    throw komTerminalException(message);
}

void terminal(const komString &message, const komObject *sender)
{
    gTerminalHandler.load()(message, sender);
}

TerminalHandler setTerminalHandler(TerminalHandler handler)
{
    return gTerminalHandler.exchange(handler ? handler : &defaultTerminalHandler);
}

} // namespace kom
