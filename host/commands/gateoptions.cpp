// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The settings of the gate, from options and talvenhr.conf.
#include "host/commands/gateoptions.h"

#include "host/base/nearest.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/commands/limitoptions.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

#include <pwd.h>
#include <unistd.h>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateOptions)
};

const int mostDays = 36500;
const int mostHours = 8760;
const int longestLimit = 86400; // seconds

/// An option of [gate].
Option gateOption(const char *name, const char *valueName, const QString &text,
                  const char *standard = "", Option::Kind kind = Option::Plain)
{
    return {QLatin1String(name),
            QLatin1String(valueName),
            text,
            QLatin1String("gate/") + QLatin1String(name),
            QLatin1String(standard),
            kind};
}

OptionGroup folderOptions()
{
    return {
        Text::tr("Folders"),
        {gateOption("incoming", "DIR", Text::tr("where exports are delivered"), "", Option::Path),
         gateOption("place", "FILE",
                    Text::tr("where the plugin finds its export (default: importFile of "
                             "TalvenHR.ini)"),
                    "", Option::Path),
         gateOption("archive", "DIR",
                    Text::tr("keeps what went through (default: archive, beside incoming)"), "",
                    Option::Path),
         gateOption("refused", "DIR",
                    Text::tr("keeps what was refused (default: refused, beside incoming)"), "",
                    Option::Path),
         gateOption("state", "DIR",
                    Text::tr("lock and work of the gate (default: state, beside incoming)"), "",
                    Option::Path),
         gateOption("keep-days", "DAYS",
                    Text::tr("how long exports and reports are kept (default: 90)"), "90")}};
}

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
         gateOption("late-after", "HOURS",
                    Text::tr("without a delivery; then the hook 'late' is called (default: 0, "
                             "never)"),
                    "0"),
         gateOption("time-limit", "SECONDS",
                    Text::tr("for all of it; the plugin waits without one (default: 1800)"),
                    "1800")}};
}

OptionGroup releaseOptions()
{
    return {Text::tr("One export, by a person"),
            {{QStringLiteral("release"), QStringLiteral("REFUSED"),
              Text::tr("let this one through, as it is, in spite of all that was found")},
             {QStringLiteral("allow"), QStringLiteral("LIMIT=N"),
              Text::tr("decide about FILE again, with this limit for once; may be repeated")},
             {QStringLiteral("reason"), QStringLiteral("TEXT"),
              Text::tr("why; it is kept with the export")}}};
}

/// A word out of a few.
Failure readWord(const Options &options, const char *name, const QStringList &words, int *place)
{
    const QString option = QLatin1String(name);
    *place = words.indexOf(options.value(option));
    if (*place >= 0)
        return {};
    return options.usageFailure(Text::tr("%1 takes one of %2, not '%3'%4")
                                    .arg(options.placeOf(option), words.join(QStringLiteral(", ")),
                                         options.value(option),
                                         didYouMean(options.value(option), words)));
}

/// A folder, or one of this name beside `incoming`.
QString folderOf(const Options &options, const char *name, const QString &incoming)
{
    const QString option = QLatin1String(name);
    return options.isGiven(option) ? options.value(option)
                                   : QFileInfo(incoming).dir().filePath(option);
}

Failure readLateness(const Options &options, int *hours)
{
    return options.number(QStringLiteral("late-after"), 0, mostHours, hours);
}

Failure readFolders(const Options &options, GateSettings *settings)
{
    const QString incoming = options.value(QStringLiteral("incoming"));
    if (incoming.isEmpty())
        return options.usageFailure(
            Text::tr("no folder of deliveries is named; set 'incoming' in [gate] of talvenhr.conf, "
                     "or use --incoming"));
    settings->incoming.folder = QFileInfo(incoming).absoluteFilePath();
    settings->archive = folderOf(options, "archive", settings->incoming.folder);
    settings->refused = folderOf(options, "refused", settings->incoming.folder);
    settings->state = folderOf(options, "state", settings->incoming.folder);
    settings->place = options.value(QStringLiteral("place"));
    QStringList folders {settings->incoming.folder, settings->archive, settings->refused,
                         settings->state};
    for (QString &folder : folders)
        folder = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    if (folders.removeDuplicates() > 0)
        return options.usageFailure(
            Text::tr("incoming, archive, refused and state have to be four folders"));
    return options.number(QStringLiteral("keep-days"), 1, mostDays, &settings->keepDays);
}

Failure readRoad(const Options &options, GateOptions *gate)
{
    GateSettings &settings = gate->settings;
    settings.incoming.pattern = options.value(QStringLiteral("pattern"));
    if (!QRegExp(settings.incoming.pattern, Qt::CaseSensitive, QRegExp::Wildcard).isValid())
        return options.usageFailure(
            Text::tr("%1 takes a name with * and ?, not '%2'")
                .arg(options.placeOf(QStringLiteral("pattern")), settings.incoming.pattern));
    int place = 0;
    if (const Failure failure = readWord(
            options, "complete",
            {QStringLiteral("rename"), QStringLiteral("done"), QStringLiteral("still")}, &place))
        return failure;
    settings.incoming.complete = static_cast<Completeness>(place);
    if (const Failure failure = readWord(options, "first",
                                         {QStringLiteral("pass"), QStringLiteral("hold")}, &place))
        return failure;
    settings.holdsFirst = place == 1;
    if (const Failure failure = readWord(
            options, "rehearse",
            {QStringLiteral("auto"), QStringLiteral("yes"), QStringLiteral("no")}, &place))
        return failure;
    gate->rehearsal = static_cast<GateRehearsal>(place);
    if (const Failure failure = options.number(QStringLiteral("still-for"), 0, longestLimit,
                                               &settings.incoming.stillFor))
        return failure;
    if (const Failure failure = readLateness(options, &settings.lateAfter))
        return failure;
    return options.number(QStringLiteral("time-limit"), 1, longestLimit, &gate->timeLimit);
}

Failure readRefusals(const Options &options, JudgeSettings *judge)
{
    const QString option = QStringLiteral("refuse");
    judge->refuse = standardRefusals();
    if (!options.isGiven(option))
        return {};
    judge->refuse = options.value(option).split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (QString &word : judge->refuse)
        word = word.trimmed();
    const Failure failure = checkRefusals(judge->refuse);
    return failure ? options.usageFailure(
               Text::tr("%1 cannot be taken: %2").arg(options.placeOf(option), failure.text))
                   : Failure();
}

Failure readMend(const Options &options, MendWishes *mend)
{
    const Configuration &file = options.configuration();
    const struct
    {
        const char *key;
        bool *wish;
    } switches[] = {
        {"mend/apostrophe", &mend->apostrophe}, {"mend/bom", &mend->bom}, {"mend/cr", &mend->cr}};
    for (const auto &one : switches) {
        const QString value = file.entry(QLatin1String(one.key)).value;
        if (!value.isEmpty() && value != QLatin1String("yes") && value != QLatin1String("no"))
            return options.usageFailure(Text::tr("'%1' of '%2' is yes or no, not '%3'")
                                            .arg(QLatin1String(one.key), file.path(), value));
        *one.wish = value == QLatin1String("yes");
    }
    mend->encoding = file.entry(QStringLiteral("mend/encoding")).value;
    return checkWishes(*mend);
}

/// The login of the machine.
QString whoAmI()
{
    const passwd *user = ::getpwuid(::getuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : QString::number(::getuid());
}

Failure readRelease(const Options &options, std::optional<ReleaseWish> *release)
{
    const QString released = options.value(QStringLiteral("release"));
    const QStringList allowed = options.values(QStringLiteral("allow"));
    const QString file = options.argument(0);
    const QString reason = options.value(QStringLiteral("reason"));
    if (released.isEmpty() && allowed.isEmpty() && file.isEmpty() && reason.isEmpty())
        return {};
    if (released.isEmpty() == (allowed.isEmpty() && file.isEmpty()))
        return options.usageFailure(Text::tr(
            "to let one export through, write --release REFUSED, or --allow LIMIT=N FILE"));
    if (released.isEmpty() && (allowed.isEmpty() || file.isEmpty()))
        return options.usageFailure(Text::tr("--allow and FILE go together: the limit, and the "
                                             "name of the refused export or its path"));
    if (reason.trimmed().isEmpty())
        return options.usageFailure(
            Text::tr("--reason is missing; the next one who looks will ask why"));
    for (const QString &text : allowed) {
        Limit limit;
        if (const Failure failure = readLimit(text, &limit))
            return options.usageFailure(failure.text);
    }
    *release = ReleaseWish {released.isEmpty() ? file : released, {whoAmI(), reason, allowed}};
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
    if (gate->settings.place.isEmpty())
        gate->settings.place = settings.values().importFile;
    if (const Failure failure = checkPlace(options, gate->settings))
        return failure;
    gate->settings.isRemovedWhenRead = settings.toBool(QStringLiteral("deleteFile"));
    gate->settings.judge.stateTexts = settings.stateTexts();
    return {};
}

} // namespace

bool GateOptions::rehearses() const
{
    return rehearsal == GateRehearsal::Yes
        || (rehearsal == GateRehearsal::Auto && !database.isDefault);
}

OptionGroup gateFolderOptions()
{
    OptionGroup group = folderOptions();
    group.title = Text::tr("Gate");
    group.options += roadOptions().options;
    const QStringList wanted {QStringLiteral("incoming"), QStringLiteral("place"),
                              QStringLiteral("archive"),  QStringLiteral("refused"),
                              QStringLiteral("state"),    QStringLiteral("late-after")};
    const auto unwanted = std::remove_if(
        group.options.begin(), group.options.end(),
        [&wanted](const Option &option) { return !wanted.contains(option.name); });
    group.options.erase(unwanted, group.options.end());
    return group;
}

Failure readGateFolders(const Options &options, GateFolders *folders)
{
    folders->incoming = options.value(QStringLiteral("incoming"));
    folders->place = options.value(QStringLiteral("place"));
    const struct
    {
        const char *name;
        QString *folder;
    } others[] = {
        {"archive", &folders->archive}, {"refused", &folders->refused}, {"state", &folders->state}};
    for (const auto &other : others)
        *other.folder = folders->incoming.isEmpty()
            ? options.value(QLatin1String(other.name))
            : folderOf(options, other.name, QFileInfo(folders->incoming).absoluteFilePath());
    return readLateness(options, &folders->lateAfter);
}

QVector<OptionGroup> gateOptionGroups()
{
    return {folderOptions(), roadOptions(), releaseOptions()};
}

QStringList gateFileSettings()
{
    return limitSettings()
        + QStringList {QStringLiteral("hooks/passed"), QStringLiteral("hooks/refused"),
                       QStringLiteral("hooks/late"),   QStringLiteral("mend/apostrophe"),
                       QStringLiteral("mend/bom"),     QStringLiteral("mend/cr"),
                       QStringLiteral("mend/encoding")};
}

Failure readGateOptions(const Options &options, GateOptions *gate)
{
    GateSettings &settings = gate->settings;
    const Configuration &file = options.configuration();
    settings.passedHook = file.entry(QStringLiteral("hooks/passed")).value;
    settings.refusedHook = file.entry(QStringLiteral("hooks/refused")).value;
    settings.lateHook = file.entry(QStringLiteral("hooks/late")).value;
    if (const Failure failure = readFolders(options, &settings))
        return failure;
    if (const Failure failure = readRoad(options, gate))
        return failure;
    if (const Failure failure = readRefusals(options, &settings.judge))
        return failure;
    settings.judge.limits = standardGateLimits();
    if (const Failure failure = readLimitsOfFile(options, &settings.judge.limits))
        return failure;
    if (const Failure failure = readMend(options, &settings.mend))
        return failure;
    if (const Failure failure = readRelease(options, &gate->release))
        return failure;
    if (const Failure failure = readPluginSettings(options, gate))
        return failure;
    if (const Failure failure = readDatabaseOptions(options, &gate->database))
        return failure;
    if (gate->rehearsal == GateRehearsal::Yes && gate->database.isDefault)
        return options.usageFailure(
            Text::tr("rehearse=yes takes a database; name one in [database]"));
    return {};
}
