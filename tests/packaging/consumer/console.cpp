// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// A program built against an installed CoreQt (or CoreQt6) that opens the live console and reads it
// back.
#include COREQT_UMBRELLA
#include "console/Console.h"
#include "console/ConsoleClient.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <iostream>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    ko::Log::instance().setLogLevel(ko::Log::Warning);
    ko::komQtThreadPool pool(QStringLiteral("Consumer"), 1);
    QTemporaryDir dir;
    if (!ko::PoolRegistry::add(&pool)
        || !ko::Console::listen(dir.filePath(QStringLiteral("console"))))
        return 1;
    const ko::ConsoleClient::Reply reply = ko::ConsoleClient::fetch(ko::Console::serverPath());
    ko::Console::close();
    if (reply.error != ko::ConsoleClient::NoError
        || reply.document.jobPools.value(0).name != pool.objectName())
        return 1;
    std::cout << "console consumer ok " << reply.document.version << std::endl;
    return 0;
}
