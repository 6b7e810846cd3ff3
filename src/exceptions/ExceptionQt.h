// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_EXCEPTIONQT_H
#define KO_EXCEPTIONQT_H

#include "coreqt_export.h"
#include "platform/core/Exception.h"

#include <QString>

class QTextStream;

namespace ko
{

/**
 * Root of the library's exceptions: a Qt message, an owned copy of the cause and a fixed printed
 * form "<class>: <message>" followed by one "caused by:\t" line per cause.
 */
class COREQT_EXPORT ExceptionQt : public Exception
{
public:
    /** Creates the exception with @p message and a copy of @p cause (null for none). */
    explicit ExceptionQt(const QString &message, const ExceptionQt *cause = nullptr);
    /** Copies the message and makes an own copy of the other's cause. */
    ExceptionQt(const ExceptionQt &other);
    /** Copies the message and replaces the own cause copy by a copy of the other's; @p other may
     * lie in this exception's own chain. */
    ExceptionQt &operator=(const ExceptionQt &other);
    /** Destroys the exception and its cause copy, recursively down the chain. */
    ~ExceptionQt() override;

    /** Writes the printed form, as toString() returns it with its line feeds, into @p out (ASCII).
     */
    void generateWhat(std::string &out) const override;
    /** A new heap copy of the dynamic type; the caller owns it. */
    ExceptionQt *clone() const override;

    /**
     * The run-time type name with a leading "class " and then "ko::" removed. Kept as it always
     * was: nothing is demangled, so where the compiler's type names are mangled (GCC, Clang) the
     * name comes back unchanged, "N2ko13FileExceptionE" for a ko::FileException.
     */
    virtual QString className() const;
    /** Writes the rendered message (without class name and causes) to @p s. */
    virtual void printMessage(QTextStream &s) const;

    /** Replaces the free text of the message. */
    void setMessage(const QString &message);
    /** The exception's own copy of its cause, or null. */
    const ExceptionQt *causeQt() const;
    /** Replaces the cause by a copy of @p cause (null clears it); @p cause may lie in the current
     * chain. */
    void setCause(const ExceptionQt *cause);
    /** Replaces the cause by a copy of @p cause. */
    void setCause(const ExceptionQt &cause);

    /**
     * The rendered message, as printMessage() writes it: for a class with fields of its own that is
     * the fields and the text, not the bare text given to the constructor.
     */
    QString message() const;
    /**
     * Writes the full printed form to @p s and flushes it: "<className()>: <message>" (the ": "
     * also for an empty message), then "caused by:\t<className()>: <message>" for each cause, each
     * line ending in "\n", with no indentation and no limit on the depth.
     */
    void print(QTextStream &s) const;
    /** The full printed form with the cause chain; each line ends in "\n". */
    QString toString() const;
    /** Same as toString(). */
    operator QString() const;

protected:
    /** True when @p other is this exception's cause copy or one of its causes, all of which an
     * assignment frees: the assignment then works from a copy of @p other. */
    bool chainHolds(const ExceptionQt &other) const;

    /** The free text given to the constructor or to setMessage(); subclasses render it. */
    QString mMessage;

private:
    void mirrorCause();

    const ExceptionQt *mCauseQt;
};

/** Prints @p e with its cause chain to @p s; returns @p s. */
COREQT_EXPORT QTextStream &operator<<(QTextStream &s, const ExceptionQt &e);

} // namespace ko

#endif // KO_EXCEPTIONQT_H
