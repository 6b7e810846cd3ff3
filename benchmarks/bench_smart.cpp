// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Copying a job handle, as the job pool does several times per job:
// kom::smart against std::shared_ptr in the same run.
#include "platform/kom/komSmart.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace
{

struct Payload
{
    int value = 0;
};

void BM_komSmartCopy(benchmark::State &state)
{
    kom::smart<Payload> origin(new Payload);
    for (auto _ : state) {
        kom::smart<Payload> copy(origin);
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(BM_komSmartCopy)->ThreadRange(1, 2);

void BM_sharedPtrCopy(benchmark::State &state)
{
    auto origin = std::make_shared<Payload>();
    for (auto _ : state) {
        std::shared_ptr<Payload> copy(origin);
        benchmark::DoNotOptimize(copy.get());
    }
}
BENCHMARK(BM_sharedPtrCopy)->ThreadRange(1, 2);

} // namespace

BENCHMARK_MAIN();
