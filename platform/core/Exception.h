// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_EXCEPTION_H
#define KO_EXCEPTION_H

#include "platform/core/core_export.h"

#include <exception>
#include <string>

namespace ko
{

/**
 * Base of the suite's exceptions: a text and an optional cause, of which the
 * exception keeps its own clone(). what() is produced by the virtual generateWhat().
 *
 * The cause copy is owned by this base and freed with it. A subclass that wants
 * to delete the copy itself calls releaseCause() first, which hands the pointer
 * over, so the copy is never freed twice and never leaked.
 *
 * An exception may be assigned from a member of its own cause chain: that chain
 * is then kept until the next assignment or the end of the exception, because a
 * subclass's assignment still reads its own fields from it after the base's.
 */
class CORE_EXPORT Exception : public std::exception
{
public:
    /** Creates an exception with the text @p what and a copy of @p cause (null for none). */
    explicit Exception(const std::string &what = std::string(), const Exception *cause = nullptr);
    /** Copies the text and clones the other exception's cause. */
    Exception(const Exception &other);
    /** Copies the text and replaces the own cause copy by a clone of the other's; @p other may lie
     * in this exception's cause chain. */
    Exception &operator=(const Exception &other);
    /** Frees the cause copy unless a subclass released it. */
    ~Exception() override;

    /** The text made by generateWhat(); valid until the next call or the end of the exception. */
    const char *what() const noexcept override;
    /** Writes this exception's text into @p out; the base writes its own text. */
    virtual void generateWhat(std::string &out) const;
    /** A new heap copy of the dynamic type; the caller owns it. */
    virtual Exception *clone() const;

    /** Replaces the cause by a clone of @p cause (null clears it); the previous copy is freed. */
    void setCause(const Exception *cause);
    /** The own copy of the cause, or null. */
    const Exception *cause() const;

protected:
    /** Hands the cause copy over to the caller, who then deletes it; the base forgets it. */
    Exception *releaseCause();
    /** The text given to the constructor. */
    const std::string &text() const;

private:
    std::string mText;
    Exception *mCause;
    mutable std::string mWhat;
    // The previous cause chain when the last assignment came from inside it, or null.
    Exception *mRetiredCause;
};

/** A run-time failure of the platform itself (a mutex error, for instance). */
class CORE_EXPORT RuntimeError : public Exception
{
public:
    /** Creates the error with its text and an optional cause. */
    explicit RuntimeError(const std::string &what, const Exception *cause = nullptr);
    /** A new heap copy; the caller owns it. */
    RuntimeError *clone() const override;
};

} // namespace ko

#endif // KO_EXCEPTION_H
