#ifndef COREQT_TOOL_TRANSLATIONS_H
#define COREQT_TOOL_TRANSLATIONS_H

#include <QString>

#include <memory>

class QTranslator;

namespace tool
{

/** The languages the library's embedded catalogues offer, English being the source language. */
enum class Language { English, German, French };

/** The language of a --lang value ("de", "fr", "en"); false for any other value. */
bool parseLanguage(const QString& name, Language* language);
/** The language of the user's locale settings, English when it is neither German nor French. */
Language systemLanguage();
/** The --lang value of @p language. */
QString languageCode(Language language);

/**
 * The translators of one language, taken from the library's embedded resources: the library's
 * catalogue and Qt's own. Installing another language replaces them; English installs none.
 */
class Translations
{
public:
    Translations();
    /** Removes the installed translators. */
    ~Translations();

    Translations(const Translations&) = delete;
    Translations& operator=(const Translations&) = delete;

    /** Installs the catalogues of @p language in place of the current ones; false when one fails to load. */
    bool install(Language language);
    /** The installed language. */
    Language language() const { return mLanguage; }

private:
    void remove();

    Language mLanguage;
    std::unique_ptr<QTranslator> mLibrary;
    std::unique_ptr<QTranslator> mQt;
};

} // namespace tool

#endif // COREQT_TOOL_TRANSLATIONS_H
