// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// libFuzzer target: arbitrary bytes opened as an enciphered file, then read, peeked, seeked,
// written and reopened in an order the input chooses. Reads right after a seek on a read-only
// device are checked against the raw bytes; any other fault shows as a crash or a sanitizer report.
#include "io/CipherSteps_p.h"
#include "io/FileEncrypt.h"
#include "platform/core/Enigma.h"

#include <QFile>
#include <QTemporaryDir>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace
{

struct Operation
{
    uint8_t kind;
    int32_t argument;
};

#define CHECK(condition)                                                                           \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "check failed at line %d: %s\n", __LINE__, #condition);           \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

void silence(QtMsgType, const QMessageLogContext &, const QString &) { }

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(silence); // QIODevice warns about every refused seek
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static QTemporaryDir dir;
    static const QString path = dir.filePath(QStringLiteral("input.bin"));

    FuzzedDataProvider input(data, size);
    const uint8_t flags = input.ConsumeIntegral<uint8_t>();
    std::vector<Operation> operations(input.ConsumeIntegralInRange<size_t>(0, 24));
    for (Operation &operation : operations)
        operation = { input.ConsumeIntegral<uint8_t>(), input.ConsumeIntegral<int32_t>() };
    const std::vector<char> content = input.ConsumeRemainingBytes<char>();
    const QByteArray raw(content.data(), int(content.size()));
    {
        QFile file(path);
        CHECK(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        CHECK(file.write(raw) == raw.size());
    }

    QIODevice::OpenMode mode = (flags & 1) ? QIODevice::ReadWrite : QIODevice::ReadOnly;
    if (flags & 2)
        mode |= QIODevice::Unbuffered;
    if (flags & 4)
        mode |= QIODevice::Append;
    const bool writable = mode & QIODevice::WriteOnly;

    ko::FileEncrypt file(path);
    if (!file.open(mode))
        return 0;
    qint64 seekedTo = -1;
    for (const Operation &operation : operations) {
        const qint64 argument = operation.argument;
        const qint64 justSeeked = seekedTo;
        seekedTo = -1;
        switch (operation.kind % 8) {
        case 0: {
            const qint64 wanted = (argument & 0xffff) + 1;
            const QByteArray bytes = file.read(wanted);
            CHECK(bytes.size() <= wanted);
            if (justSeeked >= 0 && !writable && file.seed() != 0) {
                // Raw bytes from the seeked offset, each deciphered with the state that many steps
                // on.
                const ko::Enigma engine { ko::Random(file.seed()) };
                for (int i = 0; i < bytes.size(); ++i) {
                    unsigned state = ko::cipher::advance(file.seed(), quint64(justSeeked + i));
                    unsigned char byte = static_cast<unsigned char>(raw[int(justSeeked + i)]);
                    engine.decode(&byte, 1, &byte, 1, state);
                    CHECK(bytes[i] == char(byte));
                }
            }
            break;
        }
        case 1: {
            // Mostly into the data or just past it; far (and negative) only on read-only devices,
            // so that a write cannot grow a huge sparse file.
            const qint64 target = (argument & 1) && !writable ? argument * 4099
                                                              : (argument >> 1) % (raw.size() + 64);
            const qint64 before = file.pos();
            if (file.seek(target)) {
                CHECK(file.pos() == target);
                if (target != before) // a seek to the current position changes nothing
                    seekedTo = target;
            }
            break;
        }
        case 2:
            CHECK(file.readLine((argument & 0xff) + 2).size() <= (argument & 0xff) + 1);
            break;
        case 3:
            if (writable)
                file.write(QByteArray(int(argument & 0xfff), char(argument >> 12)));
            break;
        case 4:
            CHECK(file.size() >= 0);
            CHECK(file.pos() >= 0);
            (void)file.atEnd();
            break;
        case 5:
            (void)file.readAll();
            break;
        case 6:
            file.close();
            if (!file.open(argument & 1 ? QIODevice::ReadOnly : mode))
                return 0;
            break;
        case 7: {
            // What peek() shows is what read() then gives, from the same position.
            const qint64 before = file.pos();
            const QByteArray peeked = file.peek((argument & 0xffff) + 1);
            CHECK(file.pos() == before);
            CHECK(file.read(peeked.size()) == peeked);
            break;
        }
        }
    }
    file.close();
    return 0;
}
