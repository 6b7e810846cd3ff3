// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Flushed log lines into a file: the library's logging idiom against spdlog's synchronous
// basic_file_sink_mt flushing every line (flush_on(trace)), in the same run. Both pay one write(2)
// per line; the lines are of the same length (about 80 bytes with the prefix).
//   Text      LogQt::write() of one QString against spdlog writing one text
//   Streamed  ko::LogLine with several values against spdlog formatting the same values
//   Marked    the Qt message handler's marked line against spdlog writing one text
//   Threads   4 threads each writing 50,000 streamed lines into one file, total time
// Each comparison alternates the two sides run by run; the summary gives the median with the
// fastest and slowest run of each side, and the ratio library / spdlog run pair by pair.
// Goals: Text and Streamed at most 1.10, Threads at most 1.0.
#include "Spread.h"

#include "log/LogQt.h"

#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <QString>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int kLines = 20000; // lines of one single-thread run
constexpr int kThreads = 4;
constexpr int kThreadLines = 50000; // lines of each thread in one run
constexpr int kPairs = 15; // runs of each side per single-thread comparison
constexpr int kThreadPairs = 11;

// The idiom's prefix "yyyy-MM-dd hh:mm:ss.zzz Warning " for spdlog, whose level name is as long.
constexpr const char *kSpdlogPattern = "%Y-%m-%d %H:%M:%S.%e %l %v";

const QTemporaryDir &scratch()
{
    static QTemporaryDir dir;
    return dir;
}

std::string path(const std::string &name)
{
    return scratch().filePath(QString::fromStdString(name)).toStdString();
}

std::shared_ptr<spdlog::logger> spdlogFile(const std::string &name)
{
    spdlog::drop(name);
    auto logger = spdlog::basic_logger_mt(name, path(name + ".log"), true);
    logger->set_pattern(kSpdlogPattern);
    logger->flush_on(spdlog::level::trace);
    return logger;
}

void idiomFile(const std::string &name)
{
    ko::LogQt::s_instance.setLogFile(path(name + ".log").c_str(), false);
    ko::LogQt::s_instance.setLogLevel(ko::Log::Message);
}

double processCpuSeconds()
{
    timespec now;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

// One comparison: nanoseconds per line of each side, and the library's time over spdlog's pair by
// pair, in real time and in the process's processor time (on a busy machine the processor time
// shows what the runs cost without the waits for a processor).
struct Comparison
{
    Spread own;
    Spread peer;
    Spread ratio;
    Spread cpuRatio;
    int pairs = 0;
    bool intact = false;
};

std::map<std::string, Comparison> comparisons;

struct Times
{
    double real;
    double cpu;
};

Times timed(const std::function<void()> &run)
{
    const auto start = std::chrono::steady_clock::now();
    const double cpuStart = processCpuSeconds();
    run();
    return { std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(),
        processCpuSeconds() - cpuStart };
}

// Runs @p own and @p peer @p pairs times each, alternating which goes first, after one run of each
// to warm up; each run writes @p lines lines.
void compare(benchmark::State &state, const std::string &name, int pairs, int lines,
    const std::function<void()> &own, const std::function<void()> &peer)
{
    timed(own);
    timed(peer);
    std::vector<Times> ownTimes, peerTimes;
    for (int pair = 0; pair < pairs; ++pair) {
        if (pair % 2) {
            peerTimes.push_back(timed(peer));
            ownTimes.push_back(timed(own));
        } else {
            ownTimes.push_back(timed(own));
            peerTimes.push_back(timed(peer));
        }
    }
    std::vector<double> ownNs, peerNs, ratios, cpuRatios;
    double total = 0;
    for (int pair = 0; pair < pairs; ++pair) {
        const Times &o = ownTimes[size_t(pair)];
        const Times &p = peerTimes[size_t(pair)];
        ownNs.push_back(o.real * 1e9 / lines);
        peerNs.push_back(p.real * 1e9 / lines);
        ratios.push_back(o.real / p.real);
        cpuRatios.push_back(o.cpu / p.cpu);
        total += o.real + p.real;
    }
    Comparison &result = comparisons[name];
    result = { spread(ownNs), spread(peerNs), spread(ratios), spread(cpuRatios), pairs, false };
    state.counters["ratio"] = result.ratio.median;
    state.counters["cpu_ratio"] = result.cpuRatio.median;
    state.SetIterationTime(total);
}

// The line of both sides: "QtThreadPool: job <id> finished in 12 ms, queue 3" after the prefix.
const char *const kTextLine = "QtThreadPool: job 123456 finished in 12 ms, queue 3";

// A single-thread comparison: @p own(i) and @p peer(logger, i) write line i of a run.
template <class Own, class Peer>
void singleThread(benchmark::State &state, const std::string &name, Own own, Peer peer)
{
    idiomFile(name + "-idiom");
    auto logger = spdlogFile(name + "-spdlog");
    for (auto _ : state) {
        compare(
            state, name, kPairs, kLines,
            [&] {
                for (int i = 0; i < kLines; ++i)
                    own(i);
            },
            [&] {
                for (int i = 0; i < kLines; ++i)
                    peer(*logger, i);
            });
    }
}

void BM_Text(benchmark::State &state)
{
    const QString text = QString::fromLatin1(kTextLine);
    singleThread(
        state, "Text", [&](int) { ko::LogQt::write(ko::Log::Warning, text); },
        [](spdlog::logger &logger, int) { logger.warn(kTextLine); });
}

void BM_Streamed(benchmark::State &state)
{
    singleThread(
        state, "Streamed",
        [](int i) {
            ko::LogLine(ko::Log::Warning) << "QtThreadPool: job " << 100000 + i << " finished in "
                                          << 12 << " ms, queue " << 3;
        },
        [](spdlog::logger &logger, int i) {
            logger.warn("QtThreadPool: job {} finished in {} ms, queue {}", 100000 + i, 12, 3);
        });
}

void BM_Marked(benchmark::State &state)
{
    singleThread(
        state, "Marked", [](int) { ko::LogQt::qtMsgHandler(QtWarningMsg, kTextLine); },
        [](spdlog::logger &logger, int) { logger.warn(kTextLine); });
}

// Starts kThreads threads that each call @p line(thread, index) kThreadLines times, and waits for
// them.
void inThreads(const std::function<void(int, int)> &line)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&line, t] {
            for (int i = 0; i < kThreadLines; ++i)
                line(t, i);
        });
    }
    for (auto &thread : threads)
        thread.join();
}

void idiomThreadLine(int t, int i)
{
    ko::LogLine(ko::Log::Warning) << "worker " << t << " job " << i << " finished in " << 12
                                  << " ms, queue " << 3;
}

void spdlogThreadLine(spdlog::logger &logger, int t, int i)
{
    logger.warn("worker {} job {} finished in {} ms, queue {}", t, i, 12, 3);
}

// True when the file holds every line of kThreads threads whole: each thread's lines in order, each
// with its prefix, none cut or mixed with another.
bool intact(const std::string &file)
{
    std::ifstream in(file);
    std::vector<int> next(kThreads, 0);
    std::string line;
    int count = 0;
    while (std::getline(in, line)) {
        int t = -1, i = -1, end = 0;
        // "yyyy-MM-dd hh:mm:ss.zzz <level> worker <t> job <i> finished in 12 ms, queue 3"
        const size_t body = line.find(' ', 24);
        if (line.size() < 24 || line[4] != '-' || line[19] != '.' || body == std::string::npos
            || std::sscanf(line.c_str() + body, " worker %d job %d finished in 12 ms, queue 3%n",
                   &t, &i, &end)
                != 2
            || size_t(end) != line.size() - body || t < 0 || t >= kThreads
            || i != next[size_t(t)]++)
            return false;
        ++count;
    }
    return count == kThreads * kThreadLines;
}

void BM_Threads(benchmark::State &state)
{
    auto logger = spdlogFile("threads-spdlog");
    for (auto _ : state) {
        idiomFile("threads-idiom");
        compare(
            state, "Threads", kThreadPairs, kThreads * kThreadLines,
            [&] { inThreads(idiomThreadLine); },
            [&] { inThreads([&](int t, int i) { spdlogThreadLine(*logger, t, i); }); });
        // A last run of each side into a file of its own, read back line by line.
        idiomFile("threads-idiom-check");
        inThreads(idiomThreadLine);
        idiomFile("threads-idiom"); // closes the checked file
        auto checked = spdlogFile("threads-spdlog-check");
        inThreads([&](int t, int i) { spdlogThreadLine(*checked, t, i); });
        checked->flush();
        Comparison &result = comparisons["Threads"];
        result.intact
            = intact(path("threads-idiom-check.log")) && intact(path("threads-spdlog-check.log"));
        if (!result.intact)
            state.SkipWithError("lines lost or interleaved");
    }
}

// Each comparison is one iteration of many alternating runs, timed by the runs themselves.
BENCHMARK(BM_Text)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Streamed)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Marked)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Threads)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

void printSummary()
{
    for (const auto &[name, c] : comparisons) {
        std::printf("%-9s idiom %4.0f ns/line (min %4.0f, max %4.0f), spdlog %4.0f ns/line (min "
                    "%4.0f, max %4.0f)\n",
            name.c_str(), c.own.median, c.own.min, c.own.max, c.peer.median, c.peer.min,
            c.peer.max);
        std::printf("%-9s idiom / spdlog: median %.2f, min %.2f, max %.2f over %d alternating "
                    "pairs (goal: %s)\n",
            "", c.ratio.median, c.ratio.min, c.ratio.max, c.pairs,
            name == "Threads" ? "at most 1.0" : (name == "Marked" ? "none" : "at most 1.10"));
        std::printf("%-9s in processor time: median %.2f, min %.2f, max %.2f%s\n", "",
            c.cpuRatio.median, c.cpuRatio.min, c.cpuRatio.max,
            name == "Threads"
                ? (c.intact ? "; every line counted, none interleaved" : "; LINES LOST OR MIXED")
                : "");
    }
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    printSummary();
    benchmark::Shutdown();
    return 0;
}
