// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "TestFiles.h"

#include <QFile>

#include <algorithm>
#include <random>

QByteArray randomBytes(int length, quint32 seed)
{
    std::mt19937 random(seed);
    QByteArray bytes(length, Qt::Uninitialized);
    std::generate(bytes.begin(), bytes.end(), [&random] { return char(random()); });
    return bytes;
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}
