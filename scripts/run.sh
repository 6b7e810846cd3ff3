#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Installs what is missing, builds, and runs the coreqt program with the given arguments
# (without arguments: its tour of the library). With --qt6 first, the library and the program
# (coreqt6) built against Qt 6, in build-qt6/.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
if [ "${1:-}" = "--qt6" ]; then
    shift
    coreqt_install_deps --qt6
    coreqt_build build-qt6 -DCOREQT_QT_MAJOR=6 >/dev/null
    exec build-qt6/tools/coreqt/coreqt6 "$@"
fi
coreqt_install_deps
coreqt_build build >/dev/null
exec build/tools/coreqt/coreqt "$@"
