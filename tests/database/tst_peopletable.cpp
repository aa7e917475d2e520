// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The person store on a real server: what each operation leaves in the tables, and what it reads
// back.
#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"

#include <QtTest>

#include <algorithm>

namespace {

const qint64 someMoment = 1700000000;

/// Each field has a value of its own; branch 7 is bid 70.
RecordBuilder fullRecord()
{
    return record()
        .pid(1234, 1)
        .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
        .name(QStringLiteral("Ľubica"), QStringLiteral("Nováková"))
        .phone(QStringLiteral("+421 900 111 222"))
        .employed(QDate(2015, 3, 1), QDate(2024, 3, 31))
        .branch(7)
        .calendar(3)
        .tpp(51)
        .interval(QDate(2024, 4, 1), QDate(2024, 10, 27), QStringLiteral("materská dovolenka"));
}

} // namespace

class tst_PeopleTable : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void dbAddPerson_everyColumn();
    void dbAddPerson_absentValues();
    void dbAddPerson_upsertRevivesInactiveRow();
    void dbAddPerson_departmentZeroIsNullOnlyInANewRow();
    void dbAddPerson_repeatedInTheSameSecondTouchesNothing();
    void dbAddPerson_apostropheIsRefused();
    void dbAddPerson_hiddenTable();
    void dbAddPerson_listsThePersonInPam();
    void dbAddPerson_staysAddedWithoutAList_data();
    void dbAddPerson_staysAddedWithoutAList();
    void dbAddPerson_hiddenVariablesKeepThePerson();
    void dbAddPerson_resultIsNotThatOfTheList();

    void dbUpdatePerson_everyColumn();
    void dbUpdatePerson_withoutLastCalcKeepsTheMark();
    void dbUpdatePerson_noIntervalKeepsTheMark();
    void dbUpdatePerson_pamIdIsStoredAsText_data();
    void dbUpdatePerson_pamIdIsStoredAsText();
    void dbUpdatePerson_absentValues();
    void dbUpdatePerson_noSuchRow();
    void dbUpdatePerson_repeatedInTheSameSecondTouchesNothing();
    void dbUpdatePerson_apostropheKeepsTheRow();
    void dbUpdatePerson_hiddenTable();
    void dbUpdatePerson_isNewsForTerminalsInService();
    void dbUpdatePerson_isNoNewsWithoutAChange();

    void dbLoadPeople_roundTrip_data();
    void dbLoadPeople_roundTrip();
    void dbLoadPeople_unknownBeginStaysTheSame();
    void dbLoadPeople_onlyActivePeople();
    void dbLoadPeople_branchNumbers();
    void dbLoadPeople_pamIds();
    void dbLoadPeople_zeroAndNullDates();
    void dbLoadPeople_hiddenTableKeepsPeople_data();
    void dbLoadPeople_hiddenTableKeepsPeople();

    void dbCheckPerson();
    void dbCheckPerson_hiddenTable();
    void dbGetUidByPid();
    void dbGetUidByPid_hiddenTable();
    void getUidByPid_outlivesTheRow();

    void dbChangeLastCalc_reopensOpenDaysFromTheDayOn_data();
    void dbChangeLastCalc_reopensOpenDaysFromTheDayOn();
    void dbChangeLastCalc_markOnlyMovesBack_data();
    void dbChangeLastCalc_markOnlyMovesBack();
    void dbChangeLastCalc_hiddenAttendance();
    void dbChangeLastCalc_hiddenPeople();

private:
    QStringList person(uint pid);
};

void tst_PeopleTable::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.active', '1')"));
}

/// All of a row but its uid: identity, texts, employment, interval, assignment, calculation,
/// history.
QStringList tst_PeopleTable::person(uint pid)
{
    return database->rows(
        QStringLiteral("SELECT pid, pamId, title, name, surname, title2, phone, begin, end, "
                       "rsBegin, rsEnd, rsText, type, status, did, bid, gid, calendarID, "
                       "lastCalc, calc, created, edited, editor FROM people WHERE pid=%1")
            .arg(pid));
}

// Adding

void tst_PeopleTable::dbAddPerson_everyColumn()
{
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    QVERIFY(f.worker.dbAddPerson(fullRecord()));
    QCOMPARE(person(12341),
             QStringList {
                 QStringLiteral("12341|1234.1|Ing.|Ľubica|Nováková|PhD.|+421 900 111 222|%1|%2|%3|"
                                "%4|materská dovolenka|4|1|9|70|NULL|3|0|0|1700000000|NULL|NULL")
                     .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                          seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27)))});
    QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM people")), QStringLiteral("1"));
}

void tst_PeopleTable::dbAddPerson_absentValues()
{
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    f.worker.setDepartmentId(0);
    QVERIFY(f.worker.dbAddPerson(record().employed(QDate()).tpp(0).branch(8)));
    QCOMPARE(person(12341),
             QStringList {QStringLiteral("12341|1234.1||Ján|Novák|||%1|NULL|NULL|NULL||0|1|NULL|"
                                         "NULL|NULL|0|0|0|1700000000|NULL|NULL")
                              .arg(seconds(QDate(2000, 1, 1)))});
}

void tst_PeopleTable::dbAddPerson_upsertRevivesInactiveRow()
{
    database->execute(QStringLiteral(
        "INSERT INTO people SET uid=77, pid=12341, pamId='old', title='t', name='n', surname='s', "
        "title2='t2', phone='p', begin=1, end=2, rsBegin=3, rsEnd=4, rsText='RD', type=0, "
        "status=0, did=5, bid=20, gid=6, calendarID=2, lastCalc=7, calc=8, created=9, edited=10, "
        "editor=11"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    QVERIFY(f.worker.dbAddPerson(fullRecord()));
    // Interval, branch, calendar and calculation are those of the old row; the department is 1.
    QCOMPARE(person(12341),
             QStringList {
                 QStringLiteral("12341|1234.1|Ing.|Ľubica|Nováková|PhD.|+421 900 111 222|%1|%2|3|"
                                "4|RD|4|1|1|20|6|2|7|8|9|1700000000|11")
                     .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)))});
    QCOMPARE(database->rows(QStringLiteral("SELECT uid FROM people")), lines({"77"}));
}

void tst_PeopleTable::dbAddPerson_departmentZeroIsNullOnlyInANewRow()
{
    DatabaseWorker f(*database);
    f.worker.setDepartmentId(0);
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(database->rows(QStringLiteral("SELECT did FROM people")), lines({"NULL"}));
    database->execute(QStringLiteral("UPDATE people SET status=0"));
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(database->rows(QStringLiteral("SELECT did FROM people")), lines({"1"}));
}

void tst_PeopleTable::dbAddPerson_repeatedInTheSameSecondTouchesNothing()
{
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    QVERIFY(f.worker.dbAddPerson(record()));
    QVERIFY(f.worker.dbAddPerson(record())); // sets `edited`
    QVERIFY(!f.worker.dbAddPerson(record()));
    QCOMPARE(f.log.take(), QStringList());
    f.setClock(someMoment + 1);
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(database->rows(QStringLiteral("SELECT created, edited FROM people")),
             lines({"1700000000|1700000001"}));
}

void tst_PeopleTable::dbAddPerson_apostropheIsRefused()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12342, pamId='1234.2', status=0"));
    const QStringList before = database->rows(QStringLiteral("SELECT * FROM people"));
    DatabaseWorker f(*database);
    const RecordBuilder employee = record().name(QStringLiteral("Seán"),
                                                 QStringLiteral("O'Hara")); // an open text
    QVERIFY(!f.worker.dbAddPerson(RecordBuilder(employee).pid(1234, 1)));
    QVERIFY(!f.worker.dbAddPerson(RecordBuilder(employee).pid(1234, 2)));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 2);
    QVERIFY2(events.at(0).startsWith(
                 QStringLiteral("critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: You have an "
                                "error in your SQL syntax; ")),
             qPrintable(events.at(0)));
    QVERIFY(events.at(1).startsWith(
        QStringLiteral("critical THRWorker::dbAddPerson(1234.2) - SQL ERROR: You have an error ")));
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM people")), before);
}

void tst_PeopleTable::dbAddPerson_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people");
    QVERIFY(!f.worker.dbAddPerson(record()));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: Table "
                    "'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_PeopleTable::dbAddPerson_listsThePersonInPam()
{
    database->execute(
        QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.selPeople', '123412,,5')"));
    database->execute(QStringLiteral("INSERT INTO people SET pid=77"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    const QString list = QStringLiteral(
        "SELECT value FROM vars WHERE name='exportPam.1.selPeople'");
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(database->rows(list), lines({"123412,5,12341"}));
    // Who stands there stays where he is; an apostrophe keeps a person out of both.
    QVERIFY(f.worker.dbAddPerson(record().pid(7, 7)));
    QVERIFY(f.worker.dbAddPerson(record()));
    QVERIFY(!f.worker.dbAddPerson(record().pid(8, 8).phone(QStringLiteral("'"))));
    QCOMPARE(database->rows(list), lines({"123412,5,12341,77"}));
    QCOMPARE(f.log.takeMessages().size(), 1);
    // The row for PaM is not its business.
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM people_pam")), QStringList());
}

void tst_PeopleTable::dbAddPerson_staysAddedWithoutAList_data()
{
    QTest::addColumn<QString>("statement");
    QTest::newRow("no block") << QStringLiteral("DELETE FROM vars");
    QTest::newRow("two blocks") << QStringLiteral(
        "INSERT INTO vars VALUES ('exportPam.2.active', '0')");
}

void tst_PeopleTable::dbAddPerson_staysAddedWithoutAList()
{
    QFETCH(QString, statement);
    database->execute(statement);
    const QString variables = QStringLiteral("SELECT name, value FROM vars ORDER BY name");
    const QStringList before = database->rows(variables);
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(f.log.take(),
             lines({"warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() FAILED!"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, status FROM people")), lines({"12341|1"}));
    QCOMPARE(database->rows(variables), before);
}

void tst_PeopleTable::dbAddPerson_hiddenVariablesKeepThePerson()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "vars");
    QVERIFY(f.worker.dbAddPerson(record()));
    QCOMPARE(
        f.log.take(),
        lines({"critical OrvDbSettings::variableGetMultiple - SQL ERROR:",
               "critical Table 'attendance.vars' doesn't exist QMYSQL: Unable to execute query",
               "warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() FAILED!"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, status FROM people")), lines({"12341|1"}));
}

void tst_PeopleTable::dbAddPerson_resultIsNotThatOfTheList()
{
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    QVERIFY(f.worker.dbAddPerson(record()));
    QVERIFY(f.worker.dbAddPerson(record())); // sets `edited`
    // Writing a list now has an insert id, and rows; the person has neither.
    database->execute(QStringLiteral("DELETE FROM vars WHERE name='exportPam.1.selPeople'"));
    database->execute(QStringLiteral("ALTER TABLE vars ADD id INT UNSIGNED NOT NULL "
                                     "AUTO_INCREMENT UNIQUE"));
    const bool added = f.worker.dbAddPerson(record());
    const QStringList list = database->rows(
        QStringLiteral("SELECT value, id FROM vars WHERE name='exportPam.1.selPeople'"));
    database->execute(QStringLiteral("ALTER TABLE vars DROP COLUMN id"));
    QVERIFY(!added);
    QCOMPARE(list, lines({"12341|2"}));
    QCOMPARE(f.log.take(), QStringList());
}

// Updating

void tst_PeopleTable::dbUpdatePerson_everyColumn()
{
    database->execute(QStringLiteral(
        "INSERT INTO people SET pid=12341, pamId='old', title='t', name='n', surname='s', "
        "title2='t2', phone='p', begin=1, end=2, rsBegin=3, rsEnd=4, rsText='RD', type=0, "
        "status=2, did=5, bid=20, gid=6, calendarID=2, lastCalc=7, calc=8, created=9, edited=10, "
        "editor=11"));
    database->execute(QStringLiteral("INSERT INTO people SET pid=12342, pamId='1234.2'"));
    const QStringList other = person(12342);
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    QVERIFY(f.worker.dbUpdatePerson(fullRecord(), true));
    QCOMPARE(person(12341),
             QStringList {
                 QStringLiteral("12341|1234.1|Ing.|Ľubica|Nováková|PhD.|+421 900 111 222|%1|%2|%3|"
                                "%4|materská dovolenka|4|2|9|70|6|3|%5|8|9|1700000000|0")
                     .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                          seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27)),
                          seconds(QDate(2024, 3, 31)))});
    QCOMPARE(person(12342), other);
}

void tst_PeopleTable::dbUpdatePerson_withoutLastCalcKeepsTheMark()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12341, lastCalc=7"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbUpdatePerson(fullRecord(), false));
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, rsText FROM people")),
             lines({"7|materská dovolenka"}));
}

void tst_PeopleTable::dbUpdatePerson_noIntervalKeepsTheMark()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12341, lastCalc=7, rsBegin=8"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbUpdatePerson(record(), true));
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, rsBegin FROM people")),
             lines({"7|NULL"}));
}

void tst_PeopleTable::dbUpdatePerson_pamIdIsStoredAsText_data()
{
    // The statement states a number; its ending zeros must not get lost.
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<uint>("poradoveCisloPP");
    QTest::addColumn<QString>("pid");
    QTest::addColumn<QString>("pamId");
    QTest::newRow("first relation")
        << 1234u << 1u << QStringLiteral("12341") << QStringLiteral("1234.1");
    QTest::newRow("tenth relation")
        << 1234u << 10u << QStringLiteral("123410") << QStringLiteral("1234.10");
    QTest::newRow("hundredth relation")
        << 10u << 100u << QStringLiteral("10100") << QStringLiteral("10.100");
    QTest::newRow("longest") << 4294967295u << 4294967295u << QStringLiteral("0")
                             << QStringLiteral("4294967295.4294967295");
}

void tst_PeopleTable::dbUpdatePerson_pamIdIsStoredAsText()
{
    QFETCH(uint, osobniCislo);
    QFETCH(uint, poradoveCisloPP);
    QFETCH(QString, pid);
    QFETCH(QString, pamId);
    database->execute(QStringLiteral("INSERT INTO people SET pid=%1").arg(pid));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbUpdatePerson(record().pid(osobniCislo, poradoveCisloPP), false));
    QCOMPARE(database->rows(QStringLiteral("SELECT pamId FROM people")), QStringList {pamId});
}

void tst_PeopleTable::dbUpdatePerson_absentValues()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12341, begin=1, end=2, rsBegin=3, "
                                     "rsEnd=4, did=5, bid=20, calendarID=2, created=9"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    f.worker.setDepartmentId(0);
    // A branch that is not in the database does not keep the old one.
    QVERIFY(f.worker.dbUpdatePerson(record().employed(QDate()).tpp(0).branch(8), true));
    QCOMPARE(person(12341),
             QStringList {QStringLiteral("12341|1234.1||Ján|Novák|||%1|NULL|NULL|NULL||0|1|NULL|"
                                         "NULL|NULL|0|0|0|9|1700000000|0")
                              .arg(seconds(QDate(2000, 1, 1)))});
}

void tst_PeopleTable::dbUpdatePerson_noSuchRow()
{
    DatabaseWorker f(*database);
    QVERIFY(!f.worker.dbUpdatePerson(record(), true));
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM people")), QStringList());
}

void tst_PeopleTable::dbUpdatePerson_repeatedInTheSameSecondTouchesNothing()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12341"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    QVERIFY(f.worker.dbUpdatePerson(fullRecord(), true));
    QVERIFY(!f.worker.dbUpdatePerson(fullRecord(), true));
    QCOMPARE(f.log.take(), QStringList());
    f.setClock(someMoment + 1);
    QVERIFY(f.worker.dbUpdatePerson(fullRecord(), true));
    QCOMPARE(database->rows(QStringLiteral("SELECT edited FROM people")), lines({"1700000001"}));
}

void tst_PeopleTable::dbUpdatePerson_apostropheKeepsTheRow()
{
    database->execute(QStringLiteral("INSERT INTO people SET pid=12341, name='Seán'"));
    const QStringList before = person(12341);
    DatabaseWorker f(*database);
    QVERIFY(!f.worker.dbUpdatePerson(
        record().name(QStringLiteral("Seán"), QStringLiteral("O'Hara")), true));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 1);
    QVERIFY2(events.at(0).startsWith(
                 QStringLiteral("critical THRWorker::dbUpdatePerson(1234.1) - SQL ERROR: You have "
                                "an error in your SQL syntax; ")),
             qPrintable(events.at(0)));
    QCOMPARE(person(12341), before);
}

void tst_PeopleTable::dbUpdatePerson_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people");
    QVERIFY(!f.worker.dbUpdatePerson(record(), false));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbUpdatePerson(1234.1) - SQL ERROR: Table "
                    "'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_PeopleTable::dbUpdatePerson_isNewsForTerminalsInService()
{
    database->execute(
        QStringLiteral("INSERT INTO people (uid, pid) VALUES (77, 12341), (78, 12342)"));
    // In service, off, being set up, without persons, of another person; another kind waits
    // already.
    database->execute(QStringLiteral("INSERT INTO term (tid, status, flags, syn) VALUES "
                                     "(1, 1, 2, 0), (2, 0, 2, 0), (3, 2, 2, 0), (4, 1, 321, 0), "
                                     "(5, 1, 2, 0), (6, 1, 323, 64)"));
    database->execute(QStringLiteral("INSERT INTO people_term (tid, uid) VALUES "
                                     "(1, 77), (2, 77), (3, 77), (4, 77), (5, 78), (6, 77)"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    QVERIFY(f.worker.dbUpdatePerson(record(), false));
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT tid, type, ref, ref_col, ref_id, ref_col2, "
                                           "ref_id2, created, flags FROM term_sync ORDER BY tid")),
             lines({"1|U|people|uid|77|NULL|NULL|1700000000|2",
                    "6|U|people|uid|77|NULL|NULL|1700000000|2"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT tid, syn FROM term ORDER BY tid")),
             lines({"1|2", "2|0", "3|0", "4|0", "5|0", "6|66"}));
}

void tst_PeopleTable::dbUpdatePerson_isNoNewsWithoutAChange()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (77, 12341)"));
    database->execute(QStringLiteral("INSERT INTO term (tid, status, flags) VALUES (1, 1, 2)"));
    database->execute(QStringLiteral("INSERT INTO people_term (tid, uid) VALUES (1, 77)"));
    DatabaseWorker f(*database);
    f.setClock(someMoment);
    QVERIFY(f.worker.dbUpdatePerson(record(), false));
    QVERIFY(!f.worker.dbUpdatePerson(record(), false));
    QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM term_sync")),
             QStringLiteral("1"));
}

// Loading

void tst_PeopleTable::dbLoadPeople_roundTrip_data()
{
    QTest::addColumn<QDate>("day");
    QTest::newRow("winter") << QDate(2015, 1, 15);
    QTest::newRow("summer") << QDate(2015, 7, 15);
    QTest::newRow("leap day") << QDate(2024, 2, 29);
    QTest::newRow("clocks go forward west") << QDate(2024, 3, 10);
    QTest::newRow("clocks go forward east") << QDate(2024, 3, 31);
    QTest::newRow("clocks go back east") << QDate(2024, 10, 27);
    QTest::newRow("clocks go back west") << QDate(2024, 11, 3);
    QTest::newRow("beyond signed 32 bits") << QDate(2040, 1, 15);
}

void tst_PeopleTable::dbLoadPeople_roundTrip()
{
    QFETCH(QDate, day);
    database->execute(QStringLiteral("INSERT INTO branches SET bid=70, number=7"));
    DatabaseWorker f(*database);
    f.peer.branches.insert(7, 70);
    const RecordBuilder written = fullRecord().tpp(0).employed(day, day).interval(
        day, day, QStringLiteral("materská dovolenka"));
    QVERIFY(f.worker.dbAddPerson(written));
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {12341});
    QVERIFY2(f.peer.dbPeople.value(12341) == written.build(),
             qPrintable(f.peer.dbPeople.value(12341).toText(false)));

    // The update writes the same.
    const RecordBuilder updated = RecordBuilder(written).phone(QStringLiteral("1"));
    QVERIFY(f.worker.dbUpdatePerson(updated, false));
    QVERIFY(f.worker.dbLoadPeople());
    QVERIFY2(f.peer.dbPeople.value(12341) == updated.build(),
             qPrintable(f.peer.dbPeople.value(12341).toText(false)));
}

void tst_PeopleTable::dbLoadPeople_unknownBeginStaysTheSame()
{
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbAddPerson(record().employed(QDate())));
    QVERIFY(f.worker.dbLoadPeople());
    const EmployeeRecord loaded = f.peer.dbPeople.value(12341);
    QCOMPARE(loaded.datumNastupu, QDate(2000, 1, 1));
    QVERIFY(f.worker.dbUpdatePerson(loaded, false));
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.value(12341).datumNastupu, QDate(2000, 1, 1));
    QCOMPARE(database->value(QStringLiteral("SELECT begin FROM people")),
             seconds(QDate(2000, 1, 1)));
}

void tst_PeopleTable::dbLoadPeople_onlyActivePeople()
{
    database->execute(QStringLiteral("INSERT INTO people (pid, pamId, status) VALUES "
                                     "(11, '1.1', 0), (21, '2.1', 1), (31, '3.1', 2)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbLoadPeople());
    QList<uint> keys = f.peer.dbPeople.keys();
    std::sort(keys.begin(), keys.end());
    QCOMPARE(keys, (QList<uint> {21, 31}));
}

void tst_PeopleTable::dbLoadPeople_branchNumbers()
{
    database->execute(
        QStringLiteral("INSERT INTO branches (bid, number) VALUES (70, 7), (80, NULL)"));
    database->execute(
        QStringLiteral("INSERT INTO people (pid, pamId, bid) VALUES "
                       "(11, '1.1', 70), (21, '2.1', 80), (31, '3.1', 90), (41, '4.1', NULL)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbLoadPeople());
    QCOMPARE(f.peer.dbPeople.size(), 4);
    QCOMPARE(f.peer.dbPeople.value(11).stredisko, 7u);
    QCOMPARE(f.peer.dbPeople.value(21).stredisko, 0u);
    QCOMPARE(f.peer.dbPeople.value(31).stredisko, 0u);
    QCOMPARE(f.peer.dbPeople.value(41).stredisko, 0u);
}

void tst_PeopleTable::dbLoadPeople_pamIds()
{
    database->execute(
        QStringLiteral("INSERT INTO people (pid, pamId, name) VALUES "
                       "(1, '1234.1', 'pid that disagrees'), (2, '1234', 'no point'), "
                       "(3, '1.2.3', 'two points'), (4, NULL, 'nothing'), (5, '', 'nothing'), "
                       "(NULL, '7.1', 'no pid')"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbLoadPeople());
    QStringList people;
    for (auto it = f.peer.dbPeople.cbegin(); it != f.peer.dbPeople.cend(); ++it) {
        people.append(QStringLiteral("%1: %2, %3, %4")
                          .arg(it.key(), 5)
                          .arg(it->osobniCislo)
                          .arg(it->poradoveCisloPP)
                          .arg(it->jmeno));
    }
    people.sort();
    QCOMPARE(people,
             lines({"    0: 0, 0, nothing", "   13: 1, 3, two points", "   71: 7, 1, no pid",
                    "12340: 1234, 0, no point", "12341: 1234, 1, pid that disagrees"}));
}

void tst_PeopleTable::dbLoadPeople_zeroAndNullDates()
{
    database->execute(
        QStringLiteral("INSERT INTO people (pamId, begin, end, rsBegin, rsEnd) VALUES "
                       "('1.1', 0, 0, 0, 0), ('2.1', NULL, NULL, NULL, NULL)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbLoadPeople());
    for (const uint pid : {11u, 21u}) {
        const EmployeeRecord person = f.peer.dbPeople.value(pid);
        QCOMPARE(person.datumNastupu, QDate(2000, 1, 1));
        QVERIFY(person.datumVystupu.isNull());
        QVERIFY(person.rsBegin.isNull());
        QVERIFY(person.rsEnd.isNull());
    }
}

void tst_PeopleTable::dbLoadPeople_hiddenTableKeepsPeople_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("people") << QByteArray("people");
    QTest::newRow("branches") << QByteArray("branches");
}

void tst_PeopleTable::dbLoadPeople_hiddenTableKeepsPeople()
{
    QFETCH(QByteArray, table);
    DatabaseWorker f(*database);
    f.peer.dbPeople.insert(12341, record());
    const HiddenTable hidden(*database, table.constData());
    QVERIFY(!f.worker.dbLoadPeople());
    QCOMPARE(
        f.log.take(),
        QStringList {QStringLiteral("critical THRWorker::dbLoadPeople() - SQL ERROR [1146]: Table "
                                    "'attendance.%1' doesn't exist QMYSQL: Unable to execute query")
                         .arg(QString::fromLatin1(table))});
    QCOMPARE(f.peer.dbPeople.keys(), QList<uint> {12341});
}

// Single questions

void tst_PeopleTable::dbCheckPerson()
{
    database->execute(QStringLiteral("INSERT INTO people (pid, status) VALUES (11, 1), (21, 0)"));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbCheckPerson(record().pid(1, 1)));
    QVERIFY(f.worker.dbCheckPerson(record().pid(2, 1))); // an inactive row is one as well
    QVERIFY(!f.worker.dbCheckPerson(record().pid(3, 1)));
}

void tst_PeopleTable::dbCheckPerson_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people");
    QVERIFY(!f.worker.dbCheckPerson(record()));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbCheckPerson() - SQL ERROR [1146]: Table "
                    "'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_PeopleTable::dbGetUidByPid()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, status) VALUES "
                                     "(77, 11, 1), (4294967294, 21, 0)"));
    DatabaseWorker f(*database);
    QCOMPARE(f.worker.dbGetUidByPid(11), 77u);
    QCOMPARE(f.worker.dbGetUidByPid(21), 4294967294u);
    QCOMPARE(f.worker.dbGetUidByPid(31), 0u);
}

void tst_PeopleTable::dbGetUidByPid_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "people");
    QCOMPARE(f.worker.dbGetUidByPid(11), 0u);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbGetUidByPid() - SQL ERROR [1146]: Table "
                    "'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_PeopleTable::getUidByPid_outlivesTheRow()
{
    DatabaseWorker f(*database);
    QCOMPARE(f.worker.getUidByPid(880011), 0u);
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (77, 880011)"));
    QCOMPARE(f.worker.getUidByPid(880011), 77u);
    database->execute(QStringLiteral("DELETE FROM people"));
    database->execute(QStringLiteral("INSERT INTO people (uid, pid) VALUES (78, 880011)"));
    QCOMPARE(f.worker.getUidByPid(880011), 77u);
    QCOMPARE(f.worker.dbGetUidByPid(880011), 78u);
}

// Reopening the calculation

void tst_PeopleTable::dbChangeLastCalc_reopensOpenDaysFromTheDayOn_data()
{
    QTest::addColumn<QDate>("day");
    QTest::newRow("first of a month") << QDate(2024, 2, 1);
    QTest::newRow("after clocks went forward east") << QDate(2024, 4, 1);
    QTest::newRow("after clocks went back east") << QDate(2024, 10, 28);
    QTest::newRow("after clocks went back west") << QDate(2024, 11, 4);
}

void tst_PeopleTable::dbChangeLastCalc_reopensOpenDaysFromTheDayOn()
{
    QFETCH(QDate, day);
    const auto attendance = [&](uint uid, int days, const char *lockManOk) {
        database->execute(QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, man, ok) "
                                         "VALUES (%1, %2, %3)")
                              .arg(uid)
                              .arg(seconds(day.addDays(days)), QString::fromLatin1(lockManOk)));
    };
    attendance(77, -1, "0, 0, 1");
    attendance(77, 0, "0, 0, 1");
    attendance(77, 1, "0, 0, 0");
    attendance(77, 2, "1, 0, 1");
    attendance(77, 3, "0, 1, 1");
    attendance(77, 4, "1, 1, 1");
    attendance(77, 5, "0, 0, 1");
    attendance(78, 0, "0, 0, 1");
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbChangeLastCalc(77, day));
    QCOMPARE(database->rows(
                 QStringLiteral("SELECT `lock`, man, ok FROM atten WHERE uid=77 ORDER BY `date`")),
             lines({"0|0|1", "0|0|-1", "0|0|-1", "1|0|1", "0|1|1", "1|1|1", "0|0|-1"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT ok FROM atten WHERE uid=78")), lines({"1"}));
}

void tst_PeopleTable::dbChangeLastCalc_markOnlyMovesBack_data()
{
    QTest::addColumn<qint64>("lastCalc");
    QTest::addColumn<bool>("moved");
    const qint64 dayBefore = localSeconds(QDate(2024, 3, 31));
    QTest::newRow("later") << localSeconds(QDate(2024, 6, 1)) << true;
    QTest::newRow("a second later") << dayBefore + 1 << true;
    QTest::newRow("the same") << dayBefore << false;
    QTest::newRow("earlier") << localSeconds(QDate(2024, 3, 1)) << false;
    QTest::newRow("never") << qint64(0) << false;
}

void tst_PeopleTable::dbChangeLastCalc_markOnlyMovesBack()
{
    QFETCH(qint64, lastCalc);
    QFETCH(bool, moved);
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, lastCalc, calc, edited) VALUES "
                                     "(77, 11, %1, 8, 9), (78, 21, %1, 8, 9)")
                          .arg(lastCalc));
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbChangeLastCalc(77, QDate(2024, 4, 1)));
    const QString unmoved = QString::number(lastCalc) + QStringLiteral("|8|9");
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, calc, edited FROM people "
                                           "ORDER BY uid")),
             (QStringList {moved ? seconds(QDate(2024, 3, 31)) + QStringLiteral("|0|9") : unmoved,
                           unmoved}));
}

void tst_PeopleTable::dbChangeLastCalc_hiddenAttendance()
{
    database->execute(QStringLiteral(
        "INSERT INTO people (uid, pid, lastCalc, calc) VALUES (77, 11, 2000000000, 8)"));
    DatabaseWorker f(*database);
    {
        const HiddenTable hidden(*database, "atten");
        QVERIFY(!f.worker.dbChangeLastCalc(77, QDate(2024, 4, 1)));
    }
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbChangeLastCalc() [UPDATE atten] - SQL ERROR [1146]: "
                    "Table 'attendance.atten' doesn't exist QMYSQL: Unable to execute query"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, calc FROM people")),
             lines({"2000000000|8"}));
}

void tst_PeopleTable::dbChangeLastCalc_hiddenPeople()
{
    database->execute(
        QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (77, 2000000000, 1)"));
    DatabaseWorker f(*database);
    {
        const HiddenTable hidden(*database, "people");
        QVERIFY(!f.worker.dbChangeLastCalc(77, QDate(2024, 4, 1)));
    }
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbChangeLastCalc() [UPDATE people] - SQL ERROR [1146]: "
                    "Table 'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
    // The first statement stays in force.
    QCOMPARE(database->rows(QStringLiteral("SELECT ok FROM atten")), lines({"-1"}));
}

QTEST_GUILESS_MAIN(tst_PeopleTable)
#include "tst_peopletable.moc"
