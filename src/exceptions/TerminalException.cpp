#include "exceptions/TerminalException.h"

namespace ko
{

TerminalException::TerminalException(const QString &message, const ExceptionQt *cause)
    : RuntimeException(message)
{
    setCause(cause);
}

TerminalException::~TerminalException() = default;

TerminalException *TerminalException::clone() const
{
    return new TerminalException(*this);
}

} // namespace ko
