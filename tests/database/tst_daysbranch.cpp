// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company over several days: who joins, waits, leaves and comes back.
#include "support/database/companydays.h"
#include "support/databasefixture.h"
#include "support/localseconds.h"

#include <QtTest>

namespace {

QString at(const QDate &day, const char *rest)
{
    return seconds(day) + QString::fromUtf8(rest);
}

} // namespace

class tst_DaysBranch : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_DaysBranch() :
        DatabaseFixture(QDateTime(QDate(2024, 5, 14), QTime(8, 0)))
    { }

private Q_SLOTS:
    void personWhoLeft_comesBackIntoTheOldRow();
    void waitingRecord_isTriedWhenItComesAgain();
    void twoLinesOfAPerson_takeTurns();
    void twoLinesOfANewPerson_addTwice();
    void testMode_keepsThePersonAndWritesTheRest_data();
    void testMode_keepsThePersonAndWritesTheRest();
};

void tst_DaysBranch::personWhoLeft_comesBackIntoTheOldRow()
{
    const QDate began(2024, 5, 14);
    const QDate april(2024, 4, 1);
    CompanyDays company(*database, *clock);
    company.setTime(began);
    company.restartWorker();
    company.worker->worker.setDepartmentId(7);
    const RecordBuilder employee
        = record().pid(2701, 1).branch(100).calendar(1, QDate(2024, 5, 1)).es(21).balance(10);
    company.pass({employee.line()});
    const QString uid = company.uidOf(27011);
    const QString row = QStringLiteral("name, surname, phone, end, rsBegin, rsEnd, rsText, type, "
                                       "status, did, bid, calendarID");
    QCOMPARE(company.personRow(row, uid),
             QStringList {
                 QStringLiteral("Ján|Novák||NULL|%1|NULL|materská|1|1|7|1|1").arg(seconds(began))});
    company.pass({employee.line()});
    const QString corrections = QStringLiteral("SELECT day, value FROM funds_move");
    const QStringList corrected {at(began, "|1000")};
    QCOMPARE(company.rows(corrections), corrected);

    // Notice of the last day, the day after it, and the end of the relation.
    const QDate last(2024, 5, 16);
    const RecordBuilder leaving = RecordBuilder(employee).employed(QDate(2015, 3, 1), last);
    company.setTime(QDate(2024, 5, 15));
    QVERIFY(company.pass({leaving.line()}).size() > fundChecks(27011, uid.toUInt()).size());
    const QStringList left {QStringLiteral("Ján|Novák||%1|%2|NULL|materská|1|1|7|1|1")
                                .arg(lastSecond(last), seconds(began))};
    QCOMPARE(company.personRow(row, uid), left);
    company.setTime(QDate(2024, 5, 17));
    QCOMPARE(company.pass({leaving.line()}), fundChecks(27011, uid.toUInt()));
    const QString gone = RecordBuilder(leaving).relationState(4).line();
    company.setTime(QDate(2024, 5, 18));
    // Known and changed, so the date of the calendar reopens attendance once more.
    QCOMPARE(company.pass({gone}), (fundChecks(27011, uid.toUInt()) + reopening(uid, april)));
    QCOMPARE(company.worker->peer.lastRecords.value(27011).stavPracovnihoPomeru, ushort(4));
    QCOMPARE(company.personRow(row, uid), left);
    company.execute(QStringLiteral("UPDATE people SET status=0 WHERE uid=%1").arg(uid));
    company.setTime(QDate(2024, 5, 19));
    QCOMPARE(company.pass({gone}), fundChecks(27011, uid.toUInt()));
    company.force();
    QCOMPARE(company.pass({gone}), fundChecks(27011, uid.toUInt()));
    QCOMPARE(company.personRow(QStringLiteral("status"), uid), lines({"0"}));
    company.takeQueue();

    // Back under another name, in another branch.
    const QDate back(2024, 5, 20);
    const RecordBuilder returning = record()
                                        .pid(2701, 1)
                                        .name(QStringLiteral("Eva"), QStringLiteral("Malá"))
                                        .phone(QStringLiteral("0905"))
                                        .branch(200)
                                        .calendar(2, QDate(2024, 6, 1))
                                        .balance(10);
    company.setTime(back);
    QStringList expected = fundChecks(27011, uid.toUInt());
    expected += insert(QStringLiteral("'27011', '2701.1', '', 'Eva', 'Malá', '', '0905'"),
                       QStringLiteral("NULL"), QStringLiteral("NULL, NULL, ''"),
                       QStringLiteral("1, 7, 2, 2"));
    // He is on the list and has a row in the block: a row that stays as it is counts as a failure.
    expected += pamListRead() + pamRow(27011, uid, 1);
    expected += QStringLiteral(
        "warning THRWorker::doSyncRecord(2701.1 Malá Eva (S: 200, K: 2 from 1 Jun 2024) N-V: "
        "1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 10 NOC: 0) - dbAddPersonIntoPam(27011, 1) "
        "FAILED!");
    expected += secondBranchAsked(27011, uid, 202406) + planWritten(22, uid, 202406)
        + secondBranchJoined(uid, uid, uid);
    QCOMPARE(company.pass({returning.line()}), expected);
    const QString kept = QStringLiteral("Eva|Malá|0905|NULL|%1|NULL|materská|1|1|1|1|1")
                             .arg(seconds(began));
    QCOMPARE(company.personRow(row, uid), QStringList {kept});
    QCOMPARE(company.personRow(QStringLiteral("edited"), uid),
             QStringList {QString::number(localSeconds(back, 8))});
    QCOMPARE(company.rows(QStringLiteral("SELECT value FROM vars "
                                         "WHERE name='exportPam.1.selPeople'")),
             lines({"77,27011"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_pam")),
             QStringList {uid + QStringLiteral("|1")});
    QCOMPARE(company.rows(QStringLiteral("SELECT bid, uid FROM brape ORDER BY bid")),
             (QStringList {QStringLiteral("1|") + uid, QStringLiteral("2|") + uid}));
    QCOMPARE(company.rows(QStringLiteral("SELECT since, gid FROM groups_plan ORDER BY since")),
             lines({"202405|11", "202406|22"}));
    QCOMPARE(company.takeQueue(), QStringList {QStringLiteral("2|I|people_term|") + uid});
    QCOMPARE(company.worker->peer.fundRetry, (QHash<uint, bool> {{27011, false}}));

    // The row keeps what the insert left there, until the record changes.
    company.setTime(back.addDays(1));
    QCOMPARE(company.pass({returning.line()}), fundChecks(27011, uid.toUInt()));
    QCOMPARE(company.personRow(row, uid), QStringList {kept});
    const QDate changed = back.addDays(2);
    company.setTime(changed);
    expected = fundChecks(27011, uid.toUInt());
    expected += QStringLiteral("sql exec UPDATE people SET pamId=2701.1, title='', name='Eva', "
                               "surname='Malá', title2='', phone='', begin=%1, end=NULL, "
                               "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=%2, rsEnd=%3, "
                               "rsText='materská', type=1, did=7, calendarID=2, bid=2  "
                               "WHERE pid=27011")
                    .arg(seconds(QDate(2015, 3, 1)), seconds(began), seconds(changed));
    expected += news(27011, uid) + secondBranchAsked(27011, uid, 202406) + reopening(uid, april);
    QCOMPARE(company.pass({RecordBuilder(returning).phone(QString()).line()}), expected);
    QCOMPARE(company.personRow(row, uid),
             QStringList {QStringLiteral("Eva|Malá||NULL|%1|%2|materská|1|1|7|2|2")
                              .arg(seconds(began), seconds(changed))});
    QCOMPARE(
        company.takeQueue(),
        (QStringList {QStringLiteral("1|U|people|") + uid, QStringLiteral("2|U|people|") + uid}));
    QCOMPARE(company.rows(corrections), corrected);
}

void tst_DaysBranch::waitingRecord_isTriedWhenItComesAgain()
{
    const QString uid = QStringLiteral("901");
    QDate day(2024, 5, 14);
    const QDate april(2024, 4, 1);
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.settle(901, 2901);
    const QString first = record().pid(2901, 1).branch(900).calendar(1).line();
    const QString second
        = record().pid(2901, 1).branch(900).calendar(1).phone(QStringLiteral("1")).line();
    const auto passOfTheDay = [&](const QString &line, int waiting) {
        company.setTime(day);
        day = day.addDays(1);
        return company.pass({line}, waiting);
    };
    const auto written = [&](const char *phone, const char *bid) {
        const QString number = QString::fromLatin1(phone);
        return QStringList {
                   QStringLiteral("debug THRWorker::dbUpdatePerson(2901.1  Ján Novák  (T: %1) N-V: "
                                  "1 Mar 2015 -  TPP: 11  K: 1  DOV: 0, S: 900)")
                       .arg(number),
                   update(2901, number, QStringLiteral("NULL"),
                          QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText=''"),
                          QStringLiteral("1"),
                          QStringLiteral("calendarID=1, bid=%1 ").arg(QString::fromLatin1(bid)))}
        + news(29011, uid);
    };
    const QStringList refused = lines(
        {"warning THRWorker: Branch '900' NOT FOUND for employee: '2901.1 Novák Ján (S: 900, K: 1 "
         "from ) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0'"});
    const QString branch = QStringLiteral("SELECT bid FROM people");

    company.setTime(day);
    company.restartWorker(1);
    QStringList expected = written("", "NULL") + refused;
    expected += uidAsked(29011);
    expected += reopening(uid, april);
    QCOMPARE(passOfTheDay(first, 1), expected);
    QCOMPARE(passOfTheDay(first, 1), refused);
    QCOMPARE(company.rows(branch), lines({"NULL"}));

    // The person changes: the old record stays beside the new one.
    QCOMPARE(passOfTheDay(second, 2), (written("1", "NULL") + refused + reopening(uid, april)));
    QCOMPARE(passOfTheDay(second, 2), refused);

    // The branch is there: the new record gets through, the old one is not asked for.
    company.execute(QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES (9, 900, 1)"));
    const QStringList asked {
        QStringLiteral("sql exec SELECT COUNT(*) FROM brape WHERE bid = 9 AND "
                       "uid = (SELECT uid FROM people WHERE pid = 29011 LIMIT 1);"),
        QStringLiteral("sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON "
                       "mg.mgid = b.mgid LEFT JOIN groups g ON g.parent = mg.mgid "
                       "WHERE bid = 9 AND g.calendarID = 1 LIMIT 1;"),
        QStringLiteral("sql exec SELECT COUNT(*) FROM groups_plan WHERE gid = 11 AND uid = 901 "
                       "AND since = 0;")};
    // Part of what follows comes after the last record, before the end of the pass.
    const QStringList joined = lines(
        {"info BranchesRepository::addPeopleToBranch(9, '901')",
         "sql exec INSERT INTO brape (bid, uid, since) SELECT 9 bid, uid, UNIX_TIMESTAMP() since "
         "FROM people WHERE uid IN(901) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
         "info BranchesRepository::slotAddedPeopleToBranch(9, '901')",
         "info BranchesRepository::getTids4Branch(9)",
         "sql exec SELECT tid FROM term WHERE status > 0 AND bid = 9",
         "info BranchesRepository::getAids4Branch(9)",
         "sql exec SELECT aid FROM bradm WHERE bid = 9"});
    QCOMPARE(passOfTheDay(second, 1), (asked + joined));
    QCOMPARE(company.rows(QStringLiteral("SELECT bid FROM brape ORDER BY bid")), lines({"1", "9"}));
    // The row has been written while there was no branch.
    QCOMPARE(company.rows(branch), lines({"NULL"}));
    QCOMPARE(passOfTheDay(second, 1), QStringList());
    QCOMPARE(company.worker->peer.waitingRecords.toVector().at(0).telefon, QString());

    // It would have stayed for good, had the person not become the same again.
    QCOMPARE(passOfTheDay(first, 0), (written("", "9") + asked + reopening(uid, april)));
    QCOMPARE(company.rows(branch), lines({"9"}));
    QCOMPARE(passOfTheDay(first, 0), QStringList());
}

void tst_DaysBranch::twoLinesOfAPerson_takeTurns()
{
    const QDate day(2024, 5, 14);
    const QDate may(2024, 5, 1);
    const QString uid = QStringLiteral("110");
    CompanyDays company(*database, *clock);
    company.settle(110, 3001);
    company.execute(QStringLiteral("INSERT INTO groups_plan (uid, since, gid) "
                                   "VALUES (110, 202401, 11)"));
    const RecordBuilder employee = record().pid(3001, 1).branch(100).calendar(1,
                                                                              QDate(2024, 1, 10));
    const QStringList file {RecordBuilder(employee).phone(QStringLiteral("A")).balance(19).line(),
                            RecordBuilder(employee).phone(QStringLiteral("B")).balance(18).line()};
    const QString phone = QStringLiteral("phone");
    const QStringList checks = fundChecks(30011, 110);
    const QStringList member = membershipInPlace(30011, uid, 202401);
    const QStringList again = reopening(uid, QDate(2024, 4, 1));
    const QStringList writtenA = QStringList {phoneUpdate(3001, QStringLiteral("A"))}
        + news(30011, uid);
    const QStringList writtenB = QStringList {phoneUpdate(3001, QStringLiteral("B"))}
        + news(30011, uid);

    // The first line corrects the balance and reopens attendance; the second does neither.
    company.setTime(day);
    company.restartWorker();
    QStringList expected = checks + writtenA + balanceRead(30011, may);
    expected += correction(110, 1900, day);
    expected += uidAsked(30011);
    expected += member + again + checks + writtenB + member;
    QCOMPARE(company.pass(file), expected);
    QCOMPARE(company.personRow(phone, uid), lines({"B"}));

    // Both lines are compared with the row as it was before the pass.
    QCOMPARE(company.pass(file), (checks + writtenA + member + again + checks + member));
    QCOMPARE(company.personRow(phone, uid), lines({"A"}));
    QCOMPARE(company.pass(file), (checks + member + again + checks + writtenB + member));
    QCOMPARE(company.personRow(phone, uid), lines({"B"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT day, value FROM funds_move")),
             QStringList {at(day, "|1900")});
    QCOMPARE(company.worker->peer.lastRecords.value(30011).telefon, QStringLiteral("B"));

    // The next day the first line finds its balance, and the second one asks for its own.
    const QDate tomorrow = day.addDays(1);
    company.setTime(tomorrow);
    expected = checks + writtenA + balanceRead(30011, may) + member + again + checks
        + balanceRead(30011, may);
    expected += correction(110, -100, tomorrow);
    expected += member + again;
    QCOMPARE(company.pass(file), expected);
    QCOMPARE(company.rows(QStringLiteral("SELECT day, value FROM funds_move ORDER BY day")),
             (QStringList {at(day, "|1900"), at(tomorrow, "|-100")}));
}

void tst_DaysBranch::twoLinesOfANewPerson_addTwice()
{
    CompanyDays company(*database, *clock);
    company.dropLeaveFund();
    company.setTime(QDate(2024, 5, 14));
    company.restartWorker();
    company.worker->worker.setDepartmentId(7);
    const QDate june(2024, 6, 1);
    const QStringList events = company.pass(
        {record().pid(3002, 1).branch(100).calendar(1, june).line(),
         record().pid(3002, 1).phone(QStringLiteral("B")).branch(200).calendar(2, june).line()});
    const QString uid = company.uidOf(30021);
    QStringList expected {insert(QStringLiteral("'30021', '3002.1', '', 'Ján', 'Novák', '', ''"),
                                 QStringLiteral("NULL"), QStringLiteral("NULL, NULL, ''"),
                                 QStringLiteral("1, 7, 1, 1"))};
    expected += pamListRead() + pamListWritten("77,30021") + pamRow(30021, uid, 1);
    expected += uidAsked(30021);
    expected += membershipInPlace(30021, uid, 202406) + planWritten(11, uid, 202406);
    expected += insert(QStringLiteral("'30021', '3002.1', '', 'Ján', 'Novák', '', 'B'"),
                       QStringLiteral("NULL"), QStringLiteral("NULL, NULL, ''"),
                       QStringLiteral("1, 7, 2, 2"));
    expected += pamListRead() + pamRow(30021, uid, 1);
    expected += QStringLiteral(
        "warning THRWorker::doSyncRecord(3002.1 Novák Ján (S: 200, K: 2 from 1 Jun 2024) N-V: "
        "1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0) - dbAddPersonIntoPam(30021, 1) "
        "FAILED!");
    expected += secondBranchAsked(30021, uid, 202406) + planWritten(22, uid, 202406);
    QCOMPARE(events.mid(0, expected.size()), expected);
    // Then both branches, in no order.
    const QStringList joined = secondBranchJoined(uid, uid, uid);
    const int second = events.indexOf(joined.at(0));
    QVERIFY(second >= expected.size());
    QCOMPARE(events.mid(second, joined.size()), joined);

    // The second line takes the phone, the first one calendar and branch of the row.
    QCOMPARE(company.personRow(QStringLiteral("phone, calendarID, bid, did"), uid),
             lines({"B|1|1|1"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT bid, uid FROM brape ORDER BY bid")),
             (QStringList {QStringLiteral("1|") + uid, QStringLiteral("2|") + uid}));
    QCOMPARE(company.rows(QStringLiteral("SELECT since, gid FROM groups_plan")),
             lines({"202406|22"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT COUNT(*) FROM people_pam")), lines({"1"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT value FROM vars "
                                         "WHERE name='exportPam.1.selPeople'")),
             lines({"77,30021"}));
}

void tst_DaysBranch::testMode_keepsThePersonAndWritesTheRest_data()
{
    QTest::addColumn<uint>("level");
    QTest::addColumn<uint>("number");
    QTest::newRow("level 0") << 0u << 3100u;
    QTest::newRow("level 1") << 1u << 3110u;
}

void tst_DaysBranch::testMode_keepsThePersonAndWritesTheRest()
{
    QFETCH(uint, level);
    QFETCH(uint, number);

    const QDate day(2024, 5, 14);
    const QDate may(2024, 5, 1);
    const QString uid = QStringLiteral("111");
    const uint known = number + 1;
    const uint knownPid = known * 10 + 1;
    const uint unknown = number + 2;
    const uint unknownPid = unknown * 10 + 1;
    CompanyDays company(*database, *clock);
    company.settle(111, known);
    company.execute(QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (111, %1, 1)")
                        .arg(seconds(QDate(2024, 5, 2))));
    company.setTime(day);
    company.calculate();
    company.restartWorker(static_cast<quint8>(level));
    company.worker->worker.setTestMode(true);
    const RecordBuilder employee = record().branch(200).calendar(2, may).supervisor(9001).balance(
        18);
    const QStringList events = company.pass(
        {RecordBuilder(employee).pid(known, 1).phone(QStringLiteral("0905")).line(),
         RecordBuilder(employee).pid(unknown, 1).line()});

    QStringList expected = fundChecks(knownPid, 111) + balanceRead(knownPid, may);
    expected += correction(111, 1800, day);
    expected += adminAsked(9001);
    expected += uidAsked(knownPid);
    expected += markMoved(1, uid) + secondBranchAsked(knownPid, uid, 202405)
        + planWritten(22, uid, 202405) + reopening(uid, may) + reopening(uid, QDate(2024, 4, 1));
    // The other one has no row, and nothing finds him.
    expected += fundChecksOfNobody(unknownPid);
    expected += adminAsked(9001);
    expected += uidAsked(unknownPid);
    expected += uidAsked(unknownPid);
    expected += secondBranchAsked(unknownPid, QStringLiteral("0"), 202405);
    expected += secondBranchJoined(QStringLiteral("111,0"), QStringLiteral("111, 0"), uid);
    QCOMPARE(events.filter(QRegularExpression(QStringLiteral("^sql "))), expected);

    const QString supervised
        = QStringLiteral("warning THRWorker - zamestnanec s osobnym cislom %1 nebol najdeny!")
              .arg(unknownPid);
    const QString record = QStringLiteral("%1.1 Novák Ján (S: 200, K: 2 from 1 May 2024) N-V: "
                                          "1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 18 NOC: "
                                          "9001");
    const QString unplanned = QStringLiteral(
                                  "warning THRWorker: can't add record '%1' into [groups_plan]!")
                                  .arg(record.arg(unknown));
    QStringList said {supervised, unplanned};
    if (level == 1) {
        const QString personal = QStringLiteral("(%1.1  Ján Novák  (T: %2) N-V: 1 Mar 2015 -  "
                                                "TPP: 11  K: 2  DOV: 18, S: 200)");
        const auto mark = [&](const char *operation, int affected) {
            return QStringLiteral("debug THRWorker::%1(aid: 1, uid: 111) - affected: %2")
                .arg(QString::fromLatin1(operation))
                .arg(affected);
        };
        said = QStringList {
            QStringLiteral("info THRWorker::dbCheckFundMove(pid: %1): OK - non exists")
                .arg(knownPid),
            QStringLiteral("info THRWorker::dbCheckAttendance(pid: %1): OK").arg(knownPid),
            QStringLiteral("debug THRWorker::dbUpdatePerson")
                + personal.arg(known).arg(QStringLiteral("0905")),
            QStringLiteral("warning THRWorker::dbUpdatePerson(%1) - Testing mode is active, person "
                           "not really update!")
                .arg(record.arg(known)),
            QStringLiteral("info THRWorker::loadFundStatusAndMove3(pid: %1): 0, load OK: YES")
                .arg(knownPid),
            QStringLiteral("debug THRWorker::writeFundMove3(uid: 111, value: 1800)"),
            QStringLiteral("debug THRWorker::processNadOsCis(%1.1, NOC: 9001)").arg(known),
            QStringLiteral("debug THRWorker::dbGetAidByOsCis(uid: 9001): 1"),
            mark("dbResetAdminPeopleRequest", 0),
            mark("dbSetAdminPeopleRequest", 1),
            QStringLiteral("info THRWorker::dbCheckFundMove(pid: %1): OK - non exists")
                .arg(unknownPid),
            QStringLiteral("info THRWorker::dbCheckAttendance(pid: %1): NO OK").arg(unknownPid),
            QStringLiteral("debug THRWorker::dbAddPerson") + personal.arg(unknown).arg(QString()),
            QStringLiteral("warning THRWorker::dbAddPerson(%1.1) - Testing mode is active, person "
                           "not really add!")
                .arg(unknown),
            QStringLiteral("debug THRWorker::dbAddPersonIntoPam(pid: %1, pamSettingsID: 1)")
                .arg(unknownPid),
            QStringLiteral("warning THRWorker::dbAddPersonIntoPam(pid: %1, pamSettingsID: 1) - "
                           "Testing mode is active, person not really add into PaM!")
                .arg(unknownPid),
            QStringLiteral("debug THRWorker::processNadOsCis(%1.1, NOC: 9001)").arg(unknown),
            QStringLiteral("debug THRWorker::dbGetAidByOsCis(uid: 9001): 1"),
            supervised,
            unplanned,
            QStringLiteral("info BranchesRepository::addPeopleToBranch(2, '111,0')"),
            QStringLiteral("info BranchesRepository::slotAddedPeopleToBranch(2, '111,0')"),
            QStringLiteral("info BranchesRepository::getTids4Branch(2)"),
            QStringLiteral("info BranchesRepository::getAids4Branch(2)")};
    }
    QCOMPARE(events.filter(QRegularExpression(QStringLiteral("^(?!sql )"))), said);

    // The row is as it was but for its mark of the calculation.
    QCOMPARE(company.rows(QStringLiteral("SELECT uid, phone, edited, editor, bid, calendarID, "
                                         "lastCalc FROM people")),
             QStringList {QStringLiteral("111||6|7|1|1|") + seconds(QDate(2024, 3, 31))});
    QCOMPARE(company.rows(QStringLiteral("SELECT ok FROM atten")), lines({"-1"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT uid, type, day, value FROM funds_move")),
             QStringList {QStringLiteral("111|3|") + at(day, "|1800")});
    QCOMPARE(company.marks(uid), lines({"1|1", "3|0"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT bid, uid FROM brape ORDER BY bid")),
             lines({"1|111", "2|111"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT tid, uid FROM people_term ORDER BY tid")),
             lines({"1|111", "2|111"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT since, gid FROM groups_plan ORDER BY since")),
             lines({"0|11", "202405|22"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT uid, month, gid FROM groups_month")),
             lines({"111|202405|22"}));
    QCOMPARE(company.takeQueue(), lines({"2|I|people_term|111"}));
    QCOMPARE(company.rows(QStringLiteral("SELECT * FROM people_pam")), QStringList());
    QCOMPARE(company.rows(QStringLiteral("SELECT value FROM vars "
                                         "WHERE name='exportPam.1.selPeople'")),
             lines({"77"}));
}

QTEST_GUILESS_MAIN(tst_DaysBranch)
#include "tst_daysbranch.moc"
