// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_FILENAMES_H
#define COREQT_TOOL_FILENAMES_H

#include <QByteArray>
#include <QFileDevice>
#include <QString>
#include <QStringList>

namespace tool
{

/**
 * File names reach the file system byte for byte. Qt decodes arguments and file names as UTF-8 on
 * Debian, even in the C locale, which turns bytes that are not UTF-8 into U+FFFD for good, and Qt 6
 * offers no way around it. So the tool decodes its command line itself, keeping each such byte as
 * U+DC80..U+DCFF (U+DC00 + the byte), and opens files by their bytes; Qt then reaches an opened
 * file as "/proc/self/fd/N". A locale whose encoding maps every byte to a character and back
 * (Latin-1) is used as it is.
 */

/** The command line (argv[0] first) as text, each argument decoded as fileNameText() decodes. */
QStringList commandLineArguments(int argc, char **argv);
/** The text of the file name @p bytes; fileNameBytes() gives the bytes back. */
QString fileNameText(const QByteArray &bytes);
/** The bytes of the file name @p text (a lone surrogate outside U+DC80..U+DCFF becomes '?'). */
QByteArray fileNameBytes(const QString &text);

/**
 * A file opened by the bytes of its name (links followed) without reading or writing it; while the
 * object lives, Qt opens the file as path(). Opening fails as QFile::open() would: OpenError with
 * the system's reason.
 */
class OpenedFile
{
public:
    /** Opens the file @p name; see isOpen(). */
    explicit OpenedFile(const QString &name);
    /** Closes the descriptor. */
    ~OpenedFile();

    OpenedFile(const OpenedFile &) = delete;
    OpenedFile &operator=(const OpenedFile &) = delete;

    /** False when the name does not lead to a file; errorString() says why. */
    bool isOpen() const { return mFd >= 0; }
    /** The system's reason for a failed open. */
    QString errorString() const { return mError; }
    /** "/proc/self/fd/N", the name under which Qt opens the file. */
    QString path() const;

private:
    int mFd = -1;
    QString mError;
};

/**
 * A new file that replaces a destination only by commit(), as QSaveFile does, with the destination
 * named by its bytes: the symbolic links of its last part are followed (a link stays and its
 * target is replaced), an existing file keeps its permissions, and where the file system allows
 * the new file has no name before commit().
 */
class ReplacingFile
{
public:
    ReplacingFile() = default;
    /** Closes the new file and removes it unless it was committed. */
    ~ReplacingFile();

    ReplacingFile(const ReplacingFile &) = delete;
    ReplacingFile &operator=(const ReplacingFile &) = delete;

    /** Creates the new file for the destination @p name; false with QSaveFile's error when it
     * cannot. */
    bool open(const QString &name);
    /** The new file's descriptor, -1 when none is open; Qt opens it as "/proc/self/fd/N". */
    int handle() const { return mFd; }
    /** Puts the new file in the destination's place; false with the error when that fails. */
    bool commit();
    /** The error of the last failed open() or commit(). */
    QFileDevice::FileError error() const { return mError; }
    /** The text of the last failed open() or commit(). */
    QString errorString() const { return mErrorString; }

private:
    bool fail(QFileDevice::FileError error, const QString &text);
    void discard();

    int mFd = -1;
    QByteArray mTarget; // the file to replace
    QByteArray mTemporary; // the new file's name; empty while it has none
    QFileDevice::FileError mError = QFileDevice::NoError;
    QString mErrorString;
};

} // namespace tool

#endif // COREQT_TOOL_FILENAMES_H
