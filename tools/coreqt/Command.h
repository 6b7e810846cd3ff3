// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_COMMAND_H
#define COREQT_TOOL_COMMAND_H

#include <QCommandLineOption>
#include <QList>
#include <QStringList>

class QCommandLineParser;

namespace tool
{

class Translations;

/** How the lookup commands write their results: tab-separated lines or one JSON document. */
enum class Format { Text, Json };

/** What a subcommand is given: its own arguments, the parsed options, the output format. */
struct Invocation
{
    /** The subcommand's name, as typed. */
    QString name;
    /** The positional arguments after the subcommand's name. */
    QStringList arguments;
    /** The parser, holding the global options and the subcommand's own. */
    const QCommandLineParser *parser = nullptr;
    /** The output format chosen with --format. */
    Format format = Format::Text;
    /** The installed translations, which the tour switches between languages. */
    Translations *translations = nullptr;

    /** True when the option @p name was given. */
    bool isSet(const QString &name) const;
    /** The value of the option @p name. */
    QString value(const QString &name) const;
};

/** One subcommand: its name, argument syntax, help text, own options, argument count and body. */
struct Command
{
    const char *name;
    /** The arguments as the help shows them, such as "MASK [MASK MASK]". */
    const char *syntax;
    const char *description;
    int minArguments;
    /** -1: no upper limit. */
    int maxArguments;
    /** The subcommand's own options; null when it has none. */
    QList<QCommandLineOption> (*options)();
    /** Runs the subcommand; returns the exit status, throws a ko::ExceptionQt for bad input. */
    int (*run)(const Invocation &invocation);
    /** One typical command line, shown by the command's help and the manual page. */
    const char *example = nullptr;
};

} // namespace tool

#endif // COREQT_TOOL_COMMAND_H
