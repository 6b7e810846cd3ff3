// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komSmart.h"

namespace kom
{

struct SmartHandleCore::Group
{
    std::atomic<long> references;
    void *object;
    Deleter deleter;
};

SmartHandleCore::SmartHandleCore() noexcept
    : mGroup(nullptr)
{ }

SmartHandleCore::SmartHandleCore(const SmartHandleCore &other) noexcept
    : mGroup(other.mGroup)
{
    if (mGroup)
        mGroup->references.fetch_add(1, std::memory_order_relaxed);
}

SmartHandleCore::~SmartHandleCore()
{
    reset();
}

SmartHandleCore &SmartHandleCore::operator=(const SmartHandleCore &other) noexcept
{
    joinGroup(other);
    return *this;
}

void SmartHandleCore::reset() noexcept
{
    Group *group = mGroup;
    mGroup = nullptr;
    if (group && group->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        if (group->deleter)
            group->deleter(group->object);
        delete group;
    }
}

void SmartHandleCore::createGroup(void *object, Deleter deleter)
{
    reset();
    if (object)
        mGroup = new Group { { 1 }, object, deleter };
}

void SmartHandleCore::joinGroup(const SmartHandleCore &other, void *) noexcept
{
    // Take the new reference first, so joining one's own group never frees it.
    Group *group = other.mGroup;
    if (group)
        group->references.fetch_add(1, std::memory_order_relaxed);
    reset();
    mGroup = group;
}

void *SmartHandleCore::handlee() const noexcept
{
    return mGroup ? mGroup->object : nullptr;
}

long SmartHandleCore::useCount() const noexcept
{
    return mGroup ? mGroup->references.load(std::memory_order_relaxed) : 0;
}

} // namespace kom
