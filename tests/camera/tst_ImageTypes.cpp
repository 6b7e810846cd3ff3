#include "camera/ImageTypes.h"

#include <QtTest>

#include <cmath>
#include <functional>
#include <limits>

namespace
{

// The four lookups of one enumerated setting, with the enumeration widened to int.
struct EnumSetting
{
    std::function<int(int)> index;
    std::function<QString(int)> nameOfIndex;
    std::function<QString(int)> nameOfValue;
    std::function<QString(const QString&)> nameOfKey;
};

template <typename E>
EnumSetting makeSetting(
    int (*index)(E), QString (*byIndex)(int), QString (*byValue)(E), QString (*byKey)(const QString&))
{
    return { [index](int v) { return index(E(v)); }, byIndex, [byValue](int v) { return byValue(E(v)); },
        byKey };
}

EnumSetting enumSetting(const QString& name)
{
    static const QHash<QString, EnumSetting> settings {
        { "camEye", makeSetting<ko::ECamEye>(camEyeIndex, camEyeName, camEyeName, camEyeName) },
        { "streamMode",
            makeSetting<ko::EStreamMode>(streamModeIndex, streamModeName, streamModeName, streamModeName) },
        { "nightImprovement",
            makeSetting<ko::ENightImproveMode>(
                nightImprovementIndex, nightImprovementName, nightImprovementName, nightImprovementName) },
        { "whiteBalance",
            makeSetting<ko::EWhiteBMode>(
                whiteBalanceIndex, whiteBalanceName, whiteBalanceName, whiteBalanceName) },
        { "noiseSuppression",
            makeSetting<ko::ENoiseSurp>(
                noiseSuppressionIndex, noiseSuppressionName, noiseSuppressionName, noiseSuppressionName) },
        { "darkNoiseSuppression",
            makeSetting<ko::EDarkNoiseSurp>(darkNoiseSuppressionIndex, darkNoiseSuppressionName,
                darkNoiseSuppressionName, darkNoiseSuppressionName) },
        { "contrastMode",
            makeSetting<ko::EContrastMode>(
                contrastModeIndex, contrastModeName, contrastModeName, contrastModeName) },
    };
    return settings.value(name);
}

// The key lookups over the tables without an enumeration.
QString nameOfKey(const QString& function, const QString& key)
{
    static const QHash<QString, QString (*)(const QString&)> functions {
        { "streamCodex", streamCodex },
        { "resolutionName", resolutionName },
        { "resolutionNameFiltered", resolutionNameFiltered },
        { "displayModeName", displayModeName },
        { "exposurePresetName", exposurePresetName },
        { "microSensitivityName", microSensitivityName },
        { "camEyeNameFiltered", camEyeNameFiltered },
    };
    return functions.value(function)(key);
}

} // namespace

class tst_ImageTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void enumRows_data();
    void enumRows();
    void enumMisses_data();
    void enumMisses();
    void camEyeApiName_data();
    void camEyeApiName();
    void keyLookups_data();
    void keyLookups();
    void nullExposureRow();
    void nameOfId_data();
    void nameOfId();
    void frameRate_data();
    void frameRate();
};

void tst_ImageTypes::enumRows_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    struct Row
    {
        const char* text;
        int value;
        const char* key;
    };
    const auto addRows = [](const char* setting, std::initializer_list<Row> rows) {
        int index = 0;
        for (const Row& row : rows) {
            QTest::addRow("%s %d", setting, index) << setting << index << row.text << row.value << row.key;
            ++index;
        }
    };
    addRows("camEye",
        { { "Right", 1, "right" }, { "Left", 2, "left" }, { "Both", 3, "both" }, { "Auto", 4, "auto" },
            { "Left in Right", 5, "LiR" }, { "Right in Left", 6, "RiL" } });
    addRows("streamMode",
        { { "Quality", 0x2, "-1" }, { "Speed", 0x4, "1" }, { "Normal", 0x8, "0" },
            { "Unknown", 0, "undef" } });
    addRows("nightImprovement",
        { { "Automatic", 0x2, "auto" }, { "Off", 0x4, "off" }, { "On", 0x8, "on" },
            { "Unknown", 0, "undef" } });
    addRows("whiteBalance",
        { { "Automatic", 0x2, "auto" }, { "Automatic (Narrow)", 0x100, "auto narrow" },
            { "Cloudy/Hazy", 0x4, "cloud" }, { "Indoor", 0x200, "indoor" }, { "Indoor 2", 0x400, "indoor 2" },
            { "Outdoor", 0x8, "outdoor" }, { "Outdoor 2", 0x1000, "outdoor 2" }, { "Sunny", 0x10, "sun" },
            { "Fluorescent Lamp", 0x20, "neon" }, { "Incandescent Lamp", 0x40, "bulb" },
            { "Incandescent Lamp 2", 0x800, "bulb 2" }, { "Gray World", 0x80, "gray" },
            { "Hold Current", 0x2000, "hold" }, { "Unknown", 0, "undef" } });
    addRows("noiseSuppression",
        { { "Off", 0x2, "0" }, { "5 lux", 0x4, "50" }, { "3 lux", 0x8, "30" }, { "1 lux", 0x10, "10" },
            { "0.5 lux", 0x100, "5" }, { "Off", 0x80, "off" }, { "Low", 0x20, "low" },
            { "High", 0x40, "high" }, { "Unknown", 0, "undef" } });
    addRows("darkNoiseSuppression",
        { { "Off", 0x2, "0" }, { "Low", 0x4, "low" }, { "Medium", 0x8, "medium" }, { "High", 0x10, "high" },
            { "Unknown", 0, "undef" } });
    addRows("contrastMode",
        { { "Automatic", 0x2, "auto" }, { "Simple", 0x4, "simple" }, { "Adaptive", 0x8, "adaptive" },
            { "Off", 0x10, "off" }, { "Unknown", 0, "undef" } });
}

// Every row is reachable by index, value and key.
void tst_ImageTypes::enumRows()
{
    QFETCH(QString, setting);
    QFETCH(int, index);
    QFETCH(QString, text);
    QFETCH(int, value);
    QFETCH(QString, key);

    const EnumSetting lookups = enumSetting(setting);
    QCOMPARE(lookups.nameOfIndex(index), text);
    QCOMPARE(lookups.index(value), index);
    QCOMPARE(lookups.nameOfValue(value), text);
    QCOMPARE(lookups.nameOfKey(key), text);
}

void tst_ImageTypes::enumMisses_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("rows");

    QTest::newRow("camEye 7, key case") << "camEye" << 7 << "Right" << 6;
    QTest::newRow("camEye 0 (no Unknown row)") << "camEye" << 0 << "unknown" << 6;
    QTest::newRow("stream mode bit combination") << "streamMode" << 0x6 << "2" << 4;
    QTest::newRow("night improvement, key case") << "nightImprovement" << 0x10 << "On" << 4;
    QTest::newRow("white balance, key case") << "whiteBalance" << 0x3 << "Auto" << 14;
    QTest::newRow("white balance, no trimming") << "whiteBalance" << 0x4000 << "auto narrow " << 14;
    QTest::newRow("noise, unknown lux") << "noiseSuppression" << 0x200 << "20" << 9;
    QTest::newRow("dark noise, bit combination") << "darkNoiseSuppression" << 0x6 << "Low" << 5;
    QTest::newRow("contrast, negative") << "contrastMode" << -1 << "" << 5;
}

void tst_ImageTypes::enumMisses()
{
    QFETCH(QString, setting);
    QFETCH(int, value);
    QFETCH(QString, key);
    QFETCH(int, rows);

    const EnumSetting lookups = enumSetting(setting);
    QCOMPARE(lookups.index(value), -1);
    QCOMPARE(lookups.nameOfValue(value), QStringLiteral("???"));
    QCOMPARE(lookups.nameOfKey(key), key);
    // Indexes outside the table give an empty string instead of reading past it.
    QVERIFY(!lookups.nameOfIndex(rows - 1).isEmpty());
    QCOMPARE(lookups.nameOfIndex(rows), QString());
    QCOMPARE(lookups.nameOfIndex(-1), QString());
}

void tst_ImageTypes::camEyeApiName_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    QTest::newRow("1") << 1 << "right";
    QTest::newRow("5") << 5 << "LiR";
    QTest::newRow("6") << 6 << "RiL";
    QTest::newRow("0") << 0 << QString();
    QTest::newRow("7") << 7 << QString();
}

void tst_ImageTypes::camEyeApiName()
{
    QFETCH(int, value);
    QFETCH(QString, key);

    const QString result = ::camEyeApiName(ko::ECamEye(value));
    QCOMPARE(result, key);
    QCOMPARE(result.isNull(), key.isNull());
}

void tst_ImageTypes::keyLookups_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");

    QTest::newRow("codec enable") << "streamCodex" << "enable" << "KoPEG";
    QTest::newRow("codec disable") << "streamCodex" << "disable" << "M-JPEG";
    QTest::newRow("codec unknown") << "streamCodex" << "Enable" << "Enable";
    QTest::newRow("first of a shared key") << "resolutionName" << "704x576" << "TV-PAL (704x576)";
    QTest::newRow("second of a shared key") << "resolutionName" << "4CIF" << "4CIF (704x576)";
    QTest::newRow("symbolic key") << "resolutionName" << "CIF" << "CIF (320x240)";
    QTest::newRow("resolution case") << "resolutionName" << "cif" << "cif";
    QTest::newRow("last resolution") << "resolutionName" << "customize" << "Custom Size";
    QTest::newRow("filtered custom size") << "resolutionNameFiltered" << "customize" << "";
    QTest::newRow("filtered 4CIF") << "resolutionNameFiltered" << "4CIF" << "4CIF (704x576)";
    QTest::newRow("filtered unknown") << "resolutionNameFiltered" << "Customize" << "Customize";
    QTest::newRow("display mode lenscorr_l11") << "displayModeName" << "lenscorr_l11" << "Normal";
    QTest::newRow("display mode simple") << "displayModeName" << "simple" << "Full Image";
    QTest::newRow("display mode last") << "displayModeName" << "area" << "Area";
    QTest::newRow("display mode case") << "displayModeName" << "PIP" << "PIP";
    QTest::newRow("exposure right_left") << "exposurePresetName" << "right_left" << "Right & Left";
    QTest::newRow("exposure extra") << "exposurePresetName" << "extra" << "Custom";
    QTest::newRow("exposure unknown") << "exposurePresetName" << "custom" << "custom";
    QTest::newRow("sensitivity 2") << "microSensitivityName" << "2" << "High sensitivity";
    QTest::newRow("sensitivity 3") << "microSensitivityName" << "3" << "3";
    QTest::newRow("eye filtered right") << "camEyeNameFiltered" << "right" << "Right";
    QTest::newRow("eye filtered left") << "camEyeNameFiltered" << "left" << "Left";
    QTest::newRow("eye filtered auto") << "camEyeNameFiltered" << "auto" << "Auto";
    QTest::newRow("eye filtered both") << "camEyeNameFiltered" << "both" << "";
    QTest::newRow("eye filtered case") << "camEyeNameFiltered" << "Right" << "";
    QTest::newRow("eye filtered unknown") << "camEyeNameFiltered" << "xyz" << "";
}

void tst_ImageTypes::keyLookups()
{
    QFETCH(QString, function);
    QFETCH(QString, key);
    QFETCH(QString, name);

    const QString result = nameOfKey(function, key);
    QCOMPARE(result, name);
    QVERIFY(!result.isNull()); // the filtered lookups give an empty, not a null, string
}

void tst_ImageTypes::nullExposureRow()
{
    // The closing null row of the exposure presets matches the empty key: an empty result.
    QVERIFY(exposurePresetName(QStringLiteral("")).isEmpty());
    QVERIFY(exposurePresetName(QString()).isEmpty());
}

void tst_ImageTypes::nameOfId_data()
{
    QTest::addColumn<bool>("microphoneTarget");
    QTest::addColumn<double>("id");
    QTest::addColumn<QString>("name");

    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("target 0") << true << 0.0 << "Off";
    QTest::newRow("target 2") << true << 2.0 << "On";
    QTest::newRow("target 2.9 truncated") << true << 2.9 << "On";
    QTest::newRow("target 3.5") << true << 3.5 << "ExtIO";
    QTest::newRow("target 4") << true << 4.0 << QString();
    QTest::newRow("target huge") << true << 1e300 << QString();
    QTest::newRow("target -0.5 truncated to 0") << true << -0.5 << "Off";
    QTest::newRow("target -1") << true << -1.0 << QString();
    QTest::newRow("target NaN") << true << nan << QString();
    QTest::newRow("sensitivity 0") << false << 0.0 << "Low sensitivity";
    QTest::newRow("sensitivity 2.99") << false << 2.99 << "High sensitivity";
    QTest::newRow("sensitivity 3") << false << 3.0 << QString();
    QTest::newRow("sensitivity 3.5") << false << 3.5 << QString();
}

void tst_ImageTypes::nameOfId()
{
    QFETCH(bool, microphoneTarget);
    QFETCH(double, id);
    QFETCH(QString, name);

    const QString result = microphoneTarget ? nameFromInOut(id) : microSensitivityNameFromID(id);
    QCOMPARE(result, name);
    QCOMPARE(result.isNull(), name.isNull());
}

void tst_ImageTypes::frameRate_data()
{
    QTest::addColumn<double>("fps");
    QTest::addColumn<QString>("text");

    QTest::newRow("unlimited") << 0.0 << "Maximum";
    QTest::newRow("negative zero") << -0.0 << "Maximum";
    QTest::newRow("25") << 2500.0 << "25";
    QTest::newRow("12.5") << 1250.0 << "12.5";
    QTest::newRow("3.33") << 333.0 << "3.33";
    QTest::newRow("0.01") << 1.0 << "0.01";
    QTest::newRow("six significant digits") << 123456789.0 << "1.23457e+06";
    QTest::newRow("negative") << -50.0 << "-0.5";
}

void tst_ImageTypes::frameRate()
{
    QFETCH(double, fps);
    QFETCH(QString, text);
    QCOMPARE(transformFPS(fps), text);
}

QTEST_GUILESS_MAIN(tst_ImageTypes)
#include "tst_ImageTypes.moc"
