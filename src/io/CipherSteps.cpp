// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/CipherSteps_p.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ko
{
namespace cipher
{

static_assert(sizeof(unsigned) == 4, "the cipher state is a 32-bit word");

namespace
{

// After one step every state is below this.
constexpr unsigned kStates = 0x8000;

// The step as a graph on the 15-bit states: every state runs along a tail into a cycle. The
// cycles are stored one after another in `cycle`; a state knows how long its tail is and at
// which index of `cycle` it arrives.
struct Orbits
{
    std::vector<uint16_t> tail; // per state: steps until it is on its cycle (0 on a cycle)
    std::vector<uint16_t> entry; // per state: index in `cycle` of the first cycle state it reaches
    std::vector<uint16_t> cycle; // the states of every cycle, each cycle in step order
    std::vector<uint16_t> first; // per index in `cycle`: where its cycle starts
    std::vector<uint16_t> length; // per index in `cycle`: how long its cycle is

    Orbits();
};

Orbits::Orbits()
    : tail(kStates, 0)
    , entry(kStates, 0)
{
    // Peel off the states nothing leads to, again and again: what is left lies on the cycles.
    // A state is peeled only after every state that leads to it.
    std::vector<unsigned> incoming(kStates, 0);
    for (unsigned s = 0; s < kStates; ++s)
        ++incoming[step(s)];
    std::vector<unsigned> peeled;
    for (unsigned s = 0; s < kStates; ++s) {
        if (incoming[s] == 0)
            peeled.push_back(s);
    }
    for (std::size_t i = 0; i < peeled.size(); ++i) {
        if (--incoming[step(peeled[i])] == 0)
            peeled.push_back(step(peeled[i]));
    }

    std::vector<bool> onTail(kStates, false);
    for (unsigned s : peeled)
        onTail[s] = true;
    std::vector<bool> stored(kStates, false);
    for (unsigned s = 0; s < kStates; ++s) {
        if (onTail[s] || stored[s])
            continue;
        const auto start = uint16_t(cycle.size());
        unsigned c = s;
        do {
            stored[c] = true;
            entry[c] = uint16_t(cycle.size());
            cycle.push_back(uint16_t(c));
            c = step(c);
        } while (c != s);
        const auto size = uint16_t(cycle.size() - start);
        first.resize(cycle.size(), start);
        length.resize(cycle.size(), size);
    }

    // In reverse peeling order each state's successor is done before the state itself.
    for (auto it = peeled.rbegin(); it != peeled.rend(); ++it) {
        const unsigned next = step(*it);
        tail[*it] = uint16_t(tail[next] + 1);
        entry[*it] = entry[next];
    }
}

const Orbits &orbits()
{
    // Built on first use (thread-safe) and never destroyed, so it serves until the process ends.
    static const Orbits *const table = new Orbits;
    return *table;
}

} // namespace

unsigned advance(unsigned state, unsigned long long steps)
{
    if (steps == 0)
        return state;
    const Orbits &o = orbits();
    unsigned s = step(state);
    --steps;
    if (steps < o.tail[s]) {
        // Still on the tail, which is shorter than a thousand steps.
        for (; steps > 0; --steps)
            s = step(s);
        return s;
    }
    const unsigned at = o.entry[s];
    const unsigned start = o.first[at];
    return o.cycle[start + (at - start + (steps - o.tail[s]) % o.length[at]) % o.length[at]];
}

} // namespace cipher
} // namespace ko
