// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The shell around all commands: from the arguments of the process to its exit code.
#include "host/cli/shell.h"

#include "host/base/nearest.h"
#include "host/cli/helptext.h"
#include "host/cli/manpage.h"
#include "host/cli/options.h"
#include "host/cli/reportoptions.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Shell)
};

const Command *find(const QVector<Command> &commands, const QString &name)
{
    const auto found = std::find_if(commands.cbegin(), commands.cend(),
                                    [&](const Command &command) { return command.name == name; });
    return found == commands.cend() ? nullptr : &*found;
}

int end(const Failure &failure, LogFormat format)
{
    if (!failure.text.isEmpty())
        LogWriter(format).fail(failure.text);
    return failure.exitCode;
}

int usageError(const QString &text)
{
    return end({ExitUsage, Text::tr("%1; see 'talvenhr --help'").arg(text)}, LogFormat::Text);
}

int unknownCommand(const QVector<Command> &commands, const QString &name)
{
    if (name.startsWith(QLatin1Char('-')))
        return usageError(Text::tr("unknown option '%1'").arg(name));
    QStringList names;
    for (const Command &command : commands)
        names.append(command.name);
    return usageError(Text::tr("unknown command '%1'%2").arg(name, didYouMean(name, names)));
}

int showHelp(const QVector<Command> &commands, const QString &name)
{
    if (name.isEmpty() || name.startsWith(QLatin1Char('-'))) {
        printText(helpText(commands));
        return ExitClean;
    }
    const Command *const command = find(commands, name);
    if (!command)
        return unknownCommand(commands, name);
    printText(helpText(*command));
    return ExitClean;
}

Failure runConfigured(const Command &command, Options *options)
{
    const Failure failure = options->readConfiguration();
    if (!failure)
        return command.run(*options);
    if (command.notRun)
        command.notRun(*options, failure);
    return failure;
}

int runCommand(const QVector<Command> &commands, const Command &command,
               const QStringList &arguments)
{
    Options options(command, settingsOf(commands), fileSettingsOf(commands));
    Failure failure = options.parse(arguments);
    if (options.helpWanted()) {
        printText(helpText(command));
        return ExitClean;
    }
    if (!failure)
        failure = runConfigured(command, &options);
    return end(failure, logFormat(options));
}

int runOrShow(const QVector<Command> &commands, const QStringList &arguments)
{
    const QString first = arguments.value(1);
    if (first.isEmpty())
        return usageError(Text::tr("no command given"));
    if (const Command *const command = find(commands, first))
        return runCommand(commands, *command, arguments.mid(2));
    if (first == QLatin1String("help") || first == QLatin1String("-h")
        || first == QLatin1String("--help"))
        return showHelp(commands, arguments.value(2));
    if (first == QLatin1String("-v") || first == QLatin1String("--version")) {
        printText(QStringLiteral("talvenhr " TALVENHR_VERSION "\n"));
        return ExitClean;
    }
    if (first == QLatin1String("--man")) {
        printText(manPage(commands));
        return ExitClean;
    }
    return unknownCommand(commands, first);
}

} // namespace

int runShell(const QVector<Command> &commands, const QStringList &arguments)
{
    const int exitCode = runOrShow(commands, arguments);
    if (exitCode != ExitClean || outputTrouble().isEmpty())
        return exitCode;
    return end({ExitErrors, Text::tr("standard output cannot be written: %1").arg(outputTrouble())},
               LogFormat::Text);
}
