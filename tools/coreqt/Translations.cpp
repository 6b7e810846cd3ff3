#include "Translations.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>
#include <QTranslator>

namespace tool
{

namespace
{

struct LanguageFiles
{
    Language language;
    const char* code;
    const char* library;
    const char* qt;
};

const LanguageFiles kLanguages[] = {
    { Language::English, "en", nullptr, nullptr },
    { Language::German, "de", ":/translations/CoreQt_de_DE.qm", ":/translations/qt_de.qm" },
    { Language::French, "fr", ":/translations/CoreQt_fr_FR.qm", ":/translations/qt_fr.qm" },
};

const LanguageFiles& filesOf(Language language)
{
    for (const LanguageFiles& files : kLanguages) {
        if (files.language == language)
            return files;
    }
    return kLanguages[0];
}

std::unique_ptr<QTranslator> load(const char* path)
{
    std::unique_ptr<QTranslator> translator(new QTranslator);
    if (!translator->load(QString::fromLatin1(path))
        || !QCoreApplication::installTranslator(translator.get()))
        return nullptr;
    return translator;
}

} // namespace

bool parseLanguage(const QString& name, Language* language)
{
    for (const LanguageFiles& files : kLanguages) {
        if (name == QLatin1String(files.code)) {
            *language = files.language;
            return true;
        }
    }
    return false;
}

Language systemLanguage()
{
    // uiLanguages() follows LANGUAGE, LC_ALL, LC_MESSAGES and LANG, as message catalogues do.
    const QStringList preferred = QLocale::system().uiLanguages();
    Language language = Language::English;
    if (!preferred.isEmpty())
        parseLanguage(preferred.first().left(2).toLower(), &language);
    return language;
}

QString languageCode(Language language)
{
    return QString::fromLatin1(filesOf(language).code);
}

Translations::Translations()
    : mLanguage(Language::English)
{ }

Translations::~Translations()
{
    remove();
}

bool Translations::install(Language language)
{
    remove();
    const LanguageFiles& files = filesOf(language);
    if (files.library) {
        mLibrary = load(files.library);
        mQt = load(files.qt);
        if (!mLibrary || !mQt) {
            remove();
            return false;
        }
    }
    mLanguage = language;
    return true;
}

void Translations::remove()
{
    for (std::unique_ptr<QTranslator>* translator : { &mLibrary, &mQt }) {
        if (*translator)
            QCoreApplication::removeTranslator(translator->get());
        translator->reset();
    }
    mLanguage = Language::English;
}

} // namespace tool
