// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "DemoCommand.h"

#include "ConsoleTable.h"
#include "FileCommands.h"
#include "JobRun.h"
#include "Output.h"
#include "TimeCommands.h"
#include "Translations.h"

#include "Version.h"
#include "camera/EventTypes.h"
#include "camera/ImageTypes.h"
#include "console/Console.h"
#include "console/ConsoleClient.h"
#include "exceptions/FileException.h"
#include "exceptions/IOException.h"
#include "exceptions/RuntimeException.h"
#include "io/FileEncrypt.h"
#include "kom/koqdatetime.h"
#include "log/LogQt.h"
#include "threads/PoolRegistry.h"
#include "threads/komQtSignalThreadPool.h"
#include "threads/komQtThreadPool.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QEventLoop>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

namespace tool
{

namespace
{

// A frame time of the sample recording: 2023-11-14T22:13:20.123456Z.
constexpr unsigned long long kSampleFrameTime = 1700000000123456ull;

void section(const QString &title)
{
    printLine(QString());
    printLine(QStringLiteral("== ") + title);
}

void printIndented(const QString &text)
{
    for (const QString &line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        printLine(QStringLiteral("  ") + line);
}

void showJobPool()
{
    section(QStringLiteral("Four jobs on a job pool of two workers, logged through the log front"));
    runJobs(QStringLiteral("Tour"), 4, 2, [](int jobId) {
        ko::LogLine(ko::Log::Message)
            << "job " << jobId << " started on " << QThread::currentThread()->objectName();
        QThread::msleep(20);
        ko::LogLine(ko::Log::Message) << "job " << jobId << " finished";
    });
}

// The jobs waiting behind the running one of the pool @p name, as @p document shows them.
int queuedBehind(const ko::ConsoleDocument &document, const QString &name)
{
    for (const ko::JobPoolSnapshot &pool : document.jobPools) {
        if (pool.name == name && !pool.workers.isEmpty())
            return pool.workers.first().queue.size();
    }
    return 0;
}

void showConsole()
{
    section(QStringLiteral("A live console, read by the first of three jobs on one worker"));
    const QString socket = QStringLiteral("coreqt-demo-%1").arg(QCoreApplication::applicationPid());
    if (!ko::Console::listen(socket)) {
        printLine(QStringLiteral("  the console could not be opened"));
        return;
    }
    const QString poolName = QStringLiteral("Console");
    QString table;
    const auto readConsole = [&](int) {
        if (!table.isEmpty())
            return; // the later jobs, on the same worker, only end the run
        // Read once the other two jobs wait behind this one, as coreqt top would show them.
        ko::ConsoleClient::Reply reply;
        for (int attempt = 0; attempt < 100; ++attempt) {
            reply = ko::ConsoleClient::fetch(socket);
            if (reply.error != ko::ConsoleClient::NoError
                || queuedBehind(reply.document, poolName) == 2)
                break;
            QThread::msleep(10);
        }
        table = reply.error == ko::ConsoleClient::NoError ? consoleTable(reply.document, false)
                                                          : reply.message;
    };
    runJobs(poolName, 3, 1, readConsole, nullptr,
        [](ko::komQtThreadPool &pool) { ko::PoolRegistry::add(&pool); });
    ko::Console::close();
    printIndented(table);
}

// An object whose slot reports the thread it runs in.
class Greeter : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void greet() { Q_EMIT greeted(QThread::currentThread()->objectName()); }

Q_SIGNALS:
    void greeted(const QString &threadName);
};

void showSignalThreadPool()
{
    section(QStringLiteral("An object attached to the signal thread pool"));
    ko::komQtSignalThreadPool *pool = ko::komQtSignalThreadPool::globalInstance();
    Greeter greeter;
    pool->attachToThread(&greeter);

    QEventLoop loop;
    QString where = QStringLiteral("(no answer)");
    QObject::connect(&greeter, &Greeter::greeted, &loop, [&](const QString &threadName) {
        where = threadName;
        loop.quit();
    });
    QTimer::singleShot(5000, &loop, &QEventLoop::quit);
    QMetaObject::invokeMethod(&greeter, "greet", Qt::QueuedConnection);
    loop.exec();
    printLine(QStringLiteral("  its slot ran in %1").arg(where));

    // Only a detach that runs inside the worker moves the object; this one hands it back here.
    auto *worker = qobject_cast<ko::komQtSignalWorkerThread *>(greeter.thread());
    QThread *home = QThread::currentThread();
    if (worker)
        QMetaObject::invokeMethod(
            &greeter, [&] { worker->detach(&greeter, home); }, Qt::BlockingQueuedConnection);
    printLine(greeter.thread() == home
            ? QStringLiteral("  detached from inside the worker, it is back in the main thread")
            : QStringLiteral("  it could not be detached"));
    ko::komQtSignalThreadPool::deleteGlobalInstance();
}

void showVocabulary(Translations &translations)
{
    section(QStringLiteral("Camera vocabulary in English, German and French"));
    const QLocale installed = translations.language();
    for (QLocale::Language language : { QLocale::English, QLocale::German, QLocale::French }) {
        translations.install(QLocale(language));
        const QString code = QLocale(language).bcp47Name();
        printLine(QStringLiteral("  %1  event VM: %2")
                      .arg(code, ko::triggerEventName(QStringLiteral("VM"))));
        printLine(QStringLiteral("  %1  event AMB_7: %2")
                      .arg(code, ko::triggerEventName(QStringLiteral("AMB_7"))));
        printLine(QStringLiteral("  %1  whiteBalance 'auto narrow': %2")
                      .arg(code, whiteBalanceName(QStringLiteral("auto narrow"))));
        printLine(QStringLiteral("  %1  noiseSuppression '5': %2")
                      .arg(code, noiseSuppressionName(QStringLiteral("5"))));
        printLine(QStringLiteral("  %1  streamMode 0x4: %2")
                      .arg(code, streamModeName(ko::StreamModeSpeed)));
    }
    translations.install(installed);
}

void showException()
{
    section(QStringLiteral("An exception with a two-deep cause chain"));
    try {
        const ko::FileException disk(QFileInfo(QStringLiteral("/recordings/cam1/0042.dat")),
            QFile::WriteError, QStringLiteral("no space left on the device"));
        const ko::IOException frame(QStringLiteral("frame 42 was not saved"), &disk);
        ko::RuntimeException recording(QStringLiteral("recording of cam1 stopped"));
        recording.setCause(&frame);
        throw recording;
    } catch (const ko::ExceptionQt &e) {
        printIndented(e.toString());
    }
}

void showFrameTime()
{
    section(QStringLiteral("A frame time converted both ways"));
    Report there(Report::Properties);
    addFrameTime(there, kSampleFrameTime);
    printIndented(QString::fromUtf8(there.render(Format::Text)));
    const QString utc = ko::toQDateTime(kSampleFrameTime).toUTC().toString(Qt::ISODateWithMs);
    printLine(
        QStringLiteral("  back from %1: %2 (milliseconds kept)").arg(utc).arg(frameTimeOf(utc)));
}

void showEncipheredFile()
{
    section(QStringLiteral("An enciphered temporary file written, inspected and read back"));
    const QByteArray sample = QByteArrayLiteral("camera cam1: 42 frames recorded, 0 lost\n");
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("sample.enc"));
    ko::FileEncrypt out(path);
    const bool written = out.open(QIODevice::WriteOnly) && out.write(sample) == sample.size();
    out.close();
    if (!written) {
        printLine(QStringLiteral("  could not write %1: %2").arg(path, out.errorString()));
        return;
    }
    printLine(QStringLiteral("  wrote %1 bytes; on disk %2 bytes")
                  .arg(sample.size())
                  .arg(QFileInfo(path).size()));
    printIndented(QString::fromUtf8(inspectFile(path).render(Format::Text)));
    ko::FileEncrypt in(path);
    const QByteArray back = in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    in.close();
    printLine(back == sample ? QStringLiteral("  read back: identical")
                             : QStringLiteral("  read back: different"));
}

int runDemo(const Invocation &invocation)
{
    printLine(QStringLiteral("CoreQt %1: a short tour").arg(QLatin1String(ko::coreQtVersion())));
    showJobPool();
    showConsole();
    showSignalThreadPool();
    showVocabulary(*invocation.translations);
    showException();
    showFrameTime();
    showEncipheredFile();
    return 0;
}

} // namespace

const Command kDemoCommand = { "demo", "",
    "A short tour of the library on built-in sample data: jobs, a live console, signal thread "
    "pool, vocabulary in three languages, an exception chain, frame times and an enciphered file.",
    0, 0, nullptr, runDemo, "coreqt demo --lang de" };

} // namespace tool

#include "DemoCommand.moc"
