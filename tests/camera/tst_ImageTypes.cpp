// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "camera/ImageTypes.h"

#include <QtTest>

#include <functional>
#include <limits>

namespace
{

// The name and the four lookups of one enumerated setting, with the enumeration widened to int.
struct EnumSetting
{
    const char *name;
    std::function<int(int)> index;
    std::function<QString(int)> nameOfIndex;
    std::function<QString(int)> nameOfValue;
    std::function<QString(const QString &)> nameOfKey;
};

template <typename E>
EnumSetting makeSetting(const char *name, int (*index)(E), QString (*byIndex)(int),
    QString (*byValue)(E), QString (*byKey)(const QString &))
{
    return { name, [index](int v) { return index(E(v)); }, byIndex,
        [byValue](int v) { return byValue(E(v)); }, byKey };
}

// Each setting x has xIndex and three overloads of xName.
#define SETTING(x, E) makeSetting<E>(#x, x##Index, x##Name, x##Name, x##Name)
const EnumSetting kCamEye = SETTING(camEye, ko::ECamEye);
const EnumSetting kStreamMode = SETTING(streamMode, ko::EStreamMode);
const EnumSetting kNightImprovement = SETTING(nightImprovement, ko::ENightImproveMode);
const EnumSetting kWhiteBalance = SETTING(whiteBalance, ko::EWhiteBMode);
const EnumSetting kNoiseSuppression = SETTING(noiseSuppression, ko::ENoiseSurp);
const EnumSetting kDarkNoiseSuppression = SETTING(darkNoiseSuppression, ko::EDarkNoiseSurp);
const EnumSetting kContrastMode = SETTING(contrastMode, ko::EContrastMode);

QString camEyeApiNameOf(double value)
{
    return camEyeApiName(ko::ECamEye(int(value)));
}

} // namespace

using KeyLookup = QString (*)(const QString &);
using NumberLookup = QString (*)(double);
Q_DECLARE_METATYPE(EnumSetting)
Q_DECLARE_METATYPE(KeyLookup)
Q_DECLARE_METATYPE(NumberLookup)

class tst_ImageTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enumRows_data();
    void enumRows();
    void enumMisses_data();
    void enumMisses();
    void keyLookups_data();
    void keyLookups();
    void numberLookups_data();
    void numberLookups();
};

// The edge rows of each table: first and last, the duplicate "Off" texts, values out of bit order,
// the "Unknown" rows (value 0).
void tst_ImageTypes::enumRows_data()
{
    QTest::addColumn<EnumSetting>("setting");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    const auto row = [](const EnumSetting &setting, int index, const char *text, int value,
                         const char *key) {
        QTest::addRow("%s %d", setting.name, index) << setting << index << text << value << key;
    };
    row(kCamEye, 0, "Right", 1, "right");
    row(kCamEye, 5, "Right in Left", 6, "RiL");
    row(kStreamMode, 0, "Quality", 0x2, "-1");
    row(kStreamMode, 3, "Unknown", 0, "undef");
    row(kNightImprovement, 2, "On", 0x8, "on");
    row(kWhiteBalance, 1, "Automatic (Narrow)", 0x100, "auto narrow");
    row(kWhiteBalance, 12, "Hold Current", 0x2000, "hold");
    row(kWhiteBalance, 13, "Unknown", 0, "undef");
    row(kNoiseSuppression, 0, "Off", 0x2, "0");
    row(kNoiseSuppression, 4, "0.5 lux", 0x100, "5");
    row(kNoiseSuppression, 5, "Off", 0x80, "off");
    row(kDarkNoiseSuppression, 4, "Unknown", 0, "undef");
    row(kContrastMode, 3, "Off", 0x10, "off");
}

// Each row is reachable by index, value and key.
void tst_ImageTypes::enumRows()
{
    QFETCH(EnumSetting, setting);
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(int, value);
    QFETCH(QString, key);

    QCOMPARE(setting.nameOfIndex(index), text);
    QCOMPARE(setting.index(value), index);
    QCOMPARE(setting.nameOfValue(value), text);
    QCOMPARE(setting.nameOfKey(key), text);
}

void tst_ImageTypes::enumMisses_data()
{
    QTest::addColumn<EnumSetting>("setting");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("rows");

    const auto row = [](const char *name, const EnumSetting &setting, int value, const char *key,
                         int rows) { QTest::newRow(name) << setting << value << key << rows; };
    row("camEye 7, key case", kCamEye, 7, "Right", 6);
    row("camEye 0 (no Unknown row)", kCamEye, 0, "unknown", 6);
    row("stream mode bit combination", kStreamMode, 0x6, "2", 4);
    row("night improvement, key case", kNightImprovement, 0x10, "On", 4);
    row("white balance, key case", kWhiteBalance, 0x3, "Auto", 14);
    row("white balance, no trimming", kWhiteBalance, 0x4000, "auto narrow ", 14);
    row("noise, unknown lux", kNoiseSuppression, 0x200, "20", 9);
    row("dark noise, bit combination", kDarkNoiseSuppression, 0x6, "Low", 5);
    row("contrast, negative", kContrastMode, -1, "", 5);
}

void tst_ImageTypes::enumMisses()
{
    QFETCH(EnumSetting, setting);
    QFETCH(int, value);
    QFETCH(QString, key);
    QFETCH(int, rows);

    QCOMPARE(setting.index(value), -1);
    QCOMPARE(setting.nameOfValue(value), QStringLiteral("???"));
    QCOMPARE(setting.nameOfKey(key), key);
    // Indexes outside the table give an empty string instead of reading past it.
    QVERIFY(!setting.nameOfIndex(rows - 1).isEmpty());
    QCOMPARE(setting.nameOfIndex(rows), QString());
    QCOMPARE(setting.nameOfIndex(-1), QString());
}

void tst_ImageTypes::keyLookups_data()
{
    QTest::addColumn<KeyLookup>("lookup");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *name, KeyLookup lookup, const char *key,
                         const QString &result) { QTest::newRow(name) << lookup << key << result; };
    row("codec enable", streamCodex, "enable", "KoPEG");
    row("first of a shared key", resolutionName, "704x576", "TV-PAL (704x576)");
    row("second of a shared key", resolutionName, "4CIF", "4CIF (704x576)");
    row("symbolic key", resolutionName, "CIF", "CIF (320x240)");
    row("resolution, key case", resolutionName, "cif", "cif");
    row("last resolution", resolutionName, "customize", "Custom Size");
    row("filtered custom size", resolutionNameFiltered, "customize", "");
    row("filtered 4CIF", resolutionNameFiltered, "4CIF", "4CIF (704x576)");
    row("display mode lenscorr_l11", displayModeName, "lenscorr_l11", "Normal");
    row("exposure right_left", exposurePresetName, "right_left", "Right & Left");
    row("exposure, the closing null row", exposurePresetName, "", QString());
    row("sensitivity 2", microSensitivityName, "2", "High sensitivity");
    row("sensitivity 3", microSensitivityName, "3", "3");
    row("eye filtered right", camEyeNameFiltered, "right", "Right");
    row("eye filtered both", camEyeNameFiltered, "both", "");
    row("eye filtered, key case", camEyeNameFiltered, "Right", "");
}

void tst_ImageTypes::keyLookups()
{
    QFETCH(KeyLookup, lookup);
    QFETCH(QString, key);
    QFETCH(QString, name);

    const QString result = lookup(key);
    QCOMPARE(result, name);
    QCOMPARE(
        result.isNull(), name.isNull()); // the filtered lookups give an empty, not a null, string
}

// The lookups by number: ids are truncated towards zero, misses give a null string.
void tst_ImageTypes::numberLookups_data()
{
    QTest::addColumn<NumberLookup>("lookup");
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("name");

    const auto row
        = [](const char *name, NumberLookup lookup, double number, const QString &result) {
              QTest::newRow(name) << lookup << number << result;
          };
    row("api name 1", camEyeApiNameOf, 1, "right");
    row("api name 6", camEyeApiNameOf, 6, "RiL");
    row("api name 0", camEyeApiNameOf, 0, QString());
    row("target 2.9 truncated", nameFromInOut, 2.9, "On");
    row("target 3.5", nameFromInOut, 3.5, "ExtIO");
    row("target 4", nameFromInOut, 4, QString());
    row("target -0.5 truncated to 0", nameFromInOut, -0.5, "Off");
    row("target -1", nameFromInOut, -1, QString());
    row("target NaN", nameFromInOut, std::numeric_limits<double>::quiet_NaN(), QString());
    row("sensitivity 2.99", microSensitivityNameFromID, 2.99, "High sensitivity");
    row("sensitivity 3", microSensitivityNameFromID, 3, QString());
    row("fps unlimited", transformFPS, 0.0, "Maximum");
    row("fps negative zero", transformFPS, -0.0, "Maximum");
    row("fps 12.5", transformFPS, 1250, "12.5");
    row("fps, six significant digits", transformFPS, 123456789, "1.23457e+06");
    row("fps negative", transformFPS, -50, "-0.5");
}

void tst_ImageTypes::numberLookups()
{
    QFETCH(NumberLookup, lookup);
    QFETCH(double, number);
    QFETCH(QString, name);

    const QString result = lookup(number);
    QCOMPARE(result, name);
    QCOMPARE(result.isNull(), name.isNull());
}

QTEST_GUILESS_MAIN(tst_ImageTypes)
#include "tst_ImageTypes.moc"
