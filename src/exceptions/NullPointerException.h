#ifndef KO_NULLPOINTEREXCEPTION_H
#define KO_NULLPOINTEREXCEPTION_H

#include "exceptions/IllegalArgumentException.h"

namespace ko
{

/** A pointer was null or pointed at an invalid address. */
class COREQT_EXPORT NullPointerException : public IllegalArgumentException
{
public:
    /** Creates the exception for the pointer named @p argument holding @p invalidAddress (may be null). */
    NullPointerException(const QString& argument, void* invalidAddress);
    /** Copies every field and the whole cause chain. */
    NullPointerException(const NullPointerException& other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    NullPointerException& operator=(const NullPointerException& other);
    ~NullPointerException() override;
    /** A new heap copy; the caller owns it. */
    NullPointerException* clone() const override;

    /** The offending address, or null. */
    void* invalidAddress() const;
    /** Writes the argument name, " invalid address " and the address when it is not null, then the message.
     */
    void printMessage(QTextStream& s) const override;

private:
    void* mInvalidAddress;
};

} // namespace ko

#endif // KO_NULLPOINTEREXCEPTION_H
