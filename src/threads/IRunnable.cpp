// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "threads/IRunnable.h"

namespace ko
{

IRunnable::IRunnable()
    : mAbortRequested(false)
{ }

IRunnable::IRunnable(const IRunnable &other)
    : IInterface(other)
    , mAbortRequested(other.mAbortRequested.load())
{ }

IRunnable &IRunnable::operator=(const IRunnable &other)
{
    mAbortRequested.store(other.mAbortRequested.load());
    return *this;
}

IRunnable::~IRunnable() = default;

} // namespace ko
