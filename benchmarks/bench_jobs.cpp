// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Cost per job of the job pool against QThreadPool in the same run: N jobs of 0, 10 or 100 µs of
// work on two worker threads, scheduled from the main thread, then a wait until all have ended.
// With --console the job pool is registered with the live console, which listens and is read
// by a client every second throughout, as `coreqt top` would.
#include "console/Console.h"
#include "console/ConsoleClient.h"
#include "platform/core/Log.h"
#include "threads/IRunnable.h"
#include "threads/PoolRegistry.h"
#include "threads/komQtThreadPool.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QRunnable>
#include <QTemporaryDir>
#include <QThread>
#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace
{

bool sConsole = false; // --console: the pool is registered and its console read every second

void work(int microseconds)
{
    if (microseconds <= 0)
        return;
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(microseconds);
    while (std::chrono::steady_clock::now() < end) { }
}

class Job : public ko::IRunnable
{
public:
    explicit Job(int microseconds)
        : mMicroseconds(microseconds)
    { }
    void run(int, ko::JobTimer &) override { work(mMicroseconds); }

private:
    int mMicroseconds;
};

class PeerJob : public QRunnable
{
public:
    explicit PeerJob(int microseconds)
        : mMicroseconds(microseconds)
    {
        setAutoDelete(false);
    }
    void run() override { work(mMicroseconds); }

private:
    int mMicroseconds;
};

// Runs the current thread's event loop until @p done is true, looking again at each job end.
template <class Done> void spinUntil(const ko::komQtThreadPool &pool, Done done)
{
    QEventLoop loop;
    QObject::connect(&pool, &ko::komQtThreadPool::jobFinished, &loop, [&]() {
        if (done())
            loop.quit();
    });
    if (!done())
        loop.exec();
}

void BM_komQtThreadPool(benchmark::State &state)
{
    const int jobs = int(state.range(0));
    const int microseconds = int(state.range(1));
    ko::komQtThreadPool pool(QStringLiteral("Bench"), 2);
    if (sConsole)
        ko::PoolRegistry::add(&pool);
    long finished = 0; // the pool announces every job twice, the second time from reclaimThread()
    QObject::connect(
        &pool, &ko::komQtThreadPool::jobFinished, [&finished](int, int) { ++finished; });
    const kom::smart<ko::IRunnable> job(new Job(microseconds));
    for (auto _ : state) {
        finished = 0;
        for (int i = 0; i < jobs; ++i)
            pool.schedule(job);
        pool.waitForAllFinished(-1);
        // The wait ends once no worker is busy, which can be before every queued job has run.
        spinUntil(pool, [&]() { return finished == 2L * jobs; });
    }
    state.SetItemsProcessed(state.iterations() * jobs);
    ko::PoolRegistry::remove(&pool);
    pool.setMaxThreads(-1); // the workers (all idle now) end and delete themselves
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void BM_QThreadPool(benchmark::State &state)
{
    const int jobs = int(state.range(0));
    const int microseconds = int(state.range(1));
    QThreadPool pool;
    pool.setMaxThreadCount(2);
    PeerJob job(microseconds);
    for (auto _ : state) {
        for (int i = 0; i < jobs; ++i)
            pool.start(&job);
        pool.waitForDone();
    }
    state.SetItemsProcessed(state.iterations() * jobs);
}

void jobArguments(benchmark::internal::Benchmark *b)
{
    b->ArgNames({ "jobs", "us" });
    b->Args({ 20000, 0 });
    b->Args({ 10000, 10 });
    b->Args({ 2000, 100 });
    b->Unit(benchmark::kMillisecond);
    b->UseRealTime();
    b->Repetitions(7);
    b->ReportAggregatesOnly(true);
    // On a shared machine the fastest repetition is the one least disturbed by other work.
    b->ComputeStatistics(
        "min", [](const std::vector<double> &v) { return *std::min_element(v.begin(), v.end()); });
}

BENCHMARK(BM_QThreadPool)->Apply(jobArguments);
BENCHMARK(BM_komQtThreadPool)->Apply(jobArguments);

// Prints the console report, then the time of the job pool over QThreadPool's for each argument
// set.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            const std::string name = run.benchmark_name();
            const auto slash = name.find('/');
            if (slash == std::string::npos || run.run_type != Run::RT_Aggregate
                || (run.aggregate_name != "median" && run.aggregate_name != "min"))
                continue;
            mTimes[name.substr(slash)][name.substr(0, slash)] = run.GetAdjustedRealTime();
        }
    }
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        std::printf("\nkomQtThreadPool time / QThreadPool time:\n");
        for (const auto &entry : mTimes) {
            const auto peer = entry.second.find("BM_QThreadPool");
            const auto own = entry.second.find("BM_komQtThreadPool");
            if (peer != entry.second.end() && own != entry.second.end() && peer->second > 0)
                std::printf("  %-28s %6.2fx\n", entry.first.c_str(), own->second / peer->second);
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> mTimes;
};

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv); // the pool's slots need the main thread's event loop
    ko::Log::instance().setLogLevel(ko::Log::Warning); // no worker start and end lines
    // The two pools' repetitions are shuffled together, so that a change in the machine's load
    // during the run falls on both alike; a flag on the command line still overrides this.
    std::vector<char *> args(argv, argv + argc);
    const auto console = std::find_if(args.begin(), args.end(),
        [](const char *arg) { return std::strcmp(arg, "--console") == 0; });
    sConsole = console != args.end();
    if (sConsole)
        args.erase(console);
    char interleave[] = "--benchmark_enable_random_interleaving=true";
    args.insert(args.begin() + 1, interleave);
    int count = int(args.size());
    benchmark::Initialize(&count, args.data());
    argc = count;
    argv = args.data();
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    QTemporaryDir dir;
    std::atomic<bool> reading { true };
    QThread *reader = nullptr;
    if (sConsole) {
        const QString path = dir.filePath(QStringLiteral("console"));
        if (!ko::Console::listen(path))
            return 1;
        reader = QThread::create([&reading, path]() {
            while (reading) {
                ko::ConsoleClient::fetch(path);
                QThread::sleep(1);
            }
        });
        reader->start();
    }
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    if (reader) {
        reading = false;
        reader->wait();
        delete reader;
        ko::Console::close();
    }
    benchmark::Shutdown();
    return 0;
}
