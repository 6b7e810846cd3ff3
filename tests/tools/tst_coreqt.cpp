// Runs the installed coreqt program and checks its standard output, standard error, exit
// status and the files it writes.
#include <QtTest>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

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

Result coreqt(const QStringList& arguments, const QStringList& settings = QStringList())
{
    QProcess process;
    process.setProcessEnvironment(environment(settings));
    process.start(QStringLiteral(COREQT_INSTALLED_TOOL), arguments);
    Result result;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
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

    QTest::newRow("unknown command") << QStringList { "frobnicate" }
                                     << QStringLiteral(
                                            "coreqt: 'frobnicate' is not a command; see coreqt --help");
    QTest::newRow("unknown option") << QStringList { "events", "--bogus", "1" }
                                    << QStringLiteral("coreqt: events: Unknown option 'bogus'.");
    QTest::newRow("no mask") << QStringList { "events" }
                             << QStringLiteral(
                                    "coreqt: events: expected events MASK [MASK MASK], got 0 argument(s); "
                                    "see coreqt events --help");
    QTest::newRow("four masks") << QStringList { "events", "1", "2", "3", "4" }
                                << QStringLiteral(
                                       "coreqt: events: expected events MASK [MASK MASK], got 4 argument(s); "
                                       "see coreqt events --help");
    const QString notANumber
        = QStringLiteral("not a number; write it in decimal or as 0x-prefixed hexadecimal");
    QTest::newRow("malformed mask") << QStringList { "events", "0xZZ" }
                                    << QStringLiteral("coreqt: events: mask '0xZZ', ") + notANumber;
    QTest::newRow("negative mask") << QStringList { "events", "8", "--", "-1" }
                                   << QStringLiteral("coreqt: events: mask '-1', ") + notANumber;
    QTest::newRow("mask above 32 bits")
        << QStringList { "events", "4294967296" }
        << QStringLiteral("coreqt: events: mask '4294967296', larger than 32 bits (0xFFFFFFFF)");
    QTest::newRow("unknown event key")
        << QStringList { "event", "vm" }
        << QStringLiteral(
               "coreqt: event: event key 'vm', not a trigger event key nor a mailbox key (AMB_..., "
               "AME_...); keys are case-sensitive");
    QTest::newRow("unknown table") << QStringList { "vocab", "colour" }
                                   << QStringLiteral(
                                          "coreqt: vocab: table 'colour', not a vocabulary table; tables: "
                                          "camEye, streamMode, nightImprovement, whiteBalance, "
                                          "noiseSuppression, darkNoiseSuppression, contrastMode, "
                                          "streamCodec, microphoneTarget, microSensitivity, "
                                          "exposurePreset, displayMode, resolution");
    QTest::newRow("unknown key") << QStringList { "vocab", "whiteBalance", "--key", "Auto" }
                                 << QStringLiteral("coreqt: vocab: key 'Auto', no entry in whiteBalance");
    QTest::newRow("unknown value") << QStringList { "vocab", "--value", "0x4000" }
                                   << QStringLiteral("coreqt: vocab: value '0x4000', no entry in any table");
    QTest::newRow("value of a key table") << QStringList { "vocab", "resolution", "--value",
        "1" } << QStringLiteral("coreqt: vocab: value '1', the table resolution is looked up by key only");
    QTest::newRow("key and value") << QStringList { "vocab", "--key", "off", "--value", "2" }
                                   << QStringLiteral("coreqt: vocab: give either --key or --value, not both");
    QTest::newRow("malformed frame rate") << QStringList { "fps",
        "12,5" } << QStringLiteral("coreqt: fps: frame rate '12,5', not a finite number");
    QTest::newRow("malformed frame time")
        << QStringList { "time", "12:00" }
        << QStringLiteral("coreqt: time: frame time '12:00', not a frame time (decimal microseconds since "
                          "1970-01-01T00:00:00Z)");
    QTest::newRow("frame time beyond 2106")
        << QStringList { "time", "4294967296000000" }
        << QStringLiteral("coreqt: time: frame time '4294967296000000', after 2106-02-07T06:28:15Z, the last "
                          "instant frame times convert (4294967295999999)");
    QTest::newRow("malformed time") << QStringList { "time", "--from", "yesterday" }
                                    << QStringLiteral(
                                           "coreqt: time: time 'yesterday', not an ISO 8601 date and time "
                                           "such as 2024-05-17T08:30:00.250Z");
    QTest::newRow("time before 1970")
        << QStringList { "time", "--from", "1969-12-31T23:59:59Z" }
        << QStringLiteral(
               "coreqt: time: time '1969-12-31T23:59:59Z', before 1970-01-01T00:00:00Z, where frame "
               "times begin");
    QTest::newRow("no time") << QStringList { "time" }
                             << QStringLiteral("coreqt: time: missing FRAMETIME or --from ISO-8601");
    QTest::newRow("unknown language") << QStringList { "--lang", "it", "event", "AE" }
                                      << QStringLiteral("coreqt: event: --lang 'it': expected de, fr or en");
    QTest::newRow("unknown format") << QStringList { "events", "1", "--format",
        "xml" } << QStringLiteral("coreqt: events: --format 'xml': expected text or json");
}

void tst_coreqt::errors()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    const Result result = coreqt(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(QString::fromUtf8(result.err), message + QLatin1Char('\n'));
}

void tst_coreqt::helpAndTour()
{
    const Result help = coreqt({ "--help" });
    QCOMPARE(help.exitCode, 0);
    for (const char* command : { "demo", "events", "event", "vocab", "fps", "time" })
        QVERIFY2(help.out.contains(QByteArray("\n  ") + command + ' '), command);
    const Result vocabHelp = coreqt({ "vocab", "--help" });
    QCOMPARE(vocabHelp.exitCode, 0);
    QVERIFY(vocabHelp.out.contains("--value <N>"));

    const Result tour = coreqt({}, { "LANG=de_DE.UTF-8" });
    QCOMPARE(tour.exitCode, 0);
    const QString text = QString::fromUtf8(tour.out);
    QVERIFY(text.contains(QStringLiteral("en  event VM: Video Motion (VM)")));
    QVERIFY(text.contains(QStringLiteral("de  event VM: Video-Bewegungsmelder (VM)")));
    QVERIFY(text.contains(QStringLiteral("fr  event VM: Mouvement vidéo (VM)")));
    QCOMPARE(text.count(QStringLiteral("caused by:\t")), 2);
    QVERIFY(text.contains(QStringLiteral("back from 2023-11-14T22:13:20.123Z: 1700000000123000")));
    QVERIFY(text.contains(QStringLiteral("0042.dat: SchreibFehler, no space left on the device\n")));
    QVERIFY(coreqt({ "demo" }).out.contains("0042.dat: WriteError, no space left on the device\n"));
}

QTEST_GUILESS_MAIN(tst_coreqt)

#include "tst_coreqt.moc"
