// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/koqstring.h"

#include "platform/kom/komString.h"

#include <QString>

namespace ko
{

komString komStr(const QString &s)
{
    return komString(s.toLocal8Bit().constData());
}

komString komStrUtf8(const QString &s)
{
    return komString(s.toUtf8().constData());
}

QString qStr(const komString &s)
{
    return QString::fromLocal8Bit(s.text());
}

QString qStrUtf8(const komString &s)
{
    return QString::fromUtf8(s.text());
}

} // namespace ko
