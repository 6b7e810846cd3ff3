// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_QTCOMPAT_H
#define KO_QTCOMPAT_H

// The few types of the public API that differ between the library built against Qt 5
// (libCoreQt) and against Qt 6 (libCoreQt6): where Qt 6 dropped the Qt 5 type, the Qt 6 build
// uses its closest equivalent. The README's porting table lists each difference.

#include "coreqt_export.h"

#include <QMetaType>
#include <QMutex>
#include <QString>
#include <QtGlobal>

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
#include <QTime>
#include <QVariant>
#else
#include <QAtomicPointer>
#include <QElapsedTimer>
#endif

namespace ko
{

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)

/** The timer a job is given, already started: a QTime on Qt 5 (elapsed(), restart()). */
using JobTimer = QTime;

/** The mutex under komQtLock and the signal pool's workers: QMutex with its recursion modes on
 * Qt 5. */
using RecursionModeMutex = QMutex;

/** Whether the split functions keep empty parts: QString::SplitBehavior on Qt 5. */
using SplitBehavior = QString::SplitBehavior;
/** Empty parts are kept. */
constexpr SplitBehavior KeepEmptyParts = QString::KeepEmptyParts;
/** Empty parts are dropped. */
constexpr SplitBehavior SkipEmptyParts = QString::SkipEmptyParts;

/** The type a text is converted to by StringUtils::toVariant(): QVariant::Type on Qt 5. */
using VariantType = QVariant::Type;

#else

/** The timer a job is given, already started: a QElapsedTimer on Qt 6 (elapsed(), restart()). */
using JobTimer = QElapsedTimer;

/**
 * A QMutex with Qt 5's recursion modes, which Qt 6's QMutex lost: a recursive one may be locked
 * again by the thread that holds it and is released by as many unlock() calls. Lock it through its
 * own functions (QMutexLocker deduces its type); QWaitCondition must not be given a recursive one.
 */
class COREQT_EXPORT RecursionModeMutex : public QMutex
{
public:
    /** Qt 5's QMutex::RecursionMode. */
    enum RecursionMode { NonRecursive, Recursive };

    /** A mutex of @p mode. */
    explicit RecursionModeMutex(RecursionMode mode = NonRecursive);
    /** Destroys the mutex; it must not be held. */
    ~RecursionModeMutex();

    /** Locks the mutex, waiting for another thread that holds it; a recursive one counts again. */
    void lock();
    /** Locks the mutex when that takes at most @p timeout milliseconds (negative: no limit). */
    bool tryLock(int timeout = 0);
    /** Unlocks the mutex; a recursive one once for each lock. */
    void unlock();
    /** True for a recursive mutex. */
    bool isRecursive() const;

private:
    Q_DISABLE_COPY(RecursionModeMutex)

    const bool mRecursive;
    // The thread that holds a recursive mutex (null when free) and how often it locked it.
    QAtomicPointer<void> mOwner;
    int mDepth;
};

/** Whether the split functions keep empty parts: Qt::SplitBehavior on Qt 6. */
using SplitBehavior = Qt::SplitBehavior;
/** Empty parts are kept. */
constexpr SplitBehavior KeepEmptyParts = Qt::KeepEmptyParts;
/** Empty parts are dropped. */
constexpr SplitBehavior SkipEmptyParts = Qt::SkipEmptyParts;

/** The type a text is converted to by StringUtils::toVariant(): QMetaType::Type on Qt 6. */
using VariantType = QMetaType::Type;

#endif

} // namespace ko

#endif // KO_QTCOMPAT_H
