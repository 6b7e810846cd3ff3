// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "platform/kom/komString.h"

komString::komString(const char *text)
    : mText(text ? text : "")
{ }

komString::komString(const std::string &text)
    : mText(text.c_str())
{ }
