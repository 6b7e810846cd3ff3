#include "io/FileEncrypt.h"
#include "platform/core/Enigma.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <random>

namespace
{

QByteArray randomBytes(int length, quint32 seed)
{
    std::mt19937 random(seed);
    QByteArray bytes(length, Qt::Uninitialized);
    for (char& c : bytes)
        c = char(random());
    return bytes;
}

// What reading @p length bytes from raw offset @p pos must give when the cipher has made
// @p steps steps there: each raw byte combined with the key of the state it meets.
QByteArray oracle(const QByteArray& raw, quint32 seed, qint64 pos, qint64 steps, qint64 length)
{
    QByteArray out;
    for (qint64 i = 0; i < qMin<qint64>(raw.size() - pos, length); ++i)
        out.append(char(raw[int(pos + i)] ^ ko::Enigma::key(ko::Enigma::advance(seed, quint64(steps + i)))));
    return out;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// Writes @p plain through the device (in pieces) and returns the seed it chose.
quint32 writeEnciphered(const QString& path, const QByteArray& plain, QIODevice::OpenMode extra = {})
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
    void truncateWritesNewHeaderFromLastOpened();
    void openFailures_data();
    void openFailures();
    void readLineGivesRawBytes();

private:
    QString path(const QString& name) const { return mDir->filePath(name); }
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
    const QIODevice::OpenMode buffering = unbuffered ? QIODevice::Unbuffered : QIODevice::NotOpen;
    const QByteArray plain = randomBytes(length, quint32(length));
    const QString name = path(QStringLiteral("round.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly | buffering));
    const quint32 seed = file.seed();
    QVERIFY(seed != 0);
    if (length == 0)
        QCOMPARE(file.write(plain), qint64(-1)); // the cipher refuses an empty piece; nothing is written
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
    QVERIFY(file.open(QIODevice::ReadOnly | buffering));
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
    QTest::addColumn<bool>("unbuffered");
    QTest::newRow("buffered") << false;
    QTest::newRow("unbuffered") << true;
}

void tst_FileEncrypt::seekAgainstRawOracle()
{
    QFETCH(bool, unbuffered);
    const QString name = path(QStringLiteral("seek.bin"));
    const QByteArray plain = randomBytes(70000, 9);
    const quint32 seed = writeEnciphered(name, plain);
    const QByteArray raw = readFile(name);

    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly | (unbuffered ? QIODevice::Unbuffered : QIODevice::NotOpen)));
    QCOMPARE(file.read(100), plain.left(100)); // before any seek: the data after the header
    // A seek to the current position keeps the cipher; a real one would land in the header's shadow.
    QVERIFY(file.seek(100));
    QCOMPARE(file.read(20), plain.mid(100, 20));
    // Forward inside what a buffered read has fetched ahead, backward, far, to 0 (the header), to the
    // raw end and beyond it: each read starts at raw offset p with the cipher advanced p steps.
    for (qint64 p : { 150, 3000, 20000, 20001, 19999, 0, 4, 65000, 69999, 70008, 70003, 80000, 12 }) {
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
    // The reader is version 1 with minimum version 1; files carry seed 42 and, with a full header, 20 bytes.
    // An empty file opened read-only stays a plain device without a seed.
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<bool>("opens");
    const auto full = [](char version, char minimum) {
        return QByteArray(1, version) + QByteArray(1, minimum) + QByteArray("\0\0\x2a\0\0\0", 6);
    };
    QTest::newRow("empty file") << QByteArray() << true;
    QTest::newRow("same") << full(1, 1) << true;
    QTest::newRow("same, odd minimum") << full(1, 5) << true;
    QTest::newRow("newer, readable") << full(2, 1) << true;
    QTest::newRow("newest, readable") << full(127, 0) << true;
    QTest::newRow("newer minimum") << full(2, 2) << false;
    QTest::newRow("older than our minimum") << full(0, 0) << false;
    QTest::newRow("negative") << full(-1, 0) << false;
    for (int length = 1; length < 8; ++length)
        QTest::addRow("cut to %d bytes", length) << full(1, 1).left(length) << false;
}

void tst_FileEncrypt::headerCheck()
{
    QFETCH(QByteArray, header);
    QFETCH(bool, opens);
    const QString name = path(QStringLiteral("v.bin"));
    const QByteArray bytes = header.size() == 8 ? header + randomBytes(20, 6) : header;
    writeFile(name, bytes);

    ko::FileEncrypt file(name);
    QSignalSpy spy(&file, &ko::FileEncrypt::incompatible);
    QCOMPARE(file.open(QIODevice::ReadOnly), opens);
    QCOMPARE(file.isCompatible(), opens);
    QCOMPARE(file.isOpen(), opens);
    QCOMPARE(spy.count(), opens ? 0 : 1);
    if (opens) {
        QCOMPARE(file.seed(), bytes.isEmpty() ? 0u : 42u);
        QCOMPARE(file.size(), qint64(qMax(0, bytes.size() - 8)));
        QCOMPARE(file.readAll(), oracle(bytes, 42, 8, 0, 20));
        file.close();
    }
    QCOMPARE(readFile(name), bytes); // nothing lost either way
}

void tst_FileEncrypt::truncateWritesNewHeaderFromLastOpened()
{
    // The header of an opened file becomes the device's own version bytes; with Truncate the check
    // is skipped and a new header with a new seed is written from them.
    const QString name = path(QStringLiteral("t.bin"));
    writeFile(name, QByteArray("\x02\x01\xab\xcd\x07\0\0\0", 8) + randomBytes(100, 1));
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
}

void tst_FileEncrypt::openFailures_data()
{
    QTest::addColumn<QString>("kind");
    for (const char* kind : { "missing", "vanished", "directory" })
        QTest::newRow(kind) << QString::fromLatin1(kind);
}

void tst_FileEncrypt::openFailures()
{
    QFETCH(QString, kind);
    QString name = path(QStringLiteral("gone.bin"));
    if (kind == QLatin1String("directory"))
        name = mDir->path();
    ko::FileEncrypt file(name);
    if (kind == QLatin1String("vanished")) {
        writeEnciphered(name, "data");
        QVERIFY(QFile::remove(name));
    }
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QVERIFY(!file.isOpen());
    QCOMPARE(file.error(), QFileDevice::OpenError);
    QVERIFY(file.isCompatible());
    QCOMPARE(file.seed(), 0u);
}

void tst_FileEncrypt::readLineGivesRawBytes()
{
    const QString name = path(QStringLiteral("lines.bin"));
    writeEnciphered(name, QByteArray("first line\nsecond line\n").repeated(4));
    const QByteArray raw = readFile(name);
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    // The raw, enciphered bytes from just after the header up to their first newline, at most 32.
    QByteArray expected = raw.mid(8, 32);
    if (expected.contains('\n'))
        expected.truncate(expected.indexOf('\n') + 1);
    QCOMPARE(file.readLine(33), expected);
    file.close();
}

QTEST_GUILESS_MAIN(tst_FileEncrypt)
#include "tst_FileEncrypt.moc"
