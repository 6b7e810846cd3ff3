// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_VOCABULARYLOOKUP_P_H
#define KO_VOCABULARYLOOKUP_P_H

// Lookups shared by the camera vocabulary tables. Every table row has a `text` (the display
// text and translation source) and a `key`; the functions work on any such row type.

#include "camera/ImageTypes.h"

#include <QCoreApplication>
#include <QLatin1String>
#include <QString>

#include <cstddef>

namespace ko
{
namespace vocabulary
{

/** The display text @p text translated in the context "Statics"; a null text gives a null string.
 */
inline QString translated(const char *text)
{
    return QCoreApplication::translate("Statics", text);
}

/** The translated text of row @p index. */
template <typename Row, std::size_t N> QString textAt(const Row (&table)[N], int index)
{
    // An index outside the table is outside the caller's contract: give an empty text, read
    // nothing.
    if (index < 0 || std::size_t(index) >= N)
        return QString();
    return translated(table[index].text);
}

/** The translated text of the first row with @p key, or @p key unchanged when no row has it. */
template <typename Row, std::size_t N> QString textOfKey(const Row (&table)[N], const QString &key)
{
    const int index = indexOfKey(table, key);
    return index < 0 ? key : translated(table[index].text);
}

} // namespace vocabulary
} // namespace ko

#endif // KO_VOCABULARYLOOKUP_P_H
