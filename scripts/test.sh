#!/usr/bin/env bash
# Installs what is missing, builds, and runs the whole test suite, then repeats
# the concurrency tests (label "threads") 20 times.
#   scripts/test.sh              normal build in build/
#   scripts/test.sh --sanitize   AddressSanitizer + UndefinedBehaviorSanitizer build in build-asan/
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps

build=build
args=()
if [ "${1:-}" = "--sanitize" ]; then
    build=build-asan
    args=(-DCOREQT_SANITIZE=address,undefined -DCOREQT_BUILD_BENCHMARKS=OFF)
    export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0:strict_string_checks=1"
    export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
    export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
fi

coreqt_build "$build" "${args[@]}"
cd "$build"
ctest --output-on-failure -j "$(nproc)"
ctest -L threads --repeat until-fail:20 --output-on-failure -j "$(nproc)"
