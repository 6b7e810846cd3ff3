#ifndef COREQT_TESTS_KOMRECORDERS_H
#define COREQT_TESTS_KOMRECORDERS_H

#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komTerminal.h"

#include <QMutex>
#include <QStringList>

/**
 * Records, from any thread, the status messages that @p processor (the default one unless given)
 * passes to it as "<type> <text>", with the last sender; registered for its lifetime.
 */
class StatusRecorder : public komStatusMessageHandlerInterface
{
public:
    explicit StatusRecorder(kom::StatusMessageType verbosity = kom::StatusTrace,
        kom::komStatusMessageProcessor* processor = kom::komStatusMessageProcessor::defaultProcessor());
    ~StatusRecorder() override;

    /** The messages received so far. */
    QStringList messages() const;
    /** The sender of the last message received (null before any). */
    const komObject* lastSender() const;

    void sendStatusMessage(
        kom::StatusMessageType type, const komString& text, const komObject* sender) override;
    void setStatusMessageVerbosity(kom::StatusMessageType verbosity) override;
    kom::StatusMessageType statusMessageVerbosity() const override;

private:
    kom::komStatusMessageProcessor* mProcessor;
    kom::StatusMessageType mVerbosity;
    mutable QMutex mMutex;
    QStringList mMessages;
    const komObject* mLastSender = nullptr;
};

/**
 * Installs a kom::terminal handler that records each report and returns, for the lifetime of the
 * object; the previous handler is put back afterwards.
 */
class TerminalRecorder
{
public:
    TerminalRecorder();
    ~TerminalRecorder();
    TerminalRecorder(const TerminalRecorder&) = delete;
    TerminalRecorder& operator=(const TerminalRecorder&) = delete;

    /** The reports' texts, in order. */
    static QStringList reports();
    /** The sender of the last report (null before any). */
    static const komObject* lastSender();

private:
    kom::TerminalHandler mPrevious;
};

#endif // COREQT_TESTS_KOMRECORDERS_H
