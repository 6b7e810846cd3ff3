#include "io/CloseInactive.h"

namespace ko
{

CloseInactive::CloseInactive(QObject* parent)
    : QTimer(parent)
    , mDeleteDevice(false)
{
    setSingleShot(true);
    QObject::connect(this, "2timeout()", this, "1onTimeout()");
}

CloseInactive::CloseInactive(QIODevice* device, int msec, bool deleteDevice, QObject* parent)
    : CloseInactive(parent)
{
    restart(device, msec, deleteDevice);
}

CloseInactive::~CloseInactive() = default;

void CloseInactive::setDevice(QIODevice* device)
{
    if (device != mDevice)
        mDevice = device;
    if (!device)
        return;
    QObject::connect(device, "2readyRead()", this, "1start()");
    QObject::connect(device, "2bytesWritten(qint64)", this, "1start()");
    QObject::connect(device, "2aboutToClose()", this, "1start()");
}

void CloseInactive::restart(QIODevice* device, int msec, bool deleteDevice)
{
    mDeleteDevice = deleteDevice;
    setDevice(device);
    setInterval(msec);
    start();
}

void CloseInactive::onTimeout()
{
    if (!mDevice)
        return;
    if (mDevice->isOpen())
        mDevice->close();
    if (mDeleteDevice && mDevice)
        delete mDevice.data();
    mDevice = nullptr;
}

} // namespace ko
