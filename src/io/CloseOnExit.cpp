// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/CloseOnExit.h"

#include <QIODevice>

namespace ko
{

CloseOnExit::CloseOnExit(QIODevice *device)
    : DeleteOnExit<QIODevice>(device)
{ }

CloseOnExit::~CloseOnExit()
{
    if (object)
        object->close();
}

CloseOnExit &CloseOnExit::operator=(QIODevice *device)
{
    // No close() here, unlike the destructor: callers rely on the difference.
    release();
    object = device;
    return *this;
}

} // namespace ko
