#ifndef KO_EVENTTYPES_H
#define KO_EVENTTYPES_H

#include "coreqt_export.h"

#include <QString>

namespace ko
{

/** One camera trigger event: display text, short key as the camera reports it, and its event bit. */
struct TriggerEventRow
{
    const char* text; ///< display text, also the translation source in the context "Statics"
    const char* key; ///< the event's short code, never translated
    quint32 mask; ///< the event's bit in a 32-bit event mask, 0 when it has none
    quint32 reserved; ///< always 0
};

/** Number of rows of sTriggerEvents. */
constexpr int kTriggerEventCount = 48;

/** The camera trigger events; row 0 ("All Events", key "AE") carries every bit. */
extern COREQT_EXPORT const TriggerEventRow sTriggerEvents[kTriggerEventCount];

/** Event profile types; each value indexes k_envProfileKeys. */
enum EEventProfileTypes : int {
    EventProfileEnv = 0,
    EventProfileIma = 1,
    EventProfileInt = 2,
    EventProfileMsg = 3,
    EventProfileMet = 4,
    EventProfileSig = 5,
    EventProfileTim = 6
};

/** Number of event profile types. */
constexpr int kEventProfileTypeCount = 7;

/** The event profile keys "ENV", "IMA", "INT", "MSG", "MET", "SIG", "TIM", indexed by EEventProfileTypes. */
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
/** Sensor: passive infrared, "ir" (not the lower-case event key "pi"). */
extern COREQT_EXPORT const QString k_pirSensorName;
/** Sensor: signal input, "si". */
extern COREQT_EXPORT const QString k_sigSensorName;
/** Sensor: temperature, "tp". */
extern COREQT_EXPORT const QString k_tempSensorName;
/** Sensor: illumination, "il". */
extern COREQT_EXPORT const QString k_ilSensorName;
} // namespace EventTypes

/** The key of an event profile type, or the null k_envProfileInvalidKey for any other value. */
COREQT_EXPORT const QString& getEventProfileKey(EEventProfileTypes type);

/** The translated display text of trigger event row @p index (0 to 47). */
COREQT_EXPORT QString triggerEventName(int index);

/**
 * The translated display text of the event with @p key (exact, case-sensitive); mailbox keys
 * ("AMB_…", "AME_…") are named with the key in brackets; any other key comes back unchanged.
 */
COREQT_EXPORT QString triggerEventName(const QString& key);

/** The keys of the events whose bit is in all three masks, in table order, joined by ", ". */
COREQT_EXPORT QString triggerEventsName(unsigned int maskA, unsigned int maskB, unsigned int maskC);

} // namespace ko

#endif // KO_EVENTTYPES_H
