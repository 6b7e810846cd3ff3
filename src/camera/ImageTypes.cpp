// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "camera/ImageTypes.h"

#include "camera/VocabularyLookup_p.h"

using ko::EnumNameRow;
using ko::KeyNameRow;
using namespace ko::vocabulary;

const EnumNameRow sCamEyes[6] = {
    { "Right", ko::CamEyeRight, "right" },
    { "Left", ko::CamEyeLeft, "left" },
    { "Both", ko::CamEyeBoth, "both" },
    { "Auto", ko::CamEyeAuto, "auto" },
    { "Left in Right", ko::CamEyeLeftInRight, "LiR" },
    { "Right in Left", ko::CamEyeRightInLeft, "RiL" },
};

const EnumNameRow sStreamModes[4] = {
    { "Quality", ko::StreamModeQuality, "-1" },
    { "Speed", ko::StreamModeSpeed, "1" },
    { "Normal", ko::StreamModeNormal, "0" },
    { "Unknown", ko::StreamModeUnknown, "undef" },
};

const EnumNameRow sNightImprovements[4] = {
    { "Automatic", ko::NightImproveAuto, "auto" },
    { "Off", ko::NightImproveOff, "off" },
    { "On", ko::NightImproveOn, "on" },
    { "Unknown", ko::NightImproveUnknown, "undef" },
};

const EnumNameRow sWhiteBalances[14] = {
    { "Automatic", ko::WhiteBAuto, "auto" },
    { "Automatic (Narrow)", ko::WhiteBAutoNarrow, "auto narrow" },
    { "Cloudy/Hazy", ko::WhiteBCloudy, "cloud" },
    { "Indoor", ko::WhiteBIndoor, "indoor" },
    { "Indoor 2", ko::WhiteBIndoor2, "indoor 2" },
    { "Outdoor", ko::WhiteBOutdoor, "outdoor" },
    { "Outdoor 2", ko::WhiteBOutdoor2, "outdoor 2" },
    { "Sunny", ko::WhiteBSunny, "sun" },
    { "Fluorescent Lamp", ko::WhiteBFluorescent, "neon" },
    { "Incandescent Lamp", ko::WhiteBIncandescent, "bulb" },
    { "Incandescent Lamp 2", ko::WhiteBIncandescent2, "bulb 2" },
    { "Gray World", ko::WhiteBGrayWorld, "gray" },
    { "Hold Current", ko::WhiteBHold, "hold" },
    { "Unknown", ko::WhiteBUnknown, "undef" },
};

// Two "Off" rows on purpose: the lux threshold family (keys in tenths of a lux) switches off
// with "0", the level family with "off".
const EnumNameRow sNoiseSuppressions[9] = {
    { "Off", ko::NoiseSurpOff, "0" },
    { "5 lux", ko::NoiseSurp5Lux, "50" },
    { "3 lux", ko::NoiseSurp3Lux, "30" },
    { "1 lux", ko::NoiseSurp1Lux, "10" },
    { "0.5 lux", ko::NoiseSurpHalfLux, "5" },
    { "Off", ko::NoiseSurpLevelOff, "off" },
    { "Low", ko::NoiseSurpLow, "low" },
    { "High", ko::NoiseSurpHigh, "high" },
    { "Unknown", ko::NoiseSurpUnknown, "undef" },
};

const EnumNameRow sDarkNoiseSuppressions[5] = {
    { "Off", ko::DarkNoiseSurpOff, "0" },
    { "Low", ko::DarkNoiseSurpLow, "low" },
    { "Medium", ko::DarkNoiseSurpMedium, "medium" },
    { "High", ko::DarkNoiseSurpHigh, "high" },
    { "Unknown", ko::DarkNoiseSurpUnknown, "undef" },
};

const EnumNameRow sContrastModes[5] = {
    { "Automatic", ko::ContrastModeAuto, "auto" },
    { "Simple", ko::ContrastModeSimple, "simple" },
    { "Adaptive", ko::ContrastModeAdaptive, "adaptive" },
    { "Off", ko::ContrastModeOff, "off" },
    { "Unknown", ko::ContrastModeUnknown, "undef" },
};

const KeyNameRow sStreamCodex[2] = {
    { "KoPEG", "enable" },
    { "M-JPEG", "disable" },
};

// Only the texts are used, by index.
const KeyNameRow sMicrophoneTargets[4] = {
    { "Off", "0" },
    { "On", "1" },
    { "On", "2" },
    { "ExtIO", "3" },
};

const KeyNameRow sMicrophoneSensitivity[3] = {
    { "Low sensitivity", "0" },
    { "Medium sensitivity", "1" },
    { "High sensitivity", "2" },
};

// The closing null row takes part in key lookups: it matches the empty key.
const KeyNameRow sExposurePresets[13] = {
    { "Full Image", "all" },
    { "Quarter", "quarter" },
    { "Center", "center" },
    { "Spot", "spot" },
    { "Bottom", "bottom" },
    { "Middle", "middle" },
    { "Top", "top" },
    { "Right", "right" },
    { "Vertical", "vertical" },
    { "Left", "left" },
    { "Right & Left", "right_left" },
    { "Custom", "extra" },
    { nullptr, nullptr },
};

const KeyNameRow sDisplayModes[15] = {
    { "Normal", "normal" },
    { "Full Image", "full" },
    { "Full Image", "simple" },
    { "Picture in Zoom", "piz" },
    { "Picture in Picture", "pip" },
    { "Event in Picture", "eip" },
    { "Fisheye", "fisheye" },
    { "Normal", "lenscorr_l11" },
    { "Lens Correction", "lenscorr_l22" },
    { "Surround", "surround" },
    { "Panorama", "panorama" },
    { "Panorama Focus", "pano_focus" },
    { "Double Panorama", "pano_dbl" },
    { "Unchanged", "unchanged" },
    { "Area", "area" },
};

// Rows 14 and 18 share the key "704x576": the first match wins, so that key always names
// "TV-PAL (704x576)" and row 18 is reached only through "4CIF". Kept for stored configurations.
const KeyNameRow sResolutions[24] = {
    { "PDA (160x120)", "160x120" },
    { "CIF (320x240)", "320x240" },
    { "CIF (320x240)", "CIF" },
    { "TV-CIF (352x288)", "352x288" },
    { "D-1 CIF (384x288)", "384x288" },
    { "VGA (640x480)", "640x480" },
    { "D-1 PAL (768x576)", "768x576" },
    { "SVGA (800x600)", "800x600" },
    { "XGA (1024x768)", "1024x768" },
    { "Mega (1280x960)", "1280x960" },
    { "QXGA (2048x1536)", "2048x1536" },
    { "PTZ", "PTZ" },
    { "QCIF (176x144)", "176x144" },
    { "QCIF (176x144)", "QCIF" },
    { "TV-PAL (704x576)", "704x576" },
    { "2CIF Exp (704x576)", "2CIFEXP" },
    { "2CIF (704x288)", "704x288" },
    { "2CIF (704x288)", "2CIF" },
    { "4CIF (704x576)", "704x576" },
    { "4CIF (704x576)", "4CIF" },
    { "SXGA (1280x1024)", "1280x1024" },
    { "HD 720 (1280x720)", "1280x720" },
    { "1/8 VGA (240x180)", "240x180" },
    { "Custom Size", "customize" },
};

namespace
{

// Value lookups scan every row, the "Unknown" row (value 0) included; only the whole value counts.
template <std::size_t N> int indexOfValue(const EnumNameRow (&table)[N], qint32 value)
{
    const EnumNameRow *row = std::find_if(std::begin(table), std::end(table),
        [value](const EnumNameRow &r) { return r.value == value; });
    return row == std::end(table) ? -1 : int(row - std::begin(table));
}

template <std::size_t N> QString textOfValue(const EnumNameRow (&table)[N], qint32 value)
{
    const int index = indexOfValue(table, value);
    return index < 0 ? QStringLiteral("???") : translated(table[index].text);
}

// Identifiers are truncated toward zero; above the last row they name nothing (a null string).
template <std::size_t N> QString textOfId(const KeyNameRow (&table)[N], double id)
{
    // Identifiers of -1 or less and NaN are outside the caller's contract: they also name
    // nothing, rather than reading before the table.
    if (!(id > -1.0 && id < double(N)))
        return QString();
    return translated(table[int(id)].text);
}

} // namespace

// The four lookups of one enumerated setting, over its table.
// clang-format off
#define KO_ENUM_NAME_LOOKUPS(prefix, Enum, table)                                              \
    int prefix##Index(ko::Enum value) { return indexOfValue(table, value); }                  \
    QString prefix##Name(int index) { return textAt(table, index); }                          \
    QString prefix##Name(ko::Enum value) { return textOfValue(table, value); }                \
    QString prefix##Name(const QString& key) { return textOfKey(table, key); }
// clang-format on

KO_ENUM_NAME_LOOKUPS(camEye, ECamEye, sCamEyes)
KO_ENUM_NAME_LOOKUPS(streamMode, EStreamMode, sStreamModes)
KO_ENUM_NAME_LOOKUPS(nightImprovement, ENightImproveMode, sNightImprovements)
KO_ENUM_NAME_LOOKUPS(whiteBalance, EWhiteBMode, sWhiteBalances)
KO_ENUM_NAME_LOOKUPS(noiseSuppression, ENoiseSurp, sNoiseSuppressions)
KO_ENUM_NAME_LOOKUPS(darkNoiseSuppression, EDarkNoiseSurp, sDarkNoiseSuppressions)
KO_ENUM_NAME_LOOKUPS(contrastMode, EContrastMode, sContrastModes)

#undef KO_ENUM_NAME_LOOKUPS

QString camEyeApiName(ko::ECamEye value)
{
    const int index = indexOfValue(sCamEyes, value);
    return index < 0 ? QString() : QString::fromLatin1(sCamEyes[index].key);
}

QString camEyeNameFiltered(const QString &key)
{
    if (key == QLatin1String("right") || key == QLatin1String("left")
        || key == QLatin1String("auto"))
        return camEyeName(key);
    return QStringLiteral(""); // empty, not null
}

QString streamCodex(const QString &key)
{
    return textOfKey(sStreamCodex, key);
}

QString resolutionName(const QString &key)
{
    return textOfKey(sResolutions, key);
}

QString resolutionNameFiltered(const QString &key)
{
    if (key == QLatin1String("customize"))
        return QStringLiteral(""); // empty, not null
    return resolutionName(key);
}

QString displayModeName(const QString &key)
{
    return textOfKey(sDisplayModes, key);
}

QString exposurePresetName(const QString &key)
{
    return textOfKey(sExposurePresets, key);
}

QString microSensitivityName(const QString &key)
{
    return textOfKey(sMicrophoneSensitivity, key);
}

QString microSensitivityNameFromID(double id)
{
    return textOfId(sMicrophoneSensitivity, id);
}

QString nameFromInOut(double id)
{
    return textOfId(sMicrophoneTargets, id);
}

QString transformFPS(double fps)
{
    // 0.0 stands for an unlimited frame rate; the word is not translated.
    if (fps == 0.0)
        return QStringLiteral("Maximum");
    return QStringLiteral("%1").arg(fps / 100);
}
