// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CONFIGITEMNOTRETRIEVEDEXCEPTION_H
#define KO_CONFIGITEMNOTRETRIEVEDEXCEPTION_H

#include "exceptions/RuntimeException.h"

class komObject;

namespace ko
{

/** A configuration item could not be read. */
class COREQT_EXPORT ConfigItemNotRetrievedException : public RuntimeException
{
public:
    /** Creates the exception with @p message and no cause. */
    explicit ConfigItemNotRetrievedException(const QString &message);
    /** Kept as it always was: the same as the one-argument form, @p object is neither stored nor
     * printed. */
    ConfigItemNotRetrievedException(const QString &message, komObject *object);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~ConfigItemNotRetrievedException() override;
    /** A new heap copy; the caller owns it. */
    ConfigItemNotRetrievedException *clone() const override;
};

} // namespace ko

#endif // KO_CONFIGITEMNOTRETRIEVEDEXCEPTION_H
