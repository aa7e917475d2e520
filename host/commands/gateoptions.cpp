// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The settings of the gate, from options and talvenhr.conf.
#include "host/commands/gateoptions.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/commands/gatefolders.h"
#include "host/commands/gateowner.h"
#include "host/commands/gatevalues.h"
#include "host/commands/limitoptions.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <pwd.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateOptions)
};

OptionGroup roadOptions()
{
    return {
        Text::tr("Road"),
        {gateOption("pattern", "NAMES", Text::tr("of delivered files (default: *)"), "*"),
         gateOption("complete", "HOW",
                    Text::tr("how a delivery is known to be whole: rename, done (a file of the "
                             "same name and .done) or still (default)"),
                    "still"),
         gateOption("still-for", "SECONDS",
                    Text::tr("how long nobody may have written to it, with still (default: 10)"),
                    "10"),
         gateOption("refuse", "WORDS",
                    Text::tr("severities and codes of findings that refuse an export, with commas"),
                    ""),
         gateOption("first", "HOW",
                    Text::tr("the first export of all: pass (default), or hold for a person"),
                    "pass"),
         gateOption("rehearse", "WHEN",
                    Text::tr("yes, no, or auto (default): where a database is named"), "auto"),
         latenessOption(),
         gateOption("time-limit", "SECONDS",
                    Text::tr("for all of it; the plugin waits without one (default: 1800)"),
                    "1800")}};
}

OptionGroup releaseOptions()
{
    return {Text::tr("One export, by a person"),
            {{QStringLiteral("release"), QStringLiteral("REFUSED"),
              Text::tr("let this one through, as it is, in spite of all that was found")},
             {QStringLiteral("allow"), QStringLiteral("LIMIT=N|CODE"),
              Text::tr("decide about FILE again, with this limit for once, or with a difference "
                       "from the last good export allowed, by its code; may be repeated")},
             {QStringLiteral("over-newer"), QString(),
              Text::tr("with --release: also in place of a newer one that was not read yet")},
             {QStringLiteral("reason"), QStringLiteral("TEXT"),
              Text::tr("why; it is kept with the export")}}};
}

/// Leaves the state unnamed where the four folders cannot be: nothing may be kept there.
Failure readFolders(const Options &options, GateSettings *settings)
{
    const QString incoming = options.value(QStringLiteral("incoming"));
    if (incoming.isEmpty())
        return options.usageFailure(
            Text::tr("no folder of deliveries is named; set 'incoming' in [gate] of talvenhr.conf, "
                     "or use --incoming"));
    settings->incoming.folder = QFileInfo(incoming).absoluteFilePath();
    settings->archive = gateFolder(options, "archive", settings->incoming.folder);
    settings->refused = gateFolder(options, "refused", settings->incoming.folder);
    const QString state = gateFolder(options, "state", settings->incoming.folder);
    settings->place = options.value(QStringLiteral("place"));
    QStringList folders {settings->incoming.folder, settings->archive, settings->refused, state};
    for (QString &folder : folders)
        folder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (folders.removeDuplicates() > 0)
        return options.usageFailure(
            Text::tr("incoming, archive, refused and state have to be four folders"));
    settings->state = state;
    return {};
}

/// The login of the machine; behind the person's own, where they work by sudo in another's name.
QString whoAmI()
{
    const passwd *user = ::getpwuid(::getuid());
    const QString account = user ? QString::fromLocal8Bit(user->pw_name)
                                 : QString::number(::getuid());
    const QString person = qEnvironmentVariable("SUDO_USER");
    return person.isEmpty() || person == account ? account
                                                 : Text::tr("%1 (as %2)").arg(person, account);
}

Failure readRelease(const Options &options, std::optional<ReleaseWish> *release)
{
    const QString released = options.value(QStringLiteral("release"));
    const QStringList allowed = options.values(QStringLiteral("allow"));
    const QString file = options.argument(0);
    const QString reason = options.value(QStringLiteral("reason"));
    const bool replacesNewer = options.isSet(QStringLiteral("over-newer"));
    if (replacesNewer && released.isEmpty())
        return options.usageFailure(Text::tr("--over-newer goes with --release"));
    if (released.isEmpty() && allowed.isEmpty() && file.isEmpty() && reason.isEmpty())
        return {};
    if (released.isEmpty() == (allowed.isEmpty() && file.isEmpty()))
        return options.usageFailure(Text::tr(
            "to let one export through, write --release REFUSED, or --allow LIMIT=N FILE"));
    if (released.isEmpty() && (allowed.isEmpty() || file.isEmpty()))
        return options.usageFailure(Text::tr("--allow and FILE go together: the limit or code, and "
                                             "the name of the refused export or its path"));
    if (reason.trimmed().isEmpty())
        return options.usageFailure(
            Text::tr("--reason is missing; the next one who looks will ask why"));
    for (const QString &text : allowed) {
        Limit limit;
        if (isOfComparison(text))
            continue;
        if (const Failure failure = readLimit(text, &limit))
            return options.usageFailure(failure.text);
    }
    *release = ReleaseWish {
        released.isEmpty() ? file : released, {whoAmI(), reason, allowed}, replacesNewer};
    return {};
}

/// The gate would take what it has put there for a delivery, or for its own.
Failure checkPlace(const Options &options, const GateSettings &settings)
{
    const QString folder = QFileInfo(settings.place).absoluteDir().canonicalPath();
    for (const QString &own :
         {settings.incoming.folder, settings.archive, settings.refused, settings.state}) {
        if (!folder.isEmpty() && folder == QFileInfo(own).canonicalFilePath())
            return options.usageFailure(
                Text::tr(
                    "the place of the export, '%1', lies in a folder of the gate; name another "
                    "folder, or another importFile in TalvenHR.ini")
                    .arg(settings.place));
    }
    return {};
}

/// What the gate put there, the plugin would look for elsewhere.
Failure checkImportFile(const SettingsFile &settings)
{
    const QString importFile = settings.toString(QStringLiteral("importFile"));
    if (QFileInfo(importFile).isAbsolute())
        return {};
    return {ExitUsage,
            Text::tr("importFile '%1' in '%2' counts from the working directory of the attendance "
                     "server, which nobody knows here: the gate could put the export where the "
                     "plugin does not look; write its whole path there, or name it by 'place' in "
                     "[gate] of talvenhr.conf")
                .arg(importFile, settings.path())};
}

/// What the plugin's own settings say of the place.
Failure readPluginSettings(const Options &options, GateOptions *gate)
{
    QString directory;
    if (const Failure failure = readDataDirectory(options, &directory))
        return failure;
    const SettingsFile settings(DataDirectory(directory).iniFile());
    gate->pluginFile = pluginFile(options);
    gate->settingsFile = settings.path();
    if (const Failure failure = settings.check())
        return failure;
    if (gate->settings.place.isEmpty()) {
        if (const Failure failure = checkImportFile(settings))
            return failure;
        gate->settings.place = settings.values().importFile;
    }
    if (const Failure failure = checkPlace(options, gate->settings))
        return failure;
    gate->settings.isRemovedWhenRead = settings.toBool(QStringLiteral("deleteFile"));
    gate->settings.judge.stateTexts = settings.stateTexts();
    return {};
}

Failure checkRehearsal(const Options &options, const GateOptions &gate)
{
    if (gate.rehearsal != GateRehearsal::Yes || !gate.database.isDefault)
        return {};
    return options.usageFailure(Text::tr("rehearse=yes takes a database; name one in [database]"));
}

} // namespace

bool GateOptions::rehearses() const
{
    return rehearsal == GateRehearsal::Yes
        || (rehearsal == GateRehearsal::Auto && !database.isDefault);
}

QString GateOptions::whyNotRehearsed() const
{
    if (rehearses())
        return {};
    return rehearsal == GateRehearsal::No ? Text::tr("'rehearse' is no")
                                          : Text::tr("no database is named");
}

QVector<OptionGroup> gateOptionGroups()
{
    return {gateFolderOptions(), roadOptions(), releaseOptions()};
}

QStringList gateFileSettings()
{
    return limitSettings() + hookSettings()
        + QStringList {QStringLiteral("mend/apostrophe"), QStringLiteral("mend/bom"),
                       QStringLiteral("mend/cr"), QStringLiteral("mend/encoding")};
}

bool isForOneExport(const Options &options)
{
    return options.isSet(QStringLiteral("release")) || options.isSet(QStringLiteral("allow"))
        || options.isSet(QStringLiteral("reason")) || options.isSet(QStringLiteral("over-newer"))
        || !options.argument(0).isEmpty();
}

Failure readGateOptions(const Options &options, GateOptions *gate)
{
    GateSettings &settings = gate->settings;
    gate->hooks = readHooks(options);
    settings.passedHook = gate->hooks.passed;
    settings.refusedHook = gate->hooks.refused;
    settings.lateHook = gate->hooks.late;
    QVector<Failure> failures {readFolders(options, &settings)};
    failures += readGateValues(options, gate);
    failures << readRelease(options, &gate->release) << readPluginSettings(options, gate)
             << readDatabaseOptions(options, &gate->database) << checkRehearsal(options, *gate);
    for (const Failure &failure : qAsConst(failures)) {
        if (failure)
            return failure;
    }
    return checkGateOwner(settings);
}

QStringList gateProblems(const Options &options, const DatabaseChoice &database)
{
    GateOptions gate;
    gate.database = database;
    QVector<Failure> failures = readGateValues(options, &gate);
    failures << checkRehearsal(options, gate);
    // Without deliveries there is no gate.
    if (!options.value(QStringLiteral("incoming")).isEmpty())
        failures << readFolders(options, &gate.settings)
                 << checkIncoming(gate.settings.incoming.folder)
                 << readPluginSettings(options, &gate);
    QStringList problems;
    for (const Failure &failure : qAsConst(failures)) {
        if (failure)
            problems.append(failure.text);
    }
    return problems + hookTroubles(readHooks(options));
}
