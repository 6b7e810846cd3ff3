// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_INDEXOUTOFBOUNDSEXCEPTION_H
#define KO_INDEXOUTOFBOUNDSEXCEPTION_H

#include "exceptions/IllegalArgumentException.h"

namespace ko
{

/** An index lies outside the allowed range [minIndex, maxIndex). */
class COREQT_EXPORT IndexOutOfBoundsException : public IllegalArgumentException
{
public:
    /** Creates the exception for @p argument indexed at @p invalidIndex; @p maxIndex is exclusive.
     */
    IndexOutOfBoundsException(
        const QString &argument, int invalidIndex, int minIndex, int maxIndex);
    /** Copies every field and the whole cause chain. */
    IndexOutOfBoundsException(const IndexOutOfBoundsException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    IndexOutOfBoundsException &operator=(const IndexOutOfBoundsException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~IndexOutOfBoundsException() override;
    /** A new heap copy; the caller owns it. */
    IndexOutOfBoundsException *clone() const override;

    /** The index that was out of range. */
    int invalidIndex() const;
    /** The lowest allowed index. */
    int minIndex() const;
    /** The exclusive upper bound of the allowed indices. */
    int maxIndex() const;
    /**
     * Writes "<argument>[<index>]" (the argument also when empty), then "; allowed range is <min>
     * to <max>, exclusive" only when maxIndex() > minIndex(), then ", " and the message when there
     * is one.
     */
    void printMessage(QTextStream &s) const override;

private:
    int mInvalidIndex;
    int mMinIndex;
    int mMaxIndex;
};

} // namespace ko

#endif // KO_INDEXOUTOFBOUNDSEXCEPTION_H
