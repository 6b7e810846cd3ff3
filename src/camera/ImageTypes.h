// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_IMAGETYPES_H
#define KO_IMAGETYPES_H

#include "coreqt_export.h"

#include <QLatin1String>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace ko
{

/** A camera setting's display text, enumeration value and configuration key. */
struct EnumNameRow
{
    const char *text; ///< display text, also the translation source in the context "Statics"
    qint32 value; ///< the setting's enumeration value
    const char *key; ///< the key in the camera's configuration, never translated
};

/** A camera setting's display text and configuration key. */
struct KeyNameRow
{
    const char *text; ///< display text, also the translation source in the context "Statics"
    const char *key; ///< the key in the camera's configuration, never translated
};

/**
 * The index of the first row of @p rows whose key equals @p key exactly (case-sensitive; a null
 * row key equals ""), or -1. Works on every vocabulary table, the trigger events included.
 */
template <typename Row, std::size_t N> int indexOfKey(const Row (&rows)[N], const QString &key)
{
    const Row *row = std::find_if(std::begin(rows), std::end(rows),
        [&key](const Row &r) { return key == QLatin1String(r.key); });
    return row == std::end(rows) ? -1 : int(row - std::begin(rows));
}

/** Camera eye (lens) selection. */
enum ECamEye : qint32 {
    /** Shown as "Right", key "right". */
    CamEyeRight = 1,
    /** Shown as "Left", key "left". */
    CamEyeLeft = 2,
    /** Shown as "Both", key "both". */
    CamEyeBoth = 3,
    /** Shown as "Auto", key "auto". */
    CamEyeAuto = 4,
    /** Shown as "Left in Right", key "LiR". */
    CamEyeLeftInRight = 5,
    /** Shown as "Right in Left", key "RiL". */
    CamEyeRightInLeft = 6
};

/** Stream mode: what the stream favours. */
enum EStreamMode : qint32 {
    /** Shown as "Unknown", key "undef". */
    StreamModeUnknown = 0,
    /** Shown as "Quality", key "-1". */
    StreamModeQuality = 0x2,
    /** Shown as "Speed", key "1". */
    StreamModeSpeed = 0x4,
    /** Shown as "Normal", key "0". */
    StreamModeNormal = 0x8
};

/** Night improvement mode. */
enum ENightImproveMode : qint32 {
    /** Shown as "Unknown", key "undef". */
    NightImproveUnknown = 0,
    /** Shown as "Automatic", key "auto". */
    NightImproveAuto = 0x2,
    /** Shown as "Off", key "off". */
    NightImproveOff = 0x4,
    /** Shown as "On", key "on". */
    NightImproveOn = 0x8
};

/** White balance mode. */
enum EWhiteBMode : qint32 {
    /** Shown as "Unknown", key "undef". */
    WhiteBUnknown = 0,
    /** Shown as "Automatic", key "auto". */
    WhiteBAuto = 0x2,
    /** Shown as "Cloudy/Hazy", key "cloud". */
    WhiteBCloudy = 0x4,
    /** Shown as "Outdoor", key "outdoor". */
    WhiteBOutdoor = 0x8,
    /** Shown as "Sunny", key "sun". */
    WhiteBSunny = 0x10,
    /** Shown as "Fluorescent Lamp", key "neon". */
    WhiteBFluorescent = 0x20,
    /** Shown as "Incandescent Lamp", key "bulb". */
    WhiteBIncandescent = 0x40,
    /** Shown as "Gray World", key "gray". */
    WhiteBGrayWorld = 0x80,
    /** Shown as "Automatic (Narrow)", key "auto narrow". */
    WhiteBAutoNarrow = 0x100,
    /** Shown as "Indoor", key "indoor". */
    WhiteBIndoor = 0x200,
    /** Shown as "Indoor 2", key "indoor 2". */
    WhiteBIndoor2 = 0x400,
    /** Shown as "Incandescent Lamp 2", key "bulb 2". */
    WhiteBIncandescent2 = 0x800,
    /** Shown as "Outdoor 2", key "outdoor 2". */
    WhiteBOutdoor2 = 0x1000,
    /** Shown as "Hold Current", key "hold". */
    WhiteBHold = 0x2000
};

/** Noise suppression: a lux threshold family and a level family, each with its own "Off". */
enum ENoiseSurp : qint32 {
    /** Shown as "Unknown", key "undef". */
    NoiseSurpUnknown = 0,
    /** Shown as "Off" of the lux family, key "0". */
    NoiseSurpOff = 0x2,
    /** Shown as "5 lux", key "50". */
    NoiseSurp5Lux = 0x4,
    /** Shown as "3 lux", key "30". */
    NoiseSurp3Lux = 0x8,
    /** Shown as "1 lux", key "10". */
    NoiseSurp1Lux = 0x10,
    /** Shown as "Low", key "low". */
    NoiseSurpLow = 0x20,
    /** Shown as "High", key "high". */
    NoiseSurpHigh = 0x40,
    /** Shown as "Off" of the level family, key "off". */
    NoiseSurpLevelOff = 0x80,
    /** Shown as "0.5 lux", key "5". */
    NoiseSurpHalfLux = 0x100
};

/** Dark noise suppression level. */
enum EDarkNoiseSurp : qint32 {
    /** Shown as "Unknown", key "undef". */
    DarkNoiseSurpUnknown = 0,
    /** Shown as "Off", key "0". */
    DarkNoiseSurpOff = 0x2,
    /** Shown as "Low", key "low". */
    DarkNoiseSurpLow = 0x4,
    /** Shown as "Medium", key "medium". */
    DarkNoiseSurpMedium = 0x8,
    /** Shown as "High", key "high". */
    DarkNoiseSurpHigh = 0x10
};

/** Contrast mode. */
enum EContrastMode : qint32 {
    /** Shown as "Unknown", key "undef". */
    ContrastModeUnknown = 0,
    /** Shown as "Automatic", key "auto". */
    ContrastModeAuto = 0x2,
    /** Shown as "Simple", key "simple". */
    ContrastModeSimple = 0x4,
    /** Shown as "Adaptive", key "adaptive". */
    ContrastModeAdaptive = 0x8,
    /** Shown as "Off", key "off". */
    ContrastModeOff = 0x10
};

} // namespace ko

// The parameter tables, in row order; the lookups below scan them. Walk them to list a setting's
// keys, values and texts; translate a text with QCoreApplication::translate("Statics", text).

/** Camera eyes: "right", "left", "both", "auto", "LiR", "RiL". */
extern COREQT_EXPORT const ko::EnumNameRow sCamEyes[6];
/** Stream modes; the last row is "Unknown" (value 0, key "undef"). */
extern COREQT_EXPORT const ko::EnumNameRow sStreamModes[4];
/** Night improvement modes; the last row is "Unknown". */
extern COREQT_EXPORT const ko::EnumNameRow sNightImprovements[4];
/** White balance modes; the last row is "Unknown". */
extern COREQT_EXPORT const ko::EnumNameRow sWhiteBalances[14];
/**
 * Noise suppression: the lux family (keys in tenths of a lux), the level family, "Unknown". Kept as
 * it always was: both families have an "Off" row, key "0" (value 0x2) and key "off" (value 0x80).
 */
extern COREQT_EXPORT const ko::EnumNameRow sNoiseSuppressions[9];
/** Dark noise suppression levels; the last row is "Unknown". */
extern COREQT_EXPORT const ko::EnumNameRow sDarkNoiseSuppressions[5];
/** Contrast modes; the last row is "Unknown". */
extern COREQT_EXPORT const ko::EnumNameRow sContrastModes[5];
/** Stream codecs, keyed by the value of the codec's on/off setting ("enable", "disable"). */
extern COREQT_EXPORT const ko::KeyNameRow sStreamCodex[2];
/** Microphone targets, named by identifier (the row index). */
extern COREQT_EXPORT const ko::KeyNameRow sMicrophoneTargets[4];
/** Microphone sensitivities, by key or by identifier (the row index). */
extern COREQT_EXPORT const ko::KeyNameRow sMicrophoneSensitivity[3];
/** Exposure areas; the closing row's text and key are null and match the empty key. */
extern COREQT_EXPORT const ko::KeyNameRow sExposurePresets[13];
/** Display modes. */
extern COREQT_EXPORT const ko::KeyNameRow sDisplayModes[15];
/** Resolutions; the key "704x576" names row 14, row 18 is reached through "4CIF" only. */
extern COREQT_EXPORT const ko::KeyNameRow sResolutions[24];

// For each of the seven enumerated settings: XIndex gives the row of a value or -1; XName gives
// the translated text of a row, of a value ("???" when unknown) or of a key (unknown keys come
// back unchanged). Keys compare exactly and case-sensitively; the first matching row wins.

/** Row index of a camera eye value, or -1. */
COREQT_EXPORT int camEyeIndex(ko::ECamEye value);
/** Translated name of camera eye row @p index (0 to 5; an empty text outside). */
COREQT_EXPORT QString camEyeName(int index);
/** Translated name of a camera eye value, or "???" (untranslated). */
COREQT_EXPORT QString camEyeName(ko::ECamEye value);
/** Translated name of a camera eye key, or the key itself. */
COREQT_EXPORT QString camEyeName(const QString &key);
/** Configuration key of a camera eye value, or a null string. */
COREQT_EXPORT QString camEyeApiName(ko::ECamEye value);
/** camEyeName(key) for the keys "right", "left" and "auto"; an empty string for any other key. */
COREQT_EXPORT QString camEyeNameFiltered(const QString &key);

/** Row index of a stream mode value, or -1. */
COREQT_EXPORT int streamModeIndex(ko::EStreamMode value);
/** Translated name of stream mode row @p index (0 to 3; an empty text outside). */
COREQT_EXPORT QString streamModeName(int index);
/** Translated name of a stream mode value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString streamModeName(ko::EStreamMode value);
/** Translated name of a stream mode key, or the key itself. */
COREQT_EXPORT QString streamModeName(const QString &key);

/** Row index of a night improvement value, or -1. */
COREQT_EXPORT int nightImprovementIndex(ko::ENightImproveMode value);
/** Translated name of night improvement row @p index (0 to 3; an empty text outside). */
COREQT_EXPORT QString nightImprovementName(int index);
/** Translated name of a night improvement value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString nightImprovementName(ko::ENightImproveMode value);
/** Translated name of a night improvement key, or the key itself. */
COREQT_EXPORT QString nightImprovementName(const QString &key);

/** Row index of a white balance value, or -1. */
COREQT_EXPORT int whiteBalanceIndex(ko::EWhiteBMode value);
/** Translated name of white balance row @p index (0 to 13; an empty text outside). */
COREQT_EXPORT QString whiteBalanceName(int index);
/** Translated name of a white balance value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString whiteBalanceName(ko::EWhiteBMode value);
/** Translated name of a white balance key, or the key itself. */
COREQT_EXPORT QString whiteBalanceName(const QString &key);

/** Row index of a noise suppression value, or -1. */
COREQT_EXPORT int noiseSuppressionIndex(ko::ENoiseSurp value);
/** Translated name of noise suppression row @p index (0 to 8; an empty text outside). */
COREQT_EXPORT QString noiseSuppressionName(int index);
/** Translated name of a noise suppression value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString noiseSuppressionName(ko::ENoiseSurp value);
/** Translated name of a noise suppression key (tenths of a lux, or a level), or the key itself. */
COREQT_EXPORT QString noiseSuppressionName(const QString &key);

/** Row index of a dark noise suppression value, or -1. */
COREQT_EXPORT int darkNoiseSuppressionIndex(ko::EDarkNoiseSurp value);
/** Translated name of dark noise suppression row @p index (0 to 4; an empty text outside). */
COREQT_EXPORT QString darkNoiseSuppressionName(int index);
/** Translated name of a dark noise suppression value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString darkNoiseSuppressionName(ko::EDarkNoiseSurp value);
/** Translated name of a dark noise suppression key, or the key itself. */
COREQT_EXPORT QString darkNoiseSuppressionName(const QString &key);

/** Row index of a contrast mode value, or -1. */
COREQT_EXPORT int contrastModeIndex(ko::EContrastMode value);
/** Translated name of contrast mode row @p index (0 to 4; an empty text outside). */
COREQT_EXPORT QString contrastModeName(int index);
/** Translated name of a contrast mode value, "Unknown" for 0, or "???" (untranslated). */
COREQT_EXPORT QString contrastModeName(ko::EContrastMode value);
/** Translated name of a contrast mode key, or the key itself. */
COREQT_EXPORT QString contrastModeName(const QString &key);

/** Translated stream codec name for the codec setting's value ("enable", "disable"), or the key
 * itself. */
COREQT_EXPORT QString streamCodex(const QString &key);

/**
 * Translated resolution name of a key such as "704x576" or "4CIF", or the key itself. Kept as it
 * always was: "704x576" names "TV-PAL (704x576)", the first of two rows with that key; "4CIF
 * (704x576)" is reached through "4CIF" only.
 */
COREQT_EXPORT QString resolutionName(const QString &key);
/** resolutionName(key), except an empty string for the key "customize". */
COREQT_EXPORT QString resolutionNameFiltered(const QString &key);

/** Translated display mode name of a key such as "lenscorr_l22", or the key itself. */
COREQT_EXPORT QString displayModeName(const QString &key);

/** Translated exposure area name of a key such as "right_left", or the key itself; "" gives "". */
COREQT_EXPORT QString exposurePresetName(const QString &key);

/** Translated microphone sensitivity name of a key ("0" to "2"), or the key itself. */
COREQT_EXPORT QString microSensitivityName(const QString &key);
/**
 * Translated microphone sensitivity name of identifier @p id, truncated toward zero; a null string
 * when that is above 2 (or @p id is -1 or below).
 */
COREQT_EXPORT QString microSensitivityNameFromID(double id);

/**
 * Translated microphone target name of identifier @p id, truncated toward zero; a null string when
 * that is above 3 (or @p id is -1 or below).
 */
COREQT_EXPORT QString nameFromInOut(double id);

/**
 * A frame rate given in hundredths of a frame per second, as frames per second with up to six
 * significant digits (2500 gives "25", 333 gives "3.33"); 0 stands for no limit and gives
 * "Maximum", untranslated.
 */
COREQT_EXPORT QString transformFPS(double fps);

#endif // KO_IMAGETYPES_H
