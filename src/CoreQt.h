#ifndef COREQT_H
#define COREQT_H

/**
 * Umbrella header: the whole public API of CoreQt and of the two platform
 * libraries it builds on. Applications include <CoreQt/CoreQt.h>.
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
#include "io/FileEncrypt.h"
#include "io/QtSettingsAdaptor.h"

#endif // COREQT_H
