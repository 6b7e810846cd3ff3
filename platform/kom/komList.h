// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_LIST_H
#define KOM_LIST_H

#include "platform/kom/komString.h"
#include "platform/kom/kom_export.h"

#include <algorithm>
#include <vector>

/** The middleware's ordered list of values. */
template <class T> class komList
{
public:
    /** An empty list. */
    komList() = default;
    /** Destroys the list and its items. */
    virtual ~komList() = default;

    /** Appends @p item; when @p unique is true an item already in the list is not added again. */
    void add(const T &item, bool unique)
    {
        if (unique && std::find(mItems.begin(), mItems.end(), item) != mItems.end())
            return;
        mItems.push_back(item);
    }
    /** Number of items. */
    virtual int size() const { return int(mItems.size()); }
    /** The item at @p index (0-based); the index must be below size(). */
    T operator[](int index) const { return mItems.at(size_t(index)); }
    /** Removes every item. */
    void clear() { mItems.clear(); }

private:
    std::vector<T> mItems;
};

/** A list of middleware strings. */
class KOM_EXPORT komStringList : public komList<komString>
{
public:
    /** An empty list. */
    komStringList();
    /** Releases the strings. */
    ~komStringList() override;
};

#endif // KOM_LIST_H
