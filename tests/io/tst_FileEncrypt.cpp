// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "TestFiles.h"

#include "io/CipherSteps_p.h"
#include "io/FileEncrypt.h"
#include "platform/core/Enigma.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <unistd.h>

namespace
{

// What reading @p length bytes from raw offset @p pos must give when the cipher has made
// @p steps steps there: each raw byte deciphered on its own with the state it meets.
QByteArray oracle(const QByteArray &raw, quint32 seed, qint64 pos, qint64 steps, qint64 length)
{
    const ko::Enigma engine { ko::Random(seed) };
    QByteArray out;
    for (qint64 i = 0; i < qMin<qint64>(raw.size() - pos, length); ++i) {
        unsigned state = ko::cipher::advance(seed, quint64(steps + i));
        unsigned char byte = static_cast<unsigned char>(raw[int(pos + i)]);
        engine.decode(&byte, 1, &byte, 1, state);
        out.append(char(byte));
    }
    return out;
}

// Writes @p plain through the device (in pieces) and returns the seed it chose.
quint32 writeEnciphered(
    const QString &path, const QByteArray &plain, QIODevice::OpenMode extra = {})
{
    ko::FileEncrypt file(path);
    if (!file.open(QIODevice::WriteOnly | extra))
        return 0;
    const quint32 seed = file.seed();
    for (int done = 0; done < plain.size(); done += 100000)
        file.write(plain.mid(done, 100000));
    file.close();
    return seed;
}

// An enciphered file of 70000 random bytes: its logical content, seed and raw bytes.
struct Sample
{
    QByteArray plain;
    quint32 seed;
    QByteArray raw;
};

Sample writeSample(const QString &path, quint32 contentSeed)
{
    Sample sample;
    sample.plain = randomBytes(70000, contentSeed);
    sample.seed = writeEnciphered(path, sample.plain);
    sample.raw = readFile(path);
    return sample;
}

// One row with QIODevice's buffer, one without.
void addBufferingRows()
{
    QTest::addColumn<bool>("unbuffered");
    QTest::newRow("buffered") << false;
    QTest::newRow("unbuffered") << true;
}

QIODevice::OpenMode buffering(bool unbuffered)
{
    return unbuffered ? QIODevice::Unbuffered : QIODevice::NotOpen;
}

} // namespace

class tst_FileEncrypt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void roundTrip_data();
    void roundTrip();
    void seekAgainstRawOracle_data();
    void seekAgainstRawOracle();
    void headerCheck_data();
    void headerCheck();
    void append_data();
    void append();
    void appendRefusedWithoutReadableHeader();
    void readAhead_data();
    void readAhead();
    void writeAfterRead_data();
    void writeAfterRead();
    void truncateWritesNewHeaderFromLastOpened();
    void openFailures_data();
    void openFailures();
    void readLineGivesRawBytes();
    void reopenAfterLineRead();

private:
    QString path(const QString &name) const { return mDir->filePath(name); }
    std::unique_ptr<QTemporaryDir> mDir;
};

void tst_FileEncrypt::init()
{
    mDir.reset(new QTemporaryDir);
    QVERIFY(mDir->isValid());
}

void tst_FileEncrypt::roundTrip_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("unbuffered");
    for (int length : { 0, 1, 7, 8, 9, 4096, 1 << 20 }) {
        QTest::addRow("%d buffered", length) << length << false;
        QTest::addRow("%d unbuffered", length) << length << true;
    }
    QTest::newRow("2.5 MiB") << (5 << 19) + 16391 << false;
}

void tst_FileEncrypt::roundTrip()
{
    QFETCH(int, length);
    QFETCH(bool, unbuffered);
    const QByteArray plain = randomBytes(length, quint32(length));
    const QString name = path(QStringLiteral("round.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly | buffering(unbuffered)));
    const quint32 seed = file.seed();
    QVERIFY(seed != 0);
    if (length == 0)
        QCOMPARE(
            file.write(plain), qint64(-1)); // the cipher refuses an empty piece; nothing is written
    // Small, block-sized and larger than the device's own pieces, the cipher carried across writes.
    const int pieces[] = { 7, 16384, 5 << 19 };
    for (int done = 0, i = 0; done < length; ++i) {
        const QByteArray piece = plain.mid(done, pieces[i % 3]);
        QCOMPARE(file.write(piece), qint64(piece.size()));
        done += piece.size();
    }
    QVERIFY(!file.resize(0));
    QCOMPARE(file.size(), qint64(length));
    QVERIFY(!file.open(QIODevice::ReadOnly)); // already open: refused, the cipher kept
    QCOMPARE(file.seed(), seed);
    file.close();
    QCOMPARE(file.seed(), 0u);

    // Header, then logical byte i combined with the key of the state after i steps.
    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), length + 8);
    QCOMPARE(raw.left(4), QByteArray("\x01\x01\x00\x00", 4));
    QCOMPARE(qFromLittleEndian<quint32>(raw.constData() + 4), seed);
    QVERIFY(oracle(raw, seed, 8, 0, length) == plain);

    // Read back in small odd pieces and larger ones.
    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    QCOMPARE(file.seed(), seed);
    QCOMPARE(file.size(), qint64(length));
    QByteArray back;
    for (QByteArray chunk; !(chunk = file.read(back.size() % 2 ? 7 : 1000)).isEmpty();)
        back += chunk;
    QVERIFY(back == plain);
    file.close();
}

void tst_FileEncrypt::seekAgainstRawOracle_data()
{
    addBufferingRows();
}

void tst_FileEncrypt::seekAgainstRawOracle()
{
    QFETCH(bool, unbuffered);
    const QString name = path(QStringLiteral("seek.bin"));
    const auto [plain, seed, raw] = writeSample(name, 9);

    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    QCOMPARE(file.read(100), plain.left(100)); // before any seek: the data after the header
    // A seek to the current position keeps the cipher; a real one would land in the header's
    // shadow.
    QVERIFY(file.seek(100));
    QCOMPARE(file.read(20), plain.mid(100, 20));
    // Forward inside what a buffered read has fetched ahead, backward, far, to 0 (the header), to
    // the raw end and beyond it: each read starts at raw offset p with the cipher advanced p steps.
    for (qint64 p :
        { 150, 3000, 20000, 20001, 19999, 0, 4, 65000, 69999, 70008, 70003, 80000, 12 }) {
        QVERIFY(file.seek(p));
        QCOMPARE(file.pos(), p);
        QCOMPARE(file.read(5000), oracle(raw, seed, p, p, 5000));
    }
    file.close();

    // Writing after a seek: at raw offset 50 with the cipher advanced 50 steps.
    QVERIFY(file.open(QIODevice::ReadWrite));
    const QByteArray patch = randomBytes(30, 5);
    QVERIFY(file.seek(50));
    QCOMPARE(file.write(patch), qint64(30));
    file.close();
    QCOMPARE(oracle(readFile(name), seed, 50, 50, 30), patch);
}

void tst_FileEncrypt::headerCheck_data()
{
    // The reader is version 1 with minimum version 1; a full header carries seed 42 and is followed
    // by 20 bytes. A file shorter than the header opens with the zero-filled rest; where that
    // leaves the seed 0 (expected seed 0 here) the cipher picks its own. An empty file opened
    // read-only stays a plain device without a seed.
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<bool>("opens");
    QTest::addColumn<uint>("seed");
    QTest::addColumn<uint>("reserved");
    const auto full = [](char version, char minimum) {
        return QByteArray(1, version) + QByteArray(1, minimum) + QByteArray("\0\0\x2a\0\0\0", 6);
    };
    QTest::newRow("empty file") << QByteArray() << true << 0u << 0u;
    QTest::newRow("same") << full(1, 1) << true << 42u << 0u;
    QTest::newRow("same, odd minimum") << full(1, 5) << true << 42u << 0u;
    QTest::newRow("newer, readable") << full(2, 1) << true << 42u << 0u;
    QTest::newRow("newest, readable") << full(127, 0) << true << 42u << 0u;
    QTest::newRow("reserved bytes")
        << QByteArray("\x01\x01\xab\xcd\x2a\0\0\0", 8) << true << 42u << 0xcdabu;
    QTest::newRow("newer minimum") << full(2, 2) << false << 42u << 0u;
    QTest::newRow("older than our minimum") << full(0, 0) << false << 42u << 0u;
    QTest::newRow("negative") << full(-1, 0) << false << 42u << 0u;
    QTest::newRow("1 byte, version 1") << QByteArray("\x01", 1) << true << 0u << 0u;
    QTest::newRow("1 byte, version 0") << QByteArray("\0", 1) << false << 0u << 0u;
    QTest::newRow("1 byte, version 2") << QByteArray("\x02", 1) << true << 0u << 0u;
    QTest::newRow("4 bytes 01 01 00 00") << QByteArray("\x01\x01\0\0", 4) << true << 0u << 0u;
    QTest::newRow("5 bytes") << full(1, 1).left(5) << true << 42u << 0u;
    QTest::newRow("7 bytes, seed cut")
        << QByteArray("\x01\x01\0\0\x2a\x01\x02", 7) << true << 0x2012au << 0u;
    QTest::newRow("7 bytes, newer minimum") << full(2, 2).left(7) << false << 42u << 0u;
}

void tst_FileEncrypt::headerCheck()
{
    QFETCH(QByteArray, header);
    QFETCH(bool, opens);
    QFETCH(uint, seed);
    QFETCH(uint, reserved);
    const QString name = path(QStringLiteral("v.bin"));
    const QByteArray bytes = header.size() == 8 ? header + randomBytes(20, 6) : header;
    QVERIFY(writeFile(name, bytes));

    const ko::FileEncrypt::Header read(bytes);
    QCOMPARE(read.length(), header.size());
    QCOMPARE(read.seed(), seed);
    QCOMPARE(read.reserved(), quint16(reserved));
    if (!bytes.isEmpty())
        QCOMPARE(read.isReadable(), opens); // the same check open() makes on a new device

    ko::FileEncrypt file(name);
    QSignalSpy spy(&file, &ko::FileEncrypt::incompatible);
    QCOMPARE(file.open(QIODevice::ReadOnly), opens);
    QCOMPARE(file.isCompatible(), opens);
    QCOMPARE(file.isOpen(), opens);
    QCOMPARE(spy.count(), opens ? 0 : 1);
    if (opens) {
        if (bytes.isEmpty())
            QCOMPARE(file.seed(), 0u);
        else if (seed == 0)
            QVERIFY(file.seed() != 0);
        else
            QCOMPARE(file.seed(), seed);
        QCOMPARE(file.size(), qint64(qMax(0, bytes.size() - 8)));
        QCOMPARE(file.readAll(), oracle(bytes, seed, 8, 0, 20));
        file.close();
        // The version bytes read (zero-filled) become the device's own, written into the next
        // header.
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.close();
        const QByteArray versions
            = bytes.isEmpty() ? QByteArray("\x01\x01\0\0", 4) : bytes.leftJustified(4, '\0', true);
        QCOMPARE(readFile(name).left(4), versions);
    } else {
        QCOMPARE(readFile(name), bytes); // left as it was
    }
}

void tst_FileEncrypt::append_data()
{
    QTest::addColumn<int>("existing");
    QTest::addColumn<int>("mode");
    QTest::addColumn<qint64>("seekFirst");
    const int readWrite = QIODevice::ReadWrite | QIODevice::Append;
    const int writeOnly = QIODevice::WriteOnly | QIODevice::Append;
    for (int existing : { 0, 3, 70000 }) {
        QTest::addRow("%d bytes, read-write", existing) << existing << readWrite << qint64(-1);
        QTest::addRow("%d bytes, read-write unbuffered", existing)
            << existing << (readWrite | QIODevice::Unbuffered) << qint64(-1);
        QTest::addRow("%d bytes, write-only", existing) << existing << writeOnly << qint64(-1);
        QTest::addRow("%d bytes, write-only unbuffered", existing)
            << existing << (writeOnly | QIODevice::Unbuffered) << qint64(-1);
    }
    // Appending writes go to the end, with the cipher of the end, wherever the device was moved.
    QTest::newRow("after a seek to 1") << 3 << readWrite << qint64(1);
    QTest::newRow("after a seek into the data") << 70000 << readWrite << qint64(30000);
}

void tst_FileEncrypt::append()
{
    QFETCH(int, existing);
    QFETCH(int, mode);
    QFETCH(qint64, seekFirst);
    const QString name = path(QStringLiteral("append.bin"));
    const QByteArray first = randomBytes(existing, 3);
    const QByteArray second = randomBytes(20000, 4);
    QVERIFY(writeFile(name, QByteArray()));
    const quint32 seed = existing > 0 ? writeEnciphered(name, first) : 0;

    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::OpenMode(mode)));
    QCOMPARE(file.pos(), existing > 0 ? qint64(existing + 8) : qint64(0));
    if (existing > 0)
        QCOMPARE(file.seed(), seed);
    if (seekFirst >= 0)
        QVERIFY(file.seek(seekFirst));
    QCOMPARE(file.write(second.left(7)), qint64(7));
    QCOMPARE(file.write(second.mid(7)), qint64(second.size() - 7));
    file.close();

    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.size(), qint64(existing + second.size()));
    QVERIFY(file.readAll() == first + second);
    file.close();
}

void tst_FileEncrypt::appendRefusedWithoutReadableHeader()
{
    if (::geteuid() == 0)
        QSKIP("the superuser reads a file without read permission");
    const QString name = path(QStringLiteral("writeonly.bin"));
    writeEnciphered(name, "data");
    QVERIFY(QFile::setPermissions(name, QFile::WriteOwner));
    ko::FileEncrypt file(name);
    QVERIFY(!file.open(QIODevice::WriteOnly | QIODevice::Append));
    QVERIFY(!file.isOpen());
    QVERIFY(file.errorString().startsWith(
        QLatin1String("Cannot read the header of the enciphered file")));
    QVERIFY(QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner));
    QCOMPARE(readFile(name).size(), 12);
}

void tst_FileEncrypt::readAhead_data()
{
    // Where the device was put first: right after opening (data behind the header), at raw offset
    // 100 by a seek, or after a line read (which moves the file, not the cipher).
    QTest::addColumn<bool>("unbuffered");
    QTest::addColumn<QString>("start");
    for (const char *start : { "open", "seek", "line" }) {
        QTest::addRow("%s, buffered", start) << false << QString::fromLatin1(start);
        QTest::addRow("%s, unbuffered", start) << true << QString::fromLatin1(start);
    }
}

// QIODevice moves pos() back after reading ahead (peek(), buffering) without a seek of ours;
// what follows must still continue at pos(), and a buffered device must behave as an unbuffered
// one.
void tst_FileEncrypt::readAhead()
{
    QFETCH(bool, unbuffered);
    QFETCH(QString, start);
    const QString name = path(QStringLiteral("peek.bin"));
    const auto [plain, seed, raw] = writeSample(name, 11);

    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    QByteArray expected = plain; // what reading from pos() 0 on gives
    qint64 at = 0;
    if (start == QLatin1String("seek")) {
        at = 100;
        QVERIFY(file.seek(at));
        expected = QByteArray(int(at), '\0') + oracle(raw, seed, at, at, raw.size());
    } else if (start == QLatin1String("line")) {
        const QByteArray line = file.readLine(5);
        at = line.size();
        QCOMPARE(line, raw.mid(8, int(at)));
        expected = QByteArray(int(at), '\0') + oracle(raw, seed, 8 + at, 0, raw.size());
    }
    QCOMPARE(file.peek(4), expected.mid(int(at), 4));
    QCOMPARE(file.pos(), at);
    QCOMPARE(file.read(4), expected.mid(int(at), 4));
    QCOMPARE(file.peek(3000), expected.mid(int(at) + 4, 3000));
    QCOMPARE(file.read(6), expected.mid(int(at) + 4, 6));
    QVERIFY(file.seek(at + 10)); // to pos(): continues there
    QCOMPARE(file.read(20000), expected.mid(int(at) + 10, 20000));
    QCOMPARE(file.pos(), at + 20010);
    file.close();
}

void tst_FileEncrypt::writeAfterRead_data()
{
    addBufferingRows();
}

// A write lands at pos(), with the cipher of that position, however far the device read ahead.
void tst_FileEncrypt::writeAfterRead()
{
    QFETCH(bool, unbuffered);
    const QString name = path(QStringLiteral("rw.bin"));
    QByteArray plain = randomBytes(70000, 12);
    writeEnciphered(name, plain);
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadWrite | buffering(unbuffered)));
    QCOMPARE(file.read(10), plain.left(10));
    QCOMPARE(file.write("xyz"), qint64(3));
    QCOMPARE(file.pos(), qint64(13));
    QCOMPARE(file.read(10), plain.mid(13, 10));
    file.close();
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == plain.replace(10, 3, "xyz"));
    file.close();
}

void tst_FileEncrypt::truncateWritesNewHeaderFromLastOpened()
{
    // The header of an opened file becomes the device's own version bytes; with Truncate the check
    // is skipped and a new header with a new seed is written from them.
    const QString name = path(QStringLiteral("t.bin"));
    QVERIFY(writeFile(name, QByteArray("\x02\x01\xab\xcd\x07\0\0\0", 8) + randomBytes(100, 1)));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.seed(), 7u);
    file.close();
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Truncate));
    const quint32 seed = file.seed();
    QCOMPARE(file.write("abc"), qint64(3));
    file.close();
    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), 11);
    QCOMPARE(raw.left(4), QByteArray("\x02\x01\xab\xcd", 4));
    QCOMPARE(qFromLittleEndian<quint32>(raw.constData() + 4), seed);
    QCOMPARE(oracle(raw, seed, 8, 0, 3), QByteArray("abc"));
    // Every new header draws a seed of its own.
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QVERIFY(file.seed() != seed);
}

void tst_FileEncrypt::openFailures_data()
{
    QTest::addColumn<bool>("directory");
    QTest::newRow("missing") << false;
    QTest::newRow("directory") << true;
}

void tst_FileEncrypt::openFailures()
{
    QFETCH(bool, directory);
    ko::FileEncrypt file(directory ? mDir->path() : path(QStringLiteral("missing.bin")));
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QVERIFY(!file.isOpen());
    QCOMPARE(file.error(), QFileDevice::OpenError);
    QVERIFY(file.isCompatible());
    QCOMPARE(file.seed(), 0u);
    QVERIFY(file.seek(0)); // to where it already is: true, also while closed
}

// Lines come out as the raw bytes behind the header, up to and with their newline.
void tst_FileEncrypt::readLineGivesRawBytes()
{
    const QString name = path(QStringLiteral("lines.bin"));
    QVERIFY(writeFile(name, QByteArray("\x01\x01\0\0\x2a\0\0\0first\nsecond", 20)));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readLine(), QByteArray("first\n"));
    QCOMPARE(file.readLine(4), QByteArray("sec"));
    QCOMPARE(file.readLine(), QByteArray("ond"));
    QVERIFY(file.atEnd());
    char line[8];
    QCOMPARE(file.readLine(line, sizeof line), qint64(-1)); // as QFile says at the end
    file.close();
}

// A line read leaves QIODevice unsure where the file is, also after the device is closed and
// opened again: what peek() shows is still what read() then gives. With one byte of data,
// QIODevice's lost count of the file position agrees with pos() again by chance after the peek,
// so QIODevice would not seek back before the read.
void tst_FileEncrypt::reopenAfterLineRead()
{
    const QString name = path(QStringLiteral("reopen.bin"));
    const QByteArray plain("x");
    const quint32 seed = writeEnciphered(name, plain);
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QCOMPARE(file.readLine(168).size(), 1);
    file.close();
    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QCOMPARE(file.seed(), seed);
    QCOMPARE(file.peek(1543), plain);
    QCOMPARE(file.read(1543), plain);
}

QTEST_GUILESS_MAIN(tst_FileEncrypt)
#include "tst_FileEncrypt.moc"
