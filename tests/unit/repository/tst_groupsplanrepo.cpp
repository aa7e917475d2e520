// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plan of work groups: statements, records, results and months.
#include "repository/groupsplanrepo.h"
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/repositoryfixture.h"
#include "support/testrows.h"

#include <QtTest>

namespace {

GroupsPlan plan(uint gid, uint uid, uint since)
{
    GroupsPlan result;
    result.gid = gid;
    result.uid = uid;
    result.since = since;
    return result;
}

using Fixture = RepositoryFixture<GroupsPlanRepo>;

const char notOpen[] = "warning QSqlQuery::exec: database not open";

const char insertPlan[]
    = "sql exec INSERT INTO groups_plan (gid, uid, since) VALUES(3, 11, 202310) "
      "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), since=VALUES(since);";
const char deletePlan[]
    = "sql exec DELETE FROM groups_plan WHERE gid = 3 AND uid = 11 AND since = 202310";
const char refresh[]
    = "sql exec INSERT INTO groups_month  (gid, uid, month) SELECT getCurrentGid(p.uid, "
      "monthFromTimestamp(a.date), p.gid) gid, a.uid, monthFromTimestamp(a.date) month  "
      "FROM atten a LEFT JOIN people p USING(uid) WHERE a.uid=11 AND monthFromTimestamp(a.date) >= 202310 "
      "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
      "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), month=VALUES(month);";
const char selectPlan[] = "sql exec SELECT gid FROM groups_plan WHERE uid = 11 AND since <= 202310 "
                          "ORDER BY since DESC LIMIT 1";
const char selectPerson[] = "sql exec SELECT gid FROM people WHERE uid = 11";

/// add() and del(), which differ in statement and name only.
struct Change
{
    const char *name;
    bool (GroupsPlanRepo::*run)(const GroupsPlan &);
    const char *statement;
    const char *call;
};

const QVector<Change> &changes()
{
    static const QVector<Change> all {
        {"add", &GroupsPlanRepo::add, insertPlan, "exec INSERT INTO groups_plan"},
        {"del", &GroupsPlanRepo::del, deletePlan, "exec DELETE FROM groups_plan"}};
    return all;
}

} // namespace

class tst_GroupsPlanRepo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void startValues();
    void change_refreshesTheMonths_data() { addRows(changes()); }
    void change_refreshesTheMonths();
    void change_entryRecord_data() { addRows(changes()); }
    void change_entryRecord();
    void change_withoutGroupOrPersonRunsNothing_data() { addRows(changes()); }
    void change_withoutGroupOrPersonRunsNothing();
    void change_withoutMonthRunsButDoesNotRefresh_data() { addRows(changes()); }
    void change_withoutMonthRunsButDoesNotRefresh();
    void change_withoutAutoUpdate_data() { addRows(changes()); }
    void change_withoutAutoUpdate();
    void change_noRowChanged_data() { addRows(changes()); }
    void change_noRowChanged();
    void change_failedRefreshIsNotLookedAt_data() { addRows(changes()); }
    void change_failedRefreshIsNotLookedAt();
    void change_sqlError_data() { addRows(changes()); }
    void change_sqlError();
    void change_errorBesideSuccessIsNotLookedAt_data() { addRows(changes()); }
    void change_errorBesideSuccessIsNotLookedAt();
    void change_closedConnection_data() { addRows(changes()); }
    void change_closedConnection();
    void change_greatestNumbers();
    void updateGroupsMonth_statement();
    void updateGroupsMonth_result_data();
    void updateGroupsMonth_result();
    void updateGroupsMonth_entryRecord();
    void updateGroupsMonth_withoutPersonOrMonthRunsNothing();
    void updateGroupsMonth_sqlError();
    void updateGroupsMonth_closedConnection();
    void getCurrentGid_rows_data();
    void getCurrentGid_rows();
    void getCurrentGid_month_data();
    void getCurrentGid_month();
    void getCurrentGid_withoutPersonRunsNothing();
    void getCurrentGid_hasNoEntryRecord();
    void getCurrentGid_planFails();
    void getCurrentGid_personFails();
    void getCurrentGid_closedConnection();
    void errorNumbers_data();
    void errorNumbers();
    void monthFromTime_localMonths();
    void monthFromTime_zero();
    void monthFromTime_greatest();
    void monthFromDate_months_data();
    void monthFromDate_months();
    void setDb_leavesThePreviousConnectionOpen();
};

void tst_GroupsPlanRepo::metaObject()
{
    const QMetaObject &meta = GroupsPlanRepo::staticMetaObject;
    QCOMPARE(meta.className(), "GroupsPlanRepo");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 0);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
}

void tst_GroupsPlanRepo::startValues()
{
    QObject parent;
    auto *repo = new GroupsPlanRepo(&parent);
    QCOMPARE(repo->parent(), &parent);
    QCOMPARE(repo->logLevel, quint8(0));
    const GroupsPlan empty;
    QCOMPARE(empty.gid, 0u);
    QCOMPARE(empty.uid, 0u);
    QCOMPARE(empty.since, 0u);
}

void tst_GroupsPlanRepo::change_refreshesTheMonths()
{
    const Change &change = currentRow(changes());
    for (const int affected : {1, 2}) {
        Fixture f;
        f.script.on(str(change.call)).withAffected(affected);
        QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
        QCOMPARE(f.log.take(), lines({change.statement, refresh}));
    }
}

void tst_GroupsPlanRepo::change_entryRecord()
{
    const Change &change = currentRow(changes());
    for (const int level : {0, 1, 2, 3}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        f.script.on(str(change.call)).withAffected(1);
        QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
        QCOMPARE(f.log.take(),
                 atLevel(level,
                         QStringList {
                             QStringLiteral("2 debug GroupsPlanRepo::%1(G: 3, U: 11, S: 202310)")
                                 .arg(str(change.name)),
                             str(change.statement),
                             str("2 debug GroupsPlanRepo::updateGroupsMonth(11, 202310)"),
                             str(refresh)}));
    }
}

void tst_GroupsPlanRepo::change_withoutGroupOrPersonRunsNothing()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    QVERIFY(!(f.repo.*change.run)(plan(0, 11, 202310)));
    QVERIFY(!(f.repo.*change.run)(plan(3, 0, 202310)));
    QCOMPARE(f.log.take(), QStringList());
    f.repo.logLevel = 2;
    QVERIFY(!(f.repo.*change.run)(plan(0, 0, 0)));
    QCOMPARE(
        f.log.take(),
        QStringList {
            QStringLiteral("debug GroupsPlanRepo::%1(G: 0, U: 0, S: 0)").arg(str(change.name))});
}

void tst_GroupsPlanRepo::change_withoutMonthRunsButDoesNotRefresh()
{
    const Change &change = currentRow(changes());
    const QString statement = str(change.statement).replace(str("202310"), str("0"));
    Fixture f;
    QVERIFY(!(f.repo.*change.run)(plan(3, 11, 0)));
    QCOMPARE(f.log.take(), QStringList {statement});
    f.repo.logLevel = 2;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    QVERIFY((f.repo.*change.run)(plan(3, 11, 0)));
    QCOMPARE(
        f.log.take(),
        (QStringList {
            QStringLiteral("debug GroupsPlanRepo::%1(G: 3, U: 11, S: 0)").arg(str(change.name)),
            statement, str("debug GroupsPlanRepo::updateGroupsMonth(11, 0)")}));
}

void tst_GroupsPlanRepo::change_withoutAutoUpdate()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    f.repo.setAutoUpdateMonth(false);
    QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(f.log.take(), lines({change.statement}));
    f.repo.setAutoUpdateMonth(true);
    QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(f.log.take(), lines({change.statement, refresh}));
}

void tst_GroupsPlanRepo::change_noRowChanged()
{
    const Change &change = currentRow(changes());
    for (const int affected : {0, -1}) {
        Fixture f;
        f.script.on(str(change.call)).withAffected(affected);
        QVERIFY(!(f.repo.*change.run)(plan(3, 11, 202310)));
        QCOMPARE(f.log.take(), lines({change.statement}));
    }
}

void tst_GroupsPlanRepo::change_failedRefreshIsNotLookedAt()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.script.on(str(change.call)).withAffected(1);
    f.script.on(QStringLiteral("groups_month"))
        .withError(QStringLiteral("1305"), QStringLiteral("no function"));
    QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(f.log.take(),
             lines({change.statement, refresh,
                    "critical GroupsPlanRepo::updateGroupsMonth - ERROR[1305]: "
                    "no function (scripted)"}));
}

void tst_GroupsPlanRepo::change_sqlError()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.script.on(str(change.call))
        .withAffected(1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax, väzba"));
    QVERIFY(!(f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(
        f.log.take(),
        (QStringList {
            str(change.statement),
            QStringLiteral("critical GroupsPlanRepo::%1 - ERROR[1064]: syntax, väzba (scripted)")
                .arg(str(change.name))}));
}

void tst_GroupsPlanRepo::change_errorBesideSuccessIsNotLookedAt()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.script.on(QStringLiteral("exec"))
        .withAffected(1)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QVERIFY((f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(f.log.take(), lines({change.statement, refresh}));
}

void tst_GroupsPlanRepo::change_closedConnection()
{
    const Change &change = currentRow(changes());
    Fixture f;
    f.close();
    QVERIFY(!(f.repo.*change.run)(plan(3, 11, 202310)));
    QCOMPARE(
        f.log.take(),
        (QStringList {
            str(notOpen),
            QStringLiteral("critical GroupsPlanRepo::%1 - ERROR[-1]: ").arg(str(change.name))}));
}

void tst_GroupsPlanRepo::change_greatestNumbers()
{
    Fixture f;
    f.repo.add(plan(4294967295u, 4294967294u, 4294967293u));
    f.repo.del(plan(4294967295u, 4294967294u, 4294967293u));
    QCOMPARE(
        f.log.take(),
        lines({"sql exec INSERT INTO groups_plan (gid, uid, since) VALUES(4294967295, 4294967294, "
               "4294967293) ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
               "since=VALUES(since);",
               "sql exec DELETE FROM groups_plan WHERE gid = 4294967295 AND uid = 4294967294 "
               "AND since = 4294967293"}));
}

void tst_GroupsPlanRepo::updateGroupsMonth_statement()
{
    Fixture f;
    f.repo.updateGroupsMonth(11, 202310);
    QCOMPARE(f.log.take(), lines({refresh}));
}

void tst_GroupsPlanRepo::updateGroupsMonth_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("result");
    QTest::newRow("unknown") << -1 << false;
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("five") << 5 << true;
}

void tst_GroupsPlanRepo::updateGroupsMonth_result()
{
    QFETCH(int, affected);
    QFETCH(bool, result);
    Fixture f;
    f.script.on(QStringLiteral("groups_month")).withAffected(affected);
    QCOMPARE(f.repo.updateGroupsMonth(11, 202310), result);
    QCOMPARE(f.log.take(), lines({refresh}));
}

void tst_GroupsPlanRepo::updateGroupsMonth_entryRecord()
{
    for (const int level : {0, 1, 2, 3}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        f.repo.updateGroupsMonth(11, 202310);
        QCOMPARE(
            f.log.take(),
            atLevel(level, {"2 debug GroupsPlanRepo::updateGroupsMonth(11, 202310)", refresh}));
    }
}

void tst_GroupsPlanRepo::updateGroupsMonth_withoutPersonOrMonthRunsNothing()
{
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    f.repo.logLevel = 2;
    QVERIFY(!f.repo.updateGroupsMonth(0, 202310));
    QVERIFY(!f.repo.updateGroupsMonth(11, 0));
    QCOMPARE(f.log.take(),
             lines({"debug GroupsPlanRepo::updateGroupsMonth(0, 202310)",
                    "debug GroupsPlanRepo::updateGroupsMonth(11, 0)"}));
}

void tst_GroupsPlanRepo::updateGroupsMonth_sqlError()
{
    Fixture f;
    f.script.on(QStringLiteral("groups_month"))
        .withAffected(1)
        .withError(QStringLiteral("1146"), QStringLiteral("no table"));
    QVERIFY(!f.repo.updateGroupsMonth(11, 202310));
    QCOMPARE(f.log.take(),
             lines({refresh,
                    "critical GroupsPlanRepo::updateGroupsMonth - ERROR[1146]: "
                    "no table (scripted)"}));
}

void tst_GroupsPlanRepo::updateGroupsMonth_closedConnection()
{
    Fixture f;
    f.close();
    QVERIFY(!f.repo.updateGroupsMonth(11, 202310));
    QCOMPARE(f.log.take(),
             lines({notOpen, "critical GroupsPlanRepo::updateGroupsMonth - ERROR[-1]: "}));
}

void tst_GroupsPlanRepo::getCurrentGid_rows_data()
{
    // An invalid value stands for no row.
    QTest::addColumn<QVariant>("planned");
    QTest::addColumn<QVariant>("own");
    QTest::addColumn<bool>("fallback");
    QTest::addColumn<bool>("asksPerson");
    QTest::addColumn<uint>("gid");
    QTest::newRow("planned") << QVariant(4) << QVariant(9) << true << false << 4u;
    QTest::newRow("planned, no fallback") << QVariant(4) << QVariant(9) << false << false << 4u;
    QTest::newRow("no plan") << QVariant() << QVariant(9) << true << true << 9u;
    QTest::newRow("no plan, no fallback") << QVariant() << QVariant(9) << false << false << 0u;
    QTest::newRow("group 0") << QVariant(0) << QVariant(9) << true << true << 9u;
    QTest::newRow("group 0, no fallback") << QVariant(0) << QVariant(9) << false << false << 0u;
    QTest::newRow("no plan, no person") << QVariant() << QVariant() << true << true << 0u;
    QTest::newRow("no plan, person without group")
        << QVariant() << QVariant(QVariant::UInt) << true << true << 0u;
    QTest::newRow("greatest") << QVariant(4294967295u) << QVariant() << true << false
                              << 4294967295u;
}

void tst_GroupsPlanRepo::getCurrentGid_rows()
{
    QFETCH(QVariant, planned);
    QFETCH(QVariant, own);
    QFETCH(bool, fallback);
    QFETCH(bool, asksPerson);
    QFETCH(uint, gid);
    const QStringList columns = lines({"gid"});
    QVector<QVariantList> plans;
    if (planned.isValid())
        plans.append({planned});
    QVector<QVariantList> persons;
    if (own.isValid())
        persons.append({own});
    Fixture f;
    f.script.on(QStringLiteral("FROM groups_plan")).withRows(columns, plans);
    f.script.on(QStringLiteral("FROM people")).withRows(columns, persons);
    QCOMPARE(f.repo.getCurrentGid(11, 202310, fallback), gid);
    QStringList expected = lines({selectPlan});
    if (asksPerson)
        expected.append(str(selectPerson));
    QCOMPARE(f.log.take(), expected);
}

void tst_GroupsPlanRepo::getCurrentGid_month_data()
{
    QTest::addColumn<uint>("month");
    QTest::addColumn<QString>("condition");
    QTest::newRow("0") << 0u << str("DATE_FORMAT(NOW(), '%Y%m')");
    QTest::newRow("1") << 1u << str("1");
    QTest::newRow("202305") << 202305u << str("202305");
    QTest::newRow("greatest") << 4294967295u << str("4294967295");
}

void tst_GroupsPlanRepo::getCurrentGid_month()
{
    QFETCH(uint, month);
    QFETCH(QString, condition);
    Fixture f;
    QCOMPARE(f.repo.getCurrentGid(4294967295u, month, false), 0u);
    QCOMPARE(f.log.take(),
             QStringList {str("sql exec SELECT gid FROM groups_plan WHERE uid = 4294967295 "
                              "AND since <= ")
                          + condition + str(" ORDER BY since DESC LIMIT 1")});
}

void tst_GroupsPlanRepo::getCurrentGid_withoutPersonRunsNothing()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT")).withRows(lines({"gid"}), {{4}});
    QCOMPARE(f.repo.getCurrentGid(0, 202310, true), 0u);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_GroupsPlanRepo::getCurrentGid_hasNoEntryRecord()
{
    Fixture f;
    f.repo.logLevel = 3;
    f.repo.getCurrentGid(11, 202310, true);
    QCOMPARE(f.log.take(), lines({selectPlan, selectPerson}));
}

void tst_GroupsPlanRepo::getCurrentGid_planFails()
{
    Fixture f;
    f.script.on(QStringLiteral("FROM groups_plan"))
        .withError(QStringLiteral("1146"), QStringLiteral("no table"));
    f.script.on(QStringLiteral("FROM people")).withRows(lines({"gid"}), {{9}});
    // The person is not asked.
    QCOMPARE(f.repo.getCurrentGid(11, 202310, true), 0u);
    QCOMPARE(f.log.take(),
             lines({selectPlan,
                    "critical GroupsPlanRepo::getCurrentGid [groups_plan] - ERROR[1146]: "
                    "no table (scripted)"}));
}

void tst_GroupsPlanRepo::getCurrentGid_personFails()
{
    Fixture f;
    f.script.on(QStringLiteral("FROM people"))
        .withError(QStringLiteral("1142"), QStringLiteral("denied"));
    QCOMPARE(f.repo.getCurrentGid(11, 202310, true), 0u);
    QCOMPARE(f.log.take(),
             lines({selectPlan, selectPerson,
                    "critical GroupsPlanRepo::getCurrentGid [people] - ERROR[1142]: "
                    "denied (scripted)"}));
}

void tst_GroupsPlanRepo::getCurrentGid_closedConnection()
{
    Fixture f;
    f.close();
    QCOMPARE(f.repo.getCurrentGid(11, 202310, true), 0u);
    QCOMPARE(
        f.log.take(),
        lines({notOpen, "critical GroupsPlanRepo::getCurrentGid [groups_plan] - ERROR[-1]: "}));
}

void tst_GroupsPlanRepo::errorNumbers_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("line");
    QTest::newRow("number") << str("1064")
                            << str("critical GroupsPlanRepo::add - ERROR[1064]: text (scripted)");
    QTest::newRow("none") << QString()
                          << str("critical GroupsPlanRepo::add - ERROR[-1]: text (scripted)");
    QTest::newRow("no number") << str("HY000")
                               << str("critical GroupsPlanRepo::add - ERROR[0]: text (scripted)");
}

void tst_GroupsPlanRepo::errorNumbers()
{
    QFETCH(QString, code);
    QFETCH(QString, line);
    Fixture f;
    f.script.on(QStringLiteral("exec")).withError(code, QStringLiteral("text"));
    QVERIFY(!f.repo.add(plan(3, 11, 202310)));
    QCOMPARE(f.log.takeMessages(), QStringList {line});
}

void tst_GroupsPlanRepo::monthFromTime_localMonths()
{
    const qint64 october = localSeconds(QDate(2023, 10, 1));
    const qint64 november = localSeconds(QDate(2023, 11, 1));
    const qint64 year = localSeconds(QDate(2024, 1, 1));
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(october - 1)), 202309u);
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(october)), 202310u);
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(november - 1)), 202310u);
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(november)), 202311u);
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(year - 1)), 202312u);
    QCOMPARE(GroupsPlanRepo::monthFromTime(static_cast<uint>(year)), 202401u);
}

void tst_GroupsPlanRepo::monthFromTime_zero()
{
    // West of Greenwich the epoch begins on the eve of the year.
    const uint expected = localDay(0).year() == 1969 ? 196912u : 197001u;
    QCOMPARE(GroupsPlanRepo::monthFromTime(0), expected);
}

void tst_GroupsPlanRepo::monthFromTime_greatest()
{
    // The seventh of February 2106, wherever that is.
    QCOMPARE(GroupsPlanRepo::monthFromTime(4294967295u), 210602u);
}

void tst_GroupsPlanRepo::monthFromDate_months_data()
{
    QTest::addColumn<QDate>("date");
    QTest::addColumn<uint>("month");
    QTest::newRow("null") << QDate() << 0u;
    QTest::newRow("no such day") << QDate(2023, 2, 29) << 0u;
    QTest::newRow("first day") << QDate(2023, 1, 1) << 202301u;
    QTest::newRow("last day") << QDate(2023, 12, 31) << 202312u;
    QTest::newRow("leap day") << QDate(2024, 2, 29) << 202402u;
    QTest::newRow("early") << QDate(987, 6, 5) << 98706u;
}

void tst_GroupsPlanRepo::monthFromDate_months()
{
    QFETCH(QDate, date);
    QFETCH(uint, month);
    QCOMPARE(GroupsPlanRepo::monthFromDate(date), month);
}

void tst_GroupsPlanRepo::setDb_leavesThePreviousConnectionOpen()
{
    Fixture f;
    f.repo.setDb(f.script.handle());
    QVERIFY(f.db.isOpen());
    QVERIFY(!f.repo.add(plan(3, 11, 202310)));
    QCOMPARE(f.log.take(), lines({notOpen, "critical GroupsPlanRepo::add - ERROR[-1]: "}));
}

QTEST_GUILESS_MAIN(tst_GroupsPlanRepo)
#include "tst_groupsplanrepo.moc"
