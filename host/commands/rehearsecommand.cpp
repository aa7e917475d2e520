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
#include "host/plugin/datadirectory.h"
#include "host/rehearsal/pretendedday.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearseCommand)
};

Failure readDay(const Options &options, QDate *day)
{
    const QString name = QStringLiteral("today");
    if (!options.isSet(name))
        return {};
    *day = QDate::fromString(options.value(name), Qt::ISODate);
    if (!day->isValid())
        return options.usageFailure(
            Text::tr("--today takes a day such as 2027-01-01, not '%1'").arg(options.value(name)));
    if (canBePretended(*day))
        return {};
    return options.usageFailure(
        Text::tr("--today takes a day from %1 to %2, for the clock of the database knows no others")
            .arg(firstPretendedDay().toString(Qt::ISODate),
                 lastPretendedDay().toString(Qt::ISODate)));
}

/// What is rehearsed: the plugin, its real settings, and the export that they name.
Failure readWishes(const Options &options, RehearsalWishes *wishes)
{
    QString directory;
    if (const Failure failure = readDataDirectory(options, &directory))
        return failure;
    wishes->pluginFile = pluginFile(options);
    wishes->settingsFile = DataDirectory(directory).iniFile();
    wishes->exportFile = options.value(QStringLiteral("export"));
    wishes->force = options.isSet(QStringLiteral("force"));
    if (const Failure failure = readDay(options, &wishes->today))
        return failure;
    return checkInputs(wishes);
}

Failure read(const Options &options, RehearsalOptions *rehearsal)
{
    if (const Failure failure = readWishes(options, &rehearsal->wishes))
        return failure;
    if (const Failure failure = readLimits(options, &rehearsal->limits))
        return failure;
    rehearsal->copy.whole = options.isSet(QStringLiteral("whole"));
    rehearsal->copy.withoutTriggers = options.isSet(QStringLiteral("without-triggers"));
    rehearsal->copy.withoutRoutines = options.isSet(QStringLiteral("without-routines"));
    rehearsal->keep = options.value(QStringLiteral("keep"));
    rehearsal->person = options.value(QStringLiteral("person"));
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
    if (const Failure failure = checkOutputFiles({rehearsal.html, rehearsal.changesFile},
                                                 {wishes.settingsFile, wishes.exportFile,
                                                  wishes.pluginFile, options.configuration().path(),
                                                  options.value(QStringLiteral("password-file"))}))
        return failure;
    return RehearsalSession(rehearsal).run();
}

OptionGroup rehearsalOptions()
{
    return {Text::tr("Rehearsal"),
            {{QStringLiteral("export"), QStringLiteral("FILE"),
              Text::tr("the export (default: importFile of TalvenHR.ini)")},
             {QStringLiteral("force"), QString(), Text::tr("rehearse a forced pass")},
             {QStringLiteral("today"), QStringLiteral("DAY"),
              Text::tr("rehearse the pass of another day, such as 2027-01-01")},
             {QStringLiteral("keep"), QStringLiteral("DIR"),
              Text::tr("keep the copy in this new or empty folder, for 'talvenhr sql'")},
             {QStringLiteral("whole"), QString(),
              Text::tr("copy closed days of attendance and all moves of funds, too")},
             {QStringLiteral("without-triggers"), QString(),
              Text::tr("go on where triggers cannot be seen")},
             {QStringLiteral("without-routines"), QString(),
              Text::tr("go on where the bodies of routines cannot be read")}}};
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
        "server. The database is only read. A pass beyond a limit is refused.");
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
