// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "signals/QtSlot.h"

#include <QByteArray>
#include <QMetaObject>

namespace ko
{

QtSlot::QtSlot(const QObject *receiver_, const char *slot_)
    : receiver(receiver_)
    , slot(slot_)
{ }

const char *QtSlot::slotName() const
{
    // A null code is outside the record's contract: its name is empty.
    if (name.empty() && slot) {
        const QByteArray normalized = QMetaObject::normalizedSignature(slot);
        const int paren = normalized.indexOf('(');
        const QByteArray bare = paren < 0 ? normalized.mid(1) : normalized.mid(1, paren - 1);
        name.assign(bare.constData(), size_t(bare.size()));
    }
    return name.c_str();
}

} // namespace ko
