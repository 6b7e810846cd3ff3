// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_BLOCKSIGNALS_H
#define KO_BLOCKSIGNALS_H

#include "coreqt_export.h"

#include <QList>

#include <vector>

class QObject;

namespace ko
{

/**
 * Blocks the signals of a group of objects at once and gives each object back
 * the state it had before. It remembers one level only: a second block(true)
 * without a block(false) in between forgets the states from before the first.
 */
class COREQT_EXPORT BlockSignals
{
public:
    /** An empty group. */
    BlockSignals();
    /** Releases the storage only: objects held blocked stay blocked. */
    virtual ~BlockSignals();

    /**
     * Replaces the group; a group held blocked is given back its states first. The new group is not
     * blocked.
     */
    void set(const QList<QObject *> &objects);
    /**
     * Blocks the group (true), remembering each object's state, or gives the remembered states back
     * (false); without remembered states for the whole group, false unblocks every object. Kept as
     * it always was: a second block(true) remembers every object as blocked, so the following
     * block(false) leaves them all blocked.
     */
    void block(bool on);
    /** The group, in the caller's order. */
    const QList<QObject *> &objects() const { return mObjects; }

private:
    Q_DISABLE_COPY(BlockSignals)
    QList<QObject *> mObjects;
    std::vector<bool> mPrevious;
};

/** Scope guard: blocks the signals of a group for its lifetime and restores their states at its
 * end. */
class COREQT_EXPORT StBlockSignals : public BlockSignals
{
public:
    /** Takes the group and blocks it. */
    explicit StBlockSignals(const QList<QObject *> &objects);
    /** Gives every object back the state it had before. */
    ~StBlockSignals() override;

private:
    Q_DISABLE_COPY(StBlockSignals)
};

} // namespace ko

#endif // KO_BLOCKSIGNALS_H
