// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "BenchCommand.h"

#include "Arguments.h"
#include "JobRun.h"
#include "Output.h"

#include <QAtomicInt>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <chrono>
#include <cmath>

namespace tool
{

namespace
{

const QString kJobsOption = QStringLiteral("jobs");
const QString kThreadsOption = QStringLiteral("threads");
const QString kWorkOption = QStringLiteral("work-us");

// The work of one job: the processor kept busy for @p micros microseconds.
void spin(int micros)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::microseconds(micros);
    while (std::chrono::steady_clock::now() < end) { }
}

qint64 runOnQThreadPool(int jobs, int threads, int micros, Progress &progress)
{
    QThreadPool pool;
    pool.setMaxThreadCount(threads);
    QAtomicInt done;
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < jobs; ++i) {
        pool.start(QRunnable::create([micros, &done] {
            spin(micros);
            done.ref();
        }));
    }
    while (!pool.waitForDone(100))
        progress.update(done.loadAcquire());
    const qint64 elapsed = clock.nsecsElapsed();
    progress.update(done.loadAcquire());
    return elapsed;
}

double perSecond(int jobs, qint64 nanoseconds)
{
    return nanoseconds > 0 ? std::round(jobs * 1e9 / double(nanoseconds)) : 0.0;
}

int runBench(const Invocation &invocation)
{
    if (invocation.arguments.first() != QLatin1String("jobs"))
        badInput(QStringLiteral("benchmark"), invocation.arguments.first(),
            QStringLiteral("unknown; available: jobs"));
    const int jobs = invocation.isSet(kJobsOption)
        ? parseInteger(QStringLiteral("--jobs"), invocation.value(kJobsOption), 1)
        : 10000;
    const int threads = invocation.isSet(kThreadsOption)
        ? parseInteger(QStringLiteral("--threads"), invocation.value(kThreadsOption), 1)
        : qMax(1, QThread::idealThreadCount());
    const int micros = invocation.isSet(kWorkOption)
        ? parseInteger(QStringLiteral("--work-us"), invocation.value(kWorkOption), 0)
        : 10;

    qint64 poolTime = 0;
    {
        Progress progress(QStringLiteral("bench komQtThreadPool"), jobs, Progress::Jobs);
        poolTime = runJobs(
            QStringLiteral("Bench"), jobs, threads, [micros](int) { spin(micros); },
            [&progress](int done) { progress.update(done); });
    }
    qint64 qtTime = 0;
    {
        Progress progress(QStringLiteral("bench QThreadPool"), jobs, Progress::Jobs);
        qtTime = runOnQThreadPool(jobs, threads, micros, progress);
    }

    const double pool = perSecond(jobs, poolTime);
    const double qt = perSecond(jobs, qtTime);
    Report report(Report::Properties);
    report.set(QStringLiteral("jobs"), jobs);
    report.set(QStringLiteral("threads"), threads);
    report.set(QStringLiteral("workUs"), micros);
    report.set(QStringLiteral("komQtThreadPool"), pool);
    report.set(QStringLiteral("QThreadPool"), qt);
    // Jobs per second of the library's pool over Qt's: above 1, the library's pool is faster.
    report.set(QStringLiteral("ratio"), qt > 0 ? std::round(pool / qt * 100) / 100 : 0.0);
    report.print(invocation.format);
    return 0;
}

QList<QCommandLineOption> benchOptions()
{
    return { QCommandLineOption(kJobsOption, QStringLiteral("Number of jobs (default 10000)."),
                 QStringLiteral("N")),
        QCommandLineOption(kThreadsOption,
            QStringLiteral("Worker threads of each pool (default: one per core)."),
            QStringLiteral("T")),
        QCommandLineOption(kWorkOption,
            QStringLiteral("Microseconds of work per job (default 10)."), QStringLiteral("U")) };
}

} // namespace

const Command kBenchCommand = { "bench", "jobs",
    "Runs N jobs on the library's job pool and on QThreadPool, each with T threads, and prints the "
    "jobs per second of both and their ratio.",
    1, 1, benchOptions, runBench, "coreqt bench jobs --jobs 20000 --threads 4" };

} // namespace tool
