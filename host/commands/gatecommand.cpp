// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr gate`: only a sound export goes through.
#include "host/commands/gatecommand.h"

#include "host/base/watchdog.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/gateoptions.h"
#include "host/commands/rehearsalsession.h"
#include "host/commands/statussettings.h"
#include "host/gate/gatefailure.h"
#include "host/gate/gatetexts.h"
#include "host/gate/pluginserver.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>

#include <cstdlib>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateCommand)
};

/// Rehearses with the limits of the order, which are told with the page.
RehearseExport rehearsalOf(const GateOptions &gate)
{
    if (!gate.rehearses())
        return {};
    return [gate](const RehearsalOrder &order, Changes *changes) -> Failure {
        RehearsalOptions rehearsal;
        rehearsal.wishes.pluginFile = gate.pluginFile;
        rehearsal.wishes.settingsFile = gate.settingsFile;
        rehearsal.wishes.exportFile = order.exportFile;
        rehearsal.wishes.exportName = order.name;
        rehearsal.wishes.after = order.after;
        rehearsal.wishes.timeout = gate.timeLimit;
        rehearsal.database = gate.database;
        rehearsal.limits = order.limits;
        rehearsal.changesFile = order.changesFile;
        rehearsal.html = order.page;
        RehearsalSession session(rehearsal);
        if (const Failure failure = session.rehearse())
            return failure;
        *changes = session.result();
        return session.writeFiles();
    };
}

void tellText(const GateResult &result)
{
    for (const QString &line : result.news)
        printText(line + QLatin1Char('\n'));
    for (const GateRecord &record : result.decided)
        printText(decisionLine(record) + QLatin1Char('\n'));
    for (const QString &name : result.waiting)
        printText(Text::tr("waiting: %1 is not whole yet\n").arg(name));
    for (const QString &line : result.warnings)
        printText(Text::tr("warning: %1\n").arg(line));
}

void tell(const GateResult &result, ReportForm form)
{
    if (form == ReportForm::Text) {
        tellText(result);
        return;
    }
    for (const GateRecord &record : result.decided)
        printBytes(gateRecordJson(record));
    flushOutput();
}

/// Whatever is left half by it is what a kill may leave: the next gate mends it.
void armTimeLimit(const GateOptions &gate, Watchdog *watchdog)
{
    const QString state = gate.settings.state;
    const QString text = Text::tr("the gate was not done after %1 s; the delivery stays for the "
                                  "next time")
                             .arg(gate.timeLimit);
    watchdog->arm(gate.timeLimit * 1000, [state, text] {
        LogWriter(LogFormat::Text).fail(text);
        keepGateFailure(state, text);
        std::_Exit(ExitTimeout);
    });
}

/// What comes after the decision has limits of its own: hooks, and the answers of a database.
void limitDecisions(const GateOptions &gate, Watchdog *watchdog, Gate *road)
{
    armTimeLimit(gate, watchdog);
    road->setStepWatch([&gate, watchdog](const char *step) {
        if (qstrcmp(step, "take") == 0)
            armTimeLimit(gate, watchdog);
        else if (qstrcmp(step, "hook") == 0 || qstrcmp(step, "late") == 0)
            watchdog->disarm();
    });
}

/// Hooks that could not be called when they are needed.
QStringList hookTroubles(const GateSettings &settings)
{
    QStringList troubles;
    for (const QString &command : {settings.passedHook, settings.refusedHook, settings.lateHook}) {
        const QString program = QProcess::splitCommand(command).value(0);
        if (!program.isEmpty() && QStandardPaths::findExecutable(program).isEmpty())
            troubles.append(Text::tr("the program of the hook '%1' is not there, or cannot be run")
                                .arg(command));
    }
    return troubles;
}

/// A gate that was refused is not the one that the state is about.
void note(const GateOptions &gate, const Failure &failure)
{
    if (!failure)
        forgetGateFailure(gate.settings.state);
    else if (failure.exitCode != ExitRefused)
        keepGateFailure(gate.settings.state, failure.text);
}

/// Figures and site follow each run. What is wrong with them is only a warning: no export waits for
/// it.
void publish(const Options &options, const GateOptions &gate, GateResult *result)
{
    StatusSettings status;
    Failure failure = readStatusSettings(options, &status);
    // The environment has lost its password to the gate's own reading.
    status.database = gate.database;
    status.sources.namesDatabase = !gate.database.isDefault;
    // The plugin's own search may have found its settings.
    status.sources.place = gate.settings.place;
    status.sources.staysInPlace = !gate.settings.isRemovedWhenRead;
    if (!failure)
        failure = publishStatus(status);
    if (failure)
        result->warnings.append(failure.text);
}

Failure run(const Options &options)
{
    GateOptions gate;
    if (const Failure failure = readGateOptions(options, &gate))
        return failure;
    GateSettings settings = gate.settings;
    settings.judge.rehearse = rehearsalOf(gate);
    if (const auto server = pluginServerAbove(gate.pluginFile))
        settings.serverSince = server->since;
    Gate road(settings);
    Watchdog watchdog;
    limitDecisions(gate, &watchdog, &road);
    GateResult result;
    const Failure failure = gate.release ? road.release(*gate.release, &result) : road.run(&result);
    watchdog.disarm();
    note(gate, failure);
    const QStringList troubles = hookTroubles(gate.settings);
    result.warnings += troubles;
    publish(options, gate, &result);
    tell(result, reportForm(options));
    if (failure)
        return failure;
    return {result.hasRefused() ? ExitRefused : ExitClean, QString()};
}

} // namespace

Command gateCommand()
{
    Command command;
    command.name = QStringLiteral("gate");
    command.summary = Text::tr("let only a sound export through to the plugin");
    command.purpose = Text::tr(
        "Takes what was delivered, checks it, compares it with the last good export, rehearses it "
        "where a database is named, and puts it where the plugin finds its export, or refuses it "
        "with the reasons. Made to be the plugin's syncCommand, with syncCommandRun=2.");
    command.arguments = {{QStringLiteral("FILE"),
                          Text::tr("with --allow: a refused export, by its name or path"), true}};
    command.groups = gateOptionGroups();
    command.groups += {pluginOptions(), databaseOptions(), reportOptions()};
    command.fileSettings = gateFileSettings();
    command.exitCodes = {ExitClean,   ExitErrors,  ExitUsage,      ExitDatabase,
                         ExitTimeout, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr gate"), QStringLiteral("talvenhr gate --config /etc/gate.conf"),
          QStringLiteral("talvenhr gate --allow ended=60 20261122T010003Z-0123456789ab "
                         "--reason \"the branch in the north is closed\"")}}};
    command.run = run;
    return command;
}
