// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a pass can work on a database server.
#include "host/doctor/servercheck.h"

#include "host/catalogue/findings.h"
#include "host/database/runlock.h"
#include "host/doctor/serverquestions.h"

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>

#include <filesystem>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ServerCheck)
};

const QLatin1String nodeNotReady("1047");
const qint64 megabyte = 1024 * 1024;
const qint64 leastSpace = 256 * megabyte;

/// A server that takes `groups` for a word of its own calls the statement a mistake; any other
/// fault of the table is none of this.
Diagnosis kindDiagnosis(const ServerAnswer &answer, const QString &version)
{
    Diagnosis diagnosis;
    if (answer.errorCode == QLatin1String("1064"))
        diagnosis.findings.append(
            finding("E-SRV-GROUPS", Text::tr("server"), {version, answer.error}));
    else
        diagnosis.passed.append(Text::tr("server %1").arg(version));
    return diagnosis;
}

Diagnosis listDiagnosis(const QSqlDatabase &database, const ServerVariables &variables)
{
    const ServerAnswer answer = askServer(
        database,
        QStringLiteral("SELECT COUNT(*), SUM(LENGTH(pid) + 1), LENGTH(MAX(uid)), "
                       "(SELECT LENGTH(MAX(tid)) FROM term), (SELECT LENGTH(MAX(aid)) FROM bradm), "
                       "(SELECT MAX(admins) FROM (SELECT COUNT(*) admins FROM bradm GROUP BY bid) "
                       "branch) FROM people"));
    if (!answer.isValid()) {
        Diagnosis diagnosis;
        diagnosis.unknown.append({QStringLiteral("max_allowed_packet"), answer.error});
        return diagnosis;
    }
    const QVariantList &values = answer.values;
    ListSizes sizes;
    sizes.people = values.value(0).toLongLong();
    sizes.pids = values.value(1).toLongLong();
    sizes.uidDigits = values.value(2).toInt();
    sizes.tidDigits = values.value(3).toInt();
    sizes.aidDigits = values.value(4).toInt();
    sizes.admins = values.value(5).toLongLong();
    return packetDiagnosis(variables.session("max_allowed_packet").toLongLong(), sizes);
}

/// A node that refuses statements still tells of its state.
Diagnosis refusalDiagnosis(const ServerVariables &variables, const QString &error)
{
    Diagnosis diagnosis = clusterDiagnosis(variables);
    const bool isTold = std::any_of(
        diagnosis.findings.begin(), diagnosis.findings.end(),
        [](const Finding &one) { return one.code == QLatin1String("E-CLUSTER-NODE"); });
    if (!isTold)
        diagnosis.findings.append(finding("E-CLUSTER-NODE", Text::tr("cluster"), {error}));
    return diagnosis;
}

/// The data folder tells only where the server shares this machine with us.
Diagnosis diskDiagnosis(const QSqlDatabase &database, const ServerVariables &variables)
{
    Diagnosis diagnosis;
    const QString folder = variables.global("datadir");
    const QString host = database.hostName();
    const bool isHere = database.connectOptions().contains(QLatin1String("UNIX_SOCKET"))
        || host.isEmpty() || host == QLatin1String("localhost");
    // Also where the list of mounts has no root, as in a changed root.
    std::error_code error;
    const std::filesystem::space_info space = std::filesystem::space(
        QFile::encodeName(folder).toStdString(), error);
    if (isHere && !error)
        return spaceDiagnosis(folder, static_cast<qint64>(space.available));
    diagnosis.unknown.append(
        {Text::tr("free space of the server"),
         Text::tr("its data folder '%1' cannot be looked at from here").arg(folder)});
    return diagnosis;
}

Diagnosis lockDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    QString error;
    const QString holder = runLockHolder(database, &error);
    if (!error.isEmpty())
        diagnosis.unknown.append({Text::tr("another 'talvenhr run'"), error});
    if (!holder.isEmpty())
        diagnosis.findings.append(finding("W-RUN-LOCK", database.databaseName(), {holder}));
    return diagnosis;
}

} // namespace

Diagnosis connectionDiagnosis(const QString &connectOptions)
{
    Diagnosis diagnosis;
    const QStringList options = connectOptions.toUpper().split(QLatin1Char(';'));
    for (const QString &option : options) {
        const QString name = option.section(QLatin1Char('='), 0, 0).trimmed();
        const QString value = option.section(QLatin1Char('='), 1).trimmed();
        if (value == QLatin1String("0") || value == QLatin1String("FALSE"))
            continue;
        if (name == QLatin1String("CLIENT_FOUND_ROWS"))
            diagnosis.findings.append(finding("W-CON-FOUNDROWS", Text::tr("connection")));
        if (name == QLatin1String("MYSQL_OPT_RECONNECT"))
            diagnosis.findings.append(finding("W-CON-RECONNECT", Text::tr("connection")));
    }
    return diagnosis;
}

Diagnosis spaceDiagnosis(const QString &folder, qint64 freeBytes)
{
    Diagnosis diagnosis;
    if (freeBytes < leastSpace)
        diagnosis.findings.append(
            finding("E-SRV-SPACE", folder, {QString::number(freeBytes / megabyte), folder}));
    return diagnosis;
}

Diagnosis serverDiagnosis(const QSqlDatabase &database, bool runsCommand)
{
    Diagnosis diagnosis;
    QString error;
    const ServerVariables variables = ServerVariables::read(database, &error);
    const ServerAnswer version = askServer(database, QStringLiteral("SELECT VERSION()"));
    const ServerAnswer table = askServer(database, QStringLiteral("SELECT COUNT(*) FROM groups"));
    for (const ServerAnswer &answer : {version, table}) {
        if (answer.errorCode == nodeNotReady)
            return refusalDiagnosis(variables, answer.error);
    }
    if (!version.isValid()) {
        diagnosis.unknown.append(
            {Text::tr("server"),
             Text::tr("it does not answer as a MariaDB server does: %1").arg(version.error)});
        return diagnosis;
    }
    if (!error.isEmpty())
        diagnosis.unknown.append({Text::tr("variables of the server"), error});

    diagnosis += kindDiagnosis(table, version.text());
    diagnosis += modeDiagnosis(variables);
    diagnosis += letterDiagnosis(database, variables);
    diagnosis += clockDiagnosis(database);
    diagnosis += limitDiagnosis(variables, runsCommand);
    diagnosis += listDiagnosis(database, variables);
    diagnosis += diskDiagnosis(database, variables);
    diagnosis += clusterDiagnosis(variables);
    diagnosis += connectionDiagnosis(database.connectOptions());
    diagnosis += lockDiagnosis(database);
    return diagnosis;
}
