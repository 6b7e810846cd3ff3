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
    void sendStatusMessage(kom::StatusMessageType, const komString& text, const komObject*) override
    {
        received << QString::fromLatin1(text.text());
    }
    void setStatusMessageVerbosity(kom::StatusMessageType) override {}
    kom::StatusMessageType statusMessageVerbosity() const override { return kom::StatusTrace; }
    QStringList received;
};

} // namespace

class tst_KomLogHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultVerbosityBeforeInstall();
    void typeToLevel_data();
    void typeToLevel();
    void threshold();
    void installReplacesHandlers();
};

void tst_KomLogHandler::defaultVerbosityBeforeInstall()
{
    QVERIFY(!KomLogHandler::s_instance);
    KomLogHandler::setDefaultVerbosity(kom::StatusError); // nothing to set yet
    QVERIFY(!KomLogHandler::s_instance);
}

void tst_KomLogHandler::typeToLevel_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("level");
    QTest::newRow("40") << 40 << 1;
    QTest::newRow("45") << 45 << 1;
    QTest::newRow("50") << 50 << 1;
    QTest::newRow("60") << 60 << 2;
    QTest::newRow("70") << 70 << 3;
    QTest::newRow("80") << 80 << 4;
    QTest::newRow("39 dropped") << 39 << -1;
    QTest::newRow("55 dropped") << 55 << -1;
    QTest::newRow("90 dropped") << 90 << -1;
}

void tst_KomLogHandler::typeToLevel()
{
    QFETCH(int, type);
    QFETCH(int, level);
    LogCapture capture;
    KomLogHandler handler(kom::StatusTrace);
    handler.sendStatusMessage(kom::StatusMessageType(type), "status text", nullptr);
    const QStringList expected = level < 0 ? QStringList() : QStringList{QString::number(level) + "| kom> status text"};
    QCOMPARE(capture.allLines(), expected);
}

void tst_KomLogHandler::threshold()
{
    KomLogHandler handler(kom::StatusTrace);
    {
        LogCapture capture{Log::Message};
        handler.sendStatusMessage(kom::StatusDebug, "shown", nullptr);
        QCOMPARE(capture.lines(Log::Message), QStringList{" kom> shown"});
    }
    {
        LogCapture capture{Log::Warning};
        handler.sendStatusMessage(kom::StatusDebug, "hidden", nullptr);
        QVERIFY(capture.allLines().isEmpty());
    }
}

void tst_KomLogHandler::installReplacesHandlers()
{
    LogCapture capture;
    kom::komStatusMessageProcessor* processor = kom::komStatusMessageProcessor::defaultProcessor();
    Recorder earlier;
    processor->addStatusMessageHandler(&earlier);

    ko::LogQt::installKomHandler(kom::StatusWarning);
    KomLogHandler* installed = KomLogHandler::s_instance;
    QVERIFY(installed);
    QCOMPARE(installed->verbosity(), kom::StatusWarning);
    QCOMPARE(processor->handlerCount(), 1);
    QCOMPARE(earlier.received, QStringList{"Installing KomLogHandler..."});

    kom::sendStatusMessage(kom::StatusInfo, "below verbosity", nullptr);
    kom::sendStatusMessage(kom::StatusError, "failure", nullptr);
    KomLogHandler::setDefaultVerbosity(kom::StatusTrace);
    QCOMPARE(installed->statusMessageVerbosity(), kom::StatusTrace);
    kom::sendStatusMessage(kom::StatusInfo, "now shown", nullptr);
    QCOMPARE(earlier.received.size(), 1);
    QCOMPARE(capture.allLines(), (QStringList{"1| kom> now shown", "3| kom> failure"}));

    // A second install keeps the first handler alive but unregistered.
    KomLogHandler::install(kom::StatusTrace);
    QVERIFY(KomLogHandler::s_instance != installed);
    QCOMPARE(capture.lines(Log::Message).last(), QStringLiteral(" kom> Installing KomLogHandler..."));
    processor->removeStatusMessageHandlers();
    delete installed;
}

QTEST_GUILESS_MAIN(tst_KomLogHandler)
#include "tst_KomLogHandler.moc"
