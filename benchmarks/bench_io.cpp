// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// Sequential write and read of 64 MiB in 64 KiB chunks through ko::FileEncrypt against a plain
// QFile in the same run (the files stay in the page cache), and the time of a seek to 1 KiB,
// 1 MiB and 1 GiB.
// Goals: enciphered write and read at least 0.85 of QFile's speed; seek time independent of the
// offset.
#include "Spread.h"

#include "io/FileEncrypt.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <map>
#include <string>
#include <vector>

namespace
{

constexpr qint64 kTotal = qint64(64) << 20;
constexpr int kChunk = 64 << 10;
// Runs of each side per comparison, taken in pairs whose order alternates.
constexpr int kPairs = 21;

QTemporaryDir &scratch()
{
    static QTemporaryDir dir;
    return dir;
}

QString scratchPath(const char *name)
{
    return scratch().filePath(QString::fromLatin1(name));
}

QByteArray chunk()
{
    QByteArray bytes(kChunk, Qt::Uninitialized);
    for (int i = 0; i < kChunk; ++i)
        bytes[i] = char(i * 131 + (i >> 9));
    return bytes;
}

template <class File> bool writeFile(const QString &path)
{
    static const QByteArray data = chunk();
    File file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    for (qint64 done = 0; done < kTotal; done += kChunk) {
        if (file.write(data) != kChunk)
            return false;
    }
    file.close();
    return true;
}

template <class File> bool readFile(const QString &path)
{
    static QByteArray buffer(kChunk, Qt::Uninitialized);
    File file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    qint64 total = 0;
    for (qint64 n; (n = file.read(buffer.data(), kChunk)) > 0;)
        total += n;
    file.close();
    benchmark::DoNotOptimize(buffer.data());
    return total == kTotal;
}

// Rewrites a file in 1 MiB pieces. The page cache keeps a file in pages as large as the writes that
// filled it, and reading small pages is slower; rewritten alike, both files are read under the
// same conditions, as after a copy or a reboot.
bool rewriteInLargePieces(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    file.close();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return false;
    for (int done = 0; done < bytes.size(); done += 1 << 20)
        file.write(bytes.constData() + done, qMin(1 << 20, bytes.size() - done));
    file.close();
    return true;
}

// One comparison: the device against QFile in real time, and QFile's time over the device's run
// by run, in real time and in the thread's processor time (user and system). On a busy machine
// the processor time shows what the runs cost without the waits for the processor.
struct Comparison
{
    Spread enciphered;
    Spread plain;
    Spread ratio;
    Spread cpuRatio;
};

// Real and processor time of one run, in milliseconds.
struct Times
{
    double real;
    double cpu;
};

double threadCpuMilliseconds()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

std::map<std::string, Comparison> comparisons;

// Runs @p enciphered and @p plain kPairs times each, alternating which goes first, after one
// run of each to warm up. Returns false when a run fails.
template <class Enciphered, class Plain>
bool compare(benchmark::State &state, const std::string &name, Enciphered enciphered, Plain plain)
{
    const auto timed = [](auto run, std::vector<Times> &times) {
        const auto start = std::chrono::steady_clock::now();
        const double cpuStart = threadCpuMilliseconds();
        const bool ok = run();
        times.push_back(
            { std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
                    .count(),
                threadCpuMilliseconds() - cpuStart });
        return ok;
    };
    std::vector<Times> warmUp;
    if (!timed(enciphered, warmUp) || !timed(plain, warmUp))
        return false;
    std::vector<Times> encipheredTimes;
    std::vector<Times> plainTimes;
    for (int pair = 0; pair < kPairs; ++pair) {
        const bool ok = pair % 2 ? timed(plain, plainTimes) && timed(enciphered, encipheredTimes)
                                 : timed(enciphered, encipheredTimes) && timed(plain, plainTimes);
        if (!ok)
            return false;
    }
    std::vector<double> real[2];
    std::vector<double> ratios[2];
    double total = 0;
    for (int pair = 0; pair < kPairs; ++pair) {
        const Times &e = encipheredTimes[size_t(pair)];
        const Times &p = plainTimes[size_t(pair)];
        real[0].push_back(e.real);
        real[1].push_back(p.real);
        ratios[0].push_back(p.real / e.real);
        ratios[1].push_back(p.cpu / e.cpu);
        total += e.real + p.real;
    }
    Comparison &result = comparisons[name];
    result = { spread(real[0]), spread(real[1]), spread(ratios[0]), spread(ratios[1]) };
    state.counters["ratio"] = result.ratio.median;
    state.counters["cpu_ratio"] = result.cpuRatio.median;
    state.SetIterationTime(total / 1000);
    return true;
}

void BM_Write(benchmark::State &state)
{
    const QString enciphered = scratchPath("write.enc");
    const QString plain = scratchPath("write.plain");
    for (auto _ : state) {
        if (!compare(
                state, "Write", [&] { return writeFile<ko::FileEncrypt>(enciphered); },
                [&] { return writeFile<QFile>(plain); }))
            state.SkipWithError("write failed");
    }
}

void read(benchmark::State &state, const std::string &name, bool rewrite)
{
    const QString enciphered = scratchPath("read.enc");
    const QString plain = scratchPath("read.plain");
    if (!writeFile<ko::FileEncrypt>(enciphered) || !writeFile<QFile>(plain)
        || (rewrite && (!rewriteInLargePieces(enciphered) || !rewriteInLargePieces(plain)))) {
        state.SkipWithError("cannot prepare the files");
        return;
    }
    for (auto _ : state) {
        if (!compare(
                state, name, [&] { return readFile<ko::FileEncrypt>(enciphered); },
                [&] { return readFile<QFile>(plain); }))
            state.SkipWithError("short read");
    }
}

void BM_Read(benchmark::State &state)
{
    read(state, "Read", true);
}
void BM_ReadAsWritten(benchmark::State &state)
{
    read(state, "Read as written", false);
}

template <class File> void seekTo(benchmark::State &state, const char *name)
{
    const QString path = scratchPath(name);
    {
        File file(path);
        if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
            return;
        file.write(chunk());
        file.close();
    }
    File file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        state.SkipWithError("cannot open");
        return;
    }
    // Alternating between two neighbours, since a seek to the current position does nothing.
    const qint64 offset = state.range(0);
    qint64 i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(file.seek(offset + (++i & 1)));
    file.close();
}

void BM_SeekEnciphered(benchmark::State &state)
{
    seekTo<ko::FileEncrypt>(state, "seek.enc");
}
void BM_SeekPlain(benchmark::State &state)
{
    seekTo<QFile>(state, "seek.plain");
}

// Each comparison is one iteration of many alternating runs, timed by the runs themselves.
BENCHMARK(BM_Write)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Read)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadAsWritten)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
// Three repetitions each, compared by their medians: timings on a shared machine vary from run to
// run.
BENCHMARK(BM_SeekEnciphered)->Arg(1 << 10)->Arg(1 << 20)->Arg(1 << 30)->Repetitions(3);
BENCHMARK(BM_SeekPlain)->Arg(1 << 10)->Arg(1 << 20)->Arg(1 << 30)->Repetitions(3);

// Prints the runs as usual and remembers the seeks' real time per iteration in nanoseconds
// (the median of the repetitions).
class SeekReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            const std::string &args = run.run_name.args;
            if (run.aggregate_name == "median" && !run.error_occurred)
                nanoseconds[run.run_name.function_name + "/" + args] = run.GetAdjustedRealTime()
                    / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    std::map<std::string, double> nanoseconds;
};

void printSummary(std::map<std::string, double> &seeks)
{
    const auto rate = [](double ms) { return double(kTotal) / (1 << 30) / (ms / 1000); }; // GiB/s
    for (const auto &[name, c] : comparisons) {
        std::printf("%-15s enciphered %.2f GiB/s (min %.2f, max %.2f), QFile %.2f GiB/s (min %.2f, "
                    "max %.2f)\n",
            name.c_str(), rate(c.enciphered.median), rate(c.enciphered.max), rate(c.enciphered.min),
            rate(c.plain.median), rate(c.plain.max), rate(c.plain.min));
        std::printf("%-15s enciphered / QFile: median %.2f, min %.2f, max %.2f over %d alternating "
                    "pairs%s\n",
            "", c.ratio.median, c.ratio.min, c.ratio.max, kPairs,
            name == "Read as written" ? "" : " (goal: median at least 0.85)");
        std::printf("%-15s in processor time: median %.2f, min %.2f, max %.2f\n", "",
            c.cpuRatio.median, c.cpuRatio.min, c.cpuRatio.max);
    }
    const double small = seeks["BM_SeekEnciphered/1024"];
    const double large = seeks["BM_SeekEnciphered/1073741824"];
    if (small > 0)
        std::printf("Seek  enciphered %.0f ns at 1 KiB, %.0f ns at 1 MiB, %.0f ns at 1 GiB: "
                    "1 GiB / 1 KiB = %.2f (goal: at most 2); QFile %.0f ns at 1 GiB\n",
            small, seeks["BM_SeekEnciphered/1048576"], large, large / small,
            seeks["BM_SeekPlain/1073741824"]);
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    SeekReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printSummary(reporter.nanoseconds);
    benchmark::Shutdown();
    return 0;
}
