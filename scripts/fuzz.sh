#!/usr/bin/env bash
# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Builds the libFuzzer targets with Clang, AddressSanitizer and UndefinedBehaviorSanitizer in
# build-fuzz/ and runs each for a bounded time; fails on a crash or a sanitizer report.
#   scripts/fuzz.sh [seconds per target, default 60]
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/deps.sh
coreqt_install_deps

seconds=${1:-60}
targets=(fuzz_FileEncrypt fuzz_StringUtils)

cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
    -DCOREQT_FUZZ=ON -DCOREQT_SANITIZE=address,undefined \
    -DCOREQT_BUILD_BENCHMARKS=OFF -DCOREQT_BUILD_EXAMPLES=OFF
cmake --build build-fuzz -j "$(nproc)" --target "${targets[@]}"

export ASAN_OPTIONS="detect_leaks=1:abort_on_error=0"
export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0"
export UBSAN_OPTIONS="print_stacktrace=1:halt_on_error=1"
for target in "${targets[@]}"; do
    binary=$(find build-fuzz -type f -name "$target" -perm -u+x | head -n 1)
    corpus=build-fuzz/corpus/$target
    mkdir -p "$corpus"
    echo "Fuzzing $target for $seconds s"
    "$binary" -max_total_time="$seconds" -timeout=20 -print_final_stats=1 \
        -artifact_prefix=build-fuzz/ "$corpus"
done
