// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "camera/EventTypes.h"
#include "camera/ImageTypes.h"

#include <QtTest>

#include <QCommandLineParser>
#include <QResource>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtEndian>

#include <functional>
#include <memory>

using Rendering = std::function<QString()>;
Q_DECLARE_METATYPE(Rendering)

namespace
{

const char *const kLibraryFiles[]
    = { ":/translations/CoreQt_de_DE.qm", ":/translations/CoreQt_fr_FR.qm" };
const char *const kQtFiles[] = { ":/translations/qt_de.qm", ":/translations/qt_fr.qm" };

// The names of QFile::FileError and QTextStream::Status values that the exceptions translate.
const QStringList kFileErrorNames { "NoError", "ReadError", "WriteError", "FatalError",
    "ResourceError", "OpenError", "AbortError", "TimeOutError", "UnspecifiedError", "RemoveError",
    "RenameError", "PositionError", "ResizeError", "PermissionsError", "CopyError" };
const QStringList kStreamStatusNames { "Ok", "ReadPastEnd", "ReadCorruptData", "UnknownError" };

template <typename Row, std::size_t N> void addTexts(QSet<QString> &texts, const Row (&rows)[N])
{
    for (const Row &row : rows) {
        if (row.text) // the closing row of the exposure areas has none
            texts << QString::fromLatin1(row.text);
    }
}

// Every source text the camera vocabulary translates: the texts of its tables, the two mailbox
// names and the name of an unknown value.
QSet<QString> vocabularyTexts()
{
    QSet<QString> texts { "Mailbox Message", "End of Message", "???" };
    addTexts(texts, ko::sTriggerEvents);
    addTexts(texts, sCamEyes);
    addTexts(texts, sStreamModes);
    addTexts(texts, sNightImprovements);
    addTexts(texts, sWhiteBalances);
    addTexts(texts, sNoiseSuppressions);
    addTexts(texts, sDarkNoiseSuppressions);
    addTexts(texts, sContrastModes);
    addTexts(texts, sStreamCodex);
    addTexts(texts, sMicrophoneTargets);
    addTexts(texts, sMicrophoneSensitivity);
    addTexts(texts, sExposurePresets);
    addTexts(texts, sDisplayModes);
    addTexts(texts, sResolutions);
    return texts;
}

// context -> (source -> translation), read from one .ts source file.
using Catalogue = QMap<QString, QMap<QString, QString>>;

Catalogue readTs(const QString &path)
{
    Catalogue catalogue;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return catalogue;
    QXmlStreamReader xml(&file);
    QString context;
    QString source;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("name")) {
            context = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            source = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            const bool unfinished = xml.attributes().hasAttribute(QLatin1String("type"));
            catalogue[context][source] = unfinished ? QString() : xml.readElementText();
        }
    }
    return catalogue;
}

template <typename Container> QStringList sorted(const Container &texts)
{
    QStringList list(texts.begin(), texts.end());
    list.sort();
    return list;
}

// The tags of a .qm file's blocks, in file order, after its 16-byte magic number.
QByteArray qmBlockTags(const QByteArray &qm)
{
    QByteArray tags;
    for (int i = 16; i + 5 <= qm.size();
         i += 5 + int(qFromBigEndian<quint32>(qm.constData() + i + 1)))
        tags += qm.at(i);
    return tags;
}

std::unique_ptr<QTranslator> installTranslator(const QString &file)
{
    std::unique_ptr<QTranslator> translator(new QTranslator);
    if (!translator->load(file) || !QCoreApplication::installTranslator(translator.get()))
        return nullptr;
    return translator;
}

} // namespace

class tst_CameraTranslations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resources();
    void catalogues_data();
    void catalogues();
    void renderings_data();
    void renderings();
};

void tst_CameraTranslations::resources()
{
    for (int i = 0; i < 2; ++i) {
        const QResource library(QString::fromLatin1(kLibraryFiles[i])),
            qt(QString::fromLatin1(kQtFiles[i]));
        QVERIFY(library.isValid());
        QVERIFY(library.size() > 0);
        QVERIFY(qt.isValid());
        QCOMPARE(library.compressionAlgorithm(), QResource::NoCompression);
        QCOMPARE(qt.compressionAlgorithm(), QResource::ZlibCompression);
        // A hash table, the messages and the table of contexts.
        QFile file(library.fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray tags = qmBlockTags(file.readAll());
        for (char tag : { '\x42', '\x69', '\x2f' })
            QVERIFY2(tags.contains(tag), tags.toHex().constData());
    }
}

void tst_CameraTranslations::catalogues_data()
{
    QTest::addColumn<QString>("ts");
    QTest::addColumn<QString>("qm");
    QTest::addColumn<QString>("qtQm");
    QTest::addColumn<QString>("qtText");

    QTest::newRow("de_DE") << COREQT_TS_DIR "/CoreQt_de_DE.ts" << kLibraryFiles[0] << kQtFiles[0]
                           << "Zeigt Versionsinformation an.";
    QTest::newRow("fr_FR") << COREQT_TS_DIR "/CoreQt_fr_FR.ts" << kLibraryFiles[1] << kQtFiles[1]
                           << "Afficher les informations de version.";
}

// The catalogue holds exactly the texts the library asks for, and the embedded file translates
// each of them as its source says. Runs without a translator: the functions give English.
// The embedded Qt catalogue alone translates Qt's own texts from QtCore: it is self-contained.
void tst_CameraTranslations::catalogues()
{
    QFETCH(QString, ts);
    QFETCH(QString, qm);
    QFETCH(QString, qtQm);
    QFETCH(QString, qtText);

    const Catalogue catalogue = readTs(ts);
    QCOMPARE(catalogue.keys(), QStringList({ "QFile", "QTextStream", "Statics" }));
    QFile file(ts);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll().count("<message>"), 151); // none repeated: the sets below then match

    const QSet<QString> statics = vocabularyTexts();
    QCOMPARE(statics.size(), 132);
    QCOMPARE(QStringList(catalogue.value("Statics").keys()), sorted(statics));
    QCOMPARE(QStringList(catalogue.value("QFile").keys()), sorted(kFileErrorNames));
    QCOMPARE(QStringList(catalogue.value("QTextStream").keys()), sorted(kStreamStatusNames));

    QTranslator translator;
    QVERIFY(translator.load(qm));
    for (auto context = catalogue.cbegin(); context != catalogue.cend(); ++context) {
        const QByteArray contextName = context.key().toUtf8();
        for (auto message = context->cbegin(); message != context->cend(); ++message) {
            QVERIFY2(!message.value().isEmpty(), qPrintable(message.key()));
            QCOMPARE(translator.translate(contextName, message.key().toUtf8()), message.value());
        }
    }

    const auto qtTranslator = installTranslator(qtQm);
    QVERIFY(qtTranslator);
    QCommandLineParser parser;
    parser.addVersionOption();
    QVERIFY2(parser.helpText().contains(qtText), qPrintable(parser.helpText()));
}

// Display texts are translated when they are asked for, keys and API names never; without a
// translator the English text comes back.
void tst_CameraTranslations::renderings_data()
{
    QTest::addColumn<Rendering>("render");
    QTest::addColumn<QString>("german");
    QTest::addColumn<QString>("french");

    const auto row = [](const char *name, const QString &german, const QString &french,
                         Rendering render) { QTest::newRow(name) << render << german << french; };
    const QString nbsp(QChar(0x00A0));
    row("All Events", "Alle Ereignisse", "Tous les événements",
        [] { return ko::triggerEventName("AE"); });
    row("by index", "Alle Ereignisse", "Tous les événements",
        [] { return ko::triggerEventName(0); });
    row("VM", "Video-Bewegungsmelder (VM)", "Mouvement vidéo (VM)",
        [] { return ko::triggerEventName("VM"); });
    row("SI drops its number", "Signaleingang (SI)", "Signal d'entrée (SI)",
        [] { return ko::triggerEventName("SI"); });
    row("SI5 keeps SI4", "Signaleingang 5 (SI4)", "Signal d'entrée 5 (SI4)",
        [] { return ko::triggerEventName("SI5"); });
    row("mailbox", "Mailbox-Nachricht (AMB_17)", "Message de boîte de réception (AMB_17)",
        [] { return ko::triggerEventName("AMB_17"); });
    row("0.5 lux", "0,5 lux", "0,5" + nbsp + "lux", [] { return noiseSuppressionName("5"); });
    row("5 lux", "5 lux", "5" + nbsp + "lux", [] { return noiseSuppressionName("50"); });
    row("Unknown", "Unbekannt", "Inconnu", [] { return streamModeName("undef"); });
    row("Unknown by value", "Unbekannt", "Inconnu",
        [] { return whiteBalanceName(ko::WhiteBUnknown); });
    row("KoPEG", "KoPEG", "KoPEG", [] { return streamCodex("enable"); });
    row("keys", "VM", "VM", [] { return ko::triggerEventsName(0x8, 0xFFFFFFFF, 0xFFFFFFFF); });
    row("API name", "LiR", "LiR", [] { return camEyeApiName(ko::CamEyeLeftInRight); });
    row("unlimited rate", "Maximum", "Maximum", [] { return transformFPS(0.0); });
    row("unknown key", "unknown", "unknown", [] { return ko::triggerEventName("unknown"); });
}

void tst_CameraTranslations::renderings()
{
    QFETCH(Rendering, render);
    QFETCH(QString, german);
    QFETCH(QString, french);

    const QString english = render();
    const QString expected[] = { german, french };
    for (int i = 0; i < 2; ++i) {
        const auto translator = installTranslator(QString::fromLatin1(kLibraryFiles[i]));
        QVERIFY(translator);
        QCOMPARE(render(), expected[i]);
    }
    QCOMPARE(render(), english);
}

QTEST_GUILESS_MAIN(tst_CameraTranslations)
#include "tst_CameraTranslations.moc"
