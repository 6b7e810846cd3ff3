// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komPerlStyleHash.h"

komPerlStyleHash::KeyValuePair::KeyValuePair(const komString &key, const komString &value)
    : mKey(key)
    , mValue(value)
{ }

komPerlStyleHash::Iterator::Iterator(const std::vector<KeyValuePair> &pairs)
    : mPairs(&pairs)
    , mNext(0)
{ }

const komPerlStyleHash::KeyValuePair *komPerlStyleHash::Iterator::nextItem()
{
    return mNext < mPairs->size() ? &(*mPairs)[mNext++] : nullptr;
}

komPerlStyleHash::komPerlStyleHash() = default;

komString &komPerlStyleHash::operator[](const komString &key)
{
    auto it = mIndex.find(key);
    if (it == mIndex.end()) {
        it = mIndex.emplace(key, mPairs.size()).first;
        mPairs.emplace_back(key, komString());
    }
    return mPairs[it->second].mValue;
}

bool komPerlStyleHash::contains(const komString &key) const
{
    return mIndex.count(key) != 0;
}

komPerlStyleHash::Iterator komPerlStyleHash::iterator() const
{
    return Iterator(mPairs);
}
