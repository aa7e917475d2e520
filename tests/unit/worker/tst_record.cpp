// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is decided for one record: statements in their order, and what the worker remembers.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

/// The statement that adds record(), with these values of end, interval and branch.
QString adding(const QString &end, const QString &interval, const QString &typeToBranch)
{
    return QStringLiteral(
               "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
               "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
               "VALUES('12341', '1234.1', '', 'Ján', 'Novák', '', '', %1, %2, UNIX_TIMESTAMP(), "
               "%3, %4) ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), "
               "name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
               "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
               "edited=VALUES(created), status=1, type=VALUES(type), did=1")
        .arg(seconds(QDate(2015, 3, 1)), end, interval, typeToBranch);
}

QString adding()
{
    return adding(QStringLiteral("NULL"), QStringLiteral("NULL, NULL, ''"),
                  QStringLiteral("1, 1, 0, NULL"));
}

/// What follows a statement that adds record(): a PaM block is asked for, which lists him already.
QStringList asking(const QString &add = adding())
{
    return QStringList {add}
    + lines({"sql exec SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'",
             "sql exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1"});
}

/// As asking(), and the row for PaM once record() was added as a person of type 11.
QStringList enrolling(const QString &add = adding())
{
    return asking(add)
        + lines({"sql exec SELECT uid FROM people WHERE pid=12341",
                 "sql exec INSERT INTO people_pam (uid, id) VALUES(41, 1) "
                 "ON DUPLICATE KEY UPDATE id=VALUES(id)"});
}

/// The statement that updates record() of this phone; all from the interval on as given.
QString updating(const QString &phone, const QString &fromTheInterval)
{
    return QStringLiteral("sql exec UPDATE people SET pamId=1234.1, title='', name='Ján', "
                          "surname='Novák', title2='', phone='%1', begin=%2, end=NULL, "
                          "edited=UNIX_TIMESTAMP(), editor=0, %3")
        .arg(phone, seconds(QDate(2015, 3, 1)), fromTheInterval);
}

QString updating(const QString &phone = QString())
{
    return updating(phone,
                    QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText='', type=1, did=1, "
                                   "calendarID=0, bid=NULL  WHERE pid=12341"));
}

QString askingUid(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid);
}

/// What the terminals of a person are told after his row has changed.
QStringList noticing(uint pid, uint uid)
{
    return {QStringLiteral("sql exec SELECT uid FROM people WHERE pid=%1 LIMIT 1").arg(pid),
            QStringLiteral("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, "
                           "created, flags) SELECT `tid` tid, 'U' type, 'people' ref, "
                           "'uid' ref_col, %1 ref_id, UNIX_TIMESTAMP() created, 2 flags "
                           "FROM people_term JOIN term USING(tid) "
                           "WHERE status = 1 AND uid = %1 AND (flags & 2);")
                .arg(uid),
            QStringLiteral("sql exec CALL updateTermsSync(%1, 2);").arg(uid)};
}

/// The statement that updates record() in a row which changes, and the news of it.
QStringList updatingAndNoticing(const QString &update = updating())
{
    return QStringList {update} + noticing(12341, 41);
}

QString branchMissing(uint number, const QString &employee)
{
    return QStringLiteral("warning THRWorker: Branch '%1' NOT FOUND for employee: '%2'")
        .arg(number)
        .arg(employee);
}

QStringList reopening(uint uid)
{
    const QDate first = firstOfPreviousMonth();
    return {QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                           "`date` >= %1 AND uid =%2")
                .arg(seconds(first))
                .arg(uid),
            QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE "
                           "lastCalc > %1 AND uid=%2")
                .arg(seconds(first.addDays(-1)))
                .arg(uid)};
}

/// A worker to which record() is unknown; PaM lists him all the same. With a uid the person can be
/// added and enrolled, otherwise nothing changes a row.
class NewPerson : public WorkerFixture
{
public:
    explicit NewPerson(uint uid = 0)
    {
        listInPam(QStringLiteral("12341"));
        if (uid == 0)
            return;
        script.on(QStringLiteral("INSERT INTO people (")).withInsertId(uid).withAffected(1);
        answer("SELECT uid FROM people WHERE pid=", uid);
        script.on(QStringLiteral("INSERT INTO people_pam ")).withAffected(1);
    }
};

/// A worker to which the person is known as in `row`, and nothing of any earlier export file. An
/// update changes the row; the person's uid is 41.
class KnownPerson : public WorkerFixture
{
public:
    explicit KnownPerson(const EmployeeRecord &row)
    {
        known(row);
        script.on(QStringLiteral("UPDATE people SET pamId")).withAffected(1);
        answer("SELECT uid FROM people WHERE pid=", 41);
    }
};

} // namespace

Q_DECLARE_METATYPE(EmployeeRecord)

class tst_Record : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doSyncRecord_levels_data() { addLevels(); }
    void doSyncRecord_levels();

    void unknownPerson_isAddedAndRemembered();
    void unknownPerson_isAddedWithTheIntervalOfToday();
    void unknownPerson_isAddedOnlyIfCurrent_data();
    void unknownPerson_isAddedOnlyIfCurrent();
    void unknownPerson_failedAddIsNotRepeated();
    void unknownPerson_forcedUnchangedIsAddedAgain();
    void unknownPerson_forcedUnchangedNotCurrentStaysOut();
    void unknownPerson_isNotReopened();
    void unknownPerson_stateIsAppliedToTheCopyAlone();

    void knownPerson_firstRecordUpdatesEvenIfIdentical();
    void knownPerson_secondPassDoesNothing();
    void knownPerson_forcedUnchangedDoesNothing();
    void knownPerson_comparedFields_data();
    void knownPerson_comparedFields();
    void knownPerson_fieldsOutsideTheComparison_data();
    void knownPerson_fieldsOutsideTheComparison();
    void knownPerson_evidenceStateAloneMovesLastCalc();
    void knownPerson_employmentTypeAloneUpdates();
    void knownPerson_stateIsAppliedToTheRowsInterval();
    void knownPerson_failedUpdateIsNotRepeated();
    void knownPerson_untouchedRowIsNotRepeated();
    void knownPerson_thatHasEndedIsUpdated();
    void twoLinesOfOnePerson_secondIsComparedWithTheFirst();
    void twoLinesOfOneNewPerson_secondIsAddedToo();

    void recalculation_ofChangedAssignment_data();
    void recalculation_ofChangedAssignment();
    void recalculation_comesAfterTheUpdate();
    void recalculation_notForAnUnusableRow_data();
    void recalculation_notForAnUnusableRow();
    void recalculation_notRepeatedForASecondLine();
    void recalculation_rowTakesTheAssignmentOnly();
    void recalculation_alsoWhenTheUpdateFails();
    void recalculation_alsoInTestMode();
    void recalculation_ofAPersonWithoutUid();
    void recalculation_needsNoChangeOfTheRow();
    void calendarDateAloneReopensAttendance();
};

void tst_Record::doSyncRecord_levels()
{
    QFETCH(int, level);
    KnownPerson f(record());
    f.stated(record().es(1));
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.sync(record().es(1)),
             atLevel(level,
                     {"3 debug THRWorker::doSyncRecord(1234.1 Novák Ján (S: 0, K: 0 from ) "
                      "N-V: 1 Mar 2015 - ; ES: 1, RS:  -  '' TPP: 11  DOV: 0 NOC: 0)"}));
}

// A person whom the database does not hold, or holds as inactive

void tst_Record::unknownPerson_isAddedAndRemembered()
{
    NewPerson f(41);
    QCOMPARE(f.sync(record()), enrolling());
    QCOMPARE(f.peer.lastRecords.keys(), QList<uint> {12341});
    QVERIFY(f.peer.lastRecords.value(12341) == record().build());
    QVERIFY(f.peer.dbPeople.isEmpty());
    // Without a fund.
    QVERIFY(f.peer.fundRetry.isEmpty());

    QCOMPARE(f.sync(record()), QStringList());
}

void tst_Record::unknownPerson_isAddedWithTheIntervalOfToday()
{
    NewPerson f;
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    QCOMPARE(
        f.sync(record().es(21)),
        asking(adding(QStringLiteral("NULL"), seconds(today()) + QStringLiteral(", NULL, 'MD'"),
                      QStringLiteral("1, 1, 0, NULL"))));
}

void tst_Record::unknownPerson_isAddedOnlyIfCurrent_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<QString>("end"); // empty: not added
    const QDate first(2015, 3, 1);
    QTest::newRow("ended yesterday")
        << record().employed(first, today().addDays(-1)).build() << QString();
    QTest::newRow("ends today") << record().employed(first, today()).build()
                                << QString::number(localSeconds(today(), 23, 59, 59));
    QTest::newRow("state 3") << record().relationState(3).build() << QStringLiteral("NULL");
    QTest::newRow("state 4") << record().relationState(4).build() << QString();
}

void tst_Record::unknownPerson_isAddedOnlyIfCurrent()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(QString, end);
    NewPerson f(41);
    QStringList expected;
    if (!end.isEmpty())
        expected = enrolling(
            adding(end, QStringLiteral("NULL, NULL, ''"), QStringLiteral("1, 1, 0, NULL")));
    QCOMPARE(f.sync(given), expected);
    // Remembered in either case.
    QVERIFY(f.peer.lastRecords.value(12341) == given);
}

void tst_Record::unknownPerson_failedAddIsNotRepeated()
{
    NewPerson f;
    f.script.on(QStringLiteral("INSERT INTO people"), 1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    QCOMPARE(f.sync(record()),
             (QStringList {adding(),
                           QStringLiteral("critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: "
                                          "syntax (scripted)")}));
    QVERIFY(f.peer.lastRecords.value(12341) == record().build());

    QCOMPARE(f.sync(record()), QStringList());
    // Until a forced pass or a change.
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record()), asking());
    f.peer.forceSync = false;
    QCOMPARE(f.sync(record().balance(1)), asking());
}

void tst_Record::unknownPerson_forcedUnchangedIsAddedAgain()
{
    NewPerson f(41);
    f.peer.lastRecords.insert(12341, record());
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record()), enrolling());
}

void tst_Record::unknownPerson_forcedUnchangedNotCurrentStaysOut()
{
    WorkerFixture f;
    const EmployeeRecord ended = record().relationState(4);
    f.peer.lastRecords.insert(12341, ended);
    f.peer.forceSync = true;
    f.worker.doSyncRecord(ended);
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(f.peer.lastRecords.size(), 1);
    QVERIFY(f.peer.lastRecords.value(12341) == ended);
}

void tst_Record::unknownPerson_isNotReopened()
{
    NewPerson f(41);
    f.peer.branches.insert(7, 70);
    QCOMPARE(f.sync(record().branch(7).calendar(3, QDate(2020, 1, 1))),
             (enrolling(adding(QStringLiteral("NULL"), QStringLiteral("NULL, NULL, ''"),
                               QStringLiteral("1, 1, 3, 70")))
              + QStringList {askingUid(12341)}
              + lines({"sql exec SELECT COUNT(*) FROM brape WHERE bid = 70 AND "
                       "uid = (SELECT uid FROM people WHERE pid = 12341 LIMIT 1);",
                       "sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON "
                       "mg.mgid = b.mgid LEFT JOIN groups g ON g.parent = mg.mgid "
                       "WHERE bid = 70 AND g.calendarID = 3 LIMIT 1;",
                       "warning THRWorker: Group ID NOT found for Branch 7 and calendar 3 "
                       "[employee: '1234.1 Novák Ján (S: 7, K: 3 from 1 Jan 2020) "
                       "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0']!"})));
    QVERIFY(f.peer.waitingRecords.isEmpty()); // queued for the branch, which is enough
}

void tst_Record::unknownPerson_stateIsAppliedToTheCopyAlone()
{
    NewPerson f(41);
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    f.sync(record().es(21));
    const EmployeeRecord kept = f.peer.lastRecords.value(12341);
    QVERIFY(!kept.rsBegin.isValid());
    QVERIFY(!kept.rsEnd.isValid());
    QVERIFY(kept.rsText.isEmpty());
    QCOMPARE(kept.evidencniStav, ushort(21));
}

// A person whom the database holds

void tst_Record::knownPerson_firstRecordUpdatesEvenIfIdentical()
{
    KnownPerson f(record());
    QCOMPARE(f.sync(record()), updatingAndNoticing());
    QVERIFY(f.peer.lastRecords.value(12341) == record().build());
}

void tst_Record::knownPerson_secondPassDoesNothing()
{
    KnownPerson f(record());
    f.sync(record());
    f.worker.setLogLevel(2);
    QCOMPARE(f.sync(record()), QStringList());
    // An ended person is remembered anew each time, as the same.
    const EmployeeRecord ended = record().relationState(4);
    f.stated(ended);
    QCOMPARE(f.sync(ended), QStringList());
    QVERIFY(f.peer.lastRecords.value(12341) == ended);
}

void tst_Record::knownPerson_forcedUnchangedDoesNothing()
{
    KnownPerson f(record());
    f.stated(record());
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record()), QStringList());
    // A row that differs is updated, though the file did not change.
    f.peer.dbPeople.insert(12341, record().phone(QStringLiteral("111")));
    QCOMPARE(f.sync(record()), updatingAndNoticing());
}

void tst_Record::knownPerson_comparedFields_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<EmployeeRecord>("row");
    QTest::addColumn<bool>("updated");
    const QDate since(2020, 1, 1);
    const auto add = [](const char *name, const EmployeeRecord &given, const EmployeeRecord &row,
                        bool updated = true) { QTest::newRow(name) << given << row << updated; };
    add("nothing", record(), record(), false);
    add("null text for an empty one", record().phone(QString()), record().phone(QStringLiteral("")),
        false);
    // Both have the pid 123.
    add("osobniCislo, poradoveCisloPP", record().pid(12, 3), record().pid(1, 23));
    // Both have the pid 0, for it does not fit.
    add("poradoveCisloPP", record().pid(4294967295, 1), record().pid(4294967295, 2));
    add("titul", record(), record().titles(QStringLiteral("Ing."), QString()));
    add("jmeno", record(), record().name(QStringLiteral("ján"), QStringLiteral("Novák")));
    add("prijmeni", record(), record().name(QStringLiteral("Ján"), QStringLiteral("Nový")));
    add("titulZa", record(), record().titles(QString(), QStringLiteral("PhD.")));
    add("telefon", record(), record().phone(QStringLiteral("111")));
    add("datumNastupu", record(), record().employed(QDate(2015, 3, 2)));
    add("datumVystupu", record(), record().employed(QDate(2015, 3, 1), QDate(2050, 1, 1)));
    add("calendarID", record(), record().calendar(3));
    add("stredisko", record(), record().branch(7));
    // State 21 is known, 1 is not.
    add("rsBegin, of a new interval", record().es(21),
        record().interval(QDate(), QDate(), QStringLiteral("MD")));
    add("rsEnd, of an interval that closes", record().es(1),
        record().interval(since, QDate(), QStringLiteral("MD")));
    add("rsText, of an interval that goes on", record().es(21),
        record().interval(since, QDate(), QStringLiteral("RD")));
    add("interval that goes on", record().es(21),
        record().interval(since, QDate(), QStringLiteral("MD")), false);
    add("interval that is closed", record().es(1),
        record().interval(since, QDate(2020, 2, 1), QStringLiteral("MD")), false);
}

void tst_Record::knownPerson_comparedFields()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(EmployeeRecord, row);
    QFETCH(bool, updated);
    KnownPerson f(row);
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    // Unchanged against the last file: it is the row that decides.
    f.stated(given);
    f.peer.forceSync = true;
    const QStringList updates = f.sync(given).filter(
        QStringLiteral("sql exec UPDATE people SET pamId="));
    QCOMPARE(updates.size(), updated ? 1 : 0);
    // Without the flag for a changed state.
    QVERIFY(updates.filter(QStringLiteral("lastCalc")).isEmpty());
    f.log.clear();
}

void tst_Record::knownPerson_fieldsOutsideTheComparison_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<QStringList>("events");
    const auto add = [](const char *name, const EmployeeRecord &given,
                        const QStringList &events = QStringList()) {
        QTest::newRow(name) << given << events;
    };
    const RecordBuilder employee = record().supervisor(5);
    add("strediskoPopis", RecordBuilder(employee).branch(0, QStringLiteral("Sklad")));
    add("stavPracovnihoPomeru", RecordBuilder(employee).relationState(2));
    add("stavPracovnihoPomeru that ends", RecordBuilder(employee).relationState(4));
    add("dovolenaZustatek", RecordBuilder(employee).balance(1.5));
    // No news for the row, but for the administrators.
    add("nadOsCis named", record().supervisor(6),
        lines({"sql exec SELECT aid FROM admins WHERE personalNumber = 6",
               "warning THRWorker - admin s osobnym cislom 6 nebol najdeny!"}));
    add("nadOsCis gone", record().supervisor(0));
}

void tst_Record::knownPerson_fieldsOutsideTheComparison()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(QStringList, events);
    KnownPerson f(record());
    f.stated(record().supervisor(5));
    QCOMPARE(f.sync(given), events);
    QVERIFY(f.peer.lastRecords.value(12341) == given);
}

void tst_Record::knownPerson_evidenceStateAloneMovesLastCalc()
{
    const RecordBuilder row = record().interval(QDate(2020, 1, 1), QDate(2020, 2, 1),
                                                QStringLiteral("MD"));
    KnownPerson f(row);
    f.stated(record().es(1));
    QCOMPARE(f.sync(record().es(2)),
             updatingAndNoticing(
                 updating(QString(),
                          QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='MD', lastCalc=%3, type=1, "
                                         "did=1, calendarID=0, bid=NULL WHERE pid=12341")
                              .arg(seconds(QDate(2020, 1, 1)), seconds(QDate(2020, 2, 1)),
                                   seconds(QDate(2019, 12, 31))))));
    QVERIFY(f.peer.lastRecords.value(12341) == record().es(2).build());
}

void tst_Record::knownPerson_employmentTypeAloneUpdates()
{
    const RecordBuilder row = record().interval(QDate(2020, 1, 1), QDate(2020, 2, 1),
                                                QStringLiteral("MD"));
    KnownPerson f(row);
    f.stated(record().tpp(51));
    // Without lastCalc: the state is the same.
    QCOMPARE(f.sync(record().tpp(11)),
             updatingAndNoticing(
                 updating(QString(),
                          QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='MD', type=1, "
                                         "did=1, calendarID=0, bid=NULL  WHERE pid=12341")
                              .arg(seconds(QDate(2020, 1, 1)), seconds(QDate(2020, 2, 1))))));
}

void tst_Record::knownPerson_stateIsAppliedToTheRowsInterval()
{
    KnownPerson f(record().interval(QDate(2020, 1, 1), QDate(), QStringLiteral("MD")));
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    f.stated(record().es(21));
    QCOMPARE(
        f.sync(record()),
        updatingAndNoticing(updating(
            QString(),
            QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='MD', lastCalc=%3, type=1, "
                           "did=1, calendarID=0, bid=NULL WHERE pid=12341")
                .arg(seconds(QDate(2020, 1, 1)), seconds(today()), seconds(QDate(2019, 12, 31))))));
    // Neither what is remembered nor the row that was loaded takes the closed interval.
    QVERIFY(!f.peer.lastRecords.value(12341).rsBegin.isValid());
    QVERIFY(!f.peer.dbPeople.value(12341).rsEnd.isValid());
}

void tst_Record::knownPerson_failedUpdateIsNotRepeated()
{
    KnownPerson f(record());
    f.stated(record());
    f.script.on(QStringLiteral("UPDATE people"), 1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    const EmployeeRecord given = record().phone(QStringLiteral("111"));
    QCOMPARE(f.sync(given),
             (QStringList {updating(QStringLiteral("111")),
                           QStringLiteral("critical THRWorker::dbUpdatePerson(1234.1) - "
                                          "SQL ERROR: syntax (scripted)")}));
    QVERIFY(f.peer.lastRecords.value(12341) == given);
    QCOMPARE(f.sync(given), QStringList());
    f.peer.forceSync = true;
    QCOMPARE(f.sync(given), updatingAndNoticing(updating(QStringLiteral("111"))));
}

void tst_Record::knownPerson_untouchedRowIsNotRepeated()
{
    KnownPerson f(record());
    f.script.on(QStringLiteral("UPDATE people")).withAffected(0);
    QCOMPARE(f.sync(record()), QStringList {updating()});
    QVERIFY(f.peer.lastRecords.value(12341) == record().build());
    QCOMPARE(f.sync(record()), QStringList());
}

void tst_Record::knownPerson_thatHasEndedIsUpdated()
{
    KnownPerson f(record());
    f.stated(record());
    const QDate yesterday = today().addDays(-1);
    const EmployeeRecord given = record().employed(QDate(2015, 3, 1), yesterday);
    QCOMPARE(f.sync(given),
             updatingAndNoticing(
                 QStringLiteral("sql exec UPDATE people SET pamId=1234.1, title='', name='Ján', "
                                "surname='Novák', title2='', phone='', begin=%1, end=%2, "
                                "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                                "rsText='', type=1, did=1, calendarID=0, bid=NULL  WHERE pid=12341")
                     .arg(seconds(QDate(2015, 3, 1)))
                     .arg(localSeconds(yesterday, 23, 59, 59))));
    QVERIFY(f.peer.lastRecords.value(12341) == given);
}

void tst_Record::twoLinesOfOnePerson_secondIsComparedWithTheFirst()
{
    KnownPerson f(record().interval(QDate(2020, 1, 1), QDate(2020, 2, 1), QString()));
    const QString firstInterval
        = QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='', lastCalc=%3, type=1, did=1, "
                         "calendarID=0, bid=NULL WHERE pid=12341")
              .arg(seconds(QDate(2020, 1, 1)), seconds(QDate(2020, 2, 1)),
                   seconds(QDate(2019, 12, 31)));
    const QString laterInterval = QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='', type=1, did=1, "
                                                 "calendarID=0, bid=NULL  WHERE pid=12341")
                                      .arg(seconds(QDate(2020, 1, 1)), seconds(QDate(2020, 2, 1)));
    const EmployeeRecord first = record().phone(QStringLiteral("111"));
    const EmployeeRecord second = record().phone(QStringLiteral("222"));
    QCOMPARE(f.sync(first), updatingAndNoticing(updating(QStringLiteral("111"), firstInterval)));
    // The state no longer counts as changed.
    QCOMPARE(f.sync(second), updatingAndNoticing(updating(QStringLiteral("222"), laterInterval)));
    QVERIFY(f.peer.lastRecords.value(12341) == second);
}

void tst_Record::twoLinesOfOneNewPerson_secondIsAddedToo()
{
    NewPerson f(41);
    QCOMPARE(f.sync(record()), enrolling());
    QCOMPARE(f.sync(record().balance(2)), enrolling());
}

// Attendance that has to be calculated again. Found uids last as long as the process: each of these
// functions has persons of its own.

void tst_Record::recalculation_ofChangedAssignment_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<QString>("assignment"); // as a message states it
    QTest::addColumn<bool>("reopened");
    // A person a row, known with branch 7 and calendar 3.
    const auto person = [](uint number) { return record().pid(number, 1).branch(7).calendar(3); };
    QTest::newRow("nothing") << person(5101).build() << QStringLiteral("S: 7, K: 3 from ") << false;
    QTest::newRow("calendar") << person(5102).calendar(4).build()
                              << QStringLiteral("S: 7, K: 4 from ") << true;
    QTest::newRow("no calendar any more")
        << person(5103).calendar(0).build() << QStringLiteral("S: 7, K: 0 from ") << true;
    QTest::newRow("date of the calendar") << person(5104).calendar(3, QDate(2020, 1, 1)).build()
                                          << QStringLiteral("S: 7, K: 3 from 1 Jan 2020") << true;
    QTest::newRow("branch") << person(5105).branch(8).build() << QStringLiteral("S: 8, K: 3 from ")
                            << true;
    QTest::newRow("no branch any more")
        << person(5106).branch(0).build() << QStringLiteral("S: 0, K: 3 from ") << true;
    QTest::newRow("description of the branch")
        << person(5107).branch(7, QStringLiteral("Sklad")).build()
        << QStringLiteral("S: 7, K: 3 from ") << false;
    QTest::newRow("calendar's date and branch")
        << person(5108).branch(8).calendar(3, QDate(2020, 1, 1)).build()
        << QStringLiteral("S: 8, K: 3 from 1 Jan 2020") << true;
}

void tst_Record::recalculation_ofChangedAssignment()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(QString, assignment);
    QFETCH(bool, reopened);
    KnownPerson f(record().pid(given.osobniCislo, 1).branch(7).calendar(3));
    f.answer("SELECT uid", 51);
    QStringList events = f.sync(given);
    // The first record of a person always updates.
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QStringList expected = noticing(given.pid(), 51);
    // The branch comes before the recalculation, and is not in the database.
    if (given.stredisko != 0)
        expected.append(
            branchMissing(given.stredisko,
                          QStringLiteral("%1.1 Novák Ján (%2) N-V: 1 Mar 2015 - ; ES: 0, "
                                         "RS:  -  '' TPP: 11  DOV: 0 NOC: 0")
                              .arg(QString::number(given.osobniCislo), assignment)));
    if (reopened)
        expected += QStringList {askingUid(given.pid())} + reopening(51);
    QCOMPARE(events, expected);
}

void tst_Record::recalculation_comesAfterTheUpdate()
{
    const RecordBuilder person = record().pid(5002, 1);
    KnownPerson f(person);
    f.answer("SELECT uid", 52);
    f.worker.setLogLevel(2);
    QCOMPARE(
        f.sync(RecordBuilder(person).calendar(3)),
        (lines({"debug THRWorker::dbUpdatePerson(5002.1  Ján Novák  (T: ) "
                "N-V: 1 Mar 2015 -  TPP: 11  K: 3  DOV: 0, S: 0)"})
         + QStringList {QStringLiteral(
                            "sql exec UPDATE people SET pamId=5002.1, title='', name='Ján', "
                            "surname='Novák', title2='', phone='', begin=%1, end=NULL, "
                            "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                            "rsText='', type=1, did=1, calendarID=3, bid=NULL  "
                            "WHERE pid=50021")
                            .arg(seconds(QDate(2015, 3, 1))),
                        QStringLiteral("debug THRWorker::addTermSyncPerson(50021, U, people)")}
         + noticing(50021, 52)
         + QStringList {QStringLiteral("debug THRWorker::dbGetUidByPid(50021)"), askingUid(50021),
                        QStringLiteral("debug THRWorker::dbChangeLastCalc(52, %1)")
                            .arg(QLocale::system().toString(firstOfPreviousMonth(),
                                                            QLocale::ShortFormat))}
         + reopening(52)));
}

void tst_Record::recalculation_notForAnUnusableRow_data()
{
    QTest::addColumn<EmployeeRecord>("row");
    // A row whose pamId has no point reads as ordinal 0, under the pid of 500.30.
    QTest::newRow("no ordinal") << record().pid(5003, 0).build();
    QTest::newRow("no name") << record().pid(500, 30).name(QString(), QString()).build();
}

void tst_Record::recalculation_notForAnUnusableRow()
{
    QFETCH(EmployeeRecord, row);
    KnownPerson f(row);
    const EmployeeRecord given = record().pid(500, 30).branch(7).calendar(3, QDate(2020, 1, 1));
    QStringList events = f.sync(given);
    QVERIFY(events.takeFirst().startsWith(
        QStringLiteral("sql exec UPDATE people SET pamId=500.30, title='', name='Ján', ")));
    QCOMPARE(events,
             (noticing(50030, 41) << branchMissing(
                  7,
                  QStringLiteral("500.30 Novák Ján (S: 7, K: 3 from 1 Jan 2020) "
                                 "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                                 "DOV: 0 NOC: 0"))));
    // The row stays as it was loaded.
    QVERIFY(f.peer.dbPeople.value(50030) == row);
}

void tst_Record::recalculation_notRepeatedForASecondLine()
{
    const RecordBuilder person = record().pid(5004, 1);
    KnownPerson f(person);
    f.answer("SELECT uid", 54);
    const RecordBuilder given = RecordBuilder(person).branch(7).calendar(3, QDate(2020, 1, 1));
    QVERIFY(f.sync(given).contains(reopening(54).first()));
    // The file has another balance in its second line, and the pass is forced.
    f.peer.forceSync = true;
    QCOMPARE(f.sync(RecordBuilder(given).balance(2)),
             QStringList {branchMissing(
                 7,
                 QStringLiteral("5004.1 Novák Ján (S: 7, K: 3 from 1 Jan 2020) N-V: 1 Mar 2015 "
                                "- ; ES: 0, RS:  -  '' TPP: 11  DOV: 2 NOC: 0"))});
}

void tst_Record::recalculation_rowTakesTheAssignmentOnly()
{
    KnownPerson f(record().pid(5005, 1).phone(QStringLiteral("111")));
    f.answer("SELECT uid", 55);
    f.sync(record()
               .pid(5005, 1)
               .phone(QStringLiteral("222"))
               .branch(7, QStringLiteral("Sklad"))
               .calendar(3, QDate(2020, 1, 1))
               .balance(2.5)
               .supervisor(9)
               .es(21));
    const EmployeeRecord expected = record()
                                        .pid(5005, 1)
                                        .phone(QStringLiteral("111"))
                                        .branch(7, QStringLiteral("Sklad"))
                                        .calendar(3, QDate(2020, 1, 1))
                                        .balance(2.5);
    QVERIFY2(f.peer.dbPeople.value(50051) == expected,
             qPrintable(f.peer.dbPeople.value(50051).toText(false)));
}

void tst_Record::recalculation_alsoWhenTheUpdateFails()
{
    KnownPerson f(record().pid(5006, 1));
    f.answer("SELECT uid", 56);
    f.fail("UPDATE people SET pamId", "1064", "syntax");
    QStringList events = f.sync(record().pid(5006, 1).calendar(3));
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events,
             lines({"critical THRWorker::dbUpdatePerson(5006.1) - SQL ERROR: "
                    "syntax (scripted)"})
                 + QStringList {askingUid(50061)} + reopening(56));
}

void tst_Record::recalculation_alsoInTestMode()
{
    KnownPerson f(record().pid(5007, 1));
    f.worker.setTestMode(true);
    f.answer("SELECT uid", 57);
    QCOMPARE(f.sync(record().pid(5007, 1).calendar(3)),
             QStringList {askingUid(50071)} + reopening(57));
    QVERIFY(f.peer.lastRecords.contains(50071));
}

void tst_Record::recalculation_ofAPersonWithoutUid()
{
    KnownPerson f(record().pid(5008, 1));
    QStringList events = f.sync(record().pid(5008, 1).calendar(3));
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events,
             noticing(50081, 41) + QStringList {askingUid(50081)}
                 + lines({"warning THRWorker: User (employee) ID NOT found for pid (Personal ID) "
                          "50081 [employee: '5008.1 Novák Ján (S: 0, K: 3 from ) N-V: 1 Mar 2015 - "
                          "; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0'] - lastCalc not changed "
                          "(manual recalculation is needed)!"}));
    // The row has taken the calendar all the same: no second attempt in this pass.
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record().pid(5008, 1).calendar(3)), QStringList());
}

void tst_Record::recalculation_needsNoChangeOfTheRow()
{
    // Nothing for the row to take: branch and calendar are the same, the file differs elsewhere.
    const RecordBuilder person = record().pid(5009, 1).calendar(3, QDate(2020, 1, 1));
    KnownPerson f(record().pid(5009, 1).calendar(3));
    f.answer("SELECT uid", 59);
    f.stated(person);
    QCOMPARE(f.sync(person), QStringList());
    QCOMPARE(f.sync(RecordBuilder(person).balance(1)),
             QStringList {askingUid(50091)} + reopening(59));
}

void tst_Record::calendarDateAloneReopensAttendance()
{
    const RecordBuilder person = record().pid(5010, 1).branch(7);
    const RecordBuilder given = RecordBuilder(person).calendar(3, QDate(2020, 1, 1));
    KnownPerson f(RecordBuilder(person).calendar(3));
    f.answer("SELECT uid", 60);
    f.stated(given);
    f.peer.forceSync = true;
    const QStringList noBranch {branchMissing(
        7,
        QStringLiteral("5010.1 Novák Ján (S: 7, K: 3 from 1 Jan 2020) N-V: 1 Mar 2015 - ; "
                       "ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0"))};
    QCOMPARE(f.sync(given), noBranch + QStringList {askingUid(50101)} + reopening(60));
    // Only on the first visit in a pass.
    QCOMPARE(f.sync(given), noBranch);
    // The next pass has loaded the row without the date; the uid is known by now.
    f.peer.dbPeople.insert(50101, RecordBuilder(person).calendar(3));
    QCOMPARE(f.sync(given), noBranch + reopening(60));
    // A calendar without a date is in line.
    f.peer.dbPeople.insert(50101, RecordBuilder(person).calendar(3));
    f.stated(RecordBuilder(person).calendar(3));
    QCOMPARE(f.sync(RecordBuilder(person).calendar(3)),
             QStringList {branchMissing(
                 7,
                 QStringLiteral("5010.1 Novák Ján (S: 7, K: 3 from ) N-V: 1 Mar 2015 - ; "
                                "ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0"))});
}

QTEST_GUILESS_MAIN(tst_Record)
#include "tst_record.moc"
