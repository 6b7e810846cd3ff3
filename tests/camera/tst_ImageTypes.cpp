#include "camera/ImageTypes.h"

#include <QtTest>

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

// Each setting X has XIndex and three overloads of XName.
#define SETTING(x, E) std::make_pair(QStringLiteral(#x), makeSetting<E>(x##Index, x##Name, x##Name, x##Name))

EnumSetting enumSetting(const QString& name)
{
    static const QHash<QString, EnumSetting> settings { SETTING(camEye, ko::ECamEye),
        SETTING(streamMode, ko::EStreamMode), SETTING(nightImprovement, ko::ENightImproveMode),
        SETTING(whiteBalance, ko::EWhiteBMode), SETTING(noiseSuppression, ko::ENoiseSurp),
        SETTING(darkNoiseSuppression, ko::EDarkNoiseSurp), SETTING(contrastMode, ko::EContrastMode) };
    return settings.value(name);
}

// The key lookups over the tables without an enumeration.
#define LOOKUP(f) std::make_pair(QStringLiteral(#f), &f)

QString nameOfKey(const QString& function, const QString& key)
{
    static const QHash<QString, QString (*)(const QString&)> functions { LOOKUP(streamCodex),
        LOOKUP(resolutionName), LOOKUP(resolutionNameFiltered), LOOKUP(displayModeName),
        LOOKUP(exposurePresetName), LOOKUP(microSensitivityName), LOOKUP(camEyeNameFiltered) };
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
    void keyLookups_data();
    void keyLookups();
    void numberLookups_data();
    void numberLookups();
};

// The edge rows of each table: first and last, the duplicate "Off" texts, values out of bit order, the
// "Unknown" rows (value 0).
void tst_ImageTypes::enumRows_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("key");

    const auto row = [](const char* setting, int index, const char* text, int value, const char* key) {
        QTest::addRow("%s %d", setting, index) << setting << index << text << value << key;
    };
    row("camEye", 0, "Right", 1, "right");
    row("camEye", 5, "Right in Left", 6, "RiL");
    row("streamMode", 0, "Quality", 0x2, "-1");
    row("streamMode", 3, "Unknown", 0, "undef");
    row("nightImprovement", 2, "On", 0x8, "on");
    row("whiteBalance", 1, "Automatic (Narrow)", 0x100, "auto narrow");
    row("whiteBalance", 12, "Hold Current", 0x2000, "hold");
    row("whiteBalance", 13, "Unknown", 0, "undef");
    row("noiseSuppression", 0, "Off", 0x2, "0");
    row("noiseSuppression", 4, "0.5 lux", 0x100, "5");
    row("noiseSuppression", 5, "Off", 0x80, "off");
    row("darkNoiseSuppression", 4, "Unknown", 0, "undef");
    row("contrastMode", 3, "Off", 0x10, "off");
}

// Each row is reachable by index, value and key.
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

    const auto row = [](const char* name, const char* setting, int value, const char* key, int rows) {
        QTest::newRow(name) << setting << value << key << rows;
    };
    row("camEye 7, key case", "camEye", 7, "Right", 6);
    row("camEye 0 (no Unknown row)", "camEye", 0, "unknown", 6);
    row("stream mode bit combination", "streamMode", 0x6, "2", 4);
    row("night improvement, key case", "nightImprovement", 0x10, "On", 4);
    row("white balance, key case", "whiteBalance", 0x3, "Auto", 14);
    row("white balance, no trimming", "whiteBalance", 0x4000, "auto narrow ", 14);
    row("noise, unknown lux", "noiseSuppression", 0x200, "20", 9);
    row("dark noise, bit combination", "darkNoiseSuppression", 0x6, "Low", 5);
    row("contrast, negative", "contrastMode", -1, "", 5);
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

void tst_ImageTypes::keyLookups_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");

    const auto row = [](const char* name, const char* function, const char* key, const QString& result) {
        QTest::newRow(name) << function << key << result;
    };
    row("codec enable", "streamCodex", "enable", "KoPEG");
    row("codec, key case", "streamCodex", "Enable", "Enable");
    row("first of a shared key", "resolutionName", "704x576", "TV-PAL (704x576)");
    row("second of a shared key", "resolutionName", "4CIF", "4CIF (704x576)");
    row("symbolic key", "resolutionName", "CIF", "CIF (320x240)");
    row("resolution, key case", "resolutionName", "cif", "cif");
    row("last resolution", "resolutionName", "customize", "Custom Size");
    row("filtered custom size", "resolutionNameFiltered", "customize", "");
    row("filtered 4CIF", "resolutionNameFiltered", "4CIF", "4CIF (704x576)");
    row("display mode lenscorr_l11", "displayModeName", "lenscorr_l11", "Normal");
    row("display mode simple", "displayModeName", "simple", "Full Image");
    row("exposure right_left", "exposurePresetName", "right_left", "Right & Left");
    row("exposure extra", "exposurePresetName", "extra", "Custom");
    row("exposure, the closing null row", "exposurePresetName", "", QString());
    row("sensitivity 2", "microSensitivityName", "2", "High sensitivity");
    row("sensitivity 3", "microSensitivityName", "3", "3");
    row("eye filtered right", "camEyeNameFiltered", "right", "Right");
    row("eye filtered both", "camEyeNameFiltered", "both", "");
    row("eye filtered, key case", "camEyeNameFiltered", "Right", "");
}

void tst_ImageTypes::keyLookups()
{
    QFETCH(QString, function);
    QFETCH(QString, key);
    QFETCH(QString, name);

    const QString result = nameOfKey(function, key);
    QCOMPARE(result, name);
    QCOMPARE(result.isNull(), name.isNull()); // the filtered lookups give an empty, not a null, string
}

// The lookups by number: ids are truncated towards zero, misses give a null string.
void tst_ImageTypes::numberLookups_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("name");

    const auto row = [](const char* name, const char* function, double number, const QString& result) {
        QTest::newRow(name) << function << number << result;
    };
    row("api name 1", "camEyeApiName", 1, "right");
    row("api name 6", "camEyeApiName", 6, "RiL");
    row("api name 0", "camEyeApiName", 0, QString());
    row("api name 7", "camEyeApiName", 7, QString());
    row("target 0", "nameFromInOut", 0, "Off");
    row("target 2.9 truncated", "nameFromInOut", 2.9, "On");
    row("target 3.5", "nameFromInOut", 3.5, "ExtIO");
    row("target 4", "nameFromInOut", 4, QString());
    row("target -0.5 truncated to 0", "nameFromInOut", -0.5, "Off");
    row("target -1", "nameFromInOut", -1, QString());
    row("target NaN", "nameFromInOut", std::numeric_limits<double>::quiet_NaN(), QString());
    row("sensitivity 2.99", "microSensitivityNameFromID", 2.99, "High sensitivity");
    row("sensitivity 3", "microSensitivityNameFromID", 3, QString());
    row("fps unlimited", "transformFPS", 0.0, "Maximum");
    row("fps negative zero", "transformFPS", -0.0, "Maximum");
    row("fps 12.5", "transformFPS", 1250, "12.5");
    row("fps 3.33", "transformFPS", 333, "3.33");
    row("fps, six significant digits", "transformFPS", 123456789, "1.23457e+06");
    row("fps negative", "transformFPS", -50, "-0.5");
}

void tst_ImageTypes::numberLookups()
{
    QFETCH(QString, function);
    QFETCH(double, number);
    QFETCH(QString, name);

    const QString result = function == "camEyeApiName" ? camEyeApiName(ko::ECamEye(int(number)))
        : function == "nameFromInOut"                  ? nameFromInOut(number)
        : function == "transformFPS"                   ? transformFPS(number)
                                                       : microSensitivityNameFromID(number);
    QCOMPARE(result, name);
    QCOMPARE(result.isNull(), name.isNull());
}

QTEST_GUILESS_MAIN(tst_ImageTypes)
#include "tst_ImageTypes.moc"
