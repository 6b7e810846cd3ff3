// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/IInterface.h"

namespace ko
{

IInterface::~IInterface() = default;

IInterface *IInterface::getInterface(const std::string &name)
{
    return name == ID() ? this : nullptr;
}

const IInterface *IInterface::getInterface(const std::string &name) const
{
    return const_cast<IInterface *>(this)->getInterface(name);
}

const std::string &IInterface::ID()
{
    static const std::string id("ko::IInterface");
    return id;
}

} // namespace ko
