// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass on a server with another time zone than the plugin's.
#include "support/faults/faultround.h"

#include <QtTest>

class tst_TimeZones : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void timeZone_changesNothingOnMostDays_data();
    void timeZone_changesNothingOnMostDays();
    void timeZoneWest_secondBalanceAtNoonReplacesTheFirst();
    void timeZoneEast_secondBalanceAtNoonIsRight();
    void timeZone_secondBalanceFromAnHourOn_data();
    void timeZone_secondBalanceFromAnHourOn();
    void timeZoneSame_secondBalanceOfADayWaits();
    void timeZone_countsTheFirstOfAMonthToTheMonthBefore();
    void timeZone_correctionOnTheFirstCountsToTheMonthBefore();

private:
    void setTimeZone(const QString &zone);
    /// A pass after which the fund holds 12.50, then one of an export with this balance.
    QStringList changeBalanceTwice(FaultRound &round, const QString &balance);
    QString balance(FaultRound &round);
};

void tst_TimeZones::cleanup()
{
    setTimeZone(QStringLiteral("SYSTEM"));
    clock->set(companyNow());
}

/// For new connections; the administrator's keeps the zone of the process.
void tst_TimeZones::setTimeZone(const QString &zone)
{
    database->execute(QStringLiteral("SET GLOBAL time_zone = '%1'").arg(zone));
}

QString tst_TimeZones::balance(FaultRound &round)
{
    return database->value(QStringLiteral("SELECT SUM(value) FROM funds_move WHERE uid = %1")
                               .arg(round.company.uid(QStringLiteral("B"))));
}

QStringList tst_TimeZones::changeBalanceTwice(FaultRound &round, const QString &second)
{
    round.pass();
    if (balance(round) != QLatin1String("1250"))
        qFatal("the first balance is not right");
    round.company.calculateAttendance();
    QStringList file = round.company.exportLines();
    file.replaceInStrings(QStringLiteral("|12.5|"), QStringLiteral("|%1|").arg(second));
    round.f.writeExport(file);
    return complaints(round.pass());
}

void tst_TimeZones::timeZone_changesNothingOnMostDays_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QStringList>("said");
    QTest::newRow("west") << QStringLiteral("-05:00") << QStringList();
    QTest::newRow("Greenwich") << QStringLiteral("+00:00") << QStringList();
    // The correction of today is not found, is written once more, and changes nothing.
    QTest::newRow("east") << QStringLiteral("+08:00")
                          << lines({"warning THRWorker::doSyncRecord() - funds_move type (type=3, "
                                    "valeu=200) not writed for uid 102 (pid: 90021)"});
}

void tst_TimeZones::timeZone_changesNothingOnMostDays()
{
    QFETCH(QString, zone);
    QFETCH(QStringList, said);
    setTimeZone(zone);
    FaultRound round(*database);
    const QString difference = eventDifference(round.pass(),
                                               ExpectedPass(0, Fault(), serverTable()).events());
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    QCOMPARE(contentDifference(undisturbed->contentAfter(), round.company.content()),
             QStringList());
    round.company.calculateAttendance();
    database->force();
    QCOMPARE(complaints(round.pass()), said);
    round.company.calculateAttendance();
    QCOMPARE(contentDifference(undisturbed->contentInTheEnd(), round.company.content()),
             QStringList());
}

/// The correction of today lies before the server's midnight. So it is not found, counts towards
/// the balance, and is replaced by what still lacks: 100 in the place of 200.
void tst_TimeZones::timeZoneWest_secondBalanceAtNoonReplacesTheFirst()
{
    setTimeZone(QStringLiteral("+00:00"));
    FaultRound round(*database);
    QCOMPARE(changeBalanceTwice(round, QStringLiteral("13.5")), QStringList());
    QCOMPARE(balance(round), QStringLiteral("1150"));

    // On the next day nobody asks again, unless the pass is forced.
    setMoment(companyNow().addDays(1));
    setTimeZone(QStringLiteral("SYSTEM"));
    round.company.calculateAttendance();
    round.pass();
    QCOMPARE(balance(round), QStringLiteral("1150"));
    database->force();
    round.pass();
    QCOMPARE(balance(round), QStringLiteral("1350"));
}

/// The correction of today is not found either, but it does not count yet: the new one has all.
void tst_TimeZones::timeZoneEast_secondBalanceAtNoonIsRight()
{
    setTimeZone(QStringLiteral("+08:00"));
    FaultRound round(*database);
    QCOMPARE(changeBalanceTwice(round, QStringLiteral("13.5")), QStringList());
    QCOMPARE(balance(round), QStringLiteral("1350"));
}

/// Noon is not every hour: what counts is whether the server's midnight lies behind the machine's.
void tst_TimeZones::timeZone_secondBalanceFromAnHourOn_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<QString>("fund");
    QTest::addColumn<int>("notWritten"); // of a forced pass after that
    const auto add = [](const char *name, const char *zone, const QTime &time, const char *fund,
                        int notWritten) {
        QTest::newRow(name) << QString::fromLatin1(zone) << time << QString::fromLatin1(fund)
                            << notWritten;
    };
    add("6 hours west, before 6", "-05:00", QTime(5, 59), "1350", 2);
    add("6 hours west, from 6 on", "-05:00", QTime(6, 0), "1150", 0);
    add("7 hours east, before 17", "+08:00", QTime(16, 59), "1350", 2);
    add("7 hours east, from 17 on", "+08:00", QTime(17, 0), "1150", 0);
}

void tst_TimeZones::timeZone_secondBalanceFromAnHourOn()
{
    QFETCH(QString, zone);
    QFETCH(QTime, time);
    QFETCH(QString, fund);
    QFETCH(int, notWritten);
    setTimeZone(zone);
    FaultRound round(*database);
    setMoment(QDateTime(companyNow().date(), time));
    QCOMPARE(changeBalanceTwice(round, QStringLiteral("13.5")), QStringList());
    QCOMPARE(balance(round), fund);

    round.company.calculateAttendance();
    database->force();
    QCOMPARE(round.pass().filter(QStringLiteral(") not writed for uid ")).size(), notWritten);
}

/// What it is like in one time zone.
void tst_TimeZones::timeZoneSame_secondBalanceOfADayWaits()
{
    FaultRound round(*database);
    QCOMPARE(changeBalanceTwice(round, QStringLiteral("13.5")), QStringList());
    QCOMPARE(balance(round), QStringLiteral("1250"));
    setMoment(companyNow().addDays(1));
    round.company.calculateAttendance();
    round.pass();
    QCOMPARE(balance(round), QStringLiteral("1350"));
}

/// The local midnight of 1 February is an hour of 31 January in Greenwich. Planning anew finds the
/// right month, and leaves the other.
void tst_TimeZones::timeZone_countsTheFirstOfAMonthToTheMonthBefore()
{
    setTimeZone(QStringLiteral("+00:00"));
    FaultRound round(*database);
    database->execute(
        QStringLiteral("DELETE FROM atten WHERE `date` >= UNIX_TIMESTAMP('2026-01-01') "
                       "AND `date` < UNIX_TIMESTAMP('2026-03-01')"));
    database->execute(QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES "
                                     "(%1, UNIX_TIMESTAMP('2026-02-01'), 1)")
                          .arg(round.company.uid(QStringLiteral("B"))));
    round.pass();
    QCOMPARE(database->rows(QStringLiteral("SELECT month, gid FROM groups_month ORDER BY month")),
             lines({"202601|15", "202603|15"}));

    setTimeZone(QStringLiteral("SYSTEM"));
    database->execute(QStringLiteral("DELETE FROM groups_plan"));
    round.recover();
    QCOMPARE(database->rows(QStringLiteral("SELECT month FROM groups_month ORDER BY month")),
             lines({"202601", "202602", "202603"}));
}

/// A forced pass finds the balance right, and lets the month stand.
void tst_TimeZones::timeZone_correctionOnTheFirstCountsToTheMonthBefore()
{
    setTimeZone(QStringLiteral("+00:00"));
    FaultRound round(*database);
    setMoment(QDateTime(QDate(2026, 4, 1), QTime(12, 0)));
    round.pass();
    const QString month = QStringLiteral("SELECT month FROM funds_move "
                                         "WHERE day = UNIX_TIMESTAMP('2026-04-01')");
    QCOMPARE(database->rows(month), lines({"202603"}));
    setTimeZone(QStringLiteral("SYSTEM"));
    setMoment(QDateTime(QDate(2026, 4, 2), QTime(12, 0)));
    round.recover();
    QCOMPARE(database->rows(month).value(0), QStringLiteral("202603"));
}

QTEST_GUILESS_MAIN(tst_TimeZones)
#include "tst_timezones.moc"
