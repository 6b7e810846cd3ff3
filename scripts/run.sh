#!/usr/bin/env bash
# Installs what is missing, builds, and runs the coreqt program with the given arguments
# (without arguments: its tour of the library).
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps
coreqt_build build >/dev/null
exec build/tools/coreqt/coreqt "$@"
