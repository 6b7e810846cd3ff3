#include "FileCommands.h"

#include "Arguments.h"
#include "Output.h"

#include "exceptions/FileException.h"
#include "io/FileEncrypt.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QtEndian>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tool
{

namespace
{

// The plain header in front of the enciphered bytes: version, minimum version, two reserved
// bytes, the cipher seed (little-endian).
constexpr qint64 kHeaderSize = 8;
// Files above this size show a progress line on a terminal.
constexpr qint64 kProgressThreshold = qint64(16) << 20;
constexpr qint64 kChunkSize = qint64(1) << 20;

struct Header
{
    qint64 fileSize = 0;
    int version = 0;
    int minimumVersion = 0;
    quint16 reserved = 0;
    quint32 seed = 0;
};

[[noreturn]] void fail(const QFileDevice& device, const QString& path)
{
    throw ko::FileException(QFileInfo(path), device.error(), device.errorString());
}

[[noreturn]] void notEnciphered(const QString& path, const QString& reason)
{
    throw ko::FileException(
        QFileInfo(path), QFile::ReadError, QStringLiteral("not an enciphered file: ") + reason);
}

Header readHeader(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        fail(file, path);
    Header header;
    header.fileSize = file.size();
    const QByteArray bytes = file.read(kHeaderSize);
    if (bytes.size() < kHeaderSize) {
        if (file.error() != QFile::NoError)
            fail(file, path);
        notEnciphered(path, QStringLiteral("%1 bytes, shorter than the 8-byte header").arg(bytes.size()));
    }
    header.version = static_cast<signed char>(bytes.at(0));
    header.minimumVersion = static_cast<signed char>(bytes.at(1));
    header.reserved = qFromLittleEndian<quint16>(bytes.constData() + 2);
    header.seed = qFromLittleEndian<quint32>(bytes.constData() + 4);
    return header;
}

// Opens @p file for reading when this library reads it: its header's version check passes and
// it has a seed. A zero seed never comes from the library, whose cipher would pick a random key
// for it, so such a file is refused rather than deciphered into noise.
bool openEnciphered(ko::FileEncrypt& file, const Header& header)
{
    return header.seed != 0 && file.open(QIODevice::ReadOnly);
}

void copy(QIODevice& in, const QString& inPath, QIODevice& out, const QString& outPath, Progress& progress)
{
    QByteArray buffer(int(kChunkSize), Qt::Uninitialized);
    qint64 done = 0;
    for (;;) {
        const qint64 n = in.read(buffer.data(), kChunkSize);
        if (n < 0)
            throw ko::FileException(QFileInfo(inPath), QFile::ReadError, in.errorString());
        if (n == 0)
            break;
        if (out.write(buffer.constData(), n) != n)
            throw ko::FileException(QFileInfo(outPath), QFile::WriteError, out.errorString());
        done += n;
        progress.update(done);
    }
    progress.finish();
}

/**
 * An enciphered file written beside its destination under a temporary name and renamed over it
 * only by commit(), so that a failed run leaves an existing destination as it was.
 */
class EncipheredOutput
{
public:
    explicit EncipheredOutput(const QString& path)
        : mPath(path)
    {
        const QFileInfo info(path);
        for (int attempt = 0; attempt < 100; ++attempt) {
            mFile.setFileName(info.absoluteDir().filePath(
                QStringLiteral(".%1.%2.coreqt")
                    .arg(info.fileName())
                    .arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'))));
            if (mFile.open(QIODevice::WriteOnly | QIODevice::NewOnly))
                return;
            if (mFile.exists())
                continue;
            break;
        }
        throw ko::FileException(QFileInfo(path), QFile::OpenError, mFile.errorString());
    }

    ~EncipheredOutput()
    {
        if (!mCommitted) {
            mFile.close();
            mFile.remove();
        }
    }

    EncipheredOutput(const EncipheredOutput&) = delete;
    EncipheredOutput& operator=(const EncipheredOutput&) = delete;

    ko::FileEncrypt& device() { return mFile; }

    void commit()
    {
        mFile.close();
        if (mFile.error() != QFile::NoError)
            fail(mFile, mPath);
        // Like QSaveFile: a replaced file keeps its permissions, a new one gets the defaults.
        if (QFile::exists(mPath))
            mFile.setPermissions(QFile::permissions(mPath));
        if (std::rename(QFile::encodeName(mFile.fileName()).constData(), QFile::encodeName(mPath).constData())
            != 0)
            throw ko::FileException(
                QFileInfo(mPath), QFile::RenameError, QString::fromLocal8Bit(std::strerror(errno)));
        mCommitted = true;
    }

private:
    QString mPath;
    ko::FileEncrypt mFile;
    bool mCommitted = false;
};

int runEncrypt(const Invocation& invocation)
{
    const QString inPath = invocation.arguments.at(0);
    const QString outPath = invocation.arguments.at(1);
    QFile in(inPath);
    if (!in.open(QIODevice::ReadOnly))
        fail(in, inPath);
    EncipheredOutput out(outPath);
    Progress progress(QStringLiteral("encrypt"), in.size(), Progress::Bytes, in.size() > kProgressThreshold);
    copy(in, inPath, out.device(), outPath, progress);
    const quint32 seed = out.device().seed();
    const qint64 size = out.device().size();
    out.commit();

    Report report(Report::Properties);
    report.set(QStringLiteral("file"), outPath);
    report.set(QStringLiteral("size"), double(size));
    report.set(QStringLiteral("seed"), hex32(seed));
    report.print(invocation.format);
    return 0;
}

int runDecrypt(const Invocation& invocation)
{
    const QString inPath = invocation.arguments.at(0);
    const QString outPath = invocation.arguments.at(1);
    const Header header = readHeader(inPath);
    ko::FileEncrypt in(inPath);
    if (!openEnciphered(in, header))
        notEnciphered(inPath,
            QStringLiteral("version %1 (minimum version %2, seed %3) is not one this library reads")
                .arg(header.version)
                .arg(header.minimumVersion)
                .arg(hex32(header.seed)));
    QSaveFile out(outPath);
    if (!out.open(QIODevice::WriteOnly))
        fail(out, outPath);
    Progress progress(QStringLiteral("decrypt"), in.size(), Progress::Bytes, in.size() > kProgressThreshold);
    copy(in, inPath, out, outPath, progress);
    const qint64 size = in.size();
    in.close();
    if (!out.commit())
        fail(out, outPath);

    Report report(Report::Properties);
    report.set(QStringLiteral("file"), outPath);
    report.set(QStringLiteral("size"), double(size));
    report.print(invocation.format);
    return 0;
}

int runInspect(const Invocation& invocation)
{
    inspectFile(invocation.arguments.first()).print(invocation.format);
    return 0;
}

} // namespace

Report inspectFile(const QString& path)
{
    const Header header = readHeader(path);
    ko::FileEncrypt file(path);
    const bool readable = openEnciphered(file, header);
    file.close();

    Report report(Report::Properties);
    report.set(QStringLiteral("file"), path);
    report.set(QStringLiteral("version"), header.version);
    report.set(QStringLiteral("minimumVersion"), header.minimumVersion);
    report.set(
        QStringLiteral("reserved"), QStringLiteral("0x%1").arg(header.reserved, 4, 16, QLatin1Char('0')));
    report.set(QStringLiteral("seed"), hex32(header.seed));
    report.set(QStringLiteral("size"), double(header.fileSize - kHeaderSize));
    report.set(QStringLiteral("readable"), readable);
    return report;
}

const Command kEncryptCommand = { "encrypt", "IN OUT",
    "Writes IN as an enciphered file OUT (an 8-byte plain header, then the enciphered bytes; this hides "
    "data from casual reading and is not cryptography). OUT is replaced only when complete.",
    2, 2, nullptr, runEncrypt };

const Command kDecryptCommand = { "decrypt", "IN OUT",
    "Writes the contents of the enciphered file IN to OUT, which is replaced only when complete; refuses a "
    "file this library cannot read.",
    2, 2, nullptr, runDecrypt };

const Command kInspectCommand = { "inspect", "FILE",
    "Shows the header of an enciphered file: version, minimum version, reserved bytes, seed, logical size "
    "and whether this library reads it.",
    1, 1, nullptr, runInspect };

} // namespace tool
