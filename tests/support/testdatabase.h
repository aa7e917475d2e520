// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A private MariaDB with the attendance schema, for everything whose meaning lies in the database.
#pragma once

#include "host/database/snapshot.h"
#include "host/server/privateserver.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QTemporaryDir>

/// One to a test executable, made in initTestCase(). The server has no network, lives in a folder
/// of its own and ends with the object. It takes the time zone of the process (TZ).
class TestDatabase
{
public:
    enum Content {
        Empty, ///< schema and routines only
        Sample, ///< with the sample company
    };

    explicit TestDatabase(Content content = Empty);
    ~TestDatabase();

    /// The reason why the server could not be made ready; empty when it is.
    QString error() const { return failure; }

    /// A handle of the plugin's own database user that is not open.
    QSqlDatabase handle();
    /// A handle of the administrator that is not open.
    QSqlDatabase administratorHandle();
    /// The server itself, to kill and restart it.
    PrivateServer &server() { return privateServer; }
    /// Starts a killed server again.
    void restart();
    QString databaseName() const;

    /// Empties all tables.
    void clear();
    /// Runs a statement as the administrator; a fault fails the test.
    void execute(const QString &statement);
    /// The rows of a statement, each with its values joined by "|" and NULL for NULL.
    QStringList rows(const QString &statement);
    /// The first value of the first row.
    QString value(const QString &statement);

    /// All that a pass may touch, as the administrator sees it; a fault fails the test.
    Snapshot snapshot(SnapshotRows wanted = SnapshotRows::All);

    /// Sets the variable that makes the plugin's next pass a forced one.
    void force();
    /// How many connections of the plugin's user the server has on its list; one that was closed
    /// stands there a moment longer.
    int pluginSessions();

    /// What UNIX_TIMESTAMP() is in every connection that the plugin's user opens from now on.
    void setClock(qint64 seconds);

    /// Makes a table fail: it is renamed until showTable() is called.
    void hideTable(const QString &table);
    void showTable(const QString &table);

private:
    bool prepare(Content content);
    QSqlDatabase connection(const QString &name, const QString &user) const;

    QTemporaryDir folder;
    PrivateServer privateServer;
    QSqlDatabase administrator;
    QString failure;
    int handles = 0;
};

/// Makes a table fail for as long as it lives.
class HiddenTable
{
public:
    HiddenTable(TestDatabase &hidingDatabase, const char *tableName) :
        database(hidingDatabase),
        table(QString::fromLatin1(tableName))
    {
        database.hideTable(table);
    }
    ~HiddenTable() { database.showTable(table); }

private:
    TestDatabase &database;
    const QString table;
};
