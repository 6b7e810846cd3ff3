// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOQSTRING_H
#define KO_KOQSTRING_H

#include "coreqt_export.h"

class QString;
class komString;

namespace ko
{

/** @p s in the local 8-bit encoding as a middleware string; the text ends at a zero character. */
COREQT_EXPORT komString komStr(const QString &s);
/** @p s in UTF-8 as a middleware string; the text ends at a zero character. */
COREQT_EXPORT komString komStrUtf8(const QString &s);
/** The middleware string @p s read in the local 8-bit encoding. */
COREQT_EXPORT QString qStr(const komString &s);
/** The middleware string @p s read as UTF-8. */
COREQT_EXPORT QString qStrUtf8(const komString &s);

} // namespace ko

#endif // KO_KOQSTRING_H
