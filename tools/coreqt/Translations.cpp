// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "Translations.h"

#include <QCoreApplication>
#include <QStringList>
#include <QTranslator>

namespace tool
{

namespace
{

const QString kResources = QStringLiteral(":/translations");

} // namespace

bool parseLanguage(const QString &code, QLocale *language)
{
    if (!QStringList({ QStringLiteral("de"), QStringLiteral("fr"), QStringLiteral("en") })
             .contains(code))
        return false;
    *language = QLocale(code);
    return true;
}

QLocale systemLanguage()
{
    return QLocale(QLocale::system().uiLanguages().value(0));
}

Translations::Translations()
    : mLanguage(QLocale::English)
{ }

Translations::~Translations()
{
    remove();
}

bool Translations::install(const QLocale &locale)
{
    remove();
    // The embedded catalogues are named after a language's main country (CoreQt_de_DE.qm,
    // qt_de.qm), which QLocale(language) has: German from Austria finds them too.
    const QLocale language(locale.language());
    std::unique_ptr<QTranslator> library(new QTranslator);
    std::unique_ptr<QTranslator> qt(new QTranslator);
    const bool found
        = library->load(language, QStringLiteral("CoreQt"), QStringLiteral("_"), kResources);
    if (found != qt->load(language, QStringLiteral("qt"), QStringLiteral("_"), kResources))
        return false;
    if (found) {
        mLibrary = std::move(library);
        mQt = std::move(qt);
        QCoreApplication::installTranslator(mLibrary.get());
        QCoreApplication::installTranslator(mQt.get());
    }
    mLanguage = language;
    return true;
}

void Translations::remove()
{
    for (std::unique_ptr<QTranslator> *translator : { &mLibrary, &mQt }) {
        if (*translator)
            QCoreApplication::removeTranslator(translator->get());
        translator->reset();
    }
    mLanguage = QLocale(QLocale::English);
}

} // namespace tool
