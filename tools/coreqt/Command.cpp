// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "Command.h"

#include <QCommandLineParser>

namespace tool
{

bool Invocation::isSet(const QString &name) const
{
    return parser->isSet(name);
}

QString Invocation::value(const QString &name) const
{
    return parser->value(name);
}

} // namespace tool
