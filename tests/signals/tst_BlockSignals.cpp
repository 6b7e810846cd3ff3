// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "signals/BlockSignals.h"

#include <QtTest>

class tst_BlockSignals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sequences_data();
    void sequences();
    void setWhileHolding();
    void guardRestores();
};

namespace
{
QString states(const QList<QObject *> &objects)
{
    QString s;
    for (QObject *o : objects)
        s += o->signalsBlocked() ? QLatin1Char('B') : QLatin1Char('-');
    return s;
}
} // namespace

void tst_BlockSignals::sequences_data()
{
    QTest::addColumn<QString>("initial"); // B = blocked before, - = not
    QTest::addColumn<QString>("calls"); // 1 = block(true), 0 = block(false)
    QTest::addColumn<QString>("expected");
    QTest::newRow("restore mixed states") << "B-B"
                                          << "10"
                                          << "B-B";
    QTest::newRow("blocked while held") << "--"
                                        << "1"
                                        << "BB";
    QTest::newRow("false without true unblocks all") << "B-"
                                                     << "0"
                                                     << "--";
    QTest::newRow("two levels lose the first") << "--"
                                               << "110"
                                               << "BB";
    QTest::newRow("restore twice unblocks") << "B-"
                                            << "100"
                                            << "--";
    QTest::newRow("empty group") << ""
                                 << "10"
                                 << "";
}

void tst_BlockSignals::sequences()
{
    QFETCH(QString, initial);
    QFETCH(QString, calls);
    std::vector<std::unique_ptr<QObject>> owned;
    QList<QObject *> objects;
    for (QChar c : initial) {
        owned.emplace_back(new QObject);
        owned.back()->blockSignals(c == QLatin1Char('B'));
        objects << owned.back().get();
    }
    ko::BlockSignals blocker;
    blocker.set(objects);
    QCOMPARE(states(objects), initial); // set() alone blocks nothing
    for (QChar c : calls)
        blocker.block(c == QLatin1Char('1'));
    QTEST(states(objects), "expected");
}

void tst_BlockSignals::setWhileHolding()
{
    QObject a, b, c;
    b.blockSignals(true);
    ko::BlockSignals blocker;
    blocker.set({ &a, &b });
    blocker.block(true);
    blocker.set({ &c });
    QCOMPARE(states({ &a, &b, &c }), QStringLiteral("-B-"));
    QCOMPARE(blocker.objects(), QList<QObject *> { &c });

    // A group that changed size since block(true) is unblocked as a whole.
    blocker.block(true);
    a.blockSignals(true);
    blocker.set({ &c });
    QCOMPARE(states({ &a, &c }), QStringLiteral("B-"));
}

void tst_BlockSignals::guardRestores()
{
    QObject sender;
    QSignalSpy spy(&sender, &QObject::objectNameChanged);
    {
        ko::StBlockSignals guard({ &sender });
        sender.setObjectName(QStringLiteral("silent"));
        QCOMPARE(spy.count(), 0);
    }
    sender.setObjectName(QStringLiteral("heard"));
    QCOMPARE(spy.count(), 1);

    // A plain BlockSignals destroyed while holding leaves its objects blocked.
    {
        ko::BlockSignals plain;
        plain.set({ &sender });
        plain.block(true);
    }
    QVERIFY(sender.signalsBlocked());
}

QTEST_GUILESS_MAIN(tst_BlockSignals)
#include "tst_BlockSignals.moc"
