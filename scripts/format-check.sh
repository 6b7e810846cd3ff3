#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Fails when a C++ file of the tree differs from what clang-format makes of it, or when a source
# file lacks its SPDX licence line; lists the files concerned.
#   scripts/format-check.sh
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps

status=0
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format-14 --dry-run --Werror || status=1
missing=$(git ls-files '*.cpp' '*.h' '*.cmake' 'CMakeLists.txt' '*.sh' | xargs grep -L 'SPDX-License-Identifier: ' || true)
if [ -n "$missing" ]; then
    echo "Files without an SPDX-License-Identifier line:" >&2
    echo "$missing" >&2
    status=1
fi
exit $status
