// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CIPHERSTEPS_P_H
#define KO_CIPHERSTEPS_P_H

namespace ko
{
namespace cipher
{

/**
 * One step of the cipher's generator, which ko::Enigma makes once per byte: the linear
 * congruential generator with multiplier 1103515245 and increment 12345, its state replaced
 * by its 15-bit output.
 */
constexpr unsigned step(unsigned state)
{
    return ((state * 1103515245u + 12345u) >> 16) & 0x7fffu;
}

/** The state @p steps steps after @p state, the same as calling step() that often, in constant
 * time. */
unsigned advance(unsigned state, unsigned long long steps);

} // namespace cipher
} // namespace ko

#endif // KO_CIPHERSTEPS_P_H
