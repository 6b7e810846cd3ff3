// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_OBJECT_H
#define KOM_OBJECT_H

#include "platform/kom/kom_export.h"

/** Root of the middleware's interfaces. */
class KOM_EXPORT komInterface
{
public:
    /** The interface part; it holds no data. */
    komInterface();
    /** Destroys the object through any of its interfaces. */
    virtual ~komInterface();
};

/** Root of the middleware's objects; used as the sender of status messages and terminal reports. */
class KOM_EXPORT komObject
{
public:
    /** The object part; it holds no data. */
    komObject();
    /** Objects may be destroyed through this base. */
    virtual ~komObject();
};

#endif // KOM_OBJECT_H
