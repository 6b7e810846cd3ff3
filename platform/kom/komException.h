// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_EXCEPTION_H
#define KOM_EXCEPTION_H

#include "platform/kom/komList.h"
#include "platform/kom/kom_export.h"

#include <exception>
#include <string>

/** The middleware's exception: a list of messages, the innermost first. */
class KOM_EXPORT komException : public std::exception
{
public:
    /** An exception with one message. */
    explicit komException(const komString &message);
    /** An exception with the given messages. */
    explicit komException(const komStringList &messages);
    /** Releases the messages. */
    ~komException() override;

    /** Appends a message (context added while the exception travels up). */
    void addMessage(const komString &message);
    /** The messages, in the order they were added. */
    const komStringList &messages() const { return mMessages; }
    /** The messages joined by "; ". */
    const char *what() const noexcept override;

private:
    komStringList mMessages;
    mutable std::string mWhat;
};

/** Thrown by the default terminal handler of kom::terminal(). */
class KOM_EXPORT komTerminalException : public komException
{
public:
    /** An exception carrying the terminal message. */
    explicit komTerminalException(const komString &message);
    /** Releases the message. */
    ~komTerminalException() override;
};

#endif // KOM_EXCEPTION_H
