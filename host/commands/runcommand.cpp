// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: the plugin at work, without an attendance server around it.
#include "host/commands/runcommand.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/plancheck.h"
#include "host/commands/runsession.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RunCommand)
};

const int mostPasses = 1000000;
const int longestTimeout = 1000000; // seconds

OptionGroup lengthOptions()
{
    return {
        Text::tr("Length of the run (default: until a signal comes)"),
        {{QStringLiteral("once"), QString(), Text::tr("end after one pass")},
         {QStringLiteral("passes"), QStringLiteral("NUMBER"), Text::tr("end after so many passes")},
         {QStringLiteral("timeout"), QStringLiteral("SECONDS"),
          Text::tr("end after this time, with exit code 4")},
         {QStringLiteral("grace"), QStringLiteral("SECONDS"),
          Text::tr("how long a running pass may take to its end after the timeout or a second "
                   "signal; then it is cut (default: 10)")},
         {QStringLiteral("force"), QString(),
          Text::tr("make the first pass a forced one, which looks again at unchanged employees "
                   "too")},
         {QStringLiteral("hold"), QString(),
          Text::tr("after each pass write a line to standard output, and wait with the next one "
                   "until a line comes on standard input; its end ends the run")},
         planOption(),
         {QStringLiteral("strict"), QString(),
          Text::tr("end with exit code 1 also when there are warnings")}}};
}

OptionGroup rehearsalOptions()
{
    return {Text::tr("The pass that --plan rehearses"), planRehearsalOptions()};
}

OptionGroup changeOptions()
{
    return {Text::tr("Changes (takes a user who may also read term_sync)"),
            {{QStringLiteral("show-changes"), QString(),
              Text::tr("show after each pass the rows that it changed, by person, on standard "
                       "output")},
             {QStringLiteral("changes"), QStringLiteral("DIR"),
              Text::tr("write after each pass a file into this folder that holds what it changed, "
                       "by person and row; names of people stand in it")}}};
}

OptionGroup tracedLogOptions()
{
    OptionGroup group = logOptions();
    group.options.append(
        {QStringLiteral("trace"), QStringLiteral("FILE"),
         Text::tr("write each message of the plugin and each call of its database connection "
                  "into this new file, a line of JSON each; names of people stand in it")});
    return group;
}

Failure readLength(const Options &options, RunOptions *run)
{
    if (options.isSet(QStringLiteral("once")) && options.isSet(QStringLiteral("passes")))
        return options.usageFailure(Text::tr("--once and --passes exclude each other"));
    if (options.isSet(QStringLiteral("once")))
        run->passes = 1;
    if (const Failure failure = options.number(QStringLiteral("passes"), 1, mostPasses,
                                               &run->passes))
        return failure;
    if (const Failure failure = options.number(QStringLiteral("timeout"), 1, longestTimeout,
                                               &run->timeout))
        return failure;
    return options.number(QStringLiteral("grace"), 0, longestTimeout, &run->grace);
}

Failure read(const Options &options, RunOptions *run)
{
    if (const Failure failure = readLogOptions(options, &run->logLevel, &run->logFormat))
        return failure;
    run->pluginFile = pluginFile(options);
    run->changes = {options.isSet(QStringLiteral("show-changes")),
                    options.value(QStringLiteral("changes"))};
    if (options.isSet(QStringLiteral("changes")) && run->changes.folder.isEmpty())
        return options.usageFailure(Text::tr("--changes needs a folder"));
    run->trace = options.value(QStringLiteral("trace"));
    if (options.isSet(QStringLiteral("trace")) && run->trace.isEmpty())
        return options.usageFailure(Text::tr("--trace needs a file"));
    run->held = options.isSet(QStringLiteral("hold"));
    if (run->held && run->changes.shown)
        return options.usageFailure(Text::tr("--hold and --show-changes exclude each other"));
    run->strict = options.isSet(QStringLiteral("strict"));
    run->force = options.isSet(QStringLiteral("force"));
    if (const Failure failure = readDataDirectory(options, &run->dataDirectory))
        return failure;
    if (const Failure failure = readLength(options, run))
        return failure;
    return readDatabaseOptions(options, &run->database);
}

Failure run(const Options &options)
{
    RunOptions runOptions;
    if (const Failure failure = read(options, &runOptions))
        return failure;
    if (const Failure failure = checkPlanOptions(options, runOptions))
        return failure;
    RunLock lock;
    if (options.isSet(QStringLiteral("plan"))) {
        if (const Failure failure = checkPlan(options, &lock, &runOptions))
            return failure;
    }
    LogWriter writer(runOptions.logFormat);
    return RunSession(runOptions, &lock, &writer).run();
}

} // namespace

Command runCommand()
{
    Command command;
    command.name = QStringLiteral("run");
    command.summary = Text::tr("load the plugin and let it synchronise");
    command.purpose = Text::tr(
        "Loads the plugin as the attendance server does and lets it keep a database in line with "
        "the HR export. Without a database of your own, a private one with a sample company is "
        "made for you.");
    command.groups = {pluginOptions(),    databaseOptions(), lengthOptions(),
                      rehearsalOptions(), changeOptions(),   tracedLogOptions()};
    command.exitCodes = {ExitClean,   ExitErrors,  ExitUsage,      ExitDatabase,
                         ExitTimeout, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Ctrl+C, SIGTERM and SIGHUP"),
         {Text::tr("The first lets a running pass come to its end, the second cuts it after the"),
          Text::tr("grace period. At a terminal, Ctrl+C also reaches the export command.")}},
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr run --data-dir demo --once"),
          QStringLiteral("talvenhr run --data-dir demo --private-db /tmp/company --passes 3"),
          QStringLiteral("talvenhr run --socket /run/mysqld/mysqld.sock --password-file "
                         "secret")}}};
    command.run = run;
    return command;
}
