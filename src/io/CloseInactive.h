// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CLOSEINACTIVE_H
#define KO_CLOSEINACTIVE_H

#include "coreqt_export.h"

#include <QIODevice>
#include <QPointer>
#include <QTimer>

namespace ko
{

/**
 * Closes a device, and deletes it when asked to, after an interval without
 * traffic: every readyRead(), bytesWritten() and aboutToClose() of the device
 * restarts the single-shot countdown.
 */
class COREQT_EXPORT CloseInactive : public QTimer
{
    Q_OBJECT

public:
    /** An idle guard without a device. */
    explicit CloseInactive(QObject *parent = nullptr);
    /** A guard that starts watching @p device at once (see restart()). */
    CloseInactive(
        QIODevice *device, int msec, bool deleteDevice = false, QObject *parent = nullptr);
    /** Forgets the device; it is neither closed nor deleted. */
    ~CloseInactive() override;

    /**
     * Watches @p device: its traffic restarts the countdown. Connections to a device
     * watched before are kept, so its traffic still counts; setting a device twice connects it
     * twice.
     */
    void setDevice(QIODevice *device);
    /** Sets whether the timeout deletes the device, watches @p device and starts a countdown of @p
     * msec. */
    void restart(QIODevice *device, int msec, bool deleteDevice = false);

    /** The watched device, or null (never set, fired, or destroyed elsewhere). */
    QIODevice *device() const { return mDevice; }
    /** Whether the timeout also deletes the device. */
    bool deletesDevice() const { return mDeleteDevice; }

protected Q_SLOTS:
    /**
     * Closes the device if it is open, deletes it at once (not with deleteLater()) when asked to,
     * also when its user had closed it already, and forgets it; the countdown is not restarted.
     */
    void onTimeout();

private:
    Q_DISABLE_COPY(CloseInactive)
    QPointer<QIODevice> mDevice;
    bool mDeleteDevice;
};

} // namespace ko

#endif // KO_CLOSEINACTIVE_H
