#ifndef KO_PARSEEXCEPTION_H
#define KO_PARSEEXCEPTION_H

#include "exceptions/ExceptionQt.h"

namespace ko
{

/** An error found while reading a text, with the location range it was found at. */
class COREQT_EXPORT ParseException : public ExceptionQt
{
public:
    /** Creates the exception for the range from (@p lineNumber, @p columnNumber) to (@p lastLineNumber, @p
     * lastColumnNumber). */
    ParseException(const QString& message, int lineNumber, int columnNumber, int lastLineNumber,
        int lastColumnNumber, const ExceptionQt* cause = nullptr);
    /** Copies every field and the whole cause chain. */
    ParseException(const ParseException& other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    ParseException& operator=(const ParseException& other);
    ~ParseException() override;
    /** A new heap copy; the caller owns it. */
    ParseException* clone() const override;

    /** First line of the range, from 1; 0 or negative when unknown. */
    int lineNumber() const;
    /** First column of the range, from 0; negative when unknown. */
    int columnNumber() const;
    /** Last line of the range, from 1; 0 or negative when unknown. */
    int lastLineNumber() const;
    /** Last column of the range, from 0; negative when unknown. */
    int lastColumnNumber() const;
    /** Replaces the whole range. */
    void setLocation(int lineNumber, int columnNumber, int lastLineNumber, int lastColumnNumber);
    /** Writes the known parts of the range ("line 3, column 5 to line 3, column 9"), then the message. */
    void printMessage(QTextStream& s) const override;

    /** Marks a range of @p text with " >>>" before its start and "<<< " at its end; lines and columns count
     * from 0. */
    static QString showLocation(
        const QString& text, int lineNumber, int columnNumber, int lastLineNumber, int lastColumnNumber);
    /** Marks this exception's range, used as line and column indices, in @p text. */
    QString showLocation(const QString& text) const;

private:
    int mLineNumber;
    int mColumnNumber;
    int mLastLineNumber;
    int mLastColumnNumber;
};

} // namespace ko

#endif // KO_PARSEEXCEPTION_H
