// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "camera/EventTypes.h"

#include <QtTest>

#include <climits>

class tst_EventTypes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableShape();
    void nameOfKey_data();
    void nameOfKey();
    void eventsOfMasks_data();
    void eventsOfMasks();
    void profileKeys_data();
    void profileKeys();
};

void tst_EventTypes::tableShape()
{
    // Bits 0 to 27 each belong to exactly one event; no event but "AE" has bits 28 to 31.
    const QStringList ownerOfBit { "EC", "EL", "EL2", "VM", "VM2", "MI", "SI", "SI2", "SI3", "SI4",
        "PE", "TT", "UC", "BT", "BR", "BL", "RC", "TP", "IL", "IL2", "RD", "PI", "IR", "CI", "RB",
        "RE", "RT", "RH" };
    for (int bit = 0; bit < 32; ++bit)
        QCOMPARE(ko::triggerEventsName(1u << bit, 0xFFFFFFFF, 0xFFFFFFFF), ownerOfBit.value(bit));
    QCOMPARE(ko::sTriggerEvents[0].mask, 0xFFFFFFFFu);
    for (const ko::TriggerEventRow &row : ko::sTriggerEvents)
        QCOMPARE(row.reserved, 0u);

    // By index: the first and last of the 48 rows; outside the table an empty string.
    QCOMPARE(ko::triggerEventName(0), QStringLiteral("All Events"));
    QCOMPARE(ko::triggerEventName(47), QStringLiteral("Connection Lost"));
    for (int index : { -1, 48, INT_MIN })
        QCOMPARE(ko::triggerEventName(index), QString());
}

void tst_EventTypes::nameOfKey_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("name");

    const auto row = [](const char *name, const char *key, const char *text) {
        QTest::newRow(name) << key << text;
    };
    row("IL2 text without its 2", "IL2", "Illumination (IL2)");
    row("SI5 named SI4", "SI5", "Signal Input 5 (SI4)");
    row("SI1 named SI", "SI", "Signal Input 1 (SI)");
    row("case matters", "ae", "ae");
    row("camel-case key", "RingOK", "Bell Pressed");
    row("no trimming", "VM ", "VM ");
    row("empty", "", "");
    row("mailbox prefix only", "AMB_", "Mailbox Message (AMB_)");
    row("mailbox", "AMB_17", "Mailbox Message (AMB_17)");
    row("end of message", "AME_X", "End of Message (AME_X)");
    row("mailbox case matters", "amb_1", "amb_1");
    row("prefix not at start", "XAMB_1", "XAMB_1");
}

void tst_EventTypes::nameOfKey()
{
    QFETCH(QString, key);
    QTEST(ko::triggerEventName(key), "name");
}

void tst_EventTypes::eventsOfMasks_data()
{
    QTest::addColumn<uint>("maskA");
    QTest::addColumn<uint>("maskB");
    QTest::addColumn<uint>("maskC");
    QTest::addColumn<QString>("keys");

    const auto row = [](const char *name, uint a, uint b, uint c, const char *keys) {
        QTest::newRow(name) << a << b << c << keys;
    };
    const uint all = 0xFFFFFFFF;
    row("all", all, all, all,
        "VM, VM2, PI, IL, IL2, MI, TP, UC, BT, BR, BL, IR, SI, SI2, SI3, SI4, RC, CI, PE, TT, RD, "
        "EC, EL, EL2, RB, RE, RH, RT");
    row("bit per mask, no common row", 0x8u, 0x10u, all, "");
    row("table order, not bit order", 0x0C000000u, all, all, "RH, RT");
    row("intersection of three", 0x7u, 0x6u, 0x3u, "EL");
    row("mask C selects", all, all, 0x00000201u, "SI4, EC");
    row("high bits only", 0xF0000000u, all, all, "");
}

void tst_EventTypes::eventsOfMasks()
{
    QFETCH(uint, maskA);
    QFETCH(uint, maskB);
    QFETCH(uint, maskC);
    QTEST(ko::triggerEventsName(maskA, maskB, maskC), "keys");
}

void tst_EventTypes::profileKeys_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("key");

    QTest::newRow("first") << 0 << QStringLiteral("ENV");
    QTest::newRow("last") << ko::kEventProfileTypeCount - 1 << QStringLiteral("TIM");
    for (int type : { 7, -1, INT_MIN })
        QTest::addRow("%d", type) << type << QString();
}

void tst_EventTypes::profileKeys()
{
    QFETCH(int, type);
    QFETCH(QString, key);

    const QString &result = ko::getEventProfileKey(static_cast<ko::EEventProfileTypes>(type));
    QCOMPARE(result, key);
    QCOMPARE(result.isNull(), key.isNull());
    if (key.isNull())
        QCOMPARE(&result, &ko::k_envProfileInvalidKey);
}

QTEST_GUILESS_MAIN(tst_EventTypes)
#include "tst_EventTypes.moc"
