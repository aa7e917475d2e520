// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr config`: every setting in force, and where it comes from.
#include "host/commands/configcommand.h"

#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/report/report.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ConfigCommand)
};

/// Where a value comes from, for people.
QString originText(const Options &options, const Option &setting)
{
    switch (options.origin(setting.name)) {
    case Options::CommandLine:
        return Text::tr("option --%1").arg(setting.name);
    case Options::Environment:
        return Text::tr("environment, %1").arg(Options::variable(setting.name));
    case Options::File:
        return Text::tr("%1, line %2")
            .arg(options.configuration().path())
            .arg(options.configuration().entry(setting.setting).line);
    case Options::Default:
        break;
    }
    return Text::tr("default");
}

QString originName(Options::Origin origin)
{
    switch (origin) {
    case Options::CommandLine:
        return QStringLiteral("option");
    case Options::Environment:
        return QStringLiteral("environment");
    case Options::File:
        return QStringLiteral("file");
    case Options::Default:
        break;
    }
    return QStringLiteral("default");
}

Section fileSection(const Options &options)
{
    const QString path = options.configuration().path();
    const QString none = Text::tr("none; looked for %1")
                             .arg(Configuration::standardPaths().join(Text::tr(" and ")));
    Section section;
    section.figures.append({QStringLiteral("file"), Text::tr("Configuration file"),
                            path.isEmpty() ? QVariant() : QVariant(path),
                            path.isEmpty() ? none : path});
    return section;
}

Section settingsSection(const Options &options, bool forPeople)
{
    Section section;
    section.name = QStringLiteral("settings");
    section.table.columns = {{QStringLiteral("setting"), Text::tr("Setting")},
                             {QStringLiteral("value"), Text::tr("Value")},
                             {QStringLiteral("origin"), Text::tr("From")}};
    if (!forPeople)
        section.table.columns.append({QStringLiteral("variable"), QString()});
    for (const Option &setting : options.allSettings()) {
        QVariantList row {setting.setting, options.value(setting.name)};
        if (forPeople)
            row.append(originText(options, setting));
        else
            row << originName(options.origin(setting.name)) << Options::variable(setting.name);
        section.table.rows.append(row);
    }
    return section;
}

Failure run(const Options &options)
{
    const ReportForm form = reportForm(options);
    Report report;
    report.format = QStringLiteral("talvenhr.config/1");
    report.sections = {fileSection(options), settingsSection(options, form == ReportForm::Text)};
    printReport(report, form);
    return {};
}

} // namespace

Command configCommand()
{
    Command command;
    command.name = QStringLiteral("config");
    command.summary = Text::tr("show every setting and where it comes from");
    command.purpose = Text::tr(
        "Shows the value of every setting that options, the environment (TALVENHR_...) and the "
        "configuration file may set, and which of them has set it: an option goes before the "
        "environment, that before the file, and that before the default. Passwords are not "
        "settings and are never shown.");
    command.groups = {reportOptions(), pluginOptions(), databaseOptions()};
    command.exitCodes = {ExitClean, ExitErrors, ExitUsage};
    command.sections = {{Text::tr("Configuration file"),
                         {QStringLiteral("[database]"), QStringLiteral("host=db.example.org"),
                          QStringLiteral("password-file=/etc/talvenhr/password"), QString(),
                          QStringLiteral("[plugin]"), QStringLiteral("data-dir=/srv/attendance")}}};
    command.run = run;
    return command;
}
