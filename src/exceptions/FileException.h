// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_FILEEXCEPTION_H
#define KO_FILEEXCEPTION_H

#include "exceptions/IOException.h"

#include <QFile>
#include <QFileInfo>

namespace ko
{

/** An operation on a file failed; it records the file and Qt's file error. */
class COREQT_EXPORT FileException : public IOException
{
public:
    /** Creates the exception for no particular file; its printed path is then empty (":
     * OpenError"). */
    explicit FileException(QFile::FileError error, const QString &message = QString(),
        const ExceptionQt *cause = nullptr);
    /** Creates the exception for the file @p fileInfo. */
    FileException(const QFileInfo &fileInfo, QFile::FileError error,
        const QString &message = QString(), const ExceptionQt *cause = nullptr);
    /** Creates the exception from the failed @p file: its path, error() and errorString(). */
    explicit FileException(const QFile &file);
    /** Copies every field and the whole cause chain. */
    FileException(const FileException &other) = default;
    /** Copies every field and the cause chain; @p other may lie in this exception's own chain. */
    FileException &operator=(const FileException &other);
    /** Frees the exception's own copy of its cause, down the whole chain. */
    ~FileException() override;
    /** A new heap copy; the caller owns it. */
    FileException *clone() const override;

    /**
     * The name of @p error ("OpenError", ...), translated in context "QFile"; "UnspecifiedError"
     * for that value and any value without a name.
     */
    static QString errorString(QFile::FileError error);
    /**
     * Writes the file path (always, also when empty), then ": " and the error name unless there is
     * no error, then ", " and the message when there is one.
     */
    void printMessage(QTextStream &s) const override;

private:
    QFileInfo mFileInfo;
    QFile::FileError mError;
};

} // namespace ko

#endif // KO_FILEEXCEPTION_H
