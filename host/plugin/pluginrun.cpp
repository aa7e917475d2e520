// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One life of a plugin: from loading it, through its passes, to unloading it.
#include "host/plugin/pluginrun.h"

#include "host/plugin/settingscheck.h"
#include "plugin/serverinterface.h"

#include <QFile>
#include <QFileInfo>
#include <QMutexLocker>

namespace {

bool lifeIsSpent = false; // a plugin was started in this process

} // namespace

PluginRun::PluginRun(const PluginRunOptions &runOptions, LogWriter *writer, QObject *parent) :
    QObject(parent),
    options(runOptions),
    log(writer, runOptions.logLevel, runOptions.showProgress),
    dataDirectory(runOptions.dataDirectory),
    plugin(runOptions.pluginFile)
{
    log.endAfterPasses(options.passes);
    // Comes first: whoever is told later finds what was looked at.
    connect(&log, &MessageLog::passEnded, this, &PluginRun::passOver, Qt::DirectConnection);
    // Queued: the messages come on the plugin's thread.
    connect(&log, &MessageLog::passEnded, this, &PluginRun::countPass, Qt::QueuedConnection);
    connect(&log, &MessageLog::passEnded, this, &PluginRun::pauseBegins, Qt::DirectConnection);
    // Not queued: the plugin waits meanwhile, and reads the same file.
    connect(&log, &MessageLog::exportReading, this, &PluginRun::lookAtExport, Qt::DirectConnection);
    connect(&log, &MessageLog::exportMissing, this, &PluginRun::exportMissing,
            Qt::QueuedConnection);
    connect(&log, &MessageLog::databaseNotOpen, this, &PluginRun::databaseNotOpen,
            Qt::QueuedConnection);
}

Failure PluginRun::prepare()
{
    if (const Failure failure = plugin.check())
        return failure;
    if (const Failure failure = dataDirectory.check())
        return failure;
    const SettingsFile file(dataDirectory.iniFile());
    if (const Failure failure = file.check())
        return failure;
    pluginSettings = file.values();
    settingFindings = settingsFindings(file);
    for (const Finding &finding : qAsConst(settingFindings)) {
        if (finding.severity == Finding::Error)
            return {ExitUsage, codedLine(finding)};
    }
    return {};
}

Failure PluginRun::run(const QSqlDatabase &handle)
{
    if (const Failure failure = start(handle))
        return failure;
    Q_EMIT started();
    loop.exec();
    Q_EMIT unloading();
    plugin.unload();
    return outcome;
}

Failure PluginRun::start(const QSqlDatabase &handle)
{
    if (lifeIsSpent)
        return {ExitUsage,
                QStringLiteral("a plugin has run in this process already; run the next one in a "
                               "process of its own")};
    if (const Failure failure = plugin.load())
        return failure;
    lifeIsSpent = true;
    ServerInterface *const server = plugin.server();
    pluginVersion = server->getVersion();
    server->setLogLevel(static_cast<quint8>(log.pluginLogLevel()));
    server->setDatabase(handle);
    const bool started = server->start();
    if (log.sawPluginDisabled())
        return {ExitUsage,
                QStringLiteral("the plugin is disabled; set enabled=true in '%1'")
                    .arg(dataDirectory.iniFile())};
    if (!started)
        return {ExitUsage, QStringLiteral("the plugin could not be started")};
    return {};
}

/// Waiting for the running pass here, and not in the plugin's destructor, leaves signals answered.
void PluginRun::finish(const Failure &failure)
{
    if (!outcome)
        outcome = failure;
    if (!log.endAfterThisPass()) {
        loop.quit();
        return;
    }
    Q_EMIT waitingForPass(ending);
    ending = true;
}

void PluginRun::abort(const Failure &failure)
{
    if (!outcome)
        outcome = failure;
    loop.quit();
}

/// On the plugin's thread, just before it opens the file.
void PluginRun::lookAtExport()
{
    QFile file(pluginSettings.importFile);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return;
    ExportCheckSettings checkSettings;
    checkSettings.today = QDate::currentDate();
    const ExportGlance seen = glanceAtExport(&file, checkSettings);
    {
        const QMutexLocker locker(&glanceMutex);
        glance += seen;
    }
    Q_EMIT exportSeen(seen.fates.dropped);
}

ExportGlance PluginRun::takeGlance()
{
    const QMutexLocker locker(&glanceMutex);
    const ExportGlance taken = glance;
    glance = ExportGlance();
    return taken;
}

void PluginRun::countPass()
{
    Q_EMIT passEnded();
    if (isOver())
        loop.quit();
}

bool PluginRun::isOver() const
{
    return ending || (options.passes > 0 && log.figures().passes >= options.passes);
}

/// The timer makes up for one tick at most, at once; the others keep their distance from it.
QDateTime PluginRun::nextPass() const
{
    const Tick tick = log.tickOfPass();
    if (tick.number == 0 || pluginSettings.syncInterval == 0 || isOver())
        return {};
    const qint64 interval = pluginSettings.tickMilliseconds;
    const uint ticks = pluginSettings.syncInterval - tick.number % pluginSettings.syncInterval;
    const QDateTime nextTick = qMax(tick.moment.addMSecs(interval), QDateTime::currentDateTime());
    return nextTick.addMSecs(qint64(ticks - 1) * interval);
}
