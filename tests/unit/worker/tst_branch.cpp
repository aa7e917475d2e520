// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branch and calendar of an employee: statements, log lines and what is queued for the pass's end.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

// Each step of an assignment; the branch of all of them is bid 70, the group gid 11.

QString askingUid(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid);
}

QString askingMember(uint pid)
{
    return QStringLiteral("sql exec SELECT COUNT(*) FROM brape WHERE bid = 70 AND "
                          "uid = (SELECT uid FROM people WHERE pid = %1 LIMIT 1);")
        .arg(pid);
}

QString askingGroup(uint calendar)
{
    return QStringLiteral("sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON "
                          "mg.mgid = b.mgid LEFT JOIN groups g ON g.parent = mg.mgid "
                          "WHERE bid = 70 AND g.calendarID = %1 LIMIT 1;")
        .arg(calendar);
}

QString askingPlan(uint uid, uint since)
{
    return QStringLiteral("sql exec SELECT COUNT(*) FROM groups_plan WHERE gid = 11 AND uid = %1 "
                          "AND since = %2;")
        .arg(uid)
        .arg(since);
}

QString addingPlan(uint uid, uint since)
{
    return QStringLiteral("sql exec INSERT INTO groups_plan (gid, uid, since) VALUES(11, %1, %2) "
                          "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                          "since=VALUES(since);")
        .arg(uid)
        .arg(since);
}

QString refreshingMonths(uint uid, uint since)
{
    return QStringLiteral(
               "sql exec INSERT INTO groups_month  (gid, uid, month) SELECT getCurrentGid(p.uid, "
               "monthFromTimestamp(a.date), p.gid) gid, a.uid, monthFromTimestamp(a.date) month  "
               "FROM atten a LEFT JOIN people p USING(uid) WHERE a.uid=%1 AND "
               "monthFromTimestamp(a.date) >= %2 GROUP BY monthFromTimestamp(a.date) "
               "HAVING gid IS NOT NULL ON DUPLICATE KEY UPDATE gid=VALUES(gid), "
               "uid=VALUES(uid), month=VALUES(month);")
        .arg(uid)
        .arg(since);
}

QStringList reopening(uint uid, const QString &from, const QString &dayBefore)
{
    return {QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                           "`date` >= %1 AND uid =%2")
                .arg(from)
                .arg(uid),
            QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE "
                           "lastCalc > %1 AND uid=%2")
                .arg(dayBefore)
                .arg(uid)};
}

/// A worker that knows branch 7 as bid 70, and an employee of it whom no other test has asked for:
/// found uids last as long as the process. The uid is 51; he is no member, and nothing is planned.
class Assignment : public WorkerFixture
{
public:
    Assignment() :
        number(++lastNumber),
        pid(number * 10 + 1)
    {
        init();
        peer.branches.insert(7, 70);
        answer("exec SELECT uid FROM people", 51);
        answer("SELECT gid FROM branches", 11);
        script.on(QStringLiteral("INSERT INTO groups_plan")).withAffected(1);
    }

    RecordBuilder employee() const { return record().pid(number, 1).branch(7); }

    /// The employee as a message states him, with branch and calendar as given.
    QString text(const char *assignment) const
    {
        return QStringLiteral("%1.1 Novák Ján (%2) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                              "DOV: 0 NOC: 0")
            .arg(QString::number(number), QString::fromLatin1(assignment));
    }
    QString noGroup(const char *assignment) const
    {
        return QStringLiteral("warning THRWorker: Group ID NOT found for Branch 7 and calendar 3 "
                              "[employee: '%1']!")
            .arg(text(assignment));
    }
    QString noPlan(const char *assignment) const
    {
        return QStringLiteral("warning THRWorker: can't add record '%1' into [groups_plan]!")
            .arg(text(assignment));
    }

    void member() { answer("SELECT COUNT(*) FROM brape", 1); }
    void noUid() { script.on(QStringLiteral("exec SELECT uid FROM people")); }

    const uint number;
    const uint pid;

private:
    static uint lastNumber;
};

uint Assignment::lastNumber = 6000;

void addCounts()
{
    QTest::addColumn<QVector<QVariantList>>("rows");
    QTest::addColumn<bool>("answer");
    QTest::newRow("no row") << QVector<QVariantList>() << false;
    QTest::newRow("0") << QVector<QVariantList> {{0}} << false;
    QTest::newRow("NULL") << QVector<QVariantList> {{QVariant()}} << false;
    QTest::newRow("1") << QVector<QVariantList> {{1}} << true;
    QTest::newRow("2") << QVector<QVariantList> {{2}} << true;
    QTest::newRow("only the first row") << QVector<QVariantList> {{0}, {1}} << false;
}

} // namespace

class tst_Branch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dbLoadBranches_levels_data() { addLevels(); }
    void dbLoadBranches_levels();
    void dbLoadBranches_fillsTheMapAnew();
    void dbLoadBranches_laterRowOfANumberWins();
    void dbLoadBranches_readsUnsignedNumbers_data();
    void dbLoadBranches_readsUnsignedNumbers();
    void dbLoadBranches_noBranchIsFalse();
    void dbLoadBranches_failureLeavesNoBranch();

    void dbCheckPersonInBranch_levels_data() { addLevels(); }
    void dbCheckPersonInBranch_levels();
    void dbCheckPersonInBranch_answers_data() { addCounts(); }
    void dbCheckPersonInBranch_answers();
    void dbCheckPersonInBranch_failure();
    void getGroupIdByCalendar_levels_data() { addLevels(); }
    void getGroupIdByCalendar_levels();
    void getGroupIdByCalendar_answers_data();
    void getGroupIdByCalendar_answers();
    void getGroupIdByCalendar_failure();
    void dbCheckGroupsPlan_levels_data() { addLevels(); }
    void dbCheckGroupsPlan_levels();
    void dbCheckGroupsPlan_answers_data() { addCounts(); }
    void dbCheckGroupsPlan_answers();
    void dbCheckGroupsPlan_failure();

    void doSyncBranchAndCalendar_levels_data() { addLevels(); }
    void doSyncBranchAndCalendar_levels();
    void doSyncBranchAndCalendar_everyStepInOrder();
    void doSyncBranchAndCalendar_unknownBranch_data();
    void doSyncBranchAndCalendar_unknownBranch();
    void doSyncBranchAndCalendar_memberWithoutCalendar();
    void doSyncBranchAndCalendar_newcomerWithoutCalendar();
    void doSyncBranchAndCalendar_queuesInOrder();
    void doSyncBranchAndCalendar_queuesTheSamePersonTwice();
    void doSyncBranchAndCalendar_noGroup_data();
    void doSyncBranchAndCalendar_noGroup();
    void doSyncBranchAndCalendar_planExists_data() { doSyncBranchAndCalendar_noGroup_data(); }
    void doSyncBranchAndCalendar_planExists();
    void doSyncBranchAndCalendar_sinceIsTheMonth_data();
    void doSyncBranchAndCalendar_sinceIsTheMonth();
    void doSyncBranchAndCalendar_onlyThePastIsRecalculated_data();
    void doSyncBranchAndCalendar_onlyThePastIsRecalculated();
    void doSyncBranchAndCalendar_calendarWithoutADate();
    void doSyncBranchAndCalendar_refusedPlan_data() { doSyncBranchAndCalendar_noGroup_data(); }
    void doSyncBranchAndCalendar_refusedPlan();
    void doSyncBranchAndCalendar_failedPlan();
    void doSyncBranchAndCalendar_failedMembershipIsTakenAsNo();
    void doSyncBranchAndCalendar_failedGroupIsNone();
    void doSyncBranchAndCalendar_failedPlanQuestionIsTakenAsNo();
    void doSyncBranchAndCalendar_failedRecalculationIsNotLookedAt_data();
    void doSyncBranchAndCalendar_failedRecalculationIsNotLookedAt();
    void doSyncBranchAndCalendar_personWithoutUid();
    void doSyncBranchAndCalendar_writesInTestMode();
    void doSyncBranchAndCalendar_asksForAUidOnce();
};

// The branches of a pass

void tst_Branch::dbLoadBranches_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbLoadBranches();
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbLoadBranches()",
                      "sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;"}));
}

void tst_Branch::dbLoadBranches_fillsTheMapAnew()
{
    WorkerFixture f;
    f.peer.branches.insert(9, 90);
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}, {80, 8}});
    QVERIFY(f.worker.dbLoadBranches());
    QCOMPARE(f.peer.branches, (QHash<uint, uint> {{7, 70}, {8, 80}}));
}

void tst_Branch::dbLoadBranches_laterRowOfANumberWins()
{
    WorkerFixture f;
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}, {80, 8}, {71, 7}});
    QVERIFY(f.worker.dbLoadBranches());
    QCOMPARE(f.peer.branches, (QHash<uint, uint> {{7, 71}, {8, 80}}));
}

void tst_Branch::dbLoadBranches_readsUnsignedNumbers_data()
{
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<uint>("key");
    QTest::newRow("text") << QVariant(QStringLiteral("300")) << 300u;
    QTest::newRow("largest") << QVariant(4294967295u) << 4294967295u;
    QTest::newRow("no number") << QVariant(QStringLiteral("HQ-1")) << 0u;
    QTest::newRow("empty") << QVariant(QString()) << 0u;
    QTest::newRow("0") << QVariant(0) << 0u;
}

void tst_Branch::dbLoadBranches_readsUnsignedNumbers()
{
    QFETCH(QVariant, number);
    QFETCH(uint, key);
    WorkerFixture f;
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{4294967294u, number}});
    QVERIFY(f.worker.dbLoadBranches()); // an entry is an entry, also under 0
    QCOMPARE(f.peer.branches, (QHash<uint, uint> {{key, 4294967294u}}));
}

void tst_Branch::dbLoadBranches_noBranchIsFalse()
{
    WorkerFixture f;
    f.peer.branches.insert(9, 90);
    QVERIFY(!f.worker.dbLoadBranches());
    QVERIFY(f.peer.branches.isEmpty());
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Branch::dbLoadBranches_failureLeavesNoBranch()
{
    WorkerFixture f;
    f.peer.branches.insert(9, 90);
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}})
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
    QVERIFY(!f.worker.dbLoadBranches());
    QVERIFY(f.peer.branches.isEmpty());
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;",
                    "critical THRWorker::dbLoadBranches() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
}

// The three questions

void tst_Branch::dbCheckPersonInBranch_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbCheckPersonInBranch(4294967295u, 4294967294u);
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            {"2 debug THRWorker::dbCheckPersonInBranch(4294967295, 4294967294)",
             "sql exec SELECT COUNT(*) FROM brape WHERE bid = 4294967294 AND uid = (SELECT uid FROM "
             "people WHERE pid = 4294967295 LIMIT 1);"}));
}

void tst_Branch::dbCheckPersonInBranch_answers()
{
    QFETCH(QVector<QVariantList>, rows);
    QFETCH(bool, answer);
    WorkerFixture f;
    f.script.on(QStringLiteral("FROM brape")).withRows({QStringLiteral("COUNT(*)")}, rows);
    QCOMPARE(f.worker.dbCheckPersonInBranch(12341, 70), answer);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Branch::dbCheckPersonInBranch_failure()
{
    WorkerFixture f;
    f.script.on(QStringLiteral("FROM brape"))
        .withRows({QStringLiteral("COUNT(*)")}, {{1}})
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
    QVERIFY(!f.worker.dbCheckPersonInBranch(12341, 70));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbCheckPersonInBranch() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
}

void tst_Branch::getGroupIdByCalendar_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.getGroupIdByCalendar(4294967295u, 4294967294u);
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            {"2 debug THRWorker::getGroupIdByCalendar(B: 4294967295, C: 4294967294)",
             "sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON mg.mgid = b.mgid "
             "LEFT JOIN groups g ON g.parent = mg.mgid WHERE bid = 4294967295 AND "
             "g.calendarID = 4294967294 LIMIT 1;"}));
}

void tst_Branch::getGroupIdByCalendar_answers_data()
{
    QTest::addColumn<QVector<QVariantList>>("rows");
    QTest::addColumn<uint>("gid");
    QTest::newRow("no row") << QVector<QVariantList>() << 0u;
    QTest::newRow("NULL") << QVector<QVariantList> {{QVariant()}} << 0u;
    QTest::newRow("one") << QVector<QVariantList> {{11}} << 11u;
    QTest::newRow("largest") << QVector<QVariantList> {{4294967295u}} << 4294967295u;
    QTest::newRow("only the first row") << QVector<QVariantList> {{11}, {12}} << 11u;
}

void tst_Branch::getGroupIdByCalendar_answers()
{
    QFETCH(QVector<QVariantList>, rows);
    QFETCH(uint, gid);
    WorkerFixture f;
    f.script.on(QStringLiteral("SELECT gid")).withRows({QStringLiteral("gid")}, rows);
    QCOMPARE(f.worker.getGroupIdByCalendar(70, 3), gid);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Branch::getGroupIdByCalendar_failure()
{
    WorkerFixture f;
    f.script.on(QStringLiteral("SELECT gid"))
        .withRows({QStringLiteral("gid")}, {{11}})
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
    QCOMPARE(f.worker.getGroupIdByCalendar(70, 3), 0u);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::getGroupIdByCalendar() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
}

void tst_Branch::dbCheckGroupsPlan_levels()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.dbCheckGroupsPlan(4294967295u, 4294967294u, 202310);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckGroupsPlan(4294967295, 4294967294, 202310)",
                      "sql exec SELECT COUNT(*) FROM groups_plan WHERE "
                      "gid = 4294967295 AND uid = 4294967294 AND since = 202310;"}));
}

void tst_Branch::dbCheckGroupsPlan_answers()
{
    QFETCH(QVector<QVariantList>, rows);
    QFETCH(bool, answer);
    WorkerFixture f;
    f.script.on(QStringLiteral("FROM groups_plan")).withRows({QStringLiteral("COUNT(*)")}, rows);
    QCOMPARE(f.worker.dbCheckGroupsPlan(11, 51, 202310), answer);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Branch::dbCheckGroupsPlan_failure()
{
    WorkerFixture f;
    f.script.on(QStringLiteral("FROM groups_plan"))
        .withRows({QStringLiteral("COUNT(*)")}, {{1}})
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
    QVERIFY(!f.worker.dbCheckGroupsPlan(11, 51, 202310));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::dbCheckGroupsPlan() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
}

// One employee

void tst_Branch::doSyncBranchAndCalendar_levels()
{
    QFETCH(int, level);
    Assignment f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.doSyncBranchAndCalendar(f.employee());
    const QStringList messages = f.log.takeMessages();
    QCOMPARE(messages.filter(QStringLiteral("doSyncBranchAndCalendar")),
             atLevel(level,
                     QStringList {QStringLiteral("3 debug THRWorker::doSyncBranchAndCalendar(%1.1)")
                                      .arg(f.number)}));
}

void tst_Branch::doSyncBranchAndCalendar_everyStepInOrder()
{
    Assignment f;
    f.worker.setLogLevel(3);
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    QCOMPARE(
        f.log.take(),
        (QStringList {
             QStringLiteral("debug THRWorker::doSyncBranchAndCalendar(%1.1)").arg(f.number),
             QStringLiteral("debug THRWorker::dbGetUidByPid(%1)").arg(f.pid), askingUid(f.pid),
             QStringLiteral("debug THRWorker::dbCheckPersonInBranch(%1, 70)").arg(f.pid),
             askingMember(f.pid),
             QStringLiteral("debug THRWorker::getGroupIdByCalendar(B: 70, C: 3)"), askingGroup(3),
             QStringLiteral("debug THRWorker::dbCheckGroupsPlan(11, 51, 202310)"),
             askingPlan(51, 202310), addingPlan(51, 202310), refreshingMonths(51, 202310),
             QStringLiteral("debug THRWorker::dbChangeLastCalc(51, 2 Oct 2023)")}
         + reopening(51, seconds(QDate(2023, 10, 2)), seconds(QDate(2023, 10, 1)))));
    // No row of the membership is written yet.
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_unknownBranch_data()
{
    QTest::addColumn<uint>("number");
    QTest::newRow("not in the map") << 8u;
    QTest::newRow("of no bid") << 9u;
    QTest::newRow("largest") << 4294967295u;
}

void tst_Branch::doSyncBranchAndCalendar_unknownBranch()
{
    QFETCH(uint, number);
    Assignment f;
    f.peer.branches.insert(9, 0);
    QVERIFY(!f.worker.doSyncBranchAndCalendar(
        f.employee().branch(number).calendar(3, QDate(2023, 10, 2))));
    const QByteArray assignment = "S: " + QByteArray::number(number) + ", K: 3 from 2 Oct 2023";
    QCOMPARE(
        f.log.take(),
        QStringList {
            QStringLiteral("warning THRWorker: Branch '%1' NOT FOUND for employee: ").arg(number)
            + QLatin1Char('\'') + f.text(assignment) + QLatin1Char('\'')});
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_Branch::doSyncBranchAndCalendar_memberWithoutCalendar()
{
    Assignment f;
    f.member();
    QVERIFY(!f.worker.doSyncBranchAndCalendar(f.employee().calendar(0, QDate(2023, 10, 2))));
    QCOMPARE(f.log.take(), (QStringList {askingUid(f.pid), askingMember(f.pid)}));
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_Branch::doSyncBranchAndCalendar_newcomerWithoutCalendar()
{
    Assignment f;
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    QCOMPARE(f.log.take(), (QStringList {askingUid(f.pid), askingMember(f.pid)}));
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_queuesInOrder()
{
    Assignment f;
    f.peer.branches.insert(8, 80);
    f.peer.branchPeople.insert(70, lines({"9"}));
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    f.answer("exec SELECT uid FROM people", 4294967295u);
    QVERIFY(f.worker.doSyncBranchAndCalendar(record().pid(5999, 1).branch(7)));
    QVERIFY(f.worker.doSyncBranchAndCalendar(record().pid(5999, 1).branch(8)));
    QCOMPARE(f.peer.branchPeople,
             (QHash<uint, QStringList> {{70, lines({"9", "51", "4294967295"})},
                                        {80, lines({"4294967295"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_queuesTheSamePersonTwice()
{
    Assignment f;
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51", "51"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_noGroup_data()
{
    QTest::addColumn<bool>("member");
    QTest::newRow("newcomer") << false;
    QTest::newRow("member") << true;
}

void tst_Branch::doSyncBranchAndCalendar_noGroup()
{
    QFETCH(bool, member);
    Assignment f;
    f.script.on(QStringLiteral("SELECT gid FROM branches"));
    if (member)
        f.member();
    // Being queued is enough; the membership stays.
    QCOMPARE(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))),
             !member);
    QCOMPARE(f.log.take(),
             (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3),
                           f.noGroup("S: 7, K: 3 from 2 Oct 2023")}));
    QCOMPARE(f.peer.branchPeople.value(70), member ? QStringList() : lines({"51"}));
}

void tst_Branch::doSyncBranchAndCalendar_planExists()
{
    QFETCH(bool, member);
    Assignment f;
    f.answer("SELECT COUNT(*) FROM groups_plan", 1);
    if (member)
        f.member();
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    // Nothing to recalculate, though the date has passed.
    QCOMPARE(f.log.take(),
             (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3),
                           askingPlan(51, 202310)}));
    QCOMPARE(f.peer.branchPeople.value(70), member ? QStringList() : lines({"51"}));
}

void tst_Branch::doSyncBranchAndCalendar_sinceIsTheMonth_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<uint>("since");
    QTest::newRow("first") << QDate(2023, 10, 1) << 202310u;
    QTest::newRow("second") << QDate(2023, 10, 2) << 202310u;
    QTest::newRow("last") << QDate(2023, 10, 31) << 202310u;
    QTest::newRow("January") << QDate(2024, 1, 1) << 202401u;
    QTest::newRow("far") << QDate(9999, 12, 31) << 999912u;
}

void tst_Branch::doSyncBranchAndCalendar_sinceIsTheMonth()
{
    QFETCH(QDate, date);
    QFETCH(uint, since);
    Assignment f;
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, date)));
    QCOMPARE(
        f.log.take().mid(3, 3),
        (QStringList {askingPlan(51, since), addingPlan(51, since), refreshingMonths(51, since)}));
}

void tst_Branch::doSyncBranchAndCalendar_onlyThePastIsRecalculated_data()
{
    QTest::addColumn<int>("days"); // from today
    QTest::addColumn<bool>("reopened");
    QTest::newRow("yesterday") << -1 << true;
    QTest::newRow("today") << 0 << false;
    QTest::newRow("tomorrow") << 1 << false;
}

void tst_Branch::doSyncBranchAndCalendar_onlyThePastIsRecalculated()
{
    QFETCH(int, days);
    QFETCH(bool, reopened);
    Assignment f;
    const QDate date = today().addDays(days);
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, date)));
    QCOMPARE(f.log.take().mid(6),
             reopened ? reopening(51, seconds(date), seconds(date.addDays(-1))) : QStringList());
}

void tst_Branch::doSyncBranchAndCalendar_calendarWithoutADate()
{
    Assignment f;
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3)));
    // A plan without a month, which refreshes none, and a date before every other one: for Qt the
    // midnight of no date is that of the first day of 1970, and the day before it is none either.
    const QString beginning = seconds(QDate(1970, 1, 1));
    QCOMPARE(f.log.take(),
             (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3), askingPlan(51, 0),
                           addingPlan(51, 0)}
              + reopening(51, beginning, beginning)));
}

void tst_Branch::doSyncBranchAndCalendar_refusedPlan()
{
    QFETCH(bool, member);
    Assignment f;
    f.script.on(QStringLiteral("INSERT INTO groups_plan")).withAffected(0);
    if (member)
        f.member();
    QCOMPARE(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))),
             !member);
    QCOMPARE(
        f.log.take(),
        (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3), askingPlan(51, 202310),
                      addingPlan(51, 202310), f.noPlan("S: 7, K: 3 from 2 Oct 2023")}));
    QCOMPARE(f.peer.branchPeople.value(70), member ? QStringList() : lines({"51"}));
}

void tst_Branch::doSyncBranchAndCalendar_failedPlan()
{
    Assignment f;
    f.member();
    f.fail("INSERT INTO groups_plan");
    QVERIFY(!f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    QCOMPARE(f.log.take().mid(4),
             (QStringList {
                 addingPlan(51, 202310),
                 QStringLiteral("critical GroupsPlanRepo::add - ERROR[1205]: lock wait (scripted)"),
                 f.noPlan("S: 7, K: 3 from 2 Oct 2023")}));
}

void tst_Branch::doSyncBranchAndCalendar_failedMembershipIsTakenAsNo()
{
    Assignment f;
    f.fail("FROM brape");
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    QCOMPARE(f.log.take(),
             (QStringList {askingUid(f.pid), askingMember(f.pid),
                           QStringLiteral("critical THRWorker::dbCheckPersonInBranch() - "
                                          "SQL ERROR [1205]: lock wait (scripted)")}));
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_failedGroupIsNone()
{
    Assignment f;
    f.member();
    f.fail("SELECT gid FROM branches");
    QVERIFY(!f.worker.doSyncBranchAndCalendar(f.employee().calendar(3)));
    QCOMPARE(f.log.take().mid(2),
             (QStringList {askingGroup(3),
                           QStringLiteral("critical THRWorker::getGroupIdByCalendar() - "
                                          "SQL ERROR [1205]: lock wait (scripted)"),
                           f.noGroup("S: 7, K: 3 from ")}));
}

void tst_Branch::doSyncBranchAndCalendar_failedPlanQuestionIsTakenAsNo()
{
    Assignment f;
    f.member();
    f.fail("SELECT COUNT(*) FROM groups_plan");
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, today())));
    const uint month = static_cast<uint>(today().year() * 100 + today().month());
    QCOMPARE(f.log.take().mid(3),
             (QStringList {askingPlan(51, month),
                           QStringLiteral("critical THRWorker::dbCheckGroupsPlan() - "
                                          "SQL ERROR [1205]: lock wait (scripted)"),
                           addingPlan(51, month), refreshingMonths(51, month)}));
}

void tst_Branch::doSyncBranchAndCalendar_failedRecalculationIsNotLookedAt_data()
{
    QTest::addColumn<QByteArray>("statement");
    QTest::newRow("attendance") << QByteArray("UPDATE atten");
    QTest::newRow("mark") << QByteArray("UPDATE people");
}

void tst_Branch::doSyncBranchAndCalendar_failedRecalculationIsNotLookedAt()
{
    QFETCH(QByteArray, statement);
    Assignment f;
    f.member();
    f.fail(statement.constData());
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    QCOMPARE(f.log.takeMessages(),
             QStringList {QStringLiteral("critical THRWorker::dbChangeLastCalc() [%1] - "
                                         "SQL ERROR [1205]: lock wait (scripted)")
                              .arg(QString::fromLatin1(statement))});
}

void tst_Branch::doSyncBranchAndCalendar_personWithoutUid()
{
    Assignment f;
    f.noUid();
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    // The plan of nobody is refused before its statement.
    QCOMPARE(f.log.take(),
             (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3),
                           askingPlan(0, 202310), f.noPlan("S: 7, K: 3 from 2 Oct 2023")}));
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"0"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_writesInTestMode()
{
    Assignment f;
    f.worker.setTestMode(true);
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee().calendar(3, QDate(2023, 10, 2))));
    QCOMPARE(
        f.log.take(),
        (QStringList {askingUid(f.pid), askingMember(f.pid), askingGroup(3), askingPlan(51, 202310),
                      addingPlan(51, 202310), refreshingMonths(51, 202310)}
         + reopening(51, seconds(QDate(2023, 10, 2)), seconds(QDate(2023, 10, 1)))));
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51"})}}));
}

void tst_Branch::doSyncBranchAndCalendar_asksForAUidOnce()
{
    Assignment f;
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    // The row has been made anew meanwhile; the membership is asked for by the pid each time.
    f.answer("exec SELECT uid FROM people", 52);
    f.log.clear();
    QVERIFY(f.worker.doSyncBranchAndCalendar(f.employee()));
    QCOMPARE(f.log.take(), QStringList {askingMember(f.pid)});
    QCOMPARE(f.peer.branchPeople, (QHash<uint, QStringList> {{70, lines({"51", "51"})}}));
}

QTEST_GUILESS_MAIN(tst_Branch)
#include "tst_branch.moc"
