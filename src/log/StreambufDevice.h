// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_STREAMBUFDEVICE_H
#define KO_STREAMBUFDEVICE_H

#include "coreqt_export.h"

#include <QIODevice>

#include <streambuf>

namespace ko
{

/**
 * A sequential QIODevice that reads from and writes to a standard stream
 * buffer, so that a QTextStream can write into a std::ostream's buffer.
 * Writes go straight to the stream buffer; reads pass through the device's
 * read buffer as for any QIODevice. Made for std::streambuf and std::wstreambuf;
 * the wide variant counts a character as two bytes when writing, and when
 * reading takes the byte count as a character count and returns characters,
 * so a read shorter than QIODevice's buffer chunk (16 KiB) through its read
 * buffer sees that count as bytes.
 */
template <class Streambuf> class TStreambufDevice : public QIODevice
{
public:
    /** A device over @p streambuf (not owned), opened read-write; writes reach the buffer at once.
     */
    explicit TStreambufDevice(Streambuf *streambuf, QObject *parent = nullptr)
        : QIODevice(parent)
        , mStreambuf(streambuf)
        , mWriteStreambuf(nullptr)
    {
        open(QIODevice::ReadWrite);
    }

    /** The buffer read from, and written to unless a write buffer is set. */
    Streambuf *streambuf() const { return mStreambuf; }
    /** The buffer written to instead of streambuf(), or null. */
    Streambuf *writeStreambuf() const { return mWriteStreambuf; }
    /** Sends writes to @p streambuf (not owned) instead; null sends them back to streambuf(). */
    void setWriteStreambuf(Streambuf *streambuf) { mWriteStreambuf = streambuf; }

    /** Always true: the device cannot seek. */
    bool isSequential() const override { return true; }
    /** The buffer's in_avail(): -1 when it knows it has nothing to read; bytes the device holds in
     * its own read buffer are not counted (not overridden by the wide variant). */
    qint64 bytesAvailable() const override;

protected:
    /**
     * Syncs the buffer, then reads up to @p maxSize characters from it; the wide variant takes
     * @p maxSize as a count of wide characters, unchanged.
     */
    qint64 readData(char *data, qint64 maxSize) override;
    /**
     * Writes to the write buffer (or the buffer) and syncs it. The wide variant writes @p size / 2
     * wide characters and returns that character count, not a byte count.
     */
    qint64 writeData(const char *data, qint64 size) override;

private:
    Streambuf *mStreambuf;
    Streambuf *mWriteStreambuf;
};

/// @cond internal
template <> COREQT_EXPORT qint64 TStreambufDevice<std::streambuf>::bytesAvailable() const;
template <>
COREQT_EXPORT qint64 TStreambufDevice<std::streambuf>::readData(char *data, qint64 maxSize);
template <>
COREQT_EXPORT qint64 TStreambufDevice<std::streambuf>::writeData(const char *data, qint64 size);
template <> COREQT_EXPORT qint64 TStreambufDevice<std::wstreambuf>::bytesAvailable() const;
template <>
COREQT_EXPORT qint64 TStreambufDevice<std::wstreambuf>::readData(char *data, qint64 maxSize);
template <>
COREQT_EXPORT qint64 TStreambufDevice<std::wstreambuf>::writeData(const char *data, qint64 size);
/// @endcond

} // namespace ko

#endif // KO_STREAMBUFDEVICE_H
