// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/CloseInactive.h"

namespace ko
{

CloseInactive::CloseInactive(QObject *parent)
    : QTimer(parent)
    , mDeleteDevice(false)
{
    setSingleShot(true);
    QObject::connect(this, &QTimer::timeout, this, &CloseInactive::onTimeout);
}

CloseInactive::CloseInactive(QIODevice *device, int msec, bool deleteDevice, QObject *parent)
    : CloseInactive(parent)
{
    restart(device, msec, deleteDevice);
}

CloseInactive::~CloseInactive() = default;

void CloseInactive::setDevice(QIODevice *device)
{
    if (device != mDevice)
        mDevice = device;
    if (!device)
        return;
    // start() on a running timer restarts the countdown from the full interval.
    const auto restartCountdown = qOverload<>(&QTimer::start);
    QObject::connect(device, &QIODevice::readyRead, this, restartCountdown);
    QObject::connect(device, &QIODevice::bytesWritten, this, restartCountdown);
    QObject::connect(device, &QIODevice::aboutToClose, this, restartCountdown);
}

void CloseInactive::restart(QIODevice *device, int msec, bool deleteDevice)
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
