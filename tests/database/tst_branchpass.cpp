// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whole passes over the sample company: branches, calendars, terminals and administrators.
#include "repository/branchesrepository.h"
#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"

#include <QtTest>

namespace {

QDate firstOfThisMonth()
{
    return QDate(today().year(), today().month(), 1);
}

QString month(const QDate &day)
{
    return QString::number(day.year() * 100 + day.month());
}

} // namespace

// All functions share one database: each has people of its own. The queue of the terminals is empty
// at the beginning of each.
class tst_BranchPass : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_BranchPass() :
        DatabaseFixture(TestDatabase::Sample)
    { }

private Q_SLOTS:
    void init();

    void branches_onlyThoseWithANumber();
    void newPeople_landInTheirBranches();
    void newPerson_logOfThePass();
    void newPerson_inTwoLinesJoinsOnce();
    void changedPeople_areNewsForTheirTerminals();
    void member_isNotAddedAgain();
    void movingPerson_joinsTheNewBranchToo();
    void calendar_isPlannedFromItsMonth();
    void calendar_replacesThePlanOfTheMonth();
    void calendar_ofThePastReopensAttendance();
    void calendar_thatIsPlannedReopensNothing();
    void calendar_withoutADateIsPlannedForAllTime();
    void calendar_withoutAGroupLeavesTheMembership();
    void unknownBranch_waitsUntilItAppears();
    void secondPass_writesNothing();
    void testMode_stillAssigns();
    void hiddenBranches_leaveAllWaiting();
    void hiddenMemberships_areTakenAsNone();
    void hiddenTerminals_stopNoAdministrator();
    void hiddenQueue_keepsTheUpdate();
    void hiddenPlans_keepTheMembership();

private:
    void prepare() override
    {
        // Nobody's leave is looked at here: a balance that is brought into line makes a record
        // changed.
        database->execute(QStringLiteral("DELETE FROM funds"));
    }
    QString uidOf(uint pid);
    QStringList branchesOf(const QString &uid);
    QStringList terminalsOf(const QString &uid);
    QStringList administratorsOf(const QString &uid);
    QStringList plansOf(const QString &uid);
    /// Terminal, type, object, key column, person and kind of what is queued, in its order.
    QStringList queue();
    QStringList markedTerminals();
    QStringList writesSoFar();
};

void tst_BranchPass::init()
{
    database->execute(QStringLiteral("DELETE FROM term_sync"));
    database->execute(QStringLiteral("UPDATE term SET syn=0"));
}

QString tst_BranchPass::uidOf(uint pid)
{
    return database->value(QStringLiteral("SELECT uid FROM people WHERE pid=%1").arg(pid));
}

QStringList tst_BranchPass::branchesOf(const QString &uid)
{
    return database->rows(
        QStringLiteral("SELECT bid FROM brape WHERE uid=%1 ORDER BY bid").arg(uid));
}

QStringList tst_BranchPass::terminalsOf(const QString &uid)
{
    return database->rows(
        QStringLiteral("SELECT tid FROM people_term WHERE uid=%1 ORDER BY tid").arg(uid));
}

QStringList tst_BranchPass::administratorsOf(const QString &uid)
{
    return database->rows(
        QStringLiteral("SELECT aid, request FROM admins_people WHERE uid=%1 ORDER BY aid")
            .arg(uid));
}

QStringList tst_BranchPass::plansOf(const QString &uid)
{
    return database->rows(
        QStringLiteral("SELECT since, gid FROM groups_plan WHERE uid=%1 ORDER BY since").arg(uid));
}

QStringList tst_BranchPass::queue()
{
    return database->rows(
        QStringLiteral("SELECT tid, type, ref, ref_col, ref_id, flags FROM term_sync ORDER BY id"));
}

QStringList tst_BranchPass::markedTerminals()
{
    return database->rows(QStringLiteral("SELECT tid, syn FROM term WHERE syn ORDER BY tid"));
}

/// The server's own count of writing statements.
QStringList tst_BranchPass::writesSoFar()
{
    return database->rows(QStringLiteral(
        "SHOW GLOBAL STATUS WHERE Variable_name IN ('Com_insert', 'Com_insert_select', "
        "'Com_update', 'Com_update_multi', 'Com_delete', 'Com_replace', 'Com_call_procedure')"));
}

void tst_BranchPass::branches_onlyThoseWithANumber()
{
    DatabaseWorker f(*database);
    QVERIFY(f.worker.dbLoadBranches());
    QCOMPARE(f.peer.branches,
             (QHash<uint, uint> {{100, 1}, {200, 2}, {210, 3}, {300, 4}, {400, 5}}));
}

// Memberships

void tst_BranchPass::newPeople_landInTheirBranches()
{
    const qint64 begin = std::time(nullptr);
    DatabaseWorker f(*database);
    f.writeExport({exportHeader(), record().pid(7001, 1).branch(200).line(),
                   record().pid(7002, 1).branch(210).line(),
                   record().pid(7003, 1).branch(200).line(),
                   record().pid(7004, 1).branch(300).line(),
                   record().pid(7005, 1).branch(400).line(), record().pid(7006, 1).line()});
    f.tick();
    QCOMPARE(f.log.takeMessages(), QStringList());

    const QStringList uids {uidOf(70011), uidOf(70021), uidOf(70031), uidOf(70041), uidOf(70051)};
    QCOMPARE(database->rows(QStringLiteral("SELECT bid, uid=%1 OR uid=%2, since>=%3 FROM brape "
                                           "WHERE uid IN (%1, %2) ORDER BY uid")
                                .arg(uids.at(0), uids.at(2))
                                .arg(begin)),
             lines({"2|1|1", "2|1|1"}));
    QCOMPARE(branchesOf(uids.at(1)), lines({"3"}));
    QCOMPARE(branchesOf(uids.at(3)), lines({"4"}));
    QCOMPARE(branchesOf(uids.at(4)), lines({"5"}));
    QCOMPARE(branchesOf(uidOf(70061)), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, bid FROM people WHERE pid BETWEEN 70011 "
                                           "AND 70061 ORDER BY pid")),
             lines({"70011|2", "70021|3", "70031|2", "70041|4", "70051|5", "70061|NULL"}));

    // Every terminal of the branch that is not off, whatever it takes.
    QCOMPARE(terminalsOf(uids.at(0)), lines({"2", "3"}));
    QCOMPARE(terminalsOf(uids.at(1)), lines({"4"}));
    QCOMPARE(terminalsOf(uids.at(2)), lines({"2", "3"}));
    QCOMPARE(terminalsOf(uids.at(3)), lines({"6"}));
    QCOMPARE(terminalsOf(uids.at(4)), lines({"7"}));
    QCOMPARE(administratorsOf(uids.at(0)), lines({"2|0"}));
    QCOMPARE(administratorsOf(uids.at(1)), lines({"3|0"}));
    QCOMPARE(administratorsOf(uids.at(2)), lines({"2|0"}));
    QCOMPARE(administratorsOf(uids.at(3)), lines({"2|0"}));
    QCOMPARE(administratorsOf(uids.at(4)), lines({"4|0"}));

    const auto added = [](int tid, const QString &uid) {
        return QStringLiteral("%1|I|people_term|uid|%2|2").arg(tid).arg(uid);
    };
    QStringList queued = queue();
    queued.sort(); // the branches come in no order
    QStringList expected {added(2, uids.at(0)), added(2, uids.at(2)), added(3, uids.at(0)),
                          added(3, uids.at(2)), added(4, uids.at(1)), added(6, uids.at(3)),
                          added(7, uids.at(4))};
    expected.sort();
    QCOMPARE(queued, expected);
    // Only terminals in service are marked.
    QCOMPARE(markedTerminals(), lines({"2|2", "3|2", "4|2", "6|2"}));
}

void tst_BranchPass::newPerson_logOfThePass()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    f.peer.branchesRepo->logLevel = 1; // as init() would have taken it over
    f.writeExport({record().pid(7101, 1).branch(100).line()});
    f.tick();
    const QString uid = uidOf(71011);
    QCOMPARE(
        f.log.takeMatching({QStringLiteral("BranchesRepository"), QStringLiteral("synchronization"),
                            QStringLiteral("dbAddPerson"), QStringLiteral("warning "),
                            QStringLiteral("critical ")}),
        (QStringList {
            QStringLiteral("debug THRWorker: BEGIN synchronization #1 (force: NO)"),
            QStringLiteral("debug THRWorker::dbAddPerson(7101.1  Ján Novák  (T: ) "
                           "N-V: 1 Mar 2015 -  TPP: 11  K: 0  DOV: 0, S: 100)"),
            QStringLiteral("debug THRWorker::dbAddPersonIntoPam(pid: 71011, pamSettingsID: 1)"),
            QStringLiteral("info BranchesRepository::addPeopleToBranch(1, '%1')").arg(uid),
            QStringLiteral("info BranchesRepository::slotAddedPeopleToBranch(1, '%1')").arg(uid),
            QStringLiteral("info BranchesRepository::getTids4Branch(1)"),
            QStringLiteral("info BranchesRepository::getAids4Branch(1)"),
            QStringLiteral("debug THRWorker: END synchronization #1 (waiting records: 0)")}));
}

void tst_BranchPass::newPerson_inTwoLinesJoinsOnce()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(7201, 1).branch(100).line(),
                   record().pid(7201, 1).branch(100).balance(2).line()});
    f.tick();
    const QString uid = uidOf(72011);
    QCOMPARE(branchesOf(uid), lines({"1"}));
    QCOMPARE(terminalsOf(uid), lines({"1"}));
    QCOMPARE(queue(), QStringList {QStringLiteral("1|I|people_term|uid|%1|2").arg(uid)});
    // The second line finds his row in PaM as it would write it, which counts as a failure.
    QCOMPARE(f.log.takeMessages(),
             lines({"warning THRWorker::doSyncRecord(7201.1 Novák Ján (S: 100, K: 0 from ) "
                    "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 2 NOC: 0) - "
                    "dbAddPersonIntoPam(72011, 1) FAILED!"}));
}

void tst_BranchPass::changedPeople_areNewsForTheirTerminals()
{
    DatabaseWorker f(*database);
    f.peer.branches.clear();
    const qint64 begin = std::time(nullptr);
    // On terminals 2, 3; on 2, 3 and one that takes no persons; on 4 and one that is off; on one
    // that is being set up; on none.
    f.writeExport({record().pid(1005, 1).branch(200).line(),
                   record().pid(1007, 1).branch(200).line(),
                   record().pid(1003, 1).branch(210).line(),
                   record().pid(1010, 1).branch(400).line(), record().pid(1013, 1).line()});
    f.tick();
    QCOMPARE(queue(),
             lines({"2|U|people|uid|5|2", "3|U|people|uid|5|2", "2|U|people|uid|7|2",
                    "3|U|people|uid|7|2", "4|U|people|uid|3|2"}));
    QCOMPARE(database->value(
                 QStringLiteral("SELECT COUNT(*) FROM term_sync WHERE created<%1").arg(begin)),
             QStringLiteral("0"));
    QCOMPARE(markedTerminals(), lines({"2|2", "3|2", "4|2"}));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_BranchPass::member_isNotAddedAgain()
{
    const QString members = QStringLiteral("SELECT * FROM brape WHERE uid=8");
    const QStringList before = database->rows(members);
    QCOMPARE(before.size(), 1);
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1008, 1).branch(400).calendar(0).line()});
    f.tick();
    QCOMPARE(database->rows(members), before);
    QCOMPARE(queue(), QStringList()); // his one terminal is not in service
    QVERIFY(f.peer.branchPeople.isEmpty());
    // Nothing was needed, which counts as a failure.
    QCOMPARE(f.peer.waitingRecords.size(), 1);
    f.log.clear();
}

void tst_BranchPass::movingPerson_joinsTheNewBranchToo()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1004, 1).branch(210).line()});
    f.tick();
    QCOMPARE(branchesOf(QStringLiteral("4")), lines({"1", "3"}));
    QCOMPARE(database->value(QStringLiteral("SELECT bid FROM people WHERE uid=4")),
             QStringLiteral("3"));
    QCOMPARE(terminalsOf(QStringLiteral("4")), lines({"1", "4"}));
    // The supervisor whom he had stays one.
    QCOMPARE(administratorsOf(QStringLiteral("4")), lines({"1|1", "3|0"}));
    // The update comes at once, while he is on the old terminal alone; joining comes at the end.
    QCOMPARE(queue(), lines({"1|U|people|uid|4|2", "4|I|people_term|uid|4|2"}));
    QCOMPARE(markedTerminals(), lines({"1|2", "4|2"}));
    f.log.clear();
}

// Calendars

void tst_BranchPass::calendar_isPlannedFromItsMonth()
{
    const QString now = month(firstOfThisMonth());
    database->execute(
        QStringLiteral("REPLACE INTO atten (uid, `date`, ok) VALUES (2, %1, 1), (2, %2, 1)")
            .arg(seconds(firstOfPreviousMonth()), seconds(today())));
    database->execute(QStringLiteral("REPLACE INTO groups_month (uid, month, gid) VALUES "
                                     "(2, %1, 22)")
                          .arg(month(firstOfPreviousMonth())));
    database->execute(
        QStringLiteral("DELETE FROM groups_month WHERE uid=2 AND month>=%1").arg(now));
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1002, 1).branch(200).calendar(3, today()).line()});
    f.tick();
    QCOMPARE(plansOf(QStringLiteral("2")),
             (QStringList {QStringLiteral("201202|22"), now + QStringLiteral("|23")}));
    // The months before it stay as they were.
    QCOMPARE(database->rows(QStringLiteral("SELECT month, gid FROM groups_month WHERE uid=2 AND "
                                           "month>=%1 ORDER BY month")
                                .arg(month(firstOfPreviousMonth()))),
             (QStringList {month(firstOfPreviousMonth()) + QStringLiteral("|22"),
                           now + QStringLiteral("|23")}));
    QVERIFY(f.peer.waitingRecords.isEmpty());
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_BranchPass::calendar_replacesThePlanOfTheMonth()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    const RecordBuilder employee = record().pid(7301, 1).branch(200);
    f.writeExport({RecordBuilder(employee).calendar(1, QDate(2023, 10, 2)).line()});
    f.tick();
    const QString uid = uidOf(73011);
    QCOMPARE(plansOf(uid), lines({"202310|21"}));
    // The day does not count.
    f.writeExport({RecordBuilder(employee).calendar(1, QDate(2023, 10, 31)).line()});
    f.tick();
    QCOMPARE(plansOf(uid), lines({"202310|21"}));
    f.writeExport({RecordBuilder(employee).calendar(2, QDate(2023, 10, 31)).line()});
    f.tick();
    QCOMPARE(plansOf(uid), lines({"202310|22"}));
    f.writeExport({RecordBuilder(employee).calendar(2, QDate(2023, 11, 1)).line()});
    f.tick();
    QCOMPARE(plansOf(uid), lines({"202310|22", "202311|22"}));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_BranchPass::calendar_ofThePastReopensAttendance()
{
    // Before the days that a changed calendar reopens anyway.
    const QDate since = firstOfPreviousMonth().addDays(-10);
    database->execute(
        QStringLiteral("REPLACE INTO atten (uid, `date`, `lock`, man, ok) VALUES (6, %1, 0, 0, 1), "
                       "(6, %2, 0, 0, 1), (6, %3, 1, 0, 1), (6, %4, 0, 1, 1), (6, %5, 0, 0, 1)")
            .arg(seconds(since.addDays(-1)), seconds(since), seconds(since.addDays(1)),
                 seconds(since.addDays(2)), seconds(since.addDays(3))));
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1006, 1).branch(210).calendar(2, since).line()});
    f.tick();
    QCOMPARE(database->rows(QStringLiteral("SELECT ok FROM atten WHERE uid=6 AND `date` BETWEEN "
                                           "%1 AND %2 ORDER BY `date`")
                                .arg(seconds(since.addDays(-1)), seconds(since.addDays(3)))),
             lines({"1", "-1", "1", "1", "-1"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, calc FROM people WHERE uid=6")),
             QStringList {seconds(since.addDays(-1)) + QStringLiteral("|0")});
    QCOMPARE(plansOf(QStringLiteral("6")),
             (QStringList {QStringLiteral("201901|23"), month(since) + QStringLiteral("|22")}));
    QCOMPARE(database->rows(QStringLiteral("SELECT DISTINCT gid FROM groups_month WHERE uid=6 AND "
                                           "month>=%1")
                                .arg(month(since))),
             lines({"22"}));
    f.log.clear();
}

void tst_BranchPass::calendar_thatIsPlannedReopensNothing()
{
    const QDate since(2016, 10, 5);
    const QString early = seconds(firstOfPreviousMonth().addDays(-10));
    database->execute(
        QStringLiteral("REPLACE INTO atten (uid, `date`, `lock`, man, ok) VALUES (1, %1, 0, 0, 1)")
            .arg(early));
    database->execute(
        QStringLiteral("INSERT INTO groups_plan (uid, since, gid) VALUES (1, 201610, 11)"));
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1001, 1).branch(100).calendar(1, since).line()});
    f.tick();
    // Reopened from the previous month on, because the date is new to the worker, and no earlier.
    QCOMPARE(database->value(
                 QStringLiteral("SELECT ok FROM atten WHERE uid=1 AND `date`=%1").arg(early)),
             QStringLiteral("1"));
    QCOMPARE(database->value(QStringLiteral("SELECT lastCalc FROM people WHERE uid=1")),
             seconds(firstOfPreviousMonth().addDays(-1)));
    QCOMPARE(plansOf(QStringLiteral("1")), lines({"200909|11", "201610|11"}));
    QVERIFY(f.peer.waitingRecords.isEmpty());
    f.log.clear();
}

void tst_BranchPass::calendar_withoutADateIsPlannedForAllTime()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(7401, 1).branch(400).calendar(1).line()});
    f.tick();
    const QString uid = uidOf(74011);
    QCOMPARE(plansOf(uid), lines({"0|31"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM groups_month WHERE uid=%1").arg(uid)),
             QStringList());
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_BranchPass::calendar_withoutAGroupLeavesTheMembership()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(7501, 1).branch(400).calendar(2, QDate(2023, 10, 2)).line()});
    f.tick();
    const QString uid = uidOf(75011);
    QCOMPARE(f.log.takeMessages(),
             lines({"warning THRWorker: Group ID NOT found for Branch 400 and calendar 2 "
                    "[employee: '7501.1 Novák Ján (S: 400, K: 2 from 2 Oct 2023) "
                    "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0']!"}));
    QCOMPARE(branchesOf(uid), lines({"5"}));
    QCOMPARE(plansOf(uid), QStringList());
    QVERIFY(f.peer.waitingRecords.isEmpty());
}

// Waiting

void tst_BranchPass::unknownBranch_waitsUntilItAppears()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setLogLevel(1);
    f.writeExport({record().pid(7601, 1).branch(500).calendar(2, today()).line()});
    const QStringList outcome = lines({"NOT FOUND", "END synchronization", "critical "});
    for (const int pass : {1, 2}) {
        f.tick();
        QCOMPARE(f.log.takeMatching(outcome),
                 (QStringList {
                     QStringLiteral("warning THRWorker: Branch '500' NOT FOUND for employee: "
                                    "'7601.1 Novák Ján (S: 500, K: 2 from %1) N-V: 1 Mar 2015 - ; "
                                    "ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0'")
                         .arg(QLocale::system().toString(today(), QLocale::ShortFormat)),
                     QStringLiteral("debug THRWorker: END synchronization #%1 (waiting records: 1)")
                         .arg(pass)}));
    }
    const QString uid = uidOf(76011);
    QCOMPARE(branchesOf(uid), QStringList());
    QCOMPARE(plansOf(uid), QStringList());

    database->execute(
        QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES (50, 500, 2)"));
    database->execute(QStringLiteral("INSERT INTO term (tid, bid, status, flags) VALUES "
                                     "(50, 50, 1, 2), (51, 50, 0, 2)"));
    database->execute(QStringLiteral("INSERT INTO bradm (bid, aid) VALUES (50, 1), (50, 5)"));
    f.tick();
    QCOMPARE(f.log.takeMatching(outcome),
             lines({"debug THRWorker: END synchronization #3 (waiting records: 0)"}));
    QCOMPARE(branchesOf(uid), lines({"50"}));
    QCOMPARE(terminalsOf(uid), lines({"50"}));
    QCOMPARE(administratorsOf(uid), lines({"1|0", "5|0"}));
    QCOMPARE(plansOf(uid), QStringList {month(today()) + QStringLiteral("|22")});
    QCOMPARE(queue(), QStringList {QStringLiteral("50|I|people_term|uid|%1|2").arg(uid)});
    QCOMPARE(markedTerminals(), lines({"50|2"}));
    // The row itself was written while the branch was unknown, and nothing in the file has changed.
    QCOMPARE(database->value(QStringLiteral("SELECT bid FROM people WHERE uid=%1").arg(uid)),
             QStringLiteral("NULL"));
    f.log.clear();
}

void tst_BranchPass::secondPass_writesNothing()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport(
        {exportHeader(), record().pid(7701, 1).branch(200).calendar(2, QDate(2023, 10, 2)).line(),
         record().pid(7702, 1).branch(210).line(), record().pid(7703, 1).branch(501).line(),
         record().pid(7704, 1).branch(400).calendar(3).line(),
         record().pid(1009, 1).calendar(1, today()).line()});
    f.tick();
    QCOMPARE(branchesOf(uidOf(77011)), lines({"2"}));
    for (int pass = 2; pass <= 3; ++pass) {
        const QStringList before = writesSoFar();
        QCOMPARE(before.size(), 7);
        f.tick();
        QCOMPARE(f.peer.syncCount, static_cast<uint>(pass));
        QCOMPARE(writesSoFar(), before);
    }
    // The one of the unknown branch is asked for each time, and the log has no other line of it.
    QCOMPARE(f.log.takeMessages().filter(QStringLiteral("Branch '501' NOT FOUND")).size(), 3);
}

void tst_BranchPass::testMode_stillAssigns()
{
    const QStringList members = database->rows(QStringLiteral("SELECT COUNT(*) FROM brape"));
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    f.writeExport({record().pid(1008, 2).branch(210).calendar(3, firstOfThisMonth()).line(),
                   record().pid(7801, 1).branch(100).calendar(1, firstOfThisMonth()).line()});
    f.tick();
    // No row of the person is changed but the mark of the calculation.
    QCOMPARE(database->rows(QStringLiteral("SELECT name, bid, calendarID FROM people WHERE uid=9")),
             lines({"Kateřina|1|0"}));
    QCOMPARE(branchesOf(QStringLiteral("9")), lines({"1", "3"}));
    QCOMPARE(terminalsOf(QStringLiteral("9")), lines({"1", "4"}));
    QCOMPARE(plansOf(QStringLiteral("9")),
             QStringList {month(firstOfThisMonth()) + QStringLiteral("|23")});
    QCOMPARE(queue(), lines({"4|I|people_term|uid|9|2"})); // no news of an update
    // The new one was not added: he is nobody, and lands nowhere.
    QCOMPARE(uidOf(78011), QString());
    QCOMPARE(f.log.takeMessages(),
             QStringList {
                 QStringLiteral("warning THRWorker: can't add record '7801.1 Novák Ján (S: 100, "
                                "K: 1 from %1) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                                "DOV: 0 NOC: 0' into [groups_plan]!")
                     .arg(QLocale::system().toString(firstOfThisMonth(), QLocale::ShortFormat))});
    QCOMPARE(branchesOf(QStringLiteral("0")), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT COUNT(*) - 1 FROM brape")), members);
}

// Failures

void tst_BranchPass::hiddenBranches_leaveAllWaiting()
{
    // Only for dbLoadBranches(): the people are loaded from the table as well.
    DatabaseWorker f(*database);
    f.peer.branches.insert(100, 1);
    f.peer.importedRecords = {record().pid(7901, 1).branch(100), record().pid(7902, 1)};
    {
        const HiddenTable hidden(*database, "branches");
        f.worker.doSync();
    }
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbLoadBranches() - SQL ERROR [1146]: Table "
                    "'attendance.branches' doesn't exist QMYSQL: Unable to execute query",
                    "warning THRWorker: Branch '100' NOT FOUND for employee: '7901.1 Novák Ján "
                    "(S: 100, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 "
                    "NOC: 0'"}));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT pid, bid FROM people WHERE pid IN (79011, 79021) "
                                      "ORDER BY pid")),
        lines({"79011|NULL", "79021|NULL"}));
    QCOMPARE(f.peer.waitingRecords.size(), 1);
}

void tst_BranchPass::hiddenMemberships_areTakenAsNone()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(8001, 1).branch(100).line()});
    {
        const HiddenTable hidden(*database, "brape");
        f.tick();
    }
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbCheckPersonInBranch() - SQL ERROR [1146]: Table "
                    "'attendance.brape' doesn't exist QMYSQL: Unable to execute query",
                    "critical BranchesRepository::addPeopleToBranch - ERROR: Table "
                    "'attendance.brape' doesn't exist QMYSQL: Unable to execute query"}));
    // He was queued, which counts; nothing follows from a membership that failed.
    QVERIFY(f.peer.waitingRecords.isEmpty());
    QVERIFY(f.peer.branchPeople.isEmpty());
    QCOMPARE(terminalsOf(uidOf(80011)), QStringList());
    QCOMPARE(administratorsOf(uidOf(80011)), QStringList());
}

void tst_BranchPass::hiddenTerminals_stopNoAdministrator()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(8101, 1).branch(200).line()});
    {
        const HiddenTable hidden(*database, "people_term");
        f.tick();
    }
    // Once for each terminal of the branch.
    const QString refused = QStringLiteral(
        "critical BranchesRepository::AddPeopleToTerm - ERROR: Table 'attendance.people_term' "
        "doesn't exist QMYSQL: Unable to execute query");
    QCOMPARE(f.log.takeMessages(),
             (QStringList {refused, refused,
                           QStringLiteral("warning BranchesRepository::slotAddedPeopleToBranch() - "
                                          "AddPeopleToTerms() FAILED!")}));
    QCOMPARE(branchesOf(uidOf(81011)), lines({"2"}));
    QCOMPARE(administratorsOf(uidOf(81011)), lines({"2|0"}));
    QCOMPARE(queue(), QStringList());
    QCOMPARE(markedTerminals(), QStringList());
}

void tst_BranchPass::hiddenQueue_keepsTheUpdate()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1011, 1).branch(210).phone(QStringLiteral("new")).line()});
    {
        const HiddenTable hidden(*database, "term_sync");
        f.tick();
    }
    QCOMPARE(f.log.takeMessages().filter(QStringLiteral("addTermSyncPerson")),
             lines({"critical THRWorker::addTermSyncPerson() ERROR: Table 'attendance.term_sync' "
                    "doesn't exist QMYSQL: Unable to execute query"}));
    QCOMPARE(database->value(QStringLiteral("SELECT phone FROM people WHERE uid=11")),
             QStringLiteral("new"));
    QCOMPARE(markedTerminals(), QStringList());
}

void tst_BranchPass::hiddenPlans_keepTheMembership()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(8201, 1).branch(100).calendar(1, QDate(2023, 10, 2)).line()});
    {
        const HiddenTable hidden(*database, "groups_plan");
        f.tick();
    }
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbCheckGroupsPlan() - SQL ERROR [1146]: Table "
                    "'attendance.groups_plan' doesn't exist QMYSQL: Unable to execute query",
                    "critical GroupsPlanRepo::add - ERROR[1146]: Table 'attendance.groups_plan' "
                    "doesn't exist QMYSQL: Unable to execute query",
                    "warning THRWorker: can't add record '8201.1 Novák Ján (S: 100, K: 1 from "
                    "2 Oct 2023) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0' "
                    "into [groups_plan]!"}));
    QCOMPARE(branchesOf(uidOf(82011)), lines({"1"}));
    QVERIFY(f.peer.waitingRecords.isEmpty());
}

QTEST_GUILESS_MAIN(tst_BranchPass)
#include "tst_branchpass.moc"
