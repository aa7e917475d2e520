// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The operations of the leave fund one by one: statements, log lines and results.
#include "support/localseconds.h"
#include "support/loglevels.h"
#include "support/machineclock.h"
#include "support/workerfixture.h"

#include <QtTest>

#include <limits>

namespace {

const char askingFund[] = "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;";
const char askingMove[] = "sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                          "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 7 AND "
                          "uid=(SELECT uid FROM people WHERE pid = 12341);";
const char askingAttendance[]
    = "sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE a.uid = p.uid AND "
      "!a.lock AND a.ok = -1) uncalc FROM people p WHERE pid = 12341";
const char askingOpenDays[]
    = "sql exec SELECT COUNT(*) FROM atten WHERE uid = 41 AND `lock`=0 AND ok < 0 AND "
      "date >= midnightFromTs(UNIX_TIMESTAMP())";

QDateTime afternoon()
{
    return QDateTime(QDate(2024, 3, 15), QTime(14, 30, 5));
}

QStringList askingSums(const QDate &monthBegin)
{
    return {QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.day < %1  AND fm.fid = 7 AND p.pid = 12341")
                .arg(localSeconds(monthBegin)),
            QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.type=3 AND fm.day >= %1 AND "
                           "fm.day < midnightFromTs(UNIX_TIMESTAMP()) AND fm.fid = 7 AND "
                           "p.pid = 12341")
                .arg(localSeconds(monthBegin))};
}

QString writing(const QDate &day, const QString &value)
{
    return QStringLiteral("sql exec INSERT INTO funds_move (type, day, month, value, fid, uid) "
                          "VALUES(3, %1, monthFromTimestamp(%1), %2, 7, 41) "
                          "ON DUPLICATE KEY UPDATE value=VALUES(value)")
        .arg(localSeconds(day))
        .arg(value);
}

/// A worker that has found the fund 7. The person 12341 has the uid 41.
class Fund : public WorkerFixture
{
public:
    explicit Fund(int level = 0)
    {
        peer.fundId = 7;
        worker.setLogLevel(static_cast<quint8>(level));
    }

    ScriptedAnswer &fundIs(const QVector<QVariantList> &rows)
    {
        return script.on(QStringLiteral("FROM funds WHERE"))
            .withRows({QStringLiteral("fid")}, rows);
    }
    void movesOfToday(const QVector<QVariantList> &rows)
    {
        script.on(QStringLiteral("SELECT COUNT(*) FROM funds_move"))
            .withRows({QStringLiteral("COUNT(*)")}, rows);
    }
    void person(const QVariant &calc, const QVariant &uncalc, const QVariant &uid = 41)
    {
        script.on(QStringLiteral("uncalc FROM people"))
            .withRows({QStringLiteral("uid"), QStringLiteral("calc"), QStringLiteral("uncalc")},
                      {{uid, calc, uncalc}});
    }
    void openDays(const QVector<QVariantList> &rows)
    {
        script.on(QStringLiteral("SELECT COUNT(*) FROM atten WHERE uid"))
            .withRows({QStringLiteral("COUNT(*)")}, rows);
    }
    void sums(const QVector<QVariantList> &before, const QVector<QVariantList> &corrections)
    {
        script.on(QStringLiteral("WHERE fm.day <"))
            .withRows({QStringLiteral("SUM(fm.value)")}, before);
        script.on(QStringLiteral("WHERE fm.type=3"))
            .withRows({QStringLiteral("SUM(fm.value)")}, corrections);
    }
    void fails(const char *text)
    {
        script.on(QString::fromUtf8(text))
            .withError(QStringLiteral("1146"), QStringLiteral("no table"));
    }
};

} // namespace

class tst_Fund : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checkDovolenkaFond_levels_data() { addLevels(); }
    void checkDovolenkaFond_levels();
    void checkDovolenkaFond_asksForTheNumberGiven();
    void checkDovolenkaFond_idIsNarrowed_data();
    void checkDovolenkaFond_idIsNarrowed();
    void checkDovolenkaFond_takesTheFirstRow();
    void checkDovolenkaFond_noFundAtAll();
    void checkDovolenkaFond_failure_data() { addLevels(); }
    void checkDovolenkaFond_failure();
    void checkDovolenkaFond_keepsTheFundThatItFound();
    void checkDovolenkaFond_takesAnotherFund();

    void dbCheckFundMove_levels_data() { addLevels(); }
    void dbCheckFundMove_levels();
    void dbCheckFundMove_trueWithoutAMove_data();
    void dbCheckFundMove_trueWithoutAMove();
    void dbCheckFundMove_failure_data() { addLevels(); }
    void dbCheckFundMove_failure();
    void dbCheckFundMove_largestIds();

    void dbCheckAttendance_levels_data() { addLevels(); }
    void dbCheckAttendance_levels();
    void dbCheckAttendance_recentCalculation_data();
    void dbCheckAttendance_recentCalculation();
    void dbCheckAttendance_recentMovesWithTheClock();
    void dbCheckAttendance_noMarkIsNeverRecent();
    void dbCheckAttendance_uncalculatedDays_data();
    void dbCheckAttendance_uncalculatedDays();
    void dbCheckAttendance_openDaysFromTodayOn_data();
    void dbCheckAttendance_openDaysFromTodayOn();
    void dbCheckAttendance_uidIsReadUnsigned();
    void dbCheckAttendance_noSuchPersonLeavesTheUid_data() { addLevels(); }
    void dbCheckAttendance_noSuchPersonLeavesTheUid();
    void dbCheckAttendance_failureOfTheFirstStatement_data() { addLevels(); }
    void dbCheckAttendance_failureOfTheFirstStatement();
    void dbCheckAttendance_failureOfTheSecondStatementIsOk();

    void loadFundStatusAndMove3_levels_data() { addLevels(); }
    void loadFundStatusAndMove3_levels();
    void loadFundStatusAndMove3_addsBothSums_data();
    void loadFundStatusAndMove3_addsBothSums();
    void loadFundStatusAndMove3_monthBegin_data();
    void loadFundStatusAndMove3_monthBegin();
    void loadFundStatusAndMove3_largestIds();
    void loadFundStatusAndMove3_okIsSetAnew();
    void loadFundStatusAndMove3_failureOfTheFirstSum_data() { addLevels(); }
    void loadFundStatusAndMove3_failureOfTheFirstSum();
    void loadFundStatusAndMove3_failureOfTheSecondSum_data() { addLevels(); }
    void loadFundStatusAndMove3_failureOfTheSecondSum();
    void loadFundStatusAndMove3_failureOfBoth();

    void writeFundMove3_levels_data() { addLevels(); }
    void writeFundMove3_levels();
    void writeFundMove3_valueIsSigned_data();
    void writeFundMove3_valueIsSigned();
    void writeFundMove3_today_data();
    void writeFundMove3_today();
    void writeFundMove3_largestIds();
    void writeFundMove3_trueWhenARowWasWritten_data();
    void writeFundMove3_trueWhenARowWasWritten();
    void writeFundMove3_failure_data() { addLevels(); }
    void writeFundMove3_failure();
    void writeFundMove3_writesInTestMode();
};

// Finding the fund

void tst_Fund::checkDovolenkaFond_levels()
{
    QFETCH(int, level);
    Fund f(level);
    f.peer.fundId = 0;
    f.fundIs({{7}});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::checkDovolenkaFond()", askingFund,
                      "1 info THRWorker::checkDovolenkaFond(): fid=7"}));
    QCOMPARE(f.peer.fundId, quint16(7));
}

void tst_Fund::checkDovolenkaFond_asksForTheNumberGiven()
{
    Fund f;
    f.worker.checkDovolenkaFond(65535);
    f.worker.checkDovolenkaFond(0);
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT fid FROM funds WHERE iid = 65535 AND unit=2;",
                    "sql exec SELECT fid FROM funds WHERE iid = 0 AND unit=2;"}));
}

void tst_Fund::checkDovolenkaFond_idIsNarrowed_data()
{
    QTest::addColumn<QVariant>("fid");
    QTest::addColumn<int>("found");
    QTest::newRow("1") << QVariant(1u) << 1;
    QTest::newRow("65535") << QVariant(65535u) << 65535;
    QTest::newRow("65536") << QVariant(65536u) << 0;
    QTest::newRow("65536 + 7") << QVariant(65543u) << 7;
    QTest::newRow("4294967295") << QVariant(4294967295u) << 65535;
    QTest::newRow("NULL") << QVariant(QVariant::UInt) << 0;
    QTest::newRow("text") << QVariant(QStringLiteral("12")) << 12;
}

void tst_Fund::checkDovolenkaFond_idIsNarrowed()
{
    QFETCH(QVariant, fid);
    QFETCH(int, found);
    Fund f(1);
    f.peer.fundId = 9;
    f.fundIs({{fid}});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(int(f.peer.fundId), found);
    // The line tells the narrowed number.
    QCOMPARE(
        f.log.takeMessages(),
        QStringList {QStringLiteral("info THRWorker::checkDovolenkaFond(): fid=%1").arg(found)});
}

void tst_Fund::checkDovolenkaFond_takesTheFirstRow()
{
    Fund f;
    f.fundIs({{8}, {9}});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(8));
}

void tst_Fund::checkDovolenkaFond_noFundAtAll()
{
    Fund f(1);
    f.peer.fundId = 0;
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(), lines({askingFund, "info THRWorker::checkDovolenkaFond(): fid=0"}));
    QCOMPARE(f.peer.fundId, quint16(0));
}

void tst_Fund::checkDovolenkaFond_failure()
{
    QFETCH(int, level);
    Fund f(level);
    f.peer.fundId = 0;
    f.fails("FROM funds WHERE");
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::checkDovolenkaFond()", askingFund,
                      "0 critical THRWorker::checkDovolenkaFond() - SQL ERROR [1146]: "
                      "no table (scripted)",
                      "1 info THRWorker::checkDovolenkaFond(): fid=0"}));
    QCOMPARE(f.peer.fundId, quint16(0));
}

void tst_Fund::checkDovolenkaFond_keepsTheFundThatItFound()
{
    Fund f(1);
    f.peer.fundId = 0;
    f.fundIs({{7}});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(), lines({askingFund, "info THRWorker::checkDovolenkaFond(): fid=7"}));

    f.fundIs({});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(), lines({askingFund, "info THRWorker::checkDovolenkaFond(): fid=7"}));
    QCOMPARE(f.peer.fundId, quint16(7));

    f.fails("FROM funds WHERE");
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.log.take(),
             lines({askingFund,
                    "critical THRWorker::checkDovolenkaFond() - SQL ERROR [1146]: "
                    "no table (scripted)",
                    "info THRWorker::checkDovolenkaFond(): fid=7"}));
    QCOMPARE(f.peer.fundId, quint16(7));
}

void tst_Fund::checkDovolenkaFond_takesAnotherFund()
{
    Fund f;
    f.fundIs({{8}});
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(8));
    f.movesOfToday({{0}});
    f.log.clear();
    QVERIFY(f.worker.dbCheckFundMove(12341));
    QVERIFY(f.log.take().first().contains(QStringLiteral(" AND fid = 8 AND ")));
}

// A correction of today

void tst_Fund::dbCheckFundMove_levels()
{
    QFETCH(int, level);
    Fund f(level);
    f.movesOfToday({{0}});
    QVERIFY(f.worker.dbCheckFundMove(12341));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckFundMove(pid: 12341)", askingMove,
                      "1 info THRWorker::dbCheckFundMove(pid: 12341): OK - non exists"}));
    f.movesOfToday({{1}});
    QVERIFY(!f.worker.dbCheckFundMove(12341));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckFundMove(pid: 12341)", askingMove,
                      "1 info THRWorker::dbCheckFundMove(pid: 12341): exists"}));
}

void tst_Fund::dbCheckFundMove_trueWithoutAMove_data()
{
    QTest::addColumn<QVector<QVariantList>>("rows");
    QTest::addColumn<bool>("free");
    const auto row = [](const QVariant &count) { return QVector<QVariantList> {{count}}; };
    QTest::newRow("0") << row(0) << true;
    QTest::newRow("1") << row(1) << false;
    QTest::newRow("2") << row(2) << false;
    QTest::newRow("0 as text") << row(QStringLiteral("0")) << true;
    QTest::newRow("1 as text") << row(QStringLiteral("1")) << false;
    QTest::newRow("NULL") << row(QVariant(QVariant::LongLong)) << true;
    QTest::newRow("no row") << QVector<QVariantList>() << false;
}

void tst_Fund::dbCheckFundMove_trueWithoutAMove()
{
    QFETCH(QVector<QVariantList>, rows);
    QFETCH(bool, free);
    Fund f(1);
    f.movesOfToday(rows);
    QCOMPARE(f.worker.dbCheckFundMove(12341), free);
    QCOMPARE(f.log.takeMessages(),
             free ? lines({"info THRWorker::dbCheckFundMove(pid: 12341): OK - non exists"})
                  : lines({"info THRWorker::dbCheckFundMove(pid: 12341): exists"}));
}

void tst_Fund::dbCheckFundMove_failure()
{
    QFETCH(int, level);
    Fund f(level);
    f.fails("FROM funds_move");
    QVERIFY(!f.worker.dbCheckFundMove(12341));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckFundMove(pid: 12341)", askingMove,
                      "0 critical THRWorker::dbCheckFundMove() - SQL ERROR [1146]: "
                      "no table (scripted)",
                      "1 info THRWorker::dbCheckFundMove(pid: 12341): exists"}));
}

void tst_Fund::dbCheckFundMove_largestIds()
{
    Fund f(2);
    f.peer.fundId = 65535;
    f.movesOfToday({{0}});
    QVERIFY(f.worker.dbCheckFundMove(4294967295u));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::dbCheckFundMove(pid: 4294967295)",
                    "sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                    "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 65535 AND "
                    "uid=(SELECT uid FROM people WHERE pid = 4294967295);",
                    "info THRWorker::dbCheckFundMove(pid: 4294967295): OK - non exists"}));
}

// Attendance at rest

void tst_Fund::dbCheckAttendance_levels()
{
    QFETCH(int, level);
    Fund f(level);
    f.person(0, 0);
    f.openDays({{0}});
    uint uid = 0;
    QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckAttendance(pid: 12341)", askingAttendance,
                      askingOpenDays, "1 info THRWorker::dbCheckAttendance(pid: 12341): OK"}));
    QCOMPARE(uid, 41u);

    f.openDays({{1}});
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckAttendance(pid: 12341)", askingAttendance,
                      askingOpenDays, "1 info THRWorker::dbCheckAttendance(pid: 12341): NO OK"}));
}

void tst_Fund::dbCheckAttendance_recentCalculation_data()
{
    const qint64 now = localSeconds(QDate(2024, 3, 15), 14, 30, 5);
    QTest::addColumn<QVariant>("calc");
    QTest::addColumn<bool>("recent");
    QTest::newRow("none") << QVariant(0) << false;
    QTest::newRow("NULL") << QVariant(QVariant::LongLong) << false;
    QTest::newRow("the first second of all") << QVariant(1) << false;
    QTest::newRow("901 seconds old") << QVariant(now - 901) << false;
    QTest::newRow("900 seconds old") << QVariant(now - 900) << false;
    QTest::newRow("899 seconds old") << QVariant(now - 899) << true;
    QTest::newRow("898 seconds old") << QVariant(now - 898) << true;
    QTest::newRow("now") << QVariant(now) << true;
    QTest::newRow("in a second") << QVariant(now + 1) << true;
    QTest::newRow("in a year") << QVariant(now + 31536000) << true;
    QTest::newRow("beyond signed 32 bits") << QVariant(2147483648u) << true;
    QTest::newRow("latest of all") << QVariant(4294967295u) << true;
}

void tst_Fund::dbCheckAttendance_recentCalculation()
{
    QFETCH(QVariant, calc);
    QFETCH(bool, recent);
    const MachineClock clock(afternoon());
    Fund f(1);
    f.person(calc, 0);
    f.openDays({{0}});
    uint uid = 0;
    QCOMPARE(f.worker.dbCheckAttendance(12341, &uid), !recent);
    // A recent calculation decides: the days are not asked for any more.
    QCOMPARE(f.log.take(),
             recent
                 ? lines({askingAttendance, "info THRWorker::dbCheckAttendance(pid: 12341): NO OK"})
                 : lines({askingAttendance, askingOpenDays,
                          "info THRWorker::dbCheckAttendance(pid: 12341): OK"}));
    QCOMPARE(uid, 41u);
}

void tst_Fund::dbCheckAttendance_recentMovesWithTheClock()
{
    MachineClock clock(afternoon());
    Fund f;
    f.person(localSeconds(QDate(2024, 3, 15), 14, 30, 5), 0);
    f.openDays({{0}});
    uint uid = 0;
    clock.set(QDateTime(QDate(2024, 3, 15), QTime(14, 45, 4)));
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
    clock.set(QDateTime(QDate(2024, 3, 15), QTime(14, 45, 5)));
    QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
}

void tst_Fund::dbCheckAttendance_noMarkIsNeverRecent()
{
    // Not even on a machine whose clock has lost the date.
    const MachineClock clock(QDateTime::fromSecsSinceEpoch(300));
    Fund f;
    f.person(0, 0);
    uint uid = 0;
    QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
    f.person(1, 0);
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
}

void tst_Fund::dbCheckAttendance_uncalculatedDays_data()
{
    QTest::addColumn<QVariant>("uncalc");
    QTest::addColumn<bool>("rest");
    QTest::newRow("0") << QVariant(0) << true;
    QTest::newRow("NULL") << QVariant(QVariant::LongLong) << true;
    QTest::newRow("1") << QVariant(1) << false;
    QTest::newRow("2") << QVariant(2) << false;
    QTest::newRow("many") << QVariant(4294967295u) << false;
}

void tst_Fund::dbCheckAttendance_uncalculatedDays()
{
    QFETCH(QVariant, uncalc);
    QFETCH(bool, rest);
    Fund f;
    f.person(0, uncalc);
    f.openDays({{0}});
    uint uid = 0;
    QCOMPARE(f.worker.dbCheckAttendance(12341, &uid), rest);
    QCOMPARE(f.log.take(),
             rest ? lines({askingAttendance, askingOpenDays}) : lines({askingAttendance}));
    QCOMPARE(uid, 41u);
}

void tst_Fund::dbCheckAttendance_openDaysFromTodayOn_data()
{
    QTest::addColumn<QVector<QVariantList>>("rows");
    QTest::addColumn<bool>("rest");
    const auto row = [](const QVariant &count) { return QVector<QVariantList> {{count}}; };
    QTest::newRow("0") << row(0) << true;
    QTest::newRow("1") << row(1) << false;
    QTest::newRow("2") << row(2) << false;
    QTest::newRow("many") << row(4294967295u) << false;
    QTest::newRow("NULL") << row(QVariant(QVariant::LongLong)) << true;
    QTest::newRow("no row") << QVector<QVariantList>() << true;
}

void tst_Fund::dbCheckAttendance_openDaysFromTodayOn()
{
    QFETCH(QVector<QVariantList>, rows);
    QFETCH(bool, rest);
    Fund f;
    f.person(0, 0);
    f.openDays(rows);
    uint uid = 0;
    QCOMPARE(f.worker.dbCheckAttendance(12341, &uid), rest);
    QCOMPARE(f.log.take(), lines({askingAttendance, askingOpenDays}));
}

void tst_Fund::dbCheckAttendance_uidIsReadUnsigned()
{
    Fund f;
    f.person(0, 0, 4294967294u);
    uint uid = 5;
    QVERIFY(f.worker.dbCheckAttendance(4294967295u, &uid));
    QCOMPARE(uid, 4294967294u);
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE "
                    "a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc FROM people p WHERE "
                    "pid = 4294967295",
                    "sql exec SELECT COUNT(*) FROM atten WHERE uid = 4294967294 AND `lock`=0 AND "
                    "ok < 0 AND date >= midnightFromTs(UNIX_TIMESTAMP())"}));
}

void tst_Fund::dbCheckAttendance_noSuchPersonLeavesTheUid()
{
    QFETCH(int, level);
    Fund f(level);
    uint uid = 99;
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckAttendance(pid: 12341)", askingAttendance,
                      "1 info THRWorker::dbCheckAttendance(pid: 12341): NO OK"}));
    QCOMPARE(uid, 99u);
}

void tst_Fund::dbCheckAttendance_failureOfTheFirstStatement()
{
    QFETCH(int, level);
    Fund f(level);
    f.fails("uncalc FROM people");
    uint uid = 99;
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbCheckAttendance(pid: 12341)", askingAttendance,
                      "0 critical THRWorker::dbCheckAttendance() - SQL ERROR [1146]: "
                      "no table (scripted)",
                      "1 info THRWorker::dbCheckAttendance(pid: 12341): NO OK"}));
    QCOMPARE(uid, 99u);
}

void tst_Fund::dbCheckAttendance_failureOfTheSecondStatementIsOk()
{
    for (int level = 0; level <= 2; ++level) {
        Fund f(level);
        f.person(0, 0);
        f.fails("SELECT COUNT(*) FROM atten WHERE uid");
        uint uid = 0;
        QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
        QCOMPARE(f.log.take(),
                 atLevel(level,
                         {"2 debug THRWorker::dbCheckAttendance(pid: 12341)", askingAttendance,
                          askingOpenDays,
                          "0 critical THRWorker::dbCheckAttendance() - SQL ERROR [1146]: "
                          "no table (scripted)",
                          "1 info THRWorker::dbCheckAttendance(pid: 12341): OK"}));
        QCOMPARE(uid, 41u);
    }
}

// The balance

void tst_Fund::loadFundStatusAndMove3_levels()
{
    QFETCH(int, level);
    const MachineClock clock(afternoon());
    Fund f(level);
    f.sums({{-1234}}, {{34}});
    bool ok = false;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), -1200);
    QVERIFY(ok);
    QCOMPARE(
        f.log.take(),
        atLevel(level,
                lines({"2 debug THRWorker::loadFundStatusAndMove3(pid: 12341)"})
                    + askingSums(QDate(2024, 3, 1))
                    + lines({"1 info THRWorker::loadFundStatusAndMove3(pid: 12341): -1200, load "
                             "OK: YES"})));
}

void tst_Fund::loadFundStatusAndMove3_addsBothSums_data()
{
    QTest::addColumn<QVector<QVariantList>>("before");
    QTest::addColumn<QVector<QVariantList>>("corrections");
    QTest::addColumn<int>("balance");
    const auto row = [](const QVariant &sum) { return QVector<QVariantList> {{sum}}; };
    const QVector<QVariantList> null = row(QVariant(QVariant::Double));
    const QVector<QVariantList> none;
    // The server hands sums over as doubles.
    QTest::newRow("both") << row(1200.0) << row(34.0) << 1234;
    QTest::newRow("correction downwards") << row(1200.0) << row(-1234.0) << -34;
    QTest::newRow("as integers") << row(1200) << row(34) << 1234;
    QTest::newRow("as texts") << row(QStringLiteral("1200")) << row(QStringLiteral("-34")) << 1166;
    QTest::newRow("no correction") << row(1200.0) << null << 1200;
    QTest::newRow("only corrections") << null << row(34.0) << 34;
    QTest::newRow("no moves at all") << null << null << 0;
    QTest::newRow("no rows") << none << none << 0;
    QTest::newRow("no first row") << none << row(34.0) << 34;
    QTest::newRow("no second row") << row(1200.0) << none << 1200;
    QTest::newRow("largest") << row(2147483646.0) << row(1.0) << 2147483647;
    QTest::newRow("smallest") << row(-2147483647.0) << row(-1.0) << std::numeric_limits<int>::min();
}

void tst_Fund::loadFundStatusAndMove3_addsBothSums()
{
    QFETCH(QVector<QVariantList>, before);
    QFETCH(QVector<QVariantList>, corrections);
    QFETCH(int, balance);
    Fund f(1);
    f.sums(before, corrections);
    bool ok = false;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), balance);
    QVERIFY(ok);
    QCOMPARE(f.log.takeMessages(),
             QStringList {QStringLiteral("info THRWorker::loadFundStatusAndMove3(pid: 12341): %1, "
                                         "load OK: YES")
                              .arg(balance)});
}

void tst_Fund::loadFundStatusAndMove3_monthBegin_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QDate>("monthBegin");
    const auto add = [](const char *name, const QDate &day, const QTime &time,
                        const QDate &monthBegin) {
        QTest::newRow(name) << QDateTime(day, time) << monthBegin;
    };
    const QTime first(0, 0, 0);
    const QTime last(23, 59, 59);
    const QTime noon(12, 0, 0);
    add("first second of a month", QDate(2024, 4, 1), first, QDate(2024, 4, 1));
    add("last second of a month", QDate(2024, 4, 30), last, QDate(2024, 4, 1));
    add("first of January", QDate(2024, 1, 1), first, QDate(2024, 1, 1));
    add("end of the year", QDate(2023, 12, 31), last, QDate(2023, 12, 1));
    add("leap day", QDate(2024, 2, 29), noon, QDate(2024, 2, 1));
    // The month begins by other clocks than today's.
    add("clocks went forward west", QDate(2024, 3, 11), noon, QDate(2024, 3, 1));
    add("clocks go forward east", QDate(2024, 3, 31), last, QDate(2024, 3, 1));
    add("clocks go back east", QDate(2024, 10, 27), last, QDate(2024, 10, 1));
    add("clocks went back west", QDate(2024, 11, 4), noon, QDate(2024, 11, 1));
    add("beyond signed 32 bits", QDate(2050, 6, 15), noon, QDate(2050, 6, 1));
}

void tst_Fund::loadFundStatusAndMove3_monthBegin()
{
    QFETCH(QDateTime, now);
    QFETCH(QDate, monthBegin);
    const MachineClock clock(now);
    Fund f;
    bool ok = false;
    f.worker.loadFundStatusAndMove3(12341, &ok);
    QCOMPARE(f.log.take(), askingSums(monthBegin));
}

void tst_Fund::loadFundStatusAndMove3_largestIds()
{
    const MachineClock clock(afternoon());
    Fund f(2);
    f.peer.fundId = 65535;
    bool ok = false;
    f.worker.loadFundStatusAndMove3(4294967295u, &ok);
    const QString march = QString::number(localSeconds(QDate(2024, 3, 1)));
    QCOMPARE(f.log.take(),
             (QStringList {
                 QStringLiteral("debug THRWorker::loadFundStatusAndMove3(pid: 4294967295)"),
                 QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                                "USING(uid) WHERE fm.day < %1  AND fm.fid = 65535 AND "
                                "p.pid = 4294967295")
                     .arg(march),
                 QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                                "USING(uid) WHERE fm.type=3 AND fm.day >= %1 AND "
                                "fm.day < midnightFromTs(UNIX_TIMESTAMP()) AND fm.fid = 65535 AND "
                                "p.pid = 4294967295")
                     .arg(march),
                 QStringLiteral(
                     "info THRWorker::loadFundStatusAndMove3(pid: 4294967295): 0, load OK: YES")}));
}

void tst_Fund::loadFundStatusAndMove3_okIsSetAnew()
{
    Fund f;
    f.script.on(QStringLiteral("WHERE fm.day <"), 1)
        .withError(QStringLiteral("1146"), QStringLiteral("no table"));
    bool ok = true;
    f.worker.loadFundStatusAndMove3(12341, &ok);
    QVERIFY(!ok);
    f.log.clear();
    f.worker.loadFundStatusAndMove3(12341, &ok);
    QVERIFY(ok);
}

void tst_Fund::loadFundStatusAndMove3_failureOfTheFirstSum()
{
    QFETCH(int, level);
    const MachineClock clock(afternoon());
    Fund f(level);
    f.sums({{1200}}, {{34}});
    f.fails("WHERE fm.day <");
    bool ok = true;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 34);
    QVERIFY(!ok);
    const QStringList sums = askingSums(QDate(2024, 3, 1));
    QCOMPARE(
        f.log.take(),
        atLevel(level,
                lines({"2 debug THRWorker::loadFundStatusAndMove3(pid: 12341)"})
                    + QStringList {sums.at(0),
                                   QStringLiteral("0 critical THRWorker::loadFundStatusAndMove3() "
                                                  "- SQL 1 ERROR [1146]: no table (scripted)"),
                                   sums.at(1)}
                    + lines({"1 info THRWorker::loadFundStatusAndMove3(pid: 12341): 34, load OK: "
                             "NO"})));
}

void tst_Fund::loadFundStatusAndMove3_failureOfTheSecondSum()
{
    QFETCH(int, level);
    const MachineClock clock(afternoon());
    Fund f(level);
    f.sums({{1200}}, {{34}});
    f.fails("WHERE fm.type=3");
    bool ok = true;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 1200);
    QVERIFY(!ok);
    QCOMPARE(
        f.log.take(),
        atLevel(level,
                lines({"2 debug THRWorker::loadFundStatusAndMove3(pid: 12341)"})
                    + askingSums(QDate(2024, 3, 1))
                    + lines({"0 critical THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR "
                             "[1146]: no table (scripted)",
                             "1 info THRWorker::loadFundStatusAndMove3(pid: 12341): 1200, load "
                             "OK: NO"})));
}

void tst_Fund::loadFundStatusAndMove3_failureOfBoth()
{
    Fund f(1);
    f.sums({{1200}}, {{34}});
    f.fails("FROM funds_move");
    bool ok = true;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 0);
    QVERIFY(!ok);
    QCOMPARE(f.log.takeMessages(),
             lines({"critical THRWorker::loadFundStatusAndMove3() - SQL 1 ERROR [1146]: "
                    "no table (scripted)",
                    "critical THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [1146]: "
                    "no table (scripted)",
                    "info THRWorker::loadFundStatusAndMove3(pid: 12341): 0, load OK: NO"}));
}

// The correction

void tst_Fund::writeFundMove3_levels()
{
    QFETCH(int, level);
    const MachineClock clock(afternoon());
    Fund f(level);
    f.script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(1);
    QVERIFY(f.worker.writeFundMove3(41, -150));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     lines({"1 debug THRWorker::writeFundMove3(uid: 41, value: -150)"})
                         + QStringList {writing(QDate(2024, 3, 15), QStringLiteral("-150"))}));
}

void tst_Fund::writeFundMove3_valueIsSigned_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("1") << 1 << QStringLiteral("1");
    QTest::newRow("-1") << -1 << QStringLiteral("-1");
    QTest::newRow("0") << 0 << QStringLiteral("0");
    QTest::newRow("largest") << std::numeric_limits<int>::max() << QStringLiteral("2147483647");
    QTest::newRow("smallest") << std::numeric_limits<int>::min() << QStringLiteral("-2147483648");
}

void tst_Fund::writeFundMove3_valueIsSigned()
{
    QFETCH(int, value);
    QFETCH(QString, text);
    const MachineClock clock(afternoon());
    Fund f(1);
    f.worker.writeFundMove3(41, value);
    QCOMPARE(f.log.take(),
             (QStringList {
                 QStringLiteral("debug THRWorker::writeFundMove3(uid: 41, value: %1)").arg(text),
                 writing(QDate(2024, 3, 15), text)}));
}

void tst_Fund::writeFundMove3_today_data()
{
    QTest::addColumn<QDateTime>("now");
    const auto add = [](const char *name, const QDate &day, const QTime &time) {
        QTest::newRow(name) << QDateTime(day, time);
    };
    const QTime first(0, 0, 0);
    const QTime last(23, 59, 59);
    add("first second of a day", QDate(2024, 4, 15), first);
    add("last second of a day", QDate(2024, 4, 15), last);
    add("first second of a year", QDate(2024, 1, 1), first);
    add("last second of a year", QDate(2023, 12, 31), last);
    add("leap day", QDate(2024, 2, 29), last);
    add("clocks go forward west", QDate(2024, 3, 10), last);
    add("clocks go forward east", QDate(2024, 3, 31), last);
    add("clocks go back east", QDate(2024, 10, 27), last);
    add("clocks go back west", QDate(2024, 11, 3), last);
    add("beyond signed 32 bits", QDate(2050, 6, 15), last);
}

void tst_Fund::writeFundMove3_today()
{
    QFETCH(QDateTime, now);
    const MachineClock clock(now);
    Fund f;
    f.worker.writeFundMove3(41, 5);
    QCOMPARE(f.log.take(), QStringList {writing(now.date(), QStringLiteral("5"))});
}

void tst_Fund::writeFundMove3_largestIds()
{
    const MachineClock clock(afternoon());
    Fund f(1);
    f.peer.fundId = 65535;
    f.worker.writeFundMove3(4294967295u, 5);
    QCOMPARE(
        f.log.take(),
        (QStringList {QStringLiteral("debug THRWorker::writeFundMove3(uid: 4294967295, value: 5)"),
                      QStringLiteral("sql exec INSERT INTO funds_move "
                                     "(type, day, month, value, fid, uid) "
                                     "VALUES(3, %1, monthFromTimestamp(%1), 5, 65535, 4294967295) "
                                     "ON DUPLICATE KEY UPDATE value=VALUES(value)")
                          .arg(localSeconds(QDate(2024, 3, 15)))}));
}

void tst_Fund::writeFundMove3_trueWhenARowWasWritten_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("written");
    QTest::newRow("inserted") << 1 << true;
    QTest::newRow("replaced") << 2 << true;
    QTest::newRow("untouched") << 0 << false;
    QTest::newRow("not known") << -1 << false;
}

void tst_Fund::writeFundMove3_trueWhenARowWasWritten()
{
    QFETCH(int, affected);
    QFETCH(bool, written);
    Fund f;
    // An insert id says nothing.
    f.script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(affected).withInsertId(9);
    QCOMPARE(f.worker.writeFundMove3(41, 5), written);
}

void tst_Fund::writeFundMove3_failure()
{
    QFETCH(int, level);
    const MachineClock clock(afternoon());
    Fund f(level);
    f.script.on(QStringLiteral("INSERT INTO funds_move"))
        .withError(QStringLiteral("1146"), QStringLiteral("no table"))
        .withAffected(1);
    QVERIFY(!f.worker.writeFundMove3(41, 5));
    const QString statement = writing(QDate(2024, 3, 15), QStringLiteral("5"));
    QCOMPARE(f.log.take(),
             atLevel(level,
                     lines({"1 debug THRWorker::writeFundMove3(uid: 41, value: 5)"})
                         + QStringList {statement,
                                        QStringLiteral("0 critical THRWorker::writeFundMove3() - "
                                                       "SQL ERROR [1146]: no table (scripted)\n "
                                                       "SQL: %1")
                                            .arg(statement.mid(int(qstrlen("sql exec "))))}));
}

void tst_Fund::writeFundMove3_writesInTestMode()
{
    const MachineClock clock(afternoon());
    for (int level = 0; level <= 1; ++level) {
        Fund f(level);
        f.worker.setTestMode(true);
        f.script.on(QStringLiteral("INSERT INTO funds_move")).withAffected(1);
        QVERIFY(f.worker.writeFundMove3(41, 5));
        QCOMPARE(f.log.take(),
                 atLevel(level,
                         lines({"1 debug THRWorker::writeFundMove3(uid: 41, value: 5)"})
                             + QStringList {writing(QDate(2024, 3, 15), QStringLiteral("5"))}));
    }
}

QTEST_GUILESS_MAIN(tst_Fund)
#include "tst_fund.moc"
