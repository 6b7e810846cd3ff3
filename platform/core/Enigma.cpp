#include "platform/core/Enigma.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace ko
{

static_assert(sizeof(unsigned) == 4, "the cipher state is a 32-bit word");

namespace
{

// Every state is in [0, kStates) after one step.
constexpr unsigned kStates = 0x8000;
// Stride of the jump table that shortens walks along the tail of an orbit.
constexpr unsigned kJump = 32;
// The key stream of a cycle is stored repeated, so that a block can always
// take at least this many bytes in one run, whatever cycle position it starts at.
constexpr unsigned kMinKeyRun = 4096;

struct Cycle
{
    unsigned first;     // index of its first state in Orbits::cycleStates
    unsigned length;    // number of states on the cycle
    unsigned keyOffset; // index of its key stream in Orbits::keys
    unsigned keyLength; // length of that key stream: a multiple of length, at least kMinKeyRun + length - 1
};

// The orbit structure of the step over the 15-bit states: each state runs
// along its tail into one cycle, and the cycles are stored one after another.
struct Orbits
{
    uint16_t tail[kStates];  // steps until the state is on its cycle (0 on the cycle)
    uint16_t entry[kStates]; // index in cycleStates of the first cycle state it reaches
    uint16_t jump[kStates];  // the state kJump steps ahead
    std::vector<uint16_t> cycleStates;
    std::vector<uint16_t> cycleOf; // per index of cycleStates: its cycle in cycles
    std::vector<Cycle> cycles;
    std::vector<unsigned char> keys;

    Orbits();
};

Orbits::Orbits()
{
    // Find the cycles: walk from every unvisited state; a walk that meets a
    // state of its own path has found a new cycle.
    std::vector<uint8_t> mark(kStates, 0); // 0 unvisited, 1 on the current walk, 2 done
    std::vector<unsigned> path;
    for (unsigned start = 0; start < kStates; ++start) {
        path.clear();
        unsigned s = start;
        while (mark[s] == 0) {
            mark[s] = 1;
            path.push_back(s);
            s = Enigma::step(s);
        }
        if (mark[s] == 1) {
            Cycle cycle{unsigned(cycleStates.size()), 0, unsigned(keys.size()), 0};
            unsigned c = s;
            do {
                tail[c] = 0;
                entry[c] = uint16_t(cycleStates.size());
                cycleStates.push_back(uint16_t(c));
                cycleOf.push_back(uint16_t(cycles.size()));
                ++cycle.length;
                c = Enigma::step(c);
            } while (c != s);
            cycle.keyLength = (kMinKeyRun + 2 * cycle.length - 2) / cycle.length * cycle.length;
            for (unsigned i = 0; i < cycle.keyLength; ++i)
                keys.push_back(Enigma::key(cycleStates[cycle.first + i % cycle.length]));
            cycles.push_back(cycle);
        }
        for (unsigned p : path)
            mark[p] = 2;
    }

    // Tails: a state off its cycle has the tail of its successor plus one.
    std::vector<bool> known(kStates, false);
    for (uint16_t c : cycleStates)
        known[c] = true;
    for (unsigned start = 0; start < kStates; ++start) {
        path.clear();
        unsigned s = start;
        while (!known[s]) {
            path.push_back(s);
            s = Enigma::step(s);
        }
        for (auto it = path.rbegin(); it != path.rend(); ++it) {
            tail[*it] = uint16_t(tail[s] + 1);
            entry[*it] = entry[s];
            known[*it] = true;
            s = *it;
        }
    }

    for (unsigned s = 0; s < kStates; ++s) {
        unsigned ahead = s;
        for (unsigned i = 0; i < kJump; ++i)
            ahead = Enigma::step(ahead);
        jump[s] = uint16_t(ahead);
    }
}

const Orbits& orbits()
{
    // Built on first use (thread-safe) and never destroyed, so it serves until the process ends.
    static const Orbits* const table = new Orbits;
    return *table;
}

// Sixteen bytes that the compiler keeps in one vector register where the target has them.
typedef unsigned char Block __attribute__((vector_size(16)));

inline void xor16(const unsigned char* src, const unsigned char* keys, unsigned char* dst)
{
    Block data;
    Block key;
    std::memcpy(&data, src, 16);
    std::memcpy(&key, keys, 16);
    data ^= key;
    std::memcpy(dst, &data, 16);
}

void xorBlock(const unsigned char* src, const unsigned char* keys, unsigned char* dst, unsigned length)
{
    unsigned i = 0;
    for (; i + 64 <= length; i += 64) {
        xor16(src + i, keys + i, dst + i);
        xor16(src + i + 16, keys + i + 16, dst + i + 16);
        xor16(src + i + 32, keys + i + 32, dst + i + 32);
        xor16(src + i + 48, keys + i + 48, dst + i + 48);
    }
    for (; i + 16 <= length; i += 16)
        xor16(src + i, keys + i, dst + i);
    for (; i < length; ++i)
        dst[i] = src[i] ^ keys[i];
}

// Combines @p length bytes with the key stream that starts at @p state and
// returns the state after them; @p src and @p dst may be the same buffer.
unsigned transform(const unsigned char* src, unsigned char* dst, unsigned length, unsigned state)
{
    const Orbits& o = orbits();
    unsigned i = 0;
    // Off the cycle (a seed above 15 bits, or a state on its way in): byte by byte.
    while (i < length && (state >= kStates || o.tail[state] != 0)) {
        dst[i] = src[i] ^ Enigma::key(state);
        state = Enigma::step(state);
        ++i;
    }
    if (i == length)
        return state;

    const unsigned position = o.entry[state];
    const Cycle& cycle = o.cycles[o.cycleOf[position]];
    const unsigned char* keys = o.keys.data() + cycle.keyOffset;
    unsigned offset = position - cycle.first;
    while (i < length) {
        const unsigned run = length - i < cycle.keyLength - offset ? length - i : cycle.keyLength - offset;
        xorBlock(src + i, keys + offset, dst + i, run);
        i += run;
        offset = (offset + run) % cycle.length;
    }
    return o.cycleStates[cycle.first + offset];
}

} // namespace

Enigma::Enigma(const Random& random)
    : mSeed(random.seed() != 0 ? random.seed() : Random::nonZeroSeed())
    , mInitialState(mSeed)
    , mState(mSeed)
{
}

Enigma::~Enigma() = default;

unsigned Enigma::advance(unsigned state, unsigned long long steps)
{
    if (steps == 0)
        return state;
    const Orbits& o = orbits();
    unsigned s = step(state);
    --steps;
    const unsigned tail = o.tail[s];
    if (steps >= tail) {
        const unsigned position = o.entry[s];
        const Cycle& cycle = o.cycles[o.cycleOf[position]];
        const unsigned offset = position - cycle.first;
        return o.cycleStates[cycle.first + (offset + (steps - tail) % cycle.length) % cycle.length];
    }
    // Fewer steps than the tail is long (under a thousand): jump, then step.
    for (; steps >= kJump; steps -= kJump)
        s = o.jump[s];
    for (; steps > 0; --steps)
        s = step(s);
    return s;
}

int Enigma::encode(const unsigned char* src, unsigned srcLen, unsigned char* dst, unsigned dstLen,
                   unsigned& state) const
{
    if (!src || !dst || dstLen < srcLen || srcLen > 0x7fffffffu)
        return -1;
    state = transform(src, dst, srcLen, state);
    return int(srcLen);
}

int Enigma::decode(const unsigned char* src, unsigned srcLen, unsigned char* dst, unsigned dstLen,
                   unsigned& state) const
{
    return encode(src, srcLen, dst, dstLen, state);
}

} // namespace ko
