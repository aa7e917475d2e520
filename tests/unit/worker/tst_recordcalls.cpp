// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When a record has its person enrolled in PaM and his supervisor marked, and what comes of it.
#include "support/localseconds.h"
#include "support/workerfixture.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

/// A person is added, and found on the list of the one PaM block.
QStringList adding(uint number, uint type, uint calendarID = 0)
{
    return {QStringLiteral("sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, "
                           "phone, begin, end, created, rsBegin, rsEnd, rsText, type, did, "
                           "calendarID, bid) VALUES('%11', '%1.1', '', 'Ján', 'Novák', '', '', "
                           "%2, NULL, UNIX_TIMESTAMP(), NULL, NULL, '', %3, 1, %4, NULL) "
                           "ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), "
                           "name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
                           "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
                           "edited=VALUES(created), status=1, type=VALUES(type), did=1")
                .replace(QStringLiteral("%1"), QString::number(number))
                .replace(QStringLiteral("%2"), seconds(QDate(2015, 3, 1)))
                .replace(QStringLiteral("%3"), QString::number(type))
                .replace(QStringLiteral("%4"), QString::number(calendarID)),
            QStringLiteral("sql exec SELECT name, value FROM vars "
                           "WHERE name LIKE 'exportPam.%.active%'"),
            QStringLiteral("sql exec SELECT value FROM vars "
                           "WHERE name='exportPam.1.selPeople' LIMIT 1")};
}

QString askingForPam(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid=%1").arg(pid);
}

QStringList enrolling(uint pid, uint block)
{
    return {askingForPam(pid),
            QStringLiteral("sql exec INSERT INTO people_pam (uid, id) VALUES(41, %1) "
                           "ON DUPLICATE KEY UPDATE id=VALUES(id)")
                .arg(block)};
}

/// There is no administrator of this number: with that the processing of a supervisor ends.
QStringList missing(uint supervisor)
{
    return {
        QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = %1").arg(supervisor),
        QStringLiteral("warning THRWorker - admin s osobnym cislom %1 nebol najdeny!")
            .arg(supervisor)};
}

/// As missing(), for the person 1234.1, with what else is said of it at level 1.
QStringList missingAtLevel1(uint supervisor)
{
    const QStringList silent = missing(supervisor);
    return {QStringLiteral("debug THRWorker::processNadOsCis(1234.1, NOC: %1)").arg(supervisor),
            silent.first(),
            QStringLiteral("debug THRWorker::dbGetAidByOsCis(uid: %1): 0").arg(supervisor),
            silent.last()};
}

/// The events of a processing that finds no administrator.
QRegularExpression aboutSupervisors()
{
    return QRegularExpression(QStringLiteral("processNadOsCis|dbGetAidByOsCis|admin"));
}

/// Administrator 6 becomes the supervisor of uid 41.
QStringList marking(uint supervisor, uint pid)
{
    return {
        QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = %1").arg(supervisor),
        QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid),
        QStringLiteral("sql begin"),
        QStringLiteral("sql exec UPDATE admins_people SET request =0 WHERE uid=41 AND aid != 6"),
        QStringLiteral("sql exec INSERT INTO admins_people (aid, uid, request) VALUES(6, 41, 1) "
                       "ON DUPLICATE KEY UPDATE request=1"),
        QStringLiteral("sql commit")};
}

/// The record 'number.1' as a message states it; what it says of branch, calendar and type as
/// given.
QString named(uint number, const char *assignment, const char *typeToSupervisor)
{
    return QStringLiteral("%1.1 Novák Ján (%2) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' %3")
        .arg(QString::number(number), QString::fromLatin1(assignment),
             QString::fromLatin1(typeToSupervisor));
}

QString branchMissing(uint number, const char *assignment, const char *typeToSupervisor)
{
    return QStringLiteral("warning THRWorker: Branch '7' NOT FOUND for employee: '%1'")
        .arg(named(number, assignment, typeToSupervisor));
}

class Worker : public WorkerFixture
{
public:
    void findSupervisor()
    {
        answer("SELECT aid FROM admins", 6);
        answer("SELECT uid FROM people WHERE pid = ", 41);
    }
};

/// A worker to which nobody is known. Whoever is added is uid 41, PaM lists him, and his row in PaM
/// is new. There are no administrators.
class NewPerson : public Worker
{
public:
    explicit NewPerson(uint pid)
    {
        listInPam(QString::number(pid));
        script.on(QStringLiteral("INSERT INTO people (")).withInsertId(41).withAffected(1);
        answer("SELECT uid FROM people WHERE pid=", 41);
        script.on(QStringLiteral("INSERT INTO people_pam ")).withAffected(1);
    }
};

/// A worker to which the person is known as in `row`, and nothing of any earlier export file. There
/// are no administrators.
class KnownPerson : public Worker
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

class tst_RecordCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addedPerson_isEnrolledByType_data();
    void addedPerson_isEnrolledByType();
    void addedPerson_ofType51IsEnrolledWithoutSupervisor();
    void addedPerson_refusedEnrolmentIsWarnedOf_data();
    void addedPerson_refusedEnrolmentIsWarnedOf();
    void addedPerson_refusedEnrolmentStopsNoStep();
    void addedPerson_refusedEnrolmentIsNotRepeated();
    void addedPerson_enrolmentComesBeforeSupervisorAndBranch();
    void addedPerson_supervisorByType_data();
    void addedPerson_supervisorByType();
    void addedPerson_supervisorNeedsNoChange();
    void addedPerson_failedSupervisorStopsNoStep();
    void addedPerson_inTestModeHasItsSupervisorMarked_data();
    void addedPerson_inTestModeHasItsSupervisorMarked();
    void notAddedPerson_isLeftAlone_data();
    void notAddedPerson_isLeftAlone();

    void knownPerson_isNeverEnrolled();
    void knownPerson_supervisorIsProcessedWhen_data();
    void knownPerson_supervisorIsProcessedWhen();
    void knownPerson_unchangedIsNotProcessed();
    void knownPerson_supervisorComesBetweenUpdateAndBranch();
    void knownPerson_supervisorAlsoWhenTheUpdateFails();
    void knownPerson_thatHasEndedGetsItsSupervisor();
    void knownPerson_failedSupervisorIsNotRepeated();
    void knownPerson_supervisorInTestMode();
    void twoLinesOfOnePerson_secondSupervisorIsProcessedToo();
};

// Found uids last as long as the process: each function that marks a supervisor has persons of its
// own.

void tst_RecordCalls::addedPerson_isEnrolledByType_data()
{
    QTest::addColumn<int>("tpp");
    QTest::addColumn<uint>("type");
    QTest::addColumn<uint>("block"); // 0: none
    QTest::newRow("11") << 11 << 1u << 1u;
    QTest::newRow("65") << 65 << 1u << 1u;
    QTest::newRow("51") << 51 << 4u << 2u;
    QTest::newRow("53") << 53 << 4u << 2u;
    QTest::newRow("54") << 54 << 4u << 2u;
    QTest::newRow("52") << 52 << 0u << 0u;
    QTest::newRow("1") << 1 << 0u << 0u;
    QTest::newRow("0") << 0 << 0u << 0u;
}

void tst_RecordCalls::addedPerson_isEnrolledByType()
{
    QFETCH(int, tpp);
    QFETCH(uint, type);
    QFETCH(uint, block);
    NewPerson f(12341);
    QCOMPARE(f.sync(record().tpp(static_cast<ushort>(tpp))),
             adding(1234, type) + (block == 0 ? QStringList() : enrolling(12341, block)));
}

void tst_RecordCalls::addedPerson_ofType51IsEnrolledWithoutSupervisor()
{
    NewPerson f(12341);
    QCOMPARE(f.sync(record().tpp(51).supervisor(5)), adding(1234, 4) + enrolling(12341, 2));
}

void tst_RecordCalls::addedPerson_refusedEnrolmentIsWarnedOf_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("failing");
    QTest::addColumn<int>("statements");
    QTest::addColumn<QString>("line"); // from the enrolment itself
    for (const int level : {0, 1, 3}) {
        const auto add = [&](const char *reason, const char *failing, int statements,
                             const char *line) {
            QTest::addRow("%s, level %d", reason, level)
                << level << QString::fromLatin1(failing) << statements << QString::fromLatin1(line);
        };
        add("no uid", "SELECT uid FROM people WHERE pid=", 1,
            level == 0 ? ""
                       : "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1) - "
                         "Unique person ID ([people].uid) not found!");
        add("row refused", "INSERT INTO people_pam ", 2,
            "critical THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1) - "
            "SQL ERROR: denied (scripted)");
    }
}

void tst_RecordCalls::addedPerson_refusedEnrolmentIsWarnedOf()
{
    QFETCH(int, level);
    QFETCH(QString, failing);
    QFETCH(int, statements);
    QFETCH(QString, line);
    NewPerson f(12341);
    f.script.on(failing).withError(QStringLiteral("1142"), QStringLiteral("denied"));
    f.worker.setLogLevel(static_cast<quint8>(level));
    const QStringList events = f.sync(record());
    QStringList expected = enrolling(12341, 1).mid(0, statements);
    if (level > 0)
        expected.prepend(
            QStringLiteral("debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1)"));
    if (!line.isEmpty())
        expected.append(line);
    expected.append(QStringLiteral("warning THRWorker::doSyncRecord(%1) - "
                                   "dbAddPersonIntoPam(12341, 1) FAILED!")
                        .arg(named(1234, "S: 0, K: 0 from ", "TPP: 11  DOV: 0 NOC: 0")));
    QCOMPARE(events.mid(events.size() - expected.size()), expected);
    // Before that the person was added, and stays.
    QStringList before = events.mid(0, events.size() - expected.size());
    QCOMPARE(before.filter(QStringLiteral("sql ")), adding(1234, 1));
    QVERIFY(f.peer.lastRecords.value(12341) == record().build());
}

void tst_RecordCalls::addedPerson_refusedEnrolmentStopsNoStep()
{
    NewPerson f(61011);
    f.findSupervisor();
    f.script.on(QStringLiteral("INSERT INTO people_pam ")).withAffected(0);
    const RecordBuilder person = record().pid(6101, 1).tpp(65).supervisor(5).branch(7);
    QCOMPARE(f.sync(person),
             adding(6101, 1) + enrolling(61011, 1)
                 + QStringList {QStringLiteral("warning THRWorker::doSyncRecord(%1) - "
                                               "dbAddPersonIntoPam(61011, 1) FAILED!")
                                    .arg(named(6101, "S: 7, K: 0 from ", "TPP: 65  DOV: 0 NOC: 5"))}
                 + marking(5, 61011)
                 + QStringList {branchMissing(6101, "S: 7, K: 0 from ", "TPP: 65  DOV: 0 NOC: 5")});
    QVERIFY(f.peer.lastRecords.value(61011) == person.build());
}

void tst_RecordCalls::addedPerson_refusedEnrolmentIsNotRepeated()
{
    NewPerson f(12341);
    f.script.on(QStringLiteral("INSERT INTO people_pam "), 1)
        .withError(QStringLiteral("1142"), QStringLiteral("denied"));
    QCOMPARE(f.sync(record()).filter(QStringLiteral("FAILED!")).size(), 1);
    QCOMPARE(f.sync(record()), QStringList());
    // The next pass knows the person, who is new no more, be it forced or not.
    f.peer.dbPeople.insert(12341, record());
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record()), QStringList());
    f.peer.forceSync = false;
    QCOMPARE(f.sync(record().balance(1)), QStringList());
}

void tst_RecordCalls::addedPerson_enrolmentComesBeforeSupervisorAndBranch()
{
    NewPerson f(61021);
    f.findSupervisor();
    const RecordBuilder person = record().pid(6102, 1).supervisor(5).branch(7).calendar(
        3, QDate(2020, 1, 1));
    QCOMPARE(f.sync(person),
             adding(6102, 1, 3) + enrolling(61021, 1) + marking(5, 61021)
                 + QStringList {
                     branchMissing(6102, "S: 7, K: 3 from 1 Jan 2020", "TPP: 11  DOV: 0 NOC: 5")});
}

void tst_RecordCalls::addedPerson_supervisorByType_data()
{
    QTest::addColumn<int>("tpp");
    QTest::addColumn<uint>("supervisor");
    QTest::addColumn<bool>("processed");
    QTest::newRow("11") << 11 << 5u << true;
    QTest::newRow("65") << 65 << 5u << true;
    QTest::newRow("largest number") << 11 << 4294967295u << true;
    QTest::newRow("11, nobody named") << 11 << 0u << false;
    QTest::newRow("65, nobody named") << 65 << 0u << false;
    for (const int tpp : {0, 1, 10, 12, 51, 52, 53, 54, 64, 66})
        QTest::newRow(qPrintable(QString::number(tpp))) << tpp << 5u << false;
}

void tst_RecordCalls::addedPerson_supervisorByType()
{
    QFETCH(int, tpp);
    QFETCH(uint, supervisor);
    QFETCH(bool, processed);
    NewPerson f(12341);
    f.worker.setLogLevel(1);
    const QStringList events = f.sync(
        record().tpp(static_cast<ushort>(tpp)).supervisor(supervisor));
    QCOMPARE(events.filter(aboutSupervisors()),
             processed ? missingAtLevel1(supervisor) : QStringList());
    QVERIFY(f.peer.lastRecords.contains(12341));
}

void tst_RecordCalls::addedPerson_supervisorNeedsNoChange()
{
    // The file said the same before; the pass is forced, and the person is not in the database.
    NewPerson f(12341);
    f.peer.lastRecords.insert(12341, record().supervisor(5));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record().supervisor(5)), adding(1234, 1) + enrolling(12341, 1) + missing(5));
}

void tst_RecordCalls::addedPerson_failedSupervisorStopsNoStep()
{
    NewPerson f(12341);
    const RecordBuilder person = record().supervisor(5).branch(7);
    QCOMPARE(f.sync(person),
             adding(1234, 1) + enrolling(12341, 1) + missing(5)
                 + QStringList {branchMissing(1234, "S: 7, K: 0 from ", "TPP: 11  DOV: 0 NOC: 5")});
    QVERIFY(f.peer.lastRecords.value(12341) == person.build());
    // Nor is it tried again.
    f.peer.dbPeople.insert(12341, record());
    QCOMPARE(f.sync(RecordBuilder(person).branch(0)).filter(QStringLiteral("admin")),
             QStringList());
}

void tst_RecordCalls::addedPerson_inTestModeHasItsSupervisorMarked_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<uint>("number");
    QTest::newRow("0") << 0 << 6103u;
    QTest::newRow("1") << 1 << 6104u;
}

void tst_RecordCalls::addedPerson_inTestModeHasItsSupervisorMarked()
{
    QFETCH(int, level);
    QFETCH(uint, number);
    const uint pid = number * 10 + 1;
    NewPerson f(pid);
    f.findSupervisor();
    f.worker.setTestMode(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    const QStringList events = f.sync(record().pid(number, 1).supervisor(5));
    // The supervisor alone is written.
    QCOMPARE(events.filter(QStringLiteral("sql ")), marking(5, pid));
    QCOMPARE(events.filter(QStringLiteral("warning ")),
             level == 0
                 ? QStringList()
                 : lines({"warning THRWorker::dbAddPerson(6104.1) - Testing mode is active, "
                          "person not really add!",
                          "warning THRWorker::dbAddPersonIntoPam(pid: 61041, pamSettingsID: 1) - "
                          "Testing mode is active, person not really add into PaM!"}));
    QVERIFY(f.peer.lastRecords.contains(pid));
}

void tst_RecordCalls::notAddedPerson_isLeftAlone_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<QStringList>("expected");
    const RecordBuilder person = record().supervisor(5);
    QTest::newRow("insert refused")
        << person.build()
        << (adding(1234, 1).mid(0, 1)
            + lines({"critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: syntax (scripted)"}));
    // On the list he stands all the same.
    QTest::newRow("no row written") << person.build() << adding(1234, 1);
    QTest::newRow("ended") << RecordBuilder(person).relationState(4).build() << QStringList();
}

void tst_RecordCalls::notAddedPerson_isLeftAlone()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(QStringList, expected);
    NewPerson f(12341);
    ScriptedAnswer &insertion = f.script.on(QStringLiteral("INSERT INTO people ("));
    if (expected.size() == 2)
        insertion.withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    QCOMPARE(f.sync(given), expected);
    // No matter whether the record is new to the worker.
    f.peer.forceSync = true;
    QCOMPARE(f.sync(given), expected);
    QVERIFY(f.peer.lastRecords.value(12341) == given);
}

// A person whom the database holds

void tst_RecordCalls::knownPerson_isNeverEnrolled()
{
    KnownPerson f(record());
    f.listInPam(QString());
    f.peer.forceSync = true;
    for (const ushort tpp : {ushort(11), ushort(51)}) {
        const QStringList events = f.sync(record().tpp(tpp));
        QCOMPARE(events.size(), 4); // the update, and the three statements of its news
        QCOMPARE(events.filter(QStringLiteral("UPDATE people SET pamId=")).size(), 1);
        QCOMPARE(events.filter(QStringLiteral("people_pam")), QStringList());
        QCOMPARE(events.filter(QStringLiteral("vars")), QStringList());
    }
}

void tst_RecordCalls::knownPerson_supervisorIsProcessedWhen_data()
{
    QTest::addColumn<EmployeeRecord>("last"); // pid 0: none
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<bool>("forced");
    QTest::addColumn<bool>("processed");
    const auto add = [](const char *name, const EmployeeRecord &last, const EmployeeRecord &given,
                        bool processed) {
        QTest::newRow(name) << last << given << false << processed;
        QTest::newRow(qPrintable(QString::fromLatin1(name) + QStringLiteral(", forced")))
            << last << given << true << processed;
    };
    const EmployeeRecord none;
    add("first sight", none, record().supervisor(5), true);
    add("first sight, type 65", none, record().tpp(65).supervisor(5), true);
    add("first sight, nobody named", none, record(), false);
    add("first sight, type 51", none, record().tpp(51).supervisor(5), false);
    add("first sight, type 53", none, record().tpp(53).supervisor(5), false);
    add("first sight, type 0", none, record().tpp(0).supervisor(5), false);
    add("named", record(), record().supervisor(5), true);
    add("changed", record().supervisor(6), record().supervisor(5), true);
    add("changed, type 65", record().tpp(65).supervisor(6), record().tpp(65).supervisor(5), true);
    add("changed, type 51", record().tpp(51).supervisor(6), record().tpp(51).supervisor(5), false);
    add("changed, type 54", record().tpp(54).supervisor(6), record().tpp(54).supervisor(5), false);
    add("disappeared", record().supervisor(5), record(), false);
    add("unchanged", record().supervisor(5), record().supervisor(5), false);
    add("unchanged, balance changed", record().supervisor(5), record().supervisor(5).balance(1),
        false);
    // The type that now has a supervisor taken over makes no change of the supervisor.
    add("unchanged, type changed", record().tpp(51).supervisor(5), record().supervisor(5), false);
    add("nobody, as before", record(), record().balance(1), false);
}

void tst_RecordCalls::knownPerson_supervisorIsProcessedWhen()
{
    QFETCH(EmployeeRecord, last);
    QFETCH(EmployeeRecord, given);
    QFETCH(bool, forced);
    QFETCH(bool, processed);
    KnownPerson f(record());
    if (last.pid() != 0)
        f.stated(last);
    f.peer.forceSync = forced;
    // It tells even of nobody, once it is called.
    f.worker.setLogLevel(1);
    QCOMPARE(f.sync(given).filter(aboutSupervisors()),
             processed ? missingAtLevel1(5) : QStringList());
    QVERIFY(f.peer.lastRecords.value(12341) == given);
}

void tst_RecordCalls::knownPerson_unchangedIsNotProcessed()
{
    KnownPerson f(record());
    f.stated(record().supervisor(5));
    f.worker.setLogLevel(2);
    QCOMPARE(f.sync(record().supervisor(5)), QStringList());
}

void tst_RecordCalls::knownPerson_supervisorComesBetweenUpdateAndBranch()
{
    const RecordBuilder person = record().pid(6105, 1).supervisor(5).branch(7);
    KnownPerson f(record().pid(6105, 1));
    f.findSupervisor();
    f.stated(record().pid(6105, 1));
    const QDate first = firstOfPreviousMonth();
    QCOMPARE(
        f.sync(person),
        (QStringList {
             QStringLiteral("sql exec UPDATE people SET pamId=6105.1, title='', name='Ján', "
                            "surname='Novák', title2='', phone='', begin=%1, end=NULL, "
                            "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                            "rsText='', type=1, did=1, calendarID=0, bid=NULL  WHERE pid=61051")
                 .arg(seconds(QDate(2015, 3, 1)))}
         + lines({"sql exec SELECT uid FROM people WHERE pid=61051 LIMIT 1",
                  "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                  "flags) SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, 41 ref_id, "
                  "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
                  "WHERE status = 1 AND uid = 41 AND (flags & 2);",
                  "sql exec CALL updateTermsSync(41, 2);"})
         + marking(5, 61051)
         + QStringList {
             branchMissing(6105, "S: 7, K: 0 from ", "TPP: 11  DOV: 0 NOC: 5"),
             // The uid is known by now.
             QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                            "`date` >= %1 AND uid =41")
                 .arg(seconds(first)),
             QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE "
                            "lastCalc > %1 AND uid=41")
                 .arg(seconds(first.addDays(-1)))}));
}

void tst_RecordCalls::knownPerson_supervisorAlsoWhenTheUpdateFails()
{
    KnownPerson f(record());
    f.stated(record());
    f.fail("UPDATE people SET pamId", "1064", "syntax");
    QStringList events = f.sync(record().phone(QStringLiteral("111")).supervisor(5));
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events,
             lines({"critical THRWorker::dbUpdatePerson(1234.1) - SQL ERROR: syntax (scripted)"})
                 + missing(5));
}

void tst_RecordCalls::knownPerson_thatHasEndedGetsItsSupervisor()
{
    KnownPerson f(record());
    f.stated(record());
    QCOMPARE(f.sync(record().relationState(4).supervisor(5)), missing(5));
}

void tst_RecordCalls::knownPerson_failedSupervisorIsNotRepeated()
{
    KnownPerson f(record());
    f.stated(record());
    QCOMPARE(f.sync(record().supervisor(5)), missing(5));
    f.findSupervisor();
    QCOMPARE(f.sync(record().supervisor(5)), QStringList());
    f.peer.forceSync = true;
    QCOMPARE(f.sync(record().supervisor(5)), QStringList());
}

void tst_RecordCalls::knownPerson_supervisorInTestMode()
{
    KnownPerson f(record().pid(6106, 1));
    f.findSupervisor();
    f.worker.setTestMode(true);
    QCOMPARE(f.sync(record().pid(6106, 1).supervisor(5)), marking(5, 61061));
}

void tst_RecordCalls::twoLinesOfOnePerson_secondSupervisorIsProcessedToo()
{
    KnownPerson f(record());
    f.stated(record());
    QCOMPARE(f.sync(record().supervisor(5)), missing(5));
    QCOMPARE(f.sync(record().supervisor(6)), missing(6));
    QCOMPARE(f.sync(record().supervisor(6).balance(2)), QStringList());
}

QTEST_GUILESS_MAIN(tst_RecordCalls)
#include "tst_recordcalls.moc"
