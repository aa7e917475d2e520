// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr doctor`: can a pass work here?
#include "host/commands/doctorcommand.h"

#include "host/base/ownerfile.h"
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"
#include "host/cli/reportoptions.h"
#include "host/commands/databaselook.h"
#include "host/commands/doctorreport.h"
#include "host/doctor/contentcheck.h"
#include "host/doctor/grants.h"
#include "host/doctor/machinecheck.h"
#include "host/doctor/plugincheck.h"
#include "host/doctor/rightscheck.h"
#include "host/doctor/schemacheck.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"
#include "host/doctor/sqlwords.h"
#include "host/plugin/datadirectory.h"
#include "host/plugin/settingsfile.h"
#include "host/report/console.h"
#include "host/report/htmlpage.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DoctorCommand)
};

/// What a look needs to know of the command line.
struct DoctorOptions
{
    QString plugin;
    QString dataDirectory; ///< empty: the plugin's own search
    QString dataDirectoryPlace; ///< the option, variable or line that names it
    DatabaseChoice database;
};

Failure read(const Options &options, DoctorOptions *doctor)
{
    const QString directory = QStringLiteral("data-dir");
    doctor->plugin = pluginFile(options);
    if (const Failure failure = readDataDirectory(options, &doctor->dataDirectory))
        return failure;
    if (!doctor->dataDirectory.isEmpty())
        doctor->dataDirectoryPlace = options.placeOf(directory);
    return readDatabaseOptions(options, &doctor->database);
}

/// What can be seen without a database. `runsCommand`: passes run the export command.
void lookAtSite(const DoctorOptions &options, DoctorResult *result, bool *runsCommand)
{
    const DataDirectory directory(options.dataDirectory);
    result->dataDirectory = directory.path();
    result->dataDirectoryReason = options.dataDirectoryPlace;
    if (options.dataDirectory.isEmpty()) {
        result->dataDirectoryReason = dataDirectoryReason();
        result->diagnosis.unknown.append(
            {Text::tr("data directory of the attendance server"),
             Text::tr("its plugin asks for the folder of the server's own program; --data-dir "
                      "names the folder to look at")});
    }
    const SettingsFile settings(directory.iniFile());
    result->diagnosis += settingsDiagnosis(settings);
    if (!settings.check())
        result->settings = settingLayers(settings);
    *runsCommand = settings.toUInt(QStringLiteral("syncCommandRun")) != 0;
    result->diagnosis += machineDiagnosis(directory.path());
}

Diagnosis databaseDiagnosis(const QSqlDatabase &database, bool runsCommand)
{
    Diagnosis diagnosis = serverDiagnosis(database, runsCommand);
    diagnosis += schemaDiagnosis(database);
    diagnosis += rightsDiagnosis(database);
    return diagnosis += contentDiagnosis(database);
}

Failure lostDatabase(const QString &error)
{
    return {ExitDatabase,
            Text::tr("the database server was lost while it was looked at: %1; look again once it "
                     "runs; where it needs more than %2 s for an answer, give it time with "
                     "--connect-options MYSQL_OPT_READ_TIMEOUT=300")
                .arg(error)
                .arg(DatabaseLook::patience)};
}

Failure lookAtDatabase(const DatabaseChoice &choice, bool runsCommand, DoctorResult *result)
{
    result->database = choice.privateFolder.isEmpty()
        ? Text::tr("'%1', as user '%2'").arg(choice.connection.database, choice.connection.user)
        : Text::tr("a private one, in '%1'").arg(choice.privateFolder);
    DatabaseLook database;
    if (const Failure failure = database.open(choice))
        return failure;
    const SessionWatch session(database.handle());
    const Diagnosis diagnosis = databaseDiagnosis(database.handle(), runsCommand);
    QString error;
    if (session.isLost(&error))
        return lostDatabase(error);
    result->diagnosis += diagnosis;
    result->databaseWasSeen = true;
    return {};
}

/// Locked, for an account without a password lets in whoever comes.
QString accountStatements(const QString &comment, const QString &account, const QString &schema,
                          GrantPurpose purpose)
{
    QString text = QStringLiteral("-- %1\nCREATE USER IF NOT EXISTS %2 ACCOUNT LOCK;\n")
                       .arg(comment, account);
    const QStringList grants = grantStatements(account, schema, purpose);
    for (const QString &grant : grants)
        text += grant + QStringLiteral(";\n");
    return text;
}

/// Of four accounts, as a file of statements. No server is asked.
void printGrants(const DatabaseChoice &choice)
{
    const ConnectionParameters &connection = choice.connection;
    const bool isLocal = connection.host.isEmpty() || connection.host == QLatin1String("localhost");
    const QString machine = isLocal ? QStringLiteral("@localhost") : QStringLiteral("@%");
    printText(
        accountStatements(Text::tr("An account with exactly the rights that a pass needs"),
                          quotedAccount(connection.user + machine), connection.database,
                          GrantPurpose::Run)
        + QLatin1Char('\n')
        + accountStatements(Text::tr("An account that only reads, for check, doctor and rehearse"),
                            quotedAccount(connection.user + QLatin1String("_read") + machine),
                            connection.database, GrantPurpose::Look)
        + QLatin1Char('\n')
        + accountStatements(Text::tr("An account for run --plan, which rehearses a pass and then "
                                     "makes it, and for run --changes"),
                            quotedAccount(connection.user + QLatin1String("_plan") + machine),
                            connection.database, GrantPurpose::Plan)
        + QLatin1Char('\n')
        + accountStatements(Text::tr("An account that takes passes back, for undo"),
                            quotedAccount(connection.user + QLatin1String("_undo") + machine),
                            connection.database, GrantPurpose::Undo)
        + QStringLiteral("\n-- %1\n")
              .arg(Text::tr("Those that are new are locked until: "
                            "ALTER USER ... IDENTIFIED BY '...' ACCOUNT UNLOCK")));
}

Failure run(const Options &options)
{
    DoctorOptions doctor;
    if (const Failure failure = read(options, &doctor))
        return failure;
    if (options.isSet(QStringLiteral("grants"))) {
        printGrants(doctor.database);
        return {};
    }
    const QString page = options.value(QStringLiteral("html"));
    const QString settings = DataDirectory(doctor.dataDirectory).iniFile();
    if (const Failure failure = checkOutputFiles({page},
                                                 {settings, doctor.plugin,
                                                  options.configuration().path(),
                                                  options.value(QStringLiteral("password-file"))}))
        return failure;
    DoctorResult result;
    bool runsCommand = false;
    lookAtSite(doctor, &result, &runsCommand);
    result.diagnosis += pluginDiagnosis(doctor.plugin, QStringLiteral(TALVENHR_VERSION));
    const Failure unreachable = lookAtDatabase(doctor.database, runsCommand, &result);
    if (unreachable)
        result.diagnosis.unknown.append({Text::tr("database and its server"), unreachable.text});

    const ReportForm form = reportForm(options);
    if (isQuiet(options))
        printText(doctorVerdict(result) + QLatin1Char('\n'));
    else
        printReport(doctorReport(result, form == ReportForm::Text), form);
    if (!page.isEmpty()) {
        if (const Failure failure = writeHtmlPage(page, QStringLiteral("doctor"),
                                                  doctorHtmlValues(result)))
            return failure;
    }
    if (unreachable)
        return unreachable;
    return {result.diagnosis.hasErrors() ? ExitErrors : ExitClean, QString()};
}

} // namespace

Command doctorCommand()
{
    Command command;
    command.name = QStringLiteral("doctor");
    command.summary = Text::tr("tell whether a pass can work here");
    command.purpose = Text::tr(
        "Looks at the settings, the plugin's file, the machine, the database and its server, and "
        "tells everything that can be known to go wrong before the first pass: what is wrong, what "
        "the plugin would make of it, and the exact line that mends it. What cannot be seen is "
        "named, too. Only reads; a private database that does not run is started for the look.");
    OptionGroup forms = quietReportOptions();
    forms.options.append({QStringLiteral("html"), QStringLiteral("FILE"),
                          Text::tr("write a page for a browser there")});
    forms.options.append(
        {QStringLiteral("grants"), QString(),
         Text::tr("print the statements for an account that can do exactly what a pass needs, for "
                  "one that only reads, for one that can do both for run --plan, and for one that "
                  "takes passes back; look at nothing")});
    command.groups = {pluginOptions(), databaseOptions(), forms};
    command.exitCodes = {ExitClean,    ExitErrors,  ExitUsage,
                         ExitDatabase, ExitRefused, ExitInterrupted};
    command.sections = {
        {Text::tr("Examples"),
         {QStringLiteral("talvenhr doctor --data-dir /srv/attendance --host db.example.org"),
          QStringLiteral("talvenhr doctor --data-dir demo --json"),
          QStringLiteral("talvenhr doctor --grants --database attendance --user talvenhr")}}};
    command.run = run;
    return command;
}
