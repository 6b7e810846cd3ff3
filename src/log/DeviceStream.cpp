// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "log/DeviceStream.h"

#include <QIODevice>

namespace ko
{

DeviceStreamBuffer::DeviceStreamBuffer()
    : mDevice(nullptr)
{ }

DeviceStreamBuffer::DeviceStreamBuffer(QIODevice &device)
    : mDevice(&device)
{ }

DeviceStreamBuffer::DeviceStreamBuffer(const DeviceStreamBuffer &)
    : std::streambuf()
    , mDevice(nullptr)
{ }

DeviceStreamBuffer &DeviceStreamBuffer::operator=(const DeviceStreamBuffer &)
{
    return *this;
}

DeviceStreamBuffer::~DeviceStreamBuffer() = default;

void DeviceStreamBuffer::imbue(const std::locale &) { }

std::streambuf *DeviceStreamBuffer::setbuf(char_type *, std::streamsize)
{
    return this;
}

DeviceStreamBuffer::pos_type DeviceStreamBuffer::seekoff(
    off_type, std::ios_base::seekdir, std::ios_base::openmode)
{
    return pos_type(off_type(-1));
}

DeviceStreamBuffer::pos_type DeviceStreamBuffer::seekpos(pos_type, std::ios_base::openmode)
{
    return pos_type(off_type(-1));
}

// A device-less buffer is outside the caller's contract: every operation then reports failure or
// end of file.

int DeviceStreamBuffer::sync()
{
    if (!mDevice || !mDevice->isWritable())
        return 0;
    // 1, not -1, on failure: callers test for non-zero.
    return mDevice->waitForBytesWritten(-1) ? 0 : 1;
}

std::streamsize DeviceStreamBuffer::showmanyc()
{
    return mDevice ? mDevice->bytesAvailable() : 0;
}

std::streamsize DeviceStreamBuffer::xsgetn(char_type *s, std::streamsize n)
{
    return mDevice ? mDevice->read(s, n) : 0;
}

DeviceStreamBuffer::int_type DeviceStreamBuffer::underflow()
{
    char ch = 0;
    if (!mDevice || mDevice->peek(&ch, 1) == 0)
        return -1;
    return int_type(ch); // sign-extended on purpose: 255 reads as end of file
}

DeviceStreamBuffer::int_type DeviceStreamBuffer::uflow()
{
    char ch = 0;
    if (!mDevice || !mDevice->getChar(&ch))
        return -1;
    return int_type(ch); // sign-extended on purpose: 255 reads as end of file
}

DeviceStreamBuffer::int_type DeviceStreamBuffer::pbackfail(int_type ch)
{
    if (mDevice)
        mDevice->ungetChar(char(ch));
    return ch;
}

std::streamsize DeviceStreamBuffer::xsputn(const char_type *s, std::streamsize n)
{
    return mDevice ? mDevice->write(s, n) : -1;
}

DeviceStreamBuffer::int_type DeviceStreamBuffer::overflow(int_type ch)
{
    if (ch == -1 || !mDevice)
        return -1;
    return mDevice->putChar(char(ch)) ? ch : -1;
}

} // namespace ko
