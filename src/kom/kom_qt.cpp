// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/kom_qt.h"

#include "kom/koqstring.h"
#include "platform/kom/komList.h"
#include "platform/kom/komPerlStyleHash.h"

#include <QStringList>

namespace ko
{

komStringList komStrList(const QStringList &list)
{
    komStringList result;
    for (const QString &item : list)
        result.add(komStr(item), false);
    return result;
}

QStringList qStrList(const komStringList &list)
{
    QStringList result;
    const int size = list.size();
    result.reserve(size);
    for (int i = 0; i < size; ++i)
        result.append(qStr(list[i]));
    return result;
}

komPerlStyleHash komPSHash(const QMap<QString, QString> &map)
{
    komPerlStyleHash result;
    for (auto it = map.constBegin(); it != map.constEnd(); ++it)
        result[komStr(it.key())] = komStr(it.value());
    return result;
}

QMap<QString, QString> qMap(const komPerlStyleHash &hash)
{
    QMap<QString, QString> result;
    komPerlStyleHash::Iterator it = hash.iterator();
    while (const komPerlStyleHash::KeyValuePair *pair = it.nextItem())
        result.insert(qStr(pair->key()), qStr(pair->value()));
    return result;
}

} // namespace ko
