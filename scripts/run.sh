#!/usr/bin/env bash
# Installs what is missing, builds, and runs the main program with the given arguments.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps
coreqt_build build >/dev/null
exec build/examples/platform_tour/platform_tour "$@"
