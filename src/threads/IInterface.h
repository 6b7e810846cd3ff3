// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_IINTERFACE_H
#define KO_IINTERFACE_H

#include "coreqt_export.h"

#include <string>

namespace ko
{

/**
 * The library's minimal interface-query base: an object can be asked, by the
 * textual name of an interface, for a pointer to that interface.
 */
class COREQT_EXPORT IInterface
{
public:
    /** Destroys the object through any of its interfaces. */
    virtual ~IInterface();

    /** This object when @p name is exactly "ko::IInterface", otherwise null; subclasses add names.
     */
    virtual IInterface *getInterface(const std::string &name);
    /** The const form: calls the non-const getInterface() virtually, so overrides apply. */
    virtual const IInterface *getInterface(const std::string &name) const;

    /** The interface's own name, "ko::IInterface". */
    static const std::string &ID();
};

} // namespace ko

#endif // KO_IINTERFACE_H
