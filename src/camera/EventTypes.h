// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_EVENTTYPES_H
#define KO_EVENTTYPES_H

#include "coreqt_export.h"

#include <QString>

namespace ko
{

/** One camera trigger event: display text, short key as the camera reports it, and its event bit.
 */
struct TriggerEventRow
{
    const char *text; ///< display text, also the translation source in the context "Statics"
    const char *key; ///< the event's short code, never translated
    quint32 mask; ///< the event's bit in a 32-bit event mask, 0 when it has none
    quint32 reserved; ///< always 0
};

/** Number of rows of sTriggerEvents. */
constexpr int kTriggerEventCount = 48;

/**
 * The camera trigger events; row 0 ("All Events", key "AE") carries every bit. Kept as cameras and
 * stored configurations know it: row 5 reads "Illumination (IL2)", row 17 reads "Signal Input 5
 * (SI4)" under the key "SI5", RH and RT carry their bits in swapped order, and signal inputs 5 to
 * 16, the door station rows and "disconnected" have no bit.
 */
extern COREQT_EXPORT const TriggerEventRow sTriggerEvents[kTriggerEventCount];

/** Event profile types; each value indexes k_envProfileKeys. */
enum EEventProfileTypes : int {
    /** Key "ENV". */
    EventProfileEnv = 0,
    /** Key "IMA". */
    EventProfileIma = 1,
    /** Key "INT". */
    EventProfileInt = 2,
    /** Key "MSG". */
    EventProfileMsg = 3,
    /** Key "MET". */
    EventProfileMet = 4,
    /** Key "SIG". */
    EventProfileSig = 5,
    /** Key "TIM". */
    EventProfileTim = 6
};

/** Number of event profile types. */
constexpr int kEventProfileTypeCount = 7;

/** The event profile keys "ENV", "IMA", "INT", "MSG", "MET", "SIG", "TIM", indexed by
 * EEventProfileTypes. */
extern COREQT_EXPORT const QString k_envProfileKeys[kEventProfileTypeCount];
/** The key of an invalid event profile type: a null string. */
extern COREQT_EXPORT const QString k_envProfileInvalidKey;

/** Prefix of the keys of mailbox message events, "AMB_". */
extern COREQT_EXPORT const QString kMessageBeginTrigger;
/** Prefix of the keys of mailbox end-of-message events, "AME_". */
extern COREQT_EXPORT const QString kMessageEndTrigger;

/** Names of event actions and sensors. */
namespace EventTypes
{
/** Action: IP notification, "IP". */
extern COREQT_EXPORT const QString k_ActionNameIPNotify;
/** Action: e-mail, "EM". */
extern COREQT_EXPORT const QString k_ActionNameEmail;
/** Action: voice over IP call, "CL". */
extern COREQT_EXPORT const QString k_ActionNameVoip;
/** Action: sound, "SD". */
extern COREQT_EXPORT const QString k_ActionNameSound;
/** Sensor: video motion, "vm". */
extern COREQT_EXPORT const QString k_vmSensorName;
/** Sensor: microphone, "mi". */
extern COREQT_EXPORT const QString k_micSensorName;
/** Sensor: passive infrared, "ir". Kept as it always was: not "pi", the lower-case event key. */
extern COREQT_EXPORT const QString k_pirSensorName;
/** Sensor: signal input, "si". */
extern COREQT_EXPORT const QString k_sigSensorName;
/** Sensor: temperature, "tp". */
extern COREQT_EXPORT const QString k_tempSensorName;
/** Sensor: illumination, "il". */
extern COREQT_EXPORT const QString k_ilSensorName;
} // namespace EventTypes

/** The key of an event profile type, or the null k_envProfileInvalidKey for any other value. */
COREQT_EXPORT const QString &getEventProfileKey(EEventProfileTypes type);

/** The translated display text of trigger event row @p index (0 to 47; an empty text outside). */
COREQT_EXPORT QString triggerEventName(int index);

/**
 * The translated display text of the event with @p key (exact, case-sensitive); mailbox keys
 * ("AMB_…", "AME_…") are named with the key in brackets; any other key comes back unchanged.
 */
COREQT_EXPORT QString triggerEventName(const QString &key);

/**
 * The keys of the events whose bit is in all three masks (each mask tested on its own), in table
 * order and not bit order, joined by ", "; pass 0xFFFFFFFF twice to test one mask. "All Events" and
 * the rows without a bit are never listed.
 */
COREQT_EXPORT QString triggerEventsName(unsigned int maskA, unsigned int maskB, unsigned int maskC);

} // namespace ko

#endif // KO_EVENTTYPES_H
