// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "VocabularyCommands.h"

#include "Arguments.h"
#include "Output.h"

#include "camera/ImageTypes.h"

#include <QCommandLineParser>
#include <QStringList>

#include <algorithm>
#include <iterator>

namespace tool
{

namespace
{

// One of the library's parameter tables, walked row by row; every key and value comes from its
// rows and every text from its lookups.
struct Table
{
    const char *name;
    int rows;
    const char *(*keyAt)(int row);
    qint32 (*valueAt)(int row);
    /** The library's key lookup: the first row with the key, or -1. */
    int (*rowOfKey)(const QString &key);
    /** The display text of a key, the key itself when unknown; null for tables looked up by
     * identifier only.
     */
    QString (*textOfKey)(const QString &key);
    /** The row of a value, or -1; null for tables looked up by key only. */
    int (*rowOfValue)(qint32 value);
    QString (*textOfValue)(qint32 value);
};

template <const auto &rows> const char *keyAt(int row)
{
    return rows[row].key;
}

template <const auto &rows> qint32 valueAt(int row)
{
    return rows[row].value;
}

// The microphone tables are named by identifier, which is the row index.
qint32 identifierAt(int row)
{
    return row;
}

template <const auto &rows> int rowOfKey(const QString &key)
{
    return ko::indexOfKey(rows, key);
}

template <class Enum, int (*Index)(Enum)> int rowOfEnum(qint32 value)
{
    return Index(Enum(value));
}

template <class Enum, QString (*Name)(Enum)> QString textOfEnum(qint32 value)
{
    return Name(Enum(value));
}

// Identifier lookups name nothing (a null string) above their last row; negative identifiers
// are outside their contract and are not passed on.
template <QString (*Name)(double)> QString textOfIdentifier(qint32 value)
{
    return value >= 0 ? Name(value) : QString();
}

template <QString (*Name)(double)> int rowOfIdentifier(qint32 value)
{
    return textOfIdentifier<Name>(value).isNull() ? -1 : value;
}

template <const auto &rows, class Enum, int (*Index)(Enum), QString (*Name)(Enum)>
constexpr Table enumTable(const char *name, QString (*textOfKey)(const QString &))
{
    return { name, int(std::size(rows)), keyAt<rows>, valueAt<rows>, rowOfKey<rows>, textOfKey,
        rowOfEnum<Enum, Index>, textOfEnum<Enum, Name> };
}

template <const auto &rows>
constexpr Table keyTable(const char *name, QString (*textOfKey)(const QString &))
{
    return { name, int(std::size(rows)), keyAt<rows>, nullptr, rowOfKey<rows>, textOfKey, nullptr,
        nullptr };
}

template <const auto &rows, QString (*Name)(double)>
constexpr Table identifierTable(const char *name, QString (*textOfKey)(const QString &))
{
    return { name, int(std::size(rows)), keyAt<rows>, identifierAt, rowOfKey<rows>, textOfKey,
        rowOfIdentifier<Name>, textOfIdentifier<Name> };
}

const Table kTables[] = {
    enumTable<sCamEyes, ko::ECamEye, camEyeIndex, camEyeName>("camEye", camEyeName),
    enumTable<sStreamModes, ko::EStreamMode, streamModeIndex, streamModeName>(
        "streamMode", streamModeName),
    enumTable<sNightImprovements, ko::ENightImproveMode, nightImprovementIndex,
        nightImprovementName>("nightImprovement", nightImprovementName),
    enumTable<sWhiteBalances, ko::EWhiteBMode, whiteBalanceIndex, whiteBalanceName>(
        "whiteBalance", whiteBalanceName),
    enumTable<sNoiseSuppressions, ko::ENoiseSurp, noiseSuppressionIndex, noiseSuppressionName>(
        "noiseSuppression", noiseSuppressionName),
    enumTable<sDarkNoiseSuppressions, ko::EDarkNoiseSurp, darkNoiseSuppressionIndex,
        darkNoiseSuppressionName>("darkNoiseSuppression", darkNoiseSuppressionName),
    enumTable<sContrastModes, ko::EContrastMode, contrastModeIndex, contrastModeName>(
        "contrastMode", contrastModeName),
    keyTable<sStreamCodex>("streamCodec", streamCodex),
    identifierTable<sMicrophoneTargets, nameFromInOut>("microphoneTarget", nullptr),
    identifierTable<sMicrophoneSensitivity, microSensitivityNameFromID>(
        "microSensitivity", microSensitivityName),
    keyTable<sExposurePresets>("exposurePreset", exposurePresetName),
    keyTable<sDisplayModes>("displayMode", displayModeName),
    keyTable<sResolutions>("resolution", resolutionName),
};

const QString kKeyOption = QStringLiteral("key");
const QString kValueOption = QStringLiteral("value");

QStringList tableNames()
{
    QStringList names;
    std::transform(std::begin(kTables), std::end(kTables), std::back_inserter(names),
        [](const Table &table) { return QString::fromLatin1(table.name); });
    return names;
}

const Table *findTable(const QString &name)
{
    const Table *table
        = std::find_if(std::begin(kTables), std::end(kTables), [&name](const Table &t) {
              return name.compare(QLatin1String(t.name), Qt::CaseInsensitive) == 0;
          });
    return table == std::end(kTables) ? nullptr : table;
}

// The result of row @p row: its key, its value (for tables looked up by value) and @p text.
Record record(const Table &table, int row, const QString &text)
{
    Record record;
    record.add(QStringLiteral("table"), QString::fromLatin1(table.name))
        .add(QStringLiteral("key"), QString::fromLatin1(table.keyAt(row)))
        .add(QStringLiteral("value"),
            table.rowOfValue ? QJsonValue(table.valueAt(row)) : QJsonValue())
        .add(QStringLiteral("text"), text);
    return record;
}

QString textOfRow(const Table &table, int row)
{
    return table.textOfKey ? table.textOfKey(QString::fromLatin1(table.keyAt(row)))
                           : table.textOfValue(table.valueAt(row));
}

// The row of @p key; false when the table has no such key. The closing null row of the
// exposure areas is not an entry.
bool lookUpKey(const Table &table, const QString &key, Record *result)
{
    const int row = table.rowOfKey(key);
    if (row < 0 || !table.keyAt(row))
        return false;
    *result = record(table, row, textOfRow(table, row));
    return true;
}

bool lookUpValue(const Table &table, qint32 value, Record *result)
{
    const int row = table.rowOfValue ? table.rowOfValue(value) : -1;
    if (row < 0)
        return false;
    *result = record(table, row, table.textOfValue(value));
    return true;
}

// Every row a key names: a row whose key an earlier row already has is never looked up, and the
// closing null row is no entry.
void listTable(const Table &table, Report &report)
{
    for (int row = 0; row < table.rows; ++row) {
        const char *key = table.keyAt(row);
        if (key && table.rowOfKey(QString::fromLatin1(key)) == row)
            report.addRow(record(table, row, textOfRow(table, row)));
    }
}

// The tables a vocab command searches: all, or the one named by its argument.
QVector<const Table *> selectTables(const Invocation &invocation, bool byValue)
{
    QVector<const Table *> tables;
    if (invocation.arguments.isEmpty()) {
        for (const Table &table : kTables)
            tables << &table;
        return tables;
    }
    const Table *table = findTable(invocation.arguments.first());
    if (!table)
        badInput(QStringLiteral("table"), invocation.arguments.first(),
            QStringLiteral("not a vocabulary table; tables: ")
                + tableNames().join(QStringLiteral(", ")));
    if (byValue && !table->rowOfValue)
        badInput(QStringLiteral("value"), invocation.value(kValueOption),
            QStringLiteral("the table %1 is looked up by key only")
                .arg(QLatin1String(table->name)));
    tables << table;
    return tables;
}

// One lookup by --key or --value over @p tables: a row from each table that knows it.
void lookUp(const Invocation &invocation, const QVector<const Table *> &tables, Report &report)
{
    const bool byKey = invocation.isSet(kKeyOption);
    const QString input = invocation.value(byKey ? kKeyOption : kValueOption);
    const qint32 value = byKey ? 0 : qint32(parseUInt32(QStringLiteral("value"), input));
    int found = 0;
    for (const Table *table : tables) {
        Record result;
        if (byKey ? lookUpKey(*table, input, &result) : lookUpValue(*table, value, &result)) {
            report.addRow(result);
            ++found;
        }
    }
    if (found == 0) {
        const QString where = tables.size() == 1 ? QLatin1String(tables.first()->name)
                                                 : QStringLiteral("any table");
        badInput(byKey ? QStringLiteral("key") : QStringLiteral("value"), input,
            QStringLiteral("no entry in %1").arg(where));
    }
}

int runVocab(const Invocation &invocation)
{
    const bool byKey = invocation.isSet(kKeyOption);
    const bool byValue = invocation.isSet(kValueOption);
    if (byKey && byValue)
        badUsage(QStringLiteral("give either --key or --value, not both"));
    const QVector<const Table *> tables = selectTables(invocation, byValue);
    Report report(Report::Rows);
    if (byKey || byValue) {
        lookUp(invocation, tables, report);
    } else {
        for (const Table *table : tables)
            listTable(*table, report);
    }
    report.print(invocation.format);
    return 0;
}

QList<QCommandLineOption> vocabOptions()
{
    return { QCommandLineOption(kKeyOption,
                 QStringLiteral("Looks up the entry with this key (case-sensitive)."),
                 QStringLiteral("KEY")),
        QCommandLineOption(kValueOption,
            QStringLiteral("Looks up the entry with this value (decimal or 0x-hexadecimal)."),
            QStringLiteral("N")) };
}

int runFps(const Invocation &invocation)
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
    "Lists the camera parameter tables (all, or TABLE), or looks up one entry with --key or "
    "--value: table, key, value, display text. Tables: camEye, streamMode, nightImprovement, "
    "whiteBalance, noiseSuppression, darkNoiseSuppression, contrastMode, streamCodec, "
    "microphoneTarget, microSensitivity, exposurePreset, displayMode, resolution.",
    0, 1, vocabOptions, runVocab, "coreqt vocab whiteBalance" };

const Command kFpsCommand = { "fps", "VALUE",
    "Renders a frame rate given in hundredths of a frame per second (0: Maximum).", 1, 1, nullptr,
    runFps, "coreqt fps 1250" };

} // namespace tool
