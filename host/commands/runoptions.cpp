// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of `talvenhr run`.
#include "host/commands/runoptions.h"

#include "host/base/programpaths.h"
#include "host/cli/commandparser.h"

#include <QFile>

#include <climits>

namespace {

const char passwordVariable[] = "TALVENHR_PASSWORD";
const int mostPasses = 1000000;
const int longestTimeout = 1000000; // seconds

Failure usage(const QString &text)
{
    return {ExitUsage, text + QStringLiteral("; see 'talvenhr run --help'")};
}

QString named(const QString &option)
{
    return QStringLiteral("--") + option;
}

/// The options that name a database other than a private one, as far as they are given.
QStringList connectionOptions(const CommandParser &parser)
{
    const QStringList names {QStringLiteral("driver"),        QStringLiteral("host"),
                             QStringLiteral("port"),          QStringLiteral("socket"),
                             QStringLiteral("database"),      QStringLiteral("user"),
                             QStringLiteral("password-file"), QStringLiteral("connect-options")};
    QStringList given;
    for (const QString &name : names) {
        if (parser.isSet(name))
            given.append(name);
    }
    return given;
}

Failure readPassword(const CommandParser &parser, QString *password)
{
    *password = QString::fromLocal8Bit(qgetenv(passwordVariable));
    // The export command and others that are started from here need not know it.
    qunsetenv(passwordVariable);

    const QString option = QStringLiteral("password-file");
    if (!parser.isSet(option))
        return {};
    QFile file(parser.value(option));
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage,
                QStringLiteral("the password file '%1' cannot be read: %2")
                    .arg(file.fileName(), file.errorString())};
    *password = QString::fromUtf8(file.readLine());
    while (password->endsWith(QLatin1Char('\n')) || password->endsWith(QLatin1Char('\r')))
        password->chop(1);
    return {};
}

Failure readConnection(const CommandParser &parser, ConnectionParameters *connection)
{
    const auto take = [&parser](const char *option, QString *target) {
        if (parser.isSet(QLatin1String(option)))
            *target = parser.value(QLatin1String(option));
    };
    take("driver", &connection->driver);
    take("host", &connection->host);
    take("socket", &connection->socket);
    take("database", &connection->database);
    take("user", &connection->user);
    take("connect-options", &connection->connectOptions);
    if (!connection->socket.isEmpty() && connection->driver != QLatin1String("QMYSQL"))
        return usage(QStringLiteral("--socket goes with the driver QMYSQL only; use "
                                    "--connect-options"));
    if (const Failure failure = parser.number(QStringLiteral("port"), 1, USHRT_MAX,
                                              &connection->port))
        return failure;
    return readPassword(parser, &connection->password);
}

Failure readDatabase(const CommandParser &parser, RunOptions *options)
{
    const QStringList given = connectionOptions(parser);
    if (parser.isSet(QStringLiteral("private-db"))) {
        if (!given.isEmpty())
            return usage(
                QStringLiteral("--private-db and %1 exclude each other").arg(named(given.first())));
        options->privateFolder = parser.value(QStringLiteral("private-db"));
        if (options->privateFolder.isEmpty())
            return usage(QStringLiteral("--private-db takes a folder"));
    } else if (given.isEmpty()) {
        options->privateFolder = defaultPrivateFolder();
        options->privateByDefault = true;
    }
    return readConnection(parser, &options->connection);
}

Failure readLogOptions(const CommandParser &parser, RunOptions *options)
{
    if (const Failure failure = parser.number(QStringLiteral("log-level"), 0, 3,
                                              &options->logLevel))
        return failure;
    if (!parser.isSet(QStringLiteral("log-format")))
        return {};
    const QString format = parser.value(QStringLiteral("log-format"));
    if (format != QLatin1String("text") && format != QLatin1String("json"))
        return usage(QStringLiteral("--log-format takes 'text' or 'json', not '%1'").arg(format));
    options->logFormat = format == QLatin1String("json") ? LogFormat::Json : LogFormat::Text;
    return {};
}

Failure readLength(const CommandParser &parser, RunOptions *options)
{
    if (parser.isSet(QStringLiteral("once")) && parser.isSet(QStringLiteral("passes")))
        return usage(QStringLiteral("--once and --passes exclude each other"));
    if (parser.isSet(QStringLiteral("once")))
        options->passes = 1;
    if (const Failure failure = parser.number(QStringLiteral("passes"), 1, mostPasses,
                                              &options->passes))
        return failure;
    return parser.number(QStringLiteral("timeout"), 1, longestTimeout, &options->timeout);
}

void addDatabaseOptions(CommandParser *parser)
{
    parser->addGroup(QStringLiteral("Database (none of these: a private server of its own)"));
    parser->addOption(QStringLiteral("private-db"), QStringLiteral("DIR"),
                      QStringLiteral("a private MariaDB server with its data in this folder; new "
                                     "data hold the sample company"));
    parser->addOption(QStringLiteral("driver"), QStringLiteral("NAME"),
                      QStringLiteral("Qt's database driver (default: QMYSQL)"));
    parser->addOption(QStringLiteral("host"), QStringLiteral("NAME"),
                      QStringLiteral("machine of the database server"));
    parser->addOption(QStringLiteral("port"), QStringLiteral("NUMBER"),
                      QStringLiteral("port of the database server"));
    parser->addOption(QStringLiteral("socket"), QStringLiteral("FILE"),
                      QStringLiteral("unix socket of the database server"));
    parser->addOption(QStringLiteral("database"), QStringLiteral("NAME"),
                      QStringLiteral("database (default: attendance)"));
    parser->addOption(QStringLiteral("user"), QStringLiteral("NAME"),
                      QStringLiteral("database user (default: talvenhr)"));
    parser->addOption(QStringLiteral("password-file"), QStringLiteral("FILE"),
                      QStringLiteral("file whose first line is the password; without it, the "
                                     "environment variable TALVENHR_PASSWORD"));
    parser->addOption(QStringLiteral("connect-options"), QStringLiteral("TEXT"),
                      QStringLiteral("further options of the driver, such as "
                                     "MYSQL_OPT_CONNECT_TIMEOUT=5"));
}

} // namespace

void addRunOptions(CommandParser *parser)
{
    parser->addGroup(QStringLiteral("Plugin"));
    parser->addOption(QStringLiteral("plugin"), QStringLiteral("FILE"),
                      QStringLiteral("the plugin (default: the one that was built or installed "
                                     "with this program)"));
    parser->addOption(QStringLiteral("data-dir"), QStringLiteral("DIR"),
                      QStringLiteral("folder that holds TalvenHR.ini (default: the plugin's own "
                                     "search)"));
    addDatabaseOptions(parser);

    parser->addGroup(QStringLiteral("Length of the run (default: until Ctrl+C or SIGTERM)"));
    parser->addOption(QStringLiteral("once"), QString(), QStringLiteral("end after one pass"));
    parser->addOption(QStringLiteral("passes"), QStringLiteral("NUMBER"),
                      QStringLiteral("end after so many passes"));
    parser->addOption(QStringLiteral("timeout"), QStringLiteral("SECONDS"),
                      QStringLiteral("end after this time, with exit code 4"));
    parser->addOption(QStringLiteral("force"), QString(),
                      QStringLiteral("make the first pass a forced one, which looks again at "
                                     "unchanged employees too"));

    parser->addGroup(QStringLiteral("Log, on standard error"));
    parser->addOption(QStringLiteral("log-level"), QStringLiteral("NUMBER"),
                      QStringLiteral("0 warnings and errors only, 1 passes and writes (default), 2 "
                                     "also ticks and database operations, 3 also each record. "
                                     "Hidden below 2: a line for every settings key, which "
                                     "the plugin itself prints at every level"));
    parser->addOption(QStringLiteral("log-format"), QStringLiteral("NAME"),
                      QStringLiteral("text (default), or json: one object a line"));

    parser->addGroup(QStringLiteral("Other"));
}

Failure readRunOptions(const CommandParser &parser, RunOptions *options)
{
    // First of all, so that whatever fails later is told in the right form.
    if (const Failure failure = readLogOptions(parser, options))
        return failure;
    options->pluginFile = parser.isSet(QStringLiteral("plugin"))
        ? parser.value(QStringLiteral("plugin"))
        : defaultPluginFile();
    options->dataDirectory = parser.value(QStringLiteral("data-dir"));
    if (parser.isSet(QStringLiteral("data-dir")) && options->dataDirectory.isEmpty())
        return usage(QStringLiteral("--data-dir takes a folder"));
    options->force = parser.isSet(QStringLiteral("force"));
    if (const Failure failure = readLength(parser, options))
        return failure;
    return readDatabase(parser, options);
}
