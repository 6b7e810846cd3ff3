// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_QTSLOT_H
#define KO_QTSLOT_H

#include "coreqt_export.h"

#include <string>

class QObject;

namespace ko
{

/** An object and one of its slots, given by its method code ("1name(args)"); neither is owned. */
struct COREQT_EXPORT QtSlot
{
    /** @p receiver's slot @p slot (a method code with the digit 1). */
    QtSlot(const QObject *receiver, const char *slot);

    /**
     * The slot's bare name ("onTimeout" for "1onTimeout()"), valid as long as this record
     * lives; worked out once. Not for concurrent use on one record.
     */
    const char *slotName() const;

    /** The receiving object. */
    const QObject *receiver;
    /** The slot's method code. */
    const char *slot;
    /** Cache of slotName(), empty until it is first asked for. */
    mutable std::string name;
};

} // namespace ko

#endif // KO_QTSLOT_H
