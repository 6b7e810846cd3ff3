// coreqt: the library's knowledge on the command line (trigger masks, vocabulary in three
// languages, frame times, enciphered files) and a short tour of the library at work.
#include "BenchCommand.h"
#include "Command.h"
#include "DemoCommand.h"
#include "EventCommands.h"
#include "FileCommands.h"
#include "Output.h"
#include "TimeCommands.h"
#include "Translations.h"
#include "VocabularyCommands.h"

#include "Version.h"
#include "exceptions/ExceptionQt.h"
#include "log/LogQt.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <exception>

namespace tool
{

namespace
{

const Command* const kCommands[] = { &kDemoCommand, &kEventsCommand, &kEventCommand, &kVocabCommand,
    &kFpsCommand, &kTimeCommand, &kEncryptCommand, &kDecryptCommand, &kInspectCommand, &kBenchCommand };

// Every failure ends with one line on standard error and this status.
constexpr int kFailure = 2;

const Command* findCommand(const QString& name)
{
    for (const Command* command : kCommands) {
        if (name == QLatin1String(command->name))
            return command;
    }
    return nullptr;
}

// The command with its arguments, as help and error messages show it: "events MASK [MASK MASK]".
QString usage(const Command& command)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(command.name), QLatin1String(command.syntax)).trimmed();
}

QString overview()
{
    QString text = QStringLiteral(
        "The CoreQt library's camera vocabulary, frame times and enciphered files on the command line.\n"
        "Without a command, runs the tour (demo).\n\nCommands:");
    for (const Command* command : kCommands)
        text += QStringLiteral("\n  ") + usage(*command);
    return text + QStringLiteral("\n\nSee coreqt COMMAND --help for a command's options.");
}

int fail(const QString& command, const QString& message)
{
    printErrorLine(QStringLiteral("coreqt: ")
        + (command.isEmpty() ? QString() : command + QStringLiteral(": ")) + message);
    return kFailure;
}

int run(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption lang(QStringLiteral("lang"),
        QStringLiteral("Language of display texts: de, fr or en (default: from the locale)."),
        QStringLiteral("de|fr|en"));
    const QCommandLineOption format(QStringLiteral("format"),
        QStringLiteral("Output of the lookup commands: text (tab-separated lines) or json."),
        QStringLiteral("text|json"), QStringLiteral("text"));
    parser.addOption(lang);
    parser.addOption(format);
    parser.addPositionalArgument(
        QStringLiteral("command"), QStringLiteral("The command to run."), QStringLiteral("[command]"));

    // First pass: find the command, whose options are not known yet; its errors do not count.
    parser.parse(arguments);
    const QStringList positional = parser.positionalArguments();
    const QString name = positional.value(0);
    const Command* command = positional.isEmpty() ? &kDemoCommand : findCommand(name);
    if (command && !positional.isEmpty()) {
        parser.clearPositionalArguments();
        parser.addPositionalArgument(name, QString::fromLatin1(command->description), usage(*command));
        if (command->options)
            parser.addOptions(command->options());
    }
    parser.setApplicationDescription(positional.isEmpty() || !command ? overview() : QString());
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(help)) {
        printLine(parser.helpText().trimmed());
        return 0;
    }
    if (parser.isSet(version)) {
        printLine(
            QCoreApplication::applicationName() + QLatin1Char(' ') + QCoreApplication::applicationVersion());
        return 0;
    }
    if (!command)
        return fail(QString(), QStringLiteral("'%1' is not a command; see coreqt --help").arg(name));
    if (!parsed)
        return fail(name, parser.errorText());

    const QString formatName = parser.value(format);
    if (formatName != QLatin1String("text") && formatName != QLatin1String("json"))
        return fail(name, QStringLiteral("--format '%1': expected text or json").arg(formatName));
    Language language = systemLanguage();
    if (parser.isSet(lang) && !parseLanguage(parser.value(lang), &language))
        return fail(name, QStringLiteral("--lang '%1': expected de, fr or en").arg(parser.value(lang)));
    Translations translations;
    if (!translations.install(language))
        return fail(name,
            QStringLiteral("--lang %1: the embedded translations do not load").arg(languageCode(language)));

    Invocation invocation { name, parser.positionalArguments().mid(1), &parser,
        formatName == QLatin1String("json") ? Format::Json : Format::Text, &translations };
    const int count = invocation.arguments.size();
    if (count < command->minArguments || (command->maxArguments >= 0 && count > command->maxArguments))
        return fail(name,
            QStringLiteral("expected %1, got %2 argument(s); see coreqt %3 --help")
                .arg(usage(*command))
                .arg(count)
                .arg(name));
    // The library's own progress messages would mix with the results on standard output; only
    // the tour shows them.
    if (command != &kDemoCommand)
        ko::LogQt::s_instance.setWarningLogLevel();
    try {
        return command->run(invocation);
    } catch (const ko::ExceptionQt& e) {
        return fail(name, e.message());
    } catch (const std::exception& e) {
        return fail(name, QString::fromLocal8Bit(e.what()));
    }
}

} // namespace

} // namespace tool

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("coreqt"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(ko::coreQtVersion()));
    return tool::run(QCoreApplication::arguments());
}
