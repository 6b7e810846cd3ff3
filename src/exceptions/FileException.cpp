// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/FileException.h"

#include "exceptions/ErrorNames_p.h"

namespace ko
{

namespace
{

const detail::ErrorName sFileErrorNames[] = {
    { QFile::NoError, QT_TRANSLATE_NOOP("QFile", "NoError") },
    { QFile::ReadError, QT_TRANSLATE_NOOP("QFile", "ReadError") },
    { QFile::WriteError, QT_TRANSLATE_NOOP("QFile", "WriteError") },
    { QFile::FatalError, QT_TRANSLATE_NOOP("QFile", "FatalError") },
    { QFile::ResourceError, QT_TRANSLATE_NOOP("QFile", "ResourceError") },
    { QFile::OpenError, QT_TRANSLATE_NOOP("QFile", "OpenError") },
    { QFile::AbortError, QT_TRANSLATE_NOOP("QFile", "AbortError") },
    { QFile::TimeOutError, QT_TRANSLATE_NOOP("QFile", "TimeOutError") },
    { QFile::RemoveError, QT_TRANSLATE_NOOP("QFile", "RemoveError") },
    { QFile::RenameError, QT_TRANSLATE_NOOP("QFile", "RenameError") },
    { QFile::PositionError, QT_TRANSLATE_NOOP("QFile", "PositionError") },
    { QFile::ResizeError, QT_TRANSLATE_NOOP("QFile", "ResizeError") },
    { QFile::PermissionsError, QT_TRANSLATE_NOOP("QFile", "PermissionsError") },
    { QFile::CopyError, QT_TRANSLATE_NOOP("QFile", "CopyError") },
};

// Also the name of QFile::UnspecifiedError.
const char *const sUnspecifiedError = QT_TRANSLATE_NOOP("QFile", "UnspecifiedError");

} // namespace

FileException::FileException(
    QFile::FileError error, const QString &message, const ExceptionQt *cause)
    : IOException(message, cause)
    , mFileInfo()
    , mError(error)
{ }

FileException::FileException(const QFileInfo &fileInfo, QFile::FileError error,
    const QString &message, const ExceptionQt *cause)
    : IOException(message, cause)
    , mFileInfo(fileInfo)
    , mError(error)
{ }

FileException::FileException(const QFile &file)
    : IOException(file.errorString())
    , mFileInfo(file)
    , mError(file.error())
{ }

FileException &FileException::operator=(const FileException &other)
{
    if (chainHolds(other))
        return *this = FileException(other);
    IOException::operator=(other);
    mFileInfo = other.mFileInfo;
    mError = other.mError;
    return *this;
}

FileException::~FileException() = default;

FileException *FileException::clone() const
{
    return new FileException(*this);
}

QString FileException::errorString(QFile::FileError error)
{
    return detail::translatedErrorName("QFile", sFileErrorNames, int(error), sUnspecifiedError);
}

void FileException::printMessage(QTextStream &s) const
{
    // The path is written even when empty, so a bare error reads ": OpenError".
    s << mFileInfo.filePath();
    if (mError != QFile::NoError)
        s << QLatin1String(": ") << errorString(mError);
    if (!mMessage.isEmpty())
        s << QLatin1String(", ") << mMessage;
}

} // namespace ko
