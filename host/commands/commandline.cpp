// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The program `talvenhr`: its commands.
#include "host/commands/commandline.h"

#include "host/base/failure.h"
#include "host/commands/infocommand.h"
#include "host/commands/runcommand.h"
#include "host/commands/sqlcommand.h"

#include <cstdio>

namespace {

struct Command
{
    const char *name;
    const char *purpose;
    int (*run)(const QStringList &arguments);
};

const Command commands[] = {
    {"run", "load the plugin and let it synchronise", runCommand},
    {"sql", "open a client on the private database", sqlCommand},
    {"info", "show who the plugin is", infoCommand},
};

QString help()
{
    QString text = QStringLiteral("Usage: talvenhr COMMAND [options]\n\n"
                                  "Keeps an attendance database in line with an HR system's "
                                  "employee export.\n\n"
                                  "Commands:\n");
    for (const Command &command : commands)
        text += QStringLiteral("  %1%2\n")
                    .arg(QLatin1String(command.name), -8)
                    .arg(QLatin1String(command.purpose));
    return text
        + QStringLiteral("\n"
                         "Options:\n"
                         "  -h, --help     show this text\n"
                         "  -v, --version  show the version\n\n"
                         "'talvenhr COMMAND --help' tells more of a command.\n\n"
                         "Exit codes:\n"
                         "  0  all went well\n"
                         "  1  the plugin logged errors\n"
                         "  2  bad command or option, plugin or settings not "
                         "usable\n"
                         "  3  database cannot be reached or used\n"
                         "  4  timed out\n");
}

int usageError(const QString &text)
{
    std::fputs(qPrintable(QStringLiteral("talvenhr: %1; see 'talvenhr --help'\n").arg(text)),
               stderr);
    return ExitUsage;
}

} // namespace

int runCommandLine(const QStringList &arguments)
{
    const QString first = arguments.value(1);
    if (first.isEmpty())
        return usageError(QStringLiteral("no command given"));
    for (const Command &command : commands) {
        if (first == QLatin1String(command.name))
            return command.run(arguments.mid(2));
    }
    if (first == QLatin1String("-h") || first == QLatin1String("--help")) {
        std::fputs(qPrintable(help()), stdout);
        return ExitClean;
    }
    if (first == QLatin1String("-v") || first == QLatin1String("--version")) {
        std::fputs("talvenhr " TALVENHR_VERSION "\n", stdout);
        return ExitClean;
    }
    return usageError(first.startsWith(QLatin1Char('-'))
                          ? QStringLiteral("unknown option '%1'").arg(first)
                          : QStringLiteral("unknown command '%1'").arg(first));
}
