// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOM_QT_H
#define KO_KOM_QT_H

#include "coreqt_export.h"

#include <QMap>
#include <QString>
#include <QtContainerFwd>

class komPerlStyleHash;
class komStringList;

namespace ko
{

/** The elements of @p list, in order, as middleware strings (local 8-bit, each cut at a zero
 * character). */
COREQT_EXPORT komStringList komStrList(const QStringList &list);
/** The items of @p list, from index 0 upward, as Qt strings (local 8-bit); empty gives a null list.
 */
COREQT_EXPORT QStringList qStrList(const komStringList &list);
/** A middleware hash holding every entry of @p map, stored in the map's key order. */
COREQT_EXPORT komPerlStyleHash komPSHash(const QMap<QString, QString> &map);
/** A map of every pair of @p hash; of pairs whose keys convert equal, the later one wins. */
COREQT_EXPORT QMap<QString, QString> qMap(const komPerlStyleHash &hash);

} // namespace ko

#endif // KO_KOM_QT_H
