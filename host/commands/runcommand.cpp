// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: the plugin at work, without an attendance server around it.
#include "host/commands/runcommand.h"

#include "host/cli/commandparser.h"
#include "host/commands/runoptions.h"
#include "host/commands/runsession.h"
#include "host/report/logwriter.h"

#include <cstdio>

namespace {

void addSections(CommandParser *parser)
{
    parser->addSection(
        QStringLiteral("Ctrl+C"),
        QStringLiteral("  A running pass comes to its end first, however often it is asked for.\n"
                       "  At a terminal, Ctrl+C also reaches the export command."));
    parser->addSection(QStringLiteral("Exit codes"),
                       QStringLiteral("  0  all went well\n"
                                      "  1  the plugin logged errors\n"
                                      "  2  bad option, plugin or settings not usable\n"
                                      "  3  database cannot be reached or used\n"
                                      "  4  timed out"));
    parser->addSection(
        QStringLiteral("Examples"),
        QStringLiteral("  talvenhr run --data-dir demo --once\n"
                       "  talvenhr run --data-dir demo --private-db /tmp/company --passes 3\n"
                       "  talvenhr run --socket /run/mysqld/mysqld.sock --password-file secret"));
}

} // namespace

int runCommand(const QStringList &arguments)
{
    CommandParser parser(
        QStringLiteral("talvenhr run"),
        QStringLiteral("Loads the plugin as the attendance server does and lets it keep a database "
                       "in line with the HR export. Without a database of your own, a private one "
                       "with a sample company is made for you."));
    addRunOptions(&parser);
    addSections(&parser);

    RunOptions options;
    Failure failure = parser.parse(arguments);
    if (!failure && parser.helpWanted()) {
        std::fputs(qPrintable(parser.help()), stdout);
        return ExitClean;
    }
    if (!failure)
        failure = readRunOptions(parser, &options);
    LogWriter writer(options.logFormat);
    if (failure) {
        writer.fail(failure.text);
        return failure.exitCode;
    }
    return RunSession(options, &writer).run();
}
