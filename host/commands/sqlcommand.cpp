// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sql`: a client on the private database.
#include "host/commands/sqlcommand.h"

#include "host/base/signalwatch.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/report/logwriter.h"
#include "host/server/privatedatabase.h"

#include <QCoreApplication>

#include <csignal>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SqlCommand)
};

/// Data or content that were never finished are made here too, which takes its time.
Failure startOrJoin(PrivateDatabase *database)
{
    const SignalWatch signalWatch;
    LogWriter writer(LogFormat::Text);
    database->setInterruption([&] { return signalWatch.hasCaught(); });
    QObject::connect(database, &PrivateDatabase::progress,
                     [&](const QString &what) { writer.activity(what); });
    const Failure failure = database->startOrJoin();
    QObject::disconnect(database, &PrivateDatabase::progress, nullptr, nullptr);
    database->setInterruption({});
    return failure;
}

Failure run(const Options &options)
{
    QString folder;
    if (const Failure failure = readPrivateFolder(options, &folder))
        return failure;
    PrivateDatabase database(folder);
    if (const Failure failure = startOrJoin(&database))
        return failure;
    // Ctrl+C is for the client, who does not end by it.
    std::signal(SIGINT, SIG_IGN);
    int exitCode = ExitClean;
    if (const Failure failure = database.converse(options.value(QStringLiteral("execute")),
                                                  &exitCode))
        return failure;
    database.waitForJoiners();
    return {static_cast<ExitCode>(exitCode), QString()};
}

} // namespace

Command sqlCommand()
{
    Command command;
    command.name = QStringLiteral("sql");
    command.summary = Text::tr("open a client on the private database");
    command.purpose = Text::tr(
        "Opens the MariaDB client on a private database, as its administrator. Works also while "
        "'talvenhr run' is at work on the same database.");
    Option folder = privateDatabaseOption();
    folder.text = Text::tr("folder of the private database (default: the one of 'talvenhr run')");
    command.groups = {{Text::tr("Options"),
                       {folder,
                        {QStringLiteral("execute"), QStringLiteral("TEXT"),
                         Text::tr("run these statements and end")}}}};
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr sql"),
          QStringLiteral("talvenhr sql --execute \"SELECT pamId, name, surname FROM people\"")}}};
    command.run = run;
    return command;
}
