// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "log/DeviceStream.h"
#include "log/StreambufDevice.h"

#include <QBuffer>
#include <QTextStream>
#include <QtTest>

#include <istream>
#include <ostream>
#include <sstream>

class tst_StreamBridges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deviceBufferWrites();
    void deviceBufferReads_data();
    void deviceBufferReads();
    void streambufDevice();
    void streambufDeviceReadsEachByteOnce();
    void streambufDeviceWide();
};

void tst_StreamBridges::deviceBufferWrites()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    ko::DeviceStreamBuffer adaptor(buffer);
    std::iostream stream(&adaptor);
    stream << "abc" << 42;
    // No buffering in the adaptor: the bytes are in the device without a flush.
    QCOMPARE(buffer.data(), QByteArray("abc42"));
    stream.put('x');
    QCOMPARE(buffer.data(), QByteArray("abc42x"));
    // Seeks fail; QBuffer has nothing to wait for, so sync reports 1 for a writable device.
    QCOMPARE(int(stream.tellp()), -1);
    stream.clear();
    stream.seekg(0);
    QVERIFY(stream.fail());
    QCOMPARE(adaptor.pubsync(), 1);

    // A copy has no device and fails quietly (outside the caller's contract); assignment keeps the
    // device.
    ko::DeviceStreamBuffer copy(adaptor);
    QVERIFY(!copy.device());
    QBuffer second;
    ko::DeviceStreamBuffer assigned(second);
    assigned = adaptor;
    QCOMPARE(assigned.device(), &second);
    std::ostream out(&copy);
    out << "x";
    QVERIFY(out.bad());
}

void tst_StreamBridges::deviceBufferReads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("getline");
    QTest::addColumn<QByteArray>("chars");
    const auto row
        = [](const char *name, const QByteArray &bytes, const char *getline, const char *chars) {
              QTest::newRow(name) << bytes << QByteArray(getline) << QByteArray(chars);
          };
    row("plain", "ab\ncd", "ab", "abcd");
    // 255 sign-extends to -1 and reads as end of file, through underflow and uflow alike.
    row("byte 255 ends input",
        "a\xff"
        "b",
        "a", "a");
    row("byte 254 is data",
        "a\xfe"
        "b",
        "a\xfe"
        "b",
        "a\xfe"
        "b");
    row("empty", "", "", "");
}

void tst_StreamBridges::deviceBufferReads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, getline);

    QBuffer lineSource(&bytes), charSource(&bytes);
    QVERIFY(lineSource.open(QIODevice::ReadOnly));
    QVERIFY(charSource.open(QIODevice::ReadOnly));
    ko::DeviceStreamBuffer lineAdaptor(lineSource), charAdaptor(charSource);
    QCOMPARE(lineAdaptor.pubsync(), 0); // nothing to write: sync succeeds
    QCOMPARE(int(lineAdaptor.in_avail()), bytes.size());
    std::istream lineIn(&lineAdaptor), charIn(&charAdaptor);
    std::string line;
    std::getline(lineIn, line);
    QCOMPARE(QByteArray::fromStdString(line), getline);

    QByteArray read;
    for (int c = charIn.get(); c != std::char_traits<char>::eof(); c = charIn.get()) {
        if (c != '\n')
            read += char(c);
    }
    QTEST(read, "chars");
}

void tst_StreamBridges::streambufDevice()
{
    std::ostringstream out;
    ko::TStreambufDevice<std::streambuf> device(out.rdbuf());
    QCOMPARE(device.openMode(), QIODevice::OpenMode(QIODevice::ReadWrite));
    QVERIFY(device.isSequential());
    // The stream buffer's own count, -1 included (a write-only string buffer has nothing to read).
    QCOMPARE(device.bytesAvailable(), qint64(-1));
    QTextStream text(&device);
    text << "value " << 7;
    text.flush();
    QCOMPARE(QString::fromStdString(out.str()), QStringLiteral("value 7"));

    std::istringstream in("line one\nline two");
    ko::TStreambufDevice<std::streambuf> input(in.rdbuf());
    QCOMPARE(input.bytesAvailable(), qint64(17));
    QCOMPARE(input.readLine(), QByteArray("line one\n"));
    // What the device holds in its own buffer is not counted.
    QCOMPARE(input.bytesAvailable(), qint64(in.rdbuf()->in_avail()));

    // Writes may go to a buffer of their own while reads keep to the first.
    std::ostringstream sink;
    input.setWriteStreambuf(sink.rdbuf());
    QCOMPARE(input.write("out", 3), qint64(3));
    QCOMPARE(QString::fromStdString(sink.str()), QStringLiteral("out"));
    QCOMPARE(input.readAll(), QByteArray("line two"));
    input.setWriteStreambuf(nullptr);
    QCOMPARE(input.writeStreambuf(), nullptr);
}

// Reads of every kind through the device's own buffer, over more bytes than it holds at once, give
// each byte exactly once, in order.
void tst_StreamBridges::streambufDeviceReadsEachByteOnce()
{
    QByteArray bytes;
    for (int i = 0; i < 50000; ++i)
        bytes += char(i % 251);
    bytes.replace(char(10), "\n");
    std::istringstream in(bytes.toStdString());
    ko::TStreambufDevice<std::streambuf> device(in.rdbuf());

    QByteArray read = device.read(1);
    const QByteArray peeked = device.peek(5);
    QCOMPARE(peeked, bytes.mid(1, 5));
    char c = 0;
    QVERIFY(device.getChar(&c));
    device.ungetChar(c);
    read += device.readLine();
    read += device.read(20000);
    QVERIFY(device.getChar(&c));
    read += c;
    read += device.readAll();
    QCOMPARE(read.size(), bytes.size());
    QCOMPARE(read, bytes);
    QVERIFY(device.atEnd());
}

void tst_StreamBridges::streambufDeviceWide()
{
    std::wostringstream out;
    ko::TStreambufDevice<std::wstreambuf> device(out.rdbuf());
    const wchar_t text[] = L"abcd";
    const qint64 bytes = qint64(sizeof(wchar_t)) * 2; // the storage of "ab"
    // A wide character counts as two bytes and the result is a character count;
    // no more characters are taken than the bytes given can hold.
    const qint64 written = device.write(reinterpret_cast<const char *>(text), bytes);
    const qint64 expected = qMin<qint64>(bytes / 2, bytes / qint64(sizeof(wchar_t)));
    QCOMPARE(written, expected);
    QCOMPARE(out.str(), std::wstring(text, size_t(expected)));

    // A read as large as the device's buffer chunk goes straight to the stream buffer: the byte
    // count is passed on as a character count (limited to what fits) and characters are counted
    // back.
    std::wistringstream in(L"xyz");
    ko::TStreambufDevice<std::wstreambuf> input(in.rdbuf());
    QByteArray buffer(16384, '\0');
    QCOMPARE(input.read(buffer.data(), buffer.size()), qint64(3));
    QCOMPARE(std::wstring(reinterpret_cast<const wchar_t *>(buffer.constData()), 3),
        std::wstring(L"xyz"));
}

QTEST_GUILESS_MAIN(tst_StreamBridges)
#include "tst_StreamBridges.moc"
