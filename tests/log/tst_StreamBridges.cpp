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
    void deviceBufferWritesThrough();
    void deviceBufferReads_data();
    void deviceBufferReads();
    void deviceBufferCannotSeek();
    void deviceBufferCopyHasNoDevice();
    void deviceBufferSync();

    void streambufDeviceText();
    void streambufDeviceBytesAvailable();
    void streambufDeviceWriteTarget();
    void streambufDeviceWide();
};

void tst_StreamBridges::deviceBufferWritesThrough()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    ko::DeviceStreamBuffer adaptor(buffer);
    std::ostream out(&adaptor);
    out << "abc" << 42;
    // No buffering in the adaptor: the bytes are in the device without a flush.
    QCOMPARE(buffer.data(), QByteArray("abc42"));
    out.put('x');
    QCOMPARE(buffer.data(), QByteArray("abc42x"));
}

void tst_StreamBridges::deviceBufferReads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("getline");
    QTest::addColumn<QByteArray>("chars");
    QTest::newRow("plain") << QByteArray("ab\ncd") << QByteArray("ab") << QByteArray("abcd");
    // 255 sign-extends to -1 and reads as end of file, through underflow and uflow alike.
    QTest::newRow("byte 255 ends input") << QByteArray("a\xff" "b") << QByteArray("a") << QByteArray("a");
    QTest::newRow("byte 254 is data") << QByteArray("a\xfe" "b") << QByteArray("a\xfe" "b") << QByteArray("a\xfe" "b");
    QTest::newRow("empty") << QByteArray() << QByteArray() << QByteArray();
}

void tst_StreamBridges::deviceBufferReads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, getline);
    QFETCH(QByteArray, chars);

    QBuffer lineSource(&bytes);
    QVERIFY(lineSource.open(QIODevice::ReadOnly));
    ko::DeviceStreamBuffer lineAdaptor(lineSource);
    std::istream lineIn(&lineAdaptor);
    std::string line;
    std::getline(lineIn, line);
    QCOMPARE(QByteArray::fromStdString(line), getline);

    QBuffer charSource(&bytes);
    QVERIFY(charSource.open(QIODevice::ReadOnly));
    ko::DeviceStreamBuffer charAdaptor(charSource);
    std::istream charIn(&charAdaptor);
    QByteArray read;
    for (int c = charIn.get(); c != std::char_traits<char>::eof(); c = charIn.get()) {
        if (c != '\n')
            read += char(c);
    }
    QCOMPARE(read, chars);
}

void tst_StreamBridges::deviceBufferCannotSeek()
{
    QBuffer buffer;
    QVERIFY(buffer.open(QIODevice::ReadWrite));
    ko::DeviceStreamBuffer adaptor(buffer);
    std::iostream stream(&adaptor);
    stream << "data";
    QCOMPARE(int(stream.tellp()), -1);
    stream.clear();
    stream.seekg(0);
    QVERIFY(stream.fail());
}

void tst_StreamBridges::deviceBufferCopyHasNoDevice()
{
    QBuffer first, second;
    QVERIFY(first.open(QIODevice::ReadWrite));
    QVERIFY(second.open(QIODevice::ReadWrite));
    ko::DeviceStreamBuffer a(first);
    ko::DeviceStreamBuffer copy(a);
    QVERIFY(!copy.device());
    ko::DeviceStreamBuffer b(second);
    b = a;
    QCOMPARE(b.device(), &second);
    // Without a device the adaptor fails quietly (outside the caller's contract).
    std::ostream out(&copy);
    out << "x";
    QVERIFY(out.bad());
}

void tst_StreamBridges::deviceBufferSync()
{
    // QBuffer has nothing to wait for: waitForBytesWritten() answers false, so sync reports 1.
    QBuffer writable;
    QVERIFY(writable.open(QIODevice::WriteOnly));
    ko::DeviceStreamBuffer writeAdaptor(writable);
    QCOMPARE(writeAdaptor.pubsync(), 1);

    QByteArray bytes("r");
    QBuffer readable(&bytes);
    QVERIFY(readable.open(QIODevice::ReadOnly));
    ko::DeviceStreamBuffer readAdaptor(readable);
    QCOMPARE(readAdaptor.pubsync(), 0);
    QCOMPARE(int(readAdaptor.in_avail()), 1);
}

void tst_StreamBridges::streambufDeviceText()
{
    std::ostringstream out;
    ko::TStreambufDevice<std::streambuf> device(out.rdbuf());
    QVERIFY(device.isOpen());
    QVERIFY(device.isSequential());
    QCOMPARE(device.openMode() & QIODevice::ReadWrite, QIODevice::ReadWrite);
    QTextStream text(&device);
    text << "value " << 7;
    text.flush();
    QCOMPARE(QString::fromStdString(out.str()), QStringLiteral("value 7"));

    std::istringstream in("line one\nline two");
    ko::TStreambufDevice<std::streambuf> input(in.rdbuf());
    QCOMPARE(input.readLine(), QByteArray("line one\n"));
    QCOMPARE(input.readAll(), QByteArray("line two"));
}

void tst_StreamBridges::streambufDeviceBytesAvailable()
{
    std::istringstream in("12345");
    ko::TStreambufDevice<std::streambuf> device(in.rdbuf());
    QCOMPARE(device.bytesAvailable(), qint64(5));
    char c;
    QVERIFY(device.getChar(&c));
    QCOMPARE(device.bytesAvailable(), qint64(4));
}

void tst_StreamBridges::streambufDeviceWriteTarget()
{
    std::stringstream source("input");
    std::ostringstream sink;
    ko::TStreambufDevice<std::streambuf> device(source.rdbuf());
    device.setWriteStreambuf(sink.rdbuf());
    QCOMPARE(device.write("out", 3), qint64(3));
    QCOMPARE(QString::fromStdString(sink.str()), QStringLiteral("out"));
    QCOMPARE(device.readAll(), QByteArray("input"));
    device.setWriteStreambuf(nullptr);
    QCOMPARE(device.writeStreambuf(), nullptr);
}

void tst_StreamBridges::streambufDeviceWide()
{
    std::wostringstream out;
    ko::TStreambufDevice<std::wstreambuf> device(out.rdbuf());
    const wchar_t text[] = L"abcd";
    const qint64 bytes = qint64(sizeof(wchar_t)) * 2; // the storage of "ab"
    // A wide character counts as two bytes and the result is a character count;
    // no more characters are taken than the bytes given can hold.
    const qint64 written = device.write(reinterpret_cast<const char*>(text), bytes);
    const qint64 expected = qMin<qint64>(bytes / 2, bytes / qint64(sizeof(wchar_t)));
    QCOMPARE(written, expected);
    QCOMPARE(out.str(), std::wstring(text, size_t(expected)));

    std::wistringstream in(L"xyz");
    ko::TStreambufDevice<std::wstreambuf> input(in.rdbuf());
    char buffer[sizeof(wchar_t) * 3];
    const qint64 read = input.read(buffer, sizeof buffer);
    QCOMPARE(read, qint64(3));
    QCOMPARE(std::wstring(reinterpret_cast<wchar_t*>(buffer), 3), std::wstring(L"xyz"));
}

QTEST_GUILESS_MAIN(tst_StreamBridges)
#include "tst_StreamBridges.moc"
