// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Runs the installed coreqt program and checks its standard output, standard error, exit
// status and the files it writes.
#include "../console/ConsoleTestSupport.h"
#include "LogCapture.h"
#include "TestFiles.h"

#include "camera/ImageTypes.h"
#include "console/Console.h"

#include <QtTest>

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <csignal>
#include <cstring>
#include <type_traits>

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <termios.h>
#include <unistd.h>

namespace
{

struct Result
{
    int exitCode = -1;
    QByteArray out, err;
};

// A valid header (version 1, minimum version 1, seed 1) in front of enciphered bytes.
const QByteArray kHeader("\x01\x01\x00\x00\x01\x00\x00\x00", 8);

// The child sees English unless a row says otherwise, and UTC unless TZ is given.
QProcessEnvironment environment(const QStringList &settings)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char *name : { "LANGUAGE", "LC_ALL", "LC_MESSAGES" })
        env.remove(QString::fromLatin1(name));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C"));
    env.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    for (const QString &setting : settings)
        env.insert(setting.section(QLatin1Char('='), 0, 0), setting.section(QLatin1Char('='), 1));
    return env;
}

// A pseudo-terminal whose other end serves as the child's standard error.
struct Terminal
{
    const int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    QString name;
    QByteArray output;
    Terminal()
    {
        if (master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0) {
            name = QString::fromLocal8Bit(::ptsname(master));
            ::fcntl(master, F_SETFL, ::fcntl(master, F_GETFL) | O_NONBLOCK);
        }
    }
    ~Terminal() { ::close(master); }
    void drain()
    {
        char buffer[4096];
        for (ssize_t n; (n = ::read(master, buffer, sizeof buffer)) > 0;)
            output.append(buffer, int(n));
    }
};

// Starts coreqt; with @p shell, through /bin/sh, which runs @p shell first (a limit, arguments
// that are not text) and then the program with "$@".
void start(QProcess &process, const QStringList &arguments, const QStringList &settings,
    const QString &directory, const QString &shell = QString())
{
    process.setProcessEnvironment(environment(settings));
    process.setWorkingDirectory(directory);
    if (shell.isEmpty())
        process.start(QStringLiteral(COREQT_INSTALLED_TOOL), arguments);
    else
        process.start(QStringLiteral("/bin/sh"),
            QStringList { "-c", shell + "\nexec \"$0\" \"$@\"", COREQT_INSTALLED_TOOL }
                + arguments);
}

Result finish(QProcess &process, Terminal *terminal = nullptr)
{
    // The terminal is read while the child runs, so that it never blocks on a full terminal.
    QElapsedTimer clock;
    clock.start();
    for (bool done = false; !done;) {
        done = process.waitForFinished(20) || clock.elapsed() > 120000;
        if (terminal)
            terminal->drain();
    }
    Result result;
    if (process.state() == QProcess::NotRunning && process.exitStatus() == QProcess::NormalExit)
        result = { process.exitCode(), process.readAllStandardOutput(),
            process.readAllStandardError() };
    return result;
}

Result coreqt(const QStringList &arguments, const QStringList &settings = QStringList(),
    const QString &directory = QString(), Terminal *terminal = nullptr,
    const QString &shell = QString())
{
    QProcess process;
    if (terminal)
        process.setStandardErrorFile(terminal->name);
    start(process, arguments, settings, directory, shell);
    return finish(process, terminal);
}

// Every entry of a folder: a file's contents, where a link points, or that it is something else
// (a device, a FIFO, a folder).
// A file above this size (the 2 GiB inputs) is told by its size and the digest of its start: read
// whole, it would cost seconds each time.
constexpr qint64 kWholeFileLimit = qint64(16) << 20;

QMap<QString, QByteArray> entriesIn(const QString &path)
{
    QMap<QString, QByteArray> entries;
    const QDir dir(path);
    for (const QString &name :
        dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)) {
        const QFileInfo info(dir.filePath(name));
        QFile file(info.filePath());
        if (info.isSymLink())
            entries.insert(name, "-> " + QFile::encodeName(info.symLinkTarget()));
        else if (!info.isFile())
            entries.insert(name, "(not a file)");
        else if (!file.open(QIODevice::ReadOnly))
            entries.insert(name, "(unreadable)");
        else if (file.size() <= kWholeFileLimit)
            entries.insert(name, file.readAll());
        else
            entries.insert(name,
                QByteArray::number(file.size()) + " bytes starting "
                    + QCryptographicHash::hash(
                        file.read(kWholeFileLimit), QCryptographicHash::Sha256)
                          .toHex());
    }
    return entries;
}

// A character device (1,3 is null, 1,7 is full) made in the folder, or where the system does not
// let us make one, a link to the system's own.
bool makeDevice(const QString &path, int minor)
{
    if (::mknod(QFile::encodeName(path).constData(), S_IFCHR | 0666, makedev(1, minor)) == 0)
        return true;
    return QFile::link(minor == 7 ? "/dev/full" : "/dev/null", path);
}

// Creates an entry from @p spec: "name=contents", "name*N" (N zero bytes), "name#N" (a valid
// enciphered header and N zero bytes), "name->target" (a link), "name:full" or "name:null" (a
// device), "name|" (a FIFO).
bool makeEntry(const QDir &dir, const QString &spec)
{
    const QRegularExpressionMatch m
        = QRegularExpression("^([^=*#:|-]+)(=|\\*|#|->|:|\\|)(.*)$").match(spec);
    const QString path = dir.filePath(m.captured(1)), kind = m.captured(2), rest = m.captured(3);
    if (kind == "=")
        return writeFile(path, rest.toLatin1());
    if (kind == "*" || kind == "#") {
        QFile file(path);
        return file.open(QIODevice::WriteOnly)
            && file.write(kind == "#" ? kHeader : QByteArray()) >= 0
            && file.resize(file.size() + rest.toLongLong()); // sparse: quick to make, quick to read
    }
    if (kind == "->")
        return QFile::link(rest, path);
    if (kind == ":")
        return makeDevice(path, rest == "full" ? 7 : 3);
    return ::mkfifo(QFile::encodeName(path).constData(), 0666) == 0;
}

QJsonDocument json(const QStringList &arguments)
{
    const Result result
        = coreqt(QStringList(arguments) << QStringLiteral("--format") << QStringLiteral("json"));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(result.out, &error);
    if (result.exitCode != 0 || error.error != QJsonParseError::NoError)
        qWarning() << "not JSON:" << result.exitCode << error.errorString() << result.out
                   << result.err;
    return document;
}

// The rows that vocab lists for @p rows: each key a lookup reaches (the first row of a key; not
// the closing null row), with its value where the table is looked up by value, and its English
// text.
template <typename Row, std::size_t N>
void expectRows(
    QJsonArray &expected, const char *table, const Row (&rows)[N], bool identifiers = false)
{
    for (std::size_t i = 0; i < N; ++i) {
        if (!rows[i].key || ko::indexOfKey(rows, QString::fromLatin1(rows[i].key)) != int(i))
            continue;
        QJsonValue value;
        if constexpr (std::is_same_v<Row, ko::EnumNameRow>)
            value = rows[i].value;
        else if (identifiers)
            value = int(i);
        expected.append(QJsonObject { { "table", table }, { "key", rows[i].key },
            { "value", value }, { "text", QString::fromLatin1(rows[i].text) } });
    }
}

// What answers on the socket that coreqt top is given.
enum class Peer { Nothing, PlainFile, StaleSocket, Server };

// A local server in a thread of its own, so that it answers while the test waits for the child:
// it sends @p answer to each client and disconnects, or with @p silent, keeps still.
class FakeConsole
{
public:
    FakeConsole(const QString &path, const QByteArray &answer, bool silent)
    {
        QSemaphore listening;
        mThread.reset(QThread::create([path, answer, silent, &listening]() {
            QLocalServer server;
            server.listen(path);
            QObject::connect(&server, &QLocalServer::newConnection, [&server, &answer, silent]() {
                QLocalSocket *client = server.nextPendingConnection();
                if (silent)
                    return;
                client->write(answer);
                client->disconnectFromServer();
            });
            listening.release();
            QEventLoop().exec(); // until the thread is told to quit
        }));
        mThread->start();
        listening.acquire();
    }
    ~FakeConsole()
    {
        mThread->quit();
        mThread->wait();
    }

private:
    std::unique_ptr<QThread> mThread;
};

// @p document with the values that change from one moment to the next set to 0.
QJsonValue withoutTimes(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray array;
        for (const QJsonValue &item : value.toArray())
            array.append(withoutTimes(item));
        return array;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it) {
        const bool time = it.key().endsWith(QLatin1String("Ms"))
            && it.key() != QLatin1String("stallThresholdMs")
            && it.key() != QLatin1String("lockWaitMs");
        it.value() = time ? QJsonValue(0) : withoutTimes(it.value());
    }
    return object;
}

// The table with every time ("1.2 s") written as "T" and each run of blanks as one.
QString tableWithoutTimes(const QByteArray &table)
{
    return QString::fromUtf8(table)
        .replace(QRegularExpression(QStringLiteral("\\d+\\.\\d s")), QStringLiteral("T"))
        .replace(QRegularExpression(QStringLiteral(" +")), QStringLiteral(" "));
}

} // namespace

Q_DECLARE_METATYPE(Peer)

class tst_coreqt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookups_data();
    void lookups();
    void jsonOutput();
    void vocabularyListsTheLibraryTables();
    void errors_data();
    void errors();
    void encipheredRoundTrip();
    void outputsThatAreNotFiles();
    void fileNamesKeepTheirBytes_data();
    void fileNamesKeepTheirBytes();
    void signalsLeaveNothing_data();
    void signalsLeaveNothing();
    void progressOnlyOnATerminal();
    void bench();
    void topErrors_data();
    void topErrors();
    void topOnceAgreesWithTheConsole();
    void topLiveOnATerminal_data();
    void topLiveOnATerminal();
    void helpAndTour();
};

void tst_coreqt::lookups_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QStringList &arguments, const QString &expected,
                         const QStringList &settings = QStringList()) {
        QTest::newRow(name) << arguments << settings << expected;
    };
    const QString vm = "VM\t0x00000008\tVideo Motion (VM)\n";
    row("hexadecimal mask", { "events", "0x18" }, vm + "VM2\t0x00000010\tVideo Motion 2 (VM2)\n");
    row("every mask must match", { "events", "0xffffffff", "0X18", "8" }, vm);
    row("mailbox key", { "event", "AMB_17" }, "AMB_17\t\tMailbox Message (AMB_17)\n");
    row("control characters escaped", { "event", "AMB_a\\b\t\n\x01" },
        "AMB_a\\\\b\\t\\n\\x01\t\tMailbox Message (AMB_a\\\\b\\t\\n\\x01)\n");
    row("German from the locale", { "vocab", "whiteBalance", "--key", "auto narrow" },
        "whiteBalance\tauto narrow\t256\tAutomatisch (eng)\n", { "LANG=de_DE.UTF-8" });
    row("German from an Austrian locale", { "event", "AE" }, "AE\t0xFFFFFFFF\tAlle Ereignisse\n",
        { "LANG=de_AT.UTF-8" });
    row("--lang wins over the locale", { "event", "--lang", "en", "VM" }, vm,
        { "LANG=fr_FR.UTF-8" });
    row("lookup by value", { "vocab", "contrastMode", "--value", "0" },
        "contrastMode\tundef\t0\tUnknown\n");
    QString everyTable;
    for (const char *table : { "streamMode", "nightImprovement", "whiteBalance", "noiseSuppression",
             "darkNoiseSuppression", "contrastMode" })
        everyTable += QString::fromLatin1(table) + "\tundef\t0\tUnknown\n";
    row("key in every table", { "vocab", "--key", "undef" }, everyTable);
    row("frame rate", { "fps", "1250" }, "input\t1250\nfps\t12.5\n");
    row("negative frame rate", { "fps", "-1" }, "input\t-1\nfps\t-0.01\n");
    row("negative number after an option", { "fps", "--format", "text", "-.5" },
        "input\t-0.5\nfps\t-0.005\n");
    row("frame time in Berlin", { "time", "946684800123456" },
        "frametime\t946684800123456\nutc\t2000-01-01T00:00:00.123Z\nlocal\t2000-01-01T01:00:00.123+"
        "01:00\n",
        { "TZ=Europe/Berlin" });
    row("back from local time", { "time", "--from", "2000-07-01T12:00:00" },
        "frametime\t962445600000000\nutc\t2000-07-01T10:00:00.000Z\nlocal\t2000-07-01T12:00:00.000+"
        "02:00\n",
        { "TZ=Europe/Berlin" });
    row("version", { "--version" }, "coreqt 1.0.0\n");
}

void tst_coreqt::lookups()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, settings);
    const Result result = coreqt(arguments, settings);
    QCOMPARE(QString::fromUtf8(result.err), QString());
    QCOMPARE(result.exitCode, 0);
    QTEST(QString::fromUtf8(result.out), "expected");
}

void tst_coreqt::jsonOutput()
{
    const QJsonArray events = json({ "events", "0x18" }).array();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(1).toObject().value("key").toString(), QStringLiteral("VM2"));
    QCOMPARE(events.at(1).toObject().value("mask").toString(), QStringLiteral("0x00000010"));
    QVERIFY(json({ "event", "AME_1" }).array().at(0).toObject().value("mask").isNull());
    // JSON has escapes of its own: the text is passed on as it is.
    QCOMPARE(json({ "event", "AMB_\t" }).array().at(0).toObject().value("key").toString(),
        QStringLiteral("AMB_\t"));

    const QJsonObject time = json({ "time", "4294967295999999" }).object();
    QCOMPARE(time.value("frametime").toDouble(), 4294967295999999.0);
    QCOMPARE(time.value("utc").toString(), QStringLiteral("2106-02-07T06:28:15.999Z"));
    QCOMPARE(json({ "fps", "333" }).object().value("fps").toString(), QStringLiteral("3.33"));
}

// One listing of every table, compared with a walk of the library's own tables.
void tst_coreqt::vocabularyListsTheLibraryTables()
{
    QJsonArray expected;
    expectRows(expected, "camEye", sCamEyes);
    expectRows(expected, "streamMode", sStreamModes);
    expectRows(expected, "nightImprovement", sNightImprovements);
    expectRows(expected, "whiteBalance", sWhiteBalances);
    expectRows(expected, "noiseSuppression", sNoiseSuppressions);
    expectRows(expected, "darkNoiseSuppression", sDarkNoiseSuppressions);
    expectRows(expected, "contrastMode", sContrastModes);
    expectRows(expected, "streamCodec", sStreamCodex);
    expectRows(expected, "microphoneTarget", sMicrophoneTargets, true);
    expectRows(expected, "microSensitivity", sMicrophoneSensitivity, true);
    expectRows(expected, "exposurePreset", sExposurePresets);
    expectRows(expected, "displayMode", sDisplayModes);
    expectRows(expected, "resolution", sResolutions);
    const QJsonArray listed = json({ "vocab" }).array();
    QCOMPARE(listed.size(), expected.size());
    for (int i = 0; i < listed.size(); ++i)
        QCOMPARE(listed.at(i).toObject(), expected.at(i).toObject());
}

// One row per kind of failure. Each shows one line on standard error, "coreqt: COMMAND: ..."
// naming the offending input (and the system's reason where there is one), nothing on standard
// output, status 2, and every file, link and device of the folder as it was.
void tst_coreqt::errors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("mentions");
    QTest::addColumn<QStringList>("entries"); // made before the run, see makeEntry()
    QTest::addColumn<int>("fileSizeLimit"); // in blocks of the shell's ulimit -f; 0: none
    const auto row
        = [](const char *name, const QStringList &arguments, const char *command,
              const QStringList &mentions, const QStringList &entries = {}, int limit = 0) {
              QTest::newRow(name) << arguments << command << mentions << entries << limit;
          };
    row("unknown command", { "frobnicate" }, "", { "'frobnicate' is not a command" });
    row("unknown option", { "events", "--bogus", "1" }, "events", { "Unknown option 'bogus'" });
    row("unknown option beside --version", { "--version", "--bogus" }, "",
        { "Unknown option 'bogus'" });
    row("argument count", { "events" }, "events", { "expected events MASK [MASK MASK], got 0" });
    row("not a number", { "events", "0xZZ" }, "events", { "mask '0xZZ'", "not a number" });
    row("negative mask", { "events", "-1" }, "events", { "mask '-1'", "negative" });
    row("number out of range", { "bench", "jobs", "--threads", "999999999999" }, "bench",
        { "--threads '999999999999'", "out of range" });
    row("unknown key, control characters escaped", { "vocab", "whiteBalance", "--key", "a\nb" },
        "vocab", { "key 'a\\nb'", "no entry in whiteBalance" });
    row("unknown table", { "vocab", "colour" }, "vocab", { "table 'colour'" });
    row("unknown language", { "--lang", "it", "event", "AE" }, "event", { "--lang 'it'" });
    row("tour as JSON", { "demo", "--format", "json" }, "demo", { "--format json" });
    row("missing file", { "decrypt", "missing.bin", "out.bin" }, "decrypt",
        { "missing.bin", "No such file or directory" }, { "out.bin=keep me" });
    row("empty file name", { "encrypt", "", "out.bin" }, "encrypt", { "IN ''" },
        { "out.bin=keep me" });
    row("folder as input", { "encrypt", ".", "out.bin" }, "encrypt",
        { ".: OpenError", "directory" }, { "out.bin=keep me" });
    row("OUT in a missing folder", { "encrypt", "in.txt", "nowhere/out.bin" }, "encrypt",
        { "nowhere/out.bin", "No such file or directory" }, { "in.txt=text" });
    row("not enciphered", { "decrypt", "notes.txt", "out.bin" }, "decrypt",
        { "notes.txt", "not an enciphered file" }, { "notes.txt=hello world", "out.bin=keep me" });
    row("newer version", { "decrypt", "new.enc", "out.bin" }, "decrypt", { "new.enc", "version 3" },
        { QStringLiteral("new.enc=\x03\x02\x00\x00\x01\x00\x00\x00"
                         "data") });
    row("header cut short", { "inspect", "short.bin" }, "inspect", { "short.bin", "5 bytes" },
        { "short.bin=12345" });
    row("full device", { "encrypt", "in.txt", "full" }, "encrypt",
        { "full", "No space left on device" }, { "in.txt=text", "full:full" });
    row("file size limit, encrypt", { "encrypt", "in.bin", "out.bin" }, "encrypt",
        { "out.bin", "File too large" }, { "in.bin*200000", "out.bin=keep me" }, 20);
}

void tst_coreqt::errors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, command);
    QFETCH(QStringList, mentions);
    QFETCH(QStringList, entries);
    QFETCH(int, fileSizeLimit);
    QTemporaryDir dir;
    for (const QString &entry : entries)
        QVERIFY2(makeEntry(QDir(dir.path()), entry), qPrintable(entry));
    const QMap<QString, QByteArray> before = entriesIn(dir.path());
    // An ignored SIGXFSZ stays ignored in the program, whose write then fails with EFBIG.
    const QString limit = QStringLiteral("trap '' XFSZ; ulimit -f %1").arg(fileSizeLimit);
    const Result result
        = coreqt(arguments, {}, dir.path(), nullptr, fileSizeLimit ? limit : QString());
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QByteArray());
    const QString err = QString::fromUtf8(result.err);
    QCOMPARE(err.count(QLatin1Char('\n')), 1);
    QVERIFY2(err.endsWith(QLatin1Char('\n')), qPrintable(err));
    QVERIFY2(err.startsWith("coreqt: " + (command.isEmpty() ? QString() : command + ": ")),
        qPrintable(err));
    for (const QString &mention : mentions)
        QVERIFY2(err.contains(mention), qPrintable(err));
    QCOMPARE(entriesIn(dir.path()), before);
}

void tst_coreqt::encipheredRoundTrip()
{
    QTemporaryDir dir;
    const QByteArray plain = randomBytes(1 << 20, 1);
    QVERIFY(writeFile(dir.filePath("in.bin"), plain));
    QVERIFY(writeFile(dir.filePath("out.bin"), "replaced"));
    QVERIFY(QFile::setPermissions(
        dir.filePath("out.bin"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const QFile::Permissions permissions = QFile::permissions(dir.filePath("out.bin"));

    const Result encrypt = coreqt({ "encrypt", "in.bin", "enc.bin" }, {}, dir.path());
    const QByteArray enciphered = entriesIn(dir.path()).value("enc.bin");
    QCOMPARE(enciphered.size(), plain.size() + 8);
    QCOMPARE(enciphered.left(4), QByteArray("\x01\x01\x00\x00", 4));
    QVERIFY(enciphered.mid(8) != plain);
    const QString seed = "0x"
        + QString::number(qFromLittleEndian<quint32>(enciphered.constData() + 4), 16)
              .rightJustified(8, '0')
              .toUpper();
    QCOMPARE(encrypt.exitCode, 0);
    QCOMPARE(QString::fromUtf8(encrypt.out),
        QStringLiteral("file\tenc.bin\nsize\t1048576\nseed\t%1\n").arg(seed));

    const Result inspect = coreqt({ "inspect", "enc.bin" }, {}, dir.path());
    QCOMPARE(inspect.exitCode, 0);
    QCOMPARE(QString::fromUtf8(inspect.out),
        QStringLiteral("file\tenc.bin\nversion\t1\nminimumVersion\t1\nreserved\t0x0000\nseed\t%"
                       "1\nsize\t1048576\n"
                       "readable\ttrue\n")
            .arg(seed));

    const Result decrypt = coreqt({ "decrypt", "enc.bin", "out.bin" }, {}, dir.path());
    QCOMPARE(decrypt.exitCode, 0);
    QCOMPARE(decrypt.err, QByteArray());
    QCOMPARE(QString::fromUtf8(decrypt.out), QStringLiteral("file\tout.bin\nsize\t1048576\n"));
    const QMap<QString, QByteArray> files = entriesIn(dir.path());
    QCOMPARE(
        files.keys(), QStringList({ "enc.bin", "in.bin", "out.bin" })); // no temporary file left
    QVERIFY(files.value("out.bin") == plain);
    QCOMPARE(
        QFile::permissions(dir.filePath("out.bin")), permissions); // the replaced file keeps them

    // A newer file that needs a newer reader (minimum version 2) is shown as unreadable.
    QByteArray newer = enciphered;
    newer[0] = 5;
    newer[1] = 2;
    QVERIFY(writeFile(dir.filePath("newer.bin"), newer));
    const Result unreadable = coreqt({ "inspect", "newer.bin" }, {}, dir.path());
    QCOMPARE(unreadable.exitCode, 0);
    QVERIFY(unreadable.out.endsWith("version\t5\nminimumVersion\t2\nreserved\t0x0000\nseed\t"
        + seed.toLatin1() + "\nsize\t1048576\nreadable\tfalse\n"));
}

// OUT that is not a regular file is written in place and stays what it is; a link stays a link
// and its target gets the new contents.
void tst_coreqt::outputsThatAreNotFiles()
{
    QTemporaryDir dir;
    const QDir here(dir.path());
    const QByteArray plain = randomBytes(300000, 2);
    QVERIFY(writeFile(dir.filePath("in.bin"), plain));
    for (const char *entry : { "fifo|", "null:null", "target=old", "link->target" })
        QVERIFY(makeEntry(here, entry));

    QCOMPARE(coreqt({ "encrypt", "in.bin", "null" }, {}, dir.path()).exitCode, 0);
    QCOMPARE(coreqt({ "encrypt", "in.bin", "link" }, {}, dir.path()).exitCode, 0);
    QVERIFY(QFileInfo(dir.filePath("link")).isSymLink());
    QCOMPARE(entriesIn(dir.path()).value("null"), QByteArray("(not a file)"));
    QCOMPARE(QFileInfo(dir.filePath("target")).size(), plain.size() + 8);

    // Through a FIFO, whose reader is another process: the link read back, in.bin enciphered.
    for (const char *in : { "link", "in.bin" }) {
        QProcess reader;
        reader.setStandardOutputFile(dir.filePath("read"));
        reader.start("cat", { dir.filePath("fifo") });
        QVERIFY(reader.waitForStarted());
        const Result result = coreqt(
            { in == QLatin1String("link") ? "decrypt" : "encrypt", in, "fifo" }, {}, dir.path());
        QCOMPARE(result.exitCode, 0);
        QVERIFY(reader.waitForFinished());
        if (in == QLatin1String("link"))
            QVERIFY(entriesIn(dir.path()).value("read") == plain);
    }
    QCOMPARE(coreqt({ "decrypt", "read", "back" }, {}, dir.path()).exitCode, 0);
    QVERIFY(entriesIn(dir.path()).value("back") == plain);
    QCOMPARE(entriesIn(dir.path()).value("fifo"), QByteArray("(not a file)"));
    QCOMPARE(
        entriesIn(dir.path()).value("link"), "-> " + QFile::encodeName(dir.filePath("target")));
    QCOMPARE(coreqt({ "decrypt", "link", "link" }, {}, dir.path()).exitCode, 0);
    QVERIFY(entriesIn(dir.path()).value("target") == plain);
}

void tst_coreqt::fileNamesKeepTheirBytes_data()
{
    QTest::addColumn<QString>("locale");
    QTest::newRow("C") << "C";
    QTest::newRow("POSIX") << "POSIX";
    QTest::newRow("C.UTF-8") << "C.UTF-8";
}

// Names that are not UTF-8 reach the file system unchanged; messages show their bytes escaped.
void tst_coreqt::fileNamesKeepTheirBytes()
{
    QFETCH(QString, locale);
    QTemporaryDir dir;
    const QByteArray folder = QFile::encodeName(dir.path()) + '/';
    const QByteArray plain = randomBytes(1000, 3);
    // QTemporaryDir cannot name these files to remove them.
    const auto removeRawNames = qScopeGuard([&folder] {
        for (const char *name : { "in\xff\xfe", "enc\xff", "out\xc0" })
            ::unlink((folder + name).constData());
    });
    const int fd = ::open((folder + "in\xff\xfe").constData(), O_WRONLY | O_CREAT, 0644);
    QVERIFY(fd >= 0);
    QCOMPARE(::write(fd, plain.constData(), size_t(plain.size())), ssize_t(plain.size()));
    ::close(fd);
    const QStringList settings { "LANG=" + locale };
    // printf writes the bytes into the shell's arguments, where QProcess cannot.
    const auto run = [&](const char *arguments) {
        return coreqt({}, settings, dir.path(), nullptr, QStringLiteral("set -- ") + arguments);
    };
    const Result encrypt = run("encrypt \"$(printf 'in\\377\\376')\" \"$(printf 'enc\\377')\"");
    QCOMPARE(QString::fromUtf8(encrypt.err), QString());
    QVERIFY2(encrypt.out.startsWith("file\tenc\\xff\n"), encrypt.out);
    QCOMPARE(run("decrypt \"$(printf 'enc\\377')\" \"$(printf 'out\\300')\"").exitCode, 0);
    const int back = ::open((folder + "out\xc0").constData(), O_RDONLY);
    QVERIFY(back >= 0);
    QByteArray read(plain.size() + 1, '\0');
    QCOMPARE(::read(back, read.data(), size_t(read.size())), ssize_t(plain.size()));
    ::close(back);
    QVERIFY(read.left(plain.size()) == plain);
    QCOMPARE(QString::fromUtf8(run("inspect \"$(printf 'missing\\377')\"").err),
        QStringLiteral("coreqt: inspect: missing\\xff: OpenError, No such file or directory\n"));
}

void tst_coreqt::signalsLeaveNothing_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("input"); // see makeEntry()
    QTest::addColumn<int>("signal");
    for (const char *command : { "encrypt", "decrypt" }) {
        const QString input
            = command == QLatin1String("encrypt") ? "in*2147483648" : "in#2147483648";
        for (int signal : { SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE })
            QTest::addRow("%s %s", command, ::strsignal(signal)) << command << input << signal;
    }
}

// A signal while OUT is being written: OUT as it was, no temporary file left, status 128 + signal.
void tst_coreqt::signalsLeaveNothing()
{
    QFETCH(QString, command);
    QFETCH(QString, input);
    QFETCH(int, signal);
    QTemporaryDir dir;
    QVERIFY(makeEntry(QDir(dir.path()), input));
    QVERIFY(writeFile(dir.filePath("out"), "keep me"));
    const QMap<QString, QByteArray> before = entriesIn(dir.path());
    QProcess process;
    start(process, { command, "in", "out" }, {}, dir.path());
    QVERIFY(process.waitForStarted());
    // The signal is sent once the program has its output open: a descriptor of the folder's
    // other than its input (a temporary file, named or not).
    const QString fds = QStringLiteral("/proc/%1/fd").arg(process.processId());
    const QString folder = QFileInfo(dir.path()).canonicalFilePath() + '/';
    const auto writing = [&] {
        for (const QFileInfo &fd : QDir(fds).entryInfoList(QDir::AllEntries | QDir::System)) {
            const QString target = fd.symLinkTarget();
            if (target.startsWith(folder) && target != folder + "in")
                return true;
        }
        return false;
    };
    while (!writing() && !process.waitForFinished(1)) { }
    QCOMPARE(process.state(), QProcess::Running);
    QCOMPARE(::kill(pid_t(process.processId()), signal), 0);
    const Result result = finish(process);
    QCOMPARE(result.exitCode, 128 + signal);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(entriesIn(dir.path()), before);
}

void tst_coreqt::progressOnlyOnATerminal()
{
    QTemporaryDir dir;
    QVERIFY(makeEntry(QDir(dir.path()), QStringLiteral("big.bin*%1").arg(17 << 20)));

    const Result quiet = coreqt({ "encrypt", "big.bin", "big.enc" }, {}, dir.path());
    QCOMPARE(quiet.exitCode, 0);
    QCOMPARE(quiet.err, QByteArray());

    Terminal terminal;
    QVERIFY(!terminal.name.isEmpty());
    QCOMPARE(coreqt({ "decrypt", "big.enc", "big.out" }, {}, dir.path(), &terminal).exitCode, 0);
    QVERIFY2(terminal.output.contains("decrypt: 100% (17.0 MiB of 17.0 MiB)"), terminal.output);

    Terminal small;
    QVERIFY(writeFile(dir.filePath("small.bin"), "small"));
    QCOMPARE(coreqt({ "encrypt", "small.bin", "small.enc" }, {}, dir.path(), &small).exitCode, 0);
    QCOMPARE(small.output, QByteArray());
}

void tst_coreqt::bench()
{
    Terminal terminal;
    const Result result
        = coreqt({ "bench", "jobs", "--jobs", "300", "--threads", "2", "--work-us", "5" }, {},
            QString(), &terminal);
    QCOMPARE(result.exitCode, 0);
    const QStringList lines
        = QString::fromUtf8(result.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.mid(0, 3), QStringList({ "jobs\t300", "threads\t2", "workUs\t5" }));
    for (const QString &line : lines.mid(3))
        QVERIFY2(line.section(QLatin1Char('\t'), 1).toDouble() > 0, qPrintable(line));
    QVERIFY(terminal.output.contains("bench komQtThreadPool: 100% (300 of 300 jobs)"));
    QVERIFY(terminal.output.contains("bench QThreadPool: 100% (300 of 300 jobs)"));
}

void tst_coreqt::topErrors_data()
{
    QTest::addColumn<Peer>("peer");
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("silent");
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("message"); // after "coreqt: top: <path>: "
    const auto row
        = [](const char *name, Peer peer, const QString &message, const QByteArray &answer = {},
              bool silent = false, const QStringList &options = {}) {
              QTest::newRow(name) << peer << answer << silent << options << message;
          };
    row("no such socket", Peer::Nothing, "no such socket");
    row("a file that is not a socket", Peer::PlainFile, "not a CoreQt console (not a socket)");
    row("nothing listens", Peer::StaleSocket, "nothing listens on it");
    row("no answer in time", Peer::Server, "no answer within 0.3 s", {}, true,
        { "--timeout", "300" });
    row("not JSON", Peer::Server, "not a CoreQt console", "hello\n");
    row("another program's JSON", Peer::Server, "not a CoreQt console",
        R"({"console":"Other","version":1})");
    row("a later format version", Peer::Server,
        "unknown format version 2 (this program reads version 1)",
        R"({"console":"CoreQt","version":2,"jobPools":[]})");
    row("--timeout below 1", Peer::Server, "", {}, false, { "--timeout", "0" });
}

// Each failure is one line on standard error, nothing on standard output, and status 2; a text
// output and a JSON one fail alike.
void tst_coreqt::topErrors()
{
    QFETCH(Peer, peer);
    QFETCH(QByteArray, answer);
    QFETCH(bool, silent);
    QFETCH(QStringList, options);
    QFETCH(QString, message);
    const SocketPath socket;
    const QString &path = socket.path;
    std::unique_ptr<FakeConsole> server;
    if (peer == Peer::PlainFile)
        QVERIFY(writeFile(path, "not a socket"));
    else if (peer == Peer::StaleSocket)
        QVERIFY(leaveStaleSocket(path));
    else if (peer == Peer::Server)
        server = std::make_unique<FakeConsole>(path, answer, silent);
    const QString expected = message.isEmpty()
        ? QStringLiteral("coreqt: top: --timeout '0', must be at least 1\n")
        : QStringLiteral("coreqt: top: %1: %2\n").arg(path, message);
    for (const QStringList &format : { QStringList(), QStringList { "--format", "json" } }) {
        const Result result = coreqt(QStringList { "top", path } + options + format);
        QCOMPARE(result.exitCode, 2);
        QCOMPARE(result.out, QByteArray());
        QCOMPARE(QString::fromUtf8(result.err), expected);
    }
}

// The console of this process and coreqt top as a child agree on every value but the times.
void tst_coreqt::topOnceAgreesWithTheConsole()
{
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    HeldPool held(QStringLiteral("Agree"));
    QVERIFY(ko::Console::listen(path));
    const Result json = coreqt({ "top", path, "--once", "--format", "json" });
    const QByteArray here = ko::ConsoleDocument::current().toJson();
    QCOMPARE(json.exitCode, 0);
    QCOMPARE(json.err, QByteArray());
    QCOMPARE(withoutTimes(QJsonDocument::fromJson(json.out).object()),
        withoutTimes(QJsonDocument::fromJson(here).object()));

    const Result once = coreqt({ "top", path, "--once" });
    QCOMPARE(once.exitCode, 0);
    const QString table = tableWithoutTimes(once.out);
    const QString rows
        = QStringLiteral("\nJob pool Agree: busy; at most 1 worker; stall watchdog off\n"
                         " totals: scheduled 3, started 1, finished 0, aborted while queued 0, "
                         "re-prioritised 0\n"
                         " WORKER STATE JOB PRIO RUNNING QUEUE\n"
                         " Agree-Thread-1 busy %1 3 T %2 (3, T), %3 (3, T)\n")
              .arg(held.held)
              .arg(held.second)
              .arg(held.third);
    QVERIFY2(table.contains(rows), qPrintable(table));
    // Without a terminal, the live view is one table too.
    QCOMPARE(tableWithoutTimes(coreqt({ "top", path }).out), table);
    ko::Console::close();
}

void tst_coreqt::topLiveOnATerminal_data()
{
    QTest::addColumn<bool>("byKey"); // q, or else Ctrl-C (SIGINT)
    QTest::newRow("q") << true;
    QTest::newRow("Ctrl-C") << false;
}

// On a terminal the table is redrawn until q or Ctrl-C; either way the terminal is given back as
// it was. A job past its pool's stall threshold stands out.
void tst_coreqt::topLiveOnATerminal()
{
    QFETCH(bool, byKey);
    LogCapture capture;
    const SocketPath socket;
    const QString &path = socket.path;
    HeldPool held(QStringLiteral("Live"));
    held.pool.setStallThreshold(1);
    QVERIFY(spinUntil([&]() { return held.pool.snapshot().workers.value(0).runningMs >= 2; }));
    QVERIFY(ko::Console::listen(path));
    Terminal terminal;
    QVERIFY(!terminal.name.isEmpty());
    const int slave = ::open(QFile::encodeName(terminal.name).constData(), O_RDWR | O_NOCTTY);
    QVERIFY(slave >= 0);
    struct termios before;
    QCOMPARE(::tcgetattr(slave, &before), 0);

    QProcess process;
    process.setStandardInputFile(terminal.name);
    process.setStandardOutputFile(terminal.name);
    start(process, { "top", path }, {}, QString());
    QVERIFY(process.waitForStarted());
    // Two drawings: the table is redrawn.
    QVERIFY(QTest::qWaitFor(
        [&]() {
            terminal.drain();
            return terminal.output.count("\033[H\033[2J") >= 2;
        },
        20000));
    struct termios during;
    QCOMPARE(::tcgetattr(slave, &during), 0);
    QCOMPARE(during.c_lflag & tcflag_t(ICANON | ECHO), tcflag_t(0));
    if (byKey)
        QCOMPARE(::write(terminal.master, "q", 1), ssize_t(1));
    else
        ::kill(pid_t(process.processId()), SIGINT);
    const Result result = finish(process, &terminal);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.err, QByteArray());
    const QByteArray &screen = terminal.output;
    QVERIFY(screen.startsWith("\033[?1049h\033[?25l"));
    QVERIFY(screen.endsWith("\033[?25h\033[?1049l"));
    QVERIFY(screen.contains("  \033[7mLive-Thread-1"));
    QVERIFY(screen.contains(" stalled  "));
    QVERIFY(screen.contains(path.toUtf8() + ": refreshed every second; q or Ctrl-C quits."));
    struct termios after;
    QCOMPARE(::tcgetattr(slave, &after), 0);
    QCOMPARE(after.c_lflag, before.c_lflag);
    ::close(slave);
    ko::Console::close();
}

void tst_coreqt::helpAndTour()
{
    const Result help = coreqt({ "--help" });
    QCOMPARE(help.exitCode, 0);
    for (const char *command : { "demo", "events", "event", "vocab", "fps", "time", "encrypt",
             "decrypt", "inspect", "bench", "top" })
        QVERIFY2(help.out.contains(QByteArray("\n  ") + command + ' ')
                || help.out.contains(QByteArray("\n  ") + command + '\n'),
            command);
    const Result helpAll = coreqt({ "--help-all" });
    QCOMPARE(helpAll.exitCode, 0);
    QCOMPARE(helpAll.out, help.out); // the help, not the tour
    QVERIFY(coreqt({ "vocab", "--help" }).out.contains("--value <N>"));

    const Result tour = coreqt({}, { "LANG=de_DE.UTF-8" });
    QCOMPARE(tour.exitCode, 0);
    const QString text = QString::fromUtf8(tour.out);
    QCOMPARE(
        text.count(QRegularExpression(QStringLiteral(" job \\d+ started on Tour-Thread-[12]\n"))),
        4);
    QCOMPARE(text.count(QRegularExpression(QStringLiteral(" job \\d+ finished\n"))), 4);
    QCOMPARE(text.count(QStringLiteral("caused by:\t")), 2);
    for (const char *line :
        { "its slot ran in SignalThreadPool-Thread-1\n", "it is back in the main thread\n",
            "en  event VM: Video Motion (VM)", "de  event VM: Video-Bewegungsmelder (VM)",
            "back from 2023-11-14T22:13:20.123Z: 1700000000123000",
            "0042.dat: SchreibFehler, no space left on the device\n", "readable\ttrue\n",
            "fr  event VM: Mouvement vidéo (VM)", "read back: identical\n" })
        QVERIFY2(text.contains(QString::fromUtf8(line)), line);
    // The console section: the first job reads the console, the other two wait behind it.
    QVERIFY2(tableWithoutTimes(tour.out).contains(QRegularExpression(QStringLiteral(
                 "\n Console-Thread-1 busy \\d+ 3 T \\d+ \\(3, T\\), \\d+ \\(3, T\\)\n"))),
        qPrintable(text));
    QVERIFY(coreqt({ "demo" }).out.contains("0042.dat: WriteError, no space left on the device\n"));
}

QTEST_GUILESS_MAIN(tst_coreqt)

#include "tst_coreqt.moc"
