#include "exceptions/RuntimeException.h"

namespace ko
{

RuntimeException::RuntimeException(const QString &message)
    : ExceptionQt(message)
{ }

RuntimeException::~RuntimeException() = default;

RuntimeException *RuntimeException::clone() const
{
    return new RuntimeException(*this);
}

} // namespace ko
