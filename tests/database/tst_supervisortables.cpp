// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The supervisor's mark on a real server: the rows that others see afterwards, and what a failure
// leaves of them.
#include "support/databasefixture.h"
#include "support/databaseworker.h"

#include <QtTest>

#include <memory>

namespace {

/// Does something at each row of `admins_people` that is written, for as long as it lives.
class Trigger
{
public:
    Trigger(TestDatabase &triggeringDatabase, const char *event, const char *action) :
        database(triggeringDatabase),
        name(QString::fromLatin1(event).replace(QLatin1Char(' '), QLatin1Char('_')).toLower())
    {
        database.execute(QStringLiteral("CREATE TRIGGER %1 %2 ON admins_people FOR EACH ROW %3")
                             .arg(name, QString::fromLatin1(event), QString::fromLatin1(action)));
    }
    ~Trigger() { database.execute(QStringLiteral("DROP TRIGGER %1").arg(name)); }

private:
    TestDatabase &database;
    const QString name;
};

const char refusal[] = "SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'refused'";

/// A table beside, in which each row that the reset finds leaves a trace, be it changed or not: by
/// it a transaction that changed no row shows what became of it.
class ResetTrace
{
public:
    explicit ResetTrace(TestDatabase &tracedDatabase) :
        database(tracedDatabase)
    {
        database.execute(QStringLiteral("CREATE TABLE resets (aid INT UNSIGNED) ENGINE = InnoDB"));
        trigger = std::make_unique<Trigger>(database, "BEFORE UPDATE",
                                            "INSERT INTO resets VALUES (OLD.aid)");
    }
    ~ResetTrace()
    {
        trigger.reset();
        database.execute(QStringLiteral("DROP TABLE resets"));
    }

    QStringList rows() { return database.rows(QStringLiteral("SELECT aid FROM resets")); }

private:
    TestDatabase &database;
    std::unique_ptr<Trigger> trigger;
};

// Administrator 9 has the personal number 77, the person is uid 42. The cache of uids lasts as long
// as the process: where all statements count, the person is asked for beforehand.
const uint personal = 1234;

EmployeeRecord supervised(uint nadOsCis = 77)
{
    return record().pid(personal, 1).supervisor(nadOsCis);
}

const char asking[] = "sql exec SELECT aid FROM admins WHERE personalNumber = 77";
const char resetting[] = "sql exec UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9";
const char setting[] = "sql exec INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) "
                       "ON DUPLICATE KEY UPDATE request=1";
const char notMarked[] = "warning THRWorker::processNadOsCis() - (Re)Set Admin People Request "
                         "FAilED!";
const char setRefused[] = "critical THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [1644]: "
                          "refused QMYSQL: Unable to execute query\n"
                          " SQL: INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) "
                          "ON DUPLICATE KEY UPDATE request=1";

} // namespace

class tst_SupervisorTables : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void processNadOsCis_firstSupervisorMakesTheLink();
    void processNadOsCis_markMoves_data();
    void processNadOsCis_markMoves();
    void processNadOsCis_unchangedSupervisorKeepsTheMark();
    void processNadOsCis_otherPeopleKeepTheirs();
    void processNadOsCis_noneNamedLeavesTheOldMark();
    void processNadOsCis_unknownAdministratorLeavesTheOldMark();
    void processNadOsCis_hiddenAdministratorsLeaveTheOldMark();
    void processNadOsCis_unknownPersonLeavesTheOldMark();
    void processNadOsCis_hiddenPeopleLeaveTheOldMark();
    void processNadOsCis_hiddenLinks();
    void processNadOsCis_refusedResetIsRolledBack();
    void processNadOsCis_refusedSetAfterAnEmptyResetIsRolledBack();
    void processNadOsCis_refusedSetWithNothingToResetIsRolledBack();
    void processNadOsCis_refusedSetAfterAResetIsCommitted();
    void processNadOsCis_writesInTestMode();

    void doSyncRecord_markFollowsTheExport();

    void dbGetAidByOsCis();
    void dbGetAidByOsCis_hiddenTable();
    void dbResetAdminPeopleRequest_countsTheOthersThatHadTheMark();
    void dbResetAdminPeopleRequest_hiddenTable();
    void dbSetAdminPeopleRequest_newChangedAndUnchangedRow();
    void dbSetAdminPeopleRequest_hiddenTable();

private:
    void insertLinks(const char *values);
    QStringList links();
    void noTransactionIsOpen(DatabaseWorker *worker);
};

void tst_SupervisorTables::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO admins (aid, personalNumber) VALUES "
                                     "(4, NULL), (5, 50), (6, 60), (9, 77)"));
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, pamId, name, surname) VALUES "
                                     "(42, 12341, '1234.1', 'Ján', 'Novák')"));
}

void tst_SupervisorTables::insertLinks(const char *values)
{
    database->execute(QStringLiteral("INSERT INTO admins_people (aid, uid, request) VALUES ")
                      + QString::fromLatin1(values));
}

/// What is committed: the question runs on another connection.
QStringList tst_SupervisorTables::links()
{
    return database->rows(
        QStringLiteral("SELECT aid, uid, request FROM admins_people ORDER BY uid, aid"));
}

/// What the worker writes from now on is seen by others at once.
void tst_SupervisorTables::noTransactionIsOpen(DatabaseWorker *worker)
{
    worker->worker.dbSetAdminPeopleRequest(3, 1000);
    QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM admins_people WHERE uid=1000")),
             QStringLiteral("1"));
}

// One employee

void tst_SupervisorTables::processNadOsCis_firstSupervisorMakesTheLink()
{
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(supervised());
    QCOMPARE(links(), lines({"9|42|1"}));
    QCOMPARE(f.log.take(), QStringList());
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_markMoves_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QStringList>("after");
    const auto row = [](const char *test, const char *before, const QStringList &after) {
        QTest::newRow(test) << QString::fromLatin1(before) << after;
    };
    row("to a new link", "(5, 42, 1)", lines({"5|42|0", "9|42|1"}));
    row("to a link without the mark", "(5, 42, 1), (9, 42, 0)", lines({"5|42|0", "9|42|1"}));
    row("two marks, one of the named", "(5, 42, 1), (9, 42, 1)", lines({"5|42|0", "9|42|1"}));
    row("two marks of others", "(5, 42, 1), (6, 42, 1)", lines({"5|42|0", "6|42|0", "9|42|1"}));
    row("two marks of others, link without", "(5, 42, 1), (6, 42, 1), (9, 42, 0)",
        lines({"5|42|0", "6|42|0", "9|42|1"}));
    row("links without the mark", "(5, 42, 0), (6, 42, 0)", lines({"5|42|0", "6|42|0", "9|42|1"}));
    row("another value than 1", "(5, 42, 2), (9, 42, 2)", lines({"5|42|0", "9|42|1"}));
}

void tst_SupervisorTables::processNadOsCis_markMoves()
{
    QFETCH(QString, before);
    QFETCH(QStringList, after);
    insertLinks(qPrintable(before));
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(supervised());
    QCOMPARE(links(), after);
    QCOMPARE(f.log.take(), QStringList());
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_unchangedSupervisorKeepsTheMark()
{
    insertLinks("(5, 42, 0), (9, 42, 1)");
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    f.worker.setLogLevel(1);
    f.worker.processNadOsCis(supervised());
    QCOMPARE(
        f.log.take(),
        lines({"debug THRWorker::processNadOsCis(1234.1, NOC: 77)", asking,
               "debug THRWorker::dbGetAidByOsCis(uid: 77): 9", "sql begin", resetting,
               "debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - affected: 0", setting,
               "debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - affected: 0",
               "sql commit"}));
    QCOMPARE(links(), lines({"5|42|0", "9|42|1"}));
}

void tst_SupervisorTables::processNadOsCis_otherPeopleKeepTheirs()
{
    insertLinks("(5, 41, 1), (5, 42, 1), (5, 43, 1), (9, 41, 0), (9, 43, 1)");
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(supervised());
    QCOMPARE(links(), lines({"5|41|1", "9|41|0", "5|42|0", "9|42|1", "5|43|1", "9|43|1"}));
}

void tst_SupervisorTables::processNadOsCis_noneNamedLeavesTheOldMark()
{
    insertLinks("(5, 42, 1)");
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(supervised(0));
    QCOMPARE(links(), lines({"5|42|1"}));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_SupervisorTables::processNadOsCis_unknownAdministratorLeavesTheOldMark()
{
    insertLinks("(5, 42, 1)");
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(supervised(9)); // an aid, but no personal number
    QCOMPARE(f.log.take(), lines({"warning THRWorker - admin s osobnym cislom 9 nebol najdeny!"}));
    QCOMPARE(links(), lines({"5|42|1"}));
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_hiddenAdministratorsLeaveTheOldMark()
{
    insertLinks("(5, 42, 1)");
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "admins");
    f.worker.processNadOsCis(supervised());
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbGetAidByOsCis() - SQL ERROR [1146]: Table "
                    "'attendance.admins' doesn't exist QMYSQL: Unable to execute query\n"
                    " SQL: SELECT aid FROM admins WHERE personalNumber = 77",
                    "warning THRWorker - admin s osobnym cislom 77 nebol najdeny!"}));
    QCOMPARE(links(), lines({"5|42|1"}));
}

void tst_SupervisorTables::processNadOsCis_unknownPersonLeavesTheOldMark()
{
    insertLinks("(5, 42, 1)");
    DatabaseWorker f(*database);
    f.worker.processNadOsCis(record().pid(1235, 1).supervisor(77));
    QCOMPARE(f.log.take(),
             lines({"warning THRWorker - zamestnanec s osobnym cislom 12351 nebol najdeny!"}));
    QCOMPARE(links(), lines({"5|42|1"}));
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_hiddenPeopleLeaveTheOldMark()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (43, 12361)"));
    insertLinks("(5, 43, 1)");
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people");
    f.worker.processNadOsCis(record().pid(1236, 1).supervisor(77));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbGetUidByPid() - SQL ERROR [1146]: Table "
                    "'attendance.people' doesn't exist QMYSQL: Unable to execute query",
                    "warning THRWorker - zamestnanec s osobnym cislom 12361 nebol najdeny!"}));
    QCOMPARE(links(), lines({"5|43|1"}));
}

void tst_SupervisorTables::processNadOsCis_hiddenLinks()
{
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    {
        const HiddenTable hidden(*database, "admins_people");
        f.worker.processNadOsCis(supervised());
    }
    QCOMPARE(f.log.take(),
             lines({asking, "sql begin", resetting,
                    "critical THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [1146]: Table "
                    "'attendance.admins_people' doesn't exist QMYSQL: Unable to execute query\n"
                    " SQL: UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9",
                    "sql rollback", notMarked}));
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_refusedResetIsRolledBack()
{
    insertLinks("(5, 42, 1), (6, 42, 1), (9, 42, 0)");
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    {
        // Not the first of the two rows, the second.
        const Trigger refusing(*database, "BEFORE UPDATE",
                               "IF OLD.aid = 6 THEN SIGNAL SQLSTATE '45000' "
                               "SET MESSAGE_TEXT = 'refused'; END IF");
        f.worker.processNadOsCis(supervised());
    }
    QCOMPARE(f.log.take(),
             lines({asking, "sql begin", resetting,
                    "critical THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [1644]: refused "
                    "QMYSQL: Unable to execute query\n"
                    " SQL: UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9",
                    "sql rollback", notMarked}));
    QCOMPARE(links(), lines({"5|42|1", "6|42|1", "9|42|0"}));
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_refusedSetAfterAnEmptyResetIsRolledBack()
{
    insertLinks("(5, 42, 0), (9, 42, 0)");
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    ResetTrace trace(*database);
    {
        const Trigger refusing(*database, "BEFORE INSERT", refusal);
        f.worker.processNadOsCis(supervised());
    }
    QCOMPARE(
        f.log.take(),
        lines({asking, "sql begin", resetting, setting, setRefused, "sql rollback", notMarked}));
    QCOMPARE(links(), lines({"5|42|0", "9|42|0"}));
    // The reset did its work, and it is undone.
    QCOMPARE(trace.rows(), QStringList());
    noTransactionIsOpen(&f);

    // What a step that succeeds leaves there.
    f.worker.processNadOsCis(supervised());
    QVERIFY(trace.rows().contains(QStringLiteral("5")));
}

void tst_SupervisorTables::processNadOsCis_refusedSetWithNothingToResetIsRolledBack()
{
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    {
        const Trigger refusing(*database, "BEFORE INSERT", refusal);
        f.worker.processNadOsCis(supervised());
    }
    QCOMPARE(
        f.log.take(),
        lines({asking, "sql begin", resetting, setting, setRefused, "sql rollback", notMarked}));
    QCOMPARE(links(), QStringList());
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_refusedSetAfterAResetIsCommitted()
{
    insertLinks("(5, 42, 1), (9, 42, 0)");
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.getUidByPid(12341);
    f.log.clear();
    ResetTrace trace(*database);
    {
        const Trigger refusing(*database, "BEFORE INSERT", refusal);
        f.worker.processNadOsCis(supervised());
    }
    QCOMPARE(f.log.take(),
             lines({asking, "sql begin", resetting, setting, setRefused, "sql commit"}));
    // Nobody has the mark.
    QCOMPARE(links(), lines({"5|42|0", "9|42|0"}));
    QCOMPARE(trace.rows(), lines({"5"}));
    noTransactionIsOpen(&f);
}

void tst_SupervisorTables::processNadOsCis_writesInTestMode()
{
    insertLinks("(5, 42, 1)");
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    f.worker.processNadOsCis(supervised());
    QCOMPARE(links(), lines({"5|42|0", "9|42|1"}));
    QCOMPARE(f.log.take(), QStringList());
}

// From one export to the next

void tst_SupervisorTables::doSyncRecord_markFollowsTheExport()
{
    DatabaseWorker f(*database);
    const RecordBuilder person = record().pid(personal, 1);
    const auto pass = [&](uint nadOsCis) {
        f.worker.dbLoadPeople();
        f.worker.doSyncRecord(RecordBuilder(person).supervisor(nadOsCis));
    };
    pass(50);
    QCOMPARE(links(), lines({"5|42|1"}));
    pass(77);
    QCOMPARE(links(), lines({"5|42|0", "9|42|1"}));
    pass(50);
    QCOMPARE(links(), lines({"5|42|1", "9|42|0"}));
    // One who is unknown, or named no more, takes nobody's mark.
    pass(51);
    QCOMPARE(links(), lines({"5|42|1", "9|42|0"}));
    pass(0);
    QCOMPARE(links(), lines({"5|42|1", "9|42|0"}));
    QCOMPARE(f.log.take(), lines({"warning THRWorker - admin s osobnym cislom 51 nebol najdeny!"}));
}

// The operations by themselves

void tst_SupervisorTables::dbGetAidByOsCis()
{
    database->execute(
        QStringLiteral("INSERT INTO admins (aid, personalNumber) VALUES (4294967295, 4294967294)"));
    DatabaseWorker f(*database);
    QCOMPARE(f.worker.dbGetAidByOsCis(77), 9u);
    QCOMPARE(f.worker.dbGetAidByOsCis(4294967294u), 4294967295u);
    QCOMPARE(f.worker.dbGetAidByOsCis(78), 0u);
    QCOMPARE(f.worker.dbGetAidByOsCis(0), 0u); // 4 has no number, which is not 0
    QCOMPARE(f.log.take(), QStringList());
}

void tst_SupervisorTables::dbGetAidByOsCis_hiddenTable()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    const HiddenTable hidden(*database, "admins");
    QCOMPARE(f.worker.dbGetAidByOsCis(77), 0u);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbGetAidByOsCis() - SQL ERROR [1146]: Table "
                    "'attendance.admins' doesn't exist QMYSQL: Unable to execute query\n"
                    " SQL: SELECT aid FROM admins WHERE personalNumber = 77",
                    "debug THRWorker::dbGetAidByOsCis(uid: 77): 0"}));
}

void tst_SupervisorTables::dbResetAdminPeopleRequest_countsTheOthersThatHadTheMark()
{
    insertLinks("(5, 42, 1), (6, 42, 1), (7, 42, 0), (9, 42, 1), (5, 43, 1)");
    DatabaseWorker f(*database);
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 42), 2);
    const QStringList after = lines({"5|42|0", "6|42|0", "7|42|0", "9|42|1", "5|43|1"});
    QCOMPARE(links(), after);
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 42), 0);
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 44), 0);
    QCOMPARE(links(), after);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_SupervisorTables::dbResetAdminPeopleRequest_hiddenTable()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    const HiddenTable hidden(*database, "admins_people");
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 42), -1);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [1146]: Table "
                    "'attendance.admins_people' doesn't exist QMYSQL: Unable to execute query\n"
                    " SQL: UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9",
                    "debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - affected: "
                    "-1"}));
}

void tst_SupervisorTables::dbSetAdminPeopleRequest_newChangedAndUnchangedRow()
{
    insertLinks("(9, 43, 0), (5, 42, 1)");
    DatabaseWorker f(*database);
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 42), 1);
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 43), 2);
    const QStringList after = lines({"5|42|1", "9|42|1", "9|43|1"});
    QCOMPARE(links(), after);
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 42), 0);
    QCOMPARE(links(), after);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_SupervisorTables::dbSetAdminPeopleRequest_hiddenTable()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    const HiddenTable hidden(*database, "admins_people");
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 42), -1);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [1146]: Table "
                    "'attendance.admins_people' doesn't exist QMYSQL: Unable to execute query\n"
                    " SQL: INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) ON "
                    "DUPLICATE KEY UPDATE request=1",
                    "debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - affected: -1"}));
}

QTEST_GUILESS_MAIN(tst_SupervisorTables)
#include "tst_supervisortables.moc"
