// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TESTS_TESTFILES_H
#define COREQT_TESTS_TESTFILES_H

#include <QByteArray>
#include <QString>

/** @p length bytes of a fixed pseudo-random sequence chosen by @p seed. */
QByteArray randomBytes(int length, quint32 seed);
/** The whole content of the file at @p path, or "<unreadable>" when it cannot be opened. */
QByteArray readFile(const QString &path);
/** Writes @p bytes as the whole content of the file at @p path; false when that fails. */
bool writeFile(const QString &path, const QByteArray &bytes);

#endif // COREQT_TESTS_TESTFILES_H
