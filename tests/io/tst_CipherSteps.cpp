// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/CipherSteps_p.h"
#include "platform/core/Enigma.h"

#include <QtTest>

#include <algorithm>
#include <random>
#include <vector>

namespace
{

// Every seed class: zero, small, the top of the 15-bit range, large, 0xFFFFFFFF.
const unsigned kSeeds[] = { 0u, 1u, 7u, 0x7fffu, 0x89abcdefu, 0x80000000u, 0xffffffffu };

} // namespace

class tst_CipherSteps : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void stepIsTheEnginesStep_data();
    void stepIsTheEnginesStep();
    void advanceMatchesLoopUpToBillion();
    void advanceMatchesLoopFromEveryState();
};

void tst_CipherSteps::stepIsTheEnginesStep_data()
{
    QTest::addColumn<uint>("state");
    QTest::addColumn<uint>("bytes");
    for (unsigned seed : kSeeds) {
        for (unsigned bytes : { 1u, 2u, 764u, 100000u })
            QTest::addRow("%x, %u bytes", seed, bytes) << seed << bytes;
    }
}

// The engine steps its state once per byte: as many steps of our own arithmetic land on the
// state the engine ends at.
void tst_CipherSteps::stepIsTheEnginesStep()
{
    QFETCH(uint, state);
    QFETCH(uint, bytes);
    const ko::Enigma engine { ko::Random(1) };
    std::vector<unsigned char> data(bytes);
    unsigned engineState = state;
    QCOMPARE(engine.encode(data.data(), bytes, data.data(), bytes, engineState), int(bytes));
    unsigned walked = state;
    for (unsigned i = 0; i < bytes; ++i)
        walked = ko::cipher::step(walked);
    QCOMPARE(walked, engineState);
    QCOMPARE(ko::cipher::advance(state, bytes), engineState);
}

void tst_CipherSteps::advanceMatchesLoopUpToBillion()
{
    // Every seed class walked side by side to 10^9, compared at random offsets on the way.
    constexpr int count = int(sizeof(kSeeds) / sizeof(kSeeds[0]));
    std::mt19937_64 random(2024);
    std::vector<unsigned long long> offsets { 0, 1, 2, 31, 32, 33, 763, 764, 765, 1024,
        1000000000ull };
    std::uniform_int_distribution<unsigned long long> anywhere(0, 1000000000ull);
    for (int i = 0; i < 300; ++i)
        offsets.push_back(anywhere(random));
    std::sort(offsets.begin(), offsets.end());

    unsigned states[count];
    std::copy(kSeeds, kSeeds + count, states);
    unsigned long long walked = 0;
    for (unsigned long long offset : offsets) {
        for (; walked < offset; ++walked) {
            for (unsigned &state : states)
                state = ko::cipher::step(state);
        }
        for (int i = 0; i < count; ++i) {
            if (ko::cipher::advance(kSeeds[i], offset) != states[i])
                QFAIL(qPrintable(QStringLiteral("seed %1, offset %2").arg(kSeeds[i]).arg(offset)));
        }
    }
}

void tst_CipherSteps::advanceMatchesLoopFromEveryState()
{
    // Every 15-bit state, over more steps than the longest tail, so that both
    // the walk along a tail and the jump around a cycle are covered.
    for (unsigned start = 0; start < 0x8000u; ++start) {
        unsigned state = start;
        for (unsigned steps = 0; steps < 1100; ++steps) {
            if ((steps + start) % 5 == 0 && ko::cipher::advance(start, steps) != state)
                QFAIL(qPrintable(QStringLiteral("state %1, %2 steps").arg(start).arg(steps)));
            state = ko::cipher::step(state);
        }
    }
}

QTEST_GUILESS_MAIN(tst_CipherSteps)
#include "tst_CipherSteps.moc"
