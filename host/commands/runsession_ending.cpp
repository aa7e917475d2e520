// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run` at work: how it comes to its end, in order or not.
#include "host/base/childprocesses.h"
#include "host/commands/runsession.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

namespace {

/// Where the export is deleted after a pass, this is nothing unusual.
QString missingExportText(const RunFigures &figures)
{
    return figures.missingExports >= figures.passes
        ? QStringLiteral("there was no export file")
        : QStringLiteral("there was no export file in %1 of %2 passes")
              .arg(figures.missingExports)
              .arg(figures.passes);
}

} // namespace

/// The exit code tells the worst of what has happened.
RunEnding RunSession::ending(const Failure &failure) const
{
    const RunFigures figures = this->figures();
    if (failure)
        return {failure.exitCode, firstFailure.text};
    if (figures.passes < options.passes)
        return {ExitErrors,
                QStringLiteral("ended by a signal before pass %1").arg(figures.passes + 1)};
    if (figures.missingExports > 0 && !options.plannedExport.isEmpty())
        return {ExitRefused,
                tr("the export that was rehearsed is gone, so no line of it was taken")};
    if (figures.errors > 0)
        return {ExitErrors, QString()};
    if (outputIsLost)
        return {ExitErrors, QStringLiteral("standard output cannot be written")};
    if (changesAreLost)
        return {ExitErrors, QStringLiteral("the changes of a pass are not kept")};
    if (traceIsLost)
        return {ExitErrors, QStringLiteral("the trace is not whole")};
    if (figures.commandFailures > 0)
        return {ExitErrors, QStringLiteral("the export command failed")};
    if (sawUselessExport)
        return {ExitErrors, QStringLiteral("an export had no usable line")};
    if (figures.warnings > 0 && options.strict)
        return {ExitErrors, QStringLiteral("warnings count as errors, as --strict asks for")};
    QStringList reasons;
    if (endedBySignal)
        reasons.append(QStringLiteral("ended by a signal"));
    if (figures.missingExports > 0)
        reasons.append(missingExportText(figures));
    return {ExitClean, reasons.join(QStringLiteral(", "))};
}

/// A first signal lets the running pass come to its end; a second one is in earnest.
void RunSession::endForSignal()
{
    endedBySignal = true;
    if (waiting)
        cutAfterGrace({ExitInterrupted, QStringLiteral("ended by a second signal")});
    plugin.finish();
}

void RunSession::endForTimeout()
{
    cutAfterGrace(timedOut());
    if (!waiting)
        plugin.finish(told({ExitTimeout, timedOut().reason}));
}

RunEnding RunSession::timedOut() const
{
    return {ExitTimeout, QStringLiteral("timed out after %1 s").arg(options.timeout)};
}

/// A tick that hangs before or after its pass keeps the plugin's thread.
void RunSession::limitUnloading()
{
    if (graceRuns)
        return;
    RunEnding end {ExitDatabase, QStringLiteral("the plugin did not end")};
    if (firstFailure)
        end = {firstFailure.exitCode, firstFailure.text};
    else if (endedBySignal)
        end = {ExitInterrupted, QStringLiteral("ended by a signal")};
    watchdog.arm(options.grace * 1000, [this, end] { cut(end); });
}

void RunSession::endForDeadServer(const QString &reason)
{
    // The pass may have come to its end by the errors that follow.
    const bool inPass = plugin.isPassRunning() || plugin.figures().lastPassErrors > 0;
    const QString left = inPass
        ? QStringLiteral("; from there on nobody was written, and the person at work only in part. "
                         "Its data are kept, but the export may be gone: put it there again, run "
                         "again, and see docs/recovery.md, \"The server goes\"")
        : QStringLiteral("; its data are kept, so just run again");
    serverProcess = 0;
    // Not even waiting for the pass: nothing more can come of it.
    cutAfterGrace({ExitDatabase, reason + left});
    plugin.abort(told({ExitDatabase, reason + left}));
}

void RunSession::endForLostTick()
{
    if (options.passes > 0 && !firstFailure)
        plugin.finish(told({ExitDatabase,
                            QStringLiteral("the database cannot be opened any more; check its "
                                           "server")}));
}

/// Tells the failure at once, so that it stands in the log where it happened.
Failure RunSession::told(const Failure &failure)
{
    if (!firstFailure)
        firstFailure = failure;
    writer->fail(failure.text);
    return {failure.exitCode, QString()};
}

/// The first reason counts, and its time: whoever asks again does not put it off.
void RunSession::cutAfterGrace(const RunEnding &end)
{
    if (graceRuns)
        return;
    graceRuns = true;
    watchdog.arm(options.grace * 1000, [this, end] { cut(end); });
}

/// Just before the plugin opens the file. It has written nothing yet, and there is no other way to
/// keep it from that.
void RunSession::refuseOtherExport()
{
    if (identityOf(plugin.settings().importFile).digest != options.plannedExport)
        leave(
            {ExitRefused,
             tr("the export '%1' was replaced after its pass had been rehearsed, so no line of it "
                "was taken; rehearse the new one")
                 .arg(plugin.settings().importFile)});
}

/// On the watchdog's thread: the main thread or the plugin's may hang for good.
void RunSession::cut(const RunEnding &end)
{
    const QString pass = plugin.isPassRunning()
        ? QStringLiteral("the running pass was cut while waiting for ")
        : QStringLiteral("while waiting for ");
    leave({end.exitCode, end.reason + QStringLiteral(", ") + pass + whatIsWaitedFor()});
}

/// Ends the process, on any thread. Leaves no server and no file of this process behind.
void RunSession::leave(const RunEnding &end)
{
    // Whoever reads the log may stand still, and hold the locks of those who write.
    std::thread([end] {
        std::this_thread::sleep_for(std::chrono::seconds(2));
        std::_Exit(end.exitCode);
    }).detach();
    const Report summary = runSummary(figures(), testMode, clock.elapsed(), end);
    // Only now: the plugin would go on with errors.
    if (serverProcess > 0)
        ::kill(static_cast<pid_t>(serverProcess), SIGKILL);
    plugin.removeTraces();
    writer->summary(summary);
    std::_Exit(end.exitCode);
}

QString RunSession::whatIsWaitedFor() const
{
    if (!hasPlugin)
        return serverProcess == 0 && !options.database.privateFolder.isEmpty()
            ? QStringLiteral("the private server to start")
            : QStringLiteral("an answer of the database");
    const QVector<RunningChild> children = runningChildren();
    for (const RunningChild &child : children) {
        if (child.pid != serverProcess)
            return QStringLiteral("process %1, which goes on: %2")
                .arg(child.pid)
                .arg(child.command);
    }
    const QString message = plugin.lastMessage();
    return message.isEmpty()
        ? whatThePluginWaitsFor()
        : QStringLiteral("%1; the plugin's last message: %2").arg(whatThePluginWaitsFor(), message);
}

QString RunSession::whatThePluginWaitsFor() const
{
    const PendingCall call = callWatch.pending();
    if (!call.text.isEmpty())
        return QStringLiteral("an answer of the database to '%1', asked at %2")
            .arg(call.text, call.since.toString(Qt::ISODate));
    // The run's own questions are not watched.
    return options.changes.any() ? QStringLiteral("an answer of the database")
                                 : QStringLiteral("the plugin");
}
