// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_PARSEEXCEPTION_H
#define KO_PARSEEXCEPTION_H

#include "exceptions/ExceptionQt.h"

namespace ko
{

/** An error found while reading a text, with the location range it was found at. */
class COREQT_EXPORT ParseException : public ExceptionQt
{
public:
    /** Creates the exception for the range from (@p lineNumber, @p columnNumber) to (@p
     * lastLineNumber, @p lastColumnNumber). */
    ParseException(const QString &message, int lineNumber, int columnNumber, int lastLineNumber,
        int lastColumnNumber, const ExceptionQt *cause = nullptr);
    /** Copies every field and the whole cause chain. */
    ParseException(const ParseException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    ParseException &operator=(const ParseException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~ParseException() override;
    /** A new heap copy; the caller owns it. */
    ParseException *clone() const override;

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
    /**
     * Writes the known parts of the range ("line 3, column 5 to line 3, column 9"), then the
     * message. Kept as it always was: lines count as known from 1 and columns from 0.
     */
    void printMessage(QTextStream &s) const override;

    /**
     * Marks a range of @p text with " >>>" before its start and "<<< " at its end; lines and
     * columns are indices from 0, negative start values count as 0 and negative end values as the
     * start, so an empty range shows " >>><<< ". A column past the end of its line pads the line
     * with blanks. Kept as it always was: a line index is checked against the length of the whole
     * text, not the number of lines; a line that does not exist gets no marker.
     */
    static QString showLocation(const QString &text, int lineNumber, int columnNumber,
        int lastLineNumber, int lastColumnNumber);
    /** Marks this exception's range, used as line and column indices, in @p text. */
    QString showLocation(const QString &text) const;

private:
    int mLineNumber;
    int mColumnNumber;
    int mLastLineNumber;
    int mLastColumnNumber;
};

} // namespace ko

#endif // KO_PARSEEXCEPTION_H
