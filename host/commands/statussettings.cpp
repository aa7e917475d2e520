// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a status is taken from, and where it is published.
#include "host/commands/statussettings.h"

#include "host/base/shellword.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/commands/databaselook.h"
#include "host/commands/gatefolders.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/settingsfile.h"
#include "host/status/databasestatus.h"
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "host/status/statussite.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(StatusSettings)
};

/// A value that only the file can hold; empty where it does not.
QString fileValue(const Options &options, const QString &setting)
{
    return options.configuration().entry(setting).value;
}

/// A relative one counts from the folder of the file.
QString filePath(const Options &options, const QString &setting)
{
    const QString path = fileValue(options, setting);
    return path.isEmpty()
        ? path
        : QDir(QFileInfo(options.configuration().path()).path()).absoluteFilePath(path);
}

Failure readReaders(const Options &options, FileReaders *readers)
{
    const QString setting = QStringLiteral("status/readers");
    const QString who = fileValue(options, setting);
    const QStringList names {QStringLiteral("nobody"), QStringLiteral("group"),
                             QStringLiteral("all")};
    const int index = who.isEmpty() ? 0 : names.indexOf(who);
    if (index < 0)
        return {ExitUsage,
                Text::tr("'readers' in %1, line %2, takes nobody, group or all, not '%3'")
                    .arg(options.configuration().path())
                    .arg(options.configuration().entry(setting).line)
                    .arg(who)};
    *readers = static_cast<FileReaders>(index);
    return {};
}

/// Names nothing to be written where it cannot be known for whom.
Failure readPublishing(const Options &options, StatusSettings *settings)
{
    bool hidesNames = false;
    if (const Failure failure = options.yesOrNo(QStringLiteral("status/no-names"), &hidesNames))
        return failure;
    if (hidesNames)
        settings->site.texts = PersonalTexts::Hidden;
    if (const Failure failure = readReaders(options, &settings->site.readers))
        return failure;
    settings->site.folder = filePath(options, QStringLiteral("status/html"));
    settings->metricsFile = filePath(options, QStringLiteral("metrics/file"));
    return {};
}

Failure readGate(const Options &options, StatusSources *sources)
{
    GateFolders folders;
    const Failure failure = readGateFolders(options, &folders);
    sources->incoming = folders.incoming;
    const QString pattern = fileValue(options, QStringLiteral("gate/pattern"));
    if (!pattern.isEmpty())
        sources->pattern = pattern;
    sources->archive = folders.archive;
    sources->refused = folders.refused;
    sources->state = folders.state;
    sources->place = folders.place;
    sources->lateAfter = 3600LL * folders.lateAfter;
    return failure;
}

/// What the plugin's settings tell of place and times, if their folder is named.
Failure readPluginSettings(const Options &options, StatusSources *sources)
{
    QString directory;
    if (const Failure failure = readDataDirectory(options, &directory))
        return failure;
    if (directory.isEmpty())
        return {};
    const SettingsFile file(QDir(directory).filePath(QStringLiteral("TalvenHR.ini")));
    if (const Failure failure = file.check())
        return failure;
    const PluginSettings values = file.values();
    if (sources->place.isEmpty())
        sources->place = values.importFile;
    sources->staysInPlace = !file.toBool(QStringLiteral("deleteFile"));
    sources->tickSeconds = values.tickMilliseconds / 1000;
    sources->passSeconds = sources->tickSeconds * values.syncInterval;
    return {};
}

/// A client on the database, without a login: whoever looks may only read.
QString clientOf(const DatabaseChoice &database)
{
    if (!database.privateFolder.isEmpty())
        return QStringLiteral("talvenhr sql --private-db ") + shellWord(database.privateFolder);
    const ConnectionParameters &connection = database.connection;
    QString client = QStringLiteral("mariadb");
    if (!connection.host.isEmpty())
        client += QStringLiteral(" --host ") + shellWord(connection.host);
    if (connection.port > 0)
        client += QStringLiteral(" --port %1").arg(connection.port);
    if (!connection.socket.isEmpty())
        client += QStringLiteral(" --socket ") + shellWord(connection.socket);
    return client + QLatin1Char(' ') + shellWord(connection.database);
}

/// The plugin would read what is written there, also while no export is there.
Failure checkPlace(const StatusSettings &settings)
{
    const QString place = settings.sources.place;
    const auto isPlace = [&place](const QString &target) {
        return !target.isEmpty() && !place.isEmpty()
            && QFileInfo(target).absoluteFilePath() == QFileInfo(place).absoluteFilePath();
    };
    if (isPlace(settings.metricsFile) || isPlace(settings.site.folder))
        return {ExitUsage, Text::tr("'%1' is where the plugin reads its export").arg(place)};
    return {};
}

} // namespace

QStringList publishingSettings()
{
    return {QStringLiteral("status/html"), QStringLiteral("status/no-names"),
            QStringLiteral("status/readers"), QStringLiteral("metrics/file")};
}

Failure readStatusSettings(const Options &options, StatusSettings *settings)
{
    StatusSources &sources = settings->sources;
    const Failure gate = readGate(options, &sources);
    const Failure plugin = readPluginSettings(options, &sources);
    const Failure database = readDatabaseOptions(options, &settings->database);
    sources.namesDatabase = !settings->database.isDefault;
    if (sources.namesDatabase)
        sources.client = clientOf(settings->database);
    const Failure publishing = readPublishing(options, settings);
    for (const Failure &failure : {gate, plugin, database, publishing}) {
        if (failure)
            return failure;
    }
    return {};
}

QStringList publishingProblems(const Options &options)
{
    QStringList problems;
    StatusSettings settings;
    readStatusSettings(options, &settings);
    for (const Failure &failure :
         {readPublishing(options, &settings), checkTargets(settings, {})}) {
        if (failure)
            problems.append(failure.text);
    }
    return problems;
}

Failure checkTargets(const StatusSettings &settings, const QStringList &inputs)
{
    if (const Failure failure = checkPlace(settings))
        return failure;
    return checkOutputFiles({settings.metricsFile}, inputs);
}

Status takeStatus(const StatusSettings &settings)
{
    Status status = readStatus(settings.sources, QDateTime::currentDateTime());
    if (settings.database.isDefault || !settings.whyNoDatabase.isEmpty()) {
        status.unknown.append(
            {Text::tr("the database"),
             settings.database.isDefault ? Text::tr("none is named") : settings.whyNoDatabase,
             false});
        return status;
    }
    DatabaseLook look;
    // A private one is read as its administrator.
    Connection connection(QStringLiteral("status"));
    Failure failure = look.open(settings.database);
    if (!failure)
        failure = connection.open(withTimeLimits(look.parameters(), DatabaseLook::patience));
    if (!failure)
        failure = addDatabase(connection.handle(), &status);
    status.databaseTrouble = failure.text;
    return status;
}

Failure publishStatus(const StatusSettings &settings)
{
    if (settings.site.folder.isEmpty() && settings.metricsFile.isEmpty())
        return {};
    return publishStatus(takeStatus(settings), settings);
}

Failure publishStatus(const Status &status, const StatusSettings &settings)
{
    if (const Failure failure = checkPlace(settings))
        return failure;
    Failure metrics;
    if (!settings.metricsFile.isEmpty())
        metrics = writeMetrics(status, settings.metricsFile);
    if (!settings.site.folder.isEmpty()) {
        if (const Failure failure = writeSite(status, settings.site))
            return failure;
    }
    return metrics;
}
