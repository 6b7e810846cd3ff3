#include "log/KomLogHandler.h"

#include "log/LogWrite_p.h"

namespace ko
{

KomLogHandler* KomLogHandler::s_instance = nullptr;

KomLogHandler::KomLogHandler(kom::StatusMessageType verbosity)
    : mVerbosity(verbosity)
{
}

KomLogHandler::~KomLogHandler() = default;

void KomLogHandler::sendStatusMessage(kom::StatusMessageType type, const komString& text, const komObject*)
{
    Log::ELevel level;
    switch (int(type)) {
    case 40:
    case 45:
    case 50:
        level = Log::Message;
        break;
    case 60:
        level = Log::Warning;
        break;
    case 70:
        level = Log::Error;
        break;
    case 80:
        level = Log::FatalError;
        break;
    default:
        return;
    }
    writeMarkedLine(Log::instance(), level, " kom> ", text.text());
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
    kom::komStatusMessageProcessor* processor = kom::komStatusMessageProcessor::defaultProcessor();
    processor->removeStatusMessageHandlers();
    // The previous handler is not deleted: code elsewhere may still hold it.
    s_instance = new KomLogHandler(verbosity);
    s_instance->setVerbosity(verbosity);
    processor->addStatusMessageHandler(s_instance);
}

} // namespace ko
