#include "platform/core/Exception.h"

namespace ko
{

Exception::Exception(const std::string& what, const Exception* cause)
    : mText(what)
    , mCause(cause ? cause->clone() : nullptr)
{
}

Exception::Exception(const Exception& other)
    : std::exception(other)
    , mText(other.mText)
    , mCause(other.mCause ? other.mCause->clone() : nullptr)
{
}

Exception& Exception::operator=(const Exception& other)
{
    if (this != &other) {
        mText = other.mText;
        setCause(other.mCause);
    }
    return *this;
}

Exception::~Exception()
{
    delete mCause;
}

const char* Exception::what() const noexcept
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

void Exception::generateWhat(std::string& out) const
{
    out = mText;
}

Exception* Exception::clone() const
{
    return new Exception(*this);
}

void Exception::setCause(const Exception* cause)
{
    // Clone first: the new cause may be part of the chain the old copy owns.
    Exception* copy = cause ? cause->clone() : nullptr;
    delete mCause;
    mCause = copy;
}

const Exception* Exception::cause() const
{
    return mCause;
}

Exception* Exception::releaseCause()
{
    Exception* cause = mCause;
    mCause = nullptr;
    return cause;
}

const std::string& Exception::text() const
{
    return mText;
}

RuntimeError::RuntimeError(const std::string& what, const Exception* cause)
    : Exception(what, cause)
{
}

RuntimeError* RuntimeError::clone() const
{
    return new RuntimeError(*this);
}

} // namespace ko
