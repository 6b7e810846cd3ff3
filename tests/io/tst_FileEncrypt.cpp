#include "io/FileEncrypt.h"
#include "platform/core/Enigma.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>
#include <QtTest>

#include <random>
#include <unistd.h>

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
    void writesOfAnySizeMatchCipher();
    void truncateWritesNewHeader();
    void seekAgainstRawOracle_data();
    void seekAgainstRawOracle();
    void seekToCurrentPositionKeepsCipher();
    void writeAfterSeek();
    void versionCheck_data();
    void versionCheck();
    void truncatedHeader_data();
    void truncatedHeader();
    void reservedBytesCarriedToNewFile();
    void zeroLengthReadOnlyIsPlain();
    void openTwiceFails();
    void openFailures_data();
    void openFailures();
    void readLineGivesRawBytes();
    void resizeRefused();

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
    for (int length : {0, 1, 7, 8, 9, 4096, 1 << 20}) {
        QTest::addRow("%d buffered", length) << length << false;
        QTest::addRow("%d unbuffered", length) << length << true;
    }
}

void tst_FileEncrypt::roundTrip()
{
    QFETCH(int, length);
    QFETCH(bool, unbuffered);
    const QByteArray plain = randomBytes(length, quint32(length));
    const QString name = path(QStringLiteral("round.bin"));

    quint32 seed = 0;
    {
        ko::FileEncrypt file(name);
        QVERIFY(file.open(QIODevice::WriteOnly | buffering(unbuffered)));
        seed = file.seed();
        QVERIFY(seed != 0);
        // In three pieces, so that the cipher state carries from one write to the next.
        const int pieces[] = {0, length / 3, length / 2, length};
        for (int i = 0; i < 3; ++i) {
            const QByteArray piece = plain.mid(pieces[i], pieces[i + 1] - pieces[i]);
            if (!piece.isEmpty())
                QCOMPARE(file.write(piece), qint64(piece.size()));
        }
        QCOMPARE(file.size(), qint64(length));
        file.close();
        QCOMPARE(file.seed(), 0u);
    }

    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), length + 8);
    QCOMPARE(raw.left(4), QByteArray("\x01\x01\x00\x00", 4));
    QCOMPARE(qFromLittleEndian<quint32>(raw.constData() + 4), seed);
    // Byte i of the data is combined with the key of the state after i steps.
    QByteArray expectedRaw = raw.left(8);
    for (int i = 0; i < length; ++i)
        expectedRaw.append(char(plain[i] ^ ko::Enigma::key(ko::Enigma::advance(seed, quint64(i)))));
    QVERIFY(raw == expectedRaw);

    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    QCOMPARE(file.seed(), seed);
    QCOMPARE(file.size(), qint64(length));
    QVERIFY(file.readAll() == plain);
    file.close();

    // Again in small odd reads.
    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    QByteArray back;
    while (back.size() < length) {
        const QByteArray chunk = file.read(back.size() % 2 ? 7 : 1000);
        QVERIFY(!chunk.isEmpty());
        back += chunk;
    }
    QVERIFY(back == plain);
    QVERIFY(file.read(16).isEmpty());
    file.close();

    if (length == 0) {
        // An empty write is refused by the cipher and writes nothing.
        QVERIFY(file.open(QIODevice::WriteOnly | buffering(unbuffered)));
        QCOMPARE(file.write(QByteArray()), qint64(-1));
        file.close();
        QCOMPARE(readFile(name).size(), 8);
    }
}

void tst_FileEncrypt::writesOfAnySizeMatchCipher()
{
    // Small, odd and block-sized writes, and one larger than the device's internal pieces.
    const QString name = path(QStringLiteral("sizes.bin"));
    std::mt19937 random(11);
    QByteArray plain;
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const quint32 seed = file.seed();
    for (int i = 0; i < 60; ++i) {
        const int length = i == 30 ? (5 << 19) : i % 7 == 0 ? 16384 : int(random() % 40000) + 1;
        const QByteArray bytes = randomBytes(length, quint32(i));
        QCOMPARE(file.write(bytes), qint64(length));
        plain += bytes;
    }
    file.close();

    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), plain.size() + 8);
    QVERIFY(oracle(raw, seed, 8, 0, plain.size()) == plain);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll() == plain);
    file.close();
}

void tst_FileEncrypt::truncateWritesNewHeader()
{
    const QString name = path(QStringLiteral("t.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(randomBytes(100, 1)), qint64(100));
    file.close();

    // ReadWrite with Truncate skips the header check even though the file has content.
    QVERIFY(file.open(QIODevice::ReadWrite | QIODevice::Truncate));
    const quint32 seed = file.seed();
    QCOMPARE(file.write("abc"), qint64(3));
    file.close();
    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), 11);
    QCOMPARE(qFromLittleEndian<quint32>(raw.constData() + 4), seed);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("abc"));
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
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(randomBytes(70000, 9)), qint64(70000));
    file.close();
    const QByteArray raw = readFile(name);

    QVERIFY(file.open(QIODevice::ReadOnly | buffering(unbuffered)));
    const quint32 seed = file.seed();
    QCOMPARE(file.read(100), oracle(raw, seed, 8, 0, 100)); // before any seek: the data after the header
    // Forward inside what a buffered read has fetched ahead, backward, far, to 0 (the header), to the
    // raw end and beyond it: each read starts at raw offset p with the cipher advanced p steps.
    const qint64 positions[] = {150, 3000, 20000, 20001, 19999, 0, 4, 65000, 69999, 70008, 70003, 80000, 12};
    for (qint64 p : positions) {
        QVERIFY(file.seek(p));
        QCOMPARE(file.pos(), p);
        QCOMPARE(file.read(5000), oracle(raw, seed, p, p, 5000));
    }
    file.close();
}

void tst_FileEncrypt::seekToCurrentPositionKeepsCipher()
{
    const QString name = path(QStringLiteral("same.bin"));
    const QByteArray plain = randomBytes(64, 3);
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(plain);
    file.close();

    QVERIFY(file.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    QCOMPARE(file.read(10), plain.left(10));
    // A real seek to 10 would move to raw offset 10, inside the header's shadow.
    QVERIFY(file.seek(10));
    QCOMPARE(file.read(10), plain.mid(10, 10));
    file.close();
}

void tst_FileEncrypt::writeAfterSeek()
{
    const QString name = path(QStringLiteral("w.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(randomBytes(200, 4));
    file.close();

    QVERIFY(file.open(QIODevice::ReadWrite));
    const quint32 seed = file.seed();
    const QByteArray patch = randomBytes(30, 5);
    QVERIFY(file.seek(50));
    QCOMPARE(file.write(patch), qint64(30));
    file.close();

    const QByteArray raw = readFile(name);
    QCOMPARE(raw.size(), 208);
    // Written at raw offset 50 with the cipher advanced 50 steps: the oracle gives the patch back.
    QCOMPARE(oracle(raw, seed, 50, 50, 30), patch);
}

void tst_FileEncrypt::versionCheck_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("minimum");
    QTest::addColumn<bool>("opens");
    QTest::newRow("same") << 1 << 1 << true;
    QTest::newRow("same, odd minimum") << 1 << 5 << true;
    QTest::newRow("newer, readable") << 2 << 1 << true;
    QTest::newRow("newest, readable") << 127 << 0 << true;
    QTest::newRow("newer minimum") << 2 << 2 << false;
    QTest::newRow("older than our minimum") << 0 << 0 << false;
    QTest::newRow("negative") << -1 << 0 << false;
}

void tst_FileEncrypt::versionCheck()
{
    QFETCH(int, version);
    QFETCH(int, minimum);
    QFETCH(bool, opens);
    const QString name = path(QStringLiteral("v.bin"));
    QByteArray bytes = QByteArray("\0\0\0\0\x2a\0\0\0", 8) + randomBytes(20, 6);
    bytes[0] = char(version);
    bytes[1] = char(minimum);
    writeFile(name, bytes);

    ko::FileEncrypt file(name);
    QSignalSpy spy(&file, &ko::FileEncrypt::incompatible);
    QCOMPARE(file.open(QIODevice::ReadWrite), opens);
    QCOMPARE(file.isCompatible(), opens);
    QCOMPARE(file.isOpen(), opens);
    QCOMPARE(spy.count(), opens ? 0 : 1);
    if (opens) {
        QCOMPARE(file.seed(), 42u);
        QCOMPARE(file.readAll(), oracle(bytes, 42, 8, 0, 20));
        file.close();
    }
    QCOMPARE(readFile(name), bytes);
}

void tst_FileEncrypt::truncatedHeader_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("readOnly");
    for (int length = 1; length < 8; ++length) {
        QTest::addRow("%d read-only", length) << length << true;
        QTest::addRow("%d read-write", length) << length << false;
    }
}

void tst_FileEncrypt::truncatedHeader()
{
    QFETCH(int, length);
    QFETCH(bool, readOnly);
    const QString name = path(QStringLiteral("short.bin"));
    const QByteArray bytes = QByteArray("\x01\x01\x00\x00\x11\x22\x33", 7).left(length);
    writeFile(name, bytes);

    ko::FileEncrypt file(name);
    QSignalSpy spy(&file, &ko::FileEncrypt::incompatible);
    QVERIFY(!file.open(readOnly ? QIODevice::ReadOnly : QIODevice::ReadWrite));
    QCOMPARE(spy.count(), 1);
    QVERIFY(!file.isCompatible());
    QVERIFY(!file.isOpen());
    QCOMPARE(file.seed(), 0u);
    QCOMPARE(readFile(name), bytes);
}

void tst_FileEncrypt::reservedBytesCarriedToNewFile()
{
    // The header of an opened file becomes the object's own version bytes, written into the next new file.
    const QString old = path(QStringLiteral("old.bin"));
    writeFile(old, QByteArray("\x02\x01\xab\xcd\x07\x00\x00\x00", 8));
    ko::FileEncrypt file(old);
    QVERIFY(file.open(QIODevice::ReadOnly));
    file.close();

    file.setFileName(path(QStringLiteral("new.bin")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QCOMPARE(readFile(file.fileName()).left(4), QByteArray("\x02\x01\xab\xcd", 4));
}

void tst_FileEncrypt::zeroLengthReadOnlyIsPlain()
{
    const QString name = path(QStringLiteral("empty.bin"));
    writeFile(name, QByteArray());
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.seed(), 0u);
    QCOMPARE(file.size(), qint64(0));
    QVERIFY(file.readAll().isEmpty());
    QVERIFY(file.seek(0));
    file.close();
    QCOMPARE(readFile(name), QByteArray());
}

void tst_FileEncrypt::openTwiceFails()
{
    const QString name = path(QStringLiteral("twice.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const quint32 seed = file.seed();
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QVERIFY(file.isOpen());
    QCOMPARE(file.seed(), seed);
    QCOMPARE(file.write("x"), qint64(1));
    // Destroyed while open: QFile flushes and closes, and the cipher is released.
}

void tst_FileEncrypt::openFailures_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("missing") << "missing";
    QTest::newRow("vanished") << "vanished";
    QTest::newRow("directory") << "directory";
    QTest::newRow("no permission") << "no permission";
}

void tst_FileEncrypt::openFailures()
{
    QFETCH(QString, kind);
    QString name = path(QStringLiteral("gone.bin"));
    ko::FileEncrypt file;
    if (kind == QLatin1String("vanished")) {
        writeFile(name, QByteArray("\x01\x01\0\0\1\0\0\0data", 12));
        file.setFileName(name);
        QVERIFY(QFile::remove(name));
    } else if (kind == QLatin1String("directory")) {
        name = mDir->path();
    } else if (kind == QLatin1String("no permission")) {
        if (geteuid() == 0)
            QSKIP("permissions do not stop root");
        writeFile(name, QByteArray("\x01\x01\0\0\1\0\0\0data", 12));
        QVERIFY(QFile::setPermissions(name, QFileDevice::WriteOwner));
    }
    file.setFileName(name);
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QVERIFY(!file.isOpen());
    QCOMPARE(file.error(), QFileDevice::OpenError);
    QVERIFY(file.isCompatible());
    QCOMPARE(file.seed(), 0u);
}

void tst_FileEncrypt::readLineGivesRawBytes()
{
    const QString name = path(QStringLiteral("lines.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("first line\nsecond line\n").repeated(4));
    file.close();
    const QByteArray raw = readFile(name);

    QVERIFY(file.open(QIODevice::ReadOnly));
    // The raw, enciphered bytes from just after the header up to their first newline, at most 32.
    QByteArray expected = raw.mid(8, 32);
    if (expected.contains('\n'))
        expected.truncate(expected.indexOf('\n') + 1);
    QCOMPARE(file.readLine(33), expected);
    file.close();
}

void tst_FileEncrypt::resizeRefused()
{
    const QString name = path(QStringLiteral("r.bin"));
    ko::FileEncrypt file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("12345");
    QVERIFY(!file.resize(0));
    file.close();
    QVERIFY(!file.resize(2));
    QCOMPARE(readFile(name).size(), 13);
}

QTEST_GUILESS_MAIN(tst_FileEncrypt)
#include "tst_FileEncrypt.moc"
