// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/ParseException.h"

#include "compat/QtCompat.h"

#include <QStringList>
#include <QTextStream>

namespace ko
{

namespace
{

// Writes the known parts of one end of a range: lines count from 1, columns from 0.
// Returns whether anything was written.
bool writePoint(QTextStream &s, int line, int column)
{
    const bool lineKnown = line > 0;
    if (lineKnown)
        s << QLatin1String("line ") << line;
    if (column >= 0) {
        if (lineKnown)
            s << QLatin1String(", ");
        s << QLatin1String("column ") << column;
    }
    return lineKnown || column >= 0;
}

} // namespace

ParseException::ParseException(const QString &message, int lineNumber, int columnNumber,
    int lastLineNumber, int lastColumnNumber, const ExceptionQt *cause)
    : ExceptionQt(message, cause)
    , mLineNumber(lineNumber)
    , mColumnNumber(columnNumber)
    , mLastLineNumber(lastLineNumber)
    , mLastColumnNumber(lastColumnNumber)
{ }

ParseException &ParseException::operator=(const ParseException &other)
{
    if (chainHolds(other))
        return *this = ParseException(other);
    ExceptionQt::operator=(other);
    mLineNumber = other.mLineNumber;
    mColumnNumber = other.mColumnNumber;
    mLastLineNumber = other.mLastLineNumber;
    mLastColumnNumber = other.mLastColumnNumber;
    return *this;
}

ParseException::~ParseException() = default;

ParseException *ParseException::clone() const
{
    return new ParseException(*this);
}

int ParseException::lineNumber() const
{
    return mLineNumber;
}

int ParseException::columnNumber() const
{
    return mColumnNumber;
}

int ParseException::lastLineNumber() const
{
    return mLastLineNumber;
}

int ParseException::lastColumnNumber() const
{
    return mLastColumnNumber;
}

void ParseException::setLocation(
    int lineNumber, int columnNumber, int lastLineNumber, int lastColumnNumber)
{
    mLineNumber = lineNumber;
    mColumnNumber = columnNumber;
    mLastLineNumber = lastLineNumber;
    mLastColumnNumber = lastColumnNumber;
}

void ParseException::printMessage(QTextStream &s) const
{
    const bool startKnown = writePoint(s, mLineNumber, mColumnNumber);
    if (mLastLineNumber >= 1 || mLastColumnNumber >= 0) {
        s << QLatin1String(" to ");
        writePoint(s, mLastLineNumber, mLastColumnNumber);
    }
    if (!mMessage.isEmpty()) {
        if (startKnown)
            s << QLatin1String(", ");
        s << mMessage;
    }
}

QString ParseException::showLocation(
    const QString &text, int lineNumber, int columnNumber, int lastLineNumber, int lastColumnNumber)
{
    QStringList lines = text.split(QLatin1Char('\n'), KeepEmptyParts, Qt::CaseSensitive);
    const int line = qMax(lineNumber, 0);
    const int column = qMax(columnNumber, 0);
    const int lastLine = lastLineNumber < 0 ? line : lastLineNumber;
    const int lastColumn = lastColumnNumber < 0 ? column : lastColumnNumber;

    // The end marker goes in first, so that on a shared line the start column still counts
    // characters of the original text. Both guards compare the line index with the length of
    // the whole text, as callers expect; an index past the last line gets no marker.
    if (lastLine < text.length() && lastLine < lines.size())
        lines[lastLine].insert(lastColumn, QLatin1String("<<< "));
    if (text.length() > line && line < lines.size())
        lines[line].insert(column, QLatin1String(" >>>"));
    return lines.join(QLatin1Char('\n'));
}

QString ParseException::showLocation(const QString &text) const
{
    return showLocation(text, mLineNumber, mColumnNumber, mLastLineNumber, mLastColumnNumber);
}

} // namespace ko
