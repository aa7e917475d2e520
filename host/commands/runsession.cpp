// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run` at work: a run of the plugin, with signals, a timeout and a private server.
#include "host/commands/runsession.h"

#include "host/base/zonedtext.h"
#include "host/catalogue/findings.h"
#include "host/database/attendance.h"
#include "host/doctor/machinecheck.h"
#include "host/server/privatedatabase.h"

#include <QDateTime>
#include <QFileInfo>
#include <QTimer>

namespace {

const qint64 longWait = 5000; // milliseconds
const int missingExportLevel = 2; // from there on the plugin tells of it itself

PluginRunOptions pluginOptionsOf(const RunOptions &options)
{
    PluginRunOptions plugin;
    plugin.pluginFile = options.pluginFile;
    plugin.dataDirectory = options.dataDirectory;
    plugin.passes = options.passes;
    plugin.logLevel = options.logLevel;
    // At level 3 each record has a line of its own.
    plugin.showProgress = options.logFormat == LogFormat::Text && options.logLevel < 3
        && ProgressBar::isPossible();
    return plugin;
}

/// "2026-11-22T12:40:02+01:00, in 60 s"
QString timeText(const QDateTime &moment)
{
    const qint64 wait = QDateTime::currentDateTime().msecsTo(moment);
    return QStringLiteral("%1, in %2 s").arg(zonedText(moment)).arg((wait + 500) / 1000);
}

} // namespace

RunSession::RunSession(const RunOptions &runOptions, RunLock *runLock, LogWriter *logWriter) :
    options(runOptions),
    lock(runLock),
    writer(logWriter),
    plugin(pluginOptionsOf(runOptions), logWriter)
{
    clock.start();
    connect(&signalWatch, &SignalWatch::caught, this, &RunSession::endForSignal);
    connect(&plugin, &PluginRun::started, this, &RunSession::tellStart);
    connect(&plugin, &PluginRun::unloading, this, &RunSession::limitUnloading);
    connect(&plugin, &PluginRun::waitingForPass, this, &RunSession::tellWaiting);
    connect(&plugin, &PluginRun::passEnded, this, &RunSession::tellChanges);
    connect(&plugin, &PluginRun::passEnded, this, &RunSession::tellNextPass);
    connect(&plugin, &PluginRun::exportSeen, this, &RunSession::tellOfExport, Qt::QueuedConnection);
    connect(&plugin, &PluginRun::exportMissing, this, &RunSession::tellMissingExport);
    connect(&plugin, &PluginRun::databaseNotOpen, this, &RunSession::endForLostTick);
    if (options.changes.any() || !options.trace.isEmpty())
        plugin.listen([this](QtMsgType type, const QString &text) { hear(type, text); });
    if (options.changes.any())
        listenForChanges();
    if (options.held)
        listenForPasses();
    if (!options.plannedExport.isEmpty())
        connect(&plugin, &PluginRun::exportSeen, this, &RunSession::refuseOtherExport,
                Qt::DirectConnection);
}

RunSession::~RunSession() = default;

void RunSession::listenForChanges()
{
    connect(&plugin, &PluginRun::passOver, this, &RunSession::lookAtChanges, Qt::DirectConnection);
    // Not queued: the plugin waits meanwhile, and reads the same file.
    connect(&plugin, &PluginRun::exportSeen, this, &RunSession::identifyExport,
            Qt::DirectConnection);
}

void RunSession::listenForPasses()
{
    connect(&plugin, &PluginRun::pauseBegins, this, &RunSession::holdPlugin, Qt::DirectConnection);
    connect(&plugin, &PluginRun::passEnded, this, &RunSession::tellHold);
    connect(&plugin, &PluginRun::unloading, this, [this] { hold.release(); });
}

Failure RunSession::run()
{
    if (options.timeout > 0)
        watchdog.arm(options.timeout * 1000, [this] { cut(timedOut()); });
    if (const Failure failure = prepare())
        return failure;
    return runPlugin();
}

/// What can be checked without touching anything comes first.
Failure RunSession::prepare()
{
    const Failure unfit = plugin.prepare();
    testMode = plugin.settings().testMode;
    for (const Finding &finding : plugin.findings()) {
        if (finding.severity == Finding::Warning)
            warn(codedLine(finding));
    }
    if (unfit)
        return unfit;
    if (const Failure failure = prepareDatabase())
        return failure;
    if (!localeKeepsLetters())
        warn(codedLine(finding("W-MACHINE-LOCALE", QStringLiteral("LC_ALL"))));
    return {};
}

Failure RunSession::prepareDatabase()
{
    if (!options.database.privateFolder.isEmpty()) {
        if (const Failure failure = startPrivateDatabase())
            return failure;
    }
    // No event loop runs while a server does not answer, and nothing of a pass is at work.
    signalWatch.pause();
    const Failure failure = openDatabase();
    signalWatch.resume();
    return failure;
}

Failure RunSession::openDatabase()
{
    const ConnectionParameters parameters = privateDatabase ? privateDatabase->parameters()
                                                            : options.database.connection;
    Failure failure = connection.open(parameters);
    if (!failure)
        failure = checkAttendance(connection.handle());
    if (!failure)
        failure = lock->take(parameters);
    if (!failure && options.force)
        failure = forceNextPass(connection.handle());
    connection.close();
    if (!failure && !lock->isHeld())
        warn(QStringLiteral("the server has no locks (GET_LOCK), so another 'talvenhr run' "
                            "on this database would go unnoticed"));
    if (!failure && options.changes.any())
        failure = watchChanges();
    if (!failure && !options.trace.isEmpty())
        failure = openTrace();
    if (options.changes.any() || !options.trace.isEmpty())
        callWatch.listen([this](const DatabaseCall &call, const CallOutcome &outcome) {
            hearCall(call, outcome);
        });
    return failure;
}

Failure RunSession::startPrivateDatabase()
{
    const QString folder = options.database.privateFolder;
    privateDatabase.reset(new PrivateDatabase(folder));
    connect(privateDatabase.data(), &PrivateDatabase::died, this, &RunSession::endForDeadServer);
    connect(privateDatabase.data(), &PrivateDatabase::progress, this, &RunSession::tellActivity);
    privateDatabase->setInterruption([this] { return signalWatch.hasCaught(); });
    if (const Failure failure = privateDatabase->start())
        return failure;
    serverProcess = privateDatabase->serverProcessId();
    if (options.database.isDefault)
        writer->say(
            QStringLiteral("no database named, so a private one is used, in '%1'%2")
                .arg(folder, privateDatabase->isNew() ? QStringLiteral(", new") : QString()));
    else if (privateDatabase->isNew())
        writer->say(
            QStringLiteral("new private database with the sample company in '%1'").arg(folder));
    return {};
}

Failure RunSession::watchChanges()
{
    changes.reset(new ChangeWatch(options.changes));
    return changes->begin(privateDatabase ? privateDatabase->administratorParameters()
                                          : options.database.connection);
}

Failure RunSession::openTrace()
{
    return trace.open(options.trace);
}

/// On any thread.
void RunSession::hear(QtMsgType type, const QString &text)
{
    if (options.changes.any())
        notes.message(type, text);
    if (!options.trace.isEmpty())
        trace.message(type, text);
}

/// On the thread that has made the call.
void RunSession::hearCall(const DatabaseCall &call, const CallOutcome &outcome)
{
    if (options.changes.any())
        notes.countStatement(call);
    if (!options.trace.isEmpty())
        trace.call(call, outcome);
}

void RunSession::closeTrace()
{
    const Failure failure = trace.close();
    if (!failure)
        return;
    warn(failure.text);
    traceIsLost = true;
}

Failure RunSession::runPlugin()
{
    const Failure failure = plugin.run(callWatch.watched(connection.handle()));
    if (!graceRuns)
        watchdog.disarm();
    if (!hasPlugin)
        return failure;
    // What is still to be told: the pass ended too late for the loop, or the attempt failed.
    tellChanges();
    if (changes && !options.changes.folder.isEmpty()
        && changes->toldPass() < plugin.figures().passes)
        changesAreLost = true;
    closeTrace();
    if (privateDatabase) {
        if (!graceRuns)
            privateDatabase->waitForJoiners();
        privateDatabase->stop();
    }
    serverProcess = 0;
    watchdog.disarm();
    const RunEnding end = ending(failure);
    writer->summary(runSummary(figures(), testMode, clock.elapsed(), end));
    return {end.exitCode, QString()};
}

RunFigures RunSession::figures() const
{
    RunFigures all = plugin.figures();
    all.warnings += ownWarnings;
    all.dropped = droppedLines;
    return all;
}

void RunSession::tellActivity(const QString &what)
{
    writer->activity(what);
}

void RunSession::tellStart()
{
    hasPlugin = true;
    watchdog.disarm();
    if (options.timeout > 0) {
        const int left = static_cast<int>(qMax(options.timeout * 1000LL - clock.elapsed(), 0LL));
        QTimer::singleShot(left, this, &RunSession::endForTimeout);
        // Also where this thread does not get to the timer.
        watchdog.arm(left + options.grace * 1000, [this] { cut(timedOut()); });
    }
    const uint firstTick = plugin.settings().tickMilliseconds;
    if (firstTick > longWait)
        writer->say(QStringLiteral("the first pass begins at %1, as timerInterval says")
                        .arg(timeText(QDateTime::currentDateTime().addMSecs(firstTick))));
}

void RunSession::tellNextPass()
{
    const QDateTime next = plugin.nextPass();
    if (options.logLevel > 0 && next.isValid()
        && QDateTime::currentDateTime().msecsTo(next) > longWait)
        writer->say(
            QStringLiteral("the next pass begins at %1, unless one is forced").arg(timeText(next)));
}

void RunSession::tellWaiting(bool again)
{
    waiting = true;
    const QString text = again
        ? QStringLiteral("still waiting for the running pass; it is cut in %1 s")
        : graceRuns ? QStringLiteral("waiting for the running pass to end; it is cut in %1 s")
                    : QStringLiteral("waiting for the running pass to end; a second signal cuts it "
                                     "after %1 s");
    writer->say(text.arg(options.grace));
}

/// What cannot be told now comes with the next pass, or at the end.
void RunSession::tellChanges()
{
    if (!changes || firstFailure.exitCode == ExitDatabase)
        return;
    ChangesHeader header;
    header.plugin = plugin.version();
    header.settings = plugin.settings().digest;
    const QStringList troubles = changes->tell(&notes, header);
    for (const QString &trouble : troubles)
        warn(trouble);
    outputIsLost = changes->outputIsLost();
    changesAreLost = changes->fileIsMissing();
}

/// The next pass may fall due at once, so this one waits for nobody.
void RunSession::lookAtChanges()
{
    changes->look(plugin.figures().passes, &notes);
}

void RunSession::tellHold()
{
    hold.tell(plugin.figures().passes);
}

/// The end of the input is the end of the run.
void RunSession::holdPlugin()
{
    if (plugin.figures().passes != options.passes && !hold.waitForLine())
        QMetaObject::invokeMethod(&plugin, "finish", Qt::QueuedConnection);
}

/// What the plugin does not say, or not at every level.
void RunSession::tellOfExport()
{
    const ExportGlance glance = plugin.takeGlance();
    droppedLines += glance.fates.dropped;
    for (const Finding &finding : glance.findings) {
        warn(codedLine(finding));
    }
    sawUselessExport = sawUselessExport || glance.sawUseless;
}

/// Just before the plugin opens the file.
void RunSession::identifyExport(int dropped)
{
    notes.linesDropped(dropped);
    notes.exportRead(identityOf(plugin.settings().importFile));
}

void RunSession::tellMissingExport()
{
    const QFileInfo file(plugin.settings().importFile);
    if (!file.exists() && !file.isSymLink()) {
        if (options.logLevel < missingExportLevel)
            writer->say(QStringLiteral("no export file at '%1'").arg(file.filePath()));
        return;
    }
    sawUselessExport = true;
    const QString remedy = QStringLiteral(
        "; the plugin reads regular files only, so put the export "
        "there, or correct importFile");
    if (!file.exists())
        warn(QStringLiteral("the export '%1' is a link to '%2', which is not there")
                 .arg(file.filePath(), file.symLinkTarget())
             + remedy);
    else if (file.isDir())
        warn(QStringLiteral("the export '%1' is a folder").arg(file.filePath()) + remedy);
    else
        warn(QStringLiteral("the export '%1' is no regular file").arg(file.filePath()) + remedy);
}

void RunSession::warn(const QString &text)
{
    ++ownWarnings;
    writer->warn(text);
}
