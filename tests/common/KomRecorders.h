// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TESTS_KOMRECORDERS_H
#define COREQT_TESTS_KOMRECORDERS_H

#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komTerminal.h"

#include <QMutex>
#include <QStringList>

/**
 * Records, from any thread, the messages that @p processor (the default one unless given) passes
 * to it as "<type> <text>", with the last sender; registered for its lifetime.
 */
class StatusRecorder : public komStatusMessageHandlerInterface
{
public:
    explicit StatusRecorder(kom::StatusMessageType verbosity = kom::StatusTrace,
        kom::komStatusMessageProcessor *processor
        = kom::komStatusMessageProcessor::defaultProcessor())
        : mProcessor(processor)
        , mVerbosity(verbosity)
    {
        mProcessor->addStatusMessageHandler(this);
    }
    ~StatusRecorder() override { mProcessor->removeStatusMessageHandler(this); }

    /** The messages received so far. */
    QStringList messages() const
    {
        QMutexLocker lock(&mMutex);
        return mMessages;
    }
    /** The sender of the last message received (null before any). */
    const komObject *lastSender() const
    {
        QMutexLocker lock(&mMutex);
        return mLastSender;
    }

    void sendStatusMessage(
        kom::StatusMessageType type, const komString &text, const komObject *sender) override
    {
        QMutexLocker lock(&mMutex);
        mMessages << QString::number(type) + QLatin1Char(' ') + QString::fromLatin1(text.text());
        mLastSender = sender;
    }
    void setStatusMessageVerbosity(kom::StatusMessageType verbosity) override
    {
        mVerbosity = verbosity;
    }
    kom::StatusMessageType statusMessageVerbosity() const override { return mVerbosity; }

private:
    kom::komStatusMessageProcessor *mProcessor;
    kom::StatusMessageType mVerbosity;
    mutable QMutex mMutex;
    QStringList mMessages;
    const komObject *mLastSender = nullptr;
};

/**
 * Installs a kom::terminal handler that records each report (text and sender) and returns, for the
 * lifetime of the object; the previous handler is put back afterwards.
 */
class TerminalRecorder
{
public:
    TerminalRecorder() { reports.clear(), lastSender = nullptr; }
    ~TerminalRecorder() { kom::setTerminalHandler(mPrevious); }
    TerminalRecorder(const TerminalRecorder &) = delete;
    TerminalRecorder &operator=(const TerminalRecorder &) = delete;

    /** The reports' texts, in order, and the sender of the last one. */
    static inline QStringList reports;
    static inline const komObject *lastSender = nullptr;

private:
    kom::TerminalHandler mPrevious
        = kom::setTerminalHandler([](const komString &message, const komObject *sender) {
              reports << QString::fromLatin1(message.text());
              lastSender = sender;
          });
};

#endif // COREQT_TESTS_KOMRECORDERS_H
