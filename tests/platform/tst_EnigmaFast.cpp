#include "platform/core/Enigma.h"

#include <QtTest>

#include <algorithm>
#include <random>
#include <vector>

namespace
{

// The cipher by its definition: one key byte and one step per byte.
unsigned byteLoop(const unsigned char* src, unsigned char* dst, unsigned length, unsigned state)
{
    for (unsigned i = 0; i < length; ++i) {
        dst[i] = src[i] ^ ko::Enigma::key(state);
        state = ko::Enigma::step(state);
    }
    return state;
}

// Every seed class: zero, small, the top of the 15-bit range, large, 0xFFFFFFFF.
const unsigned kSeeds[] = { 0u, 1u, 7u, 0x7fffu, 0x89abcdefu, 0x80000000u, 0xffffffffu };

} // namespace

class tst_EnigmaFast : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void advanceMatchesLoopUpToBillion();
    void advanceMatchesLoopFromEveryState();
    void encodeMatchesByteLoop_data();
    void encodeMatchesByteLoop();
};

void tst_EnigmaFast::advanceMatchesLoopUpToBillion()
{
    // Every seed class walked side by side to 10^9, compared at random offsets on the way.
    constexpr int count = int(sizeof(kSeeds) / sizeof(kSeeds[0]));
    std::mt19937_64 random(2024);
    std::vector<unsigned long long> offsets { 0, 1, 2, 31, 32, 33, 763, 764, 765, 1024, 1000000000ull };
    std::uniform_int_distribution<unsigned long long> anywhere(0, 1000000000ull);
    for (int i = 0; i < 300; ++i)
        offsets.push_back(anywhere(random));
    std::sort(offsets.begin(), offsets.end());

    unsigned states[count];
    std::copy(kSeeds, kSeeds + count, states);
    unsigned long long walked = 0;
    for (unsigned long long offset : offsets) {
        for (; walked < offset; ++walked) {
            for (unsigned& state : states)
                state = ko::Enigma::step(state);
        }
        for (int i = 0; i < count; ++i) {
            if (ko::Enigma::advance(kSeeds[i], offset) != states[i])
                QFAIL(qPrintable(QStringLiteral("seed %1, offset %2").arg(kSeeds[i]).arg(offset)));
        }
    }
}

void tst_EnigmaFast::advanceMatchesLoopFromEveryState()
{
    // Every 15-bit state, over more steps than the longest tail, so that both
    // the walk along a tail and the jump around a cycle are covered.
    for (unsigned start = 0; start < 0x8000u; ++start) {
        unsigned state = start;
        for (unsigned steps = 0; steps < 1100; ++steps) {
            if ((steps + start) % 5 == 0 && ko::Enigma::advance(start, steps) != state)
                QFAIL(qPrintable(QStringLiteral("state %1, %2 steps").arg(start).arg(steps)));
            state = ko::Enigma::step(state);
        }
    }
}

// The seed classes and random starting states anywhere: above 15 bits, on a tail, on a cycle.
void tst_EnigmaFast::encodeMatchesByteLoop_data()
{
    QTest::addColumn<uint>("seed");
    for (unsigned seed : kSeeds)
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
    for (unsigned length : { 0u, 1u, 7u, 8u, 9u, 763u, 764u, 4095u, 4096u, 65537u, 1u << 20 }) {
        std::vector<unsigned char> plain(length);
        for (auto& b : plain)
            b = static_cast<unsigned char>(byte(random));
        std::vector<unsigned char> expected(length);
        const unsigned expectedState = byteLoop(plain.data(), expected.data(), length, engine.initialState());

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
