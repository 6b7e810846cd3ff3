// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_DEVICESTREAM_H
#define KO_DEVICESTREAM_H

#include "coreqt_export.h"

#include <streambuf>

class QIODevice;

namespace ko
{

/**
 * A std::streambuf that reads from and writes to a QIODevice, so that standard
 * streams can work on any Qt device. It keeps no buffer of its own: every
 * operation goes straight to the device.
 *
 * Bytes read are sign-extended, so a byte 255 reads as end of file; this is
 * the adaptor's defined behaviour.
 */
class COREQT_EXPORT DeviceStreamBuffer : public std::streambuf
{
public:
    /** A buffer without a device: reads give end of file, writes fail and sync() succeeds. */
    DeviceStreamBuffer();
    /** A buffer on @p device, which must outlive it. */
    explicit DeviceStreamBuffer(QIODevice &device);
    /** Makes a buffer without a device: the device is not transferred. */
    DeviceStreamBuffer(const DeviceStreamBuffer &other);
    /** Leaves this buffer as it was: the device is not transferred. */
    DeviceStreamBuffer &operator=(const DeviceStreamBuffer &other);
    /** Destroys the buffer; the device is not touched. */
    ~DeviceStreamBuffer() override;

    /** The device, or null. */
    QIODevice *device() const { return mDevice; }

protected:
    /** Does nothing: the bytes pass through unchanged whatever the locale. */
    void imbue(const std::locale &locale) override;
    /** Ignores its arguments: the buffer keeps no buffer of its own. Returns this. */
    std::streambuf *setbuf(char_type *s, std::streamsize n) override;
    /** Always fails (-1): a stream on the device cannot seek. */
    pos_type seekoff(
        off_type off, std::ios_base::seekdir dir, std::ios_base::openmode which) override;
    /** Always fails (-1): a stream on the device cannot seek. */
    pos_type seekpos(pos_type pos, std::ios_base::openmode which) override;
    /** Waits for a writable device's bytes to be written: 0 on success, 1 (not -1) on failure. */
    int sync() override;
    /** The device's bytesAvailable(). */
    std::streamsize showmanyc() override;
    /** Reads up to @p n bytes from the device. */
    std::streamsize xsgetn(char_type *s, std::streamsize n) override;
    /**
     * Peeks one byte, sign-extended: end of file (-1) when there is none. A byte of value 255
     * therefore also reads as end of file; kept as the adaptor always behaved.
     */
    int_type underflow() override;
    /** Reads one byte, sign-extended like underflow() (255 reads as end of file). */
    int_type uflow() override;
    /** Puts @p ch back into the device; returns @p ch. */
    int_type pbackfail(int_type ch) override;
    /** Writes @p n bytes to the device at once, without buffering. */
    std::streamsize xsputn(const char_type *s, std::streamsize n) override;
    /** Writes one byte; end of file (-1) writes nothing and returns -1. */
    int_type overflow(int_type ch) override;

private:
    QIODevice *mDevice;
};

} // namespace ko

#endif // KO_DEVICESTREAM_H
