// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A private MariaDB with the attendance schema, for everything whose meaning lies in the database.
#include "support/testdatabase.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QtTest>

namespace {

void failTest(const QString &what)
{
    QTest::qFail(qPrintable(what), __FILE__, __LINE__);
}

} // namespace

TestDatabase::TestDatabase(Content content) :
    folder(QStringLiteral("/tmp/talven-XXXXXX")),
    privateServer(folder.filePath(QStringLiteral("db")))
{
    // Nothing here has to outlive a power failure, but what was written has to outlive the server:
    // it is killed now and then.
    privateServer.setServerOptions({QStringLiteral("--innodb-doublewrite=0")});
    if (!prepare(content) && failure.isEmpty())
        failure = QStringLiteral("the private server could not be made ready");
}

TestDatabase::~TestDatabase()
{
    const QString name = administrator.connectionName();
    administrator = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
}

bool TestDatabase::prepare(Content content)
{
    QStringList parts {QStringLiteral("schema"), QStringLiteral("routines"),
                       QStringLiteral("grants")};
    if (content == Sample)
        parts.append(QStringLiteral("sample"));
    if (!privateServer.start(&failure) || !privateServer.createDatabase(databaseName(), &failure)
        || !privateServer.loadFiles(databaseName(),
                                    databaseFiles(QStringLiteral(TALVENHR_DATABASE_FOLDER), parts),
                                    &failure)) {
        return false;
    }

    administrator = connection(QStringLiteral("administrator"), QStringLiteral("root"));
    if (!administrator.open()) {
        failure = administrator.lastError().text();
        return false;
    }
    return true;
}

QSqlDatabase TestDatabase::connection(const QString &name, const QString &user) const
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
    database.setConnectOptions(QStringLiteral("UNIX_SOCKET=") + privateServer.socketPath());
    database.setDatabaseName(databaseName());
    database.setUserName(user);
    return database;
}

QSqlDatabase TestDatabase::handle()
{
    return connection(QStringLiteral("handle-%1").arg(++handles), QStringLiteral("talvenhr"));
}

QSqlDatabase TestDatabase::administratorHandle()
{
    return connection(QStringLiteral("handle-%1").arg(++handles), QStringLiteral("root"));
}

void TestDatabase::restart()
{
    QString reason;
    if (!privateServer.start(&reason)) {
        failTest(reason);
        return;
    }
    // The old connection takes no notice of the server's end.
    administrator.close();
    if (!administrator.open())
        failTest(administrator.lastError().text());
}

QString TestDatabase::databaseName() const
{
    return QStringLiteral("attendance");
}

void TestDatabase::clear()
{
    const QStringList tables = rows(QStringLiteral("SHOW TABLES"));
    for (const QString &table : tables)
        execute(QStringLiteral("DELETE FROM `%1`").arg(table));
}

void TestDatabase::execute(const QString &statement)
{
    QSqlQuery query(administrator);
    if (!query.exec(statement))
        failTest(query.lastError().text() + QStringLiteral("\n") + statement);
}

QStringList TestDatabase::rows(const QString &statement)
{
    QSqlQuery query(administrator);
    if (!query.exec(statement))
        failTest(query.lastError().text() + QStringLiteral("\n") + statement);
    QStringList result;
    while (query.next()) {
        QStringList values;
        for (int column = 0; column < query.record().count(); ++column) {
            const QVariant value = query.value(column);
            values.append(value.isNull() ? QStringLiteral("NULL") : value.toString());
        }
        result.append(values.join(QLatin1Char('|')));
    }
    return result;
}

QString TestDatabase::value(const QString &statement)
{
    return rows(statement).value(0).section(QLatin1Char('|'), 0, 0);
}

Snapshot TestDatabase::snapshot(SnapshotRows wanted)
{
    Snapshot snapshot;
    if (const Failure failed = readSnapshot(administrator, wanted, &snapshot))
        failTest(failed.text);
    return snapshot;
}

void TestDatabase::force()
{
    execute(QStringLiteral("REPLACE INTO vars VALUES ('OQS.THRWorker.forceSync', '1')"));
}

int TestDatabase::pluginSessions()
{
    return value(QStringLiteral("SELECT COUNT(*) FROM information_schema.processlist "
                                "WHERE user = 'talvenhr'"))
        .toInt();
}

void TestDatabase::setClock(qint64 seconds)
{
    // Run by the server for every new connection, but for an administrator's.
    execute(QStringLiteral("SET GLOBAL init_connect = 'SET timestamp = %1'").arg(seconds));
}

void TestDatabase::hideTable(const QString &table)
{
    execute(QStringLiteral("RENAME TABLE `%1` TO `%1_hidden`").arg(table));
}

void TestDatabase::showTable(const QString &table)
{
    execute(QStringLiteral("RENAME TABLE `%1_hidden` TO `%1`").arg(table));
}
