// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass on a server with another time zone or character set than the plugin's.
#include "faults/faultround.h"

#include <QtTest>

class tst_ForeignSettings : public FaultFixture
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
    void sessionCharset_isPutRight();
    void tableCharset_holdsTheName();
    void tableCharset_lacksLettersOnAStrictServer();
    void tableCharset_lacksLettersOnALenientServer();
    void textLongerThanItsColumn_data();
    void textLongerThanItsColumn();

private:
    void setTimeZone(const QString &zone);
    void setTableCharset(const QString &charset);
    void setSessionCharset(const QString &charset);
    void setSurnameLength(int characters);
    /// A pass after which the fund holds 12.50, then one of an export with this balance.
    QStringList changeBalanceTwice(FaultRound &round, const QString &balance);
    QString balance(FaultRound &round);
    QStringList names();
    /// The export with another name for C, who is new.
    static QStringList exportNaming(const ServerCompany &company);
};

void tst_ForeignSettings::cleanup()
{
    setTimeZone(QStringLiteral("SYSTEM"));
    setTableCharset(QStringLiteral("utf8mb4"));
    setSurnameLength(128);
    setSessionCharset(QStringLiteral("utf8mb4"));
    database->execute(QStringLiteral("SET GLOBAL sql_mode = DEFAULT"));
    clock->set(companyNow());
}

/// For new connections; the administrator's keeps the zone of the process.
void tst_ForeignSettings::setTimeZone(const QString &zone)
{
    database->execute(QStringLiteral("SET GLOBAL time_zone = '%1'").arg(zone));
}

void tst_ForeignSettings::setTableCharset(const QString &charset)
{
    database->execute(
        QStringLiteral("ALTER TABLE people CONVERT TO CHARACTER SET %1").arg(charset));
}

/// For new connections.
void tst_ForeignSettings::setSessionCharset(const QString &charset)
{
    for (const char *variable : {"client", "connection", "results", "server"})
        database->execute(QStringLiteral("SET GLOBAL character_set_%1 = %2")
                              .arg(QLatin1String(variable), charset));
}

void tst_ForeignSettings::setSurnameLength(int characters)
{
    database->execute(
        QStringLiteral("ALTER TABLE people MODIFY surname VARCHAR(%1) NOT NULL DEFAULT ''")
            .arg(characters));
}

QString tst_ForeignSettings::balance(FaultRound &round)
{
    return database->value(QStringLiteral("SELECT SUM(value) FROM funds_move WHERE uid = %1")
                               .arg(round.company.uid(QStringLiteral("B"))));
}

QStringList tst_ForeignSettings::changeBalanceTwice(FaultRound &round, const QString &second)
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

QStringList tst_ForeignSettings::names()
{
    return database->rows(QStringLiteral("SELECT name, surname FROM people WHERE type = 4"));
}

QStringList tst_ForeignSettings::exportNaming(const ServerCompany &company)
{
    QStringList file = company.exportLines();
    file.last().replace(QStringLiteral("Ján|Novák"), QStringLiteral("Ľudmila|Ďurišová"));
    return file;
}

// Time zones

void tst_ForeignSettings::timeZone_changesNothingOnMostDays_data()
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

void tst_ForeignSettings::timeZone_changesNothingOnMostDays()
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
void tst_ForeignSettings::timeZoneWest_secondBalanceAtNoonReplacesTheFirst()
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
void tst_ForeignSettings::timeZoneEast_secondBalanceAtNoonIsRight()
{
    setTimeZone(QStringLiteral("+08:00"));
    FaultRound round(*database);
    QCOMPARE(changeBalanceTwice(round, QStringLiteral("13.5")), QStringList());
    QCOMPARE(balance(round), QStringLiteral("1350"));
}

/// Noon is not every hour: what counts is whether the server's midnight lies behind the machine's.
void tst_ForeignSettings::timeZone_secondBalanceFromAnHourOn_data()
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

void tst_ForeignSettings::timeZone_secondBalanceFromAnHourOn()
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
void tst_ForeignSettings::timeZoneSame_secondBalanceOfADayWaits()
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
void tst_ForeignSettings::timeZone_countsTheFirstOfAMonthToTheMonthBefore()
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
void tst_ForeignSettings::timeZone_correctionOnTheFirstCountsToTheMonthBefore()
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

// Character sets

/// The driver asks for UTF-8 itself, whatever the server has chosen.
void tst_ForeignSettings::sessionCharset_isPutRight()
{
    FaultRound round(*database);
    database->execute(
        QStringLiteral("SET GLOBAL init_connect = 'SET timestamp = %1; SET NAMES latin1'")
            .arg(companyNow().toSecsSinceEpoch()));
    setSessionCharset(QStringLiteral("latin1"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_ForeignSettings::tableCharset_holdsTheName()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("cp1250"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_ForeignSettings::tableCharset_lacksLettersOnAStrictServer()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("latin1"));
    round.f.writeExport(exportNaming(round.company));
    const QStringList said = complaints(round.pass());
    QCOMPARE(said.size(), 1);
    QVERIFY2(
        said.first().startsWith(
            QStringLiteral("critical THRWorker::dbAddPerson(9003.1) - SQL ERROR: "
                           "Incorrect string value: '\\xC4\\xBDudmi"))
            && said.first().contains(QStringLiteral("for column `attendance`.`people`.`name`")),
        qPrintable(said.first()));
    QCOMPARE(names(), QStringList());

    setTableCharset(QStringLiteral("utf8mb4"));
    round.recover();
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

/// Not a word of it; the next forced pass with the right letters finds that the row differs.
void tst_ForeignSettings::tableCharset_lacksLettersOnALenientServer()
{
    FaultRound round(*database);
    setTableCharset(QStringLiteral("latin1"));
    database->execute(QStringLiteral("SET GLOBAL sql_mode = ''"));
    round.f.writeExport(exportNaming(round.company));
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(names(), QStringList {QStringLiteral("?udmila|?urišová")});

    setTableCharset(QStringLiteral("utf8mb4"));
    round.recover();
    QCOMPARE(names(), QStringList {QStringLiteral("Ľudmila|Ďurišová")});
}

void tst_ForeignSettings::textLongerThanItsColumn_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("surnames");
    QTest::addColumn<QStringList>("said");
    const QString cut(128, QLatin1Char('x'));
    QTest::newRow("strict server")
        << QStringLiteral("STRICT_TRANS_TABLES") << lines({"Novák", "Novák"})
        << lines({"critical THRWorker::dbUpdatePerson(9002.1) - SQL ERROR: Data too long for "
                  "column 'surname' at row 1 QMYSQL: Unable to execute query",
                  "critical THRWorker::dbAddPerson(9003.1) - SQL ERROR: Data too long for column "
                  "'surname' at row 1 QMYSQL: Unable to execute query"});
    QTest::newRow("lenient server")
        << QString() << QStringList {QStringLiteral("Novák"), cut, cut} << QStringList();
}

void tst_ForeignSettings::textLongerThanItsColumn()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, surnames);
    QFETCH(QStringList, said);
    FaultRound round(*database);
    database->execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(mode));
    const QString surname(129, QLatin1Char('x'));
    QStringList file = round.company.exportLines();
    file[2].replace(QStringLiteral("Novák"), surname);
    file[3].replace(QStringLiteral("Novák"), surname);
    round.f.writeExport(file);
    QCOMPARE(complaints(round.pass()), said);
    const QString stored = QStringLiteral("SELECT surname FROM people ORDER BY pid");
    QCOMPARE(database->rows(stored), surnames);

    setSurnameLength(200);
    round.recover();
    QCOMPARE(database->rows(stored), (QStringList {QStringLiteral("Novák"), surname, surname}));
    database->execute(QStringLiteral("DELETE FROM people"));
}

QTEST_GUILESS_MAIN(tst_ForeignSettings)
#include "tst_foreignsettings.moc"
