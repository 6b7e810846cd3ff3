#include "LogCapture.h"

#include "log/LogQt.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <sstream>
#include <thread>
#include <vector>

using ko::Log;
using ko::LogQt;

class tst_LogQt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void levelSetters();
    void getStream();
    void nullStreamWritesNothing();
    void setLogFileOverloads();
    void lineIdiom_data();
    void lineIdiom();
    void lineKeepsNumberFlags();
    void linesFromManyThreads();
    void qtMsgHandlerLevels_data();
    void qtMsgHandlerLevels();
    void installedQtHandler();
};

void tst_LogQt::levelSetters()
{
    using Setter = void (LogQt::*)();
    // Each setter changes the level from the one before it.
    const QPair<Setter, int> setters[] = { { &LogQt::setDebugLogLevel, 0 }, { &LogQt::setWarningLogLevel, 2 },
        { &LogQt::setMessageLogLevel, 1 }, { &LogQt::setImportantLogLevel, 2 },
        { &LogQt::setErrorLogLevel, 3 }, { &LogQt::setFatalErrorLogLevel, 4 } };
    Log fronted;
    LogQt front(fronted);
    QCOMPARE(&front.mutex(), &fronted.mutex());
    for (const auto& setter : setters) {
        (front.*setter.first)();
        QCOMPARE(int(front.logLevel()), setter.second);
        QCOMPARE(int(fronted.logLevel()), setter.second);
    }
}

void tst_LogQt::getStream()
{
    Log fronted;
    LogQt front(fronted);
    QTextStream* debug = front.getStream(Log::Debug);
    QVERIFY(debug);
    QCOMPARE(front.getStream(Log::ELevel(7)), debug);
    QCOMPARE(front.getStream(Log::ELevel(-1)), debug); // negative levels are outside the contract: slot 0
    QCOMPARE(front.getStream(Log::ELevel(-1000000)), debug);
    QVERIFY(front.getStream(Log::Warning) != debug);

    // A level above 4 asks the fronted log for slot 0, not for its raw value.
    std::ostringstream debugOut, messageOut, first;
    fronted.setStream(Log::Debug, &debugOut, false);
    fronted.setStream(Log::Message, &messageOut, false);
    *front.getStream(Log::ELevel(5)) << "five" << Qt::flush;
    QCOMPARE(QString::fromStdString(debugOut.str()), QStringLiteral("five"));
    QVERIFY(messageOut.str().empty());

    // A replaced stream, and a replaced buffer behind the same std::ostream, are noticed.
    fronted.setStream(Log::Warning, &first, false);
    *front.getStream(Log::Warning) << "one" << Qt::flush;
    std::stringbuf replacement;
    static_cast<std::ostream&>(first).rdbuf(&replacement);
    *front.getStream(Log::Warning) << "two" << Qt::flush;
    QCOMPARE(QString::fromStdString(first.str() + replacement.str()), QStringLiteral("onetwo"));
    std::ostringstream second;
    fronted.setStream(Log::Warning, &second, false);
    *front.getStream(Log::Warning) << "three" << Qt::flush;
    QCOMPARE(QString::fromStdString(replacement.str() + second.str()), QStringLiteral("twothree"));

    // A front of its own base part writes to its own streams.
    LogQt own;
    std::ostringstream ownOut;
    static_cast<Log&>(own).setStream(Log::Error, &ownOut, false);
    *own.getStream(Log::Error) << "own" << Qt::flush;
    QCOMPARE(QString::fromStdString(ownOut.str()), QStringLiteral("own"));
}

void tst_LogQt::nullStreamWritesNothing()
{
    LogCapture capture;
    Log::instance().setStream(Log::Error, nullptr, false);
    QCOMPARE(LogQt::s_instance.getStream(Log::Error), nullptr);
    ko::LogLine line(Log::Error);
    QVERIFY(!line.isActive());
    line << "dropped";
}

void tst_LogQt::setLogFileOverloads()
{
    QTemporaryDir dir;
    const QString viaChar = dir.filePath(QStringLiteral("char.log"));
    const QString viaQString = dir.filePath(QStringLiteral("qstring.log"));
    Log fronted;
    LogQt front(fronted);
    Log& ownPart = front;

    // const char* configures the fronted log; QString the front's own ko::Log part.
    front.setLogFile(Log::Error, viaChar.toLatin1().constData(), false);
    front.setLogFile(Log::Error, viaQString, false);
    *fronted.getStream(Log::Error) << "fronted" << std::endl;
    *ownPart.getStream(Log::Error) << "own" << std::endl;

    QFile charFile(viaChar), qstringFile(viaQString);
    QVERIFY(charFile.open(QIODevice::ReadOnly) && qstringFile.open(QIODevice::ReadOnly));
    QCOMPARE(charFile.readAll() + qstringFile.readAll(), QByteArray("fronted\nown\n"));

    front.setLogFile(viaQString, true);
    QCOMPARE(ownPart.getStream(Log::Debug), ownPart.getStream(Log::FatalError));
    QVERIFY(fronted.getStream(Log::Debug) != ownPart.getStream(Log::Debug));
}

void tst_LogQt::lineIdiom_data()
{
    QTest::addColumn<int>("threshold");
    QTest::addColumn<int>("level");
    QTest::addColumn<bool>("written");
    QTest::newRow("below threshold") << 2 << 1 << false;
    QTest::newRow("at threshold") << 2 << 2 << true;
    QTest::newRow("above threshold") << 2 << 4 << true;
    QTest::newRow("level 7 uses slot 0") << 1 << 7 << true;
    QTest::newRow("negative level uses slot 0") << -2 << -1 << true;
    QTest::newRow("negative level below threshold") << 0 << -1 << false;
}

void tst_LogQt::lineIdiom()
{
    QFETCH(int, threshold);
    QFETCH(int, level);
    QFETCH(bool, written);
    LogCapture capture { Log::ELevel(threshold) };
    const auto slot = Log::ELevel(level >= 0 && level < 5 ? level : 0);
    const quint64 counted = LogQt::lineCount(slot);
    ko::LogLine(Log::ELevel(level)) << "count: " << 3 << ' ' << QStringLiteral("items");
    LogQt::write(Log::ELevel(level), QStringLiteral("second"));
    QCOMPARE(LogQt::lineCount(Log::ELevel(level)) - counted, quint64(written ? 2 : 0));
    QCOMPARE(capture.lines(slot), written ? QStringList({ "count: 3 items", "second" }) : QStringList());
    if (written)
        QVERIFY(capture.text(slot).contains(QLatin1String(Log::levelName(Log::ELevel(level)))));
}

void tst_LogQt::lineKeepsNumberFlags()
{
    LogCapture capture;
    QTextStream* stream = LogQt::s_instance.getStream(Log::Message);
    stream->setNumberFlags(QTextStream::ForceSign);
    ko::LogLine(Log::Message) << Qt::showbase << Qt::hex << 255;
    QCOMPARE(stream->numberFlags(), QTextStream::ForceSign);
    stream->setIntegerBase(10);
    ko::LogLine(Log::Message) << 5;
    stream->setNumberFlags(QTextStream::NumberFlags());
    QCOMPARE(capture.lines(Log::Message), (QStringList { "+0xff", "+5" }));
}

void tst_LogQt::linesFromManyThreads()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("threads.log"));
    LogCapture capture; // restores the streams afterwards
    LogQt::s_instance.setLogFile(path.toLatin1().constData(), false);

    constexpr int threads = 8;
    constexpr int lines = 2000;
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([t] {
            for (int i = 0; i < lines; ++i)
                ko::LogLine(Log::ELevel(i % 5)) << "thread " << t << " line " << i << " end";
        });
    }
    for (auto& worker : workers)
        worker.join();

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
    QVector<int> next(threads, 0);
    int count = 0;
    const QRegularExpression shape(QStringLiteral("^thread (\\d) line (\\d+) end$"));
    while (!file.atEnd()) {
        const QString line = LogCapture::stripPrefix(QString::fromLatin1(file.readLine()).chopped(1));
        const QRegularExpressionMatch match = shape.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        const int t = match.captured(1).toInt();
        QCOMPARE(match.captured(2).toInt(), next[t]++); // each thread's lines whole and in its order
        ++count;
    }
    QCOMPARE(count, threads * lines);
}

void tst_LogQt::qtMsgHandlerLevels_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("threshold");
    QTest::addColumn<int>("level");
    QTest::newRow("debug dropped") << int(QtDebugMsg) << 0 << -1;
    QTest::newRow("info dropped") << int(QtInfoMsg) << 0 << -1;
    QTest::newRow("warning") << int(QtWarningMsg) << 2 << 2;
    QTest::newRow("warning below threshold") << int(QtWarningMsg) << 3 << -1;
    QTest::newRow("critical") << int(QtCriticalMsg) << 3 << 3;
    QTest::newRow("fatal, no abort") << int(QtFatalMsg) << 4 << 4;
    QTest::newRow("unknown type") << 42 << 0 << -1;
}

void tst_LogQt::qtMsgHandlerLevels()
{
    QFETCH(int, type);
    QFETCH(int, threshold);
    QFETCH(int, level);
    LogCapture capture { Log::ELevel(threshold) };
    const quint64 counted = LogQt::lineCount(Log::ELevel(qMax(level, 0)));
    LogQt::qtMsgHandler(QtMsgType(type), "x");
    QCOMPARE(LogQt::lineCount(Log::ELevel(qMax(level, 0))) - counted, quint64(level < 0 ? 0 : 1));
    for (int l = 0; l < Log::LevelCount; ++l) {
        const QString text = capture.text(Log::ELevel(l));
        if (l == level) {
            QVERIFY(
                text.endsWith(QLatin1String(Log::levelName(Log::ELevel(l))) + QLatin1String("  Qt> x\n")));
            QCOMPARE(capture.lines(Log::ELevel(l)), QStringList { " Qt> x" });
        } else {
            QVERIFY2(text.isEmpty(), qPrintable(text));
        }
    }
}

void tst_LogQt::installedQtHandler()
{
    // Qt Test installs a handler of the newer kind, which Qt prefers; put the default back first.
    const QtMessageHandler testHandler = qInstallMessageHandler(nullptr);
    {
        LogCapture capture { Log::Warning };
        LogQt::installQtHandler();
        qDebug("never logged");
        qWarning("warned %d", 1);
        qCritical("critical");
        LogQt::s_instance.setErrorLogLevel();
        qWarning("below the threshold");
        QCOMPARE(capture.allLines(), (QStringList { "2| Qt> warned 1", "3| Qt> critical" }));
    }
    // Qt Test's handler again; on Qt 5 it takes precedence over the one of the older kind left behind.
    qInstallMessageHandler(testHandler);
}

QTEST_GUILESS_MAIN(tst_LogQt)
#include "tst_LogQt.moc"
