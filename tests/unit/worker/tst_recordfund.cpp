// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When the leave fund of one record is asked, corrected and tried again.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/machineclock.h"
#include "support/workerfixture.h"

#include <QtTest>

#include <limits>

// Found uids last as long as the process: each function, and each row of data, has a person of its
// own wherever attendance is reopened.

namespace {

/// A day in the middle of a month.
QDateTime someDay()
{
    return QDateTime(QDate(2024, 3, 15), QTime(14, 30, 5));
}

QString askingMove(uint pid)
{
    return QStringLiteral("sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                          "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 7 AND "
                          "uid=(SELECT uid FROM people WHERE pid = %1);")
        .arg(pid);
}

QString askingAttendance(uint pid)
{
    return QStringLiteral("sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE "
                          "a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc FROM people p WHERE "
                          "pid = %1")
        .arg(pid);
}

QString askingOpenDays()
{
    return QStringLiteral("sql exec SELECT COUNT(*) FROM atten WHERE uid = 41 AND `lock`=0 AND "
                          "ok < 0 AND date >= midnightFromTs(UNIX_TIMESTAMP())");
}

/// What is asked of a person who can be found.
QStringList checks(uint pid)
{
    return {askingMove(pid), askingAttendance(pid), askingOpenDays()};
}

QString askingBefore(uint pid, const QDate &monthBegin = QDate(2024, 3, 1))
{
    return QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                          "USING(uid) WHERE fm.day < %1  AND fm.fid = 7 AND p.pid = %2")
        .arg(localSeconds(monthBegin))
        .arg(pid);
}

QString askingCorrections(uint pid, const QDate &monthBegin = QDate(2024, 3, 1))
{
    return QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                          "USING(uid) WHERE fm.type=3 AND fm.day >= %1 AND "
                          "fm.day < midnightFromTs(UNIX_TIMESTAMP()) AND fm.fid = 7 AND "
                          "p.pid = %2")
        .arg(localSeconds(monthBegin))
        .arg(pid);
}

QStringList sums(uint pid)
{
    return {askingBefore(pid), askingCorrections(pid)};
}

QString writing(int value, const QDate &day = QDate(2024, 3, 15))
{
    return QStringLiteral("sql exec INSERT INTO funds_move (type, day, month, value, fid, uid) "
                          "VALUES(3, %1, monthFromTimestamp(%1), %2, 7, 41) "
                          "ON DUPLICATE KEY UPDATE value=VALUES(value)")
        .arg(localSeconds(day))
        .arg(value);
}

QString askingUid(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid);
}

QString reopeningDays(uint uid, const QDate &since = QDate(2024, 2, 1))
{
    return QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                          "`date` >= %1 AND uid =%2")
        .arg(localSeconds(since))
        .arg(uid);
}

QString movingMark(uint uid, const QDate &dayBefore = QDate(2024, 1, 31))
{
    return QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 WHERE "
                          "lastCalc > %1 AND uid=%2")
        .arg(localSeconds(dayBefore))
        .arg(uid);
}

/// Attendance of a person whose uid is not known yet.
QStringList reopening(uint pid, uint uid = 41)
{
    return {askingUid(pid), reopeningDays(uid), movingMark(uid)};
}

/// A whole correction, from the checks on.
QStringList correcting(uint pid, int value)
{
    return checks(pid) + sums(pid) + QStringList {writing(value)} + reopening(pid);
}

/// As a message states a record() of this personal number.
QString shown(uint number, const char *assignment, const char *balance, uint supervisor = 0)
{
    return QStringLiteral("%1.1 Novák Ján (%2) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                          "DOV: %3 NOC: %4")
        .arg(QString::number(number), QString::fromUtf8(assignment), QString::fromUtf8(balance),
             QString::number(supervisor));
}

QString noBranch(const QString &employee)
{
    return QStringLiteral("warning THRWorker: Branch '9' NOT FOUND for employee: '%1'")
        .arg(employee);
}

QString notWritten(int value, uint pid)
{
    return QStringLiteral("warning THRWorker::doSyncRecord() - funds_move type (type=3, valeu=%1) "
                          "not writed for uid 41 (pid: %2)")
        .arg(value)
        .arg(pid);
}

/// record() of a personal number; the pid has one more digit.
RecordBuilder employee(uint number)
{
    return record().pid(number, 1);
}

/// A worker that has found the fund 7. Every person's uid is 41, attendance is at rest, no
/// correction of today exists, the fund holds nothing, and what is written stands. The row of a
/// person and the last file are as told; without, nothing is known of him.
class Fund : public WorkerFixture
{
public:
    Fund() :
        clock(someDay())
    {
        peer.fundId = 7;
        // Before the moves of today: their statement holds this one.
        answer("SELECT uid FROM people", 41);
        movesOfToday(0);
        attendance(0);
        script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(1);
    }

    explicit Fund(const EmployeeRecord &both) :
        Fund()
    {
        known(both);
        stated(both);
    }

    void movesOfToday(int count) { answer("SELECT COUNT(*) FROM funds_move", count); }
    /// So many days of the person wait for their calculation.
    void attendance(int uncalculated)
    {
        script.on(QStringLiteral("uncalc FROM people"))
            .withRows({QStringLiteral("uid"), QStringLiteral("calc"), QStringLiteral("uncalc")},
                      {{41, 0, uncalculated}});
    }
    void nobody()
    {
        script.on(QStringLiteral("uncalc FROM people"))
            .withRows({QStringLiteral("uid"), QStringLiteral("calc"), QStringLiteral("uncalc")},
                      {});
    }
    void fundHolds(int before, int corrections = 0)
    {
        answer("WHERE fm.day <", double(before));
        answer("WHERE fm.type=3", double(corrections));
    }
    void fails(const char *text, int times = -1)
    {
        script.on(QString::fromUtf8(text), times)
            .withError(QStringLiteral("1146"), QStringLiteral("no table"));
    }

    MachineClock clock;
};

} // namespace

class tst_RecordFund : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fundIsLookedFor_oncePerPassBeforeTheFirstRecord();
    void noFund_noStatementAndNoMemory_data();
    void noFund_noStatementAndNoMemory();
    void fundWithId65536_isNone();
    void fundWithId65543_isTheFund7();

    void correction_levels_data() { addLevels(); }
    void correction_levels();
    void correction_comesAfterTheUpdateAndBeforeTheSupervisor();
    void bothChecks_runForEveryRecord_data();
    void bothChecks_runForEveryRecord();

    void fundStep_runsWhen_data();
    void fundStep_runsWhen();
    void fundStep_ofTheFirstRecord();
    void fundStep_ofAnEndedPerson();
    void fundStep_runsInTestMode();
    void fundStep_runsThoughTheUpdateFailed();
    void unchangedRecord_nothingBeyondTheChecks();

    void difference_isCutTowardZero_data();
    void difference_isCutTowardZero();
    void difference_againstTheFund_data();
    void difference_againstTheFund();
    void difference_zeroWritesNothing_data();
    void difference_zeroWritesNothing();
    void difference_zeroKeepsNeedForRecalculation();
    void balanceThatIsNoNumber_differsAtEveryPass();

    void failedChecks_areRemembered_data();
    void failedChecks_areRemembered();
    void failedChecks_ofOnePersonOnly();
    void passedChecks_makeAnEntryToo();
    void pendingFund_waitsForBothChecks();
    void pendingFund_runsOnce();
    void pendingFund_makesTheRecordCountAsChanged();
    void pendingFund_ofAPersonWhoIsNoLongerActive();

    void newPerson_getsTheBalanceAtTheNextPass();
    void inactivePerson_isAddedWithoutTheBalance();
    void unknownPerson_whoHasEndedStaysPending();

    void unreadableSums_noCorrection_data();
    void unreadableSums_noCorrection();
    void unreadableSums_keepNeedForRecalculation();
    void unreadableSums_areNotRetried();
    void unwrittenMove_noCorrection_data();
    void unwrittenMove_noCorrection();
    void unwrittenMove_keepsNeedForRecalculation();
    void unwrittenMove_isNotRetried();
    void eachFailingStatement_data();
    void eachFailingStatement();

    void recalculation_ofAnUnusableRow();
    void recalculation_asksForTheUidAnew();
    void recalculation_ofAPersonWithoutUid();
    void recalculation_rowTakesTheBalance();
    void recalculation_fromTheMonthBefore_data();
    void recalculation_fromTheMonthBefore();
    void passThatCrossesMidnight_usesBothDays();
    void secondLine_isCorrectedAgainWhileTheChecksPass();
    void secondLine_waitsAfterTheFirstWasWritten();

    void supervisorThatDisappearsIsNoChange();
};

// The fund

void tst_RecordFund::fundIsLookedFor_oncePerPassBeforeTheFirstRecord()
{
    Fund f;
    f.answer("FROM funds WHERE", 7);
    f.peer.fundId = 0;
    for (const uint number : {6001u, 6002u}) {
        f.known(employee(number));
        f.stated(employee(number));
        f.peer.importedRecords.append(employee(number));
    }
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;",
                    "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;"})
                 + checks(60011) + checks(60021));
}

void tst_RecordFund::noFund_noStatementAndNoMemory_data()
{
    QTest::addColumn<bool>("forced");
    QTest::newRow("ordinary pass") << false;
    QTest::newRow("forced pass") << true;
}

void tst_RecordFund::noFund_noStatementAndNoMemory()
{
    QFETCH(bool, forced);
    Fund f(employee(6010));
    f.peer.fundId = 0;
    f.peer.forceSync = forced;
    f.worker.setLogLevel(2);
    QCOMPARE(f.sync(employee(6010).balance(12.5)), QStringList());
    QVERIFY(f.peer.fundRetry.isEmpty());
    QVERIFY(f.peer.lastRecords.value(60101) == employee(6010).balance(12.5).build());
}

void tst_RecordFund::fundWithId65536_isNone()
{
    Fund f(employee(6011));
    f.peer.fundId = 0;
    f.answer("FROM funds WHERE", 65536);
    f.peer.importedRecords.append(employee(6011).balance(12.5));
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;",
                    "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;"}));
    QVERIFY(f.peer.fundRetry.isEmpty());
}

void tst_RecordFund::fundWithId65543_isTheFund7()
{
    Fund f(employee(6012));
    f.peer.fundId = 0;
    f.answer("FROM funds WHERE", 65543);
    f.peer.importedRecords.append(employee(6012).balance(12.5));
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;",
                    "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;"})
                 + correcting(60121, 1250));
}

// The order of events

void tst_RecordFund::correction_levels()
{
    QFETCH(int, level);
    const uint number = 6020 + static_cast<uint>(level);
    const uint pid = number * 10 + 1;
    Fund f(employee(number));
    f.fundHolds(1000, 34);
    f.worker.setLogLevel(static_cast<quint8>(level));
    const auto ofPid = [pid](const char *text) { return QString::fromUtf8(text).arg(pid); };
    QCOMPARE(
        f.sync(employee(number).balance(12.5)),
        atLevel(level,
                QStringList {
                    QStringLiteral("3 debug THRWorker::doSyncRecord(%1)")
                        .arg(shown(number, "S: 0, K: 0 from ", "12.5")),
                    ofPid("2 debug THRWorker::dbCheckFundMove(pid: %1)"), askingMove(pid),
                    ofPid("1 info THRWorker::dbCheckFundMove(pid: %1): OK - non exists"),
                    ofPid("2 debug THRWorker::dbCheckAttendance(pid: %1)"), askingAttendance(pid),
                    askingOpenDays(), ofPid("1 info THRWorker::dbCheckAttendance(pid: %1): OK"),
                    ofPid("2 debug THRWorker::loadFundStatusAndMove3(pid: %1)"), askingBefore(pid),
                    askingCorrections(pid),
                    ofPid("1 info THRWorker::loadFundStatusAndMove3(pid: %1): 1034, load OK: YES"),
                    QStringLiteral("1 debug THRWorker::writeFundMove3(uid: 41, value: 216)"),
                    writing(216), ofPid("2 debug THRWorker::dbGetUidByPid(%1)"), askingUid(pid),
                    QStringLiteral("2 debug THRWorker::dbChangeLastCalc(41, 1 Feb 2024)"),
                    reopeningDays(41), movingMark(41)}));
}

void tst_RecordFund::correction_comesAfterTheUpdateAndBeforeTheSupervisor()
{
    Fund f(employee(6030));
    QCOMPARE(
        f.sync(employee(6030).phone(QStringLiteral("111")).balance(12.5).supervisor(5).branch(9)),
        (checks(60301)
         + QStringList {QStringLiteral(
                            "sql exec UPDATE people SET pamId=6030.1, title='', name='Ján', "
                            "surname='Novák', title2='', phone='111', begin=%1, end=NULL, "
                            "edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, rsEnd=NULL, "
                            "rsText='', type=1, did=1, calendarID=0, bid=NULL  "
                            "WHERE pid=60301")
                            .arg(localSeconds(QDate(2015, 3, 1)))}
         + sums(60301)
         + QStringList {writing(1250),
                        QStringLiteral("sql exec SELECT aid FROM admins WHERE "
                                       "personalNumber = 5"),
                        QStringLiteral("warning THRWorker - admin s osobnym cislom 5 nebol "
                                       "najdeny!"),
                        noBranch(shown(6030, "S: 9, K: 0 from ", "12.5", 5))}
         + reopening(60301)));
}

void tst_RecordFund::bothChecks_runForEveryRecord_data()
{
    QTest::addColumn<int>("moves");
    QTest::addColumn<int>("uncalculated");
    QTest::newRow("both pass") << 0 << 0;
    QTest::newRow("correction of today") << 1 << 0;
    QTest::newRow("attendance at work") << 0 << 1;
    QTest::newRow("neither passes") << 1 << 1;
}

void tst_RecordFund::bothChecks_runForEveryRecord()
{
    QFETCH(int, moves);
    QFETCH(int, uncalculated);
    Fund f(employee(6031));
    f.movesOfToday(moves);
    f.attendance(uncalculated);
    QCOMPARE(f.sync(employee(6031)),
             uncalculated == 0 ? checks(60311)
                               : (QStringList {askingMove(60311), askingAttendance(60311)}));
    QCOMPARE(f.peer.fundRetry.value(60311), moves + uncalculated > 0);
}

// When the balance is brought into line

void tst_RecordFund::fundStep_runsWhen_data()
{
    QTest::addColumn<bool>("passes");
    QTest::addColumn<bool>("forced");
    QTest::addColumn<bool>("differs");
    QTest::addColumn<bool>("pending");
    for (int bits = 0; bits < 16; ++bits) {
        QStringList name;
        for (int bit = 0; bit < 4; ++bit) {
            if (bits & (1 << bit))
                name.append(lines({"passes", "forced", "differs", "pending"}).at(bit));
        }
        QTest::newRow(name.isEmpty() ? "none" : qPrintable(name.join(QLatin1Char(' '))))
            << ((bits & 1) != 0) << ((bits & 2) != 0) << ((bits & 4) != 0) << ((bits & 8) != 0);
    }
}

void tst_RecordFund::fundStep_runsWhen()
{
    QFETCH(bool, passes);
    QFETCH(bool, forced);
    QFETCH(bool, differs);
    QFETCH(bool, pending);
    Fund f(employee(6040).balance(12.5));
    if (differs)
        f.stated(employee(6040).balance(12));
    f.movesOfToday(passes ? 0 : 1);
    f.peer.forceSync = forced;
    f.peer.fundRetry.insert(60401, pending);
    f.fundHolds(1250); // what is examined is in line
    const bool runs = passes && (forced || differs || pending);
    QCOMPARE(f.sync(employee(6040).balance(12.5)),
             checks(60401) + (runs ? sums(60401) : QStringList()));
    QCOMPARE(f.peer.fundRetry.value(60401), !passes);
}

void tst_RecordFund::fundStep_ofTheFirstRecord()
{
    Fund f;
    f.known(employee(6041));
    QStringList events = f.sync(employee(6041).balance(12.5));
    QCOMPARE(events.filter(QStringLiteral("UPDATE people SET pamId=6041.1, ")).size(), 1);
    events.removeAt(3);
    QCOMPARE(events, correcting(60411, 1250));
    QCOMPARE(f.peer.fundRetry.value(60411, true), false);
}

void tst_RecordFund::fundStep_ofAnEndedPerson()
{
    Fund f(employee(6042).relationState(4).branch(9));
    QCOMPARE(f.sync(employee(6042).relationState(4).branch(9).balance(12.5)),
             correcting(60421, 1250));
}

void tst_RecordFund::fundStep_runsInTestMode()
{
    Fund f(employee(6043));
    f.worker.setTestMode(true);
    // The update of the person writes nothing, while fund and attendance are written.
    QCOMPARE(f.sync(employee(6043).phone(QStringLiteral("111")).balance(12.5)),
             correcting(60431, 1250));
}

void tst_RecordFund::fundStep_runsThoughTheUpdateFailed()
{
    Fund f(employee(6044));
    f.fails("UPDATE people SET pamId");
    QStringList events = f.sync(employee(6044).phone(QStringLiteral("111")).balance(12.5));
    QCOMPARE(events.value(4),
             QStringLiteral("critical THRWorker::dbUpdatePerson(6044.1) - SQL ERROR: no table "
                            "(scripted)"));
    events.removeAt(4);
    events.removeAt(3);
    QCOMPARE(events, correcting(60441, 1250));
}

void tst_RecordFund::unchangedRecord_nothingBeyondTheChecks()
{
    const RecordBuilder given = employee(6045).balance(12.5).branch(9).supervisor(5);
    Fund f(given);
    QCOMPARE(f.sync(given), checks(60451));
    QCOMPARE(f.sync(given), checks(60451));
    QVERIFY(f.peer.waitingRecords.isEmpty());
    // One that has waited for its branch is tried again all the same.
    f.peer.waitingRecords.append(given);
    QCOMPARE(f.sync(given),
             checks(60451) + QStringList {noBranch(shown(6045, "S: 9, K: 0 from ", "12.5", 5))});
}

// The difference

void tst_RecordFund::difference_isCutTowardZero_data()
{
    const int least = std::numeric_limits<int>::min();
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::addColumn<uint>("number");
    QTest::addColumn<double>("balance");
    QTest::addColumn<int>("hundredths");
    uint number = 6100;
    const auto add = [&number](const char *name, double balance, int hundredths) {
        QTest::newRow(name) << ++number << balance << hundredths;
    };
    add("12.5", 12.5, 1250);
    add("12.34", 12.34, 1234);
    add("0.29", 0.29, 28);
    add("-0.29", -0.29, -28);
    add("4.35", 4.35, 434);
    add("1.15", 1.15, 114);
    add("0.019", 0.019, 1);
    add("-0.019", -0.019, -1);
    add("largest", 21474836.47, 2147483647);
    add("a part of a hundredth above the largest", 21474836.475, 2147483647);
    add("above the largest", 21474836.48, least);
    add("smallest", -21474836.48, least);
    add("just inside the smallest", -21474836.47, -2147483647);
    add("a part of a hundredth below the smallest", -21474836.485, least);
    add("below the smallest", -21474836.49, least);
    add("1e300", 1e300, least);
    add("-1e300", -1e300, least);
    add("largest double", std::numeric_limits<double>::max(), least);
    add("infinite", infinity, least);
    add("infinite downwards", -infinity, least);
    add("no number", std::numeric_limits<double>::quiet_NaN(), least);
}

void tst_RecordFund::difference_isCutTowardZero()
{
    QFETCH(uint, number);
    QFETCH(double, balance);
    QFETCH(int, hundredths);
    Fund f(employee(number));
    QCOMPARE(f.sync(employee(number).balance(balance)), correcting(number * 10 + 1, hundredths));
}

void tst_RecordFund::difference_againstTheFund_data()
{
    QTest::addColumn<uint>("number");
    QTest::addColumn<double>("balance");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("corrections");
    QTest::addColumn<int>("difference");
    QTest::newRow("more") << 6151u << 12.5 << 1000 << 0 << 250;
    QTest::newRow("less") << 6152u << 12.5 << 2000 << 0 << -750;
    QTest::newRow("a hundredth") << 6153u << 12.34 << 1233 << 0 << 1;
    QTest::newRow("with corrections") << 6154u << 12.5 << 1000 << 50 << 200;
    QTest::newRow("debt") << 6155u << -1.0 << -300 << 50 << 150;
    QTest::newRow("emptied") << 6156u << 0.0 << 1250 << 0 << -1250;
    QTest::newRow("wraps upwards")
        << 6157u << 21474836.47 << -1 << 0 << std::numeric_limits<int>::min();
    QTest::newRow("wraps downwards") << 6158u << 1e300 << 1 << 0 << std::numeric_limits<int>::max();
    QTest::newRow("wraps right around")
        << 6159u << 1e300 << std::numeric_limits<int>::max() << 0 << 1;
}

void tst_RecordFund::difference_againstTheFund()
{
    QFETCH(uint, number);
    QFETCH(double, balance);
    QFETCH(int, before);
    QFETCH(int, corrections);
    QFETCH(int, difference);
    Fund f(employee(number).balance(99));
    f.fundHolds(before, corrections);
    QCOMPARE(f.sync(employee(number).balance(balance)), correcting(number * 10 + 1, difference));
}

void tst_RecordFund::difference_zeroWritesNothing_data()
{
    QTest::addColumn<double>("balance");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("corrections");
    QTest::newRow("nothing") << 0.0 << 0 << 0;
    QTest::newRow("less than a hundredth") << 0.009 << 0 << 0;
    QTest::newRow("less than a hundredth below zero") << -0.009 << 0 << 0;
    QTest::newRow("the cut balance") << 0.29 << 28 << 0;
    QTest::newRow("both sums") << 12.5 << 1300 << -50;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN()
                               << std::numeric_limits<int>::min() << 0;
}

void tst_RecordFund::difference_zeroWritesNothing()
{
    QFETCH(double, balance);
    QFETCH(int, before);
    QFETCH(int, corrections);
    Fund f(employee(6160).balance(99));
    f.fundHolds(before, corrections);
    QCOMPARE(f.sync(employee(6160).balance(balance)), checks(61601) + sums(61601));
    // Nothing to calculate anew, so the row stays as it was loaded.
    QCOMPARE(f.peer.dbPeople.value(61601).dovolenaZustatek, 99.0);
}

void tst_RecordFund::difference_zeroKeepsNeedForRecalculation()
{
    const RecordBuilder given = employee(6162).calendar(0, QDate(2020, 1, 1));
    Fund f(employee(6162));
    f.stated(given);
    f.fundHolds(1250);
    QCOMPARE(f.sync(RecordBuilder(given).balance(12.5)),
             checks(61621) + sums(61621) + reopening(61621));
}

void tst_RecordFund::balanceThatIsNoNumber_differsAtEveryPass()
{
    const double noNumber = std::numeric_limits<double>::quiet_NaN();
    const int least = std::numeric_limits<int>::min();
    const RecordBuilder given = employee(6161).balance(noNumber);
    Fund f(given);
    QCOMPARE(f.sync(given), correcting(61611, least));
    // It is in line, and is examined again and again.
    f.fundHolds(least);
    QCOMPARE(f.sync(given), checks(61611) + sums(61611));
    QCOMPARE(f.sync(given), checks(61611) + sums(61611));
    // On either side; the uid is known by now.
    QStringList made = correcting(61611, least + 100);
    made.removeAll(askingUid(61611));
    QCOMPARE(f.sync(employee(6161).balance(1)), made);
    QCOMPARE(f.sync(employee(6161).balance(1)), checks(61611));
}

// Another pass

void tst_RecordFund::failedChecks_areRemembered_data()
{
    QTest::addColumn<uint>("number");
    QTest::addColumn<QString>("failing");
    QTest::newRow("correction of today") << 6201u << QStringLiteral("moves");
    QTest::newRow("attendance at work") << 6202u << QStringLiteral("attendance");
    QTest::newRow("nobody") << 6203u << QStringLiteral("nobody");
    QTest::newRow("moves unreadable") << 6204u << QStringLiteral("SELECT COUNT(*) FROM funds_move");
    QTest::newRow("attendance unreadable") << 6205u << QStringLiteral("uncalc FROM people");
}

void tst_RecordFund::failedChecks_areRemembered()
{
    QFETCH(uint, number);
    QFETCH(QString, failing);
    const uint pid = number * 10 + 1;
    Fund f(employee(number));
    if (failing == QLatin1String("moves"))
        f.movesOfToday(1);
    else if (failing == QLatin1String("attendance"))
        f.attendance(1);
    else if (failing == QLatin1String("nobody"))
        f.nobody();
    else
        f.fails(qPrintable(failing));
    // Neither another balance nor force helps.
    f.peer.forceSync = true;
    const QStringList events = f.sync(employee(number).balance(12.5));
    QVERIFY(events.filter(QStringLiteral("SUM(")).isEmpty());
    QVERIFY(events.filter(QStringLiteral("INSERT")).isEmpty());
    QCOMPARE(f.peer.fundRetry.value(pid), true);

    // As soon as both pass, the correction is made up for, although the file is the same.
    f.peer.forceSync = false;
    f.movesOfToday(0);
    f.attendance(0);
    QCOMPARE(f.sync(employee(number).balance(12.5)), correcting(pid, 1250));
    QCOMPARE(f.peer.fundRetry.value(pid, true), false);
}

void tst_RecordFund::failedChecks_ofOnePersonOnly()
{
    Fund f(employee(6206));
    f.known(employee(6207));
    f.stated(employee(6207));
    f.movesOfToday(1);
    f.sync(employee(6206));
    f.movesOfToday(0);
    QCOMPARE(f.sync(employee(6207)), checks(62071));
    QCOMPARE(f.peer.fundRetry, (QHash<uint, bool> {{62061, true}, {62071, false}}));
    QCOMPARE(f.sync(employee(6206)), checks(62061) + sums(62061));
}

void tst_RecordFund::passedChecks_makeAnEntryToo()
{
    Fund f(employee(6208));
    f.sync(employee(6208));
    QVERIFY(f.peer.fundRetry.contains(62081));
    QCOMPARE(f.peer.fundRetry.value(62081, true), false);
}

void tst_RecordFund::pendingFund_waitsForBothChecks()
{
    Fund f(employee(6209));
    f.fundHolds(100);
    f.peer.fundRetry.insert(62091, true);
    f.movesOfToday(1);
    QCOMPARE(f.sync(employee(6209)), checks(62091));
    f.movesOfToday(0);
    f.attendance(1);
    QCOMPARE(f.sync(employee(6209)), (QStringList {askingMove(62091), askingAttendance(62091)}));
    QCOMPARE(f.peer.fundRetry.value(62091), true);
    f.attendance(0);
    QCOMPARE(f.sync(employee(6209)), correcting(62091, -100));
}

void tst_RecordFund::pendingFund_runsOnce()
{
    Fund f(employee(6210));
    f.peer.fundRetry.insert(62101, true);
    QCOMPARE(f.sync(employee(6210)), checks(62101) + sums(62101));
    QCOMPARE(f.sync(employee(6210)), checks(62101));
    // What failed before is forgotten once the checks have passed, whatever follows.
    f.peer.fundRetry.insert(62101, true);
    f.fails("SUM(fm.value)", 2);
    f.sync(employee(6210));
    QCOMPARE(f.sync(employee(6210)), checks(62101));
}

void tst_RecordFund::pendingFund_makesTheRecordCountAsChanged()
{
    Fund f(employee(6211).branch(9));
    f.peer.fundRetry.insert(62111, true);
    // Branch and calendar are gone through as for any changed record.
    QCOMPARE(f.sync(employee(6211).branch(9)),
             checks(62111) + sums(62111)
                 + QStringList {noBranch(shown(6211, "S: 9, K: 0 from ", "0"))});
    QCOMPARE(f.peer.waitingRecords.size(), 1);
}

void tst_RecordFund::pendingFund_ofAPersonWhoIsNoLongerActive()
{
    // The row exists, so the checks pass, but it was not loaded.
    Fund f;
    f.stated(employee(6212));
    f.peer.fundRetry.insert(62121, true);
    f.script.on(QStringLiteral("INSERT INTO people (")).withAffected(2);
    const QStringList events = f.sync(employee(6212));
    QCOMPARE(events.mid(0, 3), checks(62121));
    QVERIFY(events.value(3).startsWith(QStringLiteral("sql exec INSERT INTO people (pid, ")));
    QVERIFY(events.filter(QStringLiteral("SUM(")).isEmpty());
    QVERIFY(f.log.take().isEmpty());
}

// Persons whom the pass does not know

void tst_RecordFund::newPerson_getsTheBalanceAtTheNextPass()
{
    const RecordBuilder given = employee(6220).balance(12.5);
    Fund f;
    f.nobody();
    f.script.on(QStringLiteral("INSERT INTO people (")).withInsertId(41).withAffected(1);
    const QStringList events = f.sync(given);
    QCOMPARE(events.mid(0, 2), (QStringList {askingMove(62201), askingAttendance(62201)}));
    QVERIFY(events.value(2).startsWith(QStringLiteral("sql exec INSERT INTO people (pid, ")));
    QVERIFY(events.filter(QStringLiteral("SUM(")).isEmpty());
    QCOMPARE(f.peer.fundRetry.value(62201), true);

    f.known(employee(6220));
    f.attendance(0);
    QCOMPARE(f.sync(given), correcting(62201, 1250));
}

void tst_RecordFund::inactivePerson_isAddedWithoutTheBalance()
{
    const RecordBuilder given = employee(6221).balance(12.5);
    Fund f;
    f.script.on(QStringLiteral("INSERT INTO people (")).withInsertId(41).withAffected(2);
    const QStringList events = f.sync(given);
    QCOMPARE(events.mid(0, 3), checks(62211));
    QVERIFY(events.value(3).startsWith(QStringLiteral("sql exec INSERT INTO people (pid, ")));
    QVERIFY(events.filter(QStringLiteral("SUM(")).isEmpty());
    // The checks have passed: nothing is made up for until balance or force asks.
    QCOMPARE(f.peer.fundRetry.value(62211, true), false);
    f.known(employee(6221));
    QCOMPARE(f.sync(given), checks(62211));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(given), correcting(62211, 1250));
}

void tst_RecordFund::unknownPerson_whoHasEndedStaysPending()
{
    const RecordBuilder given = employee(6222).relationState(4).balance(12.5);
    Fund f;
    f.nobody();
    const QStringList asked {askingMove(62221), askingAttendance(62221)};
    QCOMPARE(f.sync(given), asked);
    QCOMPARE(f.sync(given), asked);
    QCOMPARE(f.peer.fundRetry.value(62221), true);
}

// Failures

void tst_RecordFund::unreadableSums_noCorrection_data()
{
    QTest::addColumn<QString>("failing");
    QTest::addColumn<bool>("first");
    QTest::addColumn<bool>("second");
    QTest::newRow("moves before this month") << QStringLiteral("WHERE fm.day <") << true << false;
    QTest::newRow("corrections of this month")
        << QStringLiteral("WHERE fm.type=3") << false << true;
    QTest::newRow("both") << QStringLiteral("SUM(fm.value)") << true << true;
}

void tst_RecordFund::unreadableSums_noCorrection()
{
    QFETCH(QString, failing);
    QFETCH(bool, first);
    QFETCH(bool, second);
    Fund f(employee(6301));
    f.fails(qPrintable(failing));
    const QString error = QStringLiteral("critical THRWorker::loadFundStatusAndMove3() - "
                                         "SQL %1 ERROR [1146]: no table (scripted)");
    QStringList expected = checks(63011);
    expected += askingBefore(63011);
    if (first)
        expected += error.arg(1);
    expected += askingCorrections(63011);
    if (second)
        expected += error.arg(2);
    expected += QStringLiteral("warning THRWorker::doSyncRecord() - loadFundStatusAndMove3(): "
                               "not loaded correctly!");
    // The steps go on: the supervisor comes next.
    expected += QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = 5");
    expected += QStringLiteral("warning THRWorker - admin s osobnym cislom 5 nebol najdeny!");
    QCOMPARE(f.sync(employee(6301).balance(12.5).supervisor(5)), expected);
    QVERIFY(f.peer.lastRecords.value(63011) == employee(6301).balance(12.5).supervisor(5).build());
    QCOMPARE(f.peer.dbPeople.value(63011).dovolenaZustatek, 0.0);
}

void tst_RecordFund::unreadableSums_keepNeedForRecalculation()
{
    Fund f(employee(6302));
    f.stated(employee(6302).calendar(0, QDate(2020, 1, 1)));
    f.fails("WHERE fm.day <");
    QCOMPARE(f.sync(employee(6302).calendar(0, QDate(2020, 1, 1)).balance(12.5)),
             (checks(63021)
              + QStringList {askingBefore(63021),
                             QStringLiteral("critical THRWorker::loadFundStatusAndMove3() - "
                                            "SQL 1 ERROR [1146]: no table (scripted)"),
                             askingCorrections(63021),
                             QStringLiteral("warning THRWorker::doSyncRecord() - "
                                            "loadFundStatusAndMove3(): not loaded correctly!")}
              + reopening(63021)));
}

void tst_RecordFund::unreadableSums_areNotRetried()
{
    Fund f(employee(6303));
    f.fails("SUM(fm.value)", 2);
    f.sync(employee(6303).balance(12.5));
    QCOMPARE(f.sync(employee(6303).balance(12.5)), checks(63031));
    // Until something asks for it.
    f.peer.forceSync = true;
    QCOMPARE(f.sync(employee(6303).balance(12.5)), correcting(63031, 1250));
}

void tst_RecordFund::unwrittenMove_noCorrection_data()
{
    QTest::addColumn<bool>("fails");
    QTest::newRow("failure") << true;
    QTest::newRow("no row touched") << false;
}

void tst_RecordFund::unwrittenMove_noCorrection()
{
    QFETCH(bool, fails);
    Fund f(employee(6304));
    f.fundHolds(2000);
    QStringList expected = checks(63041) + sums(63041) + QStringList {writing(-750)};
    if (fails) {
        f.fails("INSERT INTO funds_move");
        expected += QStringLiteral("critical THRWorker::writeFundMove3() - SQL ERROR [1146]: "
                                   "no table (scripted)\n SQL: %1")
                        .arg(writing(-750).remove(QStringLiteral("sql exec ")));
    } else {
        f.script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(0);
    }
    expected += notWritten(-750, 63041);
    // The steps go on: the supervisor comes next.
    expected += QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = 5");
    expected += QStringLiteral("warning THRWorker - admin s osobnym cislom 5 nebol najdeny!");
    QCOMPARE(f.sync(employee(6304).balance(12.5).supervisor(5)), expected);
    QVERIFY(f.peer.lastRecords.value(63041) == employee(6304).balance(12.5).supervisor(5).build());
    QCOMPARE(f.peer.dbPeople.value(63041).dovolenaZustatek, 0.0);
}

void tst_RecordFund::unwrittenMove_keepsNeedForRecalculation()
{
    Fund f(employee(6305));
    f.stated(employee(6305).calendar(0, QDate(2020, 1, 1)));
    f.script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(0);
    QCOMPARE(f.sync(employee(6305).calendar(0, QDate(2020, 1, 1)).balance(12.5)),
             (checks(63051) + sums(63051) + QStringList {writing(1250), notWritten(1250, 63051)}
              + reopening(63051)));
}

void tst_RecordFund::unwrittenMove_isNotRetried()
{
    Fund f(employee(6306));
    f.script.on(QStringLiteral("INSERT INTO funds_move"), 2).withAffected(0);
    f.sync(employee(6306).balance(12.5));
    QCOMPARE(f.sync(employee(6306).balance(12.5)), checks(63061));
    // Another balance, or force, asks for it again.
    QCOMPARE(f.sync(employee(6306).balance(13)),
             (checks(63061) + sums(63061) + QStringList {writing(1300), notWritten(1300, 63061)}));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(employee(6306).balance(13)), correcting(63061, 1300));
}

void tst_RecordFund::eachFailingStatement_data()
{
    QTest::addColumn<uint>("number");
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QStringList>("events");
    const QString unread = QStringLiteral("warning THRWorker::doSyncRecord() - "
                                          "loadFundStatusAndMove3(): not loaded correctly!");
    const auto error = [](const char *place) {
        return QStringLiteral("critical THRWorker::%1 [1146]: no table (scripted)")
            .arg(QString::fromUtf8(place));
    };
    uint pid = 63511;
    const auto add = [&pid](const char *name, const char *failing, const QStringList &events) {
        QTest::newRow(name) << pid / 10 << QString::fromUtf8(failing) << events;
        pid += 10;
    };
    add("correction of today", "SELECT COUNT(*) FROM funds_move",
        {askingMove(pid), error("dbCheckFundMove() - SQL ERROR"), askingAttendance(pid),
         askingOpenDays()});
    add("attendance", "uncalc FROM people",
        {askingMove(pid), askingAttendance(pid), error("dbCheckAttendance() - SQL ERROR")});
    add("open days", "SELECT COUNT(*) FROM atten WHERE uid",
        checks(pid) + QStringList {error("dbCheckAttendance() - SQL ERROR")} + sums(pid)
            + QStringList {writing(1250)} + reopening(pid));
    add("first sum", "WHERE fm.day <",
        checks(pid)
            + QStringList {askingBefore(pid), error("loadFundStatusAndMove3() - SQL 1 ERROR"),
                           askingCorrections(pid), unread});
    add("second sum", "WHERE fm.type=3",
        checks(pid) + sums(pid)
            + QStringList {error("loadFundStatusAndMove3() - SQL 2 ERROR"), unread});
    add("correction", "INSERT INTO funds_move",
        checks(pid) + sums(pid)
            + QStringList {writing(1250),
                           error("writeFundMove3() - SQL ERROR") + QStringLiteral("\n SQL: ")
                               + writing(1250).remove(QStringLiteral("sql exec ")),
                           notWritten(1250, pid)});
    add("uid", "SELECT uid FROM people WHERE pid = %1 LIMIT",
        checks(pid) + sums(pid)
            + QStringList {
                writing(1250), askingUid(pid), error("dbGetUidByPid() - SQL ERROR"),
                QStringLiteral("warning THRWorker: User (employee) ID NOT found for pid "
                               "(Personal ID) %1 [employee: '%2'] - lastCalc not "
                               "changed (manual recalculation is needed)!")
                    .arg(QString::number(pid), shown(pid / 10, "S: 0, K: 0 from ", "12.5"))});
    add("reopening the days", "UPDATE atten",
        checks(pid) + sums(pid)
            + QStringList {writing(1250), askingUid(pid), reopeningDays(41),
                           error("dbChangeLastCalc() [UPDATE atten] - SQL ERROR")});
    add("moving the mark", "UPDATE people set lastCalc",
        correcting(pid, 1250)
            + QStringList {error("dbChangeLastCalc() [UPDATE people] - SQL ERROR")});
}

void tst_RecordFund::eachFailingStatement()
{
    QFETCH(uint, number);
    QFETCH(QString, failing);
    QFETCH(QStringList, events);
    const uint pid = number * 10 + 1;
    Fund f(employee(number));
    if (failing.contains(QStringLiteral("%1")))
        failing = failing.arg(pid);
    f.fails(qPrintable(failing));
    QCOMPARE(f.sync(employee(number).balance(12.5)), events);
    // Remembered in each case: the file has stated it.
    QVERIFY(f.peer.lastRecords.value(pid) == employee(number).balance(12.5).build());
}

// Recalculation

void tst_RecordFund::recalculation_ofAnUnusableRow()
{
    // Without a name it would not be recalculated for a new calendar.
    Fund f;
    f.known(employee(6401).name(QString(), QString()));
    f.stated(employee(6401));
    QStringList events = f.sync(employee(6401).calendar(3).balance(12.5));
    QVERIFY(events.takeAt(3).startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events, correcting(64011, 1250));
    QCOMPARE(f.peer.dbPeople.value(64011).calendarID, 3u);
}

void tst_RecordFund::recalculation_asksForTheUidAnew()
{
    Fund f(employee(6402));
    f.answer("SELECT uid FROM people WHERE pid = 64021 LIMIT", 42);
    QCOMPARE(f.sync(employee(6402).balance(12.5)),
             checks(64021) + sums(64021) + QStringList {writing(1250)} + reopening(64021, 42));
}

void tst_RecordFund::recalculation_ofAPersonWithoutUid()
{
    Fund f(employee(6403));
    f.script.on(QStringLiteral("SELECT uid FROM people WHERE pid = 64031 LIMIT"))
        .withRows({QStringLiteral("uid")}, {});
    QCOMPARE(f.sync(employee(6403).balance(12.5)),
             (checks(64031) + sums(64031)
              + QStringList {writing(1250), askingUid(64031),
                             QStringLiteral("warning THRWorker: User (employee) ID NOT found "
                                            "for pid (Personal ID) 64031 [employee: '%1'] - "
                                            "lastCalc not changed (manual recalculation is "
                                            "needed)!")
                                 .arg(shown(6403, "S: 0, K: 0 from ", "12.5"))}));
}

void tst_RecordFund::recalculation_rowTakesTheBalance()
{
    Fund f(employee(6404).phone(QStringLiteral("111")));
    f.sync(employee(6404)
               .phone(QStringLiteral("222"))
               .branch(0, QStringLiteral("Sklad"))
               .balance(12.5)
               .supervisor(5));
    const EmployeeRecord expected = employee(6404)
                                        .phone(QStringLiteral("111"))
                                        .branch(0, QStringLiteral("Sklad"))
                                        .balance(12.5);
    QVERIFY2(f.peer.dbPeople.value(64041) == expected,
             qPrintable(f.peer.dbPeople.value(64041).toText(false)));
}

void tst_RecordFund::recalculation_fromTheMonthBefore_data()
{
    QTest::addColumn<uint>("number");
    QTest::addColumn<QDate>("today");
    QTest::addColumn<QDate>("since");
    QTest::addColumn<QDate>("dayBefore");
    QTest::newRow("first of January")
        << 6411u << QDate(2024, 1, 1) << QDate(2023, 12, 1) << QDate(2023, 11, 30);
    QTest::newRow("end of January")
        << 6412u << QDate(2024, 1, 31) << QDate(2023, 12, 1) << QDate(2023, 11, 30);
    QTest::newRow("leap day") << 6413u << QDate(2024, 2, 29) << QDate(2024, 1, 1)
                              << QDate(2023, 12, 31);
    QTest::newRow("after a leap day")
        << 6414u << QDate(2024, 3, 31) << QDate(2024, 2, 1) << QDate(2024, 1, 31);
    QTest::newRow("first of a month")
        << 6415u << QDate(2024, 4, 1) << QDate(2024, 3, 1) << QDate(2024, 2, 29);
    QTest::newRow("other clocks") << 6416u << QDate(2024, 11, 15) << QDate(2024, 10, 1)
                                  << QDate(2024, 9, 30);
}

void tst_RecordFund::recalculation_fromTheMonthBefore()
{
    QFETCH(uint, number);
    QFETCH(QDate, today);
    QFETCH(QDate, since);
    QFETCH(QDate, dayBefore);
    const uint pid = number * 10 + 1;
    const QDate monthBegin(today.year(), today.month(), 1);
    Fund f(employee(number));
    f.clock.set(QDateTime(today, QTime(0, 0, 0)));
    QCOMPARE(f.sync(employee(number).balance(12.5)),
             (checks(pid)
              + QStringList {askingBefore(pid, monthBegin), askingCorrections(pid, monthBegin),
                             writing(1250, today), askingUid(pid), reopeningDays(41, since),
                             movingMark(41, dayBefore)}));
}

void tst_RecordFund::passThatCrossesMidnight_usesBothDays()
{
    Fund f(employee(6417));
    f.clock.set(QDateTime(QDate(2024, 3, 31), QTime(23, 59, 59)));
    f.script.on(QStringLiteral("WHERE fm.type=3")).doing([&f] {
        f.clock.set(QDateTime(QDate(2024, 4, 1), QTime(0, 0, 0)));
    });
    QCOMPARE(
        f.sync(employee(6417).balance(12.5)),
        (checks(64171) + sums(64171)
         + QStringList {writing(1250, QDate(2024, 4, 1)), askingUid(64171),
                        reopeningDays(41, QDate(2024, 3, 1)), movingMark(41, QDate(2024, 2, 29))}));
}

void tst_RecordFund::secondLine_isCorrectedAgainWhileTheChecksPass()
{
    Fund f(employee(6405));
    QCOMPARE(f.sync(employee(6405).balance(12.5)), correcting(64051, 1250));
    // The uid is known by now.
    QStringList again = correcting(64051, 1300);
    again.removeAll(askingUid(64051));
    QCOMPARE(f.sync(employee(6405).balance(13)), again);
}

void tst_RecordFund::secondLine_waitsAfterTheFirstWasWritten()
{
    Fund f(employee(6406));
    QCOMPARE(f.sync(employee(6406).balance(12.5)), correcting(64061, 1250));
    f.movesOfToday(1);
    QCOMPARE(f.sync(employee(6406).balance(13)), checks(64061));
    QVERIFY(f.peer.lastRecords.value(64061) == employee(6406).balance(13).build());
    // The next day what waited comes first.
    f.movesOfToday(0);
    f.fundHolds(0, 1250);
    QStringList made = correcting(64061, 50);
    made.removeAll(askingUid(64061));
    QCOMPARE(f.sync(employee(6406).balance(13)), made);
}

// The supervisor

void tst_RecordFund::supervisorThatDisappearsIsNoChange()
{
    Fund f(employee(6501).branch(9).supervisor(5));
    f.peer.fundId = 0;
    // With no supervisor no statement would run in any case: it is the log that tells.
    f.worker.setLogLevel(1);
    const EmployeeRecord without = employee(6501).branch(9).supervisor(0);
    // The record has changed, so branch and calendar are gone through and it is remembered.
    const QStringList branchAlone {noBranch(shown(6501, "S: 9, K: 0 from ", "0"))};
    QCOMPARE(f.sync(without), branchAlone);
    QVERIFY(f.peer.lastRecords.value(65011) == without);
    QCOMPARE(f.peer.waitingRecords.toVector(), QVector<EmployeeRecord> {without});
    // Force does not make it one.
    f.stated(employee(6501).branch(9).supervisor(5));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(without), branchAlone);
    QCOMPARE(f.sync(without), branchAlone);
    f.peer.forceSync = false;
    // One who appears, and another one, are.
    for (const uint supervisor : {6u, 7u}) {
        const auto named = [supervisor](const char *text) {
            return QString::fromUtf8(text).arg(supervisor);
        };
        QCOMPARE(
            f.sync(employee(6501).branch(9).supervisor(supervisor)),
            (QStringList {named("debug THRWorker::processNadOsCis(6501.1, NOC: %1)"),
                          named("sql exec SELECT aid FROM admins WHERE personalNumber = %1"),
                          named("debug THRWorker::dbGetAidByOsCis(uid: %1): 0"),
                          named("warning THRWorker - admin s osobnym cislom %1 nebol najdeny!"),
                          noBranch(shown(6501, "S: 9, K: 0 from ", "0", supervisor))}));
    }
}

QTEST_GUILESS_MAIN(tst_RecordFund)
#include "tst_recordfund.moc"
