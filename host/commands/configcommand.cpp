// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr config`: every setting in force, and where it comes from.
#include "host/commands/configcommand.h"

#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/gatefolders.h"
#include "host/commands/gateoptions.h"
#include "host/commands/statussettings.h"
#include "host/database/connection.h"
#include "host/plugin/pluginfile.h"
#include "host/report/report.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ConfigCommand)
};

QString lineText(const Options &options, const QString &setting)
{
    return Text::tr("%1, line %2")
        .arg(options.configuration().path())
        .arg(options.configuration().entry(setting).line);
}

/// Where a value comes from, for people.
QString originText(const Options &options, const Option &setting)
{
    switch (options.origin(setting.name)) {
    case Options::CommandLine:
        return Text::tr("option --%1").arg(setting.name);
    case Options::Environment:
        return Text::tr("environment, %1").arg(Options::variable(setting.name));
    case Options::File:
        return lineText(options, setting.setting);
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
        const std::optional<GateStandard> standard = gateStandard(options, setting.name);
        QVariantList row {setting.setting,
                          standard ? standard->value : options.value(setting.name)};
        if (forPeople)
            row.append(standard ? standard->origin : originText(options, setting));
        else
            row << originName(options.origin(setting.name)) << Options::variable(setting.name);
        section.table.rows.append(row);
    }
    const QStringList onlyInFile = options.fileOnlySettings();
    for (const QString &setting : onlyInFile) {
        const Configuration::Entry entry = options.configuration().entry(setting);
        QVariantList row {setting, entry.value};
        if (forPeople)
            row.append(lineText(options, setting));
        else
            row << QStringLiteral("file") << QVariant();
        section.table.rows.append(row);
    }
    return section;
}

/// Where the password of a server comes from, and never what it is.
QString passwordOrigin(const Options &options, const DatabaseChoice &choice)
{
    if (options.isGiven(QStringLiteral("password-file")))
        return QStringLiteral("file");
    return choice.connection.password.isEmpty() ? QStringLiteral("none")
                                                : QStringLiteral("environment");
}

QString databaseText(const DatabaseChoice &choice, const QString &password)
{
    if (!choice.privateFolder.isEmpty())
        return choice.isDefault
            ? Text::tr("a private one in '%1', for none is named").arg(choice.privateFolder)
            : Text::tr("a private one in '%1'").arg(choice.privateFolder);
    const ConnectionParameters &connection = choice.connection;
    const QString text = Text::tr("'%1' on %2 as user '%3'")
                             .arg(connection.database, serverText(connection), connection.user);
    if (password == QLatin1String("file"))
        return Text::tr("%1, with the password of the file").arg(text);
    return password == QLatin1String("none")
        ? Text::tr("%1, without a password").arg(text)
        : Text::tr("%1, with the password of TALVENHR_PASSWORD").arg(text);
}

/// The database that a run would take.
Section databaseSection(const Options &options, const DatabaseChoice &choice)
{
    const bool isPrivate = !choice.privateFolder.isEmpty();
    const QString password = isPrivate ? QString() : passwordOrigin(options, choice);
    const auto orNull = [](const QString &text) {
        return text.isEmpty() ? QVariant() : QVariant(text);
    };
    Section section;
    section.name = QStringLiteral("runTakes");
    section.figures = {
        {QStringLiteral("kind"), Text::tr("A run takes"),
         isPrivate ? QStringLiteral("private") : QStringLiteral("server"),
         databaseText(choice, password)},
        {QStringLiteral("folder"), QString(), orNull(choice.privateFolder), QString()},
        {QStringLiteral("server"), QString(),
         isPrivate ? QVariant() : QVariant(serverText(choice.connection)), QString()},
        {QStringLiteral("password"), QString(), orNull(password), QString()}};
    return section;
}

/// All that a run or a gate would stumble over, in the values alone: no server is asked.
QStringList problemsOf(const Options &options, const DatabaseChoice &choice,
                       const Failure &databaseFailure)
{
    QStringList problems = databaseProblems(options);
    if (databaseFailure && !problems.contains(databaseFailure.text))
        problems.append(databaseFailure.text);
    QString directory;
    if (const Failure failure = readDataDirectory(options, &directory))
        problems.append(failure.text);
    else if (!directory.isEmpty() && !QFileInfo(directory).isDir())
        problems.append(Text::tr("%1 names '%2', which is not a folder")
                            .arg(options.placeOf(QStringLiteral("data-dir")), directory));
    if (const Failure failure = PluginFile(pluginFile(options)).check())
        problems.append(failure.text);
    problems += gateProblems(options, choice) + publishingProblems(options);
    problems.removeDuplicates();
    return problems;
}

Section problemsSection(const QStringList &problems)
{
    Section section;
    section.name = QStringLiteral("problems");
    section.table.columns = {{QStringLiteral("problem"), Text::tr("What is wrong")}};
    for (const QString &problem : problems)
        section.table.rows.append({problem});
    return section;
}

Failure run(const Options &options)
{
    const ReportForm form = reportForm(options);
    DatabaseChoice choice;
    const Failure failure = readDatabaseOptions(options, &choice);
    const QStringList problems = problemsOf(options, choice, failure);
    Report report;
    report.format = QStringLiteral("talvenhr.config/1");
    report.sections = {fileSection(options), settingsSection(options, form == ReportForm::Text)};
    if (!failure)
        report.sections.append(databaseSection(options, choice));
    if (!problems.isEmpty() || form == ReportForm::Json)
        report.sections.append(problemsSection(problems));
    report.verdict.exitCode = problems.isEmpty() ? ExitClean : ExitUsage;
    printReport(report, form);
    return {report.verdict.exitCode, QString()};
}

} // namespace

Command configCommand()
{
    Command command;
    command.name = QStringLiteral("config");
    command.summary = Text::tr("show every setting and where it comes from, and check the values");
    command.purpose = Text::tr(
        "Shows the value of every setting that options, the environment (TALVENHR_...) and the "
        "configuration file may set, and which of them has set it: an option goes before the "
        "environment, that before the file, and that before the default. Tells which database a "
        "run would take, and checks the values without asking any server. Passwords are not "
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
