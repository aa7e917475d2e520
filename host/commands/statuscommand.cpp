// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr status`: when what ran, how it ended, and what waits.
#include "host/commands/statuscommand.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/gatefolders.h"
#include "host/commands/statussettings.h"
#include "host/report/console.h"
#include "host/status/checkline.h"
#include "host/status/statusreport.h"

#include <QCoreApplication>

#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(StatusCommand)
};

/// What the command line itself asks to write, in place of what talvenhr.conf names.
Failure read(const Options &options, StatusSettings *settings)
{
    if (const Failure failure = readStatusSettings(options, settings))
        return failure;
    settings->sources.changesFolders = options.values(QStringLiteral("changes"));
    settings->site.folder = options.value(QStringLiteral("html"));
    settings->metricsFile = options.value(QStringLiteral("metrics"));
    if (hidesNames(options))
        settings->site.texts = PersonalTexts::Hidden;
    return checkTargets(
        *settings,
        {options.configuration().path(), options.value(QStringLiteral("password-file"))});
}

PersonalTexts shownTexts(const Options &options)
{
    return hidesNames(options) ? PersonalTexts::Hidden : PersonalTexts::Shown;
}

void print(const Options &options, const Status &status)
{
    if (reportForm(options) == ReportForm::Json) {
        printReport(statusDocument(status, shownTexts(options)), ReportForm::Json);
        return;
    }
    if (isQuiet(options)) {
        printText(verdictOf(concernsOf(status)) + QLatin1Char('\n'));
        return;
    }
    const int shownPeople = options.isSet(QStringLiteral("all")) ? std::numeric_limits<int>::max()
                                                                 : 10;
    printReport(statusPage(status, shownTexts(options), shownPeople), ReportForm::Text);
    const QString recovery = recoveryText(status, shownTexts(options));
    if (!recovery.isEmpty())
        printText(QLatin1Char('\n') + recovery);
}

/// The exit codes of monitoring systems, which are others than those of all commands.
Failure ending(Level level)
{
    return {static_cast<ExitCode>(level), QString()};
}

Failure runCheck(const Options &options)
{
    StatusSettings settings;
    const Failure failure = read(options, &settings);
    if (!failure) {
        Status status = takeStatus(settings);
        // What is critical is so on a full disk, too.
        if (const Failure unwritten = publishStatus(status, settings))
            status.unknown.append({Text::tr("site and figures"), unwritten.text, true});
        printText(checkLine(status) + QLatin1Char('\n'));
        return ending(levelOf(concernsOf(status)));
    }
    printText(unknownCheckLine(failure.text) + QLatin1Char('\n'));
    return ending(Level::Unknown);
}

Failure run(const Options &options)
{
    if (options.isSet(QStringLiteral("check")))
        return runCheck(options);
    StatusSettings settings;
    if (const Failure failure = read(options, &settings))
        return failure;
    const Status status = takeStatus(settings);
    print(options, status);
    if (const Failure failure = publishStatus(status, settings))
        return failure;
    if (!status.databaseTrouble.isEmpty())
        return {ExitDatabase, status.databaseTrouble};
    return {exitCodeOf(status), QString()};
}

OptionGroup statusOptions()
{
    return {Text::tr("Status"),
            {{QStringLiteral("changes"), QStringLiteral("DIR"),
              Text::tr("a folder to which 'run --changes' writes, besides the archive; may be "
                       "repeated")},
             {QStringLiteral("check"), QString(),
              Text::tr("print one line for a monitoring system, with figures, and end with its "
                       "codes: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN. These are not the codes "
                       "below")},
             {QStringLiteral("html"), QStringLiteral("DIR"),
              Text::tr("bring a small site there up to date: 90 days, a page for each export and "
                       "pass")},
             {QStringLiteral("metrics"), QStringLiteral("FILE"),
              Text::tr("write figures in the text format of Prometheus there, for everybody to "
                       "read")},
             {QStringLiteral("all"), QString(),
              Text::tr("show everybody who is lost or waits, not ten of each (JSON always has "
                       "all)")},
             noNamesOption()}};
}

} // namespace

Command statusCommand()
{
    Command command;
    command.name = QStringLiteral("status");
    command.summary = Text::tr("tell when what ran, how it ended, and what waits");
    command.purpose = Text::tr(
        "Tells of the last export and the last pass, what waits and for what, what passes have "
        "lost and the commands that bring it back, when the next pass is due, and how full the "
        "folders are: from the folders of the gate, files of changes, the plugin's settings, and "
        "a database if one is named. Only reads, but for the site and the figures that it is asked "
        "to write.");
    command.groups = {statusOptions(),
                      watchedGateOptions(),
                      {Text::tr("Plugin"), {dataDirectoryOption()}},
                      lookedAtDatabaseOptions(),
                      quietReportOptions()};
    command.fileSettings = publishingSettings();
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr status"),
          QStringLiteral("talvenhr status --check --late-after 26"),
          QStringLiteral("talvenhr status --html /srv/www/talvenhr --no-names --quiet")}}};
    command.run = run;
    return command;
}
