// Lines per second into a file, each line flushed: the library's logging idiom
// against std::ofstream with std::endl and spdlog's synchronous basic file sink
// flushing every line, in the same run. Each costs about one write(2) per line.
#include "log/LogQt.h"

#include <benchmark/benchmark.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <QString>
#include <QTemporaryDir>

#include <fstream>

namespace
{

const QTemporaryDir& scratch()
{
    static QTemporaryDir dir;
    return dir;
}

std::string path(const char* name)
{
    return scratch().filePath(QString::fromLatin1(name)).toStdString();
}

void BM_LogIdiom(benchmark::State& state)
{
    ko::LogQt& log = ko::LogQt::s_instance;
    log.setLogFile(path("idiom.log").c_str(), false);
    log.setLogLevel(ko::Log::Message);
    long i = 0;
    for (auto _ : state)
        ko::LogLine(ko::Log::Warning) << "job " << int(++i) << " finished in " << 12 << " ms";
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LogIdiom);

void BM_LogWrite(benchmark::State& state)
{
    ko::LogQt& log = ko::LogQt::s_instance;
    log.setLogFile(path("write.log").c_str(), false);
    log.setLogLevel(ko::Log::Message);
    const QString text = QStringLiteral("job 123456 finished in 12 ms");
    for (auto _ : state)
        ko::LogQt::write(ko::Log::Warning, text);
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_LogWrite);

void BM_OfstreamEndl(benchmark::State& state)
{
    std::ofstream out(path("ofstream.log"));
    long i = 0;
    for (auto _ : state)
        out << "2026-11-22 11:03:35.123 Warning job " << ++i << " finished in " << 12 << " ms" << std::endl;
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_OfstreamEndl);

void BM_SpdlogFlushEveryLine(benchmark::State& state)
{
    auto logger = spdlog::basic_logger_mt("bench", path("spdlog.log"), true);
    logger->flush_on(spdlog::level::trace);
    long i = 0;
    for (auto _ : state)
        logger->warn("job {} finished in {} ms", ++i, 12);
    state.SetItemsProcessed(state.iterations());
    spdlog::drop("bench");
}
BENCHMARK(BM_SpdlogFlushEveryLine);

} // namespace

BENCHMARK_MAIN();
