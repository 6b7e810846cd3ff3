// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// What a new user of CoreQt does first: schedule jobs on the job pool and wait for them, log
// through the log front, catch and print an exception with its cause, and write and read back
// an enciphered file.
// Installed, the header is <CoreQt/CoreQt.h>; inside this source tree it is found as <CoreQt.h>.
#include <CoreQt.h>

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>

namespace
{

// A job adds its id to a shared sum and counts itself done; the pool runs it on one of its worker
// threads.
class SumJob : public ko::IRunnable
{
public:
    SumJob(std::atomic<int> &sum, std::atomic<int> &done)
        : mSum(sum)
        , mDone(done)
    { }
    void run(int jobId, ko::JobTimer &) override
    {
        mSum += jobId;
        ++mDone;
    }

private:
    std::atomic<int> &mSum;
    std::atomic<int> &mDone;
};

// Opening a file that is not there, reported as the library's exceptions report it: the file
// error, with the operation that failed as its cause.
void openMissing(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        const ko::FileException cause(file);
        throw ko::IOException(QStringLiteral("loading the camera list failed"), &cause);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    ko::LogQt::s_instance.setMessageLogLevel();
    ko::LogQt::write(
        ko::Log::Message, QStringLiteral("CoreQt %1").arg(QLatin1String(ko::coreQtVersion())));

    // Jobs: schedule eight, then wait until all eight have run. A worker that finished a job
    // is free again even while more of its jobs wait in its queue, and the pool's waits and
    // queries look at busy workers only: count the jobs' ends instead of asking the pool.
    ko::komQtThreadPool *pool = ko::komQtThreadPool::globalInstance();
    constexpr int jobs = 8;
    std::atomic<int> sum(0);
    std::atomic<int> done(0);
    int expected = 0;
    QEventLoop loop;
    QObject::connect(pool, &ko::komQtThreadPool::jobFinished, &loop, [&]() {
        if (done == jobs)
            loop.quit();
    });
    for (int i = 0; i < jobs; ++i)
        expected += pool->schedule(kom::smart<ko::IRunnable>(new SumJob(sum, done)));
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    if (done < jobs)
        loop.exec();
    ko::LogLine(ko::Log::Message) << done.load() << " jobs done, sum of ids " << sum.load();

    // Exceptions: catch by reference to the base and print the whole chain.
    try {
        openMissing(QDir::temp().filePath(QStringLiteral("no-such-camera-list.txt")));
    } catch (const ko::ExceptionQt &e) {
        ko::LogLine(ko::Log::Warning) << e.toString().trimmed();
    }

    // An enciphered file: written through the device, unreadable as plain bytes, read back.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("notes.enc"));
    const QByteArray text("camera 7 moved to the hall");
    {
        ko::FileEncrypt out(path);
        if (!out.open(QIODevice::WriteOnly))
            return 1;
        out.write(text);
        out.close();
    }
    ko::FileEncrypt in(path);
    if (!in.open(QIODevice::ReadOnly))
        return 1;
    const QByteArray back = in.readAll();
    ko::LogLine(ko::Log::Message) << "seed " << in.seed() << ", read back: " << back;
    in.close();

    ko::komQtThreadPool::deleteGlobalInstance();
    return done == jobs && sum == expected && back == text ? 0 : 1;
}
