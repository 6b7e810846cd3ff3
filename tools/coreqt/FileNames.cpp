// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "FileNames.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <climits>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tool
{

namespace
{

// A byte that does not belong to a UTF-8 sequence is held as the lone low surrogate U+DC00 + byte;
// valid UTF-8 never decodes to one, so encoding gives the byte back.
constexpr ushort kRawByteBase = 0xDC00;

// The length of the UTF-8 sequence that @p lead starts and the smallest code point it may encode;
// 0 for a byte that cannot start one.
int sequenceLength(uchar lead, uint *minimum)
{
    if (lead >= 0xC2 && lead <= 0xDF) {
        *minimum = 0x80;
        return 2;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        *minimum = 0x800;
        return 3;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        *minimum = 0x10000;
        return 4;
    }
    return 0;
}

QString decodeKeepingBytes(const QByteArray &bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (int i = 0; i < bytes.size();) {
        const uchar lead = uchar(bytes.at(i));
        if (lead < 0x80) {
            text += QChar(lead);
            ++i;
            continue;
        }
        uint minimum = 0;
        const int n = sequenceLength(lead, &minimum);
        uint code = n == 2 ? lead & 0x1F : n == 3 ? lead & 0x0F : lead & 0x07;
        int k = 1;
        for (; n > 0 && k < n && i + k < bytes.size() && (uchar(bytes.at(i + k)) & 0xC0) == 0x80;
             ++k)
            code = (code << 6) | (uchar(bytes.at(i + k)) & 0x3F);
        if (n == 0 || k < n || code < minimum || code > 0x10FFFF
            || (code >= 0xD800 && code <= 0xDFFF)) {
            text += QChar(ushort(kRawByteBase + lead));
            ++i;
            continue;
        }
        if (code > 0xFFFF) {
            text += QChar(QChar::highSurrogate(code));
            text += QChar(QChar::lowSurrogate(code));
        } else {
            text += QChar(ushort(code));
        }
        i += n;
    }
    return text;
}

QByteArray encodeKeepingBytes(const QString &text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        uint code = text.at(i).unicode();
        if (text.at(i).isHighSurrogate() && i + 1 < text.size()
            && text.at(i + 1).isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text.at(i), text.at(i + 1));
            ++i;
        } else if (code >= kRawByteBase + 0x80 && code <= kRawByteBase + 0xFF) {
            bytes += char(code - kRawByteBase);
            continue;
        } else if (text.at(i).isSurrogate()) {
            bytes += '?'; // a lone surrogate names no character and no byte
            continue;
        }
        if (code < 0x80) {
            bytes += char(code);
        } else if (code < 0x800) {
            bytes += char(0xC0 | (code >> 6));
            bytes += char(0x80 | (code & 0x3F));
        } else if (code < 0x10000) {
            bytes += char(0xE0 | (code >> 12));
            bytes += char(0x80 | ((code >> 6) & 0x3F));
            bytes += char(0x80 | (code & 0x3F));
        } else {
            bytes += char(0xF0 | (code >> 18));
            bytes += char(0x80 | ((code >> 12) & 0x3F));
            bytes += char(0x80 | ((code >> 6) & 0x3F));
            bytes += char(0x80 | (code & 0x3F));
        }
    }
    return bytes;
}

// Whether the locale's encoding gives every byte a character and back (Latin-1 does, UTF-8 not).
bool localeKeepsEveryByte()
{
    static const bool keeps = [] {
        QByteArray all;
        for (int byte = 0x80; byte <= 0xFF; ++byte)
            all += char(byte);
        return QString::fromLocal8Bit(all).toLocal8Bit() == all;
    }();
    return keeps;
}

QString systemError(int error)
{
    return qt_error_string(error);
}

QByteArray folderOf(const QByteArray &name)
{
    const int slash = name.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : slash == 0 ? QByteArray("/") : name.left(slash);
}

// @p name as absolute and without "." and ".." parts, taken away by the text alone as
// QDir::cleanPath() does (QFileInfo::symLinkTarget() gives such names).
QByteArray absoluteClean(const QByteArray &name)
{
    QByteArray path = name;
    if (!path.startsWith('/')) {
        char cwd[PATH_MAX];
        path = (::getcwd(cwd, sizeof cwd) ? QByteArray(cwd) : QByteArray()) + '/' + path;
    }
    QList<QByteArray> parts;
    for (const QByteArray &part : path.split('/')) {
        if (part.isEmpty() || part == ".")
            continue;
        if (part == "..") {
            if (!parts.isEmpty())
                parts.removeLast();
            continue;
        }
        parts << part;
    }
    QByteArray clean;
    for (const QByteArray &part : parts)
        clean += '/' + part;
    return clean.isEmpty() ? QByteArray("/") : clean;
}

// The file that @p name leads to when the links of its last part are followed, as QSaveFile finds
// it: each link's target taken as QFileInfo::symLinkTarget() gives it; after 127 links, @p name.
QByteArray followLinks(const QByteArray &name)
{
    QByteArray file = name;
    for (int depth = 0; depth < 127; ++depth) {
        char target[PATH_MAX];
        const ssize_t n = ::readlink(file.constData(), target, sizeof target);
        if (n < 0 || n == ssize_t(sizeof target))
            return file;
        const QByteArray link(target, int(n));
        file = absoluteClean(
            link.startsWith('/') ? link : folderOf(absoluteClean(file)) + '/' + link);
    }
    return name;
}

} // namespace

QStringList commandLineArguments(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << fileNameText(QByteArray(argv[i]));
    return arguments;
}

QString fileNameText(const QByteArray &bytes)
{
    return localeKeepsEveryByte() ? QString::fromLocal8Bit(bytes) : decodeKeepingBytes(bytes);
}

QByteArray fileNameBytes(const QString &text)
{
    return localeKeepsEveryByte() ? text.toLocal8Bit() : encodeKeepingBytes(text);
}

OpenedFile::OpenedFile(const QString &name)
    : mFd(::open(fileNameBytes(name).constData(), O_PATH | O_CLOEXEC))
{
    if (mFd < 0)
        mError = systemError(errno);
}

OpenedFile::~OpenedFile()
{
    if (mFd >= 0)
        ::close(mFd);
}

QString OpenedFile::path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(mFd);
}

ReplacingFile::~ReplacingFile()
{
    discard();
}

bool ReplacingFile::open(const QString &name)
{
    discard();
    const QByteArray given = fileNameBytes(name);
    // QSaveFile's checks, with its texts, in its order.
    struct stat status;
    const bool exists = ::stat(given.constData(), &status) == 0;
    if (exists && ::access(given.constData(), W_OK) != 0)
        return fail(QFileDevice::WriteError,
            QCoreApplication::translate("QSaveFile", "Existing file %1 is not writable").arg(name));
    if (exists && S_ISDIR(status.st_mode))
        return fail(QFileDevice::WriteError,
            QCoreApplication::translate("QSaveFile", "Filename refers to a directory"));
    mTarget = followLinks(given);
    // Until it has the permissions of the file it replaces, nobody else may read the new file.
    const mode_t mode = exists ? 0600 : 0666;
    mFd = ::open(folderOf(mTarget).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, mode);
    if (mFd < 0 && (errno == EOPNOTSUPP || errno == EISDIR)) {
        // A file system without unnamed files: a name beside the destination, as QSaveFile makes
        // it.
        for (int attempt = 0; attempt < 16 && mFd < 0; ++attempt) {
            mTemporary
                = mTarget + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
            mFd = ::open(mTemporary.constData(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, mode);
            if (mFd < 0 && errno != EEXIST)
                break;
        }
        if (mFd < 0)
            mTemporary.clear();
    }
    if (mFd < 0)
        return fail(QFileDevice::OpenError, systemError(errno));
    if (exists) {
        // The permissions as QFile::permissions() reads them and setPermissions() sets them: what
        // this user may do with the file counts for its owner.
        mode_t kept = status.st_mode & 0777;
        const std::pair<int, mode_t> userRights[]
            = { { R_OK, S_IRUSR }, { W_OK, S_IWUSR }, { X_OK, S_IXUSR } };
        for (const auto &[right, bit] : userRights) {
            if (::access(given.constData(), right) == 0)
                kept |= bit;
        }
        ::fchmod(mFd, kept);
    }
    return true;
}

bool ReplacingFile::commit()
{
    ::fdatasync(mFd); // as QSaveFile does; a file system that cannot is no failure
    bool done = false;
    if (!mTemporary.isEmpty()) {
        done = ::rename(mTemporary.constData(), mTarget.constData()) == 0;
    } else {
        // An unnamed file gets the destination's name, or a free name beside it that then replaces
        // it.
        const QByteArray self = "/proc/self/fd/" + QByteArray::number(mFd);
        done
            = ::linkat(AT_FDCWD, self.constData(), AT_FDCWD, mTarget.constData(), AT_SYMLINK_FOLLOW)
            == 0;
        for (int attempt = 0; !done && errno == EEXIST && attempt < 16; ++attempt) {
            mTemporary
                = mTarget + '.' + QByteArray::number(QRandomGenerator::global()->generate(), 36);
            if (::linkat(
                    AT_FDCWD, self.constData(), AT_FDCWD, mTemporary.constData(), AT_SYMLINK_FOLLOW)
                == 0) {
                done = ::rename(mTemporary.constData(), mTarget.constData()) == 0;
                break;
            }
            mTemporary.clear();
        }
    }
    if (done)
        mTemporary.clear();
    const int error = errno;
    discard();
    return done || fail(QFileDevice::RenameError, systemError(error));
}

bool ReplacingFile::fail(QFileDevice::FileError error, const QString &text)
{
    mError = error;
    mErrorString = text;
    return false;
}

void ReplacingFile::discard()
{
    if (!mTemporary.isEmpty())
        ::unlink(mTemporary.constData());
    mTemporary.clear();
    if (mFd >= 0)
        ::close(mFd);
    mFd = -1;
}

} // namespace tool
