// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr gate`: only a sound export goes through.
#include "host/commands/gatecommand.h"

#include "host/base/scratchfolder.h"
#include "host/base/watchdog.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/gateending.h"
#include "host/commands/gateoptions.h"
#include "host/commands/rehearsalsession.h"
#include "host/gate/gatetexts.h"
#include "host/gate/pluginserver.h"
#include "host/report/console.h"
#include "host/report/logwriter.h"

#include <QCoreApplication>

#include <atomic>
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

void tellText(const GateOptions &gate, const GateResult &result)
{
    for (const QString &line : result.news)
        printText(line + QLatin1Char('\n'));
    for (const GateRecord &record : result.decided)
        printText(decisionLine(record, gate.whyNotRehearsed()) + QLatin1Char('\n'));
    for (const QString &name : result.waiting)
        printText(Text::tr("waiting: %1 is not whole yet\n").arg(name));
    for (const QString &line : result.warnings)
        printText(Text::tr("warning: %1\n").arg(line));
}

void tell(const GateOptions &gate, const GateResult &result, ReportForm form)
{
    if (form == ReportForm::Text) {
        tellText(gate, result);
        return;
    }
    for (const GateRecord &record : result.decided)
        printBytes(gateRecordJson(record));
    flushOutput();
}

/// Whatever is left half by it is what a kill may leave: the next gate mends it.
void armTimeLimit(const GateOptions &gate, Watchdog *watchdog, std::atomic<bool> *isOver)
{
    const QString text = Text::tr("the gate was not done after %1 s; the delivery stays for the "
                                  "next time")
                             .arg(gate.timeLimit);
    watchdog->arm(gate.timeLimit * 1000, [&gate, isOver, text] {
        *isOver = true;
        LogWriter writer(LogFormat::Text);
        writer.fail(text);
        const QStringList warnings = noteGateEnd(gate, {ExitTimeout, text});
        for (const QString &warning : warnings)
            writer.warn(warning);
        std::_Exit(ExitTimeout);
    });
}

/// What comes after the decision has limits of its own: hooks, and the answers of a database.
void limitDecisions(const GateOptions &gate, Watchdog *watchdog, std::atomic<bool> *isOver,
                    Gate *road)
{
    armTimeLimit(gate, watchdog, isOver);
    road->setStepWatch([&gate, watchdog, isOver](const char *step) {
        // While the failure is told, nothing is decided any more: this waits for the end.
        if (*isOver)
            watchdog->disarm();
        if (qstrcmp(step, "take") == 0)
            armTimeLimit(gate, watchdog, isOver);
        else if (qstrcmp(step, "hook") == 0 || qstrcmp(step, "late") == 0)
            watchdog->disarm();
    });
}

Failure runRoad(const GateOptions &gate, GateResult *result)
{
    GateSettings settings = gate.settings;
    settings.judge.rehearse = rehearsalOf(gate);
    if (const auto server = pluginServerAbove(gate.pluginFile))
        settings.serverSince = server->since;
    Gate road(settings);
    std::atomic<bool> isOver {false};
    Watchdog watchdog;
    limitDecisions(gate, &watchdog, &isOver, &road);
    const Failure failure = gate.release ? road.release(*gate.release, result) : road.run(result);
    watchdog.disarm();
    return failure;
}

Failure run(const Options &options)
{
    GateOptions gate;
    if (const Failure failure = readGateOptions(options, &gate)) {
        endBeforeBegin(options, gate, failure);
        return failure;
    }
    removeLeftScratchFolders();
    GateResult result;
    const Failure failure = runRoad(gate, &result);
    result.warnings += noteGateEnd(gate, failure) + hookTroubles(gate.hooks);
    // No export waits for figures and site.
    result.warnings += publishGate(options, gate);
    tell(gate, result, reportForm(options));
    if (failure)
        return failure;
    return {result.hasRefused() ? ExitRefused : ExitClean, QString()};
}

void notRun(const Options &options, const Failure &failure)
{
    GateOptions gate;
    readGateOptions(options, &gate);
    endBeforeBegin(options, gate, failure);
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
    command.notRun = notRun;
    return command;
}
