#include "KomRecorders.h"

StatusRecorder::StatusRecorder(kom::StatusMessageType verbosity, kom::komStatusMessageProcessor* processor)
    : mProcessor(processor)
    , mVerbosity(verbosity)
{
    mProcessor->addStatusMessageHandler(this);
}

StatusRecorder::~StatusRecorder()
{
    mProcessor->removeStatusMessageHandler(this);
}

QStringList StatusRecorder::messages() const
{
    QMutexLocker lock(&mMutex);
    return mMessages;
}

const komObject* StatusRecorder::lastSender() const
{
    QMutexLocker lock(&mMutex);
    return mLastSender;
}

void StatusRecorder::sendStatusMessage(
    kom::StatusMessageType type, const komString& text, const komObject* sender)
{
    QMutexLocker lock(&mMutex);
    mMessages << QString::number(type) + QLatin1Char(' ') + QString::fromLatin1(text.text());
    mLastSender = sender;
}

void StatusRecorder::setStatusMessageVerbosity(kom::StatusMessageType verbosity)
{
    mVerbosity = verbosity;
}

kom::StatusMessageType StatusRecorder::statusMessageVerbosity() const
{
    return mVerbosity;
}

namespace
{

QStringList sReports;
const komObject* sLastSender = nullptr;

void recordReport(const komString& message, const komObject* sender)
{
    sReports << QString::fromLatin1(message.text());
    sLastSender = sender;
}

} // namespace

TerminalRecorder::TerminalRecorder()
    : mPrevious(kom::setTerminalHandler(&recordReport))
{
    sReports.clear();
    sLastSender = nullptr;
}

TerminalRecorder::~TerminalRecorder()
{
    kom::setTerminalHandler(mPrevious);
}

QStringList TerminalRecorder::reports()
{
    return sReports;
}

const komObject* TerminalRecorder::lastSender()
{
    return sLastSender;
}
