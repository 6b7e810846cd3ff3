// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// A program built against an installed CoreQt (or CoreQt6): it includes the umbrella header,
// touches each of the three libraries and a function whose signature differs between Qt 5 and Qt 6.
#include COREQT_UMBRELLA

#include <QRegExp>
#include <QString>

#include <iostream>

int main()
{
    kom::smart<komObject> object(new komObject);
    ko::RuntimeError cause("cause");
    ko::Exception error("error", &cause);
    const QString version = QString::fromLatin1(ko::coreQtVersion());
    const QStringList parts = ko::StringUtils::splitStringList(
        QStringLiteral("a,,b"), QRegExp(QStringLiteral(",")), ko::SkipEmptyParts);
    if (!object || !error.cause() || version != QLatin1String("1.0.0") || parts.size() != 2)
        return 1;
    ko::Log::instance().setLogLevel(ko::Log::Message);
    std::cout << "consumer ok " << version.toStdString() << " Qt " << qVersion() << std::endl;
    return 0;
}
