// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_RANDOM_H
#define KO_RANDOM_H

#include "platform/core/core_export.h"

#include <cstdint>

namespace ko
{

/** A generator value of two 32-bit words, the seed first; it keys a ko::Enigma. */
class CORE_EXPORT Random
{
public:
    /** Creates the value from its two words. */
    explicit Random(uint32_t seed = 0, uint32_t second = 0);

    /** The first word, the seed. */
    uint32_t seed() const { return mWords[0]; }
    /** The second word. */
    uint32_t second() const { return mWords[1]; }

    /** A non-zero 32-bit value from the system's entropy source. */
    static uint32_t nonZeroSeed();

private:
    uint32_t mWords[2];
};

} // namespace ko

#endif // KO_RANDOM_H
