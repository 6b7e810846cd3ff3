// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "EventCommands.h"

#include "Arguments.h"
#include "Output.h"

#include "camera/EventTypes.h"
#include "camera/ImageTypes.h"

namespace tool
{

namespace
{

bool isKnownEventKey(const QString &key)
{
    return ko::indexOfKey(ko::sTriggerEvents, key) >= 0 || key.startsWith(ko::kMessageBeginTrigger)
        || key.startsWith(ko::kMessageEndTrigger);
}

int runEvents(const Invocation &invocation)
{
    // A mask left out selects everything, as callers of the library pass 0xFFFFFFFF for it.
    quint32 masks[3] = { 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF };
    for (int i = 0; i < invocation.arguments.size(); ++i)
        masks[i] = parseUInt32(QStringLiteral("mask"), invocation.arguments.at(i));

    Report report(Report::Rows);
    const QString keys = ko::triggerEventsName(masks[0], masks[1], masks[2]);
    for (const QString &key : keys.split(QStringLiteral(", "), Qt::SkipEmptyParts))
        report.addRow(eventRecord(key));
    report.print(invocation.format);
    return 0;
}

int runEvent(const Invocation &invocation)
{
    Report report(Report::Rows);
    for (const QString &key : invocation.arguments) {
        if (!isKnownEventKey(key))
            badInput(QStringLiteral("event key"), key,
                QStringLiteral("not a trigger event key nor a mailbox key (AMB_..., AME_...); keys "
                               "are case-sensitive"));
        report.addRow(eventRecord(key));
    }
    report.print(invocation.format);
    return 0;
}

} // namespace

Record eventRecord(const QString &key)
{
    const int row = ko::indexOfKey(ko::sTriggerEvents, key);
    const quint32 mask = row < 0 ? 0 : ko::sTriggerEvents[row].mask;
    Record record;
    record.add(QStringLiteral("key"), key)
        .add(QStringLiteral("mask"), mask ? QJsonValue(hex32(mask)) : QJsonValue())
        .add(QStringLiteral("text"), ko::triggerEventName(key));
    return record;
}

const Command kEventsCommand = { "events", "MASK [MASK MASK]",
    "Lists the trigger events whose bit is in every mask (decimal or 0x-hexadecimal; a mask left "
    "out selects all): key, mask, display text.",
    1, 3, nullptr, runEvents, "coreqt events 0x18" };

const Command kEventCommand = { "event", "KEY [KEY...]",
    "Shows the display text of trigger event keys (case-sensitive), mailbox keys AMB_... and "
    "AME_... included: key, mask, display text.",
    1, -1, nullptr, runEvent, "coreqt event VM SI5 AMB_17" };

} // namespace tool
