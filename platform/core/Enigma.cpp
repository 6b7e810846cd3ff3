// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Enigma.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#if defined(__x86_64__)
#include <immintrin.h>
#endif

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
    return static_cast<unsigned char>(
        (state ^ (state >> 8) ^ (state >> 16) ^ (state >> 24)) & 0xffu);
}

// Each of these combines @p length bytes of @p src with @p keys into @p dst, which may be @p src.
typedef void (*XorFunction)(
    const unsigned char *src, const unsigned char *keys, unsigned char *dst, unsigned length);

// Sixteen bytes, which the compiler keeps in one vector register where the target has them.
typedef unsigned char Block __attribute__((vector_size(16)));

void xorPortable(
    const unsigned char *src, const unsigned char *keys, unsigned char *dst, unsigned length)
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

#if defined(__x86_64__)
__attribute__((target("avx2"))) void xorAvx2(
    const unsigned char *src, const unsigned char *keys, unsigned char *dst, unsigned length)
{
    // Up to where dst is aligned first, so that no store spans two cache lines.
    unsigned i = std::min(length, unsigned(-reinterpret_cast<std::uintptr_t>(dst) & 31u));
    xorPortable(src, keys, dst, i);
    for (; i + 32 <= length; i += 32) {
        const __m256i data = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(src + i));
        const __m256i key = _mm256_loadu_si256(reinterpret_cast<const __m256i *>(keys + i));
        _mm256_store_si256(reinterpret_cast<__m256i *>(dst + i), _mm256_xor_si256(data, key));
    }
    xorPortable(src + i, keys + i, dst + i, length - i);
}

__attribute__((target("avx512f"))) void xorAvx512(
    const unsigned char *src, const unsigned char *keys, unsigned char *dst, unsigned length)
{
    unsigned i = std::min(length, unsigned(-reinterpret_cast<std::uintptr_t>(dst) & 63u));
    xorPortable(src, keys, dst, i);
    for (; i + 64 <= length; i += 64) {
        const __m512i data = _mm512_loadu_si512(src + i);
        const __m512i key = _mm512_loadu_si512(keys + i);
        _mm512_store_si512(dst + i, _mm512_xor_si512(data, key));
    }
    xorPortable(src + i, keys + i, dst + i, length - i);
}
#endif

// The widest of the above that the processor runs.
XorFunction fastestXor()
{
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f"))
        return xorAvx512;
    if (__builtin_cpu_supports("avx2"))
        return xorAvx2;
#endif
    return xorPortable;
}

// Every state is in [0, kStates) after one step.
constexpr unsigned kStates = 0x8000;
// Marks a state that is not on a cycle.
constexpr uint16_t kOffCycle = 0xffff;
// The key stream of a cycle is stored repeated, so that a block can always
// take at least this many bytes in one run, whatever cycle position it starts at.
constexpr unsigned kMinKeyRun = 4096;
// The widest vector the combining functions use, in bytes.
constexpr unsigned kVectorRun = 64;

struct Cycle
{
    unsigned first; // index of its first state in KeyStreams::cycleStates
    unsigned length; // number of states on the cycle
    unsigned keyOffset; // index of its key stream in KeyStreams::keys
    unsigned keyLength; // length of that key stream: a multiple of length, at least kMinKeyRun +
                        // length - 1
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
    XorFunction combine = fastestXor();

    KeyStreams();
};

KeyStreams::KeyStreams()
{
    std::fill(position, position + kStates, kOffCycle);
    // Walk from every unvisited state; a walk that meets a state of its own path has found a new
    // cycle.
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
            Cycle cycle { unsigned(cycleStates.size()), 0, unsigned(keys.size()), 0 };
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

const KeyStreams &keyStreams()
{
    // Built on first use (thread-safe) and never destroyed, so it serves until the process ends.
    static const KeyStreams *const table = new KeyStreams;
    return *table;
}

// Combines @p length bytes with the key stream that starts at @p state and
// returns the state after them; @p src and @p dst may be the same buffer.
unsigned transform(const unsigned char *src, unsigned char *dst, unsigned length, unsigned state)
{
    const KeyStreams &k = keyStreams();
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
    const Cycle &cycle = k.cycles[k.cycleOf[position]];
    const unsigned char *keys = k.keys.data() + cycle.keyOffset;
    unsigned offset = position - cycle.first;
    while (i < length) {
        // As far as the stored key stream reaches, ending where dst is aligned for the widest
        // vectors: only the first and the last run have bytes outside whole vectors.
        const unsigned available = cycle.keyLength - offset
            - unsigned((reinterpret_cast<std::uintptr_t>(dst + i) + cycle.keyLength - offset)
                % kVectorRun);
        const unsigned run = length - i < available ? length - i : available;
        k.combine(src + i, keys + offset, dst + i, run);
        i += run;
        offset = (offset + run) % cycle.length;
    }
    return k.cycleStates[cycle.first + offset];
}

} // namespace

Enigma::Enigma(const Random &random)
    : mSeed(random.seed() != 0 ? random.seed() : Random::nonZeroSeed())
    , mInitialState(mSeed)
    , mState(mSeed)
{ }

Enigma::~Enigma() = default;

int Enigma::encode(const unsigned char *src, unsigned srcLen, unsigned char *dst, unsigned dstLen,
    unsigned &state) const
{
    if (!src || !dst || dstLen < srcLen || srcLen > 0x7fffffffu)
        return -1;
    state = transform(src, dst, srcLen, state);
    return int(srcLen);
}

int Enigma::decode(const unsigned char *src, unsigned srcLen, unsigned char *dst, unsigned dstLen,
    unsigned &state) const
{
    return encode(src, srcLen, dst, dstLen, state);
}

} // namespace ko
