// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "LogCapture.h"

#include "compat/QtCompat_p.h"
#include "log/LogQt.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <atomic>
#include <climits>
#include <sstream>
#include <thread>
#include <vector>

using ko::Log;
using ko::LogQt;

namespace
{

using StreamSetup = void (*)(QTextStream &);
using LineWriter = void (*)(ko::LogLine &);
using OstreamSetup = void (*)(std::ostream &);

// The bytes of the lines written into @p out, each without its time and level prefix.
QByteArray withoutPrefixes(const std::ostringstream &out)
{
    QByteArray result;
    for (const QString &line :
        QString::fromLatin1(QByteArray::fromStdString(out.str())).split(QLatin1Char('\n')))
        result += LogCapture::stripPrefix(line).toLatin1() + '\n';
    result.chop(1);
    return result;
}

// Points @p level of the process-wide log at @p out and returns a new text stream for it: a buffer
// in between makes sure the stream is renewed even when @p out stands where an old buffer stood.
QTextStream *freshStream(Log::ELevel level, std::ostream &out)
{
    std::ostringstream between;
    Log::instance().setStream(level, &between, false);
    LogQt::s_instance.getStream(level);
    Log::instance().setStream(level, &out, false);
    return LogQt::s_instance.getStream(level);
}

} // namespace

Q_DECLARE_METATYPE(StreamSetup)
Q_DECLARE_METATYPE(LineWriter)
Q_DECLARE_METATYPE(OstreamSetup)

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
    void lineBytes_data();
    void lineBytes();
    void shortWriteFailsTheStream();
    void markedLineBytes_data();
    void markedLineBytes();
    void linesFromManyThreads();
    void qtMsgHandlerLevels_data();
    void qtMsgHandlerLevels();
    void installedQtHandler();
};

void tst_LogQt::levelSetters()
{
    using Setter = void (LogQt::*)();
    // Each setter changes the level from the one before it.
    const QPair<Setter, int> setters[]
        = { { &LogQt::setDebugLogLevel, 0 }, { &LogQt::setWarningLogLevel, 2 },
              { &LogQt::setMessageLogLevel, 1 }, { &LogQt::setImportantLogLevel, 2 },
              { &LogQt::setErrorLogLevel, 3 }, { &LogQt::setFatalErrorLogLevel, 4 } };
    Log fronted;
    LogQt front(fronted);
    QCOMPARE(&front.mutex(), &fronted.mutex());
    for (const auto &setter : setters) {
        (front.*setter.first)();
        QCOMPARE(int(front.logLevel()), setter.second);
        QCOMPARE(int(fronted.logLevel()), setter.second);
    }
}

void tst_LogQt::getStream()
{
    Log fronted;
    LogQt front(fronted);
    QTextStream *debug = front.getStream(Log::Debug);
    QVERIFY(debug);
    QCOMPARE(front.getStream(Log::ELevel(7)), debug);
    QCOMPARE(front.getStream(Log::ELevel(-1)),
        debug); // negative levels are outside the contract: slot 0
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
    static_cast<std::ostream &>(first).rdbuf(&replacement);
    *front.getStream(Log::Warning) << "two" << Qt::flush;
    QCOMPARE(QString::fromStdString(first.str() + replacement.str()), QStringLiteral("onetwo"));
    std::ostringstream second;
    fronted.setStream(Log::Warning, &second, false);
    *front.getStream(Log::Warning) << "three" << Qt::flush;
    QCOMPARE(QString::fromStdString(replacement.str() + second.str()), QStringLiteral("twothree"));

    // A front of its own base part writes to its own streams.
    LogQt own;
    std::ostringstream ownOut;
    static_cast<Log &>(own).setStream(Log::Error, &ownOut, false);
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
    Log &ownPart = front;

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
    QCOMPARE(
        capture.lines(slot), written ? QStringList({ "count: 3 items", "second" }) : QStringList());
    if (written)
        QVERIFY(capture.text(slot).contains(QLatin1String(Log::levelName(Log::ELevel(level)))));
}

void tst_LogQt::lineKeepsNumberFlags()
{
    LogCapture capture;
    QTextStream *stream = LogQt::s_instance.getStream(Log::Message);
    stream->setNumberFlags(QTextStream::ForceSign);
    ko::LogLine(Log::Message) << Qt::showbase << Qt::hex << 255;
    QCOMPARE(stream->numberFlags(), QTextStream::ForceSign);
    QCOMPARE(stream->integerBase(), 16); // only the number flags are put back
    stream->setIntegerBase(10);
    ko::LogLine(Log::Message) << 5;
    stream->setNumberFlags(QTextStream::NumberFlags());
    QCOMPARE(capture.lines(Log::Message), (QStringList { "+0xff", "+5" }));
}

void tst_LogQt::lineBytes_data()
{
    QTest::addColumn<StreamSetup>("setup");
    QTest::addColumn<LineWriter>("write");
    QTest::addColumn<QByteArray>("bytes");
    const StreamSetup none = [](QTextStream &) {};
    QTest::newRow("integer limits")
        << none << LineWriter([](ko::LogLine &l) {
               l << short(SHRT_MIN) << ' ' << ushort(USHRT_MAX) << ' ' << INT_MIN << ' ' << UINT_MAX
                 << ' ' << LONG_MIN << ' ' << ULONG_MAX << ' ' << LLONG_MIN << ' ' << ULLONG_MAX
                 << ' ' << 0;
           })
        << QByteArray(
               "-32768 65535 -2147483648 4294967295 -9223372036854775808 18446744073709551615 "
               "-9223372036854775808 18446744073709551615 0\n");
    QTest::newRow("other values") << none << LineWriter([](ko::LogLine &l) {
        l << true << ' ' << 1.5 << ' ' << 'x' << QChar(0x20ac) << QLatin1String("l1")
          << QStringView(u"sv") << static_cast<const char *>(nullptr) << QByteArray("ba")
          << reinterpret_cast<const void *>(0x10);
    }) << QByteArray("1 1.5 x\xe2\x82\xacl1svba0x10\n");
    QTest::newRow("Latin-1 characters") << none << LineWriter([](ko::LogLine &l) {
        l << "caf\xe9" << QLatin1String("\xe0") << '\xfc';
    }) << QByteArray("caf\xc3\xa9\xc3\xa0\xc3\xbc\n");
    QTest::newRow("UTF-16 text") << none << LineWriter([](ko::LogLine &l) {
        l << QString::fromUtf8("Gr\xc3\xbc\xc3\x9f"
                               "e \xe6\x97\xa5 \xf0\x9f\x98\x80");
    })
                                 << QByteArray("Gr\xc3\xbc\xc3\x9f"
                                               "e \xe6\x97\xa5 \xf0\x9f\x98\x80\n");
    QTest::newRow("surrogates") << none << LineWriter([](ko::LogLine &l) {
        l << QString(QChar(0xd83d)) << QString(QChar(0xde00)) << ' ' << QString(QChar(0xdc00))
          << 'a' << QString(QChar(0xd800));
    }) << QByteArray("\xf0\x9f\x98\x80 ?a?\n");
    QTest::newRow("UTF-8 boundaries") << none << LineWriter([](ko::LogLine &l) {
        const char16_t units[] = { 0x7f, 0x80, 0x7ff, 0x800, 0xd7ff, 0xe000, 0xfffe, 0xffff };
        l << QString::fromUtf16(units, 8) << QChar(0xff) << "abcdefgh\x80";
    })
                                      << QByteArray("\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xed\x9f\xbf"
                                                    "\xee\x80\x80\xef\xbf\xbe\xef\xbf\xbf"
                                                    "\xc3\xbf"
                                                    "abcdefgh\xc2\x80\n");
    QTest::newRow("letters, then a value the stream formats")
        << none << LineWriter([](ko::LogLine &l) {
               l << QString::fromUtf8("\xc3\xbc") << "\xe9" << 2 << 1.5 << "\xe9" << 3;
           })
        << QByteArray("\xc3\xbc\xc3\xa9"
                      "21.5\xc3\xa9"
                      "3\n");
    QTest::newRow("empty line") << none << LineWriter([](ko::LogLine &) {}) << QByteArray("\n");
    QTest::newRow("long line") << none << LineWriter([](ko::LogLine &l) {
        l << QString(20000, QLatin1Char('x')) << QString::fromUtf8("\xc3\xbc") << "\xe9";
    }) << QByteArray(20000, 'x') + "\xc3\xbc\xc3\xa9\n";
    QTest::newRow("grown, then a surrogate") << none << LineWriter([](ko::LogLine &l) {
        l << QString(100, QLatin1Char('a')) + QString(200, QChar(0xfc)) + QChar(0xdc00);
    }) << QByteArray(100, 'a') + QByteArray("\xc3\xbc").repeated(200) + "?\n";
    QTest::newRow("manipulators") << none << LineWriter([](ko::LogLine &l) {
        l << Qt::hex << 255 << ' ' << Qt::dec << 10 << Qt::center << qSetFieldWidth(5) << 'x'
          << qSetFieldWidth(0) << Qt::left << "y";
    }) << QByteArray("ff 10  x  y\n");
    QTest::newRow("force sign") << StreamSetup([](QTextStream &s) {
        s.setNumberFlags(QTextStream::ForceSign);
    }) << LineWriter([](ko::LogLine &l) { l << 5 << ' ' << -5; })
                                << QByteArray("+5 -5\n");
    QTest::newRow("hexadecimal") << StreamSetup([](QTextStream &s) { s.setIntegerBase(16); })
                                 << LineWriter([](ko::LogLine &l) { l << 255 << "x"; })
                                 << QByteArray("ffx\n");
    QTest::newRow("field width") << StreamSetup([](QTextStream &s) { s.setFieldWidth(4); })
                                 << LineWriter([](ko::LogLine &l) { l << 5 << "ab"; })
                                 << QByteArray("   5  ab   \n");
    QTest::newRow("German locale")
        << StreamSetup([](QTextStream &s) { s.setLocale(QLocale(QLocale::German)); })
        << LineWriter([](ko::LogLine &l) { l << 1234567 << ' ' << -1234; })
        << QByteArray("1.234.567 -1.234\n");
    QTest::newRow("Latin-1 codec")
        << StreamSetup([](QTextStream &s) { ko::compat::writeLatin1(s); })
        << LineWriter([](ko::LogLine &l) { l << QString::fromUtf8("\xc3\xa9") << 1; })
        << QByteArray("\xe9"
                      "1\n");
    QTest::newRow("byte order mark")
        << StreamSetup([](QTextStream &s) { s.setGenerateByteOrderMark(true); })
        << LineWriter([](ko::LogLine &l) { l << "a"; })
        << QByteArray("\xef\xbb\xbf"
                      "a\n");
    QTest::newRow("failed stream")
        << StreamSetup([](QTextStream &s) { s.setStatus(QTextStream::WriteFailed); })
        << LineWriter([](ko::LogLine &l) { l << "dropped"; }) << QByteArray("");
    QTest::newRow("text left in the stream")
        << StreamSetup([](QTextStream &s) { s << "left "; })
        << LineWriter([](ko::LogLine &l) { l << "line"; }) << QByteArray("left line\n");
}

// The bytes of a line after its prefix, for the values and the text stream's states a caller may
// use.
void tst_LogQt::lineBytes()
{
    QFETCH(StreamSetup, setup);
    QFETCH(LineWriter, write);
    std::ostringstream
        out; // outlives the capture, which flushes it when putting the old streams back
    LogCapture capture;
    setup(*freshStream(Log::Warning, out));
    {
        ko::LogLine line(Log::Warning);
        write(line);
    }
    QTEST(withoutPrefixes(out), "bytes");
}

namespace
{

// A stream buffer that takes 40 bytes, then no more.
struct ShortBuffer : std::stringbuf
{
    std::streamsize room = 40;
    std::streamsize xsputn(const char *s, std::streamsize n) override
    {
        const std::streamsize taken = std::min(n, room);
        room -= taken;
        return std::stringbuf::xsputn(s, taken);
    }
};

} // namespace

// A line the buffer takes only in part fails the text stream, which then writes nothing more.
void tst_LogQt::shortWriteFailsTheStream()
{
    ShortBuffer buffer;
    std::ostream out(&buffer);
    LogCapture capture;
    QTextStream *stream = freshStream(Log::Warning, out);
    ko::LogLine(Log::Warning) << "0123456789";
    QCOMPARE(stream->status(), QTextStream::WriteFailed);
    const std::string first = buffer.str();
    QCOMPARE(first.size(), size_t(40));
    QCOMPARE(QByteArray::fromStdString(first.substr(32)), QByteArray("01234567"));
    ko::LogLine(Log::Warning) << "more";
    QCOMPARE(buffer.str(), first);
}

void tst_LogQt::markedLineBytes_data()
{
    QTest::addColumn<OstreamSetup>("setup");
    QTest::addColumn<QByteArray>("text"); // a null array stands for a null text
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("bad");
    const OstreamSetup none = [](std::ostream &) {};
    QTest::newRow("plain") << none << QByteArray("x") << QByteArray(" Qt> x\n") << false;
    QTest::newRow("bytes unchanged")
        << none << QByteArray("\xc3\xa9\xe9") << QByteArray(" Qt> \xc3\xa9\xe9\n") << false;
    QTest::newRow("null text sets the bad bit")
        << none << QByteArray() << QByteArray(" Qt> ") << true;
    QTest::newRow("format flags") << OstreamSetup(
        [](std::ostream &os) { os << std::hex << std::showbase; })
                                  << QByteArray("x") << QByteArray(" Qt> x\n") << false;
    QTest::newRow("width pads the marker") << OstreamSetup([](std::ostream &os) { os.width(8); })
                                           << QByteArray("x") << QByteArray("    Qt> x\n") << false;
    QTest::newRow("bad stream") << OstreamSetup(
        [](std::ostream &os) { os.setstate(std::ios_base::badbit); })
                                << QByteArray("x") << QByteArray("") << true;
}

// The marked lines of the Qt and middleware handlers go straight onto the std::ostream and keep its
// format flags.
void tst_LogQt::markedLineBytes()
{
    QFETCH(OstreamSetup, setup);
    QFETCH(QByteArray, text);
    QFETCH(bool, bad);
    std::ostringstream out;
    LogCapture capture;
    setup(out);
    const std::ios_base::fmtflags flags = out.flags();
    Log::instance().setStream(Log::Error, &out, false);
    LogQt::qtMsgHandler(QtCriticalMsg, text.isNull() ? nullptr : text.constData());
    QTEST(withoutPrefixes(out), "bytes");
    QCOMPARE(out.bad(), bad);
    QCOMPARE(out.flags(), flags);
    QCOMPARE(out.width(), std::streamsize(0));
}

void tst_LogQt::linesFromManyThreads()
{
    QTemporaryDir dir;
    const QByteArray paths[] = { dir.filePath(QStringLiteral("a.log")).toLatin1(),
        dir.filePath(QStringLiteral("b.log")).toLatin1() };
    LogCapture capture; // restores the streams afterwards
    LogQt::s_instance.setLogFile(paths[0].constData(), false);

    // Plain values, values the text stream formats itself, and the Qt handler's marked lines, while
    // another thread keeps moving the log between two files (so the text streams are renewed).
    constexpr int threads = 8;
    constexpr int lines = 3000;
    std::atomic<int> running { threads };
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t) {
        workers.emplace_back([t, &running] {
            for (int i = 0; i < lines; ++i) {
                if (i % 3 == 0)
                    ko::LogLine(Log::ELevel(i % 5)) << "thread " << t << " line " << i << " end";
                else if (i % 3 == 1)
                    ko::LogLine(Log::ELevel(i % 5))
                        << "thread " << double(t) << " line " << Qt::dec << i << " end";
                else
                    LogQt::qtMsgHandler(QtWarningMsg,
                        QByteArray("thread " + QByteArray::number(t) + " line "
                            + QByteArray::number(i) + " end")
                            .constData());
            }
            --running;
        });
    }
    int switches = 0;
    while (running > 0)
        LogQt::s_instance.setLogFile(paths[++switches % 2].constData(), true);
    for (auto &worker : workers)
        worker.join();
    QVERIFY(switches > 0);

    // Each file holds whole lines, each thread's in its order; together they hold every line once.
    QVector<QVector<int>> seen(threads);
    const QRegularExpression shape(QStringLiteral("^(?: Qt> )?thread (\\d) line (\\d+) end$"));
    for (const QByteArray &path : paths) {
        QFile file(QString::fromLatin1(path));
        QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Text));
        QVector<int> last(threads, -1);
        while (!file.atEnd()) {
            const QString line
                = LogCapture::stripPrefix(QString::fromLatin1(file.readLine()).chopped(1));
            const QRegularExpressionMatch match = shape.match(line);
            QVERIFY2(match.hasMatch(), qPrintable(line));
            const int t = match.captured(1).toInt();
            const int i = match.captured(2).toInt();
            QVERIFY2(i > last[t], qPrintable(line));
            QCOMPARE(line.startsWith(QLatin1String(" Qt> ")), i % 3 == 2);
            last[t] = i;
            seen[t] << i;
        }
    }
    for (QVector<int> &indexes : seen) {
        std::sort(indexes.begin(), indexes.end());
        QCOMPARE(indexes.size(), lines);
        QCOMPARE(indexes.first(), 0);
        QCOMPARE(indexes.last(), lines - 1);
        QCOMPARE(std::adjacent_find(indexes.begin(), indexes.end()), indexes.end());
    }
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
            QVERIFY(text.endsWith(
                QLatin1String(Log::levelName(Log::ELevel(l))) + QLatin1String("  Qt> x\n")));
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
    // Qt Test's handler again; on Qt 5 it takes precedence over the one of the older kind left
    // behind.
    qInstallMessageHandler(testHandler);
}

QTEST_GUILESS_MAIN(tst_LogQt)
#include "tst_LogQt.moc"
