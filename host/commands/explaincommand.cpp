// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr explain`: what the next pass would do with one person, and why.
#include "host/commands/explaincommand.h"

#include "host/base/shellword.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/explainsession.h"
#include "host/commands/rehearsalwishes.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ExplainCommand)
};

Failure read(const Options &options, ExplainOptions *explain)
{
    explain->person = options.argument(0).trimmed();
    if (explain->person.isEmpty())
        return options.usageFailure(
            Text::tr("PERSON is empty; name somebody, such as 4711.1: talvenhr explain 4711.1"));
    const QString otherExport = QStringLiteral("talvenhr explain %1 --export FILE")
                                    .arg(shellWord(explain->person));
    if (const Failure failure = readWishes(options, otherExport, &explain->wishes))
        return failure;
    explain->copy = readCopyWishes(options);
    explain->form = reportForm(options);
    explain->isQuiet = isQuiet(options);
    explain->withStatements = options.isSet(QStringLiteral("statements"));
    if (hidesNames(options))
        explain->texts = PersonalTexts::Hidden;
    return readDatabaseOptions(options, &explain->database);
}

Failure run(const Options &options)
{
    ExplainOptions explain;
    if (const Failure failure = read(options, &explain))
        return failure;
    return ExplainSession(explain).run();
}

OptionGroup rehearsalOptions()
{
    return {Text::tr("Rehearsal"), passOptions() + copyOptions()};
}

OptionGroup storyOptions()
{
    OptionGroup group = reportOptions();
    group.options += QVector<Option> {
        {QStringLiteral("statements"), QString(),
         Text::tr("show the statements of the plugin, too (JSON always has them)")},
        {QStringLiteral("no-names"), QString(),
         Text::tr("show no texts of the person, only numbers and dates")},
        quietOption()};
    return group;
}

} // namespace

Command explainCommand()
{
    Command command;
    command.name = QStringLiteral("explain");
    command.summary = Text::tr("tell what the next pass would do with one person, and why");
    command.purpose = Text::tr(
        "Rehearses the next pass with one person only, on a copy of what concerns them, and tells "
        "it as a story: their line, their row, each decision and its reason, what is written, what "
        "waits, and what terminals are told. The database is only read.");
    command.arguments = {{QStringLiteral("PERSON"),
                          Text::tr("a pamId such as 4711.1, a pid, a uid, or a personal number")}};
    command.groups = {pluginOptions(), databaseOptions(), rehearsalOptions(), storyOptions()};
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral(
              "talvenhr explain 4711.1 --data-dir /srv/attendance --host db.example.org"),
          QStringLiteral(
              "talvenhr explain 1001.1 --data-dir demo --private-db demo/db --statements"),
          QStringLiteral("talvenhr explain 47111 --force --today 2027-01-01 --json")}}};
    command.run = run;
    return command;
}
