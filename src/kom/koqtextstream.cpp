// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/koqtextstream.h"

#include "kom/koqstring.h"
#include "platform/kom/komException.h"
#include "platform/kom/komList.h"

#include <QStringList>
#include <QTextStream>

namespace
{

// Writes the items of any list with size() and operator[], with "," between them only.
template <class List> QTextStream &writeJoined(QTextStream &out, const List &list)
{
    const int size = list.size();
    for (int i = 0; i < size; ++i) {
        if (i > 0)
            out << QLatin1Char(',');
        out << list[i];
    }
    return out;
}

} // namespace

QTextStream &operator<<(QTextStream &out, const komString &s)
{
    return out << ko::qStr(s);
}

QTextStream &operator<<(QTextStream &out, const komStringList &list)
{
    return writeJoined(out, list);
}

QTextStream &operator<<(QTextStream &out, const QStringList &list)
{
    return writeJoined(out, list);
}

QTextStream &operator<<(QTextStream &out, const komException &e)
{
    return out << e.messages();
}
