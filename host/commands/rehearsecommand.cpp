// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr rehearse`: what the next pass would change.
#include "host/commands/rehearsecommand.h"

#include "host/base/ownerfile.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/limitoptions.h"
#include "host/commands/rehearsalsession.h"
#include "host/commands/rehearsalwishes.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearseCommand)
};

Failure read(const Options &options, RehearsalOptions *rehearsal)
{
    rehearsal->wishes.after = options.values(QStringLiteral("after"));
    if (const Failure failure = readWishes(
            options, QStringLiteral("talvenhr rehearse --export FILE"), &rehearsal->wishes))
        return failure;
    if (const Failure failure = readLimits(options, &rehearsal->limits))
        return failure;
    rehearsal->copy = readCopyWishes(options);
    rehearsal->keep = options.value(QStringLiteral("keep"));
    rehearsal->person = options.value(QStringLiteral("person")).trimmed();
    if (options.isSet(QStringLiteral("person")) && rehearsal->person.isEmpty())
        return options.usageFailure(Text::tr("--person needs somebody, such as 4711.1"));
    rehearsal->changesFile = options.value(QStringLiteral("changes"));
    rehearsal->html = options.value(QStringLiteral("html"));
    rehearsal->isQuiet = isQuiet(options);
    rehearsal->tellsChanges = options.isSet(QStringLiteral("exit-code"));
    rehearsal->form = reportForm(options);
    return readDatabaseOptions(options, &rehearsal->database);
}

Failure run(const Options &options)
{
    RehearsalOptions rehearsal;
    if (const Failure failure = read(options, &rehearsal))
        return failure;
    const RehearsalWishes &wishes = rehearsal.wishes;
    if (const Failure failure = checkOutputFiles(
            {rehearsal.html, rehearsal.changesFile},
            QStringList {wishes.settingsFile, wishes.exportFile, wishes.pluginFile,
                         options.configuration().path(),
                         options.value(QStringLiteral("password-file"))}
                + wishes.after))
        return failure;
    return RehearsalSession(rehearsal).run();
}

OptionGroup rehearsalOptions()
{
    OptionGroup group {Text::tr("Rehearsal"), passOptions()};
    group.options += QVector<Option> {
        {QStringLiteral("after"), QStringLiteral("FILE"),
         Text::tr("an export that the server has taken since its start; may be repeated, the "
                  "oldest first")},
        {QStringLiteral("keep"), QStringLiteral("DIR"),
         Text::tr("keep the copy in this new or empty folder, for 'talvenhr sql'")}};
    group.options += copyOptions();
    return group;
}

OptionGroup outputOptions()
{
    OptionGroup group = reportOptions();
    group.options += QVector<Option> {
        {QStringLiteral("changes"), QStringLiteral("FILE"),
         Text::tr("write the changes as JSON there")},
        {QStringLiteral("html"), QStringLiteral("FILE"),
         Text::tr("write a page for a browser there")},
        {QStringLiteral("person"), QStringLiteral("PERSON"),
         Text::tr("show all of one person, such as 4711.1")},
        quietOption(),
        {QStringLiteral("exit-code"), QString(),
         Text::tr("end with exit code 6 when something would change")}};
    return group;
}

} // namespace

Command rehearseCommand()
{
    Command command;
    command.name = QStringLiteral("rehearse");
    command.summary = Text::tr("tell what the next pass would change");
    command.purpose = Text::tr(
        "Copies what a pass reads and writes into a private server, runs the plugin there with the "
        "real settings and export, and tells what it has changed: the pass of a freshly started "
        "server, or of one that has taken other exports before. The database is only read. A pass "
        "beyond a limit is refused.");
    command.groups = {pluginOptions(), databaseOptions(), rehearsalOptions(), limitOptions(),
                      outputOptions()};
    command.fileSettings = limitSettings();
    command.exitCodes = {ExitClean,   ExitErrors,  ExitUsage,      ExitDatabase,
                         ExitRefused, ExitChanged, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr rehearse --data-dir /srv/attendance --host db.example.org"),
          QStringLiteral("talvenhr rehearse --data-dir demo --private-db demo/db --html next.html"),
          QStringLiteral("talvenhr rehearse --limit ended=2% --allow added=200 --quiet")}}};
    command.run = run;
    return command;
}
