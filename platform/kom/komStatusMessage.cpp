// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komStatusMessage.h"

#include <algorithm>
#include <mutex>
#include <vector>

komStatusMessageHandlerInterface::~komStatusMessageHandlerInterface() = default;

namespace kom
{

struct komStatusMessageProcessor::Private
{
    // Recursive: a handler may send a status message while it handles one.
    mutable std::recursive_mutex mutex;
    std::vector<komStatusMessageHandlerInterface *> handlers;
};

komStatusMessageProcessor::komStatusMessageProcessor()
    : d(new Private)
{ }

komStatusMessageProcessor::~komStatusMessageProcessor() = default;

komStatusMessageProcessor *komStatusMessageProcessor::defaultProcessor()
{
    static std::mutex creation;
    static komStatusMessageProcessor *processor = nullptr;
    std::lock_guard<std::mutex> lock(creation);
    if (!processor)
        processor
            = new komStatusMessageProcessor; // lives until the process ends, for late messages
    return processor;
}

void komStatusMessageProcessor::addStatusMessageHandler(komStatusMessageHandlerInterface *handler)
{
    if (!handler)
        return;
    std::lock_guard<std::recursive_mutex> lock(d->mutex);
    d->handlers.push_back(handler);
}

void komStatusMessageProcessor::removeStatusMessageHandler(
    komStatusMessageHandlerInterface *handler)
{
    std::lock_guard<std::recursive_mutex> lock(d->mutex);
    d->handlers.erase(
        std::remove(d->handlers.begin(), d->handlers.end(), handler), d->handlers.end());
}

void komStatusMessageProcessor::removeStatusMessageHandlers()
{
    std::lock_guard<std::recursive_mutex> lock(d->mutex);
    d->handlers.clear();
}

int komStatusMessageProcessor::handlerCount() const
{
    std::lock_guard<std::recursive_mutex> lock(d->mutex);
    return int(d->handlers.size());
}

void komStatusMessageProcessor::sendStatusMessage(
    StatusMessageType type, const komString &text, const komObject *sender)
{
    std::lock_guard<std::recursive_mutex> lock(d->mutex);
    // Walk a copy: a handler may register or remove handlers while it runs.
    const std::vector<komStatusMessageHandlerInterface *> handlers = d->handlers;
    for (komStatusMessageHandlerInterface *handler : handlers) {
        if (handler->statusMessageVerbosity() <= type)
            handler->sendStatusMessage(type, text, sender);
    }
}

void sendStatusMessage(StatusMessageType type, const komString &text, const komObject *sender)
{
    komStatusMessageProcessor::defaultProcessor()->sendStatusMessage(type, text, sender);
}

} // namespace kom
