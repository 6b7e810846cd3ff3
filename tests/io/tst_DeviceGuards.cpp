// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/CloseInactive.h"
#include "io/CloseOnExit.h"

#include <QBuffer>
#include <QPointer>
#include <QtTest>

namespace
{

// A buffer that records calls of close(), so the guards' close/delete order is visible.
class RecordingBuffer : public QBuffer
{
public:
    explicit RecordingBuffer(QStringList *journal)
        : mJournal(journal)
    {
        open(QIODevice::ReadWrite);
    }
    ~RecordingBuffer() override { *mJournal << QStringLiteral("deleted"); }
    void close() override
    {
        *mJournal << QStringLiteral("closed");
        QBuffer::close();
    }

private:
    QStringList *mJournal;
};

struct Counted
{
    static int live;
    Counted() { ++live; }
    ~Counted() { --live; }
};
int Counted::live = 0;

} // namespace

class tst_DeviceGuards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachSignalRestarts_data();
    void eachSignalRestarts();
    void timeout_data();
    void timeout();
    void deviceDeletedElsewhere();
    void scopeGuards();
};

void tst_DeviceGuards::eachSignalRestarts_data()
{
    QTest::addColumn<QString>("signal");
    QTest::addColumn<bool>("earlierDevice");
    for (const char *signal : { "readyRead", "bytesWritten", "aboutToClose" }) {
        QTest::addRow("%s", signal) << QString::fromLatin1(signal) << false;
        QTest::addRow("%s of an earlier device", signal) << QString::fromLatin1(signal) << true;
    }
}

// Each of the device's three signals restarts the countdown from the full interval, also for a
// device watched before the current one.
void tst_DeviceGuards::eachSignalRestarts()
{
    QFETCH(QString, signal);
    QFETCH(bool, earlierDevice);
    QBuffer device;
    QBuffer current;
    QVERIFY(device.open(QIODevice::ReadWrite));
    QVERIFY(current.open(QIODevice::ReadWrite));
    ko::CloseInactive guard;
    guard.setTimerType(Qt::PreciseTimer); // remainingTime() to the millisecond
    guard.restart(&device, 100000);
    if (earlierDevice)
        guard.setDevice(&current);
    QTRY_VERIFY(guard.remainingTime() < 99990);
    if (signal == QLatin1String("readyRead"))
        Q_EMIT device.readyRead();
    else if (signal == QLatin1String("bytesWritten"))
        Q_EMIT device.bytesWritten(1);
    else
        Q_EMIT device.aboutToClose();
    QVERIFY(guard.remainingTime() >= 99990);
    QCOMPARE(guard.device(), earlierDevice ? &current : &device);
}

void tst_DeviceGuards::timeout_data()
{
    QTest::addColumn<bool>("openAtTimeout");
    QTest::addColumn<bool>("deleteDevice");
    QTest::addColumn<QStringList>("journal");
    QTest::newRow("open, kept") << true << false << QStringList { "closed" };
    QTest::newRow("open, deleted") << true << true << QStringList { "closed", "deleted" };
    QTest::newRow("closed by its user, deleted")
        << false << true << QStringList { "closed", "deleted" };
    QTest::newRow("closed by its user, kept") << false << false << QStringList { "closed" };
}

void tst_DeviceGuards::timeout()
{
    QFETCH(bool, openAtTimeout);
    QFETCH(bool, deleteDevice);
    QFETCH(QStringList, journal);
    QStringList seen;
    auto *buffer = new RecordingBuffer(&seen);
    QPointer<QIODevice> watch(buffer);
    ko::CloseInactive guard(buffer, 50, deleteDevice);
    if (!openAtTimeout)
        buffer->close(); // the user's own close (also restarts the countdown)
    QTRY_VERIFY(!guard.device());
    QCOMPARE(seen, journal); // never closed twice
    QCOMPARE(watch.isNull(), deleteDevice);
    // Closing the device emits aboutToClose(), which restarts the countdown once more;
    // that expiry finds no device, and the single-shot timer stays stopped afterwards.
    QTRY_VERIFY(!guard.isActive());
    QCOMPARE(seen, journal);
    if (!deleteDevice)
        delete buffer;
}

void tst_DeviceGuards::deviceDeletedElsewhere()
{
    auto *buffer = new QBuffer;
    buffer->open(QIODevice::ReadOnly);
    ko::CloseInactive guard(buffer, 20, true);
    delete buffer;
    QVERIFY(!guard.device());
    QTest::qWait(60); // the timeout finds no device and does nothing
    QVERIFY(!guard.device());

    // restart() arms it again for a new device.
    QBuffer second;
    second.open(QIODevice::ReadOnly);
    guard.restart(&second, 20, false);
    QTRY_VERIFY(!second.isOpen());
}

void tst_DeviceGuards::scopeGuards()
{
    {
        ko::DeleteOnExit<Counted> one(new Counted);
        ko::DeleteOnExit<Counted> many(new Counted[3], true);
        ko::DeleteOnExit<Counted> none(nullptr);
        QCOMPARE(Counted::live, 4);
    }
    QCOMPARE(Counted::live, 0);

    QStringList seen;
    {
        ko::CloseOnExit guard(new RecordingBuffer(&seen));
        guard = new RecordingBuffer(&seen); // the first goes without an explicit close()
        QCOMPARE(seen, QStringList { "deleted" });
    }
    QCOMPARE(seen, (QStringList { "deleted", "closed", "deleted" }));
    ko::CloseOnExit empty(nullptr); // holding null: nothing happens
}

QTEST_GUILESS_MAIN(tst_DeviceGuards)
#include "tst_DeviceGuards.moc"
