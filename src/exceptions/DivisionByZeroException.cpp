#include "exceptions/DivisionByZeroException.h"

namespace ko
{

DivisionByZeroException::DivisionByZeroException(const QString &message)
    : RuntimeException(message)
{ }

DivisionByZeroException::~DivisionByZeroException() = default;

DivisionByZeroException *DivisionByZeroException::clone() const
{
    return new DivisionByZeroException(*this);
}

} // namespace ko
