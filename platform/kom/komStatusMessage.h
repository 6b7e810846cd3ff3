// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_STATUSMESSAGE_H
#define KOM_STATUSMESSAGE_H

#include "platform/kom/komObject.h"
#include "platform/kom/komString.h"
#include "platform/kom/kom_export.h"

#include <memory>

namespace kom
{

/** Types of status messages, from chatter to fatal. */
enum StatusMessageType {
    /** Progress detail (40); ko::KomLogHandler writes it at log level 1. */
    StatusTrace = 40,
    /** Detail for developers (45); log level 1. */
    StatusDebug = 45,
    /** Information (50); log level 1. */
    StatusInfo = 50,
    /** Something unexpected that was handled (60); log level 2. */
    StatusWarning = 60,
    /** A failed operation (70); log level 3. */
    StatusError = 70,
    /** A failure the program cannot go on from (80), sent by the default terminal handler; log
       level 4. */
    StatusFatal = 80
};

} // namespace kom

/** Receives the middleware's status messages from a processor. */
class KOM_EXPORT komStatusMessageHandlerInterface : public virtual komInterface
{
public:
    /** Destroys the handler; it must no longer be registered. */
    ~komStatusMessageHandlerInterface() override;
    /** Handles one message of @p type from @p sender (may be null). */
    virtual void sendStatusMessage(
        kom::StatusMessageType type, const komString &text, const komObject *sender)
        = 0;
    /** Sets the lowest type the handler wants to receive. */
    virtual void setStatusMessageVerbosity(kom::StatusMessageType verbosity) = 0;
    /** The lowest type the handler wants to receive. */
    virtual kom::StatusMessageType statusMessageVerbosity() const = 0;
};

namespace kom
{

/**
 * Hands status messages to registered handlers: a handler receives a message
 * when its verbosity is not above the message's type. The processor does not
 * own its handlers.
 */
class KOM_EXPORT komStatusMessageProcessor
{
public:
    /** An empty processor. */
    komStatusMessageProcessor();
    /** Destroys the processor; the handlers are not deleted. */
    ~komStatusMessageProcessor();

    /** Not copyable: handlers are registered with one processor. */
    komStatusMessageProcessor(const komStatusMessageProcessor &) = delete;
    /** Not assignable, as it is not copyable. */
    komStatusMessageProcessor &operator=(const komStatusMessageProcessor &) = delete;

    /** The process-wide processor, created on first use under a lock. */
    static komStatusMessageProcessor *defaultProcessor();

    /** Registers @p handler (not owned); a handler registered twice receives messages twice. */
    void addStatusMessageHandler(komStatusMessageHandlerInterface *handler);
    /** Unregisters every registration of @p handler. */
    void removeStatusMessageHandler(komStatusMessageHandlerInterface *handler);
    /** Unregisters all handlers. */
    void removeStatusMessageHandlers();
    /** Number of registrations. */
    int handlerCount() const;
    /** Passes the message to each handler whose verbosity is not above @p type, in registration
     * order. */
    void sendStatusMessage(StatusMessageType type, const komString &text, const komObject *sender);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/** Sends a status message through the default processor. */
KOM_EXPORT void sendStatusMessage(
    StatusMessageType type, const komString &text, const komObject *sender);

} // namespace kom

#endif // KOM_STATUSMESSAGE_H
