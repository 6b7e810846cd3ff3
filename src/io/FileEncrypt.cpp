// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/FileEncrypt.h"

#include "io/CipherSteps_p.h"
#include "platform/core/Enigma.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <vector>

namespace ko
{

namespace
{

constexpr qint64 kHeaderSize = 8;
constexpr signed char kVersion = 1;
constexpr signed char kMinimumVersion = 1;
// The cipher takes fewer than 2^31 bytes per call: reads and writes pass it pieces of at most
// this size, which also bounds the write buffer.
constexpr qint64 kMaxPiece = qint64(1) << 20;

} // namespace

// Where the file and the cipher are, in terms of the device position pos() that QIODevice keeps.
// Reads that QIODevice buffers ahead, peek() on an unbuffered device and line reads move the file
// without moving pos() along; a seek to pos() then finds the file elsewhere.
struct FileEncrypt::Private
{
    // The device position at which the file's offset is rawPos and the cipher has made `steps`
    // steps.
    qint64 at = 0;
    qint64 rawPos = 0;
    qint64 steps = 0;
    // Append mode: the logical position of the file's end, where the next write lands.
    qint64 appendSteps = 0;
    // Set while QIODevice's read-ahead is read out and thrown away.
    bool dropping = false;
    // Enciphered bytes on their way to the file, kept from one write to the next.
    std::vector<unsigned char> buffer;
};

FileEncrypt::Header::Header(const QByteArray &bytes)
    : mBytes {}
    , mLength(int(qMin<qint64>(bytes.size(), kHeaderSize)))
{
    std::memcpy(mBytes, bytes.constData(), size_t(mLength));
}

quint16 FileEncrypt::Header::reserved() const
{
    return qFromLittleEndian<quint16>(mBytes + 2);
}

quint32 FileEncrypt::Header::seed() const
{
    return qFromLittleEndian<quint32>(mBytes + 4);
}

bool FileEncrypt::Header::isReadableBy(qint8 version, qint8 minimum) const
{
    // A newer file needs a reader at least as new as its minimum; an older one, a file at least
    // as new as the reader's minimum.
    if (version < this->version())
        return version >= minimumVersion();
    return this->version() >= minimum;
}

bool FileEncrypt::Header::isReadable() const
{
    return isReadableBy(kVersion, kMinimumVersion);
}

FileEncrypt::FileEncrypt(QObject *parent)
    : QFile(parent)
    , mVersion { kVersion, kMinimumVersion, 0, 0 }
    , mSeed(0)
    , mCompatible(true)
    , mPrivate(new Private)
{ }

FileEncrypt::FileEncrypt(const QString &name, QObject *parent)
    : QFile(name, parent)
    , mVersion { kVersion, kMinimumVersion, 0, 0 }
    , mSeed(0)
    , mCompatible(true)
    , mPrivate(new Private)
{ }

// A device destroyed while open would otherwise leak its cipher; QFile closes the file itself.
FileEncrypt::~FileEncrypt() = default;

bool FileEncrypt::open(OpenMode mode)
{
    if (mEnigma)
        return false;
    *mPrivate = Private();
    if (!QFile::open(mode))
        return false;
    mCompatible = true;
    const qint64 rawSize = QFile::size();
    // QIODevice put pos() at 0, or for Append at the file's end; the file itself is still at 0.
    mPrivate->at = pos();
    if (!(mode & Truncate) && rawSize > 0) {
        if (!readHeader())
            return false;
    } else if (mode & WriteOnly) {
        writeHeader();
    }
    if ((mode & Append) && rawSize > 0) {
        // The file goes where QIODevice says the device is; appended bytes continue the cipher
        // where the data ends.
        QFile::seek(rawSize);
        mPrivate->at = mPrivate->rawPos = rawSize;
        mPrivate->appendSteps = qMax<qint64>(0, rawSize - kHeaderSize);
        setSteps(rawSize);
    }
    return true;
}

bool FileEncrypt::readHeader()
{
    QByteArray bytes;
    if (!(openMode() & Append)) {
        // Bypassing the cipher and QIODevice: the data then starts behind the header.
        char header[kHeaderSize];
        const qint64 n = QFile::readData(header, kHeaderSize);
        if (n < 0) {
            QFile::close();
            return false;
        }
        bytes = QByteArray(header, int(n));
    } else {
        // An appending device may not be readable, and its position belongs to the file's end:
        // the header comes through a handle of its own.
        QFile other(fileName());
        if (other.open(QIODevice::ReadOnly))
            bytes = other.read(kHeaderSize);
        if (!other.isOpen() || other.error() != QFile::NoError) {
            QFile::close();
            setErrorString(tr("Cannot read the header of the enciphered file to append to it: %1")
                               .arg(other.errorString()));
            return false;
        }
    }

    const Header header(bytes);
    if (!header.isReadableBy(mVersion[0], mVersion[1])) {
        QFile::close();
        mCompatible = false;
        Q_EMIT incompatible();
        return false;
    }
    // A file shorter than the header opens with the zero-filled rest, whatever seed that gives.
    std::memcpy(mVersion, bytes.leftJustified(4, '\0').constData(), 4);
    mSeed = header.seed();
    mEnigma.reset(new Enigma(Random(mSeed, 0)));
    mPrivate->rawPos = bytes.size();
    return true;
}

void FileEncrypt::writeHeader()
{
    mEnigma.reset(new Enigma(Random(0, 0)));
    mSeed = mEnigma->seed();
    char header[kHeaderSize];
    std::memcpy(header, mVersion, 4);
    qToLittleEndian<quint32>(mSeed, header + 4);
    // Bypassing the cipher and QIODevice: the data then starts behind the header.
    const qint64 n = QFile::writeData(header, kHeaderSize);
    mPrivate->rawPos = qMax<qint64>(0, n);
}

void FileEncrypt::close()
{
    QFile::close();
    mEnigma.reset();
}

qint64 FileEncrypt::size() const
{
    // A file cut below its header (outside the contract) reports 0, not a negative length.
    return mEnigma ? qMax<qint64>(0, QFile::size() - kHeaderSize) : QFile::size();
}

void FileEncrypt::setSteps(qint64 steps)
{
    mPrivate->steps = steps;
    if (mEnigma)
        mEnigma->state()
            = cipher::advance(mEnigma->initialState(), static_cast<unsigned long long>(steps));
}

void FileEncrypt::dropReadAhead()
{
    // What QIODevice has buffered beyond pos() was read for the file's old place. Reading it out
    // empties the buffer; the reads below never reach the file.
    if ((openMode() & Unbuffered) || mPrivate->at <= pos())
        return;
    mPrivate->dropping = true;
    char scrap[4096];
    while (pos() < mPrivate->at) {
        if (read(scrap, qMin<qint64>(sizeof scrap, mPrivate->at - pos())) <= 0)
            break;
    }
    mPrivate->dropping = false;
}

bool FileEncrypt::moveTo(qint64 pos, qint64 rawPos, qint64 steps)
{
    dropReadAhead();
    if (!QFile::seek(rawPos))
        return false;
    // QFile moved the file and pos() to rawPos; pos() goes back where the caller wants it.
    if (pos != rawPos)
        QIODevice::seek(pos);
    mPrivate->at = pos;
    mPrivate->rawPos = rawPos;
    setSteps(steps);
    return true;
}

bool FileEncrypt::seek(qint64 pos)
{
    if (mPrivate->dropping)
        return true;
    const qint64 from = this->pos();
    const qint64 behind = mPrivate->at - from;
    if (from == pos) {
        // QIODevice puts a device back to pos() this way after it read ahead of it: the file and
        // the cipher return there. Otherwise a seek to the current position changes nothing of
        // ours; QIODevice's own base seek still runs, since QIODevice also seeks to pos() when it
        // has lost track of where the file is (after a line read, kept over a reopen) and reads
        // and peeks rely on what that seek records.
        if (behind == 0) {
            if (isOpen())
                QIODevice::seek(pos);
            return true;
        }
        return moveTo(pos, mPrivate->rawPos - behind, mPrivate->steps - behind);
    }
    // A negative position is outside the contract: QFile refuses it and the cipher stays where it
    // is.
    if (pos < 0)
        return QFile::seek(pos);
    // Read-ahead stays valid where the file already sat at raw offset pos() with as many steps
    // made.
    if (mPrivate->rawPos != mPrivate->at || mPrivate->steps != mPrivate->at)
        dropReadAhead();
    // The header is not added to the offset: the file moves to raw offset pos. Kept, callers rely
    // on it.
    if (!QFile::seek(pos)) {
        // Refused (a failed flush, an offset the file system cannot hold): back where it was.
        if (this->pos() != from)
            moveTo(from, mPrivate->rawPos - behind, mPrivate->steps - behind);
        return false;
    }
    mPrivate->at = mPrivate->rawPos = pos;
    setSteps(pos);
    return true;
}

bool FileEncrypt::resize(qint64)
{
    return false;
}

quint32 FileEncrypt::seed() const
{
    return mEnigma ? mEnigma->seed() : 0;
}

bool FileEncrypt::isCompatible() const
{
    return mCompatible;
}

qint64 FileEncrypt::readData(char *data, qint64 maxSize)
{
    if (mPrivate->dropping)
        return 0;
    qint64 total = 0;
    while (total < maxSize) {
        const qint64 piece = qMin(maxSize - total, kMaxPiece);
        const qint64 n = QFile::readData(data + total, piece);
        if (n <= 0)
            return total > 0 ? total : n;
        if (mEnigma) {
            auto *bytes = reinterpret_cast<unsigned char *>(data + total);
            if (mEnigma->decode(bytes, unsigned(n), bytes, unsigned(n), mEnigma->state()) < 0)
                return -1;
        }
        mPrivate->at += n;
        mPrivate->rawPos += n;
        mPrivate->steps += n;
        total += n;
        if (n < piece)
            break;
    }
    return total;
}

qint64 FileEncrypt::readLineData(char *data, qint64 maxSize)
{
    // Line reads hand out the raw, still enciphered bytes and leave the cipher alone; kept because
    // callers rely on it. QFile's own line reader would go through readData() here, so the bytes
    // are taken from the file directly.
    qint64 n = 0;
    while (n < maxSize) {
        const qint64 r = QFile::readData(data + n, 1);
        // Nothing to read, at the end as on an error, gives -1 like QFile's own line reader.
        if (r <= 0 && n == 0)
            return -1;
        if (r <= 0 || data[n++] == '\n')
            break;
    }
    mPrivate->at += n;
    mPrivate->rawPos += n;
    return n;
}

qint64 FileEncrypt::writeData(const char *data, qint64 size)
{
    if (!mEnigma)
        return QFile::writeData(data, size);

    // Appending writes at the file's end whatever pos() says, so the cipher starts from there.
    const bool append = openMode() & Append;
    unsigned state = append
        ? cipher::advance(mEnigma->initialState(), quint64(mPrivate->appendSteps))
        : mEnigma->state();
    std::vector<unsigned char> &buffer = mPrivate->buffer;
    buffer.resize(size_t(qBound<qint64>(buffer.size(), size, kMaxPiece)));
    qint64 written = 0;
    do {
        const qint64 piece = qMin(size - written, kMaxPiece);
        const int r = mEnigma->encode(reinterpret_cast<const unsigned char *>(data + written),
            unsigned(piece), buffer.data(), unsigned(piece), state);
        // A piece the cipher refuses is not written.
        if (r < 1)
            break;
        // The whole piece goes out: what the cipher did not produce stays zero.
        std::fill(buffer.begin() + std::min<qint64>(r, piece), buffer.begin() + piece, 0);
        const qint64 w = QFile::writeData(reinterpret_cast<const char *>(buffer.data()), piece);
        if (w > 0)
            written += w;
        if (w < piece) {
            state = cipher::advance(mEnigma->initialState(),
                quint64((append ? mPrivate->appendSteps : mPrivate->steps) + written));
            break;
        }
    } while (written < size);

    mPrivate->at += written;
    mPrivate->rawPos += written;
    if (append) {
        mPrivate->appendSteps += written;
    } else {
        mPrivate->steps += written;
        mEnigma->state() = state;
    }
    return written > 0 ? written : -1;
}

} // namespace ko
