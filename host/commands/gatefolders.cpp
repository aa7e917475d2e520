// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folders of the gate, for all commands that know of it.
#include "host/commands/gatefolders.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/gate/exportjudge.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(GateFolders)
};

const int mostHours = 8760;

QStringList besideIncoming()
{
    return {QStringLiteral("archive"), QStringLiteral("refused"), QStringLiteral("state")};
}

/// As the plugin's settings have it.
std::optional<GateStandard> standardPlace(const Options &options)
{
    QString directory;
    if (readDataDirectory(options, &directory))
        return {};
    const SettingsFile settings(DataDirectory(directory).iniFile());
    if (settings.check())
        return {};
    return GateStandard {settings.values().importFile,
                         Text::tr("importFile of %1").arg(settings.path())};
}

} // namespace

Option gateOption(const char *name, const char *valueName, const QString &text,
                  const char *standard, Option::Kind kind)
{
    return {QLatin1String(name),
            QLatin1String(valueName),
            text,
            QLatin1String("gate/") + QLatin1String(name),
            QLatin1String(standard),
            kind};
}

OptionGroup gateFolderOptions()
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

Option latenessOption()
{
    return gateOption("late-after", "HOURS",
                      Text::tr("without a delivery; then the hook 'late' is called (default: 0, "
                               "never)"),
                      "0");
}

OptionGroup watchedGateOptions()
{
    OptionGroup group = gateFolderOptions();
    group.title = Text::tr("Gate");
    const auto unwanted = std::remove_if(
        group.options.begin(), group.options.end(),
        [](const Option &option) { return option.name == QLatin1String("keep-days"); });
    group.options.erase(unwanted, group.options.end());
    group.options.append(latenessOption());
    return group;
}

Failure readLateness(const Options &options, int *hours)
{
    return options.number(QStringLiteral("late-after"), 0, mostHours, hours);
}

QString gateFolder(const Options &options, const char *name, const QString &incoming)
{
    const QString option = QLatin1String(name);
    const QString named = options.value(option);
    return named.isEmpty() ? QFileInfo(incoming).dir().filePath(option) : named;
}

std::optional<GateStandard> gateStandard(const Options &options, const QString &name)
{
    if (options.isGiven(name) && !options.value(name).isEmpty())
        return {};
    if (name == QLatin1String("place"))
        return standardPlace(options);
    if (name == QLatin1String("refuse"))
        return GateStandard {standardRefusals().join(QLatin1Char(',')), Text::tr("default")};
    const QString incoming = options.value(QStringLiteral("incoming"));
    if (incoming.isEmpty() || !besideIncoming().contains(name))
        return {};
    return GateStandard {
        gateFolder(options, name.toLatin1().constData(), QFileInfo(incoming).absoluteFilePath()),
        Text::tr("default, beside incoming")};
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
            : gateFolder(options, other.name, QFileInfo(folders->incoming).absoluteFilePath());
    return readLateness(options, &folders->lateAfter);
}
