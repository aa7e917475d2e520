// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The private server that a copy is made into.
#include "host/copy/copytarget.h"

#include "host/copy/sqlnames.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QUuid>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopy)
};

QStringList lazyOptions(const ServerSettings &settings)
{
    return {
        QStringLiteral("--innodb-flush-log-at-trx-commit=0"),
        QStringLiteral("--innodb-doublewrite=0"), QStringLiteral("--innodb-flush-method=nosync"),
        QStringLiteral("--loose-debug-no-sync"), // what is not InnoDB's, hundreds of times
        // Room for the rows of a large company; what is not used is not taken.
        QStringLiteral("--innodb-buffer-pool-size=512M"),
        QStringLiteral("--innodb-log-file-size=256M"), QStringLiteral("--max-allowed-packet=1G"),
        QStringLiteral("--skip-symbolic-links"), QStringLiteral("--local-infile=1"),
        // A trigger whose definer is the source's administrator is one here, too: no file of this
        // machine is for it.
        QStringLiteral("--secure-file-priv=/dev/null"),
        // Again and again while a table is filled, and as much work as the filling.
        QStringLiteral("--innodb-stats-auto-recalc=0"),
        QStringLiteral("--innodb-autoinc-lock-mode=%1").arg(settings.autoincLockMode),
        QStringLiteral("--lower-case-table-names=%1").arg(settings.lowerCaseTableNames)};
}

bool isAscii(const QString &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](QChar letter) { return letter.unicode() < 128; });
}

/// The name between quotes: of a program that was made with ANSI_QUOTES, they are double ones.
QString unquoted(const QString &name)
{
    const QChar quote = name[0];
    return name.mid(1, name.size() - 2).replace(QString(2, quote), quote);
}

/// `user`@`host` of the definer that a statement names; empty if it names none.
QString definerOf(const QString &create)
{
    static const QRegularExpression definer(
        QStringLiteral("^CREATE [^`\"]*?DEFINER=(`(?:[^`]|``)*`|\"(?:[^\"]|\"\")*\")"
                       "@(`(?:[^`]|``)*`|\"(?:[^\"]|\"\")*\")"));
    const QRegularExpressionMatch match = definer.match(create);
    return match.hasMatch() ? quotedName(unquoted(match.captured(1))) + QLatin1Char('@')
            + quotedName(unquoted(match.captured(2)))
                            : QString();
}

/// A database as the object of a GRANT, where % and _ would be wild.
QString schemaPattern(QString schema)
{
    schema.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    schema.replace(QLatin1Char('_'), QLatin1String("\\_"));
    return quotedName(schema.replace(QLatin1Char('%'), QLatin1String("\\%")));
}

} // namespace

CopyTarget::CopyTarget(const QString &folder) :
    privateServer(folder),
    administrator(QStringLiteral("copy-") + QUuid::createUuid().toString())
{
    privateServer.dieWithHost();
}

Failure CopyTarget::failed(const QString &error) const
{
    return {ExitDatabase, Text::tr("the copy cannot be made: %1").arg(error)};
}

Failure CopyTarget::run(const QString &statement)
{
    QSqlQuery query(administrator.handle());
    return query.exec(statement) ? Failure() : failed(errorText(query.lastError()));
}

ConnectionParameters CopyTarget::parameters(const QString &database, const QString &user) const
{
    ConnectionParameters parameters;
    parameters.socket = privateServer.socketPath();
    parameters.database = database;
    parameters.user = user;
    return parameters;
}

Failure CopyTarget::start(const ServerSettings &settings)
{
    QString error;
    const QStringList options = lazyOptions(settings);
    privateServer.setDataOptions(options);
    privateServer.setServerOptions(options);
    if (!privateServer.start(&error))
        return {privateServer.failureCode(), error};
    if (!privateServer.isFirstUse())
        return {ExitUsage,
                Text::tr("the folder for the copy holds a private database already; name an empty "
                         "or a new folder")};
    return administrator.open(parameters(QString(), QStringLiteral("root")));
}

Failure CopyTarget::makeTables(const CopiedSchema &schema)
{
    QStringList statements {
        QStringLiteral("SET NAMES utf8mb4"),
        // As the tables are: without the source's directories, in any order.
        QStringLiteral("SET SESSION sql_mode = 'NO_DIR_IN_CREATE,ALLOW_INVALID_DATES', "
                       "foreign_key_checks = 0, innodb_strict_mode = 0"),
        QStringLiteral("CREATE DATABASE %1 CHARACTER SET %2 COLLATE %3")
            .arg(quotedName(schema.name), schema.characterSet, schema.collation),
        QStringLiteral("USE ") + quotedName(schema.name),
    };
    for (const CopiedTable &table : schema.tables) {
        if (!table.isView)
            statements.append(table.create);
    }
    for (const QString &statement : qAsConst(statements)) {
        if (const Failure failure = run(statement))
            return failure;
    }
    return {};
}

Failure CopyTarget::fill(const CopiedSchema &schema, const QString &loading,
                         const std::function<QByteArray()> &nextPiece, qint64 *rows)
{
    // Checks off and one transaction: into an empty table, InnoDB then sorts first and writes once.
    const QString statements
        = QStringLiteral("SET SESSION sql_mode = 'NO_AUTO_VALUE_ON_ZERO,ALLOW_INVALID_DATES', "
                         "time_zone = '+00:00', unique_checks = 0, foreign_key_checks = 0, "
                         "check_constraint_checks = 0, autocommit = 0; "
                         "LOAD DATA LOCAL INFILE '/dev/stdin' %1; SELECT ROW_COUNT(); COMMIT")
              .arg(loading);
    QString error;
    QByteArray output;
    if (privateServer.feed(schema.name, statements, nextPiece, &output, &error)) {
        *rows = output.trimmed().toLongLong();
        return {};
    }
    const ExitCode code = privateServer.failureCode();
    return code == ExitDatabase ? failed(error) : Failure {code, error};
}

Failure CopyTarget::gatherStatistics(const CopiedSchema &schema)
{
    QStringList names;
    for (const CopiedTable &table : schema.tables) {
        if (!table.isView)
            names.append(quotedName(table.name));
    }
    return names.isEmpty()
        ? Failure()
        : run(QStringLiteral("ANALYZE TABLE ") + names.join(QStringLiteral(", ")));
}

Failure CopyTarget::makePrograms(const CopiedSchema &schema, const QString &user)
{
    Failure failure = makeAccounts(schema, user);
    for (const CopiedProgram &routine : schema.routines) {
        if (!failure)
            failure = makeProgram(routine, schema);
    }
    if (!failure)
        failure = makeViews(schema);
    for (const CopiedProgram &trigger : schema.triggers) {
        if (!failure)
            failure = makeProgram(trigger, schema);
    }
    return failure;
}

Failure CopyTarget::makeAccounts(const CopiedSchema &schema, const QString &user)
{
    const QString object = schemaPattern(schema.name) + QStringLiteral(".*");
    const QString login = quotedName(user) + QStringLiteral("@`localhost`");
    const QString create = QStringLiteral("CREATE USER IF NOT EXISTS ");
    QStringList statements {
        create + login,
        QStringLiteral("GRANT SELECT, INSERT, UPDATE, DELETE, EXECUTE, CREATE TEMPORARY TABLES "
                       "ON %1 TO %2")
            .arg(object, login),
    };
    QStringList definers;
    for (const CopiedTable &table : schema.tables) {
        if (table.isView)
            definers.append(definerOf(table.create));
    }
    for (const QVector<CopiedProgram> &programs : {schema.routines, schema.triggers}) {
        for (const CopiedProgram &program : programs)
            definers.append(definerOf(program.create));
    }
    definers.removeDuplicates();
    for (const QString &definer : qAsConst(definers)) {
        if (definer.isEmpty() || definer == QLatin1String("`root`@`localhost`"))
            continue;
        statements.append(create + definer);
        statements.append(QStringLiteral("GRANT ALL PRIVILEGES ON %1 TO %2").arg(object, definer));
    }
    for (const QString &statement : qAsConst(statements)) {
        if (const Failure failure = run(statement))
            return failure;
    }
    return {};
}

/// Under the settings that it was made with. The driver sends UTF-8: letters beyond ASCII of a
/// program that was made with another character set stay the same letters, as UTF-8.
Failure CopyTarget::makeProgram(const CopiedProgram &program, const CopiedSchema &schema)
{
    const bool keepsBytes = isAscii(program.create)
        || program.characterSet.startsWith(QLatin1String("utf8"));
    const QString client = keepsBytes ? program.characterSet : QStringLiteral("utf8mb4");
    // The collation that texts without one of their own have in the program.
    const auto setCollation = [&](const QString &collation) {
        return program.databaseCollation == schema.collation
            ? Failure()
            : run(QStringLiteral("ALTER DATABASE %1 COLLATE %2")
                      .arg(quotedName(schema.name), collation));
    };
    Failure failure = run(QStringLiteral("SET SESSION sql_mode = %1, character_set_client = %2, "
                                         "collation_connection = %3")
                              .arg(quotedText(program.sqlMode), client, program.collation));
    if (!failure)
        failure = setCollation(program.databaseCollation);
    if (!failure)
        failure = run(program.create);
    if (!failure)
        failure = setCollation(schema.collation);
    return failure ? failure : run(QStringLiteral("SET NAMES utf8mb4"));
}

/// A view may use others: whichever can be made is made, until all are there.
Failure CopyTarget::makeViews(const CopiedSchema &schema)
{
    QStringList waiting;
    for (const CopiedTable &table : schema.tables) {
        if (table.isView)
            waiting.append(table.create);
    }
    while (!waiting.isEmpty()) {
        QStringList left;
        Failure failure;
        for (const QString &create : qAsConst(waiting)) {
            failure = run(create);
            if (failure)
                left.append(create);
        }
        if (left.size() == waiting.size())
            return failure;
        waiting = left;
    }
    return {};
}

Failure CopyTarget::takeSettings(const ServerSettings &settings)
{
    const Failure failure = applyServerSettings(administrator.handle(), settings);
    administrator.close();
    return failure;
}
