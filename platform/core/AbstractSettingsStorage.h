// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_ABSTRACTSETTINGSSTORAGE_H
#define KO_ABSTRACTSETTINGSSTORAGE_H

#include "platform/core/core_export.h"

#include <string>

namespace ko
{

/**
 * Settings storage for components that do not depend on Qt: keys and values
 * are strings, keys may be grouped with beginGroup()/endGroup().
 */
class CORE_EXPORT AbstractSettingsStorage
{
public:
    /** The interface part; an implementation such as ko::QtSettingsAdaptor holds the settings. */
    AbstractSettingsStorage();
    /** Implementations may be destroyed through this interface. */
    virtual ~AbstractSettingsStorage();

    /** True when values can be written. */
    virtual bool isWritable() const = 0;
    /** Appends @p prefix to the current group. */
    virtual void beginGroup(const std::string &prefix) = 0;
    /** Leaves the innermost group. */
    virtual void endGroup() = 0;
    /** The current group, nested groups joined by "/". */
    virtual std::string group() const = 0;
    /** True when @p key has a value. */
    virtual bool contains(const std::string &key) = 0;
    /** Removes @p key and everything below it. */
    virtual void remove(const std::string &key) = 0;
    /** Stores @p value under @p key. */
    virtual void setValue(const std::string &key, const std::string &value) = 0;
    /** The value under @p key, or @p defaultValue when there is none. */
    virtual std::string value(const std::string &key, const std::string &defaultValue) const = 0;
    /** Writes pending changes to permanent storage and reloads changes made elsewhere. */
    virtual void sync() = 0;
    /** 0 when all is well, otherwise an error code of the storage. */
    virtual int status() const = 0;
};

} // namespace ko

#endif // KO_ABSTRACTSETTINGSSTORAGE_H
