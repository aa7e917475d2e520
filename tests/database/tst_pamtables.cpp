// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Enrolment in PaM on a real server: which block is found, and what stands in list and table.
#include "support/databasefixture.h"
#include "support/databaseworker.h"

#include <QSqlQuery>
#include <QtTest>

class tst_PamTables : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void addPersonIntoPam_firstPersonMakesTheList();
    void addPersonIntoPam_appends_data();
    void addPersonIntoPam_appends();
    void addPersonIntoPam_selectedPersonLeavesTheListAsItIs();
    void addPersonIntoPam_longList();
    void addPersonIntoPam_findsTheBlockByItsName_data();
    void addPersonIntoPam_findsTheBlockByItsName();
    void addPersonIntoPam_noSingleBlockWritesNothing_data();
    void addPersonIntoPam_noSingleBlockWritesNothing();
    void addPersonIntoPam_touchesNoOtherVariable();
    void addPersonIntoPam_listIsBoundNotSpliced();
    void addPersonIntoPam_refusedWriteKeepsTheList();
    void addPersonIntoPam_hiddenTable();

    void dbAddPersonIntoPam_newRow();
    void dbAddPersonIntoPam_rewritesTheBlock();
    void dbAddPersonIntoPam_unchangedRowIsNoSuccess();
    void dbAddPersonIntoPam_unknownPerson();
    void dbAddPersonIntoPam_inactivePersonIsEnrolledToo();
    void dbAddPersonIntoPam_hiddenPeople();
    void dbAddPersonIntoPam_hiddenTable();
    void dbAddPersonIntoPam_writesNothingInTestMode();

    void doSyncRecord_enrolsANewPerson_data();
    void doSyncRecord_enrolsANewPerson();
    void doSyncRecord_failedEnrolmentKeepsThePerson();

private:
    void insertVars(const char *values);
    QStringList vars();
    QStringList enrolments();
};

void tst_PamTables::init()
{
    database->clear();
}

void tst_PamTables::insertVars(const char *values)
{
    database->execute(QStringLiteral("INSERT INTO vars (name, value) VALUES ")
                      + QString::fromUtf8(values));
}

QStringList tst_PamTables::vars()
{
    return database->rows(QStringLiteral("SELECT name, value FROM vars ORDER BY name"));
}

QStringList tst_PamTables::enrolments()
{
    return database->rows(QStringLiteral("SELECT uid, id FROM people_pam ORDER BY uid, id"));
}

// The list

void tst_PamTables::addPersonIntoPam_firstPersonMakesTheList()
{
    insertVars("('exportPam.1.active', '1')");
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(4294967295u));
    QCOMPARE(vars(), lines({"exportPam.1.active|1", "exportPam.1.selPeople|4294967295"}));
    QVERIFY(f.worker.addPersonIntoPam(12341));
    QCOMPARE(vars(), lines({"exportPam.1.active|1", "exportPam.1.selPeople|4294967295,12341"}));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::addPersonIntoPam_appends_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("written");
    QTest::newRow("NULL") << QStringLiteral("NULL") << QStringLiteral("9");
    QTest::newRow("empty") << QStringLiteral("''") << QStringLiteral("9");
    QTest::newRow("one") << QStringLiteral("'5'") << QStringLiteral("5,9");
    QTest::newRow("empty parts") << QStringLiteral("',5,,7,'") << QStringLiteral("5,7,9");
    QTest::newRow("a longer one") << QStringLiteral("'19,90'") << QStringLiteral("19,90,9");
    QTest::newRow("letters") << QStringLiteral("'ž,5'") << QStringLiteral("ž,5,9");
}

void tst_PamTables::addPersonIntoPam_appends()
{
    QFETCH(QString, stored);
    QFETCH(QString, written);
    insertVars("('exportPam.1.active', '1')");
    database->execute(
        QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.selPeople', %1)").arg(stored));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(),
             lines({"exportPam.1.active|1"}) << QStringLiteral("exportPam.1.selPeople|") + written);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::addPersonIntoPam_selectedPersonLeavesTheListAsItIs()
{
    // Its empty part would vanish, were it written.
    insertVars("('exportPam.1.active', '0'), ('exportPam.1.selPeople', '5,,9')");
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(), lines({"exportPam.1.active|0", "exportPam.1.selPeople|5,,9"}));
}

void tst_PamTables::addPersonIntoPam_longList()
{
    QStringList pids;
    for (uint pid = 10000001; pid <= 10010000; ++pid)
        pids.append(QString::number(pid));
    insertVars("('exportPam.1.active', '1')");
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.selPeople', '%1')")
                          .arg(pids.join(QLatin1Char(','))));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(1001000));
    pids.append(QStringLiteral("1001000"));
    const QString list = database->value(
        QStringLiteral("SELECT value FROM vars WHERE name='exportPam.1.selPeople'"));
    QCOMPARE(list.size(), 90007);
    QVERIFY(list == pids.join(QLatin1Char(',')));
}

void tst_PamTables::addPersonIntoPam_findsTheBlockByItsName_data()
{
    QTest::addColumn<QString>("variables");
    QTest::addColumn<QStringList>("after");
    const auto row = [](const char *test, const char *variables, const QStringList &after) {
        QTest::newRow(test) << QString::fromLatin1(variables) << after;
    };
    row("inactive", "('exportPam.1.active', '0')",
        lines({"exportPam.1.active|0", "exportPam.1.selPeople|9"}));
    row("NULL", "('exportPam.1.active', NULL)",
        lines({"exportPam.1.active|NULL", "exportPam.1.selPeople|9"}));
    row("no id", "('exportPam..active', '1')",
        lines({"exportPam..active|1", "exportPam..selPeople|9"}));
    row("id of two words", "('exportPam.north.2.active', '1')",
        lines({"exportPam.north.2.active|1", "exportPam.north.2.selPeople|9"}));
    row("active in the id", "('exportPam.active.active', '1'), ('exportPam.active.selPeople', '5')",
        lines({"exportPam.active.active|1", "exportPam.active.selPeople|5",
               "exportPam.selPeople.selPeople|9"}));
    row("a name that only begins like it", "('exportPam.1.activeSince', '1')",
        lines({"exportPam.1.activeSince|1", "exportPam.1.selPeopleSince|9"}));
    row("beside a name without an id", "('exportPam.1.active', '1'), ('exportPam.active', '2')",
        lines({"exportPam.1.active|1", "exportPam.1.selPeople|9", "exportPam.active|2"}));
    row("beside a name that has it further on",
        "('exportPam.1.active', '1'), ('my.exportPam.2.active', '2')",
        lines({"exportPam.1.active|1", "exportPam.1.selPeople|9", "my.exportPam.2.active|2"}));
}

void tst_PamTables::addPersonIntoPam_findsTheBlockByItsName()
{
    QFETCH(QString, variables);
    QFETCH(QStringList, after);
    insertVars(qPrintable(variables));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(), after);
}

void tst_PamTables::addPersonIntoPam_noSingleBlockWritesNothing_data()
{
    QTest::addColumn<QString>("variables");
    const auto row = [](const char *test, const char *variables) {
        QTest::newRow(test) << QString::fromLatin1(variables);
    };
    row("a list without a block", "('exportPam.1.selPeople', '5')");
    row("a name without an id", "('exportPam.active', '1')");
    row("a name that has it further on", "('my.exportPam.1.active', '1')");
    row("two blocks", "('exportPam.1.active', '1'), ('exportPam.2.active', '1')");
    row("one of two inactive", "('exportPam.1.active', '1'), ('exportPam.2.active', '0')");
    row("a name that begins like it",
        "('exportPam.1.active', '1'), ('exportPam.1.activeSince', '2024')");
    row("a word after it", "('exportPam.1.active', '1'), ('exportPam.1.active.by', 'admin')");
    row("another case", "('exportPam.1.active', '1'), ('EXPORTPAM.2.ACTIVE', '1')");
}

void tst_PamTables::addPersonIntoPam_noSingleBlockWritesNothing()
{
    QFETCH(QString, variables);
    insertVars(qPrintable(variables));
    const QStringList before = vars();
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    QVERIFY(!f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(), before);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::addPersonIntoPam_touchesNoOtherVariable()
{
    insertVars("('exportPam.2.active', '1'), ('exportPam.2.selPeople', '5'), "
               "('exportPam.1.selPeople', '6'), ('exportPam.2.selPeopleX', '7'), ('a', '8')");
    DatabaseWorker f(*database);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(),
             lines({"a|8", "exportPam.1.selPeople|6", "exportPam.2.active|1",
                    "exportPam.2.selPeople|5,9", "exportPam.2.selPeopleX|7"}));
}

void tst_PamTables::addPersonIntoPam_listIsBoundNotSpliced()
{
    insertVars("('exportPam.1.active', '1'), ('exportPam.1.selPeople', 'O''Hara,%1,a\\\\,?')");
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    QVERIFY(f.worker.addPersonIntoPam(9));
    QCOMPARE(vars(), lines({"exportPam.1.active|1", "exportPam.1.selPeople|O'Hara,%1,a\\,?,9"}));
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'",
                    "sql exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1",
                    "sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                    "ON DUPLICATE KEY UPDATE value=VALUES(value);",
                    "sql run :name=exportPam.1.selPeople, :value=O'Hara,%1,a\\,?,9"}));
}

void tst_PamTables::addPersonIntoPam_refusedWriteKeepsTheList()
{
    insertVars("('exportPam.1.active', '1'), ('exportPam.1.selPeople', '5')");
    DatabaseWorker f(*database);
    database->execute(QStringLiteral("CREATE TRIGGER refusing BEFORE INSERT ON vars FOR EACH ROW "
                                     "SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'refused'"));
    const bool written = f.worker.addPersonIntoPam(9);
    database->execute(QStringLiteral("DROP TRIGGER refusing"));
    QVERIFY(!written);
    QCOMPARE(f.log.take(),
             lines({"critical variableSet ERROR: \"refused QMYSQL3: Unable to execute "
                    "statement\""}));
    QCOMPARE(vars(), lines({"exportPam.1.active|1", "exportPam.1.selPeople|5"}));
}

void tst_PamTables::addPersonIntoPam_hiddenTable()
{
    insertVars("('exportPam.1.active', '1')");
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "vars");
    QVERIFY(!f.worker.addPersonIntoPam(9));
    QCOMPARE(f.log.take(),
             lines({"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
                    "critical Table 'attendance.vars' doesn't exist QMYSQL: Unable to execute "
                    "query"}));
}

// The row

void tst_PamTables::dbAddPersonIntoPam_newRow()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341), "
                                     "(3000000000, 4294967293)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 1));
    QVERIFY(f.worker.dbAddPersonIntoPam(4294967293u, 4294967295u));
    QCOMPARE(enrolments(), lines({"41|1", "3000000000|4294967295"}));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::dbAddPersonIntoPam_rewritesTheBlock()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341)"));
    database->execute(QStringLiteral("INSERT INTO people_pam VALUES (40, 1), (41, 1), (42, 1)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(enrolments(), lines({"40|1", "41|2", "42|1"}));
}

void tst_PamTables::dbAddPersonIntoPam_unchangedRowIsNoSuccess()
{
    // The row stands, yet the database tells of no row changed and of no id.
    database->execute(QStringLiteral("INSERT INTO people_pam VALUES (41, 2)"));
    DatabaseWorker f(*database);
    // An insert id of an earlier statement must not pass for one of this.
    QSqlQuery earlier(f.peer.db);
    QVERIFY(earlier.exec(QStringLiteral("INSERT INTO people (pid) VALUES (99)")));
    QVERIFY(earlier.lastInsertId().toUInt() > 0);
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341)"));
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(enrolments(), lines({"41|2"}));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::dbAddPersonIntoPam_unknownPerson()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (12341, 99), (41, "
                                     "NULL)"));
    DatabaseWorker f(*database);
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(), QStringList());
    f.worker.setLogLevel(1);
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - Unique "
                    "person ID ([people].uid) not found!"}));
    QCOMPARE(enrolments(), QStringList());
}

void tst_PamTables::dbAddPersonIntoPam_inactivePersonIsEnrolledToo()
{
    database->execute(
        QStringLiteral("INSERT INTO people (uid, pid, status) VALUES (41, 12341, 0)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(enrolments(), lines({"41|2"}));
}

void tst_PamTables::dbAddPersonIntoPam_hiddenPeople()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341)"));
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    const HiddenTable hidden(*database, "people");
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2)",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - Unique "
                    "person ID ([people].uid) not found!"}));
    QCOMPARE(enrolments(), QStringList());
}

void tst_PamTables::dbAddPersonIntoPam_hiddenTable()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341)"));
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people_pam");
    QVERIFY(!f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 2) - SQL "
                    "ERROR: Table 'attendance.people_pam' doesn't exist QMYSQL: Unable to execute "
                    "query"}));
}

void tst_PamTables::dbAddPersonIntoPam_writesNothingInTestMode()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (41, 12341)"));
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    QVERIFY(f.worker.dbAddPersonIntoPam(12341, 2));
    QCOMPARE(enrolments(), QStringList());
    QCOMPARE(f.log.take(), QStringList());
}

// A new person

void tst_PamTables::doSyncRecord_enrolsANewPerson_data()
{
    QTest::addColumn<ushort>("tpp");
    QTest::addColumn<QStringList>("blocks");
    QTest::newRow("employee") << ushort(11) << lines({"1"});
    QTest::newRow("agreement") << ushort(51) << lines({"2"});
    QTest::newRow("no enrolment") << ushort(1) << QStringList();
}

void tst_PamTables::doSyncRecord_enrolsANewPerson()
{
    QFETCH(ushort, tpp);
    QFETCH(QStringList, blocks);
    insertVars("('exportPam.1.active', '1'), ('exportPam.1.selPeople', '5')");
    DatabaseWorker f(*database);
    f.worker.doSyncRecord(record().tpp(tpp));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), lines({"12341"}));
    QCOMPARE(vars(), lines({"exportPam.1.active|1", "exportPam.1.selPeople|5,12341"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT id FROM people JOIN people_pam USING(uid)")),
             blocks);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_PamTables::doSyncRecord_failedEnrolmentKeepsThePerson()
{
    insertVars("('exportPam.1.active', '1'), ('exportPam.2.active', '1')");
    const QStringList before = vars();
    DatabaseWorker f(*database);
    {
        const HiddenTable hidden(*database, "people_pam");
        f.worker.doSyncRecord(record());
    }
    QCOMPARE(f.log.take(),
             lines({"warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() FAILED!",
                    "critical THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1) - SQL "
                    "ERROR: Table 'attendance.people_pam' doesn't exist QMYSQL: Unable to execute "
                    "query",
                    "warning THRWorker::doSyncRecord(1234.1 Novák Ján (S: 0, K: 0 from ) N-V: "
                    "1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0) - "
                    "dbAddPersonIntoPam(12341, 1) FAILED!"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, name, status FROM people")),
             lines({"12341|Ján|1"}));
    QCOMPARE(vars(), before);
    QCOMPARE(enrolments(), QStringList());

    // In the next pass the person is no longer new, though nothing would stand in the way.
    database->execute(QStringLiteral("DELETE FROM vars WHERE name='exportPam.2.active'"));
    QVERIFY(f.worker.dbLoadPeople());
    f.worker.doSyncRecord(record());
    QCOMPARE(vars(), lines({"exportPam.1.active|1"}));
    QCOMPARE(enrolments(), QStringList());
    QCOMPARE(f.log.take(), QStringList());
}

QTEST_GUILESS_MAIN(tst_PamTables)
#include "tst_pamtables.moc"
