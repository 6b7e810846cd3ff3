// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_ENIGMA_H
#define KO_ENIGMA_H

#include "platform/core/Random.h"
#include "platform/core/core_export.h"

namespace ko
{

/**
 * The suite's stream cipher engine. It hides data from casual reading and is
 * not cryptography.
 *
 * The state advances once per byte by the step
 * `state = ((state * 1103515245 + 12345) mod 2^32 >> 16) & 0x7fff`.
 * A byte is transformed with the state it meets, before the step:
 * `out = in ^ key(state)`, `key(s) = (s ^ (s >> 8) ^ (s >> 16) ^ (s >> 24)) & 0xff`.
 * Enciphering and deciphering are therefore the same operation.
 */
class CORE_EXPORT Enigma
{
public:
    /** Creates the engine from a generator value; a zero seed makes it choose a random non-zero
     * one. */
    explicit Enigma(const Random &random);
    /** Engines may be destroyed through this base. */
    virtual ~Enigma();

    /** The seed the engine works with (never 0). */
    unsigned seed() const { return mSeed; }
    /** The state before the first byte. */
    unsigned initialState() const { return mInitialState; }
    /** The current state, which the caller may set (for instance back to initialState()). */
    unsigned &state() { return mState; }
    /** The current state. */
    unsigned state() const { return mState; }

    /**
     * Enciphers @p srcLen bytes into @p dst (which may be @p src), advancing @p state once per
     * byte. Returns the number of bytes produced, or -1 for a null buffer or @p dstLen below @p
     * srcLen.
     */
    virtual int encode(const unsigned char *src, unsigned srcLen, unsigned char *dst,
        unsigned dstLen, unsigned &state) const;
    /** Deciphers like encode(); the two are the same transformation. */
    virtual int decode(const unsigned char *src, unsigned srcLen, unsigned char *dst,
        unsigned dstLen, unsigned &state) const;

private:
    unsigned mSeed;
    unsigned mInitialState;
    unsigned mState;
};

} // namespace ko

#endif // KO_ENIGMA_H
