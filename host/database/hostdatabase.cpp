// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The command's own handle of the attendance database.
#include "host/database/hostdatabase.h"

#include "host/base/silentmessages.h"
#include "host/database/errortext.h"
#include "repository/orvdbsettings.h"

#include <QSqlQuery>
#include <QStringList>
#include <QVariant>

namespace {

QString connectOptions(const ConnectionParameters &parameters)
{
    QStringList options;
    if (!parameters.socket.isEmpty())
        options.append(QStringLiteral("UNIX_SOCKET=") + parameters.socket);
    if (!parameters.connectOptions.isEmpty())
        options.append(parameters.connectOptions);
    return options.join(QLatin1Char(';'));
}

/// Where the server is, as the user named it.
QString serverText(const ConnectionParameters &parameters)
{
    if (!parameters.socket.isEmpty())
        return parameters.socket;
    if (parameters.host.isEmpty())
        return QStringLiteral("this machine");
    return parameters.port < 0 ? parameters.host
                               : QStringLiteral("%1:%2").arg(parameters.host).arg(parameters.port);
}

/// The tables without which no pass can do its work.
Failure checkTables(const QSqlDatabase &database)
{
    const QStringList tables {QStringLiteral("vars"), QStringLiteral("people"),
                              QStringLiteral("branches"), QStringLiteral("atten")};
    for (const QString &table : tables) {
        QSqlQuery query(database);
        if (!query.exec(QStringLiteral("SELECT 1 FROM %1 LIMIT 0").arg(table)))
            return {ExitDatabase,
                    QStringLiteral("table '%1' of database '%2' cannot be used (%3); is this the "
                                   "attendance database, and may user '%4' read it?")
                        .arg(table, database.databaseName(), errorText(query.lastError()),
                             database.userName())};
    }
    return {};
}

Failure setForceVariable(const QSqlDatabase &database)
{
    // The failure's own line tells more.
    const SilentMessages silence;
    OrvDbSettings variables(database);
    if (variables.variableSet(QStringLiteral("OQS.THRWorker.forceSync"), 1))
        return {};
    return {
        ExitDatabase,
        QStringLiteral("the pass cannot be forced: user '%1' may not write into table 'vars' of "
                       "database '%2'")
            .arg(database.userName(), database.databaseName())};
}

Failure makeHandle(const ConnectionParameters &parameters, const QString &connectionName)
{
    if (!QSqlDatabase::drivers().contains(parameters.driver))
        return {ExitDatabase,
                QStringLiteral("the database driver '%1' is not installed (there are: %2); install "
                               "it, or name another one with --driver")
                    .arg(parameters.driver, QSqlDatabase::drivers().join(QStringLiteral(", ")))};

    QSqlDatabase database = QSqlDatabase::addDatabase(parameters.driver, connectionName);
    database.setHostName(parameters.host);
    if (parameters.port >= 0)
        database.setPort(parameters.port);
    database.setDatabaseName(parameters.database);
    database.setUserName(parameters.user);
    database.setPassword(parameters.password);
    database.setConnectOptions(connectOptions(parameters));
    return {};
}

} // namespace

HostDatabase::HostDatabase(const QString &handleName) :
    connectionName(handleName)
{ }

HostDatabase::~HostDatabase()
{
    if (made)
        QSqlDatabase::removeDatabase(connectionName);
}

Failure HostDatabase::prepare(const ConnectionParameters &parameters, bool force)
{
    Failure failure = makeHandle(parameters, connectionName);
    if (failure)
        return failure;
    made = true;

    QSqlDatabase database = handle();
    const bool opened = [&database] {
        const SilentMessages silence;
        return database.open();
    }();
    if (!opened)
        return {
            ExitDatabase,
            QStringLiteral("cannot open database '%1' on %2 as user '%3': %4; check the options "
                           "of the database and that the server runs")
                .arg(parameters.database, serverText(parameters), parameters.user,
                     errorText(database.lastError()))};
    failure = checkTables(database);
    if (!failure && force)
        failure = setForceVariable(database);
    database.close();
    return failure;
}

QSqlDatabase HostDatabase::handle() const
{
    return QSqlDatabase::database(connectionName, false);
}
