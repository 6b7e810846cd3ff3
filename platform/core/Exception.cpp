// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/core/Exception.h"

namespace ko
{

namespace
{

// True when @p e is @p chain or one of its causes.
bool chainHolds(const Exception *chain, const Exception *e)
{
    for (; chain; chain = chain->cause()) {
        if (chain == e)
            return true;
    }
    return false;
}

} // namespace

Exception::Exception(const std::string &what, const Exception *cause)
    : mText(what)
    , mCause(cause ? cause->clone() : nullptr)
    , mRetiredCause(nullptr)
{ }

Exception::Exception(const Exception &other)
    : std::exception(other)
    , mText(other.mText)
    , mCause(other.mCause ? other.mCause->clone() : nullptr)
    , mRetiredCause(nullptr)
{ }

Exception &Exception::operator=(const Exception &other)
{
    if (this == &other)
        return *this;
    Exception *copy = other.mCause ? other.mCause->clone() : nullptr;
    mText = other.mText;
    Exception *previous = mCause;
    mCause = copy;
    // A subclass copies its own fields from other after this returns: a chain that holds other must
    // outlive this call, so it waits for the next assignment or the end of this exception.
    Exception *kept = chainHolds(previous, &other) ? previous
        : chainHolds(mRetiredCause, &other)        ? mRetiredCause
                                                   : nullptr;
    if (previous != kept)
        delete previous;
    if (mRetiredCause != kept)
        delete mRetiredCause;
    mRetiredCause = kept;
    return *this;
}

Exception::~Exception()
{
    delete mCause;
    delete mRetiredCause;
}

const char *Exception::what() const noexcept
{
    try {
        std::string text;
        generateWhat(text);
        mWhat.swap(text);
    } catch (...) {
        // Keep the last text; what() must not throw.
    }
    return mWhat.c_str();
}

void Exception::generateWhat(std::string &out) const
{
    out = mText;
}

Exception *Exception::clone() const
{
    return new Exception(*this);
}

void Exception::setCause(const Exception *cause)
{
    // Clone first: the new cause may be part of the chain the old copy owns.
    Exception *copy = cause ? cause->clone() : nullptr;
    delete mCause;
    mCause = copy;
}

const Exception *Exception::cause() const
{
    return mCause;
}

Exception *Exception::releaseCause()
{
    Exception *cause = mCause;
    mCause = nullptr;
    return cause;
}

const std::string &Exception::text() const
{
    return mText;
}

RuntimeError::RuntimeError(const std::string &what, const Exception *cause)
    : Exception(what, cause)
{ }

RuntimeError *RuntimeError::clone() const
{
    return new RuntimeError(*this);
}

} // namespace ko
