// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The leave of a company over several days: corrections, waiting attendance, restarts.
#include "support/database/companydays.h"
#include "support/databasefixture.h"
#include "support/localseconds.h"

#include <QtTest>

namespace {

/// Corrections of a person, with the day, the month and the hundredths.
QStringList corrections(CompanyDays &company, const QString &uid)
{
    return company.rows(
        QStringLiteral("SELECT day, month, value FROM funds_move WHERE type=3 AND uid=%1 "
                       "ORDER BY day")
            .arg(uid));
}

QString move(const QDate &day, const char *rest)
{
    return seconds(day) + QString::fromLatin1(rest);
}

void grant(CompanyDays &company, uint uid, uint type, const QDate &day, int value)
{
    company.execute(QStringLiteral("INSERT INTO funds_move (uid, fid, day, type, month, value) "
                                   "VALUES (%1, 2, %2, %3, %4, %5)")
                        .arg(uid)
                        .arg(seconds(day))
                        .arg(type)
                        .arg(day.year() * 100 + day.month())
                        .arg(value));
}

/// The checks of the fund with what is said of them.
QStringList toldChecks(uint pid, uint uid, const char *move)
{
    QStringList events = fundChecks(pid, uid);
    events.insert(1,
                  QStringLiteral("info THRWorker::dbCheckFundMove(pid: %1): %2")
                      .arg(pid)
                      .arg(QString::fromLatin1(move)));
    return events
        + QStringList {QStringLiteral("info THRWorker::dbCheckAttendance(pid: %1): OK").arg(pid)};
}

QStringList toldBalance(uint pid, const QDate &monthBegin, int balance)
{
    return balanceRead(pid, monthBegin)
        + QStringList {QStringLiteral("info THRWorker::loadFundStatusAndMove3(pid: %1): %2, "
                                      "load OK: YES")
                           .arg(pid)
                           .arg(balance)};
}

} // namespace

class tst_DaysFund : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_DaysFund() :
        DatabaseFixture(QDateTime(QDate(2024, 5, 14), QTime(8, 0)))
    { }

private Q_SLOTS:
    void newPerson_getsTheBalanceAtTheSecondPass();
    void correction_isReexaminedTheNextDay();
    void balance_countsTheOtherMovesOfEarlierMonthsOnly();
    void attendanceAtWork_waitsUntilItIsAtRest_data();
    void attendanceAtWork_waitsUntilItIsAtRest();
    void attendanceAtRest_isCorrectedAtOnce_data();
    void attendanceAtRest_isCorrectedAtOnce();
    void correction_waitsForTheCalculationThatItAsksFor();
    void restart_examinesAllAnewAndDoublesNothing();
};

void tst_DaysFund::newPerson_getsTheBalanceAtTheSecondPass()
{
    const QDate day(2024, 5, 14);
    const QDate may(2024, 5, 1);
    CompanyDays company(*database, *clock);
    company.setTime(day);
    company.restartWorker();
    const QStringList file {record()
                                .pid(2201, 1)
                                .name(QStringLiteral("Eva"), QStringLiteral("Malá"))
                                .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
                                .phone(QStringLiteral("0900"))
                                .employed(QDate(2024, 5, 13), QDate(2025, 3, 30))
                                .branch(200)
                                .calendar(2, may)
                                .supervisor(9002)
                                .balance(20.5)
                                .line()};

    QStringList events = company.pass(file);
    const QString uid = company.uidOf(22011);
    QStringList expected = fundChecksOfNobody(22011);
    expected += QStringLiteral(
                    "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, "
                    "phone, begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, "
                    "bid) VALUES('22011', '2201.1', 'Ing.', 'Eva', 'Malá', 'PhD.', '0900', %1, "
                    "%2, UNIX_TIMESTAMP(), NULL, NULL, '', 1, 1, 2, 2) ON DUPLICATE KEY UPDATE "
                    "pamId=VALUES(pamId), title=VALUES(title), name=VALUES(name), "
                    "surname=VALUES(surname), title2=VALUES(title2), phone=VALUES(phone), "
                    "begin=VALUES(begin), end=VALUES(end), edited=VALUES(created), status=1, "
                    "type=VALUES(type), did=1")
                    .arg(seconds(QDate(2024, 5, 13)), lastSecond(QDate(2025, 3, 30)));
    expected += pamListRead() + pamListWritten("77,22011") + pamRow(22011, uid, 1);
    expected += adminAsked(9002);
    expected += uidAsked(22011);
    expected += markMoved(2, uid) + secondBranchAsked(22011, uid, 202405)
        + planWritten(22, uid, 202405);
    // The calendar holds since before today.
    expected += reopening(uid, may) + secondBranchJoined(uid, uid, uid);
    QCOMPARE(events, expected);

    const QString now = QString::number(localSeconds(day, 8));
    QCOMPARE(company.rows(QStringLiteral("SELECT pamId, name, type, status, did, bid, calendarID, "
                                         "created, edited, lastCalc FROM people")),
             QStringList {QStringLiteral("2201.1|Eva|1|1|1|2|2|%1|NULL|0").arg(now)});
    QCOMPARE(company.rows(QStringLiteral("SELECT name, value FROM vars ORDER BY name")),
             lines({"exportPam.1.active|1", "exportPam.1.selPeople|77,22011"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_pam")),
             QStringList {uid + QStringLiteral("|1")});
    QCOMPARE(company.marks(uid), lines({"2|1", "3|0"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM brape")),
             QStringList {QStringLiteral("2|%1|%2").arg(uid, now)});
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_term")),
             QStringList {QStringLiteral("2|") + uid});
    QCOMPARE(company.takeQueue(), QStringList {QStringLiteral("2|I|people_term|") + uid});
    QCOMPARE(company.rows(QStringLiteral("SELECT tid, syn FROM term ORDER BY tid")),
             lines({"1|0", "2|2", "3|0"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT since, gid FROM groups_plan")),
             lines({"202405|22"}));
    QCOMPARE(corrections(company, uid), QStringList());
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{22011, true}}));

    // He has days by now, and they are calculated.
    const QDate march(2024, 3, 31);
    const QDate april(2024, 4, 1);
    company.execute(QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (%1, %2, 1), "
                                   "(%1, %3, 1), (%1, %4, 1)")
                        .arg(uid, seconds(march), seconds(april), seconds(QDate(2024, 5, 13))));
    company.calculate();
    company.setTime(day, QTime(9, 0));
    events = company.pass(file);
    QCOMPARE(events,
             fundChecks(22011, uid.toUInt()) + balanceRead(22011, may)
                 + QStringList {correction(uid.toUInt(), 2050, day)}
                 + secondBranchAsked(22011, uid, 202405) + reopening(uid, april));
    QCOMPARE(corrections(company, uid), QStringList {move(day, "|202405|2050")});
    QCOMPARE(
        company.rows(QStringLiteral("SELECT `date`, ok FROM atten ORDER BY `date`")),
        (QStringList {move(march, "|1"), move(april, "|-1"), move(QDate(2024, 5, 13), "|-1")}));
    QCOMPARE(company.rows(QStringLiteral("SELECT edited, lastCalc, calc FROM people")),
             QStringList {QStringLiteral("NULL|%1|0").arg(seconds(march))});
    QCOMPARE(company.takeQueue(), QStringList());

    company.calculate();
    company.setTime(day, QTime(10, 0));
    QCOMPARE(company.pass(file), fundChecks(22011, uid.toUInt()));
    QCOMPARE(corrections(company, uid), QStringList {move(day, "|202405|2050")});
}

void tst_DaysFund::correction_isReexaminedTheNextDay()
{
    const QDate friday(2024, 3, 29);
    const QDate saturday(2024, 3, 30);
    const QDate sunday(2024, 3, 31); // the clocks change in Europe
    const QDate march(2024, 3, 1);
    const QDate february(2024, 2, 1);
    CompanyDays company(*database, *clock);
    company.settle(301, 2301);
    grant(company, 301, 1, QDate(2024, 1, 1), 2000);
    const RecordBuilder employee = record().pid(2301, 1).branch(100).calendar(1);

    company.setTime(friday, QTime(23, 59, 59));
    company.restartWorker(1);
    QCOMPARE(
        company.pass({RecordBuilder(employee).balance(18.5).line()}),
        (toldChecks(23011, 301, "OK - non exists")
         + QStringList {QStringLiteral("debug THRWorker::dbUpdatePerson(2301.1  Ján Novák  (T: "
                                       ") N-V: 1 Mar 2015 -  TPP: 11  K: 1  DOV: 18.5, S: 100)"),
                        phoneUpdate(2301, QString())}
         + news(23011, QStringLiteral("301")) + toldBalance(23011, march, 2000)
         + QStringList {QStringLiteral("debug THRWorker::writeFundMove3(uid: 301, value: -150)"),
                        correction(301, -150, friday), uidAsked(23011)}
         + membershipInPlace(23011, QStringLiteral("301"))
         + reopening(QStringLiteral("301"), february)));

    // Another balance on the same day: the record is another one, but the correction stands.
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "exists") + membershipInPlace(23011, QStringLiteral("301")));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "exists"));
    QCOMPARE(corrections(company, QStringLiteral("301")),
             QStringList {move(friday, "|202403|-150")});
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{23011, true}}));

    // A second later it is another day, and the record need not change again.
    company.setTime(saturday, QTime(0, 0));
    QCOMPARE(
        company.pass({RecordBuilder(employee).balance(17).line()}),
        (toldChecks(23011, 301, "OK - non exists") + toldBalance(23011, march, 1850)
         + QStringList {QStringLiteral("debug THRWorker::writeFundMove3(uid: 301, value: -150)"),
                        correction(301, -150, saturday)}
         + membershipInPlace(23011, QStringLiteral("301"))
         + reopening(QStringLiteral("301"), february)));
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{23011, false}}));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "exists"));

    const QStringList both {move(friday, "|202403|-150"), move(saturday, "|202403|-150")};
    company.setTime(sunday, QTime(0, 0));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "OK - non exists") + toldBalance(23011, march, 1700)
                 + membershipInPlace(23011, QStringLiteral("301")));
    QCOMPARE(corrections(company, QStringLiteral("301")), both);

    // In line, and nothing was written today: asked no more.
    company.setTime(sunday, QTime(23, 59, 59));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "OK - non exists"));
    company.setTime(QDate(2024, 4, 1));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(17).line()}),
             toldChecks(23011, 301, "OK - non exists"));
    QCOMPARE(corrections(company, QStringLiteral("301")), both);
}

void tst_DaysFund::balance_countsTheOtherMovesOfEarlierMonthsOnly()
{
    const QDate lastOfMarch(2024, 3, 31);
    const QDate firstOfApril(2024, 4, 1);
    const QDate secondOfApril(2024, 4, 2);
    const QString uid = QStringLiteral("302");
    CompanyDays company(*database, *clock);
    company.settle(302, 2302);
    grant(company, 302, 1, QDate(2024, 1, 1), 2000);
    grant(company, 302, 2, QDate(2024, 3, 1), -300);
    grant(company, 302, 2, firstOfApril, -100);
    const QStringList file {record().pid(2302, 1).branch(100).calendar(1).balance(19.25).line()};

    company.setTime(lastOfMarch, QTime(23, 59, 59));
    company.restartWorker();
    QCOMPARE(company.pass(file),
             (fundChecks(23021, 302) + QStringList {phoneUpdate(2302, QString())} + news(23021, uid)
              + balanceRead(23021, QDate(2024, 3, 1))
              + QStringList {correction(302, -75, lastOfMarch), uidAsked(23021)}
              + membershipInPlace(23021, uid) + reopening(uid, QDate(2024, 2, 1))));

    // Only a pass that finds the correction of the day makes the next day look again.
    QCOMPARE(company.pass(file), fundChecks(23021, 302));

    // What was taken in March counts from here on: 2000 - 300 - 75.
    company.setTime(firstOfApril, QTime(0, 0));
    QCOMPARE(company.pass(file),
             fundChecks(23021, 302) + balanceRead(23021, firstOfApril)
                 + QStringList {correction(302, 300, firstOfApril)} + membershipInPlace(23021, uid)
                 + reopening(uid, QDate(2024, 3, 1)));
    QCOMPARE(corrections(company, uid),
             (QStringList {move(lastOfMarch, "|202403|-75"), move(firstOfApril, "|202404|300")}));

    QCOMPARE(company.pass(file), fundChecks(23021, 302));

    // What was taken in April does not, but the correction does.
    company.setTime(secondOfApril);
    QCOMPARE(company.pass(file),
             fundChecks(23021, 302) + balanceRead(23021, firstOfApril)
                 + membershipInPlace(23021, uid));
    QCOMPARE(corrections(company, uid).size(), 2);
}

void tst_DaysFund::attendanceAtWork_waitsUntilItIsAtRest_data()
{
    QTest::addColumn<QString>("disturbance");
    QTest::addColumn<bool>("seenBySecondQuestion");
    QTest::addColumn<QString>("remedy");
    QTest::addColumn<QTime>("noon");

    const QDate today(2024, 5, 14);
    const auto open = [](const QDate &day, int ok) {
        return QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (%1, ")
            + QStringLiteral("%1, %2)").arg(seconds(day)).arg(ok);
    };
    const auto calc = [today](int second) {
        return QStringLiteral("UPDATE people SET calc=%1 ").arg(localSeconds(today, 12) + second)
            + QStringLiteral("WHERE uid=%1");
    };
    const QString calculated = QStringLiteral("UPDATE atten SET ok=1 WHERE uid=%1");
    const QTime noon(12, 0);
    QTest::newRow("calculation of 899 seconds ago")
        << calc(-899) << false << QStringLiteral("DO %1") << QTime(12, 0, 1);
    QTest::newRow("calculation of now")
        << calc(0) << false << QStringLiteral("UPDATE people SET calc=0 WHERE uid=%1") << noon;
    QTest::newRow("calculation to come")
        << calc(90000) << false << QStringLiteral("UPDATE people SET calc=0 WHERE uid=%1") << noon;
    QTest::newRow("open day of long ago")
        << open(QDate(2023, 12, 1), -1) << false << calculated << noon;
    QTest::newRow("open day of yesterday, then locked")
        << open(today.addDays(-1), -1) << false
        << QStringLiteral("UPDATE atten SET `lock`=1 WHERE uid=%1") << noon;
    QTest::newRow("open day to come") << open(today.addDays(1), -1) << false << calculated << noon;
    QTest::newRow("failed day of today")
        << open(today, -2) << true << QStringLiteral("UPDATE atten SET ok=0 WHERE uid=%1") << noon;
    QTest::newRow("failed day to come, then locked")
        << open(today.addDays(1), -2) << true
        << QStringLiteral("UPDATE atten SET `lock`=1 WHERE uid=%1") << noon;
}

void tst_DaysFund::attendanceAtWork_waitsUntilItIsAtRest()
{
    QFETCH(QString, disturbance);
    QFETCH(bool, seenBySecondQuestion);
    QFETCH(QString, remedy);
    QFETCH(QTime, noon);

    static uint personalNumber = 2400;
    const uint pid = ++personalNumber * 10 + 1;
    const QDate today(2024, 5, 14);
    const QString uid = QStringLiteral("401");
    CompanyDays company(*database, *clock);
    company.settle(401, personalNumber);
    grant(company, 401, 1, QDate(2024, 1, 1), 2000);
    const RecordBuilder employee = record().pid(personalNumber, 1).branch(100).calendar(1);
    company.setTime(today, QTime(12, 0));
    company.restartWorker();
    company.pass({RecordBuilder(employee).balance(20).line()});
    QCOMPARE(corrections(company, uid), QStringList());

    company.execute(disturbance.arg(401));
    const QStringList file {RecordBuilder(employee).balance(21).line()};
    const QStringList asked = seenBySecondQuestion ? fundChecks(pid, 401) : fundChecksAtWork(pid);
    QCOMPARE(company.pass(file), asked + membershipInPlace(pid, uid));
    QCOMPARE(company.pass(file), asked);
    QCOMPARE(corrections(company, uid), QStringList());
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{pid, true}}));

    company.execute(remedy.arg(401));
    company.setTime(today, noon);
    QCOMPARE(company.pass(file),
             fundChecks(pid, 401) + balanceRead(pid, QDate(2024, 5, 1))
                 + QStringList {correction(401, 100, today)} + membershipInPlace(pid, uid)
                 + reopening(uid, QDate(2024, 4, 1)));
    QCOMPARE(corrections(company, uid), QStringList {move(today, "|202405|100")});
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{pid, false}}));
}

void tst_DaysFund::attendanceAtRest_isCorrectedAtOnce_data()
{
    QTest::addColumn<QString>("state");

    const QDate today(2024, 5, 14);
    const QString days = QStringLiteral(
        "INSERT INTO atten (uid, `date`, `lock`, ok) VALUES (402, %1, %2, %3)");
    QTest::newRow("calculation of 900 seconds ago")
        << QStringLiteral("UPDATE people SET calc=%1").arg(localSeconds(today, 11, 45));
    QTest::newRow("failed day of yesterday") << days.arg(seconds(today.addDays(-1))).arg(0).arg(-2);
    QTest::newRow("day of today without a fault") << days.arg(seconds(today)).arg(0).arg(0);
    QTest::newRow("locked open day of long ago")
        << days.arg(seconds(QDate(2023, 12, 1))).arg(1).arg(-1);
    QTest::newRow("locked open day of today") << days.arg(seconds(today)).arg(1).arg(-1);
    QTest::newRow("open day of somebody else")
        << QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (77, %1, -1)")
               .arg(seconds(today));
}

void tst_DaysFund::attendanceAtRest_isCorrectedAtOnce()
{
    QFETCH(QString, state);

    static uint personalNumber = 2450;
    const uint pid = ++personalNumber * 10 + 1;
    const QDate today(2024, 5, 14);
    CompanyDays company(*database, *clock);
    company.settle(402, personalNumber);
    company.execute(state);
    company.setTime(today, QTime(12, 0));
    company.restartWorker();
    QCOMPARE(company.pass(
                 {record().pid(personalNumber, 1).branch(100).calendar(1).balance(-0.5).line()}),
             (fundChecks(pid, 402) + QStringList {phoneUpdate(personalNumber, QString())}
              + news(pid, QStringLiteral("402")) + balanceRead(pid, QDate(2024, 5, 1))
              + QStringList {correction(402, -50, today), uidAsked(pid)}
              + membershipInPlace(pid, QStringLiteral("402"))
              + reopening(QStringLiteral("402"), QDate(2024, 4, 1))));
    QCOMPARE(corrections(company, QStringLiteral("402")), QStringList {move(today, "|202405|-50")});
}

void tst_DaysFund::correction_waitsForTheCalculationThatItAsksFor()
{
    const QDate today(2024, 5, 14);
    const QDate tomorrow(2024, 5, 15);
    const QString uid = QStringLiteral("403");
    CompanyDays company(*database, *clock);
    company.settle(403, 2493);
    const uint pid = 24931;
    company.execute(QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (403, %1, 1)")
                        .arg(seconds(today)));
    company.setTime(today);
    company.calculate();
    const RecordBuilder employee = record().pid(2493, 1).branch(100).calendar(1);
    company.restartWorker();
    company.pass({RecordBuilder(employee).balance(1).line()});
    QCOMPARE(corrections(company, uid), QStringList {move(today, "|202405|100")});
    QCOMPARE(company.rows(QStringLiteral("SELECT ok FROM atten")), lines({"-1"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT lastCalc, calc FROM people")),
             QStringList {move(QDate(2024, 3, 31), "|0")});

    // Nobody has calculated yet.
    company.setTime(tomorrow);
    QCOMPARE(company.pass({RecordBuilder(employee).balance(3).line()}),
             fundChecksAtWork(pid) + membershipInPlace(pid, uid));
    company.calculate();
    company.setTime(tomorrow, QTime(9, 0));
    QCOMPARE(company.pass({RecordBuilder(employee).balance(3).line()}),
             fundChecks(pid, 403) + balanceRead(pid, QDate(2024, 5, 1))
                 + QStringList {correction(403, 200, tomorrow)} + membershipInPlace(pid, uid)
                 + reopening(uid, QDate(2024, 4, 1)));
    QCOMPARE(corrections(company, uid),
             (QStringList {move(today, "|202405|100"), move(tomorrow, "|202405|200")}));
}

void tst_DaysFund::restart_examinesAllAnewAndDoublesNothing()
{
    const QDate today(2024, 5, 14);
    const QString uid = QStringLiteral("601");
    CompanyDays company(*database, *clock);
    company.settle(601, 2601);
    company.settle(602, 2602);
    const QString line
        = record().pid(2601, 1).branch(100).calendar(1).balance(18).supervisor(9001).line();
    const QString waiting = record().pid(2602, 1).branch(900).calendar(1).line();
    const QStringList correctedOnce {move(today, "|202405|1800")};

    company.setTime(today);
    company.restartWorker();
    company.pass({line, waiting}, 1);
    company.pass({line, waiting}, 1);
    QCOMPARE(company.worker->peer.lastRecords.size(), 2);
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{26011, true}, {26021, false}}));
    QCOMPARE(corrections(company, uid), correctedOnce);
    company.takeQueue();

    company.setTime(today, QTime(9, 0));
    company.restartWorker();
    QVERIFY(company.worker->peer.lastRecords.isEmpty());
    QVERIFY(company.worker->peer.waitingRecords.isEmpty());
    QVERIFY(company.worker->peer.fundRetry.isEmpty());
    const QStringList written = QStringList {phoneUpdate(2601, QString())} + news(26011, uid);
    const QStringList assigned = QStringList {adminAsked(9001)} + markMoved(1, uid)
        + membershipInPlace(26011, uid);
    QCOMPARE(company.pass({line}), fundChecks(26011, 601) + written + assigned);
    QCOMPARE(corrections(company, uid), correctedOnce);
    QCOMPARE(company.rows(QStringLiteral("SELECT edited, editor FROM people WHERE uid=601")),
             QStringList {QStringLiteral("%1|0").arg(localSeconds(today, 9))});
    QCOMPARE(company.takeQueue(), lines({"1|U|people|601"}));
    QCOMPARE(company.marks(uid), lines({"1|1"}));
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{26011, true}}));

    // On another day the balance is read, although nothing says that it has waited.
    company.setTime(today.addDays(1));
    company.restartWorker();
    QCOMPARE(company.pass({line}),
             fundChecks(26011, 601) + written + balanceRead(26011, QDate(2024, 5, 1)) + assigned);
    QCOMPARE(corrections(company, uid), correctedOnce);
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{26011, false}}));
    QCOMPARE(company.pass({line}), fundChecks(26011, 601));
}

QTEST_GUILESS_MAIN(tst_DaysFund)
#include "tst_daysfund.moc"
