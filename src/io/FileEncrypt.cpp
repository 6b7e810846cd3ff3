#include "io/FileEncrypt.h"

#include "platform/core/Enigma.h"

#include <QtEndian>

#include <cstring>
#include <limits>
#include <vector>

#include <unistd.h>

namespace ko
{

namespace
{

constexpr qint64 kHeaderSize = 8;
constexpr signed char kVersion = 1;
constexpr signed char kMinimumVersion = 1;
// The cipher takes fewer than 2^31 bytes per call: reads and writes pass it pieces of at most
// this size, which also keeps the write buffer small.
constexpr qint64 kMaxPiece = qint64(1) << 20;
// QFile's write buffer size: the kernel gets blocks of this size at multiples of it (see writeAligned()).
constexpr qint64 kWriteBlock = 16384;

// Whether a reader of version @p version that needs files of at least @p minimum
// can read a file written by @p fileVersion that needs readers of at least @p fileMinimum.
bool canRead(signed char version, signed char minimum, signed char fileVersion, signed char fileMinimum)
{
    if (version < fileVersion)
        return version >= fileMinimum;
    return fileVersion >= minimum;
}

} // namespace

FileEncrypt::FileEncrypt(QObject* parent)
    : QFile(parent)
    , mVersion{kVersion, kMinimumVersion, 0, 0}
    , mSeed(0)
    , mCompatible(true)
{
}

FileEncrypt::FileEncrypt(const QString& name, QObject* parent)
    : QFile(name, parent)
    , mVersion{kVersion, kMinimumVersion, 0, 0}
    , mSeed(0)
    , mCompatible(true)
{
}

// A device destroyed while open would otherwise leak its cipher; QFile closes the file itself.
FileEncrypt::~FileEncrypt() = default;

bool FileEncrypt::open(OpenMode mode)
{
    if (mEnigma)
        return false;
    if (!QFile::open(mode))
        return false;
    mCompatible = true;

    if (!(mode & Truncate) && QFile::size() > 0) {
        char header[kHeaderSize] = {};
        const qint64 n = QFile::readData(header, kHeaderSize);
        if (n == -1) {
            QFile::close();
            return false;
        }
        // A header cut short carries no usable seed: it is refused like a newer one, and the
        // file is left as it is rather than continued with a cipher nobody could reproduce.
        if (n < kHeaderSize
            || !canRead(mVersion[0], mVersion[1], static_cast<signed char>(header[0]),
                        static_cast<signed char>(header[1]))) {
            QFile::close();
            mCompatible = false;
            Q_EMIT incompatible();
            return false;
        }
        std::memcpy(mVersion, header, 4);
        mSeed = qFromLittleEndian<quint32>(header + 4);
        mEnigma.reset(new Enigma(Random(mSeed, 0)));
    }

    if (!mEnigma && (mode & WriteOnly)) {
        mEnigma.reset(new Enigma(Random(0, 0)));
        mSeed = mEnigma->seed();
        char header[kHeaderSize];
        std::memcpy(header, mVersion, 4);
        qToLittleEndian<quint32>(mSeed, header + 4);
        QFile::writeData(header, kHeaderSize);
    }
    return true;
}

void FileEncrypt::close()
{
    QFile::close();
    mEnigma.reset();
}

qint64 FileEncrypt::size() const
{
    // A file cut below its header while open (outside the contract) reports 0, not a negative length.
    return mEnigma ? qMax<qint64>(0, QFile::size() - kHeaderSize) : QFile::size();
}

bool FileEncrypt::seek(qint64 pos)
{
    if (this->pos() == pos)
        return true;
    // A negative position is outside the contract: QFile refuses it and the cipher stays where it is.
    if (mEnigma && pos >= 0) {
        mEnigma->state() = Enigma::advance(mEnigma->initialState(), static_cast<unsigned long long>(pos));
        // QIODevice keeps read-ahead across a short forward seek, but those bytes were deciphered
        // for the old position: moving far away and back makes it drop them.
        const qint64 current = this->pos();
        QIODevice::seek(std::numeric_limits<qint64>::max());
        QIODevice::seek(current);
    }
    // The header is not added to the offset: the file moves to raw offset pos. Kept, callers rely on it.
    return QFile::seek(pos);
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

qint64 FileEncrypt::readData(char* data, qint64 maxSize)
{
    if (!mEnigma)
        return QFile::readData(data, maxSize);
    qint64 total = 0;
    while (total < maxSize) {
        const qint64 piece = qMin(maxSize - total, kMaxPiece);
        const qint64 n = QFile::readData(data + total, piece);
        if (n <= 0)
            return total > 0 ? total : n;
        auto* bytes = reinterpret_cast<unsigned char*>(data + total);
        if (mEnigma->decode(bytes, unsigned(n), bytes, unsigned(n), mEnigma->state()) < 0)
            return -1;
        total += n;
        if (n < piece)
            break;
    }
    return total;
}

qint64 FileEncrypt::readLineData(char* data, qint64 maxSize)
{
    // Line reads hand out the raw, still enciphered bytes and leave the cipher alone; kept because
    // callers rely on it. QFile's own line reader would go through readData() here, so the bytes
    // are taken from the file directly.
    qint64 n = 0;
    while (n < maxSize) {
        const qint64 r = QFile::readData(data + n, 1);
        if (r < 0)
            return n > 0 ? n : -1;
        if (r == 0 || data[n++] == '\n')
            break;
    }
    return n;
}

qint64 FileEncrypt::writeData(const char* data, qint64 size)
{
    if (!mEnigma)
        return QFile::writeData(data, size);

    // Enciphered in pieces, each through a zero-filled buffer; a piece the cipher refuses is not written.
    std::vector<char> buffer(size_t(qBound<qint64>(0, size, kMaxPiece)), '\0');
    qint64 written = 0;
    do {
        const qint64 piece = qMin(size - written, kMaxPiece);
        const int r = mEnigma->encode(reinterpret_cast<const unsigned char*>(data + written), unsigned(piece),
                                      reinterpret_cast<unsigned char*>(buffer.data()), unsigned(piece),
                                      mEnigma->state());
        if (r < 1)
            return written > 0 ? written : -1;
        const qint64 w = writeAligned(buffer.data(), piece);
        if (w > 0)
            written += w;
        if (w < piece)
            return written > 0 ? written : -1;
    } while (written < size);
    return written;
}

qint64 FileEncrypt::writeAligned(const char* data, qint64 size)
{
    // The header shifts the data off the file's block boundaries. Cut at those boundaries, a write
    // reaches the kernel as whole aligned blocks through QFile's write buffer; that keeps the file
    // in large page-cache pages, which makes reading it back much faster.
    qint64 parts[3] = {size, 0, 0};
    const qint64 kernelPos = (openMode() & Unbuffered) ? -1 : ::lseek(handle(), 0, SEEK_CUR);
    if (kernelPos >= 0) {
        const qint64 head = (kWriteBlock - (kernelPos + bytesToWrite()) % kWriteBlock) % kWriteBlock;
        if (head < size) {
            parts[0] = head;
            parts[1] = (size - head) / kWriteBlock * kWriteBlock;
            parts[2] = size - head - parts[1];
        }
    }
    qint64 written = 0;
    for (qint64 part : parts) {
        if (part == 0)
            continue;
        const qint64 w = QFile::writeData(data + written, part);
        if (w > 0)
            written += w;
        if (w < part)
            return written > 0 ? written : w;
    }
    return written;
}

} // namespace ko
