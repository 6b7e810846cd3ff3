// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_FILEENCRYPT_H
#define KO_FILEENCRYPT_H

#include "coreqt_export.h"

#include <QByteArray>
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
    /** The 8-byte plain header in front of an enciphered file's data, as open() reads it. */
    class COREQT_EXPORT Header
    {
    public:
        /**
         * The header in the first bytes of a file, @p bytes (beyond 8 ignored). Bytes a short file
         * lacks read as zero, as they do for open().
         */
        explicit Header(const QByteArray &bytes = QByteArray());

        /** How many of the 8 header bytes the file has: fewer than 8 for a file shorter than the
         * header. */
        int length() const { return mLength; }
        /** The format version of the writer. */
        qint8 version() const { return qint8(mBytes[0]); }
        /** The oldest reader version that can read the file. */
        qint8 minimumVersion() const { return qint8(mBytes[1]); }
        /** The two reserved bytes as a little-endian number; they carry no meaning. */
        quint16 reserved() const;
        /** The cipher seed. */
        quint32 seed() const;

        /** Whether a reader of version @p version that needs files of at least @p minimum reads
         * this file. */
        bool isReadableBy(qint8 version, qint8 minimum) const;
        /** Whether this library's FileEncrypt reads the file: the version check open() makes on a
         * new device. */
        bool isReadable() const;

    private:
        char mBytes[8];
        int mLength;
    };

    /** A device without a file name; set one with setFileName() before open(). */
    explicit FileEncrypt(QObject *parent = nullptr);
    /** A device for the file @p name; nothing is opened or read yet. */
    explicit FileEncrypt(const QString &name, QObject *parent = nullptr);
    /** Destroys the device; close() it first (the cipher is released here only as a safety net). */
    ~FileEncrypt() override;

    /**
     * Opens the file: an existing header is checked and its cipher continued from the start of the
     * data; an empty or truncated file gets a new header and seed when opened for writing and is
     * read plain (seed() 0) otherwise. A header this version cannot read closes the file, emits
     * incompatible() and gives false; a device that is open already gives false. When appending,
     * the new bytes are enciphered at their logical position behind the existing data.
     */
    bool open(OpenMode mode) override;
    /** Closes the file and releases the cipher. */
    void close() override;
    /** The logical length: the file's length without the header while the cipher is active. */
    qint64 size() const override;
    /**
     * Puts the cipher at logical position @p pos and the file at raw offset @p pos; a seek to the
     * current position changes nothing. Kept as it always was: the 8 header bytes are not added to
     * the offset.
     */
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
    /** Reads and deciphers (plain while there is no cipher); -1 when the cipher fails. */
    qint64 readData(char *data, qint64 maxSize) override;
    /**
     * Reads one line of raw bytes; -1 at the end, as QFile's line reader gives. Kept as it always
     * was: readLine() does not decipher, and leaves the cipher where it was.
     */
    qint64 readLineData(char *data, qint64 maxSize) override;
    /**
     * Enciphers and writes (plain while there is no cipher); -1, with nothing written, when the
     * cipher refuses the data.
     */
    qint64 writeData(const char *data, qint64 size) override;

private:
    Q_DISABLE_COPY(FileEncrypt)
    struct Private;

    bool readHeader();
    void writeHeader();
    void setSteps(qint64 steps);
    bool moveTo(qint64 pos, qint64 rawPos, qint64 steps);
    void dropReadAhead();

    std::unique_ptr<Enigma> mEnigma;
    signed char mVersion[4]; // version, minimum version, two reserved bytes
    quint32 mSeed;
    bool mCompatible;
    std::unique_ptr<Private> mPrivate;
};

} // namespace ko

#endif // KO_FILEENCRYPT_H
