// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "log/KomLogHandler.h"
#include "log/LogQt.h"

#include <QtTest>

using ko::KomLogHandler;
using ko::Log;

namespace
{

class Recorder : public komStatusMessageHandlerInterface
{
public:
    void sendStatusMessage(
        kom::StatusMessageType, const komString &text, const komObject *) override
    {
        received << QString::fromLatin1(text.text());
    }
    void setStatusMessageVerbosity(kom::StatusMessageType) override { }
    kom::StatusMessageType statusMessageVerbosity() const override { return kom::StatusTrace; }
    QStringList received;
};

} // namespace

class tst_KomLogHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void typeToLevel_data();
    void typeToLevel();
    void installReplacesHandlers();
};

void tst_KomLogHandler::typeToLevel_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("threshold");
    QTest::addColumn<int>("level");
    const int map[][2] = { { 40, 1 }, { 45, 1 }, { 50, 1 }, { 60, 2 }, { 70, 3 }, { 80, 4 },
        { 39, -1 }, { 55, -1 }, { 90, -1 } };
    for (const auto &row : map)
        QTest::addRow("%d", row[0]) << row[0] << 0 << row[1];
    QTest::newRow("50 at the log's threshold") << 50 << 1 << 1;
    QTest::newRow("50 below the log's threshold") << 50 << 2 << -1;
}

void tst_KomLogHandler::typeToLevel()
{
    QFETCH(int, type);
    QFETCH(int, threshold);
    QFETCH(int, level);
    LogCapture capture { Log::ELevel(threshold) };
    KomLogHandler handler(kom::StatusTrace);
    const quint64 before = ko::LogQt::lineCount(Log::ELevel(qMax(level, 0)));
    handler.sendStatusMessage(kom::StatusMessageType(type), "status text", nullptr);
    QCOMPARE(capture.allLines(),
        level < 0 ? QStringList() : QStringList { QString::number(level) + "| kom> status text" });
    QCOMPARE(
        ko::LogQt::lineCount(Log::ELevel(qMax(level, 0))) - before, quint64(level < 0 ? 0 : 1));
}

void tst_KomLogHandler::installReplacesHandlers()
{
    QVERIFY(!KomLogHandler::s_instance);
    KomLogHandler::setDefaultVerbosity(kom::StatusError); // nothing to set yet: harmless
    LogCapture capture;
    kom::komStatusMessageProcessor *processor = kom::komStatusMessageProcessor::defaultProcessor();
    Recorder earlier;
    processor->addStatusMessageHandler(&earlier);

    ko::LogQt::installKomHandler(kom::StatusWarning);
    KomLogHandler *installed = KomLogHandler::s_instance;
    QVERIFY(installed);
    QCOMPARE(installed->verbosity(), kom::StatusWarning);
    QCOMPARE(processor->handlerCount(), 1);
    QCOMPARE(earlier.received, QStringList { "Installing KomLogHandler..." });

    kom::sendStatusMessage(kom::StatusInfo, "below verbosity", nullptr);
    kom::sendStatusMessage(kom::StatusError, "failure", nullptr);
    KomLogHandler::setDefaultVerbosity(kom::StatusTrace);
    QCOMPARE(installed->statusMessageVerbosity(), kom::StatusTrace);
    kom::sendStatusMessage(kom::StatusInfo, "now shown", nullptr);
    QCOMPARE(earlier.received.size(), 1);
    QCOMPARE(capture.allLines(), (QStringList { "1| kom> now shown", "3| kom> failure" }));

    // A second install keeps the first handler alive but unregistered.
    KomLogHandler::install(kom::StatusTrace);
    QVERIFY(KomLogHandler::s_instance != installed);
    QCOMPARE(
        capture.lines(Log::Message).last(), QStringLiteral(" kom> Installing KomLogHandler..."));
    processor->removeStatusMessageHandlers();
    delete installed;
}

QTEST_GUILESS_MAIN(tst_KomLogHandler)
#include "tst_KomLogHandler.moc"
