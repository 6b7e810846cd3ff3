// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Enigma.h"

#include <QtTest>

#include <algorithm>
#include <random>
#include <vector>

namespace
{

// The cipher by its definition: one key byte and one step per byte.
unsigned byteLoop(const unsigned char *src, unsigned char *dst, unsigned length, unsigned state)
{
    for (unsigned i = 0; i < length; ++i) {
        dst[i] = src[i]
            ^ static_cast<unsigned char>(state ^ (state >> 8) ^ (state >> 16) ^ (state >> 24));
        state = ((state * 1103515245u + 12345u) >> 16) & 0x7fffu;
    }
    return state;
}

} // namespace

// The stand-in's fast key stream against the byte-by-byte definition.
class tst_EnigmaFast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void encodeMatchesByteLoop_data();
    void encodeMatchesByteLoop();
};

// Every seed class (zero, small, the top of the 15-bit range, large, 0xFFFFFFFF) and random
// starting states anywhere: above 15 bits, on a tail, on a cycle.
void tst_EnigmaFast::encodeMatchesByteLoop_data()
{
    QTest::addColumn<uint>("seed");
    for (unsigned seed : { 0u, 1u, 7u, 0x7fffu, 0x89abcdefu, 0x80000000u, 0xffffffffu })
        QTest::addRow("seed %x", seed) << seed;
    std::mt19937 random(42);
    for (int i = 0; i < 8; ++i) {
        const unsigned seed = i % 2 ? unsigned(random()) : unsigned(random()) & 0x7fffu;
        QTest::addRow("random %x", seed) << seed;
    }
}

void tst_EnigmaFast::encodeMatchesByteLoop()
{
    QFETCH(uint, seed);
    ko::Enigma engine { ko::Random(seed) };
    std::mt19937 random(seed ^ 0x5eedu);
    std::uniform_int_distribution<unsigned> byte(0, 255);
    for (unsigned length :
        { 0u, 1u, 7u, 8u, 9u, 63u, 64u, 65u, 763u, 764u, 4095u, 4096u, 65537u, 1u << 20 }) {
        std::vector<unsigned char> plain(length);
        for (auto &b : plain)
            b = static_cast<unsigned char>(byte(random));
        std::vector<unsigned char> expected(length);
        const unsigned expectedState
            = byteLoop(plain.data(), expected.data(), length, engine.initialState());

        // The same bytes in pieces of random size, the state carried from piece to piece.
        std::vector<unsigned char> cipher(length + 1);
        unsigned state = engine.initialState();
        std::uniform_int_distribution<unsigned> piece(0, length / 3 + 1);
        for (unsigned done = 0; done < length;) {
            const unsigned n = std::min(piece(random), length - done);
            QCOMPARE(engine.encode(plain.data() + done, n, cipher.data() + done, n, state), int(n));
            done += n;
        }
        QCOMPARE(state, expectedState);
        QVERIFY(std::equal(expected.begin(), expected.end(), cipher.begin()));

        state = engine.initialState();
        QCOMPARE(engine.decode(cipher.data(), length, cipher.data(), length, state), int(length));
        QCOMPARE(state, expectedState);
        QVERIFY(std::equal(plain.begin(), plain.end(), cipher.begin()));
    }
}

QTEST_GUILESS_MAIN(tst_EnigmaFast)
#include "tst_EnigmaFast.moc"
