// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "log/StreambufDevice.h"

#include <algorithm>

namespace ko
{

// A device whose buffer is null is outside the caller's contract: it reads and writes nothing.

template <> qint64 TStreambufDevice<std::streambuf>::bytesAvailable() const
{
    return mStreambuf ? qint64(mStreambuf->in_avail()) : 0;
}

template <> qint64 TStreambufDevice<std::streambuf>::readData(char *data, qint64 maxSize)
{
    if (!mStreambuf)
        return -1;
    mStreambuf->pubsync();
    return mStreambuf->sgetn(data, maxSize);
}

template <> qint64 TStreambufDevice<std::streambuf>::writeData(const char *data, qint64 size)
{
    std::streambuf *target = mWriteStreambuf ? mWriteStreambuf : mStreambuf;
    if (!target)
        return -1;
    const std::streamsize n = target->sputn(data, size);
    target->pubsync();
    return n;
}

template <> qint64 TStreambufDevice<std::wstreambuf>::bytesAvailable() const
{
    return QIODevice::bytesAvailable();
}

template <> qint64 TStreambufDevice<std::wstreambuf>::readData(char *data, qint64 maxSize)
{
    if (!mStreambuf)
        return -1;
    mStreambuf->pubsync();
    // The byte count is passed on as the character count, limited to the wide
    // characters that fit into the caller's buffer of maxSize bytes: reading more
    // would write past its end.
    const qint64 count = std::min<qint64>(maxSize, maxSize / qint64(sizeof(wchar_t)));
    return mStreambuf->sgetn(reinterpret_cast<wchar_t *>(data), count);
}

template <> qint64 TStreambufDevice<std::wstreambuf>::writeData(const char *data, qint64 size)
{
    std::wstreambuf *target = mWriteStreambuf ? mWriteStreambuf : mStreambuf;
    if (!target)
        return -1;
    // A wide character counts as two bytes, and the result is a character count.
    // Where wchar_t is wider than two bytes the count is also limited to what
    // the caller's buffer holds, so nothing is read past its end.
    const qint64 count = std::min<qint64>(size / 2, size / qint64(sizeof(wchar_t)));
    const std::streamsize n = target->sputn(reinterpret_cast<const wchar_t *>(data), count);
    target->pubsync();
    return n;
}

} // namespace ko
