#include "platform/kom/komString.h"

komString::komString(const char *text)
    : mText(text ? text : "")
{ }

komString::komString(const std::string &text)
    : mText(text.c_str())
{ }
