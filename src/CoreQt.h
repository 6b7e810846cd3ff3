// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_H
#define COREQT_H

/**
 * Umbrella header: the whole public API of CoreQt and of the two platform
 * libraries it builds on. Applications include <CoreQt/CoreQt.h> (<CoreQt6/CoreQt.h> for the
 * library built against Qt 6).
 */

// libCore
#include "platform/core/AbstractSettingsStorage.h"
#include "platform/core/Enigma.h"
#include "platform/core/Exception.h"
#include "platform/core/Log.h"
#include "platform/core/Mutex.h"
#include "platform/core/Random.h"

// libkom
#include "platform/kom/komException.h"
#include "platform/kom/komList.h"
#include "platform/kom/komObject.h"
#include "platform/kom/komPerlStyleHash.h"
#include "platform/kom/komSmart.h"
#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komString.h"
#include "platform/kom/komSynchronization.h"
#include "platform/kom/komTerminal.h"

// CoreQt
#include "Version.h"
#include "camera/EventTypes.h"
#include "camera/ImageTypes.h"
#include "compat/QtCompat.h"
#include "exceptions/ConfigItemNotRetrievedException.h"
#include "exceptions/DivisionByZeroException.h"
#include "exceptions/ExceptionQt.h"
#include "exceptions/FileException.h"
#include "exceptions/IOException.h"
#include "exceptions/IllegalArgumentException.h"
#include "exceptions/IndexOutOfBoundsException.h"
#include "exceptions/NullPointerException.h"
#include "exceptions/OutOfMemoryException.h"
#include "exceptions/ParseException.h"
#include "exceptions/RuntimeException.h"
#include "exceptions/TerminalException.h"
#include "exceptions/UnexpectedTypeException.h"
#include "exceptions/XmlException.h"
#include "io/CloseInactive.h"
#include "io/CloseOnExit.h"
#include "io/FileEncrypt.h"
#include "io/QtSettingsAdaptor.h"
#include "kom/komQtConditionVariable.h"
#include "kom/komQtLock.h"
#include "kom/komQtSignalBlocker.h"
#include "kom/komQtSynchronizationFactory.h"
#include "kom/komQtThreadSpawner.h"
#include "kom/kom_qt.h"
#include "kom/koqdatetime.h"
#include "kom/koqstring.h"
#include "kom/koqtextstream.h"
#include "log/DeviceStream.h"
#include "log/KomLogHandler.h"
#include "log/LogQt.h"
#include "log/StreambufDevice.h"
#include "signals/BlockSignals.h"
#include "signals/QtSlot.h"
#include "signals/SignalUtils.h"
#include "text/StringUtils.h"
#include "threads/IInterface.h"
#include "threads/IRunnable.h"
#include "threads/PoolRegistry.h"
#include "threads/PoolSnapshot.h"
#include "threads/komQtSignalThreadPool.h"
#include "threads/komQtThreadPool.h"
#include "threads/komQtWorkerThread.h"

#endif // COREQT_H
