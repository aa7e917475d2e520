// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The leave fund on a real server: what the questions find in the tables, and the moves that result
// from day to day.
#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"

#include <QtTest>

#include <limits>

namespace {

/// A day in the middle of a month.
const QDate someDay(2024, 3, 15);

/// Moments at which days begin and end, also where clocks change.
void addMoments()
{
    QTest::addColumn<QDateTime>("now");
    const QTime first(0, 0, 0);
    const QTime last(23, 59, 59);
    const auto add = [](const char *name, const QDate &day, const QTime &time) {
        QTest::newRow(name) << QDateTime(day, time);
    };
    add("noon", someDay, QTime(12, 0, 0));
    add("first second of a day", someDay, first);
    add("last second of a day", someDay, last);
    add("first second of a year", QDate(2024, 1, 1), first);
    add("last second of a year", QDate(2023, 12, 31), last);
    add("last second of a leap day", QDate(2024, 2, 29), last);
    add("clocks go forward west, early", QDate(2024, 3, 10), first);
    add("clocks go forward west, late", QDate(2024, 3, 10), last);
    add("clocks go forward east, early", QDate(2024, 3, 31), first);
    add("clocks go forward east, late", QDate(2024, 3, 31), last);
    add("clocks go back east, early", QDate(2024, 10, 27), first);
    add("clocks go back east, late", QDate(2024, 10, 27), last);
    add("clocks go back west, early", QDate(2024, 11, 3), first);
    add("clocks go back west, late", QDate(2024, 11, 3), last);
}

} // namespace

class tst_FundTables : public DatabaseFixture
{
    Q_OBJECT

public:
    tst_FundTables() :
        DatabaseFixture(QDateTime(someDay, QTime(12, 0, 0)))
    { }

private Q_SLOTS:
    void init();
    void cleanup();

    void checkDovolenkaFond_numberAndUnit();
    void checkDovolenkaFond_idIsNarrowed();
    void checkDovolenkaFond_hiddenTable();

    void dbCheckFundMove_correctionOfToday_data() { addMoments(); }
    void dbCheckFundMove_correctionOfToday();
    void dbCheckFundMove_onlyThisMove_data();
    void dbCheckFundMove_onlyThisMove();
    void dbCheckFundMove_noSuchPerson();
    void dbCheckFundMove_hiddenTable();

    void dbCheckAttendance_rows_data();
    void dbCheckAttendance_rows();
    void dbCheckAttendance_today_data() { addMoments(); }
    void dbCheckAttendance_today();
    void dbCheckAttendance_recentCalculation_data();
    void dbCheckAttendance_recentCalculation();
    void dbCheckAttendance_noSuchPerson();
    void dbCheckAttendance_hiddenTable_data();
    void dbCheckAttendance_hiddenTable();
    void dbCheckAttendance_secondStatementRefused();

    void loadFundStatusAndMove3_noMoves();
    void loadFundStatusAndMove3_whatCounts_data();
    void loadFundStatusAndMove3_whatCounts();
    void loadFundStatusAndMove3_noneOfThisMonthOnItsFirstDay_data();
    void loadFundStatusAndMove3_noneOfThisMonthOnItsFirstDay();
    void loadFundStatusAndMove3_extremes();
    void loadFundStatusAndMove3_secondSumRefused();
    void loadFundStatusAndMove3_hiddenTable();

    void writeFundMove3_row_data() { addMoments(); }
    void writeFundMove3_row();
    void writeFundMove3_replacesTheValueOfTheDay();
    void writeFundMove3_sameValueTouchesNothing();
    void writeFundMove3_extremes();
    void writeFundMove3_besideOtherMoves();
    void writeFundMove3_hiddenTable();

    void pass_statementsOfACorrection();
    void pass_correctsAndReopensAttendance();
    void pass_secondOfTheDayLeavesTheFundAlone();
    void pass_onlyOneOfTheDayIsNotLookedAtAgain();
    void pass_newBalanceWaitsForTheNextDay();
    void pass_waitsForTheCalculation();
    void pass_waitsForARunningCalculation();
    void pass_newPersonGetsTheBalanceAtTheNext();
    void pass_inactivePersonIsNotCorrected();
    void pass_secondLineOfAPersonWaits();
    void pass_monthEndLetsOtherMovesCount();
    void pass_withoutAFund();
    void pass_fundThatIsGoneStaysInUse();
    void pass_inTestMode();

private:
    void setNoon(const QDate &day) { setMoment(QDateTime(day, QTime(12, 0, 0))); }
    void move(int type, const QDate &day, int value, uint fid = 7, uint uid = 41);
    void attend(const QDate &day, int lock, int ok, uint uid = 41);
    QStringList moves();
};

void tst_FundTables::init()
{
    database->clear();
    setNoon(someDay);
    database->execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (7, 3, 2)"));
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, pamId, name, surname, begin, "
                                     "type, did) VALUES "
                                     "(41, 12341, '1234.1', 'Ján', 'Novák', %1, 1, 1), "
                                     "(42, 12342, '1234.2', 'Ján', 'Novák', %1, 1, 1)")
                          .arg(seconds(QDate(2015, 3, 1))));
}

void tst_FundTables::cleanup()
{
    // A test that ended early may have left it so.
    if (database && database->error().isEmpty())
        database->execute(
            QStringLiteral("GRANT EXECUTE ON FUNCTION midnightFromTs TO 'talvenhr'@'localhost'"));
}

void tst_FundTables::move(int type, const QDate &day, int value, uint fid, uint uid)
{
    database->execute(QStringLiteral("INSERT INTO funds_move (type, day, month, value, fid, uid) "
                                     "VALUES (%1, %2, %3, %4, %5, %6)")
                          .arg(type)
                          .arg(localSeconds(day))
                          .arg(day.toString(QStringLiteral("yyyyMM")))
                          .arg(value)
                          .arg(fid)
                          .arg(uid));
}

void tst_FundTables::attend(const QDate &day, int lock, int ok, uint uid)
{
    database->execute(
        QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, ok) VALUES (%1, %2, %3, %4)")
            .arg(uid)
            .arg(localSeconds(day))
            .arg(lock)
            .arg(ok));
}

/// All moves whole: kind, day, month, value, fund, person.
QStringList tst_FundTables::moves()
{
    return database->rows(QStringLiteral(
        "SELECT type, day, month, value, fid, uid FROM funds_move ORDER BY uid, fid, day, type"));
}

// Finding the fund

void tst_FundTables::checkDovolenkaFond_numberAndUnit()
{
    database->execute(QStringLiteral("DELETE FROM funds"));
    database->execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES "
                                     "(1, 3, 1), (2, 4, 2), (3, NULL, 2), (4, 3, 3)"));
    DatabaseWorker f(*database);
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(0));
    database->execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (9, 3, 2)"));
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(9));
}

void tst_FundTables::checkDovolenkaFond_idIsNarrowed()
{
    DatabaseWorker f(*database);
    database->execute(QStringLiteral("UPDATE funds SET fid = 65536 + 7"));
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(7));
    database->execute(QStringLiteral("UPDATE funds SET fid = 65536"));
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(0));
}

void tst_FundTables::checkDovolenkaFond_hiddenTable()
{
    DatabaseWorker f(*database);
    f.worker.checkDovolenkaFond(3);
    const HiddenTable hidden(*database, "funds");
    f.worker.checkDovolenkaFond(3);
    QCOMPARE(f.peer.fundId, quint16(7));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::checkDovolenkaFond() - SQL ERROR [1146]: Table "
                    "'attendance.funds' doesn't exist QMYSQL: Unable to execute query"}));
}

// A correction of today

void tst_FundTables::dbCheckFundMove_correctionOfToday()
{
    QFETCH(QDateTime, now);
    setMoment(now);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    move(3, now.date().addDays(-1), 100);
    move(3, now.date().addDays(1), 100);
    QVERIFY(f.worker.dbCheckFundMove(12341));
    move(3, now.date(), 100);
    QVERIFY(!f.worker.dbCheckFundMove(12341));
}

void tst_FundTables::dbCheckFundMove_onlyThisMove_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<uint>("fid");
    QTest::addColumn<uint>("uid");
    QTest::addColumn<bool>("free");
    QTest::newRow("correction") << 3 << 7u << 41u << false;
    QTest::newRow("entitlement") << 1 << 7u << 41u << true;
    QTest::newRow("leave taken") << 2 << 7u << 41u << true;
    QTest::newRow("another fund") << 3 << 8u << 41u << true;
    QTest::newRow("fund of the same lower bits") << 3 << 65543u << 41u << true;
    QTest::newRow("another person") << 3 << 7u << 42u << true;
}

void tst_FundTables::dbCheckFundMove_onlyThisMove()
{
    QFETCH(int, type);
    QFETCH(uint, fid);
    QFETCH(uint, uid);
    QFETCH(bool, free);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    move(type, someDay, 0, fid, uid);
    QCOMPARE(f.worker.dbCheckFundMove(12341), free);
}

void tst_FundTables::dbCheckFundMove_noSuchPerson()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    f.worker.setLogLevel(1);
    move(3, someDay, 100);
    QVERIFY(f.worker.dbCheckFundMove(99999));
    QCOMPARE(f.log.take(), lines({"info THRWorker::dbCheckFundMove(pid: 99999): OK - non exists"}));
}

void tst_FundTables::dbCheckFundMove_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "funds_move");
    QVERIFY(!f.worker.dbCheckFundMove(12341));
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbCheckFundMove() - SQL ERROR [1146]: Table "
                    "'attendance.funds_move' doesn't exist QMYSQL: Unable to execute query"}));
}

// Attendance at rest

void tst_FundTables::dbCheckAttendance_rows_data()
{
    QTest::addColumn<int>("days"); // from today
    QTest::addColumn<int>("lock");
    QTest::addColumn<int>("ok");
    QTest::addColumn<uint>("uid");
    QTest::addColumn<bool>("rest");
    QTest::newRow("long ago, to be calculated") << -400 << 0 << -1 << 41u << false;
    QTest::newRow("yesterday, to be calculated") << -1 << 0 << -1 << 41u << false;
    QTest::newRow("today, to be calculated") << 0 << 0 << -1 << 41u << false;
    QTest::newRow("tomorrow, to be calculated") << 1 << 0 << -1 << 41u << false;
    QTest::newRow("yesterday, below -1") << -1 << 0 << -2 << 41u << true;
    QTest::newRow("today, below -1") << 0 << 0 << -2 << 41u << false;
    QTest::newRow("tomorrow, below -1") << 1 << 0 << -2 << 41u << false;
    QTest::newRow("yesterday, locked") << -1 << 1 << -1 << 41u << true;
    QTest::newRow("today, locked") << 0 << 1 << -1 << 41u << true;
    QTest::newRow("today, locked twice") << 0 << 2 << -1 << 41u << true;
    QTest::newRow("today, locked, below -1") << 0 << 1 << -2 << 41u << true;
    QTest::newRow("today, calculated") << 0 << 0 << 0 << 41u << true;
    QTest::newRow("today, well") << 0 << 0 << 1 << 41u << true;
    QTest::newRow("another person's") << 0 << 0 << -1 << 42u << true;
}

void tst_FundTables::dbCheckAttendance_rows()
{
    QFETCH(int, days);
    QFETCH(int, lock);
    QFETCH(int, ok);
    QFETCH(uint, uid);
    QFETCH(bool, rest);
    attend(someDay.addDays(days), lock, ok, uid);
    DatabaseWorker f(*database);
    uint found = 0;
    QCOMPARE(f.worker.dbCheckAttendance(12341, &found), rest);
    QCOMPARE(found, 41u);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_FundTables::dbCheckAttendance_today()
{
    QFETCH(QDateTime, now);
    setMoment(now);
    DatabaseWorker f(*database);
    uint uid = 0;
    attend(now.date().addDays(-1), 0, -2);
    QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
    attend(now.date(), 0, -2);
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
}

void tst_FundTables::dbCheckAttendance_recentCalculation_data()
{
    const qint64 now = localSeconds(someDay, 12);
    QTest::addColumn<qint64>("calc");
    QTest::addColumn<bool>("rest");
    QTest::newRow("none") << qint64(0) << true;
    QTest::newRow("900 seconds old") << now - 900 << true;
    QTest::newRow("899 seconds old") << now - 899 << false;
    QTest::newRow("now") << now << false;
    QTest::newRow("tomorrow") << now + 86400 << false;
}

void tst_FundTables::dbCheckAttendance_recentCalculation()
{
    QFETCH(qint64, calc);
    QFETCH(bool, rest);
    database->execute(QStringLiteral("UPDATE people SET calc=%1 WHERE uid=41").arg(calc));
    DatabaseWorker f(*database);
    uint uid = 0;
    QCOMPARE(f.worker.dbCheckAttendance(12341, &uid), rest);
    QVERIFY(f.worker.dbCheckAttendance(12342, &uid));
}

void tst_FundTables::dbCheckAttendance_noSuchPerson()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    uint uid = 99;
    QVERIFY(!f.worker.dbCheckAttendance(99999, &uid));
    QCOMPARE(uid, 99u);
    QCOMPARE(f.log.take(), lines({"info THRWorker::dbCheckAttendance(pid: 99999): NO OK"}));
}

void tst_FundTables::dbCheckAttendance_hiddenTable_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::newRow("people") << QByteArray("people");
    QTest::newRow("atten") << QByteArray("atten");
}

void tst_FundTables::dbCheckAttendance_hiddenTable()
{
    QFETCH(QByteArray, table);
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, table.constData());
    uint uid = 99;
    QVERIFY(!f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(uid, 99u);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral("critical THRWorker::dbCheckAttendance() - SQL ERROR "
                                         "[1146]: Table 'attendance.%1' doesn't exist QMYSQL: "
                                         "Unable to execute query")
                              .arg(QString::fromLatin1(table))});
}

void tst_FundTables::dbCheckAttendance_secondStatementRefused()
{
    // An open day, which goes unseen: only the second statement asks for midnight.
    attend(someDay, 0, -2);
    database->execute(
        QStringLiteral("REVOKE EXECUTE ON FUNCTION midnightFromTs FROM 'talvenhr'@'localhost'"));
    DatabaseWorker f(*database);
    uint uid = 0;
    QVERIFY(f.worker.dbCheckAttendance(12341, &uid));
    QCOMPARE(uid, 41u);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::dbCheckAttendance() - SQL ERROR [1370]: execute command "
                    "denied to user 'talvenhr'@'localhost' for routine "
                    "'attendance.midnightFromTs' QMYSQL: Unable to execute query"}));
}

// The balance

void tst_FundTables::loadFundStatusAndMove3_noMoves()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    f.worker.setLogLevel(1);
    bool ok = false;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 0);
    QVERIFY(ok);
    QCOMPARE(f.worker.loadFundStatusAndMove3(99999, &ok), 0);
    QVERIFY(ok);
    QCOMPARE(f.log.take(),
             lines({"info THRWorker::loadFundStatusAndMove3(pid: 12341): 0, load OK: YES",
                    "info THRWorker::loadFundStatusAndMove3(pid: 99999): 0, load OK: YES"}));
}

void tst_FundTables::loadFundStatusAndMove3_whatCounts_data()
{
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QDate>("monthBegin");
    const QTime first(0, 0, 0);
    const QTime last(23, 59, 59);
    const auto add = [](const char *name, const QDate &day, const QTime &time) {
        QTest::newRow(name) << QDateTime(day, time) << QDate(day.year(), day.month(), 1);
    };
    add("noon", someDay, QTime(12, 0, 0));
    add("third of a month", QDate(2024, 4, 3), first);
    add("end of a year", QDate(2023, 12, 31), last);
    add("in January", QDate(2024, 1, 31), last);
    add("leap day", QDate(2024, 2, 29), last);
    add("clocks go forward west", QDate(2024, 3, 10), last);
    add("clocks go forward east", QDate(2024, 3, 31), last);
    add("clocks go back east", QDate(2024, 10, 27), first);
    add("clocks go back west", QDate(2024, 11, 3), last);
    add("clocks went back west", QDate(2024, 11, 4), first);
}

void tst_FundTables::loadFundStatusAndMove3_whatCounts()
{
    QFETCH(QDateTime, now);
    QFETCH(QDate, monthBegin);
    setMoment(now);
    const QDate today = now.date();
    // Each bit is one move: a sum tells which of them it holds.
    move(1, monthBegin.addDays(-400), 0x1);
    move(2, monthBegin.addMonths(-1), 0x2);
    move(3, monthBegin.addMonths(-1), 0x4);
    move(9, monthBegin.addDays(-1), 0x8);
    move(3, monthBegin.addDays(-1), 0x10);
    move(3, monthBegin, 0x20);
    move(3, today.addDays(-1), 0x40);
    move(1, monthBegin, 0x100);
    move(2, today.addDays(-1), 0x200);
    move(9, today, 0x400);
    move(3, today, 0x800);
    move(3, today.addDays(1), 0x1000);
    move(1, today.addDays(1), 0x2000);
    move(3, monthBegin.addDays(-1), 0x4000, 8);
    move(3, monthBegin, 0x8000, 8);
    move(3, monthBegin.addDays(-1), 0x10000, 7, 42);
    move(3, monthBegin, 0x20000, 7, 42);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    bool ok = false;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 0x7f);
    QVERIFY(ok);
    QCOMPARE(f.worker.loadFundStatusAndMove3(12342, &ok), 0x30000);
}

void tst_FundTables::loadFundStatusAndMove3_noneOfThisMonthOnItsFirstDay_data()
{
    QTest::addColumn<QDateTime>("now");
    for (const QDate &day :
         {QDate(2024, 1, 1), QDate(2024, 3, 1), QDate(2024, 4, 1), QDate(2024, 11, 1)}) {
        for (const QTime &time : {QTime(0, 0, 0), QTime(23, 59, 59)}) {
            const QDateTime now(day, time);
            QTest::newRow(qPrintable(now.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")))) << now;
        }
    }
}

void tst_FundTables::loadFundStatusAndMove3_noneOfThisMonthOnItsFirstDay()
{
    QFETCH(QDateTime, now);
    setMoment(now);
    const QDate today = now.date();
    move(2, today.addDays(-1), 0x1);
    move(3, today.addDays(-1), 0x2);
    move(2, today, 0x4);
    move(3, today, 0x8);
    move(3, today.addDays(1), 0x10);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    bool ok = false;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 0x3);
    QVERIFY(ok);
}

void tst_FundTables::loadFundStatusAndMove3_extremes()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    bool ok = false;
    move(1, QDate(2024, 1, 1), std::numeric_limits<int>::max());
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), std::numeric_limits<int>::max());
    move(1, QDate(2024, 1, 1), std::numeric_limits<int>::min(), 7, 42);
    QCOMPARE(f.worker.loadFundStatusAndMove3(12342, &ok), std::numeric_limits<int>::min());
    QVERIFY(ok);
}

void tst_FundTables::loadFundStatusAndMove3_secondSumRefused()
{
    move(1, QDate(2024, 2, 29), 1200);
    move(3, QDate(2024, 3, 1), 34);
    database->execute(
        QStringLiteral("REVOKE EXECUTE ON FUNCTION midnightFromTs FROM 'talvenhr'@'localhost'"));
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    bool ok = true;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 1200);
    QVERIFY(!ok);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [1370]: execute "
                    "command denied to user 'talvenhr'@'localhost' for routine "
                    "'attendance.midnightFromTs' QMYSQL: Unable to execute query"}));
}

void tst_FundTables::loadFundStatusAndMove3_hiddenTable()
{
    DatabaseWorker f(*database);
    const HiddenTable hidden(*database, "funds_move");
    bool ok = true;
    QCOMPARE(f.worker.loadFundStatusAndMove3(12341, &ok), 0);
    QVERIFY(!ok);
    QCOMPARE(f.log.take(),
             lines({"critical THRWorker::loadFundStatusAndMove3() - SQL 1 ERROR [1146]: Table "
                    "'attendance.funds_move' doesn't exist QMYSQL: Unable to execute query",
                    "critical THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [1146]: Table "
                    "'attendance.funds_move' doesn't exist QMYSQL: Unable to execute query"}));
}

// The correction

void tst_FundTables::writeFundMove3_row()
{
    QFETCH(QDateTime, now);
    setMoment(now);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    QVERIFY(f.worker.writeFundMove3(41, -150));
    QCOMPARE(moves(),
             QStringList {QStringLiteral("3|%1|%2|-150|7|41")
                              .arg(seconds(now.date()))
                              .arg(now.date().year() * 100 + now.date().month())});
    // It is the one that is asked for.
    QVERIFY(!f.worker.dbCheckFundMove(12341));
}

void tst_FundTables::writeFundMove3_replacesTheValueOfTheDay()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    QVERIFY(f.worker.writeFundMove3(41, 150));
    QVERIFY(f.worker.writeFundMove3(41, -20));
    const QString today = seconds(someDay);
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|-20|7|41").arg(today)});
    // Another person and another day have moves of their own.
    QVERIFY(f.worker.writeFundMove3(42, 5));
    clock->set(QDateTime(someDay.addDays(1), QTime(0, 0, 0)));
    QVERIFY(f.worker.writeFundMove3(41, 6));
    QCOMPARE(moves(),
             (QStringList {QStringLiteral("3|%1|202403|-20|7|41").arg(today),
                           QStringLiteral("3|%1|202403|6|7|41").arg(seconds(someDay.addDays(1))),
                           QStringLiteral("3|%1|202403|5|7|42").arg(today)}));
}

void tst_FundTables::writeFundMove3_sameValueTouchesNothing()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    QVERIFY(f.worker.writeFundMove3(41, 150));
    const QStringList before = moves();
    QVERIFY(!f.worker.writeFundMove3(41, 150));
    QCOMPARE(moves(), before);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_FundTables::writeFundMove3_extremes()
{
    DatabaseWorker f(*database);
    f.peer.fundId = 65535;
    QVERIFY(f.worker.writeFundMove3(4294967295u, std::numeric_limits<int>::min()));
    f.peer.fundId = 1;
    QVERIFY(f.worker.writeFundMove3(4294967295u, std::numeric_limits<int>::max()));
    QCOMPARE(
        moves(),
        (QStringList {
            QStringLiteral("3|%1|202403|2147483647|1|4294967295").arg(seconds(someDay)),
            QStringLiteral("3|%1|202403|-2147483648|65535|4294967295").arg(seconds(someDay))}));
}

void tst_FundTables::writeFundMove3_besideOtherMoves()
{
    move(1, someDay, 2000);
    move(3, someDay, 7, 8);
    move(3, someDay.addDays(-1), 8);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    QVERIFY(f.worker.writeFundMove3(41, 150));
    const QString today = seconds(someDay);
    QCOMPARE(moves(),
             (QStringList {QStringLiteral("3|%1|202403|8|7|41").arg(seconds(someDay.addDays(-1))),
                           QStringLiteral("1|%1|202403|2000|7|41").arg(today),
                           QStringLiteral("3|%1|202403|150|7|41").arg(today),
                           QStringLiteral("3|%1|202403|7|8|41").arg(today)}));
}

void tst_FundTables::writeFundMove3_hiddenTable()
{
    move(3, someDay, 7);
    DatabaseWorker f(*database);
    f.peer.fundId = 7;
    {
        const HiddenTable hidden(*database, "funds_move");
        QVERIFY(!f.worker.writeFundMove3(41, 150));
    }
    QCOMPARE(f.log.take(),
             QStringList {
                 QStringLiteral("critical THRWorker::writeFundMove3() - SQL ERROR [1146]: Table "
                                "'attendance.funds_move' doesn't exist QMYSQL: Unable to execute "
                                "query\n SQL: INSERT INTO funds_move (type, day, month, value, "
                                "fid, uid) VALUES(3, %1, monthFromTimestamp(%1), 150, 7, 41) ON "
                                "DUPLICATE KEY UPDATE value=VALUES(value)")
                     .arg(seconds(someDay))});
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|7|7|41").arg(seconds(someDay))});
}

// Whole passes. The uid of a person who is reopened lasts as long as the process, and is the same
// in each of these functions.

void tst_FundTables::pass_statementsOfACorrection()
{
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    move(1, QDate(2024, 2, 29), 1000);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    QStringList fund;
    for (const QString &event : f.log.take()) {
        if (event.contains(QStringLiteral("fund")) || event.contains(QStringLiteral("atten")))
            fund.append(event);
    }
    const QString march = seconds(QDate(2024, 3, 1));
    QCOMPARE(
        fund,
        (QStringList {
            QStringLiteral("sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;"),
            QStringLiteral("sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                           "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 7 AND "
                           "uid=(SELECT uid FROM people WHERE pid = 12341);"),
            QStringLiteral("sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE "
                           "a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc FROM people p WHERE "
                           "pid = 12341"),
            QStringLiteral("sql exec SELECT COUNT(*) FROM atten WHERE uid = 41 AND `lock`=0 AND "
                           "ok < 0 AND date >= midnightFromTs(UNIX_TIMESTAMP())"),
            QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.day < %1  AND fm.fid = 7 AND p.pid = 12341")
                .arg(march),
            QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.type=3 AND fm.day >= %1 AND "
                           "fm.day < midnightFromTs(UNIX_TIMESTAMP()) AND fm.fid = 7 AND "
                           "p.pid = 12341")
                .arg(march),
            QStringLiteral("sql exec INSERT INTO funds_move (type, day, month, value, fid, uid) "
                           "VALUES(3, %1, monthFromTimestamp(%1), 250, 7, 41) "
                           "ON DUPLICATE KEY UPDATE value=VALUES(value)")
                .arg(seconds(someDay)),
            QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                           "`date` >= %1 AND uid =41")
                .arg(seconds(QDate(2024, 2, 1)))}));
}

void tst_FundTables::pass_correctsAndReopensAttendance()
{
    move(1, QDate(2024, 1, 1), 2000);
    move(2, QDate(2024, 2, 10), -300);
    move(2, QDate(2024, 3, 4), -100); // of this month: not part of the balance yet
    attend(QDate(2024, 1, 31), 0, 1);
    attend(QDate(2024, 2, 1), 0, 1);
    attend(QDate(2024, 3, 14), 1, 1);
    attend(QDate(2024, 3, 14), 0, 1, 42);
    database->execute(QStringLiteral("UPDATE people SET lastCalc=%1, calc=9")
                          .arg(localSeconds(QDate(2024, 3, 14))));
    DatabaseWorker f(*database);
    f.writeExport({exportHeader(), record().balance(12.34).line()});
    f.tick();
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(moves().filter(QRegularExpression(QStringLiteral("^3"))),
             QStringList {QStringLiteral("3|%1|202403|-466|7|41").arg(seconds(someDay))});
    QCOMPARE(moves().size(), 4);
    QCOMPARE(database->rows(QStringLiteral("SELECT uid, `lock`, ok FROM atten "
                                           "ORDER BY uid, `date`")),
             lines({"41|0|1", "41|0|-1", "41|1|1", "42|0|1"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT lastCalc, calc FROM people ORDER BY uid")),
             (QStringList {seconds(QDate(2024, 1, 31)) + QStringLiteral("|0"),
                           seconds(QDate(2024, 3, 14)) + QStringLiteral("|9")}));
}

void tst_FundTables::pass_secondOfTheDayLeavesTheFundAlone()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    const QStringList written = moves();
    QCOMPARE(written, QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
    setMoment(QDateTime(someDay, QTime(23, 59, 59)));
    f.tick();
    QCOMPARE(moves(), written);
    QCOMPARE(f.peer.fundRetry.value(12341), true);

    // The next day it is looked at again, and found in line.
    f.worker.setLogLevel(1);
    setMoment(QDateTime(someDay.addDays(1), QTime(0, 0, 0)));
    f.tick();
    QVERIFY(f.log.takeMessages().contains(
        QStringLiteral("info THRWorker::loadFundStatusAndMove3(pid: 12341): 1250, load OK: YES")));
    QCOMPARE(moves(), written);
    QCOMPARE(f.peer.fundRetry.value(12341, true), false);
    f.tick();
    QCOMPARE(f.log.takeMessages().filter(QStringLiteral("loadFundStatusAndMove3")), QStringList());
}

void tst_FundTables::pass_onlyOneOfTheDayIsNotLookedAtAgain()
{
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    QCOMPARE(f.log.takeMatching({QStringLiteral("SELECT SUM(fm.value)")}).size(), 2);
    // Nothing has failed its checks since, so that nothing is to be made up for.
    setNoon(someDay.addDays(1));
    f.tick();
    QCOMPARE(f.log.takeMatching({QStringLiteral("SELECT SUM(fm.value)")}), QStringList());
    QCOMPARE(moves().size(), 1);
}

void tst_FundTables::pass_newBalanceWaitsForTheNextDay()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    f.writeExport({exportHeader(), record().balance(10).line()});
    f.tick();
    const QString first = QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay));
    QCOMPARE(moves(), QStringList {first});
    setNoon(someDay.addDays(1));
    f.tick();
    QCOMPARE(moves(),
             (QStringList {
                 first, QStringLiteral("3|%1|202403|-250|7|41").arg(seconds(someDay.addDays(1)))}));
}

void tst_FundTables::pass_waitsForTheCalculation()
{
    attend(someDay, 0, 1);
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    QCOMPARE(database->value(QStringLiteral("SELECT ok FROM atten")), QStringLiteral("-1"));
    // The next day attendance, opened by the correction itself, was not calculated yet.
    setNoon(someDay.addDays(1));
    f.writeExport({exportHeader(), record().balance(10).line()});
    f.tick();
    QCOMPARE(moves().size(), 1);
    database->execute(QStringLiteral("UPDATE atten SET ok=1"));
    f.tick();
    QCOMPARE(
        moves().mid(1),
        QStringList {QStringLiteral("3|%1|202403|-250|7|41").arg(seconds(someDay.addDays(1)))});
}

void tst_FundTables::pass_waitsForARunningCalculation()
{
    database->execute(
        QStringLiteral("UPDATE people SET calc=%1").arg(localSeconds(someDay, 11, 59, 0)));
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    setMoment(QDateTime(someDay, QTime(12, 13, 59)));
    f.tick();
    QCOMPARE(moves(), QStringList());
    setMoment(QDateTime(someDay, QTime(12, 14, 0)));
    f.tick();
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
}

void tst_FundTables::pass_newPersonGetsTheBalanceAtTheNext()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().pid(7001, 1).tpp(0).balance(12.5).line()});
    f.tick();
    f.log.clear();
    QCOMPARE(moves(), QStringList());
    const QString uid = database->value(QStringLiteral("SELECT uid FROM people WHERE pid=70011"));
    QVERIFY(!uid.isEmpty());
    f.tick();
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(moves(),
             QStringList {QStringLiteral("3|%1|202403|1250|7|%2").arg(seconds(someDay), uid)});
}

void tst_FundTables::pass_inactivePersonIsNotCorrected()
{
    database->execute(QStringLiteral("UPDATE people SET status=0 WHERE uid=41"));
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().tpp(0).balance(12.5).line()});
    f.tick();
    f.tick();
    f.log.clear();
    QCOMPARE(database->value(QStringLiteral("SELECT status FROM people WHERE uid=41")),
             QStringLiteral("1"));
    // The fund's checks had passed for the inactive row: nothing was left to be made up for.
    QCOMPARE(moves(), QStringList());
    database->force();
    f.tick();
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
}

void tst_FundTables::pass_secondLineOfAPersonWaits()
{
    DatabaseWorker f(*database);
    f.writeExport({exportHeader(), record().balance(12.5).line(), record().balance(10).line()});
    f.tick();
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
    QCOMPARE(f.peer.fundRetry.value(12341), true);
}

void tst_FundTables::pass_monthEndLetsOtherMovesCount()
{
    move(1, QDate(2024, 1, 1), 2000);
    move(2, QDate(2024, 3, 20), -500);
    setMoment(QDateTime(QDate(2024, 3, 31), QTime(23, 59, 59)));
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(15).line()});
    f.tick();
    QCOMPARE(moves().last(),
             QStringLiteral("3|%1|202403|-500|7|41").arg(seconds(QDate(2024, 3, 31))));
    // Another pass finds the correction of today, so that the fund is looked at again.
    f.tick();
    // A second later the leave of March counts as well as its correction.
    setMoment(QDateTime(QDate(2024, 4, 1), QTime(0, 0, 0)));
    f.tick();
    QCOMPARE(moves().last(),
             QStringLiteral("3|%1|202404|500|7|41").arg(seconds(QDate(2024, 4, 1))));
    QCOMPARE(moves().size(), 4);
}

void tst_FundTables::pass_withoutAFund()
{
    database->execute(QStringLiteral("DELETE FROM funds"));
    DatabaseWorker f(*database, DatabaseWorker::Recorded);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    QCOMPARE(f.log.takeMatching({QStringLiteral("fund"), QStringLiteral("atten")}),
             lines({"sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;"}));
    QVERIFY(f.peer.fundRetry.isEmpty());
    // A fund that appears is no reason to correct anybody: the file has not changed.
    database->execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (7, 3, 2)"));
    f.tick();
    QCOMPARE(f.log.takeMatching({QStringLiteral("funds_move")}).size(), 1);
    QCOMPARE(moves(), QStringList());
}

void tst_FundTables::pass_fundThatIsGoneStaysInUse()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({exportHeader(), record().line()});
    f.tick();
    database->execute(QStringLiteral("DELETE FROM funds"));
    f.writeExport({exportHeader(), record().balance(12.5).line()});
    f.tick();
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
}

void tst_FundTables::pass_inTestMode()
{
    const QStringList before = database->rows(QStringLiteral("SELECT * FROM people"));
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    f.writeExport({exportHeader(), record().phone(QStringLiteral("111")).balance(12.5).line()});
    f.tick();
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM people")), before);
    QCOMPARE(moves(), QStringList {QStringLiteral("3|%1|202403|1250|7|41").arg(seconds(someDay))});
}

QTEST_GUILESS_MAIN(tst_FundTables)
#include "tst_fundtables.moc"
