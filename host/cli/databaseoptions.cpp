// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name a database: a private one, or one on a server.
#include "host/cli/databaseoptions.h"

#include "host/base/programpaths.h"
#include "host/cli/options.h"
#include "host/cli/reportoptions.h"

#include <QCoreApplication>
#include <QFile>

#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseOptions)
};

const char passwordVariable[] = "TALVENHR_PASSWORD";

QString privateOption()
{
    return QStringLiteral("private-db");
}

/// An option of [database], which names a database on a server.
Option serverOption(const char *name, const char *valueName, const QString &text,
                    const QString &standard = QString(), Option::Kind kind = Option::Plain)
{
    return {QLatin1String(name),
            QLatin1String(valueName),
            text,
            QLatin1String("database/") + QLatin1String(name),
            standard,
            kind};
}

QVector<Option> serverOptions()
{
    const ConnectionParameters standard;
    return {
        serverOption("driver", "NAME", Text::tr("Qt's database driver (default: QMYSQL)"),
                     standard.driver),
        serverOption("host", "NAME", Text::tr("machine of the database server")),
        serverOption("port", "NUMBER", Text::tr("port of the database server")),
        serverOption("socket", "FILE", Text::tr("unix socket of the database server"), QString(),
                     Option::Path),
        serverOption("database", "NAME", Text::tr("database (default: attendance)"),
                     standard.database),
        serverOption("user", "NAME", Text::tr("database user (default: talvenhr)"), standard.user),
        serverOption("password-file", "FILE",
                     Text::tr("file whose first line is the password; without it, the environment "
                              "variable TALVENHR_PASSWORD"),
                     QString(), Option::Path),
        serverOption("connect-options", "TEXT",
                     Text::tr("further options of the driver, such as "
                              "MYSQL_OPT_CONNECT_TIMEOUT=5")),
    };
}

/// The first option that names a database on a server and is on the command line; empty if none is.
QString serverOptionOnCommandLine(const Options &options)
{
    const QVector<Option> all = serverOptions();
    for (const Option &option : all) {
        if (options.isSet(option.name))
            return option.name;
    }
    return QString();
}

bool namesServer(const Options &options)
{
    const QVector<Option> all = serverOptions();
    for (const Option &option : all) {
        if (options.isGiven(option.name))
            return true;
    }
    return false;
}

/// The export command and others that are started from here need not know the password.
QString takePasswordVariable()
{
    const QString password = QString::fromLocal8Bit(qgetenv(passwordVariable));
    qunsetenv(passwordVariable);
    return password;
}

/// Told once, however often a command reads it.
void warnOfReaders(const QFile &file, LogFormat format)
{
    static bool isTold = false;
    if (isTold || !(file.permissions() & QFileDevice::ReadOther))
        return;
    isTold = true;
    LogWriter(format).warn(
        Text::tr("every user of this machine can read the password file '%1'; close it to them "
                 "with 'chmod o='")
            .arg(file.fileName()));
}

Failure readPasswordFile(const QString &path, LogFormat format, QString *password)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {
            ExitUsage,
            Text::tr("the password file '%1' cannot be read: %2").arg(path, file.errorString())};
    warnOfReaders(file, format);
    *password = QString::fromUtf8(file.readLine());
    while (password->endsWith(QLatin1Char('\n')) || password->endsWith(QLatin1Char('\r')))
        password->chop(1);
    return {};
}

Failure checkSocket(const Options &options)
{
    if (options.value(QStringLiteral("socket")).isEmpty()
        || options.value(QStringLiteral("driver")) == QLatin1String("QMYSQL"))
        return {};
    return options.usageFailure(
        Text::tr("--socket goes with the driver QMYSQL only; use --connect-options"));
}

Failure readPort(const Options &options, ConnectionParameters *connection)
{
    return options.number(QStringLiteral("port"), 1, std::numeric_limits<quint16>::max(),
                          &connection->port);
}

Failure readPassword(const Options &options, ConnectionParameters *connection)
{
    const QString passwordFile = QStringLiteral("password-file");
    return options.isGiven(passwordFile)
        ? readPasswordFile(options.value(passwordFile), logFormat(options), &connection->password)
        : Failure();
}

Failure readConnection(const Options &options, ConnectionParameters *connection)
{
    connection->driver = options.value(QStringLiteral("driver"));
    connection->host = options.value(QStringLiteral("host"));
    connection->socket = options.value(QStringLiteral("socket"));
    connection->database = options.value(QStringLiteral("database"));
    connection->user = options.value(QStringLiteral("user"));
    connection->connectOptions = options.value(QStringLiteral("connect-options"));
    if (const Failure failure = checkSocket(options))
        return failure;
    if (const Failure failure = readPort(options, connection))
        return failure;
    return readPassword(options, connection);
}

} // namespace

Option privateDatabaseOption()
{
    return {privateOption(), QStringLiteral("DIR"),
            Text::tr("a private MariaDB server with its data in this folder; new data hold the "
                     "sample company")};
}

OptionGroup databaseOptions()
{
    return {Text::tr("Database (none of these: a private server of its own)"),
            QVector<Option> {privateDatabaseOption()} + serverOptions()};
}

OptionGroup lookedAtDatabaseOptions()
{
    OptionGroup group = databaseOptions();
    group.title = Text::tr("Database (none of these: none is looked at)");
    return group;
}

Failure readPrivateFolder(const Options &options, QString *folder)
{
    *folder = options.isSet(privateOption()) ? options.value(privateOption())
                                             : defaultPrivateFolder();
    if (folder->isEmpty())
        return options.usageFailure(Text::tr("--private-db takes a folder"));
    return {};
}

Failure readDatabaseOptions(const Options &options, DatabaseChoice *choice)
{
    choice->connection.password = takePasswordVariable();
    if (options.isSet(privateOption())) {
        const QString other = serverOptionOnCommandLine(options);
        if (!other.isEmpty())
            return options.usageFailure(
                Text::tr("--private-db and --%1 exclude each other").arg(other));
        return readPrivateFolder(options, &choice->privateFolder);
    }
    if (!namesServer(options)) {
        choice->isDefault = true;
        return readPrivateFolder(options, &choice->privateFolder);
    }
    return readConnection(options, &choice->connection);
}

QStringList databaseProblems(const Options &options)
{
    QStringList problems;
    ConnectionParameters parameters;
    for (const Failure &failure : {checkSocket(options), readPort(options, &parameters),
                                   readPassword(options, &parameters)}) {
        if (failure)
            problems.append(failure.text);
    }
    return problems;
}
