// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sql`: a client on the private database.
#include "host/commands/sqlcommand.h"

#include "host/base/programpaths.h"
#include "host/cli/commandparser.h"
#include "host/report/logwriter.h"
#include "host/server/privatedatabase.h"

#include <csignal>
#include <cstdio>

namespace {

void addOptions(CommandParser *parser)
{
    parser->addGroup(QStringLiteral("Options"));
    parser->addOption(QStringLiteral("private-db"), QStringLiteral("DIR"),
                      QStringLiteral("folder of the private database (default: the one of "
                                     "'talvenhr run')"));
    parser->addOption(QStringLiteral("execute"), QStringLiteral("TEXT"),
                      QStringLiteral("run these statements and end"));
    parser->addSection(QStringLiteral("Exit codes"),
                       QStringLiteral("  0  all went well\n"
                                      "  1  a statement failed\n"
                                      "  2  bad option\n"
                                      "  3  database cannot be reached"));
    parser->addSection(QStringLiteral("Examples"),
                       QStringLiteral("  talvenhr sql\n"
                                      "  talvenhr sql --execute \"SELECT pamId, name, surname FROM "
                                      "people\""));
}

Failure converse(const CommandParser &parser, int *exitCode)
{
    PrivateDatabase database(parser.isSet(QStringLiteral("private-db"))
                                 ? parser.value(QStringLiteral("private-db"))
                                 : defaultPrivateFolder());
    if (const Failure failure = database.startOrJoin())
        return failure;
    return database.converse(parser.value(QStringLiteral("execute")), exitCode);
}

} // namespace

int sqlCommand(const QStringList &arguments)
{
    CommandParser parser(
        QStringLiteral("talvenhr sql"),
        QStringLiteral("Opens the MariaDB client on a private database, as its administrator. "
                       "Works also while 'talvenhr run' is at work on the same database."));
    addOptions(&parser);
    Failure failure = parser.parse(arguments);
    if (!failure && parser.helpWanted()) {
        std::fputs(qPrintable(parser.help()), stdout);
        return ExitClean;
    }
    int exitCode = ExitClean;
    if (!failure) {
        // Ctrl+C is for the client, who does not end by it.
        std::signal(SIGINT, SIG_IGN);
        failure = converse(parser, &exitCode);
    }
    if (failure) {
        LogWriter(LogFormat::Text).fail(failure.text);
        return failure.exitCode;
    }
    return exitCode;
}
