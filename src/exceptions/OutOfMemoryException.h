// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_OUTOFMEMORYEXCEPTION_H
#define KO_OUTOFMEMORYEXCEPTION_H

#include "exceptions/RuntimeException.h"

#include <new>

namespace ko
{

/** An allocation failed; it is also a std::bad_alloc, so either kind of handler catches it. */
class COREQT_EXPORT OutOfMemoryException : public RuntimeException, public virtual std::bad_alloc
{
public:
    /** Creates the exception for @p size bytes that could not be allocated, with @p message. */
    OutOfMemoryException(int size, const QString &message);
    /** Copies every field and the whole cause chain. */
    OutOfMemoryException(const OutOfMemoryException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    OutOfMemoryException &operator=(const OutOfMemoryException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~OutOfMemoryException() override;
    /** A new heap copy; the caller owns it. */
    OutOfMemoryException *clone() const override;

    /** The printed form, as for every exception of the family, whichever base it is reached
     * through. */
    const char *what() const noexcept override;
    /**
     * Writes "failed to allocate <size> bytes. " when the size is positive, then the message. Kept
     * as it always was: the ". " with its trailing blank stays also when the message is empty.
     */
    void printMessage(QTextStream &s) const override;

private:
    int mSize;
};

} // namespace ko

#endif // KO_OUTOFMEMORYEXCEPTION_H
