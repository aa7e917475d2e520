// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run` at work: a run of the plugin, with signals, a timeout and a private server.
#include "host/commands/runsession.h"

#include "host/commands/runsummary.h"
#include "host/server/privatedatabase.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

const uint longWait = 5000; // milliseconds

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

/// Whether Czech and Slovak names survive on their way into the log.
bool localeKeepsLetters()
{
    const QString letters = QStringLiteral("Ľř");
    return QString::fromLocal8Bit(letters.toLocal8Bit()) == letters;
}

} // namespace

RunSession::RunSession(const RunOptions &runOptions, LogWriter *logWriter) :
    options(runOptions),
    writer(logWriter),
    plugin(pluginOptionsOf(runOptions), logWriter)
{
    connect(&signalWatch, &SignalWatch::caught, &plugin, [this] { plugin.finish(); });
    connect(&plugin, &PluginRun::started, this, &RunSession::tellStart);
    connect(&plugin, &PluginRun::waitingForPass, this, &RunSession::tellWaiting);
    connect(&plugin, &PluginRun::exportMissing, this, &RunSession::tellMissingExport);
    connect(&plugin, &PluginRun::databaseNotOpen, this, &RunSession::endForLostTick);
}

RunSession::~RunSession() = default;

Failure RunSession::run()
{
    if (const Failure failure = prepare())
        return failure;
    if (const Failure failure = runPlugin())
        return failure;
    return {plugin.figures().errors > 0 ? ExitErrors : ExitClean, QString()};
}

/// What can be checked without touching anything comes first.
Failure RunSession::prepare()
{
    const Failure unfit = plugin.prepare();
    for (const Finding &finding : plugin.findings()) {
        if (finding.severity == Finding::Warning)
            writer->warn(findingLine(finding));
    }
    if (unfit)
        return unfit;
    if (!options.database.privateFolder.isEmpty()) {
        if (const Failure failure = startPrivateDatabase())
            return failure;
    }
    if (const Failure failure = database.prepare(privateDatabase ? privateDatabase->parameters()
                                                                 : options.database.connection,
                                                 options.force))
        return failure;
    if (!localeKeepsLetters())
        writer->warn(QStringLiteral("names will show as '?' in this locale; set LC_ALL=C.UTF-8"));
    return {};
}

Failure RunSession::startPrivateDatabase()
{
    const QString folder = options.database.privateFolder;
    privateDatabase.reset(new PrivateDatabase(folder));
    connect(privateDatabase.data(), &PrivateDatabase::died, this, &RunSession::endForDeadServer);
    if (const Failure failure = privateDatabase->start())
        return failure;
    if (options.database.isDefault)
        writer->say(
            QStringLiteral("no database named, so a private one is used, in '%1'%2")
                .arg(folder, privateDatabase->isNew() ? QStringLiteral(", new") : QString()));
    else if (privateDatabase->isNew())
        writer->say(
            QStringLiteral("new private database with the sample company in '%1'").arg(folder));
    return {};
}

Failure RunSession::runPlugin()
{
    QElapsedTimer clock;
    clock.start();
    const Failure failure = plugin.run(database.handle());
    const qint64 duration = clock.elapsed();
    if (failure && !failure.text.isEmpty())
        return failure;
    if (privateDatabase)
        privateDatabase->stop();
    writer->summary(runSummary(plugin.figures(), duration));
    return failure;
}

void RunSession::tellStart()
{
    if (options.timeout > 0)
        QTimer::singleShot(options.timeout * 1000, this, &RunSession::endForTimeout);
    const uint firstTick = plugin.settings().tickMilliseconds;
    if (options.passes > 0 && firstTick > longWait)
        writer->say(QStringLiteral("the first pass begins in %1 s, as timerInterval says")
                        .arg(firstTick / 1000));
}

void RunSession::tellWaiting(bool again)
{
    ending = true;
    writer->say(again ? QStringLiteral("still waiting for the running pass")
                      : QStringLiteral("waiting for the running pass to end"));
}

void RunSession::tellMissingExport()
{
    writer->say(QStringLiteral("no export file at '%1'").arg(plugin.settings().importFile));
}

void RunSession::endForTimeout()
{
    if (!ending)
        plugin.finish(
            told({ExitTimeout, QStringLiteral("timed out after %1 s").arg(options.timeout)}));
}

void RunSession::endForDeadServer(const QString &reason)
{
    // Not even waiting for the pass: nothing more can come of it.
    plugin.abort(
        told({ExitDatabase, reason + QStringLiteral("; its data are kept, so just run again")}));
}

void RunSession::endForLostTick()
{
    if (options.passes > 0 && !failed)
        plugin.finish(told({ExitDatabase,
                            QStringLiteral("the database cannot be opened any more; check its "
                                           "server")}));
}

/// Tells the failure at once, so that it stands in the log where it happened.
Failure RunSession::told(const Failure &failure)
{
    failed = true;
    writer->fail(failure.text);
    return {failure.exitCode, QString()};
}
