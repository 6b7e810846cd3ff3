// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "FileCommands.h"

#include "Arguments.h"
#include "FileNames.h"
#include "Output.h"
#include "SignalCleanup.h"

#include "exceptions/FileException.h"
#include "io/FileEncrypt.h"

#include <QFileInfo>

#include <memory>

#include <sys/stat.h>

namespace tool
{

namespace
{

// Files above this size show a progress line on a terminal.
constexpr qint64 kProgressThreshold = qint64(16) << 20;
constexpr qint64 kChunkSize = qint64(1) << 20;

// An enciphered file's header, as the library reads it, and the file's raw size.
struct Header
{
    ko::FileEncrypt::Header fields;
    qint64 fileSize = 0;
};

[[noreturn]] void fail(const QFileDevice &device, const QString &path)
{
    throw ko::FileException(QFileInfo(path), device.error(), device.errorString());
}

[[noreturn]] void notEnciphered(const QString &path, const QString &reason)
{
    throw ko::FileException(
        QFileInfo(path), QFile::ReadError, QStringLiteral("not an enciphered file: ") + reason);
}

// A file named on the command line, opened by its bytes: it fails as QFile::open() fails.
struct NamedFile
{
    explicit NamedFile(const QString &name)
        : opened(name)
    {
        if (!opened.isOpen())
            throw ko::FileException(QFileInfo(name), QFile::OpenError, opened.errorString());
    }
    OpenedFile opened;
};

Header readHeader(const QString &path, const NamedFile &named)
{
    QFile file(named.opened.path());
    if (!file.open(QIODevice::ReadOnly))
        fail(file, path);
    Header header { ko::FileEncrypt::Header(file.read(8)), file.size() };
    if (file.error() != QFile::NoError)
        fail(file, path);
    // The library opens a short file with a zero-filled header; the tool says what it is instead.
    if (header.fields.length() < 8)
        notEnciphered(path,
            QStringLiteral("%1 bytes, shorter than the 8-byte header").arg(header.fields.length()));
    return header;
}

// Opens @p file for reading when this library reads it: its header's version check passes and
// it has a seed. A zero seed never comes from the library, whose cipher would pick a random key
// for it, so such a file is refused rather than deciphered into noise.
bool openEnciphered(ko::FileEncrypt &file, const Header &header)
{
    return header.fields.seed() != 0 && header.fields.isReadable()
        && file.open(QIODevice::ReadOnly);
}

// A file name argument (IN, OUT, FILE); an empty one names no file.
QString fileArgument(const Invocation &invocation, int index, const QString &what)
{
    const QString path = invocation.arguments.at(index);
    if (path.isEmpty())
        badInput(what, path, QStringLiteral("an empty file name"));
    return path;
}

// Writes all of @p data. A short write sets no error; one more attempt at the rest makes the system
// tell why (a full disk, a file size limit), and the run fails either way.
void writeAll(QFileDevice &out, const QString &outPath, const char *data, qint64 size)
{
    const qint64 written = out.write(data, size);
    if (written == size)
        return;
    if (written >= 0)
        out.write(data + written, size - written);
    throw ko::FileException(QFileInfo(outPath), QFile::WriteError, out.errorString());
}

// Copies @p in to @p out; returns the number of bytes copied.
qint64 copy(QIODevice &in, const QString &inPath, QFileDevice &out, const QString &outPath,
    Progress &progress)
{
    QByteArray buffer(int(kChunkSize), Qt::Uninitialized);
    qint64 done = 0;
    for (;;) {
        const qint64 n = in.read(buffer.data(), kChunkSize);
        if (n < 0)
            throw ko::FileException(QFileInfo(inPath), QFile::ReadError, in.errorString());
        if (n == 0)
            break;
        writeAll(out, outPath, buffer.constData(), n);
        done += n;
        progress.update(done);
    }
    progress.finish();
    return done;
}

void close(QFileDevice &device, const QString &path)
{
    device.close();
    if (device.error() != QFile::NoError)
        fail(device, path);
}

/**
 * OUT of encrypt and decrypt, as cp treats it. A regular file, a new one, or the file a symbolic
 * link points to (the link stays) is written as a ReplacingFile and replaced only by commit(), with
 * its permissions kept. OUT that exists and is not a regular file (a FIFO, a character device) is
 * written in place: renaming a new file over it would replace the device node itself.
 */
class Destination
{
public:
    Destination(const QString &path, bool encipher, SignalCleanup &cleanup)
        : mPath(path)
        , mCleanup(cleanup)
    {
        struct stat status; // of the file a symbolic link leads to
        mInPlace = ::stat(fileNameBytes(path).constData(), &status) == 0 && !S_ISREG(status.st_mode)
            && !S_ISDIR(status.st_mode);
        QString name;
        if (mInPlace) {
            mOpened = std::make_unique<NamedFile>(path);
            name = mOpened->opened.path();
        } else {
            // A signal between creating the temporary file and registering it would leave it
            // behind.
            cleanup.hold();
            const bool opened = mReplacing.open(path);
            if (opened)
                cleanup.removeOnSignal(mReplacing.handle());
            cleanup.release();
            if (!opened)
                throw ko::FileException(
                    QFileInfo(path), mReplacing.error(), mReplacing.errorString());
            // The new file may have no name yet; its descriptor names it.
            name = QStringLiteral("/proc/self/fd/%1").arg(mReplacing.handle());
        }
        if (encipher) {
            mEnciphered.setFileName(name);
            mDevice = &mEnciphered;
        } else {
            mDirect.setFileName(name);
            mDevice = &mDirect;
        }
        if (!mDevice->open(QIODevice::WriteOnly))
            fail(*mDevice, path);
    }

    Destination(const Destination &) = delete;
    Destination &operator=(const Destination &) = delete;

    /** Where the contents go. */
    QFileDevice &device() { return *mDevice; }
    /** The seed of the enciphered contents; 0 when they are written plain. */
    quint32 seed() const { return mEnciphered.seed(); }

    /** Completes OUT: the new file replaces the old one, or the device has everything. */
    void commit()
    {
        close(*mDevice, mPath);
        if (!mInPlace && !mReplacing.commit())
            throw ko::FileException(QFileInfo(mPath), mReplacing.error(), mReplacing.errorString());
        mCleanup.keepOnSignal();
    }

private:
    QString mPath;
    SignalCleanup &mCleanup;
    bool mInPlace = false;
    // Declared first, destroyed last: the temporary file is removed after the devices writing it
    // are closed.
    ReplacingFile mReplacing;
    std::unique_ptr<NamedFile> mOpened;
    QFile mDirect;
    ko::FileEncrypt mEnciphered;
    QFileDevice *mDevice = nullptr;
};

void printWritten(
    const Invocation &invocation, const QString &outPath, qint64 size, const quint32 *seed)
{
    Report report(Report::Properties);
    report.set(QStringLiteral("file"), outPath);
    report.set(QStringLiteral("size"), double(size));
    if (seed)
        report.set(QStringLiteral("seed"), hex32(*seed));
    report.print(invocation.format);
}

int runEncrypt(const Invocation &invocation)
{
    const QString inPath = fileArgument(invocation, 0, QStringLiteral("IN"));
    const QString outPath = fileArgument(invocation, 1, QStringLiteral("OUT"));
    SignalCleanup cleanup;
    const NamedFile named(inPath);
    QFile in(named.opened.path());
    if (!in.open(QIODevice::ReadOnly))
        fail(in, inPath);
    Destination out(outPath, true, cleanup);
    Progress progress(
        QStringLiteral("encrypt"), in.size(), Progress::Bytes, in.size() > kProgressThreshold);
    const qint64 size = copy(in, inPath, out.device(), outPath, progress);
    const quint32 seed = out.seed();
    out.commit();
    printWritten(invocation, outPath, size, &seed);
    return 0;
}

int runDecrypt(const Invocation &invocation)
{
    const QString inPath = fileArgument(invocation, 0, QStringLiteral("IN"));
    const QString outPath = fileArgument(invocation, 1, QStringLiteral("OUT"));
    SignalCleanup cleanup;
    const NamedFile named(inPath);
    const Header header = readHeader(inPath, named);
    ko::FileEncrypt in(named.opened.path());
    if (!openEnciphered(in, header))
        notEnciphered(inPath,
            QStringLiteral("version %1 (minimum version %2, seed %3) is not one this library reads")
                .arg(int(header.fields.version()))
                .arg(int(header.fields.minimumVersion()))
                .arg(hex32(header.fields.seed())));
    Destination out(outPath, false, cleanup);
    Progress progress(
        QStringLiteral("decrypt"), in.size(), Progress::Bytes, in.size() > kProgressThreshold);
    const qint64 size = copy(in, inPath, out.device(), outPath, progress);
    in.close();
    out.commit();
    printWritten(invocation, outPath, size, nullptr);
    return 0;
}

int runInspect(const Invocation &invocation)
{
    inspectFile(fileArgument(invocation, 0, QStringLiteral("FILE"))).print(invocation.format);
    return 0;
}

} // namespace

Report inspectFile(const QString &path)
{
    const NamedFile named(path);
    const Header header = readHeader(path, named);
    ko::FileEncrypt file(named.opened.path());
    const bool readable = openEnciphered(file, header);
    file.close();

    Report report(Report::Properties);
    report.set(QStringLiteral("file"), path);
    report.set(QStringLiteral("version"), int(header.fields.version()));
    report.set(QStringLiteral("minimumVersion"), int(header.fields.minimumVersion()));
    report.set(QStringLiteral("reserved"),
        QStringLiteral("0x%1").arg(header.fields.reserved(), 4, 16, QLatin1Char('0')));
    report.set(QStringLiteral("seed"), hex32(header.fields.seed()));
    report.set(QStringLiteral("size"), double(header.fileSize - header.fields.length()));
    report.set(QStringLiteral("readable"), readable);
    return report;
}

const Command kEncryptCommand = { "encrypt", "IN OUT",
    "Writes IN as an enciphered file OUT (an 8-byte plain header, then the enciphered bytes; this "
    "hides data from casual reading and is not cryptography). A file OUT is replaced only when "
    "complete; a FIFO or device is written in place.",
    2, 2, nullptr, runEncrypt, "coreqt encrypt notes.txt notes.enc" };

const Command kDecryptCommand = { "decrypt", "IN OUT",
    "Writes the contents of the enciphered file IN to OUT (a file is replaced only when complete, "
    "a FIFO or device written in place); refuses a file this library cannot read.",
    2, 2, nullptr, runDecrypt, "coreqt decrypt notes.enc notes.txt" };

const Command kInspectCommand = { "inspect", "FILE",
    "Shows the header of an enciphered file: version, minimum version, reserved bytes, seed, "
    "logical size and whether this library reads it.",
    1, 1, nullptr, runInspect, "coreqt inspect notes.enc" };

} // namespace tool
