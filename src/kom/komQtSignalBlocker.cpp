// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/komQtSignalBlocker.h"

#include <QObject>

// A null object is outside the guard's contract: the guard then does nothing.
komQtSignalBlocker::komQtSignalBlocker(QObject *object, bool block)
    : mObject(object)
    , mPrevious(object ? object->blockSignals(block) : false)
{ }

komQtSignalBlocker::~komQtSignalBlocker()
{
    if (mObject)
        mObject->blockSignals(mPrevious);
}
