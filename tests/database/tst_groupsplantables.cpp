// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plan of work groups on the server: rows, and the months that follow from plan and attendance.
#include "repository/groupsplanrepo.h"
#include "support/databasefixture.h"
#include "support/localseconds.h"

#include <QtTest>

#include <memory>

namespace {

GroupsPlan plan(uint gid, uint since, uint uid = 11)
{
    GroupsPlan result;
    result.gid = gid;
    result.uid = uid;
    result.since = since;
    return result;
}

} // namespace

class tst_GroupsPlanTables : public ConnectionFixture
{
    Q_OBJECT

private Q_SLOTS:
    void add_newRowRefreshesTheMonths();
    void add_sameRowIsNoSuccessAndRefreshesNothing();
    void add_replacesTheGroupOfTheSameMonth();
    void add_withoutMonthRefreshesNothing();
    void add_withoutGroupWritesNothing();
    void add_withoutAutoUpdate();
    void add_failedRefreshKeepsThePlan();
    void add_hiddenTable();
    void del_removesAndRefreshes();
    void del_missingRow();
    void del_withoutAutoUpdate();
    void updateGroupsMonth_oneRowForEachMonthOfAttendance();
    void updateGroupsMonth_fromTheMonthOn();
    void updateGroupsMonth_monthsAreLocal();
    void updateGroupsMonth_withoutAnyGroup();
    void updateGroupsMonth_unchanged();
    void updateGroupsMonth_otherPeopleAreLeftAlone();
    void getCurrentGid_latestPlanThatHasBegun_data();
    void getCurrentGid_latestPlanThatHasBegun();
    void getCurrentGid_fallback();
    void getCurrentGid_monthZeroIsTheServersMonth();
    void getCurrentGid_hiddenTables();

private:
    void begin() override;
    void end() override { repo.reset(); }
    void attend(const QDate &day, uint uid = 11);
    QStringList plans();
    QStringList months();

    std::unique_ptr<GroupsPlanRepo> repo;
};

void tst_GroupsPlanTables::begin()
{
    execute("INSERT INTO people (uid, gid) VALUES (11, 9), (12, NULL)");
    repo = std::make_unique<GroupsPlanRepo>(nullptr);
    repo->setDb(handle);
}

void tst_GroupsPlanTables::attend(const QDate &day, uint uid)
{
    database->execute(QStringLiteral("INSERT INTO atten (uid, `date`) VALUES (%1, %2)")
                          .arg(uid)
                          .arg(localSeconds(day)));
}

QStringList tst_GroupsPlanTables::plans()
{
    return rows("SELECT uid, since, gid FROM groups_plan ORDER BY uid, since");
}

QStringList tst_GroupsPlanTables::months()
{
    return rows("SELECT uid, month, gid FROM groups_month ORDER BY uid, month");
}

void tst_GroupsPlanTables::add_newRowRefreshesTheMonths()
{
    attend(QDate(2023, 9, 30));
    attend(QDate(2023, 10, 1));
    attend(QDate(2023, 10, 31));
    attend(QDate(2023, 12, 24));
    QVERIFY(repo->add(plan(3, 202310)));
    QCOMPARE(plans(), lines({"11|202310|3"}));
    QCOMPARE(months(), lines({"11|202310|3", "11|202312|3"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::add_sameRowIsNoSuccessAndRefreshesNothing()
{
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->add(plan(3, 202310)));
    execute("DELETE FROM groups_month");
    QVERIFY(!repo->add(plan(3, 202310)));
    QCOMPARE(plans(), lines({"11|202310|3"}));
    QCOMPARE(months(), QStringList());
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::add_replacesTheGroupOfTheSameMonth()
{
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->add(plan(3, 202310)));
    QVERIFY(repo->add(plan(4, 202310)));
    QCOMPARE(plans(), lines({"11|202310|4"}));
    QCOMPARE(months(), lines({"11|202310|4"}));
}

void tst_GroupsPlanTables::add_withoutMonthRefreshesNothing()
{
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->add(plan(3, 0)));
    QVERIFY(!repo->add(plan(3, 0)));
    QCOMPARE(plans(), lines({"11|0|3"}));
    QCOMPARE(months(), QStringList());
}

void tst_GroupsPlanTables::add_withoutGroupWritesNothing()
{
    QVERIFY(!repo->add(plan(0, 202310)));
    QVERIFY(!repo->add(plan(3, 202310, 0)));
    QCOMPARE(plans(), QStringList());
}

void tst_GroupsPlanTables::add_withoutAutoUpdate()
{
    attend(QDate(2023, 10, 1));
    repo->setAutoUpdateMonth(false);
    QVERIFY(repo->add(plan(3, 202310)));
    QCOMPARE(plans(), lines({"11|202310|3"}));
    QCOMPARE(months(), QStringList());
}

void tst_GroupsPlanTables::add_failedRefreshKeepsThePlan()
{
    database->hideTable(str("groups_month"));
    const bool written = repo->add(plan(3, 202310));
    database->showTable(str("groups_month"));
    QVERIFY(written);
    QCOMPARE(plans(), lines({"11|202310|3"}));
    QCOMPARE(log->take(),
             lines({"critical GroupsPlanRepo::updateGroupsMonth - ERROR[1146]: "
                    "Table 'attendance.groups_month' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_GroupsPlanTables::add_hiddenTable()
{
    database->hideTable(str("groups_plan"));
    const bool written = repo->add(plan(3, 202310));
    const bool removed = repo->del(plan(3, 202310));
    database->showTable(str("groups_plan"));
    QVERIFY(!written);
    QVERIFY(!removed);
    QCOMPARE(log->take(),
             lines({"critical GroupsPlanRepo::add - ERROR[1146]: Table 'attendance.groups_plan' "
                    "doesn't exist QMYSQL: Unable to execute query",
                    "critical GroupsPlanRepo::del - ERROR[1146]: Table 'attendance.groups_plan' "
                    "doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_GroupsPlanTables::del_removesAndRefreshes()
{
    attend(QDate(2023, 9, 1));
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->add(plan(3, 202309)));
    QVERIFY(repo->add(plan(4, 202310)));
    QCOMPARE(months(), lines({"11|202309|3", "11|202310|4"}));
    QVERIFY(repo->del(plan(4, 202310)));
    QCOMPARE(plans(), lines({"11|202309|3"}));
    QCOMPARE(months(), lines({"11|202309|3", "11|202310|3"}));
    QVERIFY(repo->del(plan(3, 202309)));
    // Without a plan, the person's own group.
    QCOMPARE(months(), lines({"11|202309|9", "11|202310|9"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::del_missingRow()
{
    attend(QDate(2023, 10, 1));
    repo->setAutoUpdateMonth(false);
    QVERIFY(repo->add(plan(3, 202310)));
    repo->setAutoUpdateMonth(true);
    QVERIFY(!repo->del(plan(4, 202310)));
    QVERIFY(!repo->del(plan(3, 202311)));
    QVERIFY(!repo->del(plan(3, 202310, 12)));
    QCOMPARE(plans(), lines({"11|202310|3"}));
    QCOMPARE(months(), QStringList());
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::del_withoutAutoUpdate()
{
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->add(plan(3, 202310)));
    repo->setAutoUpdateMonth(false);
    QVERIFY(repo->del(plan(3, 202310)));
    QCOMPARE(plans(), QStringList());
    QCOMPARE(months(), lines({"11|202310|3"}));
}

void tst_GroupsPlanTables::updateGroupsMonth_oneRowForEachMonthOfAttendance()
{
    repo->setAutoUpdateMonth(false);
    repo->add(plan(3, 202302));
    repo->add(plan(4, 202304));
    for (const int month : {1, 2, 3, 4, 6}) {
        attend(QDate(2023, month, 2));
        attend(QDate(2023, month, 20));
    }
    QVERIFY(repo->updateGroupsMonth(11, 202301));
    // January has no plan yet, May no attendance.
    QCOMPARE(months(),
             lines({"11|202301|9", "11|202302|3", "11|202303|3", "11|202304|4", "11|202306|4"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::updateGroupsMonth_fromTheMonthOn()
{
    attend(QDate(2022, 12, 31));
    attend(QDate(2023, 1, 1));
    attend(QDate(2023, 2, 1));
    QVERIFY(repo->updateGroupsMonth(11, 202301));
    QCOMPARE(months(), lines({"11|202301|9", "11|202302|9"}));
    QVERIFY(!repo->updateGroupsMonth(11, 202303));
    QVERIFY(!repo->updateGroupsMonth(11, 0));
    QVERIFY(!repo->updateGroupsMonth(0, 202301));
    QCOMPARE(months(), lines({"11|202301|9", "11|202302|9"}));
}

void tst_GroupsPlanTables::updateGroupsMonth_monthsAreLocal()
{
    // The last second of October and the first of November, and days beside a change of the clocks.
    const qint64 november = localSeconds(QDate(2023, 11, 1));
    for (const qint64 moment : {november - 1, november, localSeconds(QDate(2023, 3, 26)),
                                localSeconds(QDate(2024, 1, 1)) - 1}) {
        database->execute(
            QStringLiteral("INSERT INTO atten (uid, `date`) VALUES (11, %1)").arg(moment));
    }
    QVERIFY(repo->updateGroupsMonth(11, 202301));
    QCOMPARE(months(), lines({"11|202303|9", "11|202310|9", "11|202311|9", "11|202312|9"}));
    QCOMPARE(rows("SELECT monthFromTimestamp(`date`) FROM atten ORDER BY `date`"),
             (QStringList {QString::number(GroupsPlanRepo::monthFromDate(QDate(2023, 3, 26))),
                           QString::number(GroupsPlanRepo::monthFromTime(uint(november - 1))),
                           QString::number(GroupsPlanRepo::monthFromTime(uint(november))),
                           str("202312")}));
}

void tst_GroupsPlanTables::updateGroupsMonth_withoutAnyGroup()
{
    // Person 12 has no group of his own, and person 99 no row: HAVING leaves both out.
    attend(QDate(2023, 9, 1), 12);
    attend(QDate(2023, 10, 1), 12);
    attend(QDate(2023, 10, 1), 99);
    QVERIFY(!repo->updateGroupsMonth(12, 202301));
    QVERIFY(!repo->updateGroupsMonth(99, 202301));
    QCOMPARE(months(), QStringList());
    QVERIFY(repo->add(plan(3, 202310, 12)));
    QCOMPARE(months(), lines({"12|202310|3"}));
    QVERIFY(repo->updateGroupsMonth(12, 202310) == false);
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::updateGroupsMonth_unchanged()
{
    attend(QDate(2023, 10, 1));
    QVERIFY(repo->updateGroupsMonth(11, 202310));
    QVERIFY(!repo->updateGroupsMonth(11, 202310));
    QCOMPARE(months(), lines({"11|202310|9"}));
}

void tst_GroupsPlanTables::updateGroupsMonth_otherPeopleAreLeftAlone()
{
    execute("UPDATE people SET gid = 8 WHERE uid = 12");
    execute("INSERT INTO groups_month (uid, month, gid) VALUES (12, 202310, 1)");
    attend(QDate(2023, 10, 1));
    attend(QDate(2023, 10, 1), 12);
    QVERIFY(repo->updateGroupsMonth(11, 202310));
    QCOMPARE(months(), lines({"11|202310|9", "12|202310|1"}));
}

void tst_GroupsPlanTables::getCurrentGid_latestPlanThatHasBegun_data()
{
    QTest::addColumn<uint>("month");
    QTest::addColumn<uint>("gid");
    QTest::newRow("before the first") << 202212u << 0u;
    QTest::newRow("the first") << 202301u << 3u;
    QTest::newRow("between") << 202305u << 3u;
    QTest::newRow("the second") << 202306u << 4u;
    QTest::newRow("later") << 202401u << 4u;
}

void tst_GroupsPlanTables::getCurrentGid_latestPlanThatHasBegun()
{
    QFETCH(uint, month);
    QFETCH(uint, gid);
    repo->add(plan(4, 202306));
    repo->add(plan(3, 202301));
    repo->add(plan(5, 202305, 12));
    QCOMPARE(repo->getCurrentGid(11, month, false), gid);
    QCOMPARE(repo->getCurrentGid(11, month, true), gid == 0 ? 9u : gid);
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::getCurrentGid_fallback()
{
    repo->add(plan(3, 202306));
    // A plan of a later month only.
    QCOMPARE(repo->getCurrentGid(11, 202305, true), 9u);
    QCOMPARE(repo->getCurrentGid(11, 202305, false), 0u);
    // No group of his own; no such person; no person.
    QCOMPARE(repo->getCurrentGid(12, 202305, true), 0u);
    QCOMPARE(repo->getCurrentGid(99, 202305, true), 0u);
    QCOMPARE(repo->getCurrentGid(0, 202306, true), 0u);
    // A plan of group 0 is none.
    execute("INSERT INTO groups_plan (uid, since, gid) VALUES (11, 202307, 0)");
    QCOMPARE(repo->getCurrentGid(11, 202307, true), 9u);
    QCOMPARE(repo->getCurrentGid(11, 202307, false), 0u);
    QCOMPARE(log->take(), QStringList());
}

void tst_GroupsPlanTables::getCurrentGid_monthZeroIsTheServersMonth()
{
    repo->add(plan(3, 202309));
    repo->add(plan(4, 202310));
    const qint64 october = localSeconds(QDate(2023, 10, 1));
    setClock(october - 1);
    QCOMPARE(repo->getCurrentGid(11, 0, false), 3u);
    setClock(october);
    QCOMPARE(repo->getCurrentGid(11, 0, false), 4u);
}

void tst_GroupsPlanTables::getCurrentGid_hiddenTables()
{
    database->hideTable(str("groups_plan"));
    const uint noPlan = repo->getCurrentGid(11, 202310, true);
    database->showTable(str("groups_plan"));
    database->hideTable(str("people"));
    const uint noPeople = repo->getCurrentGid(11, 202310, true);
    database->showTable(str("people"));
    QCOMPARE(noPlan, 0u);
    QCOMPARE(noPeople, 0u);
    QCOMPARE(log->take(),
             lines({"critical GroupsPlanRepo::getCurrentGid [groups_plan] - ERROR[1146]: "
                    "Table 'attendance.groups_plan' doesn't exist QMYSQL: Unable to execute query",
                    "critical GroupsPlanRepo::getCurrentGid [people] - ERROR[1146]: "
                    "Table 'attendance.people' doesn't exist QMYSQL: Unable to execute query"}));
}

QTEST_GUILESS_MAIN(tst_GroupsPlanTables)
#include "tst_groupsplantables.moc"
