#include "JobTestSupport.h"
#include "LogCapture.h"

#include <QtTest>

#include <thread>
#include <vector>

using ko::komQtThreadPool;

namespace
{

constexpr int kProducers = 4;
constexpr int kJobsPerProducer = 25000;

// Counts its runs, and notes a run that happened although the abort flag was set.
class CountingJob : public ko::IRunnable
{
public:
    void run(int, QTime&) override
    {
        if (mAbortRequested)
            ++mRunsWhileAborted;
        ++mRuns;
        ++sRuns;
    }
    std::atomic<int> mRuns{0};
    std::atomic<int> mRunsWhileAborted{0};
    static std::atomic<int> sRuns;
};

std::atomic<int> CountingJob::sRuns{0};

struct Scheduled
{
    kom::smart<CountingJob> job;
    int id;
};

} // namespace

class tst_komQtThreadPoolStress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyJobRunsOnceOrIsAborted();
};

void tst_komQtThreadPoolStress::everyJobRunsOnceOrIsAborted()
{
    LogCapture capture;
    TestPool pool(QStringLiteral("Stress"), 2);
    std::vector<std::vector<Scheduled>> scheduled(kProducers);
    std::atomic<int> producersDone{0};
    std::atomic<int> abortCalls{0}, priorityChanges{0};

    // Four threads schedule at once, and meddle with jobs they queued a moment ago while the
    // pool's thread reclaims workers.
    std::vector<std::thread> producers;
    for (int p = 0; p < kProducers; ++p) {
        producers.emplace_back([&, p]() {
            std::vector<Scheduled>& mine = scheduled[p];
            mine.reserve(kJobsPerProducer);
            for (int i = 0; i < kJobsPerProducer; ++i) {
                kom::smart<CountingJob> job(new CountingJob);
                const auto priority = komQtThreadPool::SchedulePriority((i % 7) | (i % 3 == 0 ? 0x800 : 0));
                mine.push_back({job, pool.schedule(job, priority)});
                if (i % 5 == 4) {
                    QSet<int> ids{mine[i - 1].id, mine[i - 3].id};
                    pool.requestAbort(ids);
                    ++abortCalls;
                }
                if (i % 7 == 6) {
                    pool.changePriority(mine[i - 2].id, komQtThreadPool::ScheduleHighPriority);
                    ++priorityChanges;
                }
                if (i % 101 == 100)
                    pool.isFinished(mine[i - 50].id);
                // Queues are searched linearly: keep them short enough for a quick run.
                if (i % 64 == 63) {
                    while (pool.totalWorkLoad() > 256)
                        std::this_thread::sleep_for(std::chrono::microseconds(200));
                }
            }
            ++producersDone;
        });
    }

    const auto unaccounted = [&]() {
        int open = 0;
        for (const auto& list : scheduled) {
            for (const Scheduled& entry : list) {
                if (entry.job->mRuns == 0 && !entry.job->mAbortRequested)
                    ++open;
            }
        }
        return open;
    };
    // The pool's thread keeps its event loop running meanwhile.
    QElapsedTimer t; t.start();
    QVERIFY(spinUntil([&]() { return producersDone == kProducers; }, 60000));
    qDebug("produce %lld", t.elapsed());
    for (auto& producer : producers)
        producer.join();
    // waitForAllFinished() may return while a worker back in the idle list still has queued
    // jobs, so wait until every job is accounted for.
    QVERIFY(pool.waitForAllFinished(-1));
    qDebug("waitall %lld", t.elapsed());
    QVERIFY(spinUntil([&]() { return unaccounted() == 0; }, 60000, 10));
    qDebug("accounted %lld", t.elapsed());

    int ran = 0, aborted = 0;
    QSet<int> ids;
    for (const auto& list : scheduled) {
        for (const Scheduled& entry : list) {
            const CountingJob& job = *entry.job;
            QCOMPARE(job.mRunsWhileAborted.load(), 0);
            QVERIFY(job.mRuns <= 1);
            QVERIFY(job.mRuns == 1 || job.mAbortRequested); // never lost
            QVERIFY(job.mRuns == 0 || !job.mAbortRequested); // never both
            ran += job.mRuns;
            aborted += job.mAbortRequested ? 1 : 0;
            ids.insert(entry.id);
        }
    }
    QCOMPARE(ran + aborted, kProducers * kJobsPerProducer);
    QCOMPARE(CountingJob::sRuns.load(), ran);
    QCOMPARE(ids.size(), kProducers * kJobsPerProducer); // ids are unique
    QVERIFY(aborted > 0);
    QCOMPARE(pool.countThreads(), 2);
    qDebug("%d jobs ran, %d aborted, %d abort requests, %d priority changes", ran, aborted, abortCalls.load(),
           priorityChanges.load());

    // Workers created from the producer threads still delete themselves in the pool's thread.
    QVERIFY(pool.retire(60000));
    qDebug("retired %lld", t.elapsed());
    for (const auto& list : scheduled) {
        for (const Scheduled& entry : list)
            QCOMPARE(entry.job.useCount(), 1L);
    }
}

QTEST_GUILESS_MAIN(tst_komQtThreadPoolStress)
#include "tst_komQtThreadPoolStress.moc"
