// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_SMART_H
#define KOM_SMART_H

#include "platform/kom/kom_export.h"

#include <atomic>
#include <type_traits>

namespace kom
{

/**
 * The untyped core of a shared handle: handles of one group share one object
 * and one atomic reference count; the group's deleter runs with the last handle.
 */
class KOM_EXPORT SmartHandleCore
{
public:
    /** The deleter of a group, called with the group's object. */
    typedef void (*Deleter)(void *object);

    /** An empty handle. */
    SmartHandleCore() noexcept;
    /** Joins the group of @p other. */
    SmartHandleCore(const SmartHandleCore &other) noexcept;
    /** Leaves the group. */
    ~SmartHandleCore();
    /** Joins the group of @p other. */
    SmartHandleCore &operator=(const SmartHandleCore &other) noexcept;

    /** Leaves the current group; the handle is empty afterwards. */
    void reset() noexcept;
    /** Leaves the current group and starts a new one for @p object (null makes an empty handle). */
    void createGroup(void *object, Deleter deleter);
    /** Leaves the current group and shares @p other's object; the second argument is unused. */
    void joinGroup(const SmartHandleCore &other, void * = nullptr) noexcept;
    /** The group's object as it was given to createGroup(), or null. */
    void *handlee() const noexcept;
    /** How many handles share the object (0 for an empty handle). */
    long useCount() const noexcept;

private:
    struct Group;
    Group *mGroup;
};

/** A thread-safe reference-counted handle to a T; the object is deleted with the last handle. */
template <class T> class smart : public SmartHandleCore
{
public:
    /** An empty handle. */
    smart() noexcept
        : mObject(nullptr)
    { }
    /** Takes ownership of @p object in a new group. */
    explicit smart(T *object)
        : mObject(object)
    {
        createGroup(const_cast<void *>(static_cast<const volatile void *>(object)),
            object ? &deleteHandlee : nullptr);
    }
    /** Shares @p other's object. */
    smart(const smart &other) noexcept
        : SmartHandleCore(other)
        , mObject(other.mObject)
    { }
    /** Shares the object of a handle to a derived type. */
    template <class U, class = std::enable_if_t<std::is_convertible<U *, T *>::value>>
    smart(const smart<U> &other) noexcept
        : SmartHandleCore(other)
        , mObject(other.get())
    { }
    /** Shares @p other's object and leaves the previous group. */
    smart &operator=(const smart &other) noexcept
    {
        // Read first: leaving the old group may delete the object that holds other.
        T *object = other.mObject;
        joinGroup(other);
        mObject = object;
        return *this;
    }

    /** Leaves the group (the object dies with the last handle). */
    void reset() noexcept
    {
        SmartHandleCore::reset();
        mObject = nullptr;
    }
    /** The object, or null. */
    T *get() const noexcept { return mObject; }
    /** The object. */
    T *operator->() const noexcept { return mObject; }
    /** The object. */
    T &operator*() const noexcept { return *mObject; }
    /** True when the handle holds an object. */
    explicit operator bool() const noexcept { return mObject != nullptr; }

    /** The group deleter of handles made from a T*. */
    static void deleteHandlee(void *object) { delete static_cast<T *>(object); }

private:
    T *mObject;
};

} // namespace kom

#endif // KOM_SMART_H
