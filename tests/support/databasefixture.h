// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The base of test classes whose meaning lies in the database.
#pragma once

#include "support/eventlog.h"
#include "support/machineclock.h"
#include "support/testdatabase.h"

#include <QDateTime>
#include <QObject>

#include <memory>

/// Holds the private server of an executable, from before its first test until after its last.
class DatabaseFixture : public QObject
{
    Q_OBJECT

public:
    explicit DatabaseFixture(TestDatabase::Content content = TestDatabase::Empty);
    /// The clock of the process stands at the moment, from before the server on; see MachineClock.
    explicit DatabaseFixture(const QDateTime &moment);

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

protected:
    /// What else the tests have in common: called when the server is ready, and before it goes.
    virtual void prepare() { }
    virtual void release() { }

    /// For the process, and for new connections of the plugin. Where the clock stands at all.
    void setMoment(const QDateTime &moment);

    std::unique_ptr<TestDatabase> database;
    std::unique_ptr<MachineClock> clock; ///< null where the clock goes on

private:
    const TestDatabase::Content content;
    const QDateTime firstMoment;
};

/// As DatabaseFixture, with what the tests of a repository need: one open connection of the
/// plugin's own user, and for each test empty tables and a log.
class ConnectionFixture : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

protected:
    /// Makes the repository of a test and fills the tables; nothing of it is logged.
    virtual void begin() = 0;
    /// Takes down what begin() made. The log has gone.
    virtual void end() = 0;

    void prepare() override;
    void release() override;

    QStringList rows(const char *statement) { return database->rows(str(statement)); }
    void execute(const char *statement) { database->execute(str(statement)); }
    /// What UNIX_TIMESTAMP() is in the connection.
    void setClock(qint64 seconds);

    QSqlDatabase handle;
    std::unique_ptr<EventLog> log;
};
