// Runs the installed coreqt program and checks its standard output, standard error, exit
// status and the files it writes.
#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

namespace
{

struct Result
{
    int exitCode = -1;
    QByteArray out, err;
};

// The child sees English unless a row says otherwise, and UTC unless TZ is given.
QProcessEnvironment environment(const QStringList& settings)
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    for (const char* name : { "LANGUAGE", "LC_ALL", "LC_MESSAGES" })
        env.remove(QString::fromLatin1(name));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C"));
    env.insert(QStringLiteral("TZ"), QStringLiteral("UTC"));
    for (const QString& setting : settings)
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

Result coreqt(const QStringList& arguments, const QStringList& settings = QStringList(),
    const QString& directory = QString(), Terminal* terminal = nullptr)
{
    QProcess process;
    process.setProcessEnvironment(environment(settings));
    process.setWorkingDirectory(directory);
    if (terminal)
        process.setStandardErrorFile(terminal->name);
    process.start(QStringLiteral(COREQT_INSTALLED_TOOL), arguments);
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
        result = { process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError() };
    return result;
}

// The files of a directory with their contents.
QMap<QString, QByteArray> filesIn(const QString& path)
{
    QMap<QString, QByteArray> files;
    const QDir dir(path);
    for (const QString& name :
        dir.entryList(QDir::Files | QDir::Hidden | QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile file(dir.filePath(name));
        files.insert(
            name, file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not a readable file)"));
    }
    return files;
}

QByteArray randomBytes(int size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(bytes.data()), size / 4);
    return bytes;
}

bool writeFile(const QString& path, const QByteArray& contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size();
}

QJsonDocument json(const QStringList& arguments)
{
    const Result result
        = coreqt(QStringList(arguments) << QStringLiteral("--format") << QStringLiteral("json"));
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(result.out, &error);
    if (result.exitCode != 0 || error.error != QJsonParseError::NoError)
        qWarning() << "not JSON:" << result.exitCode << error.errorString() << result.out << result.err;
    return document;
}

} // namespace

class tst_coreqt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lookups_data();
    void lookups();
    void jsonOutput();
    void vocabularyListsWhatTheLibraryKnows();
    void errors_data();
    void errors();
    void encipheredRoundTrip();
    void progressOnlyOnATerminal();
    void bench();
    void helpAndTour();
};

void tst_coreqt::lookups_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QStringList& arguments, const QString& expected,
                         const QStringList& settings = QStringList()) {
        QTest::newRow(name) << arguments << settings << expected;
    };
    const QString vm = "VM\t0x00000008\tVideo Motion (VM)\n";
    row("hexadecimal mask", { "events", "0x18" }, vm + "VM2\t0x00000010\tVideo Motion 2 (VM2)\n");
    row("decimal mask", { "events", "24" }, vm + "VM2\t0x00000010\tVideo Motion 2 (VM2)\n");
    row("table order, not bit order", { "events", "0x0C000000" },
        "RH\t0x08000000\tRecording History (RH)\nRT\t0x04000000\tRecording Terminate (RT)\n");
    row("every mask must match", { "events", "0xffffffff", "0X18", "8" }, vm);
    row("no event has both bits", { "events", "8", "16" }, QString());
    row("mailbox key", { "event", "AMB_17" }, "AMB_17\t\tMailbox Message (AMB_17)\n");
    row("German event", { "--lang", "de", "event", "AE", "SI5" },
        "AE\t0xFFFFFFFF\tAlle Ereignisse\nSI5\t\tSignaleingang 5 (SI4)\n");
    row("German from the locale", { "vocab", "whiteBalance", "--key", "auto narrow" },
        "whiteBalance\tauto narrow\t256\tAutomatisch (eng)\n", { "LANG=de_DE.UTF-8" });
    row("--lang wins over the locale", { "event", "--lang", "en", "VM" }, vm, { "LANG=fr_FR.UTF-8" });
    row("French with a no-break space", { "--lang", "fr", "vocab", "noiseSuppression", "--key", "5" },
        QStringLiteral("noiseSuppression\t5\t256\t0,5\u00a0lux\n"));
    row("lookup by value", { "vocab", "contrastMode", "--value", "0" }, "contrastMode\tundef\t0\tUnknown\n");
    row("first key wins", { "vocab", "resolution", "--key", "704x576" },
        "resolution\t704x576\t\tTV-PAL (704x576)\n");
    QString everyTable;
    for (const char* table : { "streamMode", "nightImprovement", "whiteBalance", "noiseSuppression",
             "darkNoiseSuppression", "contrastMode" })
        everyTable += QString::fromLatin1(table) + "\tundef\t0\tUnknown\n";
    row("key in every table", { "vocab", "--key", "undef" }, everyTable);
    row("frame rate", { "fps", "1250" }, "input\t1250\nfps\t12.5\n");
    row("unlimited frame rate", { "fps", "0" }, "input\t0\nfps\tMaximum\n");
    row("frame time", { "time", "1999999" },
        "frametime\t1999999\nutc\t1970-01-01T00:00:01.999Z\nlocal\t1970-01-01T00:00:01.999Z\n");
    row("frame time in Berlin", { "time", "946684800123456" },
        "frametime\t946684800123456\nutc\t2000-01-01T00:00:00.123Z\nlocal\t2000-01-01T01:00:00.123+01:00\n",
        { "TZ=Europe/Berlin" });
    row("back from UTC", { "time", "--from", "2000-01-01T00:00:00.123Z" },
        "frametime\t946684800123000\nutc\t2000-01-01T00:00:00.123Z\nlocal\t2000-01-01T00:00:00.123Z\n");
    row("back from local time", { "time", "--from", "2000-07-01T12:00:00" },
        "frametime\t962445600000000\nutc\t2000-07-01T10:00:00.000Z\nlocal\t2000-07-01T12:00:00.000+02:00\n",
        { "TZ=Europe/Berlin" });
    row("version", { "--version" }, "coreqt 1.0.0\n");
}

void tst_coreqt::lookups()
{
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, settings);
    QFETCH(QString, expected);
    const Result result = coreqt(arguments, settings);
    QCOMPARE(QString::fromUtf8(result.err), QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(QString::fromUtf8(result.out), expected);
}

void tst_coreqt::jsonOutput()
{
    const QJsonArray events = json({ "events", "0x18" }).array();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(1).toObject().value("key").toString(), QStringLiteral("VM2"));
    QCOMPARE(events.at(1).toObject().value("mask").toString(), QStringLiteral("0x00000010"));
    QVERIFY(json({ "event", "AME_1" }).array().at(0).toObject().value("mask").isNull());

    const QJsonObject time = json({ "time", "4294967295999999" }).object();
    QCOMPARE(time.value("frametime").toDouble(), 4294967295999999.0);
    QCOMPARE(time.value("utc").toString(), QStringLiteral("2106-02-07T06:28:15.999Z"));

    QCOMPARE(json({ "fps", "333" }).object().value("fps").toString(), QStringLiteral("3.33"));
    QCOMPARE(json({ "events", "0", "--lang", "de" }).array().size(), 0);
}

// Every listed row reads the same by key and by value, so the tool's rows match the library's tables.
void tst_coreqt::vocabularyListsWhatTheLibraryKnows()
{
    const QJsonArray rows = json({ "vocab" }).array();
    QCOMPARE(rows.size(), 106);
    int checked = 0;
    for (const QJsonValue& entry : rows) {
        const QJsonObject row = entry.toObject();
        QVERIFY2(!row.value("text").toString().isEmpty(), qPrintable(row.value("key").toString()));
        if (row.value("value").isNull())
            continue;
        const QString value = QString::number(row.value("value").toInt());
        const QJsonArray byValue = json({ "vocab", row.value("table").toString(), "--value", value }).array();
        QVERIFY(byValue.size() == 1 && byValue.at(0).toObject().value("text") == row.value("text"));
        ++checked;
    }
    QCOMPARE(checked, 54);
}

void tst_coreqt::errors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message"); // after "coreqt: "
    QTest::addColumn<QStringList>("files"); // "name=contents", present before the run and unchanged after it
    const auto row = [](const char* name, const QStringList& arguments, const QString& message,
                         const QStringList& files = QStringList()) {
        QTest::newRow(name) << arguments << message << files;
    };
    row("unknown command", { "frobnicate" }, "'frobnicate' is not a command; see coreqt --help");
    row("unknown option", { "events", "--bogus", "1" }, "events: Unknown option 'bogus'.");
    const QString masks
        = "events: expected events MASK [MASK MASK], got %1 argument(s); see coreqt events --help";
    row("no mask", { "events" }, masks.arg(0));
    row("four masks", { "events", "1", "2", "3", "4" }, masks.arg(4));
    const QString notANumber = "', not a number; write it in decimal or as 0x-prefixed hexadecimal";
    row("malformed mask", { "events", "0xZZ" }, "events: mask '0xZZ" + notANumber);
    row("negative mask", { "events", "8", "--", "-1" }, "events: mask '-1" + notANumber);
    row("mask above 32 bits", { "events", "4294967296" },
        "events: mask '4294967296', larger than 32 bits (0xFFFFFFFF)");
    row("unknown event key", { "event", "vm" },
        "event: event key 'vm', not a trigger event key nor a mailbox key (AMB_..., AME_...); keys are "
        "case-sensitive");
    row("unknown table", { "vocab", "colour" },
        "vocab: table 'colour', not a vocabulary table; tables: camEye, streamMode, nightImprovement, "
        "whiteBalance, noiseSuppression, darkNoiseSuppression, contrastMode, streamCodec, microphoneTarget, "
        "microSensitivity, exposurePreset, displayMode, resolution");
    row("unknown key", { "vocab", "whiteBalance", "--key", "Auto" },
        "vocab: key 'Auto', no entry in whiteBalance");
    row("unknown value", { "vocab", "--value", "0x4000" }, "vocab: value '0x4000', no entry in any table");
    row("value of a key table", { "vocab", "resolution", "--value", "1" },
        "vocab: value '1', the table resolution is looked up by key only");
    row("key and value", { "vocab", "--key", "off", "--value", "2" },
        "vocab: give either --key or --value, not both");
    row("malformed frame rate", { "fps", "12,5" }, "fps: frame rate '12,5', not a finite number");
    row("malformed frame time", { "time", "12:00" },
        "time: frame time '12:00', not a frame time (decimal microseconds since 1970-01-01T00:00:00Z)");
    row("frame time beyond 2106", { "time", "4294967296000000" },
        "time: frame time '4294967296000000', after 2106-02-07T06:28:15Z, the last instant frame times "
        "convert (4294967295999999)");
    row("malformed time", { "time", "--from", "yesterday" },
        "time: time 'yesterday', not an ISO 8601 date and time such as 2024-05-17T08:30:00.250Z");
    row("time before 1970", { "time", "--from", "1969-12-31T23:59:59Z" },
        "time: time '1969-12-31T23:59:59Z', before 1970-01-01T00:00:00Z, where frame times begin");
    row("no time", { "time" }, "time: missing FRAMETIME or --from ISO-8601");
    row("unknown language", { "--lang", "it", "event", "AE" }, "event: --lang 'it': expected de, fr or en");
    row("unknown format", { "events", "1", "--format", "xml" },
        "events: --format 'xml': expected text or json");

    const QString missing = ": missing.bin: OpenError, No such file or directory";
    row("inspect a missing file", { "inspect", "missing.bin" }, "inspect" + missing);
    row("decrypt a missing file", { "decrypt", "missing.bin", "out.bin" }, "decrypt" + missing,
        { "out.bin=keep me" });
    row("encrypt a folder", { "encrypt", ".", "out.bin" },
        "encrypt: .: OpenError, file to open is a directory", { "out.bin=keep me" });
    row("encrypt into a missing folder", { "encrypt", "in.txt", "nowhere/out.bin" },
        "encrypt: nowhere/out.bin: OpenError, No such file or directory", { "in.txt=text" });
    const QString notEnciphered = ": ReadError, not an enciphered file: ";
    const QString version = "version %1 (minimum version %2, seed 0x%3) is not one this library reads";
    row("decrypt a plain text", { "decrypt", "notes.txt", "out.bin" },
        "decrypt: notes.txt" + notEnciphered + version.arg(104).arg(101).arg("6F77206F"),
        { "notes.txt=hello world", "out.bin=keep me" });
    row("decrypt a newer version", { "decrypt", "new.enc", "out.bin" },
        "decrypt: new.enc" + notEnciphered + version.arg(3).arg(2).arg("00000001"),
        { QStringLiteral("new.enc=\x03\x02\x00\x00\x01\x00\x00\x00"
                         "data") });
    row("decrypt a zero seed", { "decrypt", "zero.enc", "out.bin" },
        "decrypt: zero.enc" + notEnciphered + version.arg(1).arg(1).arg("00000000"),
        { QStringLiteral("zero.enc=\x01\x01\x00\x00\x00\x00\x00\x00"
                         "data") });
    row("decrypt an empty file", { "decrypt", "empty.bin", "out.bin" },
        "decrypt: empty.bin" + notEnciphered + "0 bytes, shorter than the 8-byte header", { "empty.bin=" });
    row("inspect a short file", { "inspect", "short.bin" },
        "inspect: short.bin" + notEnciphered + "5 bytes, shorter than the 8-byte header",
        { "short.bin=12345" });
    row("unknown benchmark", { "bench", "files" }, "bench: benchmark 'files', unknown; available: jobs");
    row("no jobs", { "bench", "jobs", "--jobs", "0" }, "bench: --jobs '0', must be at least 1");
    row("malformed thread count", { "bench", "jobs", "--threads", "two" },
        "bench: --threads 'two', not a decimal integer");
}

void tst_coreqt::errors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QFETCH(QStringList, files);
    QTemporaryDir dir;
    QMap<QString, QByteArray> before;
    for (const QString& file : files) {
        before.insert(file.section(QLatin1Char('='), 0, 0), file.section(QLatin1Char('='), 1).toLatin1());
        QVERIFY(writeFile(dir.filePath(before.lastKey()), before.last()));
    }
    const Result result = coreqt(arguments, QStringList(), dir.path());
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(QString::fromUtf8(result.err), "coreqt: " + message + QLatin1Char('\n'));
    QCOMPARE(filesIn(dir.path()), before);
}

void tst_coreqt::encipheredRoundTrip()
{
    QTemporaryDir dir;
    const QByteArray plain = randomBytes(1 << 20);
    QVERIFY(writeFile(dir.filePath("in.bin"), plain));
    QVERIFY(writeFile(dir.filePath("out.bin"), "replaced"));
    QVERIFY(QFile::setPermissions(
        dir.filePath("out.bin"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const QFile::Permissions permissions = QFile::permissions(dir.filePath("out.bin"));

    const Result encrypt = coreqt({ "encrypt", "in.bin", "enc.bin" }, {}, dir.path());
    const QByteArray enciphered = filesIn(dir.path()).value("enc.bin");
    QCOMPARE(enciphered.size(), plain.size() + 8);
    QCOMPARE(enciphered.left(4), QByteArray("\x01\x01\x00\x00", 4));
    QVERIFY(enciphered.mid(8) != plain);
    const QString seed = "0x"
        + QString::number(qFromLittleEndian<quint32>(enciphered.constData() + 4), 16)
              .rightJustified(8, '0')
              .toUpper();
    QCOMPARE(encrypt.exitCode, 0);
    QCOMPARE(
        QString::fromUtf8(encrypt.out), QStringLiteral("file\tenc.bin\nsize\t1048576\nseed\t%1\n").arg(seed));

    const Result inspect = coreqt({ "inspect", "enc.bin" }, {}, dir.path());
    QCOMPARE(inspect.exitCode, 0);
    QCOMPARE(QString::fromUtf8(inspect.out),
        QStringLiteral(
            "file\tenc.bin\nversion\t1\nminimumVersion\t1\nreserved\t0x0000\nseed\t%1\nsize\t1048576\n"
            "readable\ttrue\n")
            .arg(seed));
    const QJsonObject header
        = QJsonDocument::fromJson(coreqt({ "inspect", "enc.bin", "--format", "json" }, {}, dir.path()).out)
              .object();
    QVERIFY(header.value("readable").toBool() && header.value("seed").toString() == seed);

    const Result decrypt = coreqt({ "decrypt", "enc.bin", "out.bin" }, {}, dir.path());
    QVERIFY(decrypt.exitCode == 0 && decrypt.err.isEmpty());
    QCOMPARE(QString::fromUtf8(decrypt.out), QStringLiteral("file\tout.bin\nsize\t1048576\n"));
    const QMap<QString, QByteArray> files = filesIn(dir.path());
    QCOMPARE(files.keys(), QStringList({ "enc.bin", "in.bin", "out.bin" })); // no temporary file left
    QVERIFY(files.value("out.bin") == plain);
    QCOMPARE(QFile::permissions(dir.filePath("out.bin")), permissions); // the replaced file keeps them

    // A newer file that this version may still read (its minimum version is 1) is readable.
    QByteArray newer = enciphered;
    newer[0] = 5;
    QVERIFY(writeFile(dir.filePath("newer.bin"), newer));
    QVERIFY(coreqt({ "inspect", "newer.bin" }, {}, dir.path()).out.endsWith("readable\ttrue\n"));
    newer[1] = 2;
    QVERIFY(writeFile(dir.filePath("newer.bin"), newer));
    const Result unreadable = coreqt({ "inspect", "newer.bin" }, {}, dir.path());
    QVERIFY(unreadable.exitCode == 0 && unreadable.out.endsWith("readable\tfalse\n"));
    QVERIFY(unreadable.out.contains("version\t5\nminimumVersion\t2\n"));
}

void tst_coreqt::progressOnlyOnATerminal()
{
    QTemporaryDir dir;
    QVERIFY(writeFile(dir.filePath("big.bin"), randomBytes(17 << 20)));

    const Result quiet = coreqt({ "encrypt", "big.bin", "big.enc" }, {}, dir.path());
    QVERIFY(quiet.exitCode == 0 && quiet.err.isEmpty());

    Terminal terminal;
    QVERIFY(!terminal.name.isEmpty());
    QCOMPARE(coreqt({ "decrypt", "big.enc", "big.out" }, {}, dir.path(), &terminal).exitCode, 0);
    QVERIFY2(terminal.output.contains("decrypt: 100% (17.0 of 17.0 MiB)"), terminal.output);

    Terminal small;
    QVERIFY(writeFile(dir.filePath("small.bin"), "small"));
    QCOMPARE(coreqt({ "encrypt", "small.bin", "small.enc" }, {}, dir.path(), &small).exitCode, 0);
    QCOMPARE(small.output, QByteArray());
}

void tst_coreqt::bench()
{
    Terminal terminal;
    const Result result = coreqt(
        { "bench", "jobs", "--jobs", "300", "--threads", "2", "--work-us", "5" }, {}, QString(), &terminal);
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = QString::fromUtf8(result.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY(lines.size() == 6 && lines.mid(0, 3) == QStringList({ "jobs\t300", "threads\t2", "workUs\t5" }));
    for (const QString& line : lines.mid(3))
        QVERIFY2(line.section(QLatin1Char('\t'), 1).toDouble() > 0, qPrintable(line));
    QVERIFY(terminal.output.contains("bench komQtThreadPool: 100% (300 of 300 jobs)"));
    QVERIFY(terminal.output.contains("bench QThreadPool: 100% (300 of 300 jobs)"));
}

void tst_coreqt::helpAndTour()
{
    const Result help = coreqt({ "--help" });
    QCOMPARE(help.exitCode, 0);
    for (const char* command :
        { "demo", "events", "event", "vocab", "fps", "time", "encrypt", "decrypt", "inspect", "bench" })
        QVERIFY2(help.out.contains(QByteArray("\n  ") + command + ' ')
                || help.out.contains(QByteArray("\n  ") + command + '\n'),
            command);
    const Result vocabHelp = coreqt({ "vocab", "--help" });
    QVERIFY(vocabHelp.exitCode == 0 && vocabHelp.out.contains("--value <N>"));

    const Result tour = coreqt({}, { "LANG=de_DE.UTF-8" });
    QCOMPARE(tour.exitCode, 0);
    const QString text = QString::fromUtf8(tour.out);
    QCOMPARE(text.count(QRegularExpression(QStringLiteral(" job \\d+ started on Tour-Thread-[12]\n"))), 4);
    QCOMPARE(text.count(QRegularExpression(QStringLiteral(" job \\d+ finished\n"))), 4);
    QCOMPARE(text.count(QStringLiteral("caused by:\t")), 2);
    for (const char* line :
        { "its slot ran in SignalThreadPool-Thread-1\n", "it is back in the main thread\n",
            "en  event VM: Video Motion (VM)", "de  event VM: Video-Bewegungsmelder (VM)",
            "back from 2023-11-14T22:13:20.123Z: 1700000000123000",
            "0042.dat: SchreibFehler, no space left on the device\n", "readable\ttrue\n",
            "fr  event VM: Mouvement vidéo (VM)", "read back: identical\n" })
        QVERIFY2(text.contains(QString::fromUtf8(line)), line);
    QVERIFY(coreqt({ "demo" }).out.contains("0042.dat: WriteError, no space left on the device\n"));
}

QTEST_GUILESS_MAIN(tst_coreqt)

#include "tst_coreqt.moc"
