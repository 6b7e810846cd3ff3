#ifndef KO_FILEENCRYPT_H
#define KO_FILEENCRYPT_H

#include "coreqt_export.h"

#include <QFile>

#include <memory>

namespace ko
{

class Enigma;

/**
 * A file whose contents are enciphered with ko::Enigma behind an 8-byte plain header
 * (version, minimum version, two reserved bytes, little-endian 32-bit seed); reads decipher.
 */
class COREQT_EXPORT FileEncrypt : public QFile
{
    Q_OBJECT

public:
    /** Creates a device without a file name. */
    explicit FileEncrypt(QObject* parent = nullptr);
    /** Creates a device for the file @p name. */
    explicit FileEncrypt(const QString& name, QObject* parent = nullptr);
    /** Destroys the device; close() it first (the cipher is released here only as a safety net). */
    ~FileEncrypt() override;

    /** Opens the file: an existing header is checked and continued, a new one is written for writing. */
    bool open(OpenMode mode) override;
    /** Closes the file and releases the cipher. */
    void close() override;
    /** The logical length: the file's length without the header while the cipher is active. */
    qint64 size() const override;
    /** Puts the cipher at logical position @p pos and the file at raw offset @p pos (no header added). */
    bool seek(qint64 pos) override;
    /** Refused: an enciphered file cannot be resized. Always false. */
    bool resize(qint64 size) override;

    /** The cipher's seed, or 0 while there is no cipher. */
    quint32 seed() const;
    /** False after the last open() found a header this version cannot read. */
    bool isCompatible() const;

Q_SIGNALS:
    /** Emitted when open() meets a file whose header this version cannot read. */
    void incompatible();

protected:
    /** Reads and deciphers. */
    qint64 readData(char* data, qint64 maxSize) override;
    /** Reads one line of raw, still enciphered bytes. */
    qint64 readLineData(char* data, qint64 maxSize) override;
    /** Enciphers and writes. */
    qint64 writeData(const char* data, qint64 size) override;

private:
    Q_DISABLE_COPY(FileEncrypt)

    qint64 writeAligned(const char* data, qint64 size);

    std::unique_ptr<Enigma> mEnigma;
    signed char mVersion[4]; // version, minimum version, two reserved bytes
    quint32 mSeed;
    bool mCompatible;
};

} // namespace ko

#endif // KO_FILEENCRYPT_H
