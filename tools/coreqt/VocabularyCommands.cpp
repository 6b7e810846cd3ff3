#include "VocabularyCommands.h"

#include "Arguments.h"
#include "Output.h"

#include "camera/ImageTypes.h"

#include <QCommandLineParser>
#include <QStringList>

namespace tool
{

namespace
{

// The library looks keys and values up but does not list them: the rows below name what the
// cameras use, and every display text still comes from the library's lookups.
struct Entry
{
    qint32 value;
    const char* key;
};

struct Table
{
    const char* name;
    const Entry* entries;
    int count;
    /** The display text of a key, the key itself when unknown; null for tables looked up by value only. */
    QString (*textOfKey)(const QString& key);
    /** The display text of a value, with whether the value is known; null for tables without values. */
    QString (*textOfValue)(qint32 value, bool* known);
};

template <class Enum, int (*Index)(Enum), QString (*Name)(Enum)> QString enumText(qint32 value, bool* known)
{
    *known = Index(Enum(value)) >= 0;
    return Name(Enum(value));
}

// Identifier lookups name nothing (a null string) above their last row; negative identifiers
// are outside their contract and are not passed on.
template <QString (*Name)(double)> QString idText(qint32 value, bool* known)
{
    const QString text = value >= 0 ? Name(value) : QString();
    *known = !text.isNull();
    return text;
}

template <int N>
constexpr Table table(const char* name, const Entry (&entries)[N], QString (*textOfKey)(const QString&),
    QString (*textOfValue)(qint32, bool*))
{
    return Table { name, entries, N, textOfKey, textOfValue };
}

const Entry kCamEyes[]
    = { { ko::CamEyeRight, "right" }, { ko::CamEyeLeft, "left" }, { ko::CamEyeBoth, "both" },
          { ko::CamEyeAuto, "auto" }, { ko::CamEyeLeftInRight, "LiR" }, { ko::CamEyeRightInLeft, "RiL" } };
const Entry kStreamModes[] = { { ko::StreamModeQuality, "-1" }, { ko::StreamModeSpeed, "1" },
    { ko::StreamModeNormal, "0" }, { ko::StreamModeUnknown, "undef" } };
const Entry kNightImprovements[] = { { ko::NightImproveAuto, "auto" }, { ko::NightImproveOff, "off" },
    { ko::NightImproveOn, "on" }, { ko::NightImproveUnknown, "undef" } };
const Entry kWhiteBalances[]
    = { { ko::WhiteBAuto, "auto" }, { ko::WhiteBAutoNarrow, "auto narrow" }, { ko::WhiteBCloudy, "cloud" },
          { ko::WhiteBIndoor, "indoor" }, { ko::WhiteBIndoor2, "indoor 2" }, { ko::WhiteBOutdoor, "outdoor" },
          { ko::WhiteBOutdoor2, "outdoor 2" }, { ko::WhiteBSunny, "sun" }, { ko::WhiteBFluorescent, "neon" },
          { ko::WhiteBIncandescent, "bulb" }, { ko::WhiteBIncandescent2, "bulb 2" },
          { ko::WhiteBGrayWorld, "gray" }, { ko::WhiteBHold, "hold" }, { ko::WhiteBUnknown, "undef" } };
const Entry kNoiseSuppressions[]
    = { { ko::NoiseSurpOff, "0" }, { ko::NoiseSurp5Lux, "50" }, { ko::NoiseSurp3Lux, "30" },
          { ko::NoiseSurp1Lux, "10" }, { ko::NoiseSurpHalfLux, "5" }, { ko::NoiseSurpLevelOff, "off" },
          { ko::NoiseSurpLow, "low" }, { ko::NoiseSurpHigh, "high" }, { ko::NoiseSurpUnknown, "undef" } };
const Entry kDarkNoiseSuppressions[]
    = { { ko::DarkNoiseSurpOff, "0" }, { ko::DarkNoiseSurpLow, "low" }, { ko::DarkNoiseSurpMedium, "medium" },
          { ko::DarkNoiseSurpHigh, "high" }, { ko::DarkNoiseSurpUnknown, "undef" } };
const Entry kContrastModes[] = { { ko::ContrastModeAuto, "auto" }, { ko::ContrastModeSimple, "simple" },
    { ko::ContrastModeAdaptive, "adaptive" }, { ko::ContrastModeOff, "off" },
    { ko::ContrastModeUnknown, "undef" } };
const Entry kStreamCodecs[] = { { 0, "enable" }, { 0, "disable" } };
const Entry kMicrophoneTargets[] = { { 0, "0" }, { 1, "1" }, { 2, "2" }, { 3, "3" } };
const Entry kMicrophoneSensitivities[] = { { 0, "0" }, { 1, "1" }, { 2, "2" } };
const Entry kExposurePresets[] = { { 0, "all" }, { 0, "quarter" }, { 0, "center" }, { 0, "spot" },
    { 0, "bottom" }, { 0, "middle" }, { 0, "top" }, { 0, "right" }, { 0, "vertical" }, { 0, "left" },
    { 0, "right_left" }, { 0, "extra" } };
const Entry kDisplayModes[] = { { 0, "normal" }, { 0, "full" }, { 0, "simple" }, { 0, "piz" }, { 0, "pip" },
    { 0, "eip" }, { 0, "fisheye" }, { 0, "lenscorr_l11" }, { 0, "lenscorr_l22" }, { 0, "surround" },
    { 0, "panorama" }, { 0, "pano_focus" }, { 0, "pano_dbl" }, { 0, "unchanged" }, { 0, "area" } };
// "704x576" names "TV-PAL (704x576)"; "4CIF (704x576)" is reached through "4CIF" only.
const Entry kResolutions[] = { { 0, "160x120" }, { 0, "320x240" }, { 0, "CIF" }, { 0, "352x288" },
    { 0, "384x288" }, { 0, "640x480" }, { 0, "768x576" }, { 0, "800x600" }, { 0, "1024x768" },
    { 0, "1280x960" }, { 0, "2048x1536" }, { 0, "PTZ" }, { 0, "176x144" }, { 0, "QCIF" }, { 0, "704x576" },
    { 0, "2CIFEXP" }, { 0, "704x288" }, { 0, "2CIF" }, { 0, "4CIF" }, { 0, "1280x1024" }, { 0, "1280x720" },
    { 0, "240x180" }, { 0, "customize" } };

const Table kTables[] = {
    table("camEye", kCamEyes, camEyeName, enumText<ko::ECamEye, camEyeIndex, camEyeName>),
    table("streamMode", kStreamModes, streamModeName,
        enumText<ko::EStreamMode, streamModeIndex, streamModeName>),
    table("nightImprovement", kNightImprovements, nightImprovementName,
        enumText<ko::ENightImproveMode, nightImprovementIndex, nightImprovementName>),
    table("whiteBalance", kWhiteBalances, whiteBalanceName,
        enumText<ko::EWhiteBMode, whiteBalanceIndex, whiteBalanceName>),
    table("noiseSuppression", kNoiseSuppressions, noiseSuppressionName,
        enumText<ko::ENoiseSurp, noiseSuppressionIndex, noiseSuppressionName>),
    table("darkNoiseSuppression", kDarkNoiseSuppressions, darkNoiseSuppressionName,
        enumText<ko::EDarkNoiseSurp, darkNoiseSuppressionIndex, darkNoiseSuppressionName>),
    table("contrastMode", kContrastModes, contrastModeName,
        enumText<ko::EContrastMode, contrastModeIndex, contrastModeName>),
    table("streamCodec", kStreamCodecs, streamCodex, nullptr),
    table("microphoneTarget", kMicrophoneTargets, nullptr, idText<nameFromInOut>),
    table("microSensitivity", kMicrophoneSensitivities, microSensitivityName,
        idText<microSensitivityNameFromID>),
    table("exposurePreset", kExposurePresets, exposurePresetName, nullptr),
    table("displayMode", kDisplayModes, displayModeName, nullptr),
    table("resolution", kResolutions, resolutionName, nullptr),
};

const QString kKeyOption = QStringLiteral("key");
const QString kValueOption = QStringLiteral("value");

QStringList tableNames()
{
    QStringList names;
    for (const Table& table : kTables)
        names << QString::fromLatin1(table.name);
    return names;
}

const Table* findTable(const QString& name)
{
    for (const Table& table : kTables) {
        if (name.compare(QLatin1String(table.name), Qt::CaseInsensitive) == 0)
            return &table;
    }
    return nullptr;
}

const Entry* findEntry(const Table& table, const QString& key)
{
    for (int i = 0; i < table.count; ++i) {
        if (key == QLatin1String(table.entries[i].key))
            return &table.entries[i];
    }
    return nullptr;
}

const Entry* findEntry(const Table& table, qint32 value)
{
    for (int i = 0; i < table.count; ++i) {
        if (table.entries[i].value == value)
            return &table.entries[i];
    }
    return nullptr;
}

Record row(const Table& table, const QString& key, const QJsonValue& value, const QString& text)
{
    Record record;
    record.add(QStringLiteral("table"), QString::fromLatin1(table.name))
        .add(QStringLiteral("key"), key)
        .add(QStringLiteral("value"), value)
        .add(QStringLiteral("text"), text);
    return record;
}

QJsonValue valueOf(const Table& table, const Entry* entry)
{
    return table.textOfValue && entry ? QJsonValue(entry->value) : QJsonValue();
}

// The row of @p key, or false when neither the library nor the list above knows the key.
bool lookUpKey(const Table& table, const QString& key, Record* result)
{
    const Entry* entry = findEntry(table, key);
    bool known = entry != nullptr;
    QString text;
    if (table.textOfKey) {
        text = table.textOfKey(key);
        known = known || text != key;
    } else if (entry) {
        text = table.textOfValue(entry->value, &known);
    }
    if (known)
        *result = row(table, key, valueOf(table, entry), text);
    return known;
}

bool lookUpValue(const Table& table, qint32 value, Record* result)
{
    if (!table.textOfValue)
        return false;
    bool known = false;
    const QString text = table.textOfValue(value, &known);
    if (known) {
        const Entry* entry = findEntry(table, value);
        *result = row(table, entry ? QString::fromLatin1(entry->key) : QString(), value, text);
    }
    return known;
}

void listTable(const Table& table, Report& report)
{
    for (int i = 0; i < table.count; ++i) {
        Record record;
        lookUpKey(table, QString::fromLatin1(table.entries[i].key), &record);
        report.addRow(record);
    }
}

int runVocab(const Invocation& invocation)
{
    const bool byKey = invocation.isSet(kKeyOption);
    const bool byValue = invocation.isSet(kValueOption);
    if (byKey && byValue)
        badUsage(QStringLiteral("give either --key or --value, not both"));

    QVector<const Table*> tables;
    if (invocation.arguments.isEmpty()) {
        for (const Table& table : kTables)
            tables << &table;
    } else {
        const Table* table = findTable(invocation.arguments.first());
        if (!table)
            badInput(QStringLiteral("table"), invocation.arguments.first(),
                QStringLiteral("not a vocabulary table; tables: ") + tableNames().join(QStringLiteral(", ")));
        if (byValue && !table->textOfValue)
            badInput(QStringLiteral("value"), invocation.value(kValueOption),
                QStringLiteral("the table %1 is looked up by key only").arg(QLatin1String(table->name)));
        tables << table;
    }

    Report report(Report::Rows);
    const QString key = invocation.value(kKeyOption);
    const qint32 value
        = byValue ? qint32(parseUInt32(QStringLiteral("value"), invocation.value(kValueOption))) : 0;
    int found = 0;
    for (const Table* table : tables) {
        Record record;
        if (!byKey && !byValue) {
            listTable(*table, report);
        } else if (byKey ? lookUpKey(*table, key, &record) : lookUpValue(*table, value, &record)) {
            report.addRow(record);
            ++found;
        }
    }
    if ((byKey || byValue) && found == 0) {
        const QString where
            = tables.size() == 1 ? QLatin1String(tables.first()->name) : QStringLiteral("any table");
        badInput(byKey ? QStringLiteral("key") : QStringLiteral("value"),
            byKey ? key : invocation.value(kValueOption), QStringLiteral("no entry in %1").arg(where));
    }
    report.print(invocation.format);
    return 0;
}

QList<QCommandLineOption> vocabOptions()
{
    return { QCommandLineOption(kKeyOption,
                 QStringLiteral("Looks up the entry with this key (case-sensitive)."), QStringLiteral("KEY")),
        QCommandLineOption(kValueOption,
            QStringLiteral("Looks up the entry with this value (decimal or 0x-hexadecimal)."),
            QStringLiteral("N")) };
}

int runFps(const Invocation& invocation)
{
    const QString input = invocation.arguments.first();
    const double fps = parseNumber(QStringLiteral("frame rate"), input);
    Report report(Report::Properties);
    report.set(QStringLiteral("input"), fps);
    report.set(QStringLiteral("fps"), transformFPS(fps));
    report.print(invocation.format);
    return 0;
}

} // namespace

const Command kVocabCommand = { "vocab", "[TABLE]",
    "Lists the camera parameter tables (all, or TABLE), or looks up one entry with --key or --value: "
    "table, key, value, display text. Tables: camEye, streamMode, nightImprovement, whiteBalance, "
    "noiseSuppression, darkNoiseSuppression, contrastMode, streamCodec, microphoneTarget, microSensitivity, "
    "exposurePreset, displayMode, resolution.",
    0, 1, vocabOptions, runVocab };

const Command kFpsCommand = { "fps", "VALUE",
    "Renders a frame rate given in hundredths of a frame per second (0: Maximum).", 1, 1, nullptr, runFps };

} // namespace tool
