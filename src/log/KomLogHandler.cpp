// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "log/KomLogHandler.h"

#include "log/LogQt.h"

#include <algorithm>
#include <iterator>

namespace ko
{

namespace
{

// The log level of each status message type; messages of any other type are not written.
struct TypeLevel
{
    kom::StatusMessageType type;
    Log::ELevel level;
};

const TypeLevel sTypeLevels[] = {
    { kom::StatusTrace, Log::Message },
    { kom::StatusDebug, Log::Message },
    { kom::StatusInfo, Log::Message },
    { kom::StatusWarning, Log::Warning },
    { kom::StatusError, Log::Error },
    { kom::StatusFatal, Log::FatalError },
};

} // namespace

KomLogHandler *KomLogHandler::s_instance = nullptr;

KomLogHandler::KomLogHandler(kom::StatusMessageType verbosity)
    : mVerbosity(verbosity)
{ }

KomLogHandler::~KomLogHandler() = default;

void KomLogHandler::sendStatusMessage(
    kom::StatusMessageType type, const komString &text, const komObject *)
{
    const auto row = std::find_if(std::begin(sTypeLevels), std::end(sTypeLevels),
        [type](const TypeLevel &r) { return r.type == type; });
    if (row != std::end(sTypeLevels))
        LogLine::writeMarked(row->level, " kom> ", text.text());
}

void KomLogHandler::setStatusMessageVerbosity(kom::StatusMessageType verbosity)
{
    mVerbosity = verbosity;
}

kom::StatusMessageType KomLogHandler::statusMessageVerbosity() const
{
    return mVerbosity;
}

kom::StatusMessageType KomLogHandler::verbosity() const
{
    return mVerbosity;
}

void KomLogHandler::setVerbosity(kom::StatusMessageType verbosity)
{
    mVerbosity = verbosity;
}

void KomLogHandler::setDefaultVerbosity(kom::StatusMessageType verbosity)
{
    if (s_instance)
        s_instance->setVerbosity(verbosity);
}

void KomLogHandler::install(kom::StatusMessageType verbosity)
{
    kom::sendStatusMessage(kom::StatusTrace, "Installing KomLogHandler...", nullptr);
    kom::komStatusMessageProcessor *processor = kom::komStatusMessageProcessor::defaultProcessor();
    processor->removeStatusMessageHandlers();
    // The previous handler is not deleted: code elsewhere may still hold it.
    s_instance = new KomLogHandler(verbosity);
    s_instance->setVerbosity(verbosity);
    processor->addStatusMessageHandler(s_instance);
}

} // namespace ko
