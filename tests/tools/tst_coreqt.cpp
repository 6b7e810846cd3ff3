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
    QByteArray out;
    QByteArray err;
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
class Terminal
{
public:
    Terminal()
        : mMaster(::posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (mMaster >= 0 && ::grantpt(mMaster) == 0 && ::unlockpt(mMaster) == 0) {
            mName = QString::fromLocal8Bit(::ptsname(mMaster));
            ::fcntl(mMaster, F_SETFL, ::fcntl(mMaster, F_GETFL) | O_NONBLOCK);
        }
    }
    ~Terminal()
    {
        if (mMaster >= 0)
            ::close(mMaster);
    }
    QString name() const { return mName; }
    QByteArray output() const { return mOutput; }
    void drain()
    {
        char buffer[4096];
        ssize_t n;
        while ((n = ::read(mMaster, buffer, sizeof buffer)) > 0)
            mOutput.append(buffer, int(n));
    }

private:
    int mMaster;
    QString mName;
    QByteArray mOutput;
};

Result coreqt(const QStringList& arguments, const QStringList& settings = QStringList(),
    const QString& directory = QString(), Terminal* terminal = nullptr)
{
    QProcess process;
    process.setProcessEnvironment(environment(settings));
    process.setWorkingDirectory(directory);
    if (terminal)
        process.setStandardErrorFile(terminal->name());
    process.start(QStringLiteral(COREQT_INSTALLED_TOOL), arguments);
    Result result;
    // The terminal is read while the child runs, so that it never blocks on a full terminal.
    QElapsedTimer clock;
    clock.start();
    while (!process.waitForFinished(20) && clock.elapsed() < 120000) {
        if (terminal)
            terminal->drain();
    }
    if (terminal)
        terminal->drain();
    if (process.state() != QProcess::NotRunning || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
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
    void replacedFileKeepsItsPermissions();
    void progressOnlyOnATerminal();
    void bench();
    void helpAndTour();
};

void tst_coreqt::lookups_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("settings");
    QTest::addColumn<QString>("expected");

    const QString vmRows
        = QStringLiteral("VM\t0x00000008\tVideo Motion (VM)\nVM2\t0x00000010\tVideo Motion 2 (VM2)\n");
    QTest::newRow("hexadecimal mask") << QStringList { "events", "0x18" } << QStringList() << vmRows;
    QTest::newRow("decimal mask") << QStringList { "events", "24" } << QStringList() << vmRows;
    QTest::newRow("table order, not bit order")
        << QStringList { "events", "0x0C000000" } << QStringList()
        << QStringLiteral(
               "RH\t0x08000000\tRecording History (RH)\nRT\t0x04000000\tRecording Terminate (RT)\n");
    QTest::newRow("every mask must match") << QStringList { "events", "0xffffffff", "0X18",
        "8" } << QStringList() << QStringLiteral("VM\t0x00000008\tVideo Motion (VM)\n");
    QTest::newRow("no event has both bits")
        << QStringList { "events", "8", "16" } << QStringList() << QString();
    QTest::newRow("mailbox key") << QStringList { "event", "AMB_17" } << QStringList()
                                 << QStringLiteral("AMB_17\t\tMailbox Message (AMB_17)\n");
    QTest::newRow("German event") << QStringList { "--lang", "de", "event", "AE", "SI5" } << QStringList()
                                  << QStringLiteral(
                                         "AE\t0xFFFFFFFF\tAlle Ereignisse\nSI5\t\tSignaleingang 5 (SI4)\n");
    QTest::newRow("German from the locale")
        << QStringList { "vocab", "whiteBalance", "--key", "auto narrow" }
        << QStringList { "LANG=de_DE.UTF-8" }
        << QStringLiteral("whiteBalance\tauto narrow\t256\tAutomatisch (eng)\n");
    QTest::newRow("--lang wins over the locale")
        << QStringList { "event", "--lang", "en", "VM" } << QStringList { "LANG=fr_FR.UTF-8" }
        << QStringLiteral("VM\t0x00000008\tVideo Motion (VM)\n");
    QTest::newRow("French with a no-break space")
        << QStringList { "--lang", "fr", "vocab", "noiseSuppression", "--key", "5" } << QStringList()
        << QStringLiteral("noiseSuppression\t5\t256\t0,5\u00a0lux\n");
    QTest::newRow("lookup by value") << QStringList { "vocab", "contrastMode", "--value", "0" }
                                     << QStringList() << QStringLiteral("contrastMode\tundef\t0\tUnknown\n");
    QTest::newRow("first key wins") << QStringList { "vocab", "resolution", "--key",
        "704x576" } << QStringList() << QStringLiteral("resolution\t704x576\t\tTV-PAL (704x576)\n");
    QTest::newRow("key in every table") << QStringList { "vocab", "--key", "undef" } << QStringList()
                                        << QStringLiteral("streamMode\tundef\t0\tUnknown\n"
                                                          "nightImprovement\tundef\t0\tUnknown\n"
                                                          "whiteBalance\tundef\t0\tUnknown\n"
                                                          "noiseSuppression\tundef\t0\tUnknown\n"
                                                          "darkNoiseSuppression\tundef\t0\tUnknown\n"
                                                          "contrastMode\tundef\t0\tUnknown\n");
    QTest::newRow("frame rate") << QStringList { "fps", "1250" } << QStringList()
                                << QStringLiteral("input\t1250\nfps\t12.5\n");
    QTest::newRow("unlimited frame rate")
        << QStringList { "fps", "0" } << QStringList() << QStringLiteral("input\t0\nfps\tMaximum\n");
    QTest::newRow("frame time") << QStringList { "time", "1999999" } << QStringList()
                                << QStringLiteral("frametime\t1999999\nutc\t1970-01-01T00:00:01.999Z\n"
                                                  "local\t1970-01-01T00:00:01.999Z\n");
    QTest::newRow("frame time in Berlin")
        << QStringList { "time", "946684800123456" } << QStringList { "TZ=Europe/Berlin" }
        << QStringLiteral("frametime\t946684800123456\nutc\t2000-01-01T00:00:00.123Z\n"
                          "local\t2000-01-01T01:00:00.123+01:00\n");
    QTest::newRow("back from UTC") << QStringList { "time", "--from", "2000-01-01T00:00:00.123Z" }
                                   << QStringList()
                                   << QStringLiteral(
                                          "frametime\t946684800123000\nutc\t2000-01-01T00:00:00.123Z\n"
                                          "local\t2000-01-01T00:00:00.123Z\n");
    QTest::newRow("back from local time")
        << QStringList { "time", "--from", "2000-07-01T12:00:00" } << QStringList { "TZ=Europe/Berlin" }
        << QStringLiteral("frametime\t962445600000000\nutc\t2000-07-01T10:00:00.000Z\n"
                          "local\t2000-07-01T12:00:00.000+02:00\n");
    QTest::newRow("version") << QStringList { "--version" } << QStringList()
                             << QStringLiteral("coreqt 1.0.0\n");
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
        const QString table = row.value("table").toString();
        const QString value = QString::number(row.value("value").toInt());
        const QJsonArray byValue = json({ "vocab", table, "--value", value }).array();
        QCOMPARE(byValue.size(), 1);
        QCOMPARE(byValue.at(0).toObject().value("text"), row.value("text"));
        ++checked;
    }
    QCOMPARE(checked, 54);
}

void tst_coreqt::errors_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("files"); // "name=contents", present before the run and unchanged after it

    QTest::newRow("unknown command") << QStringList { "frobnicate" }
                                     << QStringLiteral(
                                            "coreqt: 'frobnicate' is not a command; see coreqt --help")
                                     << QStringList();
    QTest::newRow("unknown option") << QStringList { "events", "--bogus", "1" }
                                    << QStringLiteral("coreqt: events: Unknown option 'bogus'.")
                                    << QStringList();
    QTest::newRow("no mask") << QStringList { "events" }
                             << QStringLiteral(
                                    "coreqt: events: expected events MASK [MASK MASK], got 0 argument(s); "
                                    "see coreqt events --help")
                             << QStringList();
    QTest::newRow("four masks") << QStringList { "events", "1", "2", "3", "4" }
                                << QStringLiteral(
                                       "coreqt: events: expected events MASK [MASK MASK], got 4 argument(s); "
                                       "see coreqt events --help")
                                << QStringList();
    const QString notANumber
        = QStringLiteral("not a number; write it in decimal or as 0x-prefixed hexadecimal");
    QTest::newRow("malformed mask") << QStringList { "events", "0xZZ" }
                                    << QStringLiteral("coreqt: events: mask '0xZZ', ") + notANumber
                                    << QStringList();
    QTest::newRow("negative mask") << QStringList { "events", "8", "--", "-1" }
                                   << QStringLiteral("coreqt: events: mask '-1', ") + notANumber
                                   << QStringList();
    QTest::newRow("mask above 32 bits")
        << QStringList { "events", "4294967296" }
        << QStringLiteral("coreqt: events: mask '4294967296', larger than 32 bits (0xFFFFFFFF)")
        << QStringList();
    QTest::newRow("unknown event key")
        << QStringList { "event", "vm" }
        << QStringLiteral(
               "coreqt: event: event key 'vm', not a trigger event key nor a mailbox key (AMB_..., "
               "AME_...); keys are case-sensitive")
        << QStringList();
    QTest::newRow("unknown table") << QStringList { "vocab", "colour" }
                                   << QStringLiteral(
                                          "coreqt: vocab: table 'colour', not a vocabulary table; tables: "
                                          "camEye, streamMode, nightImprovement, whiteBalance, "
                                          "noiseSuppression, darkNoiseSuppression, contrastMode, "
                                          "streamCodec, microphoneTarget, microSensitivity, "
                                          "exposurePreset, displayMode, resolution")
                                   << QStringList();
    QTest::newRow("unknown key") << QStringList { "vocab", "whiteBalance", "--key", "Auto" }
                                 << QStringLiteral("coreqt: vocab: key 'Auto', no entry in whiteBalance")
                                 << QStringList();
    QTest::newRow("unknown value") << QStringList { "vocab", "--value", "0x4000" }
                                   << QStringLiteral("coreqt: vocab: value '0x4000', no entry in any table")
                                   << QStringList();
    QTest::newRow("value of a key table")
        << QStringList { "vocab", "resolution", "--value", "1" }
        << QStringLiteral("coreqt: vocab: value '1', the table resolution is looked up by key only")
        << QStringList();
    QTest::newRow("key and value") << QStringList { "vocab", "--key", "off", "--value", "2" }
                                   << QStringLiteral("coreqt: vocab: give either --key or --value, not both")
                                   << QStringList();
    QTest::newRow("malformed frame rate")
        << QStringList { "fps", "12,5" }
        << QStringLiteral("coreqt: fps: frame rate '12,5', not a finite number") << QStringList();
    QTest::newRow("malformed frame time")
        << QStringList { "time", "12:00" }
        << QStringLiteral("coreqt: time: frame time '12:00', not a frame time (decimal microseconds since "
                          "1970-01-01T00:00:00Z)")
        << QStringList();
    QTest::newRow("frame time beyond 2106")
        << QStringList { "time", "4294967296000000" }
        << QStringLiteral("coreqt: time: frame time '4294967296000000', after 2106-02-07T06:28:15Z, the last "
                          "instant frame times convert (4294967295999999)")
        << QStringList();
    QTest::newRow("malformed time") << QStringList { "time", "--from", "yesterday" }
                                    << QStringLiteral(
                                           "coreqt: time: time 'yesterday', not an ISO 8601 date and time "
                                           "such as 2024-05-17T08:30:00.250Z")
                                    << QStringList();
    QTest::newRow("time before 1970")
        << QStringList { "time", "--from", "1969-12-31T23:59:59Z" }
        << QStringLiteral(
               "coreqt: time: time '1969-12-31T23:59:59Z', before 1970-01-01T00:00:00Z, where frame "
               "times begin")
        << QStringList();
    QTest::newRow("no time") << QStringList { "time" }
                             << QStringLiteral("coreqt: time: missing FRAMETIME or --from ISO-8601")
                             << QStringList();
    QTest::newRow("unknown language")
        << QStringList { "--lang", "it", "event", "AE" }
        << QStringLiteral("coreqt: event: --lang 'it': expected de, fr or en") << QStringList();
    QTest::newRow("unknown format") << QStringList { "events", "1", "--format", "xml" }
                                    << QStringLiteral("coreqt: events: --format 'xml': expected text or json")
                                    << QStringList();

    const QString missing = QStringLiteral("missing.bin: OpenError, No such file or directory");
    const QStringList keep { "out.bin=keep me" };
    QTest::newRow("inspect a missing file") << QStringList { "inspect", "missing.bin" }
                                            << QStringLiteral("coreqt: inspect: ") + missing << QStringList();
    QTest::newRow("encrypt a missing file") << QStringList { "encrypt", "missing.bin", "out.bin" }
                                            << QStringLiteral("coreqt: encrypt: ") + missing << keep;
    QTest::newRow("decrypt a missing file") << QStringList { "decrypt", "missing.bin", "out.bin" }
                                            << QStringLiteral("coreqt: decrypt: ") + missing << keep;
    QTest::newRow("encrypt a folder")
        << QStringList { "encrypt", ".", "out.bin" }
        << QStringLiteral("coreqt: encrypt: .: OpenError, file to open is a directory") << keep;
    QTest::newRow("encrypt into a missing folder")
        << QStringList { "encrypt", "in.txt", "nowhere/out.bin" }
        << QStringLiteral("coreqt: encrypt: nowhere/out.bin: OpenError, No such file or directory")
        << QStringList { "in.txt=text" };
    const QString notEnciphered = QStringLiteral(": ReadError, not an enciphered file: ");
    QTest::newRow("decrypt a plain text") << QStringList { "decrypt", "notes.txt", "out.bin" }
                                          << QStringLiteral("coreqt: decrypt: notes.txt") + notEnciphered
            + QStringLiteral(
                "version 104 (minimum version 101, seed 0x6F77206F) is not one this library reads")
                                          << QStringList { "notes.txt=hello world", "out.bin=keep me" };
    QTest::newRow("decrypt a newer version")
        << QStringList { "decrypt", "new.enc", "out.bin" }
        << QStringLiteral("coreqt: decrypt: new.enc") + notEnciphered
            + QStringLiteral("version 3 (minimum version 2, seed 0x00000001) is not one this library reads")
        << QStringList { QStringLiteral("new.enc=\x03\x02\x00\x00\x01\x00\x00\x00"
                                        "data") };
    QTest::newRow("decrypt a zero seed")
        << QStringList { "decrypt", "zero.enc", "out.bin" }
        << QStringLiteral("coreqt: decrypt: zero.enc") + notEnciphered
            + QStringLiteral("version 1 (minimum version 1, seed 0x00000000) is not one this library reads")
        << QStringList { QStringLiteral("zero.enc=\x01\x01\x00\x00\x00\x00\x00\x00"
                                        "data") };
    QTest::newRow("decrypt an empty file") << QStringList { "decrypt", "empty.bin", "out.bin" }
                                           << QStringLiteral("coreqt: decrypt: empty.bin") + notEnciphered
            + QStringLiteral("0 bytes, shorter than the 8-byte header")
                                           << QStringList { "empty.bin=" };
    QTest::newRow("inspect a short file") << QStringList { "inspect", "short.bin" }
                                          << QStringLiteral("coreqt: inspect: short.bin") + notEnciphered
            + QStringLiteral("5 bytes, shorter than the 8-byte header")
                                          << QStringList { "short.bin=12345" };
    QTest::newRow("unknown benchmark")
        << QStringList { "bench", "files" }
        << QStringLiteral("coreqt: bench: benchmark 'files', unknown; available: jobs") << QStringList();
    QTest::newRow("no jobs") << QStringList { "bench", "jobs", "--jobs", "0" }
                             << QStringLiteral("coreqt: bench: --jobs '0', must be at least 1")
                             << QStringList();
    QTest::newRow("malformed thread count")
        << QStringList { "bench", "jobs", "--threads", "two" }
        << QStringLiteral("coreqt: bench: --threads 'two', not a decimal integer") << QStringList();
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
    QCOMPARE(QString::fromUtf8(result.err), message + QLatin1Char('\n'));
    QCOMPARE(filesIn(dir.path()), before);
}

void tst_coreqt::encipheredRoundTrip()
{
    QTemporaryDir dir;
    const QByteArray plain = randomBytes(1 << 20);
    QVERIFY(writeFile(dir.filePath("in.bin"), plain));
    QVERIFY(writeFile(dir.filePath("out.bin"), "replaced"));

    const Result encrypt = coreqt({ "encrypt", "in.bin", "enc.bin" }, {}, dir.path());
    QCOMPARE(encrypt.exitCode, 0);
    const QByteArray enciphered = filesIn(dir.path()).value("enc.bin");
    QCOMPARE(enciphered.size(), plain.size() + 8);
    QCOMPARE(enciphered.left(4), QByteArray("\x01\x01\x00\x00", 4));
    QVERIFY(enciphered.mid(8) != plain);
    const QString seed = QStringLiteral("0x")
        + QStringLiteral("%1")
              .arg(qFromLittleEndian<quint32>(enciphered.constData() + 4), 8, 16, QLatin1Char('0'))
              .toUpper();
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
    QCOMPARE(header.value("readable").toBool(), true);
    QCOMPARE(header.value("seed").toString(), seed);

    const Result decrypt = coreqt({ "decrypt", "enc.bin", "out.bin" }, {}, dir.path());
    QCOMPARE(decrypt.exitCode, 0);
    QCOMPARE(QString::fromUtf8(decrypt.out), QStringLiteral("file\tout.bin\nsize\t1048576\n"));
    QCOMPARE(decrypt.err, QByteArray());
    const QMap<QString, QByteArray> files = filesIn(dir.path());
    QCOMPARE(files.keys(), QStringList({ "enc.bin", "in.bin", "out.bin" })); // no temporary file left
    QVERIFY(files.value("out.bin") == plain);

    // A newer file that this version may still read (its minimum version is 1) is readable.
    QByteArray newer = enciphered;
    newer[0] = 5;
    QVERIFY(writeFile(dir.filePath("newer.bin"), newer));
    QVERIFY(coreqt({ "inspect", "newer.bin" }, {}, dir.path()).out.endsWith("readable\ttrue\n"));
    newer[1] = 2;
    QVERIFY(writeFile(dir.filePath("newer.bin"), newer));
    const Result unreadable = coreqt({ "inspect", "newer.bin" }, {}, dir.path());
    QCOMPARE(unreadable.exitCode, 0);
    QVERIFY(unreadable.out.contains("version\t5\nminimumVersion\t2\n"));
    QVERIFY(unreadable.out.endsWith("readable\tfalse\n"));
}

void tst_coreqt::replacedFileKeepsItsPermissions()
{
    QTemporaryDir dir;
    QVERIFY(writeFile(dir.filePath("in.txt"), "some text"));
    QVERIFY(writeFile(dir.filePath("out.enc"), "old"));
    QVERIFY(QFile::setPermissions(
        dir.filePath("out.enc"), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const QFile::Permissions permissions = QFile::permissions(dir.filePath("out.enc"));
    QCOMPARE(coreqt({ "encrypt", "in.txt", "out.enc" }, {}, dir.path()).exitCode, 0);
    QCOMPARE(QFile::permissions(dir.filePath("out.enc")), permissions);
    QCOMPARE(filesIn(dir.path()).value("out.enc").size(), 8 + 9);
}

void tst_coreqt::progressOnlyOnATerminal()
{
    QTemporaryDir dir;
    QVERIFY(writeFile(dir.filePath("big.bin"), randomBytes(17 << 20)));

    const Result quiet = coreqt({ "encrypt", "big.bin", "big.enc" }, {}, dir.path());
    QCOMPARE(quiet.exitCode, 0);
    QCOMPARE(quiet.err, QByteArray());

    Terminal terminal;
    QVERIFY(!terminal.name().isEmpty());
    QCOMPARE(coreqt({ "decrypt", "big.enc", "big.out" }, {}, dir.path(), &terminal).exitCode, 0);
    QVERIFY2(terminal.output().contains("decrypt: 100% (17.0 of 17.0 MiB)"), terminal.output());

    Terminal small;
    QVERIFY(writeFile(dir.filePath("small.bin"), "small"));
    QCOMPARE(coreqt({ "encrypt", "small.bin", "small.enc" }, {}, dir.path(), &small).exitCode, 0);
    QCOMPARE(small.output(), QByteArray());
}

void tst_coreqt::bench()
{
    Terminal terminal;
    const Result result = coreqt(
        { "bench", "jobs", "--jobs", "300", "--threads", "2", "--work-us", "5" }, {}, QString(), &terminal);
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = QString::fromUtf8(result.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 6);
    QCOMPARE(lines.mid(0, 3), QStringList({ "jobs\t300", "threads\t2", "workUs\t5" }));
    for (const QString& line : lines.mid(3))
        QVERIFY2(line.section(QLatin1Char('\t'), 1).toDouble() > 0, qPrintable(line));
    QVERIFY(terminal.output().contains("bench komQtThreadPool: 100% (300 of 300 jobs)"));
    QVERIFY(terminal.output().contains("bench QThreadPool: 100% (300 of 300 jobs)"));

    const QJsonObject json
        = QJsonDocument::fromJson(coreqt({ "bench", "jobs", "--jobs", "50", "--format", "json" }).out)
              .object();
    QCOMPARE(json.value("jobs").toInt(), 50);
    QVERIFY(json.value("ratio").toDouble() > 0);
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
    QCOMPARE(vocabHelp.exitCode, 0);
    QVERIFY(vocabHelp.out.contains("--value <N>"));

    const Result tour = coreqt({}, { "LANG=de_DE.UTF-8" });
    QCOMPARE(tour.exitCode, 0);
    const QString text = QString::fromUtf8(tour.out);
    QCOMPARE(text.count(QRegularExpression(QStringLiteral(" job \\d+ started on Tour-Thread-[12]\n"))), 4);
    QCOMPARE(text.count(QRegularExpression(QStringLiteral(" job \\d+ finished\n"))), 4);
    QVERIFY(text.contains(QStringLiteral("its slot ran in SignalThreadPool-Thread-1\n")));
    QVERIFY(text.contains(QStringLiteral("it is back in the main thread\n")));
    QVERIFY(text.contains(QStringLiteral("en  event VM: Video Motion (VM)")));
    QVERIFY(text.contains(QStringLiteral("de  event VM: Video-Bewegungsmelder (VM)")));
    QVERIFY(text.contains(QStringLiteral("fr  event VM: Mouvement vidéo (VM)")));
    QCOMPARE(text.count(QStringLiteral("caused by:\t")), 2);
    QVERIFY(text.contains(QStringLiteral("back from 2023-11-14T22:13:20.123Z: 1700000000123000")));
    QVERIFY(text.contains(QStringLiteral("0042.dat: SchreibFehler, no space left on the device\n")));
    QVERIFY(text.contains(QStringLiteral("readable\ttrue\n")));
    QVERIFY(text.contains(QStringLiteral("read back: identical\n")));
    QVERIFY(coreqt({ "demo" }).out.contains("0042.dat: WriteError, no space left on the device\n"));
}

QTEST_GUILESS_MAIN(tst_coreqt)

#include "tst_coreqt.moc"
