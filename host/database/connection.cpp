// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A connection of the command's own to the attendance database.
#include "host/database/connection.h"

#include "host/base/silentmessages.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Connection)
};

const QString accessDenied = QStringLiteral("1045"); // the server's number

QString connectOptions(const ConnectionParameters &parameters)
{
    QStringList options;
    if (!parameters.socket.isEmpty())
        options.append(QStringLiteral("UNIX_SOCKET=") + parameters.socket);
    if (!parameters.connectOptions.isEmpty())
        options.append(parameters.connectOptions);
    return options.join(QLatin1Char(';'));
}

/// Without a word, the client library reaches "localhost" through its socket, whatever the port.
bool isPortIgnored(const ConnectionParameters &parameters)
{
    return parameters.socket.isEmpty() && parameters.port >= 0
        && (parameters.host.isEmpty() || parameters.host == QLatin1String("localhost"));
}

/// A blank that nobody sees in the password file is part of the password.
QString refusalText(const QSqlError &error, const QString &password)
{
    const QString text = errorText(error);
    return error.nativeErrorCode() == accessDenied && password != password.trimmed()
        ? Text::tr("%1 (the password begins or ends with a blank, which counts; see whether it "
                   "belongs there)")
              .arg(text)
        : text;
}

} // namespace

QString serverText(const ConnectionParameters &parameters)
{
    if (!parameters.socket.isEmpty())
        return parameters.socket;
    if (parameters.host.isEmpty())
        return Text::tr("this machine");
    return parameters.port < 0 ? parameters.host
                               : QStringLiteral("%1:%2").arg(parameters.host).arg(parameters.port);
}

ConnectionParameters withTimeLimits(const ConnectionParameters &parameters, int seconds)
{
    ConnectionParameters limited = parameters;
    if (!parameters.driver.startsWith(QLatin1String("QMYSQL"))
        && !parameters.driver.startsWith(QLatin1String("QMARIADB")))
        return limited;
    for (const char *name :
         {"MYSQL_OPT_CONNECT_TIMEOUT", "MYSQL_OPT_READ_TIMEOUT", "MYSQL_OPT_WRITE_TIMEOUT"}) {
        QString &options = limited.connectOptions;
        if (options.contains(QLatin1String(name)))
            continue;
        if (!options.isEmpty() && !options.endsWith(QLatin1Char(';')))
            options += QLatin1Char(';');
        options += QStringLiteral("%1=%2").arg(QLatin1String(name)).arg(seconds);
    }
    return limited;
}

Connection::Connection(const QString &connectionName) :
    name(connectionName)
{ }

Connection::~Connection()
{
    if (made)
        QSqlDatabase::removeDatabase(name);
}

Failure Connection::open(const ConnectionParameters &wanted)
{
    parameters = wanted;
    if (!QSqlDatabase::drivers().contains(parameters.driver))
        return {ExitDatabase,
                Text::tr("the database driver '%1' is not installed (there are: %2); install "
                         "it, or name another one with --driver")
                    .arg(parameters.driver, QSqlDatabase::drivers().join(QStringLiteral(", ")))};

    QSqlDatabase database = QSqlDatabase::addDatabase(parameters.driver, name);
    made = true;
    database.setHostName(parameters.host);
    if (parameters.port >= 0)
        database.setPort(parameters.port);
    database.setDatabaseName(parameters.database);
    database.setUserName(parameters.user);
    database.setPassword(parameters.password);
    database.setConnectOptions(connectOptions(parameters));
    return open();
}

Failure Connection::open()
{
    const SilentMessages silence;
    QSqlDatabase database = handle();
    if (database.open())
        return {};
    const QString trouble = Text::tr("cannot open database '%1' on %2 as user '%3': %4; check the "
                                     "options of the database and that the server runs")
                                .arg(parameters.database, serverText(parameters), parameters.user,
                                     refusalText(database.lastError(), parameters.password));
    if (!isPortIgnored(parameters))
        return {ExitDatabase, trouble};
    return {ExitDatabase,
            Text::tr("%1. This host is reached through the socket of this machine, and port %2 is "
                     "not used: for that port, name 127.0.0.1 as the host")
                .arg(trouble)
                .arg(parameters.port)};
}

void Connection::close()
{
    handle().close();
}

QSqlDatabase Connection::handle() const
{
    return QSqlDatabase::database(name, false);
}
