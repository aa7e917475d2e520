// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One life of the plugin a process: what comes out of it, and what becomes of a second one.
#include "host/plugin/pluginrun.h"
#include "host/report/logwriter.h"
#include "host/server/privateserver.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

class tst_PluginRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void prepare_syncIntervalZero();
    void firstLife_givesFigures();
    void secondLife_isRefused();
    void secondLife_hasItsOwnDatabaseInAProcessOfItsOwn();

private:
    /// Makes a server with the schema, in a folder of the site; its database is called attendance.
    void startServer(PrivateServer *server);
    QSqlDatabase handleOf(const PrivateServer &server, const QString &name);
    static int peopleIn(QSqlDatabase database);
    PluginRunOptions runOptions() const;

    Site site;
    PrivateServer first {site.path(QStringLiteral("first"))};
    PrivateServer second {site.path(QStringLiteral("second"))};
    // The lines of the plugin are not what this is about.
    LogWriter writer {LogFormat::Text};
};

void tst_PluginRun::initTestCase()
{
    startServer(&first);
    startServer(&second);
}

void tst_PluginRun::cleanupTestCase()
{
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names)
        QSqlDatabase::removeDatabase(name);
}

void tst_PluginRun::startServer(PrivateServer *server)
{
    server->setServerOptions(quickServerOptions());
    QString error;
    const QStringList files = databaseFiles(
        QStringLiteral(TALVENHR_DATABASE_FOLDER),
        {QStringLiteral("schema"), QStringLiteral("routines"), QStringLiteral("grants")});
    QVERIFY2(server->start(&error) && server->createDatabase(QStringLiteral("attendance"), &error)
                 && server->loadFiles(QStringLiteral("attendance"), files, &error),
             qPrintable(error));
}

QSqlDatabase tst_PluginRun::handleOf(const PrivateServer &server, const QString &name)
{
    QSqlDatabase handle = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"), name);
    handle.setDatabaseName(QStringLiteral("attendance"));
    handle.setUserName(QStringLiteral("talvenhr"));
    handle.setConnectOptions(QStringLiteral("UNIX_SOCKET=") + server.socketPath());
    return handle;
}

int tst_PluginRun::peopleIn(QSqlDatabase database)
{
    if (!database.open())
        return -1;
    QSqlQuery query(QStringLiteral("SELECT COUNT(*) FROM people"), database);
    const int people = query.next() ? query.value(0).toInt() : -1;
    query.clear();
    database.close();
    return people;
}

PluginRunOptions tst_PluginRun::runOptions() const
{
    PluginRunOptions options;
    options.pluginFile = TalvenhrProcess::pluginPath();
    options.dataDirectory = site.dataDir();
    options.passes = 1;
    options.logLevel = 0;
    return options;
}

void tst_PluginRun::prepare_syncIntervalZero()
{
    Site zero;
    zero.set({QStringLiteral("syncInterval=0")});
    PluginRunOptions options = runOptions();
    options.dataDirectory = zero.dataDir();
    options.passes = 2;
    PluginRun run(options, &writer);
    QCOMPARE(run.prepare().exitCode, ExitUsage);
}

void tst_PluginRun::firstLife_givesFigures()
{
    PluginRun run(runOptions(), &writer);
    const Failure unprepared = run.prepare();
    QVERIFY2(!unprepared, qPrintable(unprepared.text));
    QSignalSpy started(&run, &PluginRun::started);
    QSignalSpy passEnded(&run, &PluginRun::passEnded);
    const Failure failure = run.run(handleOf(first, QStringLiteral("first")));
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(started.count(), 1);
    QCOMPARE(passEnded.count(), 1);
    QCOMPARE(run.figures().passes, 1);
    QCOMPARE(run.figures().records, 3);
    QCOMPARE(run.figures().added, 3);
    QCOMPARE(peopleIn(QSqlDatabase::database(QStringLiteral("first"), false)), 3);
}

/// Its worker would find the first one's connection under the name of its own database, and write
/// there.
void tst_PluginRun::secondLife_isRefused()
{
    PluginRun run(runOptions(), &writer);
    QVERIFY(!run.prepare());
    const QSqlDatabase handle = handleOf(second, QStringLiteral("second"));
    const Failure failure = run.run(handle);
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY2(failure.text.contains(QStringLiteral("in a process of its own")),
             qPrintable(failure.text));
    QCOMPARE(run.figures().passes, 0);
    QCOMPARE(peopleIn(handle), 0);
}

void tst_PluginRun::secondLife_hasItsOwnDatabaseInAProcessOfItsOwn()
{
    TalvenhrProcess program(site.runOptions(
        {QStringLiteral("--once"), QStringLiteral("--socket"), second.socketPath()}));
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.lastLine().contains(QStringLiteral("3 persons added")));
    QCOMPARE(peopleIn(QSqlDatabase::database(QStringLiteral("second"), false)), 3);
}

QTEST_GUILESS_MAIN(tst_PluginRun)
#include "tst_pluginrun.moc"
