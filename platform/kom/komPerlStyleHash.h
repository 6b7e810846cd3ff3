// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_PERLSTYLEHASH_H
#define KOM_PERLSTYLEHASH_H

#include "platform/kom/komString.h"
#include "platform/kom/kom_export.h"

#include <map>
#include <vector>

/** The middleware's string-to-string hash; iteration visits the pairs in the order their keys were
 * first stored. */
class KOM_EXPORT komPerlStyleHash
{
public:
    /** One key and its value. */
    class KOM_EXPORT KeyValuePair
    {
    public:
        /** The pair of @p key and @p value, both copied. */
        KeyValuePair(const komString &key, const komString &value);
        /** The key. */
        komString key() const { return mKey; }
        /** The value. */
        komString value() const { return mValue; }

    private:
        friend class komPerlStyleHash;
        komString mKey;
        komString mValue;
    };

    /** Walks all pairs of a hash; the hash must not change while it is walked. */
    class KOM_EXPORT Iterator
    {
    public:
        /** The next pair, or null after the last. */
        const KeyValuePair *nextItem();

    private:
        friend class komPerlStyleHash;
        explicit Iterator(const std::vector<KeyValuePair> &pairs);
        const std::vector<KeyValuePair> *mPairs;
        size_t mNext;
    };

    /** An empty hash. */
    komPerlStyleHash();

    /** The value under @p key, created empty when absent. */
    komString &operator[](const komString &key);
    /** True when @p key has a value. */
    bool contains(const komString &key) const;
    /** Number of pairs. */
    int size() const { return int(mPairs.size()); }
    /** An iterator over all pairs. */
    Iterator iterator() const;

private:
    std::vector<KeyValuePair> mPairs;
    std::map<komString, size_t> mIndex;
};

#endif // KOM_PERLSTYLEHASH_H
