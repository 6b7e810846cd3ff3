// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOMQTSIGNALBLOCKER_H
#define KOMQTSIGNALBLOCKER_H

#include "coreqt_export.h"

#include <QtGlobal>

class QObject;

/** Blocks or unblocks an object's signals for its lifetime and restores the previous state at its
 * end. */
class COREQT_EXPORT komQtSignalBlocker
{
public:
    /**
     * Sets @p object's blocking to @p block, remembering the state before; nested blockers on one
     * object, ended in reverse order, restore the state from before the first. A null object is
     * left alone: the blocker then does nothing.
     */
    komQtSignalBlocker(QObject *object, bool block);
    /** Gives the object back the state it had before. */
    ~komQtSignalBlocker();

private:
    Q_DISABLE_COPY(komQtSignalBlocker)

    QObject *mObject;
    bool mPrevious;
};

#endif // KOMQTSIGNALBLOCKER_H
