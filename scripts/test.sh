#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Installs what is missing, builds, and runs the whole test suite, then repeats
# the concurrency tests (label "threads") 20 times.
#   scripts/test.sh                     normal build in build/
#   scripts/test.sh --sanitize          AddressSanitizer + UndefinedBehaviorSanitizer build in build-asan/
#   scripts/test.sh --qt6               the library built against Qt 6, in build-qt6/
#   scripts/test.sh --qt6 --sanitize    the same with the sanitizers, in build-qt6-asan/
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh

qt6=false
sanitize=false
for option in "$@"; do
    case "$option" in
        --qt6) qt6=true ;;
        --sanitize) sanitize=true ;;
        *)
            echo "usage: scripts/test.sh [--qt6] [--sanitize]" >&2
            exit 2
            ;;
    esac
done

build=build
args=()
deps=()
if $qt6; then
    build=build-qt6
    args+=(-DCOREQT_QT_MAJOR=6)
    deps=(--qt6)
fi
if $sanitize; then
    build=$build-asan
    args+=(-DCOREQT_SANITIZE=address,undefined -DCOREQT_BUILD_BENCHMARKS=OFF)
    export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:strict_string_checks=1"
    export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
fi
coreqt_install_deps "${deps[@]}"

coreqt_build "$build" "${args[@]}"
cd "$build"
ctest --output-on-failure -j "$(nproc)"
ctest -L threads --repeat until-fail:20 --output-on-failure -j "$(nproc)"
