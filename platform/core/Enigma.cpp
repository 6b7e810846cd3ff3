#include "platform/core/Enigma.h"

namespace ko
{

static_assert(sizeof(unsigned) == 4, "the cipher state is a 32-bit word");

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
    unsigned s = state;
    for (unsigned i = 0; i < srcLen; ++i) {
        dst[i] = src[i] ^ key(s);
        s = step(s);
    }
    state = s;
    return int(srcLen);
}

int Enigma::decode(const unsigned char* src, unsigned srcLen, unsigned char* dst, unsigned dstLen,
                   unsigned& state) const
{
    return encode(src, srcLen, dst, dstLen, state);
}

} // namespace ko
