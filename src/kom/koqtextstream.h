// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOQTEXTSTREAM_H
#define KO_KOQTEXTSTREAM_H

#include "coreqt_export.h"

#include <QtContainerFwd>

class QTextStream;
class komException;
class komString;
class komStringList;

/** Writes the middleware string @p s (local 8-bit); returns @p out. */
COREQT_EXPORT QTextStream &operator<<(QTextStream &out, const komString &s);
/** Writes the items of @p list separated by "," (no blank; nothing for an empty list); returns @p
 * out. */
COREQT_EXPORT QTextStream &operator<<(QTextStream &out, const komStringList &list);
/** Writes the elements of @p list separated by "," (no blank; nothing for an empty list); returns
 * @p out. */
COREQT_EXPORT QTextStream &operator<<(QTextStream &out, const QStringList &list);
/** Writes the messages of @p e separated by ","; returns @p out. */
COREQT_EXPORT QTextStream &operator<<(QTextStream &out, const komException &e);

#endif // KO_KOQTEXTSTREAM_H
