// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Random.h"

#include <random>

namespace ko
{

static_assert(sizeof(Random) == 8, "a generator value is two 32-bit words");

Random::Random(uint32_t seed, uint32_t second)
    : mWords { seed, second }
{ }

uint32_t Random::nonZeroSeed()
{
    static thread_local std::random_device device;
    uint32_t value = 0;
    while (value == 0)
        value = device();
    return value;
}

} // namespace ko
