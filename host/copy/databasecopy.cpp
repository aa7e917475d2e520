// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A copy of an attendance database, for a pass that may change whatever it likes.
#include "host/copy/databasecopy.h"

#include "host/copy/copiedlines.h"
#include "host/copy/copiedrows.h"
#include "host/copy/sqlnames.h"
#include "host/database/connection.h"
#include "host/database/errortext.h"

#include <QLocale>
#include <QSqlQuery>
#include <QUuid>

namespace {

const int tellingPause = 200; // milliseconds
// A statement reads a range of a table, or a small table, and may wait for one that is altered.
const int answerPatience = 300; // seconds

Failure run(const QSqlDatabase &source, const QString &statement)
{
    QSqlQuery query(source);
    if (query.exec(statement))
        return {};
    return {ExitDatabase,
            DatabaseCopy::tr("database '%1' cannot be read: %2")
                .arg(source.databaseName(), errorText(query.lastError()))};
}

/// What the values and definitions depend on is the same for each copy; what would end a long copy
/// does not hold.
Failure prepareSession(const QSqlDatabase &source)
{
    const QStringList statements {
        QStringLiteral("SET NAMES utf8mb4"),
        QStringLiteral("SET SESSION sql_mode = '', sql_quote_show_create = 1, "
                       "sql_select_limit = DEFAULT, sql_big_selects = 1, max_statement_time = 0, "
                       "net_write_timeout = 3600, lock_wait_timeout = 240"),
        // At any other level the server would not keep to one moment, whatever it is asked for.
        QStringLiteral("SET TRANSACTION ISOLATION LEVEL REPEATABLE READ"),
        QStringLiteral("START TRANSACTION WITH CONSISTENT SNAPSHOT, READ ONLY"),
    };
    for (const QString &statement : statements) {
        if (const Failure failure = run(source, statement))
            return failure;
    }
    return {};
}

QString connectionName()
{
    return QStringLiteral("copy-source-") + QUuid::createUuid().toString();
}

/// The administrator's account is the private server's own, with rights that no plugin has.
QString loginName(const QString &sourceUser)
{
    const bool isFit = !sourceUser.isEmpty() && sourceUser != QLatin1String("root")
        && sourceUser != QLatin1String("mariadb.sys");
    return isFit ? sourceUser : ConnectionParameters().user;
}

} // namespace

DatabaseCopy::DatabaseCopy(const QString &folder, QObject *parent) :
    QObject(parent),
    target(folder)
{
    connect(&target.server(), SIGNAL(died(QString)), this, SIGNAL(died(QString)));
    connect(&target.server(), SIGNAL(progress(QString)), this, SIGNAL(progress(QString)));
}

void DatabaseCopy::stop()
{
    target.server().stop();
}

ConnectionParameters DatabaseCopy::parameters() const
{
    return target.parameters(schema.name, user);
}

ConnectionParameters DatabaseCopy::administratorParameters() const
{
    return target.parameters(schema.name, QStringLiteral("root"));
}

Failure DatabaseCopy::make(const ConnectionParameters &sourceParameters, const CopyWishes &wishes,
                           CopyFacts *facts)
{
    *facts = CopyFacts();
    user = loginName(sourceParameters.user);
    Connection source(connectionName());
    if (const Failure failure = source.open(withTimeLimits(sourceParameters, answerPatience)))
        return failure;
    const Failure failure = copy(source.handle(), wishes, facts);
    source.close();
    return failure;
}

Failure DatabaseCopy::copy(const QSqlDatabase &source, const CopyWishes &wishes, CopyFacts *facts)
{
    Q_EMIT progress(tr("looking at the tables, triggers and routines of database '%1'")
                        .arg(source.databaseName()));
    ServerSettings settings;
    Failure failure = readServerSettings(source, &settings);
    if (!failure)
        failure = prepareSession(source);
    if (!failure)
        failure = readCopiedSchema(source, wishes, &schema);
    facts->leftOut = schema.leftOut;
    facts->warnings = schema.warnings;
    // Deliberate: the copy has it, too, so that the rehearsal loses what the pass will lose. Pinned
    // by tst_Rehearse::withoutAutomaticCommit_nothingStays().
    if (settings.session(QStringLiteral("autocommit")) == QLatin1String("OFF"))
        facts->warnings.append(
            tr("Sessions begin with autocommit = 0: when the connection closes, all that the pass "
               "has written since the last supervisor's mark is undone, here and in the real one; "
               "SET GLOBAL autocommit = 1."));
    if (!failure)
        failure = target.start(settings);
    if (!failure)
        failure = target.makeTables(schema);
    if (failure)
        return failure;

    digestDefinitions(settings);
    failure = copyTables(source, wishes, facts);
    if (!failure)
        failure = target.gatherStatistics(schema);
    if (!failure)
        failure = target.makePrograms(schema, user);
    if (!failure)
        failure = target.takeSettings(settings);
    facts->digest = digest.result().toHex();
    return failure;
}

Failure DatabaseCopy::copyTables(const QSqlDatabase &source, const CopyWishes &wishes,
                                 CopyFacts *facts)
{
    lastTold.start();
    for (const CopiedTable &table : qAsConst(schema.tables)) {
        facts->tables.append(table.name);
        if (table.isView)
            continue;
        // Going back to it lets go of the table: whoever wants to alter it, and whoever waits for
        // them, need not wait for the end of the copy.
        Failure failure = run(source, QStringLiteral("SAVEPOINT untouched"));
        if (!failure)
            failure = copyRows(source, table, wishes, &facts->rows);
        if (!failure)
            failure = run(source, QStringLiteral("ROLLBACK TO SAVEPOINT untouched"));
        if (failure)
            return failure;
    }
    return run(source, QStringLiteral("COMMIT"));
}

Failure DatabaseCopy::copyRows(const QSqlDatabase &source, const CopiedTable &table,
                               const CopyWishes &wishes, qint64 *rows)
{
    RowStream stream(source, table, rowConditions(schema, table, wishes), &digest);
    QByteArray first = stream.next();
    const auto nextPiece = [&] {
        tellRows(table.name, *rows + stream.rows());
        QByteArray piece;
        piece.swap(first);
        return piece.isEmpty() ? stream.next() : piece;
    };
    qint64 arrived = 0;
    // Some tables are empty: no client is started for nothing.
    Failure failure;
    if (!first.isEmpty())
        failure = target.fill(schema, loadingOf(table), nextPiece, &arrived);
    *rows += stream.rows();
    if (stream.failure())
        return stream.failure();
    // What is loaded through a client leaves out in silence what breaks a key.
    if (!failure && arrived != stream.rows())
        return {ExitDatabase,
                tr("the copy cannot be made: of %1 rows of table '%2' it has taken %3")
                    .arg(stream.rows())
                    .arg(table.name)
                    .arg(arrived)};
    return failure;
}

void DatabaseCopy::tellRows(const QString &table, qint64 rows)
{
    if (lastTold.elapsed() < tellingPause)
        return;
    lastTold.start();
    Q_EMIT progress(
        tr("copying table '%1', %2 rows so far").arg(table, QLocale::c().toString(rows)));
}

void DatabaseCopy::digestDefinitions(const ServerSettings &settings)
{
    QStringList parts {schema.name, schema.characterSet, schema.collation, settings.localTimes};
    for (const ServerVariable &variable : settings.variables)
        parts << variable.name << variable.global << variable.session;
    for (const CopiedTable &table : qAsConst(schema.tables))
        parts << table.create;
    for (const QVector<CopiedProgram> &programs : {schema.routines, schema.triggers}) {
        for (const CopiedProgram &program : programs)
            parts << program.create << program.sqlMode << program.characterSet << program.collation;
    }
    // Joined so that no two lists make one text.
    for (const QString &part : qAsConst(parts))
        digest.addData(QByteArray::number(part.size()) + ':' + part.toUtf8());
}
