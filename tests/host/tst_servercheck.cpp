// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Servers that are not as a pass needs them: each with its finding and no other, and none once the
// remedy has been followed.
#include "host/database/answeringdriver.h"
#include "host/database/connection.h"
#include "host/doctor/servercheck.h"
#include "host/doctor/serverquestions.h"
#include "support/testdatabase.h"

#include <QRegularExpression>
#include <QTimeZone>
#include <QtTest>

#include <ctime>
#include <memory>

class tst_ServerCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();

    void soundServer_hasNoFinding();
    void server_data();
    void server();
    void clock_data();
    void clock();
    void zone_ofAnotherPlace();
    void clock_inTheRepeatedHour();
    void session_withoutUtf8();
    void session_withModesOfItsOwn();
    void run_atWork();
    void groups_isReserved();
    void node_refusesStatements_data();
    void node_refusesStatements();
    void otherServer_isUnknown();
    void variables_data();
    void variables();
    void session_thatIsLost();
    void timeLimits_data();
    void timeLimits();
    void connectOptions_data();
    void connectOptions();
    void space();
    void packet_data();
    void packet();
    void packet_ofManyAdministrators();

private:
    /// What the plugin's user sees on a new connection.
    Diagnosis diagnose();

    std::unique_ptr<TestDatabase> database;
};

namespace {

QStringList codesOf(const Diagnosis &diagnosis)
{
    QStringList codes;
    for (const Finding &finding : diagnosis.findings)
        codes.append(finding.code);
    return codes;
}

/// The statement at the end of a remedy.
QString statementOf(const Finding &finding)
{
    static const QRegularExpression statement(QStringLiteral("(SET GLOBAL|ALTER TABLE) .*$"));
    return statement.match(finding.remedy).captured();
}

} // namespace

void tst_ServerCheck::initTestCase()
{
    database = std::make_unique<TestDatabase>(TestDatabase::Sample);
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
}

void tst_ServerCheck::cleanup()
{
    qputenv("TZ", "Europe/Bratislava");
    tzset();
    for (const char *name :
         {"sql_mode", "read_only", "autocommit", "time_zone", "max_allowed_packet", "wait_timeout",
          "innodb_lock_wait_timeout", "init_connect", "tx_read_only", "sql_select_limit",
          "max_statement_time"})
        database->execute(QStringLiteral("SET GLOBAL %1 = DEFAULT").arg(QLatin1String(name)));
}

Diagnosis tst_ServerCheck::diagnose()
{
    QSqlDatabase handle = database->handle();
    if (!handle.open())
        qFatal("no connection");
    const Diagnosis diagnosis = serverDiagnosis(handle, true);
    handle.close();
    return diagnosis;
}

void tst_ServerCheck::soundServer_hasNoFinding()
{
    const Diagnosis diagnosis = diagnose();
    QCOMPARE(codesOf(diagnosis), QStringList());
    QVERIFY(diagnosis.unknown.isEmpty());
    QVERIFY(diagnosis.passed.contains(QStringLiteral("SQL modes")));
    QVERIFY(diagnosis.passed.contains(QStringLiteral("clock and time zone")));
}

void tst_ServerCheck::server_data()
{
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QString>("code");
    const auto row = [](const char *code, const QString &fault) {
        QTest::newRow(qPrintable(fault)) << fault << code;
    };
    const QString modes = QStringLiteral("SET GLOBAL sql_mode = '%1'");
    row("E-SRV-GROUPBY", modes.arg(QStringLiteral("STRICT_TRANS_TABLES,ONLY_FULL_GROUP_BY")));
    row("E-SRV-EMPTYNULL", modes.arg(QStringLiteral("STRICT_ALL_TABLES,EMPTY_STRING_IS_NULL")));
    row("W-SRV-LENIENT", modes.arg(QStringLiteral("NO_ENGINE_SUBSTITUTION")));
    row("W-SRV-LENIENT", modes.arg(QString()));
    row("E-SRV-GROUPBY W-SRV-LENIENT", modes.arg(QStringLiteral("ONLY_FULL_GROUP_BY")));
    row("E-SRV-GROUPBY E-SRV-EMPTYNULL W-SRV-LENIENT",
        modes.arg(QStringLiteral("ONLY_FULL_GROUP_BY,ANSI_QUOTES,EMPTY_STRING_IS_NULL")));
    row("E-SRV-READONLY", QStringLiteral("SET GLOBAL read_only = 1"));
    row("E-SRV-READONLY", QStringLiteral("SET GLOBAL tx_read_only = 1"));
    row("E-SRV-AUTOCOMMIT", QStringLiteral("SET GLOBAL autocommit = 0"));
    row("E-SRV-PACKET", QStringLiteral("SET GLOBAL max_allowed_packet = 1024"));
    row("W-SRV-IDLE", QStringLiteral("SET GLOBAL wait_timeout = 60"));
    row("W-SRV-LOCKSHORT", QStringLiteral("SET GLOBAL innodb_lock_wait_timeout = 1"));
    row("W-SRV-LOCKLONG", QStringLiteral("SET GLOBAL innodb_lock_wait_timeout = 3600"));
    row("E-SRV-ROWS", QStringLiteral("SET GLOBAL sql_select_limit = 10"));
    row("W-SRV-TIME", QStringLiteral("SET GLOBAL max_statement_time = 10"));
    row("E-SRV-ZONE", QStringLiteral("SET GLOBAL time_zone = '-08:00'"));
    const int offset = QDateTime::currentDateTime().offsetFromUtc() / 3600;
    row("W-SRV-SEASON", QStringLiteral("SET GLOBAL time_zone = '+0%1:00'").arg(offset));
    row("E-SRV-LETTERS",
        QStringLiteral("ALTER TABLE people MODIFY title VARCHAR(64) CHARACTER SET latin1 NOT NULL "
                       "DEFAULT ''"));
    row("", QStringLiteral("ALTER TABLE people CONVERT TO CHARACTER SET latin2"));
    row("", modes.arg(QStringLiteral("TRADITIONAL")));
    row("", modes.arg(QStringLiteral("ANSI_QUOTES,STRICT_TRANS_TABLES")));
    row("N-SRV-BACKSLASH", modes.arg(QStringLiteral("STRICT_TRANS_TABLES,NO_BACKSLASH_ESCAPES")));
}

void tst_ServerCheck::server()
{
    QFETCH(QString, fault);
    QFETCH(QString, code);
    database->execute(fault);
    const Diagnosis diagnosis = diagnose();
    QCOMPARE(codesOf(diagnosis), code.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (code.isEmpty() || code.startsWith(QLatin1Char('N')))
        return;
    // Of an administrator, and not of a connection that is now read-only by itself.
    QSqlDatabase administrator = database->administratorHandle();
    QVERIFY(administrator.open());
    for (const Finding &finding : diagnosis.findings) {
        QVERIFY2(!statementOf(finding).isEmpty(), qPrintable(finding.remedy));
        const ServerAnswer answer = askServer(administrator, statementOf(finding));
        QVERIFY2(answer.errorCode.isEmpty(), qPrintable(answer.error));
    }
    QCOMPARE(codesOf(diagnose()), QStringList());
}

void tst_ServerCheck::clock_data()
{
    QTest::addColumn<int>("ahead");
    QTest::addColumn<QString>("text");
    QTest::newRow("behind") << -20 << "W-SRV-CLOCK behind";
    QTest::newRow("ahead") << 30 << "W-SRV-CLOCK ahead of";
    QTest::newRow("far behind") << -3600 << "E-SRV-CLOCK behind";
    QTest::newRow("a day ahead") << 86400 << "E-SRV-CLOCK ahead of";
}

/// A difference of the clocks is none of the zones.
void tst_ServerCheck::clock()
{
    QFETCH(int, ahead);
    QFETCH(QString, text);
    database->setClock(QDateTime::currentSecsSinceEpoch() + ahead);
    const Diagnosis diagnosis = diagnose();
    QCOMPARE(codesOf(diagnosis), QStringList(text.section(QLatin1Char(' '), 0, 0)));
    QVERIFY(diagnosis.findings.first().text.contains(text.section(QLatin1Char(' '), 1)));
}

/// Its first half and its second one have the same name on the clock.
void tst_ServerCheck::clock_inTheRepeatedHour()
{
    const QDateTime second(QDate(2026, 10, 25), QTime(1, 30), Qt::UTC);
    database->setClock(second.toSecsSinceEpoch());
    const Diagnosis diagnosis = diagnose();
    QCOMPARE(codesOf(diagnosis), QStringList(QStringLiteral("E-SRV-CLOCK")));
    const QRegularExpression seconds(QStringLiteral("is (\\d+) s"));
    const qint64 told = seconds.match(diagnosis.findings.first().text).captured(1).toLongLong();
    QVERIFY(qAbs(told - qAbs(second.secsTo(QDateTime::currentDateTimeUtc()))) < 1800);
}

/// The server cannot be given the zone of the machine before it knows it.
void tst_ServerCheck::zone_ofAnotherPlace()
{
    qputenv("TZ", "Australia/Eucla");
    tzset();
    const Diagnosis diagnosis = diagnose();
    const QStringList codes {QStringLiteral("E-SRV-ZONE"), QStringLiteral("W-SRV-ZONENAMES")};
    QCOMPARE(codesOf(diagnosis), codes);
    // A server that does not know the name would not start with it.
    QCOMPARE(statementOf(diagnosis.findings.first()), QString());
    QVERIFY(diagnosis.findings.first().remedy.startsWith(
        QStringLiteral("set the time zone of the server's machine to Australia/Eucla ")));
}

void tst_ServerCheck::session_withoutUtf8()
{
    QSqlDatabase handle = database->handle();
    QVERIFY(handle.open());
    askServer(handle, QStringLiteral("SET NAMES latin1"));
    askServer(handle, QStringLiteral("SET sql_mode = 'ANSI,STRICT_ALL_TABLES'"));
    const QStringList codes {QStringLiteral("N-SRV-MODES"), QStringLiteral("E-SRV-CHARSET")};
    QCOMPARE(codesOf(serverDiagnosis(handle, false)), codes);
}

/// What the session does wrong is mended in its list, not in that of the server.
void tst_ServerCheck::session_withModesOfItsOwn()
{
    QSqlDatabase handle = database->handle();
    QVERIFY(handle.open());
    askServer(handle, QStringLiteral("SET sql_mode = 'ANSI_QUOTES,ONLY_FULL_GROUP_BY'"));
    const Diagnosis diagnosis = serverDiagnosis(handle, false);
    const QStringList codes {QStringLiteral("E-SRV-GROUPBY"), QStringLiteral("W-SRV-LENIENT"),
                             QStringLiteral("N-SRV-MODES")};
    QCOMPARE(codesOf(diagnosis), codes);
    for (int i : {0, 1})
        QCOMPARE(statementOf(diagnosis.findings.at(i)),
                 QStringLiteral("SET GLOBAL sql_mode = 'ANSI_QUOTES,STRICT_TRANS_TABLES'"));
}

void tst_ServerCheck::run_atWork()
{
    database->execute(QStringLiteral("DO GET_LOCK('talvenhr run attendance', 0)"));
    const Diagnosis diagnosis = diagnose();
    database->execute(QStringLiteral("DO RELEASE_LOCK('talvenhr run attendance')"));
    QCOMPARE(codesOf(diagnosis), QStringList(QStringLiteral("W-RUN-LOCK")));
    QVERIFY(diagnosis.findings.first().text.contains(QStringLiteral("(connection ")));
    QCOMPARE(codesOf(diagnose()), QStringList());
}

void tst_ServerCheck::groups_isReserved()
{
    const auto driver = answeringDriver([](const DatabaseCall &call) {
        auto answer = std::make_shared<DatabaseAnswer>();
        answer->fails = call.kind == DatabaseCall::Exec
            && !call.statement.contains(QLatin1String("VERSION()"));
        if (call.statement.contains(QLatin1String("groups")))
            answer->error = QSqlError(QString(), QStringLiteral("near 'groups'"),
                                      QSqlError::StatementError, QStringLiteral("1064"));
        else if (!answer->fails)
            answer->setRows({QStringLiteral("v")}, {{QStringLiteral("8.0.36")}});
        return answer;
    });
    QSqlDatabase handle = driver.addHandle(QStringLiteral("other"));
    QVERIFY(handle.open());
    const Finding found = serverDiagnosis(handle, false).findings.value(0);
    QCOMPARE(found.code, QStringLiteral("E-SRV-GROUPS"));
    QVERIFY(found.text.contains(QStringLiteral("version 8.0.36")));
    QVERIFY(found.text.contains(QStringLiteral("near 'groups'")));
}

void tst_ServerCheck::node_refusesStatements_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("text");
    QTest::newRow("tells why") << "non-Primary"
                               << "wsrep_cluster_status is non-Primary";
    QTest::newRow("does not tell why") << "Primary"
                                       << "not yet prepared";
}

/// It shows its variables all the same.
void tst_ServerCheck::node_refusesStatements()
{
    QFETCH(QString, status);
    QFETCH(QString, text);
    const auto driver = answeringDriver([&](const DatabaseCall &call) {
        auto answer = std::make_shared<DatabaseAnswer>();
        const QStringList names {QStringLiteral("Variable_name"), QStringLiteral("Value")};
        if (call.statement.startsWith(QLatin1String("SHOW GLOBAL STATUS"))) {
            answer->setRows(names, {{QStringLiteral("wsrep_cluster_status"), status}});
        } else if (call.statement.startsWith(QLatin1String("SHOW"))) {
            answer->setRows(names, {{QStringLiteral("wsrep_on"), QStringLiteral("ON")}});
        } else if (call.kind == DatabaseCall::Exec) {
            answer->fails = true;
            answer->error = QSqlError(QString(), QStringLiteral("not yet prepared"),
                                      QSqlError::StatementError, QStringLiteral("1047"));
        }
        return answer;
    });
    QSqlDatabase handle = driver.addHandle(QStringLiteral("node"));
    QVERIFY(handle.open());
    const Diagnosis diagnosis = serverDiagnosis(handle, false);
    QCOMPARE(codesOf(diagnosis), QStringList(QStringLiteral("E-CLUSTER-NODE")));
    QVERIFY2(diagnosis.findings.first().text.contains(text),
             qPrintable(diagnosis.findings.first().text));
}

void tst_ServerCheck::otherServer_isUnknown()
{
    const auto driver = answeringDriver([](const DatabaseCall &call) {
        auto answer = std::make_shared<DatabaseAnswer>();
        answer->fails = call.kind == DatabaseCall::Exec;
        return answer;
    });
    QSqlDatabase handle = driver.addHandle(QStringLiteral("another"));
    QVERIFY(handle.open());
    const Diagnosis diagnosis = serverDiagnosis(handle, false);
    QCOMPARE(codesOf(diagnosis), QStringList());
    QVERIFY(diagnosis.passed.isEmpty());
    QCOMPARE(diagnosis.unknown.size(), 1);
}

void tst_ServerCheck::variables_data()
{
    QTest::addColumn<QString>("changes");
    QTest::addColumn<QString>("codes");
    const auto row = [](const char *changes, const char *codes) {
        QTest::newRow(changes) << changes << codes;
    };
    row("", "");
    row("wsrep_ready=OFF", "E-CLUSTER-NODE");
    row("wsrep_cluster_status=non-Primary", "E-CLUSTER-NODE");
    row("wsrep_local_state=2", "");
    row("wsrep_cluster_size=1", "W-CLUSTER-ALONE");
    row("wsrep_cluster_size=2", "W-CLUSTER-SIZE");
    row("wsrep_cluster_size=4", "W-CLUSTER-SIZE");
    row("wsrep_retry_autocommit=1", "W-CLUSTER-RETRY");
    row("wsrep_sync_wait=0", "N-CLUSTER-WAIT");
    row("wsrep_dirty_reads=ON", "W-CLUSTER-DIRTY");
    row("binlog_format=MIXED", "E-CLUSTER-FORMAT");
    row("innodb_autoinc_lock_mode=1", "E-CLUSTER-NUMBERS");
    row("wsrep_on=OFF binlog_format=STATEMENT", "W-SRV-BINLOG");
    row("wsrep_on=OFF binlog_format=STATEMENT log_bin=OFF", "");
}

/// Of clusters and binary logs, which the server at hand has not.
void tst_ServerCheck::variables()
{
    QFETCH(QString, changes);
    QFETCH(QString, codes);
    QHash<QString, QString> values;
    const QString all = QStringLiteral(
                            "wsrep_on=ON wsrep_ready=ON wsrep_cluster_status=Primary "
                            "wsrep_local_state=4 wsrep_cluster_size=3 wsrep_retry_autocommit=4 "
                            "wsrep_sync_wait=1 wsrep_dirty_reads=OFF binlog_format=ROW log_bin=ON "
                            "innodb_autoinc_lock_mode=2 innodb_lock_wait_timeout=50 "
                            "wait_timeout=28800 ")
        + changes;
    const QStringList pairs = all.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (const QString &pair : pairs)
        values.insert(pair.section(QLatin1Char('='), 0, 0), pair.section(QLatin1Char('='), 1));
    const ServerVariables variables(values);
    Diagnosis diagnosis = clusterDiagnosis(variables);
    diagnosis += limitDiagnosis(variables, true);
    QCOMPARE(codesOf(diagnosis).join(QLatin1Char(' ')), codes);
}

void tst_ServerCheck::session_thatIsLost()
{
    QSqlDatabase handle = database->handle();
    QVERIFY(handle.open());
    QString error;
    {
        const SessionWatch watch(handle);
        QVERIFY(!watch.isLost(&error));
        const QString id = askServer(handle, QStringLiteral("SELECT CONNECTION_ID()")).text();
        database->execute(QStringLiteral("KILL ") + id);
        QVERIFY(watch.isLost(&error));
        QVERIFY(!error.isEmpty());
        // One that was lost before the look.
        QVERIFY(SessionWatch(handle).isLost(&error));
        // Another one in its place.
        handle.close();
        QVERIFY(handle.open());
        QVERIFY(watch.isLost(&error));
        QVERIFY(!SessionWatch(handle).isLost(&error));
    }
    handle.close();
}

void tst_ServerCheck::timeLimits_data()
{
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("limited");
    const QString connect = QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=30");
    const QString others = QStringLiteral("MYSQL_OPT_READ_TIMEOUT=30;MYSQL_OPT_WRITE_TIMEOUT=30");
    QTest::newRow("none") << "QMYSQL" << QString() << connect + QLatin1Char(';') + others;
    QTest::newRow("the user's") << "QMYSQL"
                                << "MYSQL_OPT_CONNECT_TIMEOUT=5;"
                                << QStringLiteral("MYSQL_OPT_CONNECT_TIMEOUT=5;") + others;
    QTest::newRow("another driver") << "QSQLITE" << QString() << QString();
}

void tst_ServerCheck::timeLimits()
{
    QFETCH(QString, driver);
    QFETCH(QString, options);
    ConnectionParameters parameters;
    parameters.driver = driver;
    parameters.connectOptions = options;
    QTEST(withTimeLimits(parameters, 30).connectOptions, "limited");
}

void tst_ServerCheck::connectOptions_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("codes");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("harmless") << "MYSQL_OPT_CONNECT_TIMEOUT=5" << QString();
    QTest::newRow("found rows") << "UNIX_SOCKET=/a;CLIENT_FOUND_ROWS=1"
                                << "W-CON-FOUNDROWS";
    QTest::newRow("without a value") << "CLIENT_FOUND_ROWS"
                                     << "W-CON-FOUNDROWS";
    QTest::newRow("off") << "MYSQL_OPT_RECONNECT=0" << QString();
    QTest::newRow("reconnect") << "MYSQL_OPT_RECONNECT=TRUE"
                               << "W-CON-RECONNECT";
}

void tst_ServerCheck::connectOptions()
{
    QFETCH(QString, options);
    QFETCH(QString, codes);
    QCOMPARE(codesOf(connectionDiagnosis(options)).join(QLatin1Char(' ')), codes);
}

void tst_ServerCheck::space()
{
    const QString folder = QStringLiteral("/var/lib/mysql/");
    QCOMPARE(codesOf(spaceDiagnosis(folder, Q_INT64_C(1) << 30)), QStringList());
    QCOMPARE(codesOf(spaceDiagnosis(folder, 12 << 20)), QStringList(QStringLiteral("E-SRV-SPACE")));
    QCOMPARE(
        spaceDiagnosis(folder, 12 << 20).findings.first().text,
        QStringLiteral("12 MiB are free where the server keeps its data, in '%1'").arg(folder));
}

void tst_ServerCheck::packet_data()
{
    QTest::addColumn<int>("largest");
    QTest::addColumn<qint64>("admins");
    QTest::addColumn<qint64>("pids");
    QTest::addColumn<QString>("list"); ///< "LENGTH NAME"
    QTest::newRow("fits") << 12024 << Q_INT64_C(0) << Q_INT64_C(8000) << QString();
    QTest::newRow("terminal") << 12023 << Q_INT64_C(0) << Q_INT64_C(8000) << "11000 terminal";
    QTest::newRow("PaM") << 12024 << Q_INT64_C(0) << Q_INT64_C(11001) << "11001 PaM";
    QTest::newRow("one administrator")
        << 12024 << Q_INT64_C(1) << Q_INT64_C(8000) << "12000 administrators";
    QTest::newRow("many administrators")
        << 1048576 << Q_INT64_C(100) << Q_INT64_C(8000) << "1200000 administrators";
}

/// Of 1000 people: "(12, 1234)," for a terminal, "(123, 1234)," for an administrator.
void tst_ServerCheck::packet()
{
    QFETCH(int, largest);
    QFETCH(qint64, admins);
    QFETCH(qint64, pids);
    QFETCH(QString, list);
    const Diagnosis diagnosis = packetDiagnosis(largest, {1000, pids, 4, 2, 3, admins});
    QCOMPARE(diagnosis.findings.isEmpty(), list.isEmpty());
    for (const Finding &finding : diagnosis.findings) {
        QVERIFY2(finding.text.endsWith(QStringLiteral("would take ")
                                       + list.section(QLatin1Char(' '), 0, 0)),
                 qPrintable(finding.text));
        QVERIFY2(finding.text.contains(list.section(QLatin1Char(' '), 1)),
                 qPrintable(finding.text));
    }
}

/// The statement that puts a branch's people under all its administrators is the longest one.
void tst_ServerCheck::packet_ofManyAdministrators()
{
    database->execute(QStringLiteral("SET GLOBAL max_allowed_packet = 65536"));
    QCOMPARE(codesOf(diagnose()), QStringList());
    database->execute(QStringLiteral("INSERT INTO bradm (bid, aid) SELECT 2, 1000 + seq "
                                     "FROM seq_1_to_1000"));
    const Diagnosis diagnosis = diagnose();
    database->execute(QStringLiteral("DELETE FROM bradm WHERE aid > 1000"));
    QCOMPARE(codesOf(diagnosis), QStringList(QStringLiteral("E-SRV-PACKET")));
}

QTEST_GUILESS_MAIN(tst_ServerCheck)
#include "tst_servercheck.moc"
