// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "kom/komQtThreadSpawner.h"

#include "platform/kom/komStatusMessage.h"
#include "platform/kom/komTerminal.h"

komQtThreadSpawner::komQtThreadSpawner()
    : QThread(nullptr)
    , mSpawned(false)
    , mWaitedUpon(false)
{ }

komQtThreadSpawner::~komQtThreadSpawner()
{
    if (!mWaitedUpon)
        waitUntilThreadHasTerminated();
    mRunnable.reset();
}

void komQtThreadSpawner::setRunnable(kom::smart<komRunnableInterface> runnable)
{
    if (mRunnable)
        kom::terminal("runnable has already been set!", this);
    mRunnable = runnable;
}

void komQtThreadSpawner::spawnThread()
{
    if (!mRunnable)
        kom::terminal("no runnable installed!", this);
    if (mWaitedUpon)
        kom::terminal("thread has already been waited upon!", this);
    if (mSpawned)
        kom::terminal("thread has already been spawned!", this);
    start(QThread::InheritPriority);
    mSpawned = true;
}

void komQtThreadSpawner::waitUntilThreadHasTerminated()
{
    if (mWaitedUpon)
        kom::terminal("thread has already been waited upon!", this);
    if (mSpawned) {
        kom::sendStatusMessage(kom::StatusTrace, "waiting for thread to terminate...", this);
        wait();
        kom::sendStatusMessage(kom::StatusTrace, "thread has terminated", this);
    }
    mWaitedUpon = true;
}

void komQtThreadSpawner::run()
{
    kom::sendStatusMessage(kom::StatusTrace, "thread spawned, executing runnable...", this);
    // Spawning without a runnable is reported by spawnThread(); if that report returns, the
    // thread runs nothing.
    if (mRunnable)
        mRunnable->run();
    kom::sendStatusMessage(kom::StatusTrace, "thread returned from runnable, terminating...", this);
}
