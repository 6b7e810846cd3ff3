// Sequential write and read of 64 MiB through ko::FileEncrypt against a plain QFile in the same
// run (the file stays in the page cache), and the time of a seek to 1 KiB, 1 MiB and 1 GiB.
// Goals: enciphered throughput at least half of QFile's; seek time independent of the offset.
#include "io/FileEncrypt.h"

#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <memory>
#include <string>

namespace
{

constexpr qint64 kTotal = qint64(64) << 20;
constexpr int kChunk = 64 << 10;

QTemporaryDir& scratch()
{
    static QTemporaryDir dir;
    return dir;
}

QByteArray chunk()
{
    QByteArray bytes(kChunk, Qt::Uninitialized);
    for (int i = 0; i < kChunk; ++i)
        bytes[i] = char(i * 131 + (i >> 9));
    return bytes;
}

template <class File>
void writeFile(const QString& path)
{
    const QByteArray data = chunk();
    File file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return;
    for (qint64 done = 0; done < kTotal; done += kChunk)
        file.write(data);
    file.close();
}

template <class File>
void sequentialWrite(benchmark::State& state, const char* name)
{
    const QString path = scratch().filePath(QString::fromLatin1(name));
    for (auto _ : state)
        writeFile<File>(path);
    state.SetBytesProcessed(state.iterations() * kTotal);
}

// Rewrites a file in 1 MiB pieces. The page cache keeps a file in pages as large as the writes that
// filled it, and reading small pages is much slower; rewritten alike, both files are read under the
// same conditions, as after a copy or a reboot.
void rewriteInLargePieces(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return;
    const QByteArray bytes = file.readAll();
    file.close();
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return;
    for (int done = 0; done < bytes.size(); done += 1 << 20)
        file.write(bytes.constData() + done, qMin(1 << 20, bytes.size() - done));
    file.close();
}

template <class File>
void sequentialRead(benchmark::State& state, const char* name, bool rewrite = true)
{
    const QString path = scratch().filePath(QString::fromLatin1(name));
    writeFile<File>(path);
    if (rewrite)
        rewriteInLargePieces(path);
    QByteArray buffer(kChunk, Qt::Uninitialized);
    for (auto _ : state) {
        File file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            state.SkipWithError("cannot open");
            return;
        }
        qint64 total = 0;
        for (qint64 n; (n = file.read(buffer.data(), kChunk)) > 0;)
            total += n;
        file.close();
        if (total != kTotal) {
            state.SkipWithError("short read");
            return;
        }
        benchmark::DoNotOptimize(buffer.data());
    }
    state.SetBytesProcessed(state.iterations() * kTotal);
}

template <class File>
void seekTo(benchmark::State& state, const char* name)
{
    const QString path = scratch().filePath(QString::fromLatin1(name));
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

void BM_WriteEnciphered(benchmark::State& state) { sequentialWrite<ko::FileEncrypt>(state, "write.enc"); }
void BM_WritePlain(benchmark::State& state) { sequentialWrite<QFile>(state, "write.plain"); }
void BM_ReadEnciphered(benchmark::State& state) { sequentialRead<ko::FileEncrypt>(state, "read.enc"); }
void BM_ReadPlain(benchmark::State& state) { sequentialRead<QFile>(state, "read.plain"); }
void BM_ReadEncipheredJustWritten(benchmark::State& state)
{
    sequentialRead<ko::FileEncrypt>(state, "read.fresh", false);
}
void BM_SeekEnciphered(benchmark::State& state) { seekTo<ko::FileEncrypt>(state, "seek.enc"); }
void BM_SeekPlain(benchmark::State& state) { seekTo<QFile>(state, "seek.plain"); }

// Three repetitions each, compared by their medians: timings on a shared machine vary from run to run.
BENCHMARK(BM_WriteEnciphered)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3);
BENCHMARK(BM_WritePlain)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3);
BENCHMARK(BM_ReadEnciphered)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3);
BENCHMARK(BM_ReadPlain)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3);
BENCHMARK(BM_ReadEncipheredJustWritten)->Unit(benchmark::kMillisecond)->UseRealTime()->Repetitions(3);
BENCHMARK(BM_SeekEnciphered)->Arg(1 << 10)->Arg(1 << 20)->Arg(1 << 30)->Repetitions(3);
BENCHMARK(BM_SeekPlain)->Arg(1 << 10)->Arg(1 << 20)->Arg(1 << 30)->Repetitions(3);

// Prints the runs as usual and remembers their real time per iteration in nanoseconds
// (the median where a benchmark is repeated).
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const std::string& args = run.run_name.args;
            const bool wanted = run.run_type == Run::RT_Iteration || run.aggregate_name == "median";
            if (wanted && !run.error_occurred)
                nanoseconds[run.run_name.function_name + (args.empty() ? "" : "/" + args)] =
                    run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // Prints how the enciphered device compares with QFile and how seeks scale with the offset.
    void printRatios()
    {
        const auto rate = [this](const std::string& name) { // GiB/s
            return nanoseconds.count(name) ? double(kTotal) / nanoseconds[name] * 1e9 / (1 << 30) : 0.0;
        };
        for (const char* what : {"Write", "Read"}) {
            const double enciphered = rate(std::string("BM_") + what + "Enciphered");
            const double plain = rate(std::string("BM_") + what + "Plain");
            if (plain > 0)
                std::printf("%-5s enciphered %.2f GiB/s, QFile %.2f GiB/s: %.0f%% of QFile "
                            "(goal: at least 50%%)\n",
                            what, enciphered, plain, 100 * enciphered / plain);
        }
        const double fresh = rate("BM_ReadEncipheredJustWritten");
        if (fresh > 0)
            std::printf("      enciphered read right after writing it through the device (smaller pages): "
                        "%.2f GiB/s, %.0f%% of QFile\n",
                        fresh, 100 * fresh / rate("BM_ReadPlain"));
        const double small = nanoseconds["BM_SeekEnciphered/1024"];
        const double large = nanoseconds["BM_SeekEnciphered/1073741824"];
        if (small > 0)
            std::printf("Seek  enciphered %.0f ns at 1 KiB, %.0f ns at 1 MiB, %.0f ns at 1 GiB: "
                        "1 GiB / 1 KiB = %.2f (goal: at most 2); QFile %.0f ns at 1 GiB\n",
                        small, nanoseconds["BM_SeekEnciphered/1048576"], large, large / small,
                        nanoseconds["BM_SeekPlain/1073741824"]);
    }

private:
    std::map<std::string, double> nanoseconds;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
