// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr info`: who the plugin is.
#include "host/commands/infocommand.h"

#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/plugin/pluginfacts.h"
#include "host/plugin/pluginfile.h"
#include "host/report/report.h"

#include <QCoreApplication>
#include <QJsonObject>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(InfoCommand)
};

/// yyMMddhhmm with the signs that make it readable.
QString readableBuild(const QString &stamp)
{
    if (stamp.size() != 10)
        return stamp;
    return QStringLiteral("20%1-%2-%3 %4:%5")
        .arg(stamp.mid(0, 2), stamp.mid(2, 2), stamp.mid(4, 2), stamp.mid(6, 2), stamp.mid(8, 2));
}

/// What the plugin's file says without being loaded.
Section fileSection(const PluginFile &plugin)
{
    const QJsonObject metaData = plugin.metaData();
    const auto text = [&metaData](const char *key) {
        return metaData.value(QLatin1String(key)).toVariant();
    };
    Section section;
    section.figures = {
        {QStringLiteral("file"), Text::tr("Plugin"), plugin.path(), {}},
        {QStringLiteral("className"), Text::tr("Class"), text("className"), {}},
        {QStringLiteral("IID"), Text::tr("Interface (IID)"), text("IID"), {}},
        {QStringLiteral("qtVersion"), Text::tr("Built against Qt"), qtVersionOf(plugin), {}},
        {QStringLiteral("debug"), Text::tr("Debug build"), text("debug"),
         text("debug").toBool() ? Text::tr("yes") : Text::tr("no")},
    };
    return section;
}

/// What the plugin reports. Those that have a label here come first.
Section verInfoSection(PluginFacts facts)
{
    Section section;
    section.name = QStringLiteral("verInfo");
    const auto add = [&](const char *key, const QString &label, const QString &shown) {
        const QVariant value = facts.contains(QLatin1String(key))
            ? QVariant(facts.take(QLatin1String(key)))
            : QVariant();
        section.figures.append(
            {QLatin1String(key), label, value, value.isNull() ? Text::tr("unknown") : shown});
    };
    add("VER", Text::tr("Version"), facts.value(QStringLiteral("VER")));
    add("phoryType", Text::tr("Type"), facts.value(QStringLiteral("phoryType")));
    add("BUILD", Text::tr("Built"), readableBuild(facts.value(QStringLiteral("BUILD"))));
    add("ORVDB", Text::tr("Database version"), facts.value(QStringLiteral("ORVDB")));
    for (auto it = facts.constBegin(); it != facts.constEnd(); ++it)
        section.figures.append({it.key(), QString(), it.value(), {}});
    return section;
}

Failure run(const Options &options)
{
    PluginFile plugin(pluginFile(options));
    PluginFacts facts;
    if (const Failure failure = readPluginFacts(&plugin, &facts))
        return failure;
    Report report;
    report.sections = {fileSection(plugin), verInfoSection(facts)};
    printReport(report, reportForm(options));
    return {};
}

} // namespace

Command infoCommand()
{
    Command command;
    command.name = QStringLiteral("info");
    command.summary = Text::tr("show who the plugin is");
    command.purpose = Text::tr("Shows the plugin's metadata and its version report. Needs neither "
                               "settings nor a database.");
    command.groups = {{Text::tr("Plugin"), {pluginOption()}}, reportOptions()};
    command.exitCodes = {ExitClean, ExitErrors, ExitUsage};
    command.run = run;
    return command;
}
