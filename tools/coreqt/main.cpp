// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
// coreqt: the library's knowledge on the command line (trigger masks, vocabulary in three
// languages, frame times, enciphered files) and a short tour of the library at work.
#include "Arguments.h"
#include "BenchCommand.h"
#include "Command.h"
#include "DemoCommand.h"
#include "EventCommands.h"
#include "FileCommands.h"
#include "FileNames.h"
#include "Output.h"
#include "TimeCommands.h"
#include "TopCommand.h"
#include "Translations.h"
#include "VocabularyCommands.h"

#include "Version.h"
#include "exceptions/ExceptionQt.h"
#include "log/LogQt.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <exception>
#include <iterator>

namespace tool
{

namespace
{

const Command *const kCommands[]
    = { &kDemoCommand, &kEventsCommand, &kEventCommand, &kVocabCommand, &kFpsCommand, &kTimeCommand,
          &kEncryptCommand, &kDecryptCommand, &kInspectCommand, &kBenchCommand, &kTopCommand };

// Every failure ends with one line on standard error and this status.
constexpr int kFailure = 2;

const Command *findCommand(const QString &name)
{
    const auto command = std::find_if(std::begin(kCommands), std::end(kCommands),
        [&name](const Command *c) { return name == QLatin1String(c->name); });
    return command == std::end(kCommands) ? nullptr : *command;
}

// The command with its arguments, as help and error messages show it: "events MASK [MASK MASK]".
QString usage(const Command &command)
{
    return QStringLiteral("%1 %2")
        .arg(QLatin1String(command.name), QLatin1String(command.syntax))
        .trimmed();
}

QString overview()
{
    QString text = QStringLiteral("The CoreQt library's camera vocabulary, frame times and "
                                  "enciphered files on the command line.\n"
                                  "Without a command, runs the tour (demo).\n\nCommands:");
    for (const Command *command : kCommands)
        text += QStringLiteral("\n  ") + usage(*command);
    return text
        + QStringLiteral(
            "\n\nSee coreqt COMMAND --help for a command's options.\n\n"
            "Exit status: 0 on success; 2 on any error, with one line on standard error and "
            "nothing on standard output; 128+N when signal N ends encrypt or decrypt, which "
            "leave nothing partial behind, or top's live view, which Ctrl-C ends with 0.");
}

int fail(const QString &command, const QString &message)
{
    printErrorLine(QStringLiteral("coreqt: ")
        + (command.isEmpty() ? QString() : command + QStringLiteral(": ")) + message);
    return kFailure;
}

// The options every command takes.
struct GlobalOptions
{
    QCommandLineOption help;
    QCommandLineOption version;
    QCommandLineOption lang { QStringLiteral("lang"),
        QStringLiteral("Language of display texts: de, fr or en (default: from the locale)."),
        QStringLiteral("de|fr|en") };
    QCommandLineOption format { QStringLiteral("format"),
        QStringLiteral("Output of the lookup commands: text (tab-separated lines) or json."),
        QStringLiteral("text|json"), QStringLiteral("text") };

    explicit GlobalOptions(QCommandLineParser &parser)
        : help(parser.addHelpOption())
        , version(parser.addVersionOption())
    {
        parser.addOption(lang);
        parser.addOption(format);
    }
};

// The names of the options that take a value, written "--name VALUE".
QStringList valueOptionNames(const GlobalOptions &global, const QList<QCommandLineOption> &own)
{
    QStringList names;
    for (const QCommandLineOption &option :
        QList<QCommandLineOption> { global.lang, global.format } + own) {
        if (!option.valueName().isEmpty())
            names += option.names();
    }
    return names;
}

// QCommandLineParser takes every argument that starts with '-' for an option, a negative number
// too. Options (with their values) are kept in front and every other argument is moved behind
// "--", in order, so that "fps -1" is the number -1; everything else parses as before.
QStringList withArgumentsLast(const QStringList &arguments, const QStringList &valueOptions)
{
    QStringList options { arguments.value(0) };
    QStringList positional;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == QLatin1String("--")) {
            positional += arguments.mid(i + 1);
            break;
        }
        if (!argument.startsWith(QLatin1Char('-')) || argument == QLatin1String("-")
            || isNegativeNumber(argument)) {
            positional << argument;
            continue;
        }
        options << argument;
        if (argument.startsWith(QLatin1String("--")) && !argument.contains(QLatin1Char('='))
            && valueOptions.contains(argument.mid(2))) {
            // Without its value, the line stays as it is, for the parser to say so.
            if (i + 1 == arguments.size())
                return arguments;
            options << arguments.at(++i);
        }
    }
    return options << QStringLiteral("--") << positional;
}

// Parse: finds the command (the first argument that is not an option; none: the tour) and parses
// the line again with its options. Returns the command, or null for an unknown name.
const Command *parse(QCommandLineParser &parser, const GlobalOptions &global,
    const QStringList &arguments, QString *name, bool *parsed)
{
    // First pass: the command's options are not known yet; its errors do not count.
    parser.parse(withArgumentsLast(arguments, valueOptionNames(global, {})));
    const QStringList positional = parser.positionalArguments();
    *name = positional.value(0);
    const Command *command = positional.isEmpty() ? &kDemoCommand : findCommand(*name);
    QList<QCommandLineOption> own;
    if (command && !positional.isEmpty()) {
        parser.clearPositionalArguments();
        parser.addPositionalArgument(
            *name, QString::fromLatin1(command->description), usage(*command));
        if (command->options)
            own = command->options();
        parser.addOptions(own);
    }
    parser.setApplicationDescription(positional.isEmpty() || !command ? overview() : QString());
    *parsed = parser.parse(withArgumentsLast(arguments, valueOptionNames(global, own)));
    return command;
}

// Validate: checks the global options and the argument count and installs the language; returns
// the exit status of a failure, or 0 with @p invocation filled in.
int validate(const Command &command, const QString &name, const QCommandLineParser &parser,
    const GlobalOptions &global, Translations &translations, Invocation *invocation)
{
    const QString formatName = parser.value(global.format);
    if (formatName != QLatin1String("text") && formatName != QLatin1String("json"))
        return fail(name, QStringLiteral("--format '%1': expected text or json").arg(formatName));
    const Format format = formatName == QLatin1String("json") ? Format::Json : Format::Text;
    if (format == Format::Json && &command == &kDemoCommand)
        return fail(name, QStringLiteral("--format json: the tour prints text only"));
    QLocale language = systemLanguage();
    if (parser.isSet(global.lang) && !parseLanguage(parser.value(global.lang), &language))
        return fail(name,
            QStringLiteral("--lang '%1': expected de, fr or en").arg(parser.value(global.lang)));
    if (!translations.install(language))
        return fail(name,
            QStringLiteral("--lang %1: the embedded translations do not load")
                .arg(language.bcp47Name()));

    *invocation = { name, parser.positionalArguments().mid(1), &parser, format, &translations };
    const int count = invocation->arguments.size();
    if (count < command.minArguments || (command.maxArguments >= 0 && count > command.maxArguments))
        return fail(name,
            QStringLiteral("expected %1, got %2 argument(s); see coreqt %3 --help")
                .arg(usage(command))
                .arg(count)
                .arg(name));
    return 0;
}

// Dispatch: runs the command; a ko::ExceptionQt or std::exception it throws becomes the error line.
int dispatch(const Command &command, const Invocation &invocation)
{
    // The library's own progress messages would mix with the results on standard output; only
    // the tour shows them.
    if (&command != &kDemoCommand)
        ko::LogQt::s_instance.setWarningLogLevel();
    try {
        return command.run(invocation);
    } catch (const ko::ExceptionQt &e) {
        return fail(invocation.name, e.message());
    } catch (const std::exception &e) {
        return fail(invocation.name, QString::fromLocal8Bit(e.what()));
    }
}

int run(const QStringList &arguments)
{
    QCommandLineParser parser;
    const GlobalOptions global(parser);
    QString name;
    bool parsed = false;
    const Command *command = parse(parser, global, arguments, &name, &parsed);
    // An unknown command's options are unknown too: its name is the error then.
    if (command && !parsed)
        return fail(name, parser.errorText());
    if (parser.isSet(global.help) || parser.isSet(QStringLiteral("help-all"))) {
        QString help = parser.helpText().trimmed();
        if (command && command->example && !name.isEmpty())
            help += QStringLiteral("\n\nExample:\n  ") + QLatin1String(command->example);
        printLine(help);
        return 0;
    }
    if (parser.isSet(global.version)) {
        printLine(QCoreApplication::applicationName() + QLatin1Char(' ')
            + QCoreApplication::applicationVersion());
        return 0;
    }
    if (!command)
        return fail(
            QString(), QStringLiteral("'%1' is not a command; see coreqt --help").arg(name));
    Translations translations;
    Invocation invocation;
    if (const int status = validate(*command, name, parser, global, translations, &invocation))
        return status;
    return dispatch(*command, invocation);
}

} // namespace

} // namespace tool

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("coreqt"));
    QCoreApplication::setApplicationVersion(QString::fromLatin1(ko::coreQtVersion()));
    return tool::run(tool::commandLineArguments(argc, argv)); // file names keep their bytes
}
