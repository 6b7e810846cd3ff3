#include "platform/kom/komList.h"

komStringList::komStringList() = default;
komStringList::~komStringList() = default;
