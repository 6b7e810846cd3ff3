// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "signals/BlockSignals.h"

#include <QObject>

namespace ko
{

BlockSignals::BlockSignals() = default;

BlockSignals::~BlockSignals() = default;

void BlockSignals::set(const QList<QObject *> &objects)
{
    if (!mPrevious.empty())
        block(false);
    mObjects = objects;
}

void BlockSignals::block(bool on)
{
    const size_t count = size_t(mObjects.size());
    if (on) {
        // A second block(true) overwrites the flags with "blocked": one level of memory, kept on
        // purpose.
        mPrevious.resize(count, false);
        for (size_t i = 0; i < count; ++i)
            mPrevious[i] = mObjects.at(int(i))->blockSignals(true);
        return;
    }
    if (mPrevious.size() == count) {
        for (size_t i = 0; i < count; ++i)
            mObjects.at(int(i))->blockSignals(mPrevious[i]);
    } else {
        for (QObject *object : qAsConst(mObjects))
            object->blockSignals(false);
    }
    mPrevious.clear();
}

StBlockSignals::StBlockSignals(const QList<QObject *> &objects)
{
    set(objects);
    block(true);
}

StBlockSignals::~StBlockSignals()
{
    block(false);
}

} // namespace ko
