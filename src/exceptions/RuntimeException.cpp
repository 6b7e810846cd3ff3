#include "exceptions/RuntimeException.h"

namespace ko
{

RuntimeException::RuntimeException(const QString& message)
    : ExceptionQt(message)
{
}

RuntimeException::RuntimeException(const RuntimeException& other) = default;

RuntimeException& RuntimeException::operator=(const RuntimeException& other) = default;

RuntimeException::~RuntimeException() = default;

RuntimeException* RuntimeException::clone() const
{
    return new RuntimeException(*this);
}

} // namespace ko
