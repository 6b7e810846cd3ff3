// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "camera/EventTypes.h"

#include "camera/VocabularyLookup_p.h"

namespace ko
{

// Kept as the cameras and stored configurations know them: row 5 reads "Illumination (IL2)",
// row 17 reads "Signal Input 5 (SI4)" under the key "SI5", RH and RT carry their bits in
// swapped order, and signal inputs 5 to 16, the door station and "disconnected" have no bit.
const TriggerEventRow sTriggerEvents[kTriggerEventCount] = {
    { "All Events", "AE", 0xFFFFFFFF, 0 },
    { "Video Motion (VM)", "VM", 0x00000008, 0 },
    { "Video Motion 2 (VM2)", "VM2", 0x00000010, 0 },
    { "Passive Infrared (PI)", "PI", 0x00200000, 0 },
    { "Illumination (IL)", "IL", 0x00040000, 0 },
    { "Illumination (IL2)", "IL2", 0x00080000, 0 },
    { "Microphone (MI)", "MI", 0x00000020, 0 },
    { "Temperature (TP)", "TP", 0x00020000, 0 },
    { "User Click (UC)", "UC", 0x00001000, 0 },
    { "Button (BT)", "BT", 0x00002000, 0 },
    { "Right Button (BR)", "BR", 0x00004000, 0 },
    { "Left Button (BL)", "BL", 0x00008000, 0 },
    { "IR Remote Control (IR)", "IR", 0x00400000, 0 },
    { "Signal Input 1 (SI)", "SI", 0x00000040, 0 },
    { "Signal Input 2 (SI2)", "SI2", 0x00000080, 0 },
    { "Signal Input 3 (SI3)", "SI3", 0x00000100, 0 },
    { "Signal Input 4 (SI4)", "SI4", 0x00000200, 0 },
    { "Signal Input 5 (SI4)", "SI5", 0, 0 },
    { "Signal Input 6 (SI6)", "SI6", 0, 0 },
    { "Signal Input 7 (SI7)", "SI7", 0, 0 },
    { "Signal Input 8 (SI8)", "SI8", 0, 0 },
    { "Signal Input 9 (SI9)", "SI9", 0, 0 },
    { "Signal Input 10 (SI10)", "SI10", 0, 0 },
    { "Signal Input 11 (SI11)", "SI11", 0, 0 },
    { "Signal Input 12 (SI12)", "SI12", 0, 0 },
    { "Signal Input 13 (SI13)", "SI13", 0, 0 },
    { "Signal Input 14 (SI14)", "SI14", 0, 0 },
    { "Signal Input 15 (SI15)", "SI15", 0, 0 },
    { "Signal Input 16 (SI16)", "SI16", 0, 0 },
    { "IP Receive (RC)", "RC", 0x00010000, 0 },
    { "Serial Interface (CI)", "CI", 0x00800000, 0 },
    { "Periodic Event (PE)", "PE", 0x00000400, 0 },
    { "Time Task (TT)", "TT", 0x00000800, 0 },
    { "Random Event (RD)", "RD", 0x00100000, 0 },
    { "Event Counter (EC)", "EC", 0x00000001, 0 },
    { "Event Logic (EL)", "EL", 0x00000002, 0 },
    { "Event Logic 2 (EL2)", "EL2", 0x00000004, 0 },
    { "Recording Begin (RB)", "RB", 0x01000000, 0 },
    { "Recording End (RE)", "RE", 0x02000000, 0 },
    { "Recording History (RH)", "RH", 0x08000000, 0 },
    { "Recording Terminate (RT)", "RT", 0x04000000, 0 },
    { "Camera Bell Pressed", "CameraBellButton", 0, 0 },
    { "Bell Pressed", "RingOK", 0, 0 },
    { "Door Opened", "DoorOpened", 0, 0 },
    { "Access Granted", "AccessGranted", 0, 0 },
    { "Invalid RFID", "RFIDAccessDenied", 0, 0 },
    { "Invalid PIN", "PINAccessDenied", 0, 0 },
    { "Connection Lost", "disconnected", 0, 0 },
};

// The string constants are built at load in this order: mailbox prefixes, profile keys,
// the invalid key, sensor names, action names.
const QString kMessageBeginTrigger = QStringLiteral("AMB_");
const QString kMessageEndTrigger = QStringLiteral("AME_");

const QString k_envProfileKeys[kEventProfileTypeCount] = {
    QStringLiteral("ENV"),
    QStringLiteral("IMA"),
    QStringLiteral("INT"),
    QStringLiteral("MSG"),
    QStringLiteral("MET"),
    QStringLiteral("SIG"),
    QStringLiteral("TIM"),
};
const QString k_envProfileInvalidKey;

namespace EventTypes
{
const QString k_vmSensorName = QStringLiteral("vm");
const QString k_micSensorName = QStringLiteral("mi");
// "ir", not "pi": the sensor keeps the name the cameras use for it.
const QString k_pirSensorName = QStringLiteral("ir");
const QString k_sigSensorName = QStringLiteral("si");
const QString k_tempSensorName = QStringLiteral("tp");
const QString k_ilSensorName = QStringLiteral("il");

const QString k_ActionNameSound = QStringLiteral("SD");
const QString k_ActionNameVoip = QStringLiteral("CL");
const QString k_ActionNameEmail = QStringLiteral("EM");
const QString k_ActionNameIPNotify = QStringLiteral("IP");
} // namespace EventTypes

const QString &getEventProfileKey(EEventProfileTypes type)
{
    if (type < 0 || type >= kEventProfileTypeCount)
        return k_envProfileInvalidKey;
    return k_envProfileKeys[type];
}

QString triggerEventName(int index)
{
    return vocabulary::textAt(sTriggerEvents, index);
}

namespace
{

// "<translated prefix text> (<key>)", the name of a mailbox event.
QString mailboxName(const char *text, const QString &key)
{
    return vocabulary::translated(text) + QLatin1String(" (") + key + QLatin1Char(')');
}

} // namespace

QString triggerEventName(const QString &key)
{
    const int index = indexOfKey(sTriggerEvents, key);
    if (index >= 0)
        return triggerEventName(index);
    if (key.startsWith(kMessageBeginTrigger))
        return mailboxName("Mailbox Message", key);
    if (key.startsWith(kMessageEndTrigger))
        return mailboxName("End of Message", key);
    return key;
}

QString triggerEventsName(unsigned int maskA, unsigned int maskB, unsigned int maskC)
{
    const QLatin1String separator(", ");
    QString keys;
    // Row 0, "All Events", is never listed.
    for (int i = 1; i < kTriggerEventCount; ++i) {
        const quint32 mask = sTriggerEvents[i].mask;
        if ((mask & maskA) != 0 && (mask & maskB) != 0 && (mask & maskC) != 0) {
            keys += QLatin1String(sTriggerEvents[i].key);
            keys += separator;
        }
    }
    if (keys.endsWith(separator))
        keys.chop(separator.size());
    return keys;
}

} // namespace ko
