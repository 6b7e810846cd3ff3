// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_TRANSLATIONS_H
#define COREQT_TOOL_TRANSLATIONS_H

#include <QLocale>
#include <QString>

#include <memory>

class QTranslator;

namespace tool
{

/** The language of a --lang value ("de", "fr", "en"); false for any other value. */
bool parseLanguage(const QString &code, QLocale *language);
/** The language the user's settings ask for first (LANGUAGE, LC_ALL, LC_MESSAGES, LANG). */
QLocale systemLanguage();

/**
 * The translators of one language, taken from the library's embedded resources: the library's
 * catalogue and Qt's own. Installing another language replaces them; a language without embedded
 * catalogues (English, the source language, among others) installs none.
 */
class Translations
{
public:
    Translations();
    /** Removes the installed translators. */
    ~Translations();

    Translations(const Translations &) = delete;
    Translations &operator=(const Translations &) = delete;

    /** Installs the catalogues of @p locale's language in place of the current ones; false when one
     * loads without the other. */
    bool install(const QLocale &locale);
    /** The installed language. */
    QLocale language() const { return mLanguage; }

private:
    void remove();

    QLocale mLanguage;
    std::unique_ptr<QTranslator> mLibrary;
    std::unique_ptr<QTranslator> mQt;
};

} // namespace tool

#endif // COREQT_TOOL_TRANSLATIONS_H
