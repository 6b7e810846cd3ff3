// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "Version.h"

#include "coreqt_version_config.h"

namespace ko
{

const char *coreQtVersion()
{
    return COREQT_VERSION_STRING;
}

} // namespace ko
