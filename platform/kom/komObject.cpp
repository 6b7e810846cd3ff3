#include "platform/kom/komObject.h"

komInterface::komInterface() = default;
komInterface::~komInterface() = default;

komObject::komObject() = default;
komObject::~komObject() = default;
