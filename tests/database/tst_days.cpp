// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company over several days: who is written when, and under whom.
#include "support/database/companydays.h"
#include "support/databasefixture.h"
#include "support/localseconds.h"

#include <QtTest>

namespace {

/// As update(), for a person who has an interval: "rsBegin=1, rsEnd=2, rsText='3'".
QString intervalUpdate(uint personalNumber, const char *phone, const QString &interval)
{
    // Without a new mark of the calculation there are two blanks before WHERE.
    return update(personalNumber, QString::fromLatin1(phone), QStringLiteral("NULL"), interval,
                  QStringLiteral("1"),
                  interval.contains(QLatin1String("lastCalc"))
                      ? QStringLiteral("calendarID=1, bid=1")
                      : QStringLiteral("calendarID=1, bid=1 "));
}

QString typeUpdate(uint personalNumber, const char *type)
{
    return update(personalNumber, QString(), QStringLiteral("NULL"),
                  QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText=''"), QString::fromLatin1(type),
                  QStringLiteral("calendarID=1, bid=1 "));
}

QString endUpdate(uint personalNumber, const char *phone, const QDate &last)
{
    return update(personalNumber, QString::fromLatin1(phone), lastSecond(last),
                  QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText=''"), QStringLiteral("1"),
                  QStringLiteral("calendarID=1, bid=1 "));
}

QString at(const QDate &day, const char *rest)
{
    return seconds(day) + QString::fromUtf8(rest);
}

} // namespace

class tst_Days : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_Days() :
        DatabaseFixture(QDateTime(QDate(2024, 5, 14), QTime(8, 0)))
    { }

private Q_SLOTS:
    void identicalPeople_areWrittenOnceAfterAStart();
    void supervisor_followsWhoIsNamed();
    void evidenceState_opensKeepsAndClosesIntervals();
    void lostFirstTick_isNotMadeUp();
    void lastDay_stillCounts();
};

void tst_Days::identicalPeople_areWrittenOnceAfterAStart()
{
    const QDate day(2024, 5, 14);
    const QDate may(2024, 5, 1);
    const QDate april(2024, 4, 1);
    const QString first = QStringLiteral("101");
    const QString agreement = QStringLiteral("102");
    CompanyDays company(*database, *clock);
    company.settle(101, 2101);
    company.settle(102, 2102);
    company.execute(QStringLiteral("UPDATE people SET type=4 WHERE uid=102"));
    company.execute(QStringLiteral("INSERT INTO groups_plan (uid, since, gid) "
                                   "VALUES (102, 202401, 11)"));
    company.execute(QStringLiteral("INSERT INTO funds_move (uid, fid, day, type, month, value) "
                                   "VALUES (101, 2, %1, 1, 202401, 2000), "
                                   "(102, 2, %1, 1, 202401, 1234)")
                        .arg(seconds(QDate(2024, 1, 1))));
    company.execute(QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, man, ok) VALUES "
                                   "(101, %1, 0, 0, 1), (101, %2, 0, 0, 1), (101, %3, 1, 0, 1), "
                                   "(101, %4, 0, 1, 1), (101, %5, 0, 0, 1), (102, %2, 0, 0, 1)")
                        .arg(seconds(april.addDays(-1)), seconds(april), seconds(april.addDays(1)),
                             seconds(april.addDays(2)), seconds(day.addDays(-1))));
    company.setTime(day);
    company.calculate();
    // The second one has a calendar with a date, a balance in line, and a type without supervisor.
    const QStringList file {
        record().pid(2101, 1).branch(100).calendar(1).balance(18).supervisor(9001).line(),
        record()
            .pid(2102, 1)
            .tpp(51)
            .branch(100)
            .calendar(1, QDate(2024, 1, 15))
            .balance(12.34)
            .supervisor(9001)
            .line()};

    company.restartWorker();
    QStringList expected = fundChecks(21011, 101);
    expected += phoneUpdate(2101, QString());
    expected += news(21011, first) + balanceRead(21011, may);
    expected += correction(101, -200, day);
    expected += adminAsked(9001);
    expected += uidAsked(21011);
    expected += markMoved(1, first) + membershipInPlace(21011, first) + reopening(first, april);
    expected += fundChecks(21021, 102);
    expected += typeUpdate(2102, "4");
    expected += news(21021, agreement) + balanceRead(21021, may);
    expected += uidAsked(21021);
    expected += membershipInPlace(21021, agreement, 202401) + reopening(agreement, april);
    QCOMPARE(company.pass(file), expected);

    const QString written = QStringLiteral("SELECT uid, edited, editor, lastCalc, calc, status, "
                                           "rsBegin FROM people ORDER BY uid");
    const QString now = QString::number(localSeconds(day, 8));
    const QString march = seconds(QDate(2024, 3, 31));
    QCOMPARE(company.rows(written),
             (QStringList {QStringLiteral("101|%1|0|%2|0|1|NULL").arg(now, march),
                           QStringLiteral("102|%1|0|%2|0|1|NULL").arg(now, march)}));
    QCOMPARE(company.rows(QStringLiteral("SELECT uid, `date`, ok FROM atten ORDER BY uid, `date`")),
             (QStringList {QStringLiteral("101|") + at(april.addDays(-1), "|1"),
                           QStringLiteral("101|") + at(april, "|-1"),
                           QStringLiteral("101|") + at(april.addDays(1), "|1"),
                           QStringLiteral("101|") + at(april.addDays(2), "|1"),
                           QStringLiteral("101|") + at(day.addDays(-1), "|-1"),
                           QStringLiteral("102|") + at(april, "|-1")}));
    const QString corrections = QStringLiteral(
        "SELECT uid, fid, day, month, value FROM funds_move WHERE type=3");
    const QStringList corrected {QStringLiteral("101|2|") + at(day, "|202405|-200")};
    QCOMPARE(company.rows(corrections), corrected);
    QCOMPARE(company.marks(first), lines({"1|1"}));
    QCOMPARE(company.marks(agreement), QStringList());
    QCOMPARE(company.takeQueue(), lines({"1|U|people|101", "1|U|people|102"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT tid, syn FROM term ORDER BY tid")),
             lines({"1|2", "2|0", "3|0"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM brape ORDER BY uid")),
             lines({"1|101|8", "1|102|8"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT uid, since, gid FROM groups_plan "
                                         "ORDER BY uid, since")),
             lines({"101|0|11", "102|0|11", "102|202401|11"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM groups_month")), QStringList());
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_pam")), QStringList());
    QCOMPARE(company.rows(QStringLiteral("SELECT value FROM vars "
                                         "WHERE name='exportPam.1.selPeople'")),
             lines({"77"}));

    company.calculate();
    company.setTime(day, QTime(9, 0));
    const QString all = QStringLiteral("SELECT * FROM people ORDER BY uid");
    const QStringList before = company.rows(all);
    QCOMPARE(company.pass(file), (fundChecks(21011, 101) + fundChecks(21021, 102)));
    QCOMPARE(company.rows(all), before);

    // The first one's correction is of today; the second one's balance is read.
    company.force();
    expected = fundChecks(21011, 101) + membershipInPlace(21011, first) + fundChecks(21021, 102)
        + balanceRead(21021, may) + membershipInPlace(21021, agreement, 202401)
        + reopening(agreement, april);
    QCOMPARE(company.pass(file), expected);
    const QString force = QStringLiteral("SELECT value FROM vars "
                                         "WHERE name='OQS.THRWorker.forceSync'");
    QCOMPARE(company.rows(force), lines({"0"}));
    QCOMPARE(company.rows(all).at(0), before.at(0));
    QCOMPARE(company.rows(written).at(1), QStringLiteral("102|%1|0|%2|0|1|NULL").arg(now, march));
    QCOMPARE(company.takeQueue(), QStringList());

    // On another day both are.
    company.setTime(day.addDays(1));
    company.calculate();
    company.force();
    expected = fundChecks(21011, 101) + balanceRead(21011, may) + membershipInPlace(21011, first)
        + fundChecks(21021, 102) + balanceRead(21021, may)
        + membershipInPlace(21021, agreement, 202401) + reopening(agreement, april);
    QCOMPARE(company.pass(file), expected);
    QCOMPARE(company.rows(force), lines({"0"}));
    QCOMPARE(company.rows(corrections), corrected);
    QCOMPARE(company.marks(first), lines({"1|1"}));
}

void tst_Days::supervisor_followsWhoIsNamed()
{
    const QString uid = QStringLiteral("501");
    QDate day(2024, 5, 14);
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.settle(501, 2501);
    const RecordBuilder employee = record().pid(2501, 1).branch(100).calendar(1);
    const QStringList member = membershipInPlace(25011, uid);
    const auto passOfTheDay = [&](uint supervisor, ushort tpp) {
        company.setTime(day);
        day = day.addDays(1);
        return company.pass({RecordBuilder(employee).supervisor(supervisor).tpp(tpp).line()});
    };
    const auto lookedFor = [](uint number, uint aid) {
        return QStringList {
            QStringLiteral("debug THRWorker::processNadOsCis(2501.1, NOC: %1)").arg(number),
            adminAsked(number),
            QStringLiteral("debug THRWorker::dbGetAidByOsCis(uid: %1): %2").arg(number).arg(aid)};
    };
    const auto moved = [&](uint aid, int reset, int set) {
        const QString told = QStringLiteral(
            "debug THRWorker::%1(aid: %2, uid: 501) - affected: %3");
        QStringList events = markMoved(aid, uid);
        events.insert(3, told.arg(QStringLiteral("dbSetAdminPeopleRequest")).arg(aid).arg(set));
        events.insert(2, told.arg(QStringLiteral("dbResetAdminPeopleRequest")).arg(aid).arg(reset));
        return events;
    };
    const auto updated = [&](uint tpp, const char *type) {
        return QStringList {
                   QStringLiteral("debug THRWorker::dbUpdatePerson(2501.1  Ján Novák  (T: ) N-V: "
                                  "1 Mar 2015 -  TPP: %1  K: 1  DOV: 0, S: 100)")
                       .arg(tpp),
                   typeUpdate(2501, type)}
        + news(25011, uid);
    };

    company.setTime(day);
    company.restartWorker(1);
    QStringList expected = updated(11, "1") + lookedFor(9001, 1);
    expected += uidAsked(25011);
    expected += moved(1, 0, 1) + member;
    QCOMPARE(passOfTheDay(9001, 11), expected);
    QCOMPARE(company.marks(uid), lines({"1|1"}));

    QCOMPARE(passOfTheDay(9002, 11), (lookedFor(9002, 2) + moved(2, 1, 1) + member));
    QCOMPARE(company.marks(uid), lines({"1|0", "2|1"}));
    // Nobody is named: the old one stays, and counts as new when he is named again.
    QCOMPARE(passOfTheDay(0, 11), member);
    QCOMPARE(company.marks(uid), lines({"1|0", "2|1"}));
    QCOMPARE(passOfTheDay(9002, 11), (lookedFor(9002, 2) + moved(2, 0, 0) + member));
    QCOMPARE(company.marks(uid), lines({"1|0", "2|1"}));
    QCOMPARE(passOfTheDay(9001, 11), (lookedFor(9001, 1) + moved(1, 1, 2) + member));
    QCOMPARE(company.marks(uid), lines({"1|1", "2|0"}));

    // An unknown one is looked for once.
    expected = lookedFor(9999, 0);
    expected += QStringLiteral("warning THRWorker - admin s osobnym cislom 9999 nebol najdeny!");
    QCOMPARE(passOfTheDay(9999, 11), (expected + member));
    QCOMPARE(passOfTheDay(9999, 11), QStringList());
    QCOMPARE(company.marks(uid), lines({"1|1", "2|0"}));

    // With another type it is not looked at, and a change of that time is never made up.
    QCOMPARE(passOfTheDay(9002, 51), (updated(51, "4") + member));
    QCOMPARE(passOfTheDay(9002, 11), (updated(11, "1") + member));
    QCOMPARE(company.marks(uid), lines({"1|1", "2|0"}));

    // The mark of somebody else goes as well.
    company.execute(QStringLiteral("INSERT INTO admins_people VALUES (3, 501, 1)"));
    QCOMPARE(passOfTheDay(9001, 65),
             (updated(65, "1") + lookedFor(9001, 1) + moved(1, 1, 0) + member));
    QCOMPARE(company.marks(uid), lines({"1|1", "2|0", "3|0"}));
    QVERIFY(company.worker->peer.fundRetry.isEmpty());
}

void tst_Days::evidenceState_opensKeepsAndClosesIntervals()
{
    const QString uid = QStringLiteral("801");
    const auto may = [](int day) { return QDate(2024, 5, day); };
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.settle(801, 2801);
    const auto passOf = [&](const QDate &day, ushort state, const char *phone) {
        company.setTime(day);
        return company.pass({record()
                                 .pid(2801, 1)
                                 .branch(100)
                                 .calendar(1)
                                 .es(state)
                                 .phone(QString::fromLatin1(phone))
                                 .line()});
    };
    const auto written = [&](const char *phone, const QString &interval) {
        return QStringList {intervalUpdate(2801, phone, interval)} + news(28011, uid)
            + membershipInPlace(28011, uid);
    };
    const QString row = QStringLiteral("rsBegin, rsEnd, rsText, lastCalc");
    const QString opened = QStringLiteral("rsBegin=%1, rsEnd=NULL, rsText='materská'");
    const QString calculated = QStringLiteral(", lastCalc=%1");

    company.setTime(may(14));
    company.calculate();
    company.restartWorker();
    QStringList expected {phoneUpdate(2801, QString())};
    expected += news(28011, uid);
    expected += uidAsked(28011);
    expected += membershipInPlace(28011, uid);
    QCOMPARE(passOf(may(14), 0, ""), expected);
    QCOMPARE(company.personRow(row, uid),
             QStringList {QStringLiteral("NULL|NULL||") + seconds(may(13))});

    // It opens on the day on which it comes, which has to be calculated.
    company.setTime(may(18));
    company.calculate();
    QCOMPARE(passOf(may(15), 21, ""),
             written("", opened.arg(seconds(may(15))) + calculated.arg(seconds(may(14)))));
    const QStringList running {at(may(15), "|NULL|materská|") + seconds(may(14))};
    QCOMPARE(company.personRow(row, uid), running);
    QCOMPARE(passOf(may(15), 21, "1"), written("1", opened.arg(seconds(may(15)))));
    QCOMPARE(passOf(may(16), 21, "1"), QStringList());
    QCOMPARE(passOf(may(17), 21, "2"), written("2", opened.arg(seconds(may(15)))));
    QCOMPARE(company.personRow(row, uid), running);

    // Another state in the same interval: calculated anew from its begin.
    company.setTime(may(20));
    company.calculate();
    const QString other = QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='rodičovská'");
    QCOMPARE(passOf(may(20), 22, "2"),
             written("2",
                     other.arg(seconds(may(15)), QStringLiteral("NULL"))
                         + calculated.arg(seconds(may(14)))));
    QCOMPARE(company.personRow(row, uid),
             QStringList {at(may(15), "|NULL|rodičovská|") + seconds(may(14))});

    // It closes on the day on which the end is noticed, keeps its text, and stays closed.
    company.setTime(may(22));
    company.calculate();
    const QString closed = other.arg(seconds(may(15)), seconds(may(23)));
    QCOMPARE(passOf(may(23), 0, "2"), written("2", closed + calculated.arg(seconds(may(14)))));
    const QStringList over {QStringLiteral("%1|%2|rodičovská|%3")
                                .arg(seconds(may(15)), seconds(may(23)), seconds(may(14)))};
    QCOMPARE(company.personRow(row, uid), over);
    QCOMPARE(passOf(may(24), 0, "3"), written("3", closed));
    QCOMPARE(company.personRow(row, uid), over);

    // Another one opens.
    QCOMPARE(passOf(may(25), 21, "3"),
             written("3", opened.arg(seconds(may(25))) + calculated.arg(seconds(may(24)))));
    QCOMPARE(company.personRow(row, uid),
             QStringList {at(may(25), "|NULL|materská|") + seconds(may(24))});

    // A worker that knows nothing takes the state for a new one: calculated anew, no new interval.
    company.setTime(may(27));
    company.calculate();
    company.restartWorker();
    QCOMPARE(passOf(may(27), 21, "3"),
             written("3", opened.arg(seconds(may(25))) + calculated.arg(seconds(may(24)))));
    QCOMPARE(company.personRow(row, uid),
             QStringList {at(may(25), "|NULL|materská|") + seconds(may(24))});

    // An end that was set for it stays as long as it lies ahead.
    company.execute(
        QStringLiteral("UPDATE people SET rsEnd=%1 WHERE uid=801").arg(seconds(may(30))));
    QCOMPARE(passOf(may(29), 21, "4"),
             written("4",
                     QStringLiteral("rsBegin=%1, rsEnd=%2, rsText='materská'")
                         .arg(seconds(may(25)), seconds(may(30)))));
    QCOMPARE(passOf(may(30), 21, "5"), written("5", opened.arg(seconds(may(30)))));
    QCOMPARE(company.personRow(row, uid),
             QStringList {at(may(30), "|NULL|materská|") + seconds(may(24))});
}

void tst_Days::lostFirstTick_isNotMadeUp()
{
    // What was written has to outlive the server.
    database->execute(QStringLiteral("SET GLOBAL innodb_flush_log_at_trx_commit = 1"));
    const QDate day(2024, 5, 14);
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.settle(121, 3201);
    company.setTime(day);
    company.restartWorker();
    company.worker->worker.setSyncInterval(3);
    const QString line = record().pid(3201, 1).branch(100).calendar(1).line();
    company.worker->writeExport({line});

    database->server().kill();
    company.worker->tick();
    QStringList events = company.worker->log.take();
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.at(0), QStringLiteral("sql open"));
    QVERIFY2(events.at(1).startsWith(QStringLiteral(
                 "critical THRWorker::dbCheckOpen() - SQL ERROR: Can't connect to ")),
             qPrintable(events.at(1)));
    QCOMPARE(events.at(2), QStringLiteral("warning THRWorker::checkSync() - database not open!"));

    database->restart();
    company.setTime(day, QTime(8, 1));
    company.worker->tick();
    QCOMPARE(company.worker->log.take(),
             lines({"sql open",
                    "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1",
                    "sql close"}));
    QCOMPARE(company.worker->peer.syncCount, 0u);

    company.setTime(day, QTime(8, 2));
    events = company.pass({line});
    QCOMPARE(events,
             (QStringList {phoneUpdate(3201, QString())} + news(32011, QStringLiteral("121"))
              + QStringList {uidAsked(32011)} + membershipInPlace(32011, QStringLiteral("121"))));
    QCOMPARE(company.worker->peer.syncCount, 1u);
    QCOMPARE(company.worker->peer.tickCount, 3u);
    QCOMPARE(company.personRow(QStringLiteral("edited"), QStringLiteral("121")),
             QStringList {QString::number(localSeconds(day, 8, 2))});
}

void tst_Days::lastDay_stillCounts()
{
    const QDate day(2024, 5, 14);
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.settle(122, 3202);
    const auto leaving = [](uint number, const QDate &last, const char *phone) {
        return record()
            .pid(number, 1)
            .employed(QDate(2015, 3, 1), last)
            .phone(QString::fromLatin1(phone));
    };
    const auto file = [&](const char *phone) {
        return QStringList {leaving(3202, day, phone).branch(100).calendar(1).line(),
                            leaving(3203, day, phone).tpp(12).line(),
                            leaving(3204, day.addDays(-1), phone).branch(100).calendar(1).line(),
                            leaving(3205, QDate(), phone).relationState(4).branch(100).line()};
    };

    // The last second of the day: one is known, one is added, two are too late.
    company.setTime(day, QTime(23, 59, 59));
    company.restartWorker();
    QStringList expected {endUpdate(3202, "", day)};
    expected += news(32021, QStringLiteral("122"));
    expected += uidAsked(32021);
    expected += membershipInPlace(32021, QStringLiteral("122"));
    expected += insert(QStringLiteral("'32031', '3203.1', '', 'Ján', 'Novák', '', ''"),
                       lastSecond(day), QStringLiteral("NULL, NULL, ''"),
                       QStringLiteral("0, 1, 0, NULL"));
    expected += pamListRead() + pamListWritten("77,32031");
    QCOMPARE(company.pass(file("")), expected);
    QCOMPARE(company.rows(QStringLiteral("SELECT pamId, end, status FROM people ORDER BY pid")),
             (QStringList {QStringLiteral("3202.1|%1|1").arg(lastSecond(day)),
                           QStringLiteral("3203.1|%1|1").arg(lastSecond(day))}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_pam")), QStringList());
    QCOMPARE(company.worker->peer.lastRecords.size(), 4);
    const QString added = company.uidOf(32031);

    // The first second of the next: what changes is written, and no more.
    company.setTime(day.addDays(1), QTime(0, 0));
    expected = QStringList {endUpdate(3202, "1", day)} + news(32021, QStringLiteral("122"));
    expected += update(3203, QStringLiteral("1"), lastSecond(day),
                       QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText=''"), QStringLiteral("0"),
                       QStringLiteral("calendarID=0, bid=NULL "));
    expected += news(32031, added);
    QCOMPARE(company.pass(file("1")), expected);
    QCOMPARE(company.rows(QStringLiteral("SELECT phone FROM people")), lines({"1", "1"}));
    company.force();
    QCOMPARE(company.pass(file("1")), QStringList());
    QCOMPARE(company.worker->peer.lastRecords.size(), 4);
}

QTEST_GUILESS_MAIN(tst_Days)
#include "tst_days.moc"
