// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run of the plugin, from loading to unloading it.
#include "host/commands/runsession.h"

#include "host/report/logwriter.h"
#include "host/server/privatedatabase.h"
#include "plugin/serverinterface.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

const uint longWait = 5000; // milliseconds

bool wantsProgress(const RunOptions &options)
{
    // At level 3 each record has a line of its own.
    return options.logFormat == LogFormat::Text && options.logLevel < 3
        && ProgressBar::isPossible();
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
    log(logWriter, runOptions.logLevel, wantsProgress(runOptions)),
    dataDirectory(runOptions.dataDirectory),
    plugin(runOptions.pluginFile)
{
    log.endAfterPasses(options.passes);
    connect(&signalWatch, SIGNAL(caught()), this, SLOT(endForSignal()));
    connect(&log, SIGNAL(passEnded()), this, SLOT(countPass()), Qt::QueuedConnection);
    connect(&log, SIGNAL(exportMissing()), this, SLOT(tellMissingExport()), Qt::QueuedConnection);
    connect(&log, SIGNAL(databaseNotOpen()), this, SLOT(endForLostTick()), Qt::QueuedConnection);
}

RunSession::~RunSession() = default;

int RunSession::run()
{
    Failure failure = prepare();
    QElapsedTimer clock;
    clock.start();
    if (!failure)
        failure = startPlugin();
    if (failure) {
        writer->fail(failure.text);
        return failure.exitCode;
    }

    loop.exec();
    plugin.unload();
    const qint64 duration = clock.elapsed();
    if (privateDatabase)
        privateDatabase->stop();

    const RunFigures figures = log.figures();
    writer->summary(figures, duration);
    if (outcome)
        return outcome.exitCode;
    return figures.errors > 0 ? ExitErrorsLogged : ExitClean;
}

/// What can be checked without touching anything comes first.
Failure RunSession::prepare()
{
    if (const Failure failure = plugin.check())
        return failure;
    if (const Failure failure = checkSettings())
        return failure;
    if (!options.privateFolder.isEmpty()) {
        if (const Failure failure = startPrivateDatabase())
            return failure;
    }
    if (const Failure failure = database.prepare(
            privateDatabase ? privateDatabase->parameters() : options.connection, options.force))
        return failure;

    if (!localeKeepsLetters())
        writer->warn(QStringLiteral("names will show as '?' in this locale; set LC_ALL=C.UTF-8"));
    return plugin.load();
}

Failure RunSession::checkSettings()
{
    if (const Failure failure = dataDirectory.readSettings(&settings))
        return failure;
    if (settings.syncInterval == 0 && options.passes != 1)
        return {
            ExitUsage,
            QStringLiteral("syncInterval is 0, by which the second tick would divide; set it to "
                           "1 or more in '%1', or use --once")
                .arg(dataDirectory.iniFile())};
    return {};
}

Failure RunSession::startPrivateDatabase()
{
    privateDatabase.reset(new PrivateDatabase(options.privateFolder));
    connect(privateDatabase.data(), SIGNAL(died(QString)), this, SLOT(endForDeadServer(QString)));
    if (const Failure failure = privateDatabase->start())
        return failure;
    if (options.privateByDefault)
        writer->say(QStringLiteral("no database named, so a private one is used, in '%1'%2")
                        .arg(options.privateFolder,
                             privateDatabase->isNew() ? QStringLiteral(", new") : QString()));
    else if (privateDatabase->isNew())
        writer->say(QStringLiteral("new private database with the sample company in '%1'")
                        .arg(options.privateFolder));
    return {};
}

Failure RunSession::startPlugin()
{
    ServerInterface *server = plugin.server();
    server->setLogLevel(static_cast<quint8>(log.pluginLogLevel()));
    server->setDatabase(database.handle());
    if (options.timeout > 0)
        QTimer::singleShot(options.timeout * 1000, this, SLOT(endForTimeout()));
    const bool started = server->start();
    if (log.sawPluginDisabled())
        return {ExitUsage,
                QStringLiteral("the plugin is disabled; set enabled=true in '%1'")
                    .arg(dataDirectory.iniFile())};
    if (!started)
        return {ExitUsage, QStringLiteral("the plugin could not be started")};
    if (options.passes > 0 && settings.tickMilliseconds > longWait)
        writer->say(QStringLiteral("the first pass begins in %1 s, as timerInterval says")
                        .arg(settings.tickMilliseconds / 1000));
    return {};
}

void RunSession::endForSignal()
{
    if (ending)
        writer->say(QStringLiteral("still waiting for the running pass"));
    finish();
}

void RunSession::endForTimeout()
{
    if (ending)
        return;
    fail({ExitTimeout, QStringLiteral("timed out after %1 s").arg(options.timeout)});
    finish();
}

void RunSession::endForDeadServer(const QString &reason)
{
    // Neither waiting for the pass nor for an answer: nothing more can come of it.
    fail({ExitDatabase, reason + QStringLiteral("; its data are kept, so just run again")});
    loop.quit();
}

void RunSession::endForLostTick()
{
    if (options.passes == 0 || outcome)
        return;
    fail(
        {ExitDatabase, QStringLiteral("the database cannot be opened any more; check its server")});
    finish();
}

void RunSession::tellMissingExport()
{
    writer->say(QStringLiteral("no export file at '%1'").arg(settings.importFile));
}

void RunSession::countPass()
{
    if (ending || (options.passes > 0 && log.figures().passes >= options.passes))
        loop.quit();
}

/// Ends the run at once, or after the running pass. Waiting for it here, and not in the plugin's
/// destructor, leaves the signals answered.
void RunSession::finish()
{
    if (!log.isPassRunning()) {
        loop.quit();
        return;
    }
    if (ending)
        return;
    ending = true;
    log.endAfterThisPass();
    writer->say(QStringLiteral("waiting for the running pass to end"));
}

void RunSession::fail(const Failure &failure)
{
    outcome = failure;
    writer->fail(failure.text);
}
