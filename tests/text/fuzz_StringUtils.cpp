// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// libFuzzer target: arbitrary bytes given to StringUtils::toVariant, as the Base64 text of a
// serialised value or as plain text, for a target type the input chooses; every value it returns
// is written back with toString and read again. Any fault shows as a crash or a sanitizer report.
#include "text/StringUtils.h"

#include <QtGlobal>

#include <cstddef>
#include <cstdint>

namespace
{

const QVariant::Type kTypes[] = { QVariant::Invalid, QVariant::Int, QVariant::Double,
    QVariant::Date, QVariant::DateTime, QVariant::Map, QVariant::List, QVariant::StringList,
    QVariant::ByteArray, QVariant::Point };

void silence(QtMsgType, const QMessageLogContext &, const QString &) { }

} // namespace

// A length that asks for more memory than there is fails as it would without the sanitizer.
extern "C" Q_DECL_EXPORT const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(silence); // QVariant warns about every unknown type it reads
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size == 0)
        return 0;
    const QVariant::Type type = kTypes[data[0] % (sizeof kTypes / sizeof kTypes[0])];
    const QByteArray payload(reinterpret_cast<const char *>(data + 1), int(size - 1));
    const QString text = QString::fromLatin1(data[0] & 0x80 ? payload : payload.toBase64());
    const QVariant value = ko::StringUtils().toVariant(text, type);
    if (value.isValid())
        ko::StringUtils().toVariant(ko::StringUtils().toString(value), value.type());
    return 0;
}
