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
    /** A buffer without a device. */
    DeviceStreamBuffer();
    /** A buffer on @p device, which must outlive it. */
    explicit DeviceStreamBuffer(QIODevice& device);
    /** Makes a buffer without a device: the device is not transferred. */
    DeviceStreamBuffer(const DeviceStreamBuffer& other);
    /** Leaves this buffer as it was: the device is not transferred. */
    DeviceStreamBuffer& operator=(const DeviceStreamBuffer& other);
    /** Destroys the buffer; the device is not touched. */
    ~DeviceStreamBuffer() override;

    /** The device, or null. */
    QIODevice* device() const { return mDevice; }

protected:
    void imbue(const std::locale& locale) override;
    std::streambuf* setbuf(char_type* s, std::streamsize n) override;
    pos_type seekoff(off_type off, std::ios_base::seekdir dir, std::ios_base::openmode which) override;
    pos_type seekpos(pos_type pos, std::ios_base::openmode which) override;
    int sync() override;
    std::streamsize showmanyc() override;
    std::streamsize xsgetn(char_type* s, std::streamsize n) override;
    int_type underflow() override;
    int_type uflow() override;
    int_type pbackfail(int_type ch) override;
    std::streamsize xsputn(const char_type* s, std::streamsize n) override;
    int_type overflow(int_type ch) override;

private:
    QIODevice* mDevice;
};

} // namespace ko

#endif // KO_DEVICESTREAM_H
