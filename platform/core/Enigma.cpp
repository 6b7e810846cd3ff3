#include "platform/core/Enigma.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace ko
{

static_assert(sizeof(unsigned) == 4, "the cipher state is a 32-bit word");

namespace
{

unsigned step(unsigned state)
{
    return ((state * 1103515245u + 12345u) >> 16) & 0x7fffu;
}

unsigned char key(unsigned state)
{
    return static_cast<unsigned char>((state ^ (state >> 8) ^ (state >> 16) ^ (state >> 24)) & 0xffu);
}

// Every state is in [0, kStates) after one step.
constexpr unsigned kStates = 0x8000;
// Marks a state that is not on a cycle.
constexpr uint16_t kOffCycle = 0xffff;
// The key stream of a cycle is stored repeated, so that a block can always
// take at least this many bytes in one run, whatever cycle position it starts at.
constexpr unsigned kMinKeyRun = 4096;

struct Cycle
{
    unsigned first;     // index of its first state in KeyStreams::cycleStates
    unsigned length;    // number of states on the cycle
    unsigned keyOffset; // index of its key stream in KeyStreams::keys
    unsigned keyLength; // length of that key stream: a multiple of length, at least kMinKeyRun + length - 1
};

// Every state runs into a short cycle of the 15-bit states, after which its key stream repeats:
// the key streams of the cycles, ready to be combined with the data.
struct KeyStreams
{
    uint16_t position[kStates]; // index in cycleStates of a state on a cycle, else kOffCycle
    std::vector<uint16_t> cycleStates;
    std::vector<uint16_t> cycleOf; // per index of cycleStates: its cycle in cycles
    std::vector<Cycle> cycles;
    std::vector<unsigned char> keys;

    KeyStreams();
};

KeyStreams::KeyStreams()
{
    std::fill(position, position + kStates, kOffCycle);
    // Walk from every unvisited state; a walk that meets a state of its own path has found a new cycle.
    std::vector<uint8_t> mark(kStates, 0); // 0 unvisited, 1 on the current walk, 2 done
    std::vector<unsigned> path;
    for (unsigned start = 0; start < kStates; ++start) {
        path.clear();
        unsigned s = start;
        while (mark[s] == 0) {
            mark[s] = 1;
            path.push_back(s);
            s = step(s);
        }
        if (mark[s] == 1) {
            Cycle cycle{unsigned(cycleStates.size()), 0, unsigned(keys.size()), 0};
            unsigned c = s;
            do {
                position[c] = uint16_t(cycleStates.size());
                cycleStates.push_back(uint16_t(c));
                cycleOf.push_back(uint16_t(cycles.size()));
                ++cycle.length;
                c = step(c);
            } while (c != s);
            cycle.keyLength = (kMinKeyRun + 2 * cycle.length - 2) / cycle.length * cycle.length;
            for (unsigned i = 0; i < cycle.keyLength; ++i)
                keys.push_back(key(cycleStates[cycle.first + i % cycle.length]));
            cycles.push_back(cycle);
        }
        for (unsigned p : path)
            mark[p] = 2;
    }
}

const KeyStreams& keyStreams()
{
    // Built on first use (thread-safe) and never destroyed, so it serves until the process ends.
    static const KeyStreams* const table = new KeyStreams;
    return *table;
}

// Sixty-four bytes, which the compiler keeps in as many vector registers as the target needs.
typedef unsigned char Block __attribute__((vector_size(64)));

// Combines @p length bytes of @p src with @p keys into @p dst (which may be @p src). Built for
// AVX2 and for the baseline; the loader picks the one the processor runs.
__attribute__((target_clones("avx2", "default")))
void xorBlock(const unsigned char* src, const unsigned char* keys, unsigned char* dst, unsigned length)
{
    unsigned i = 0;
    for (; i + sizeof(Block) <= length; i += sizeof(Block)) {
        Block data;
        Block key;
        std::memcpy(&data, src + i, sizeof(Block));
        std::memcpy(&key, keys + i, sizeof(Block));
        data ^= key;
        std::memcpy(dst + i, &data, sizeof(Block));
    }
    for (; i < length; ++i)
        dst[i] = src[i] ^ keys[i];
}

// Combines @p length bytes with the key stream that starts at @p state and
// returns the state after them; @p src and @p dst may be the same buffer.
unsigned transform(const unsigned char* src, unsigned char* dst, unsigned length, unsigned state)
{
    const KeyStreams& k = keyStreams();
    unsigned i = 0;
    // Off the cycle (a seed above 15 bits, or a state on its way in): byte by byte.
    while (i < length && (state >= kStates || k.position[state] == kOffCycle)) {
        dst[i] = src[i] ^ key(state);
        state = step(state);
        ++i;
    }
    if (i == length)
        return state;

    const unsigned position = k.position[state];
    const Cycle& cycle = k.cycles[k.cycleOf[position]];
    const unsigned char* keys = k.keys.data() + cycle.keyOffset;
    unsigned offset = position - cycle.first;
    while (i < length) {
        const unsigned run = length - i < cycle.keyLength - offset ? length - i : cycle.keyLength - offset;
        xorBlock(src + i, keys + offset, dst + i, run);
        i += run;
        offset = (offset + run) % cycle.length;
    }
    return k.cycleStates[cycle.first + offset];
}

} // namespace

Enigma::Enigma(const Random& random)
    : mSeed(random.seed() != 0 ? random.seed() : Random::nonZeroSeed())
    , mInitialState(mSeed)
    , mState(mSeed)
{
}

Enigma::~Enigma() = default;

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
