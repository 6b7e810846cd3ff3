// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komException.h"

komException::komException(const komString &message)
{
    mMessages.add(message, false);
}

komException::komException(const komStringList &messages)
    : mMessages(messages)
{ }

komException::~komException() = default;

void komException::addMessage(const komString &message)
{
    mMessages.add(message, false);
}

const char *komException::what() const noexcept
{
    try {
        std::string text;
        for (int i = 0; i < mMessages.size(); ++i) {
            if (i > 0)
                text += "; ";
            text += mMessages[i].text();
        }
        mWhat.swap(text);
    } catch (...) {
        // Keep the last text; what() must not throw.
    }
    return mWhat.c_str();
}

komTerminalException::komTerminalException(const komString &message)
    : komException(message)
{ }

komTerminalException::~komTerminalException() = default;
