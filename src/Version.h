// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_VERSION_H
#define KO_VERSION_H

#include "coreqt_export.h"

namespace ko
{

/** The version of the CoreQt library that is loaded, such as "1.0.0". */
COREQT_EXPORT const char *coreQtVersion();

} // namespace ko

#endif // KO_VERSION_H
