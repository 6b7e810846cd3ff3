// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KOM_STRING_H
#define KOM_STRING_H

#include "platform/kom/kom_export.h"

#include <string>

/** The middleware's 8-bit string; it holds a zero-terminated copy of its text. */
class KOM_EXPORT komString
{
public:
    /** Copies the zero-terminated @p text (null makes an empty string). */
    komString(const char *text = "");
    /** Copies @p text up to its first zero byte. */
    explicit komString(const std::string &text);

    /** The zero-terminated text, valid while the string lives and is not changed. */
    const char *text() const { return mText.c_str(); }
    /** Number of bytes before the terminating zero. */
    int length() const { return int(mText.size()); }
    /** True for an empty string. */
    bool isEmpty() const { return mText.empty(); }

    /** Byte-wise equality. */
    bool operator==(const komString &other) const { return mText == other.mText; }
    /** Byte-wise inequality. */
    bool operator!=(const komString &other) const { return mText != other.mText; }
    /** Byte-wise order. */
    bool operator<(const komString &other) const { return mText < other.mText; }

private:
    std::string mText;
};

#endif // KOM_STRING_H
