// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The person store: statements, log lines and results of each operation.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

/// The whole statement of dbAddPerson() with these values.
QString insertion(const QString &values)
{
    return QStringLiteral(
               "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
               "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) VALUES(")
        + values
        + QStringLiteral(") ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), "
                         "name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
                         "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
                         "edited=VALUES(created), status=1, type=VALUES(type), did=1");
}

/// Each field has a value of its own; branch 7 is bid 70.
RecordBuilder fullRecord()
{
    return record()
        .pid(1234, 1)
        .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
        .name(QStringLiteral("Ján"), QStringLiteral("Novák"))
        .phone(QStringLiteral("+421 900 111 222"))
        .employed(QDate(2015, 3, 1), QDate(2024, 3, 31))
        .branch(7, QStringLiteral("Sklad"))
        .calendar(3, QDate(2015, 4, 1))
        .tpp(51)
        .interval(QDate(2024, 4, 1), QDate(2024, 10, 27), QStringLiteral("materská"))
        .es(21)
        .balance(12.5)
        .supervisor(5);
}

/// What is asked, once record() has been inserted, by a PaM block that lists him already.
QStringList asking()
{
    return lines({"sql exec SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'",
                  "sql exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1"});
}

/// As asking(), and the list that is written when it did not hold record().
QStringList listing(const char *people)
{
    return asking()
        + lines({"sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                 "ON DUPLICATE KEY UPDATE value=VALUES(value);"})
        + QStringList {QStringLiteral("sql run :name=exportPam.1.selPeople, :value=")
                       + QString::fromLatin1(people)};
}

/// A worker to whose database record() can be added: PaM lists him.
class Listed : public WorkerFixture
{
public:
    Listed() { listInPam(QStringLiteral("12341")); }
};

/// How record() is inserted; type, department, calendar and branch as given.
QString plainInsertion(const QString &typeToBranch)
{
    return insertion(QStringLiteral("'12341', '1234.1', '', 'Ján', 'Novák', '', '', %1, NULL, "
                                    "UNIX_TIMESTAMP(), NULL, NULL, '', %2")
                         .arg(seconds(QDate(2015, 3, 1)), typeToBranch));
}

/// How record() is updated; all from the interval on as given.
QString plainUpdate(const QString &fromTheInterval)
{
    return QStringLiteral("sql exec UPDATE people SET pamId=1234.1, title='', name='Ján', "
                          "surname='Novák', title2='', phone='', begin=%1, end=NULL, "
                          "edited=UNIX_TIMESTAMP(), editor=0, %2")
        .arg(seconds(QDate(2015, 3, 1)), fromTheInterval);
}

/// What the terminals of uid 42, pid 12341, are told of his changed row.
QStringList noticing()
{
    return lines({"sql exec SELECT uid FROM people WHERE pid=12341 LIMIT 1",
                  "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                  "flags) SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, 42 ref_id, "
                  "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
                  "WHERE status = 1 AND uid = 42 AND (flags & 2);",
                  "sql exec CALL updateTermsSync(42, 2);"});
}

} // namespace

Q_DECLARE_METATYPE(EmployeeRecord)

class tst_People : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getUidByPid_keepsWhatItFound();
    void getUidByPid_keepsTheLeastUid();
    void getUidByPid_doesNotKeepThatThereIsNone();
    void getUidByPid_doesNotKeepAFailure();

    void dbChangeLastCalc_levels_data() { addLevels(); }
    void dbChangeLastCalc_levels();
    void dbChangeLastCalc_localMidnights_data();
    void dbChangeLastCalc_localMidnights();
    void dbChangeLastCalc_rowsTouchedDoNotMatter();
    void dbChangeLastCalc_writesInTestMode();
    void dbChangeLastCalc_firstStatementFails();
    void dbChangeLastCalc_secondStatementFails();

    void dbAddPerson_statement();
    void dbAddPerson_absentValues();
    void dbAddPerson_result_data();
    void dbAddPerson_result();
    void dbAddPerson_levels_data() { addLevels(); }
    void dbAddPerson_levels();
    void dbAddPerson_failure();
    void dbAddPerson_listsInPamWhateverTheResult_data() { dbAddPerson_result_data(); }
    void dbAddPerson_listsInPamWhateverTheResult();
    void dbAddPerson_failedListingChangesNothing_data();
    void dbAddPerson_failedListingChangesNothing();
    void dbAddPerson_failedListingIsWarnedOfAtEveryLevel_data() { addLevels(); }
    void dbAddPerson_failedListingIsWarnedOfAtEveryLevel();
    void dbAddPerson_pidZeroIsNotListed();

    void dbUpdatePerson_statementWithLastCalc();
    void dbUpdatePerson_statementWithoutLastCalc();
    void dbUpdatePerson_absentValues();
    void dbUpdatePerson_lastCalcNeedsAnIntervalsBegin();
    void dbUpdatePerson_lastCalcIsTheMidnightBefore_data();
    void dbUpdatePerson_lastCalcIsTheMidnightBefore();
    void dbUpdatePerson_result_data();
    void dbUpdatePerson_result();
    void dbUpdatePerson_failedNoticeChangesNothing_data();
    void dbUpdatePerson_failedNoticeChangesNothing();
    void dbUpdatePerson_levels_data() { addLevels(); }
    void dbUpdatePerson_levels();
    void dbUpdatePerson_failure();
    void dbUpdatePerson_fillsTheIntervalTogether();

    void writes_personType_data();
    void writes_personType();
    void writes_branch_data();
    void writes_branch();
    void textsAreNeitherEscapedNorProtected_data();
    void textsAreNeitherEscapedNorProtected();
    void writes_silentTestMode();
    void writes_outspokenTestMode();
};

// The cache lasts as long as the process: each of these functions has a pid of its own.

void tst_People::getUidByPid_keepsWhatItFound()
{
    const char question[] = "sql exec SELECT uid FROM people WHERE pid = 770011 LIMIT 1;";
    {
        WorkerFixture f;
        f.answer("SELECT uid FROM people", 42, 1);
        f.worker.setLogLevel(2);
        QCOMPARE(f.worker.getUidByPid(770011), 42u);
        QCOMPARE(f.log.take(), lines({"debug THRWorker::dbGetUidByPid(770011)", question}));
        f.answer("SELECT uid FROM people", 43);
        QCOMPARE(f.worker.getUidByPid(770011), 42u);
        QCOMPARE(f.log.take(), QStringList());
    }
    // A later worker of the same process asks no more either.
    WorkerFixture later;
    QCOMPARE(later.worker.getUidByPid(770011), 42u);
    QCOMPARE(later.log.take(), QStringList());
    // The one question that bypasses the cache.
    QCOMPARE(later.worker.dbGetUidByPid(770011), 0u);
    QCOMPARE(later.log.take(), lines({question}));
}

void tst_People::getUidByPid_keepsTheLeastUid()
{
    WorkerFixture f;
    f.answer("SELECT uid FROM people", 1, 1);
    QCOMPARE(f.worker.getUidByPid(770014), 1u);
    QCOMPARE(f.worker.getUidByPid(770014), 1u);
    QCOMPARE(f.log.take(), lines({"sql exec SELECT uid FROM people WHERE pid = 770014 LIMIT 1;"}));
}

void tst_People::getUidByPid_doesNotKeepThatThereIsNone()
{
    WorkerFixture f;
    const char question[] = "sql exec SELECT uid FROM people WHERE pid = 770012 LIMIT 1;";
    QCOMPARE(f.worker.getUidByPid(770012), 0u);
    f.answer("SELECT uid FROM people", 44);
    QCOMPARE(f.worker.getUidByPid(770012), 44u);
    QCOMPARE(f.log.take(), lines({question, question}));
}

void tst_People::getUidByPid_doesNotKeepAFailure()
{
    WorkerFixture f;
    f.answer("SELECT uid FROM people", 45);
    f.script.on(QStringLiteral("SELECT uid FROM people"), 1)
        .withError(QStringLiteral("2006"), QStringLiteral("gone away"));
    QCOMPARE(f.worker.getUidByPid(770013), 0u);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbGetUidByPid() - SQL ERROR [2006]: "
                    "gone away (scripted)"}));
    QCOMPARE(f.worker.getUidByPid(770013), 45u);
}

// Reopening the calculation

void tst_People::dbChangeLastCalc_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            QStringList {
                QStringLiteral("2 debug THRWorker::dbChangeLastCalc(42, 1 Feb 2024)"),
                QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                               "`date` >= %1 AND uid =42")
                    .arg(seconds(QDate(2024, 2, 1))),
                QStringLiteral(
                    "sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE lastCalc > %1 "
                    "AND uid=42")
                    .arg(seconds(QDate(2024, 1, 31)))}));
}

void tst_People::dbChangeLastCalc_localMidnights_data()
{
    QTest::addColumn<QDate>("day");
    QTest::addColumn<QDate>("dayBefore");
    QTest::newRow("after clocks went forward east") << QDate(2024, 4, 1) << QDate(2024, 3, 31);
    QTest::newRow("clocks go back east") << QDate(2024, 10, 27) << QDate(2024, 10, 26);
    QTest::newRow("after clocks went back east") << QDate(2024, 10, 28) << QDate(2024, 10, 27);
    QTest::newRow("after clocks went back west") << QDate(2024, 11, 4) << QDate(2024, 11, 3);
    QTest::newRow("beyond 32 bits") << QDate(2200, 1, 1) << QDate(2199, 12, 31);
}

void tst_People::dbChangeLastCalc_localMidnights()
{
    QFETCH(QDate, day);
    QFETCH(QDate, dayBefore);
    WorkerFixture f;
    QVERIFY(f.worker.dbChangeLastCalc(4294967295u, day));
    QCOMPARE(f.log.take(),
             (QStringList {
                 QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                                "`date` >= %1 AND uid =4294967295")
                     .arg(seconds(day)),
                 QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE "
                                "lastCalc > %1 AND uid=4294967295")
                     .arg(seconds(dayBefore))}));
}

void tst_People::dbChangeLastCalc_rowsTouchedDoNotMatter()
{
    WorkerFixture f;
    QVERIFY(f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
    f.script.on(QStringLiteral("UPDATE")).withAffected(31);
    QVERIFY(f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
}

void tst_People::dbChangeLastCalc_writesInTestMode()
{
    WorkerFixture f;
    f.worker.setTestMode(true);
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("sql exec UPDATE ")).size(), 2);
    QCOMPARE(events.size(), 2);
}

void tst_People::dbChangeLastCalc_firstStatementFails()
{
    WorkerFixture f;
    f.fail("UPDATE atten");
    QVERIFY(!f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 2);
    QVERIFY(events.at(0).startsWith(QStringLiteral("sql exec UPDATE atten ")));
    QCOMPARE(events.at(1),
             QStringLiteral("critical THRWorker::dbChangeLastCalc() [UPDATE atten] - "
                            "SQL ERROR [1205]: lock wait (scripted)"));
}

void tst_People::dbChangeLastCalc_secondStatementFails()
{
    WorkerFixture f;
    f.fail("UPDATE people");
    QVERIFY(!f.worker.dbChangeLastCalc(42, QDate(2024, 2, 1)));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 3);
    QVERIFY(events.at(0).startsWith(QStringLiteral("sql exec UPDATE atten ")));
    QVERIFY(events.at(1).startsWith(QStringLiteral("sql exec UPDATE people ")));
    QCOMPARE(events.at(2),
             QStringLiteral("critical THRWorker::dbChangeLastCalc() [UPDATE people] - "
                            "SQL ERROR [1205]: lock wait (scripted)"));
}

// Adding a person

void tst_People::dbAddPerson_statement()
{
    Listed f;
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    f.worker.dbAddPerson(fullRecord());
    QCOMPARE(f.log.take(),
             QStringList {
                 insertion(QStringLiteral("'12341', '1234.1', 'Ing.', 'Ján', 'Novák', 'PhD.', "
                                          "'+421 900 111 222', %1, %2, UNIX_TIMESTAMP(), %3, %4, "
                                          "'materská', 4, 9, 3, 70")
                               .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                                    seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27))))}
                 + asking());
}

void tst_People::dbAddPerson_absentValues()
{
    Listed f;
    f.worker.setDepartmentId(0);
    f.worker.dbAddPerson(record().employed(QDate()).name(QString(), QStringLiteral("Novák")));
    QCOMPARE(f.log.take(),
             QStringList {insertion(QStringLiteral("'12341', '1234.1', '', '', 'Novák', '', '', "
                                                   "%1, NULL, UNIX_TIMESTAMP(), NULL, NULL, '', "
                                                   "1, NULL, 0, NULL")
                                        .arg(seconds(QDate(2000, 1, 1))))}
                 + asking());
}

void tst_People::dbAddPerson_result_data()
{
    QTest::addColumn<QVariant>("insertId");
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("added");
    QTest::newRow("new row") << QVariant(5) << 1 << true;
    QTest::newRow("new id alone") << QVariant(1) << 0 << true;
    QTest::newRow("row touched, no id") << QVariant() << 2 << true;
    QTest::newRow("row touched, id 0") << QVariant(0) << 1 << true;
    QTest::newRow("neither") << QVariant() << 0 << false;
    QTest::newRow("neither, id 0") << QVariant(0) << 0 << false;
    QTest::newRow("number of rows unknown") << QVariant() << -1 << false;
    QTest::newRow("id beyond int") << QVariant(2147483648u) << 0 << false;
}

void tst_People::dbAddPerson_result()
{
    QFETCH(QVariant, insertId);
    QFETCH(int, affected);
    QFETCH(bool, added);
    Listed f;
    f.script.on(QStringLiteral("INSERT INTO people")).withInsertId(insertId).withAffected(affected);
    QCOMPARE(f.worker.dbAddPerson(record()), added);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_People::dbAddPerson_levels()
{
    QFETCH(int, level);
    Listed f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbAddPerson(fullRecord());
    QCOMPARE(f.log.take(),
             atLevel(level,
                     lines({"1 debug THRWorker::dbAddPerson(1234.1 Ing. Ján Novák PhD. "
                            "(T: +421 900 111 222) N-V: 1 Mar 2015 - 31 Mar 2024 "
                            "TPP: 51  K: 3  DOV: 12.5, S: 7)"})
                         << insertion(
                                QStringLiteral("'12341', '1234.1', 'Ing.', 'Ján', 'Novák', 'PhD.', "
                                               "'+421 900 111 222', %1, %2, UNIX_TIMESTAMP(), %3, "
                                               "%4, 'materská', 4, 1, 3, NULL")
                                    .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                                         seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27))))
                         << lines({"2 debug THRWorker::addPersonIntoPam(12341)"}) << asking()));
}

void tst_People::dbAddPerson_failure()
{
    // Nobody is listed who was not written.
    WorkerFixture f;
    f.listInPam(QString());
    f.script.on(QStringLiteral("INSERT INTO people"))
        .withInsertId(5)
        .withAffected(1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    QVERIFY(!f.worker.dbAddPerson(record()));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(1),
             QStringLiteral("critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: "
                            "syntax (scripted)"));
}

void tst_People::dbAddPerson_listsInPamWhateverTheResult()
{
    QFETCH(QVariant, insertId);
    QFETCH(int, affected);
    QFETCH(bool, added);
    WorkerFixture f;
    f.listInPam(QStringLiteral("51,77"));
    f.script.on(QStringLiteral("INSERT INTO people")).withInsertId(insertId).withAffected(affected);
    // The list is written, which says nothing of the person.
    f.script.on(QStringLiteral("run :name="))
        .withInsertId(added ? 0 : 9)
        .withAffected(added ? 0 : 1);
    QCOMPARE(f.worker.dbAddPerson(record()), added);
    QCOMPARE(f.log.take(),
             QStringList {plainInsertion(QStringLiteral("1, 1, 0, NULL"))}
                 + listing("51,77,12341"));
}

void tst_People::dbAddPerson_failedListingChangesNothing_data()
{
    QTest::addColumn<QStringList>("blocks");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("no block") << QStringList() << QStringList(asking().mid(0, 1));
    QTest::newRow("two blocks") << lines({"exportPam.1.active", "exportPam.2.active"})
                                << QStringList(asking().mid(0, 1));
    QTest::newRow("list not written") << lines({"exportPam.1.active"})
                                      << (listing("12341") << QStringLiteral(
                                              "critical variableSet ERROR: \"denied (scripted)\""));
}

void tst_People::dbAddPerson_failedListingChangesNothing()
{
    QFETCH(QStringList, blocks);
    QFETCH(QStringList, expected);
    QVector<QVariantList> rows;
    for (const QString &block : blocks)
        rows.append({block, QStringLiteral("1")});
    for (const int affected : {1, 0}) {
        WorkerFixture f;
        f.script.on(QStringLiteral("LIKE 'exportPam.%.active%'"))
            .withRows({QStringLiteral("name"), QStringLiteral("value")}, rows);
        f.fail("run :name=", "1142", "denied");
        f.script.on(QStringLiteral("INSERT INTO people")).withAffected(affected);
        QCOMPARE(f.worker.dbAddPerson(record()), affected == 1);
        QCOMPARE(f.log.take(),
                 QStringList {plainInsertion(QStringLiteral("1, 1, 0, NULL"))} + expected
                     + lines({"warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() "
                              "FAILED!"}));
    }
}

void tst_People::dbAddPerson_failedListingIsWarnedOfAtEveryLevel()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbAddPerson(record());
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("warning ")),
             lines({"warning THRWorker::dbAddPerson(1234.1) - addPersonIntoPam() FAILED!"}));
    QVERIFY(events.last().startsWith(QStringLiteral("warning ")));
}

void tst_People::dbAddPerson_pidZeroIsNotListed()
{
    WorkerFixture f;
    f.listInPam(QString());
    f.script.on(QStringLiteral("INSERT INTO people")).withAffected(1);
    // Together beyond 32 bits.
    QVERIFY(f.worker.dbAddPerson(record().pid(4294967295u, 1)));
    QCOMPARE(f.log.take(),
             QStringList {insertion(QStringLiteral("'0', '4294967295.1', '', 'Ján', 'Novák', '', "
                                                   "'', %1, NULL, UNIX_TIMESTAMP(), NULL, NULL, "
                                                   "'', 1, 1, 0, NULL")
                                        .arg(seconds(QDate(2015, 3, 1))))}
                 + lines({"warning THRWorker::dbAddPerson(4294967295.1) - addPersonIntoPam() "
                          "FAILED!"}));
}

// Updating a person

void tst_People::dbUpdatePerson_statementWithLastCalc()
{
    WorkerFixture f;
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    f.worker.dbUpdatePerson(fullRecord(), true);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral(
                              "sql exec UPDATE people SET pamId=1234.1, title='Ing.', name='Ján', "
                              "surname='Novák', title2='PhD.', phone='+421 900 111 222', "
                              "begin=%1, end=%2, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=%3, "
                              "rsEnd=%4, rsText='materská', lastCalc=%5, type=4, did=9, "
                              "calendarID=3, bid=70 WHERE pid=12341")
                              .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                                   seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27)),
                                   seconds(QDate(2024, 3, 31)))});
}

void tst_People::dbUpdatePerson_statementWithoutLastCalc()
{
    WorkerFixture f;
    f.worker.setDepartmentId(9);
    f.peer.branches.insert(7, 70);
    f.worker.dbUpdatePerson(fullRecord(), false);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral(
                              "sql exec UPDATE people SET pamId=1234.1, title='Ing.', name='Ján', "
                              "surname='Novák', title2='PhD.', phone='+421 900 111 222', "
                              "begin=%1, end=%2, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=%3, "
                              "rsEnd=%4, rsText='materská', type=4, did=9, calendarID=3, bid=70  "
                              "WHERE pid=12341")
                              .arg(seconds(QDate(2015, 3, 1)), lastSecond(QDate(2024, 3, 31)),
                                   seconds(QDate(2024, 4, 1)), seconds(QDate(2024, 10, 27)))});
}

void tst_People::dbUpdatePerson_absentValues()
{
    WorkerFixture f;
    f.worker.setDepartmentId(0);
    f.worker.dbUpdatePerson(record().employed(QDate()), false);
    QCOMPARE(f.log.take(),
             QStringList {
                 QStringLiteral("sql exec UPDATE people SET pamId=1234.1, title='', name='Ján', "
                                "surname='Novák', title2='', phone='', begin=%1, end=NULL, "
                                "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                                "rsText='', type=1, did=NULL, calendarID=0, bid=NULL  "
                                "WHERE pid=12341")
                     .arg(seconds(QDate(2000, 1, 1)))});
}

void tst_People::dbUpdatePerson_lastCalcNeedsAnIntervalsBegin()
{
    WorkerFixture f;
    f.worker.dbUpdatePerson(record().interval(QDate(), QDate(2024, 10, 27), QStringLiteral("x")),
                            true);
    QCOMPARE(f.log.take(),
             QStringList {plainUpdate(QStringLiteral("rsBegin=NULL, rsEnd=%1, rsText='x', type=1, "
                                                     "did=1, calendarID=0, bid=NULL  "
                                                     "WHERE pid=12341")
                                          .arg(seconds(QDate(2024, 10, 27))))});
}

void tst_People::dbUpdatePerson_lastCalcIsTheMidnightBefore_data()
{
    QTest::addColumn<QDate>("rsBegin");
    QTest::addColumn<QString>("lastCalc");
    QTest::newRow("after clocks went forward east")
        << QDate(2024, 4, 1) << seconds(QDate(2024, 3, 31));
    QTest::newRow("after clocks went back east")
        << QDate(2024, 10, 28) << seconds(QDate(2024, 10, 27));
    QTest::newRow("after clocks went forward west")
        << QDate(2024, 3, 11) << seconds(QDate(2024, 3, 10));
    QTest::newRow("after clocks went back west")
        << QDate(2024, 11, 4) << seconds(QDate(2024, 11, 3));
    QTest::newRow("before unsigned 32 bits") << QDate(1970, 1, 1) << QStringLiteral("4294967295");
    QTest::newRow("after unsigned 32 bits") << QDate(2106, 2, 9) << QStringLiteral("4294967295");
}

void tst_People::dbUpdatePerson_lastCalcIsTheMidnightBefore()
{
    QFETCH(QDate, rsBegin);
    QFETCH(QString, lastCalc);
    WorkerFixture f;
    f.worker.dbUpdatePerson(record().interval(rsBegin, QDate(), QString()), true);
    QCOMPARE(f.log.take(),
             QStringList {plainUpdate(QStringLiteral("rsBegin=%1, rsEnd=NULL, rsText='', "
                                                     "lastCalc=%2, type=1, did=1, calendarID=0, "
                                                     "bid=NULL WHERE pid=12341")
                                          .arg(seconds(rsBegin), lastCalc))});
}

void tst_People::dbUpdatePerson_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("updated");
    QTest::newRow("unknown") << -1 << false;
    QTest::newRow("no row") << 0 << false;
    QTest::newRow("one row") << 1 << true;
    QTest::newRow("two rows") << 2 << true;
}

void tst_People::dbUpdatePerson_result()
{
    QFETCH(int, affected);
    QFETCH(bool, updated);
    WorkerFixture f;
    f.script.on(QStringLiteral("UPDATE people SET pamId"))
        .withInsertId(5) // means nothing here
        .withAffected(affected);
    f.answer("SELECT uid FROM people WHERE pid=12341 LIMIT 1", 42);
    QCOMPARE(f.worker.dbUpdatePerson(record(), false), updated);
    // A row that is as it was is no news for terminals, and nothing to speak of.
    QCOMPARE(f.log.take(),
             QStringList {plainUpdate(QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText='', "
                                                     "type=1, did=1, calendarID=0, bid=NULL  "
                                                     "WHERE pid=12341"))}
                 + (updated ? noticing() : QStringList()));
}

void tst_People::dbUpdatePerson_failedNoticeChangesNothing_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<int>("statements"); // that run, of those of the notice
    QTest::addColumn<QString>("line");
    QTest::newRow("uid") << QStringLiteral("SELECT uid FROM people") << 1
                         << QStringLiteral("warning THRWorker::addTermSyncPerson(12341) - "
                                           "uid NOT selected from DB!");
    QTest::newRow("queue") << QStringLiteral("INSERT INTO `term_sync`") << 2
                           << QStringLiteral("critical THRWorker::addTermSyncPerson() ERROR: "
                                             "denied (scripted)");
    QTest::newRow("marking") << QStringLiteral("CALL updateTermsSync") << 3
                             << QStringLiteral("critical THRWorker::addTermSyncPerson() - "
                                               "updateTermsSync() ERROR: denied (scripted)");
}

void tst_People::dbUpdatePerson_failedNoticeChangesNothing()
{
    QFETCH(QString, failing);
    QFETCH(int, statements);
    QFETCH(QString, line);
    WorkerFixture f;
    f.script.on(QStringLiteral("UPDATE people SET pamId")).withAffected(1);
    f.answer("SELECT uid FROM people WHERE pid=12341 LIMIT 1", 42);
    f.script.on(failing).withError(QStringLiteral("1142"), QStringLiteral("denied"));
    QVERIFY(f.worker.dbUpdatePerson(record(), false));
    QStringList events = f.log.take();
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events, noticing().mid(0, statements) << line);
}

void tst_People::dbUpdatePerson_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbUpdatePerson(fullRecord(), true);
    QStringList events = f.log.take();
    QVERIFY(events.takeLast().startsWith(QStringLiteral("sql exec UPDATE people ")));
    QCOMPARE(events,
             atLevel(level,
                     {"1 debug THRWorker::dbUpdatePerson(1234.1 Ing. Ján Novák PhD. "
                      "(T: +421 900 111 222) N-V: 1 Mar 2015 - 31 Mar 2024 "
                      "TPP: 51  K: 3  DOV: 12.5, S: 7)"}));
}

void tst_People::dbUpdatePerson_failure()
{
    WorkerFixture f;
    f.script.on(QStringLiteral("UPDATE people"))
        .withAffected(1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    QVERIFY(!f.worker.dbUpdatePerson(record(), true));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(1),
             QStringLiteral("critical THRWorker::dbUpdatePerson(1234.1) - SQL ERROR: "
                            "syntax (scripted)"));
}

void tst_People::dbUpdatePerson_fillsTheIntervalTogether()
{
    WorkerFixture f;
    f.peer.branches.insert(7, 70);
    const QString begin = seconds(QDate(2015, 3, 1));
    const QDate rsBegin(2003, 3, 4);
    const QString rsBeginSeconds = seconds(rsBegin);
    // The seconds of that day themselves begin like a marker, once something puts a % before them.
    QVERIFY(rsBeginSeconds.startsWith(QStringLiteral("10")));
    f.worker.dbUpdatePerson(record()
                                .titles(QStringLiteral("%%10"), QString())
                                .branch(7)
                                .calendar(3)
                                .interval(rsBegin, QDate(2003, 6, 7), QStringLiteral("RD")),
                            false);
    // The title has become %10 and the further digits, but end and text of the interval have found
    // their places by then: the marker takes the next value, the type, and all later ones move up.
    QCOMPARE(f.log.take(),
             QStringList {
                 QStringLiteral("sql exec UPDATE people SET pamId=1234.1, title='1")
                 + rsBeginSeconds.mid(2)
                 + QStringLiteral("', name='Ján', surname='Novák', title2='', phone='', "
                                  "begin=")
                 + begin + QStringLiteral(", end=NULL, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=")
                 + rsBeginSeconds + QStringLiteral(", rsEnd=") + seconds(QDate(2003, 6, 7))
                 + QStringLiteral(", rsText='RD', type=1, did=3, calendarID=70, "
                                  "bid=%16  WHERE pid=12341")});
}

// What both writes have in common

void tst_People::writes_personType_data()
{
    QTest::addColumn<int>("tpp");
    QTest::addColumn<QString>("type");
    QTest::newRow("11") << 11 << QStringLiteral("1");
    QTest::newRow("65") << 65 << QStringLiteral("1");
    QTest::newRow("51") << 51 << QStringLiteral("4");
    QTest::newRow("53") << 53 << QStringLiteral("4");
    QTest::newRow("54") << 54 << QStringLiteral("4");
    QTest::newRow("52") << 52 << QStringLiteral("0");
    QTest::newRow("0") << 0 << QStringLiteral("0");
}

void tst_People::writes_personType()
{
    QFETCH(int, tpp);
    QFETCH(QString, type);
    Listed f;
    const EmployeeRecord employee = record().tpp(static_cast<ushort>(tpp));
    f.worker.dbAddPerson(employee);
    f.worker.dbUpdatePerson(employee, false);
    QCOMPARE(f.log.take(),
             (QStringList {plainInsertion(QStringLiteral("%1, 1, 0, NULL").arg(type))} + asking()
              << plainUpdate(QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText='', type=%1, did=1, "
                                            "calendarID=0, bid=NULL  WHERE pid=12341")
                                 .arg(type))));
}

void tst_People::writes_branch_data()
{
    QTest::addColumn<uint>("stredisko");
    QTest::addColumn<QString>("bid");
    QTest::newRow("no branch") << 0u << QStringLiteral("NULL");
    QTest::newRow("known") << 7u << QStringLiteral("70");
    QTest::newRow("largest") << 4294967295u << QStringLiteral("4294967295");
    QTest::newRow("not in the database") << 8u << QStringLiteral("NULL");
    QTest::newRow("of no bid") << 9u << QStringLiteral("NULL");
}

void tst_People::writes_branch()
{
    QFETCH(uint, stredisko);
    QFETCH(QString, bid);
    Listed f;
    f.peer.branches = {{7u, 70u}, {9u, 0u}, {4294967295u, 4294967295u}};
    f.worker.dbAddPerson(record().branch(stredisko));
    f.worker.dbUpdatePerson(record().branch(stredisko), false);
    QCOMPARE(f.log.take(),
             (QStringList {plainInsertion(QStringLiteral("1, 1, 0, %1").arg(bid))} + asking()
              << plainUpdate(QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText='', type=1, did=1, "
                                            "calendarID=0, bid=%1  WHERE pid=12341")
                                 .arg(bid))));
}

void tst_People::textsAreNeitherEscapedNorProtected_data()
{
    QTest::addColumn<EmployeeRecord>("employee");
    QTest::addColumn<QString>("inserted");
    QTest::addColumn<QString>("updated");
    const RecordBuilder employee = record().branch(7).calendar(3);
    const auto row = [](const char *name, const EmployeeRecord &given, const QString &inserted,
                        const QString &updated) {
        const QString begin = seconds(QDate(2015, 3, 1));
        // Not by arg(): the expected texts hold markers.
        QTest::newRow(name) << given
                            << insertion(QString(inserted).replace(QStringLiteral("BEGIN"), begin))
                            << QStringLiteral("sql exec UPDATE people SET ")
                + QString(updated).replace(QStringLiteral("BEGIN"), begin);
    };

    row("apostrophe",
        RecordBuilder(employee).name(QStringLiteral("Seán"), QStringLiteral("O'Hara")),
        QStringLiteral("'12341', '1234.1', '', 'Seán', 'O'Hara', '', '', BEGIN, NULL, "
                       "UNIX_TIMESTAMP(), NULL, NULL, '', 1, 1, 3, 70"),
        QStringLiteral(
            "pamId=1234.1, title='', name='Seán', surname='O'Hara', title2='', phone='', "
            "begin=BEGIN, end=NULL, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, "
            "rsEnd=NULL, rsText='', type=1, did=1, calendarID=3, bid=70  "
            "WHERE pid=12341"));
    // In the insert the fifth value is the surname, in the update the second title.
    row("%5 in the title",
        RecordBuilder(employee).titles(QStringLiteral("%5"), QStringLiteral("PhD.")),
        QStringLiteral("'12341', '1234.1', 'Novák', 'Ján', 'Novák', 'PhD.', '', BEGIN, NULL, "
                       "UNIX_TIMESTAMP(), NULL, NULL, '', 1, 1, 3, 70"),
        QStringLiteral("pamId=1234.1, title='PhD.', name='Ján', surname='Novák', title2='PhD.', "
                       "phone='', begin=BEGIN, end=NULL, edited=UNIX_TIMESTAMP(), editor=0, "
                       "rsBegin=NULL, rsEnd=NULL, rsText='', type=1, did=1, calendarID=3, bid=70  "
                       "WHERE pid=12341"));
    // A number that is done with takes the next value, and all later values move up by one place.
    row("%1 in the phone", RecordBuilder(employee).phone(QStringLiteral("%1")),
        QStringLiteral("'12341', '1234.1', '', 'Ján', 'Novák', '', 'BEGIN', NULL, NULL, "
                       "UNIX_TIMESTAMP(), NULL, , '1', 1, 3, 70, %16"),
        QStringLiteral("pamId=1234.1, title='', name='Ján', surname='Novák', title2='', "
                       "phone='BEGIN', begin=NULL, end=12341, edited=UNIX_TIMESTAMP(), editor=0, "
                       "rsBegin=NULL, rsEnd=, rsText='1', type=1, did=3, calendarID=70, bid=%16  "
                       "WHERE pid=NULL"));
    // The type stands behind the text in both statements.
    row("%13 in the text of the interval",
        RecordBuilder(employee).interval(QDate(), QDate(), QStringLiteral("%13 h")),
        QStringLiteral("'12341', '1234.1', '', 'Ján', 'Novák', '', '', BEGIN, NULL, "
                       "UNIX_TIMESTAMP(), NULL, NULL, '1 h', 1, 1, 3, 70"),
        QStringLiteral("pamId=1234.1, title='', name='Ján', surname='Novák', title2='', phone='', "
                       "begin=BEGIN, end=NULL, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, "
                       "rsEnd=NULL, rsText='1 h', type=1, did=1, calendarID=3, bid=70  "
                       "WHERE pid=12341"));
}

void tst_People::textsAreNeitherEscapedNorProtected()
{
    QFETCH(EmployeeRecord, employee);
    QFETCH(QString, inserted);
    QFETCH(QString, updated);
    Listed f;
    f.peer.branches.insert(7, 70);
    f.worker.dbAddPerson(employee);
    QCOMPARE(f.log.take(), QStringList {inserted} + asking());
    f.worker.dbUpdatePerson(employee, false);
    QCOMPARE(f.log.take(), QStringList {updated});
}

void tst_People::writes_silentTestMode()
{
    WorkerFixture f;
    f.worker.setTestMode(true);
    QVERIFY(f.worker.dbAddPerson(record()));
    QVERIFY(f.worker.dbUpdatePerson(record(), true));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_People::writes_outspokenTestMode()
{
    WorkerFixture f;
    f.worker.setTestMode(true);
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.dbAddPerson(fullRecord()));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbAddPerson(1234.1 Ing. Ján Novák PhD. "
                    "(T: +421 900 111 222) N-V: 1 Mar 2015 - 31 Mar 2024 "
                    "TPP: 51  K: 3  DOV: 12.5, S: 7)",
                    "warning THRWorker::dbAddPerson(1234.1) - Testing mode is active, "
                    "person not really add!"}));
    QVERIFY(f.worker.dbUpdatePerson(fullRecord(), true));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbUpdatePerson(1234.1 Ing. Ján Novák PhD. "
                    "(T: +421 900 111 222) N-V: 1 Mar 2015 - 31 Mar 2024 "
                    "TPP: 51  K: 3  DOV: 12.5, S: 7)",
                    "warning THRWorker::dbUpdatePerson(1234.1 Novák Ján (S: 7, K: 3 from "
                    "1 Apr 2015) N-V: 1 Mar 2015 - 31 Mar 2024; ES: 21, RS: 1 Apr 2024 - "
                    "27 Oct 2024 'materská' TPP: 51  DOV: 12.5 NOC: 5) - Testing mode is active, "
                    "person not really update!"}));
}

QTEST_GUILESS_MAIN(tst_People)
#include "tst_people.moc"
