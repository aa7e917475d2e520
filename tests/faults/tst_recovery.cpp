// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What brings back what a forced pass does not: the advice of docs/recovery.md.
#include "support/faults/faultround.h"

#include <QtTest>

namespace {

QSqlError refused()
{
    return QSqlError(QString(), QStringLiteral("refused"), QSqlError::StatementError);
}

/// B as the database has him before the pass: member of branch 10, without a calendar.
RecordBuilder unchangedB(FaultRound &round)
{
    const QString pamId = round.database.value(
        QStringLiteral("SELECT pamId FROM people WHERE uid = %1")
            .arg(round.company.uid(QStringLiteral("B"))));
    return record().pid(pamId.section(QLatin1Char('.'), 0, 0).toUInt(), 1).branch(10).balance(10.5);
}

/// The days of B that wait for a calculation.
QString openDays(FaultRound &round)
{
    return round.database.value(QStringLiteral("SELECT COUNT(*) FROM atten WHERE ok < 0"));
}

} // namespace

class tst_Recovery : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void removedExport_nextTickFindsNothing();
    void restart_setsSupervisorsAndTellsTerminals();
    void restart_enrolsNobodyInPam();
    void memberRowTakenAway_joinsAnew();
    void memberRowTakenAway_tellsAllTerminals();
    void planRowTakenAway_plansAnew();
    void uidNotFound_joinsWithAForcedPass_data();
    void uidNotFound_joinsWithAForcedPass();
    void typeAlone_comesWithARestart();
    void state_beginsOnTheDayOfTheLaterPass();
    void membershipAskedInVain_joinsAnew();
    void planAskedInVain_isNotAdded();
    void reopening_withoutACalendarDateNeverComes_data();
    void reopening_withoutACalendarDateNeverComes();
    void reopening_withACalendarDateComesWithAForcedPass();

private:
    /// A pass in which these calls fail, and the recovery.
    void lose(FaultRound &round, const Fault &fault);
    /// A pass in which the statements that begin so fail, with what it complains of.
    static QStringList passRefusing(FaultRound &round, const QString &beginning);
    QStringList lost(FaultRound &round) const;
    /// One column of B's row.
    QString ofB(FaultRound &round, const QString &column);
};

void tst_Recovery::cleanup()
{
    database->execute(QStringLiteral("SET GLOBAL read_only = 0"));
    clock->set(companyNow());
}

void tst_Recovery::lose(FaultRound &round, const Fault &fault)
{
    const QStringList ids = ExpectedPass(0, fault, serverTable()).calls();
    auto hook = beforeEachCall([&](int call) {
        return fault.strikes(call, ids.value(call - 1)) ? refused() : QSqlError();
    });
    round.pass();
    hook.reset();
    round.recover();
}

QStringList tst_Recovery::passRefusing(FaultRound &round, const QString &beginning)
{
    const RecordedCallHook hook([&](const QString &text) {
        return text.startsWith(QStringLiteral("exec ") + beginning) ? refused() : QSqlError();
    });
    return complaints(round.pass());
}

QString tst_Recovery::ofB(FaultRound &round, const QString &column)
{
    return database->value(QStringLiteral("SELECT %1 FROM people WHERE uid = %2")
                               .arg(column, round.company.uid(QStringLiteral("B"))));
}

QStringList tst_Recovery::lost(FaultRound &round) const
{
    return contentDifference(undisturbed->contentInTheEnd(), round.company.content());
}

/// By default the export goes with the pass that reads it. The force variable of a pass that could
/// not write stays set, and the next tick's pass clears it without having seen anybody.
void tst_Recovery::removedExport_nextTickFindsNothing()
{
    FaultRound round(*database);
    round.f.worker.setDeleteFile(true);
    const QStringList before = round.company.content();
    database->execute(QStringLiteral("SET GLOBAL read_only = 1"));
    round.pass();
    database->execute(QStringLiteral("SET GLOBAL read_only = 0"));
    QCOMPARE(contentDifference(before, round.company.content()), QStringList());
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(contentDifference(before, round.company.content()),
             lines({"+vars OQS.THRWorker.forceSync|0", "-vars OQS.THRWorker.forceSync|1"}));

    round.f.writeExport(round.company.exportLines());
    database->force();
    QCOMPARE(complaints(round.pass()), QStringList());
    QVERIFY(!round.company.uid(QStringLiteral("A")).isEmpty());
    QCOMPARE(ofB(round, QStringLiteral("phone")), QStringLiteral("111"));
}

/// Everybody counts as changed then: known people are updated, and their terminals are told, the
/// new ones included. The day from which B's state holds has been the day of the first pass; the
/// mark of the calculated days follows it, and goes back with the calendar's date.
void tst_Recovery::restart_setsSupervisorsAndTellsTerminals()
{
    FaultRound round(*database);
    lose(round, {numberOf(QStringLiteral("B.newsUid")), 1000});
    QCOMPARE(
        lost(round),
        lines({"+admins_people 5|B|1", "+term 34|0", "-admins_people 5|B|0", "-admins_people 6|B|1",
               "-term 34|2", "-term_sync 34|U|people|uid|B|2026-03-17 12:00:00|2"}));

    round.restart();
    QCOMPARE(complaints(round.pass()), QStringList());
    round.company.calculateAttendance();
    QCOMPARE(lost(round),
             lines({"+people A.edited: 2026-03-17 12:00:00", "+people A.editor: 0",
                    "+people B.lastCalc: 2026-01-31", "+people C.edited: 2026-03-17 12:00:00",
                    "+people C.editor: 0", "+term_sync 31|U|people|uid|A|2026-03-17 12:00:00|2",
                    "+term_sync 32|U|people|uid|A|2026-03-17 12:00:00|2",
                    "+term_sync 33|U|people|uid|B|2026-03-17 12:00:00|2", "-people A.edited: NULL",
                    "-people A.editor: NULL", "-people B.lastCalc: 2025-12-31",
                    "-people C.edited: NULL", "-people C.editor: NULL"}));
}

void tst_Recovery::restart_enrolsNobodyInPam()
{
    FaultRound round(*database);
    lose(round, {numberOf(QStringLiteral("A.blocks")), 1000});
    QCOMPARE(lost(round).filter(QRegularExpression(QStringLiteral("PaM|pam"))),
             lines({"-PaM list A", "-people_pam A|1"}));
    round.restart();
    round.pass();
    QCOMPARE(lost(round).filter(QRegularExpression(QStringLiteral("PaM|pam|admins_people"))),
             lines({"-PaM list A", "-people_pam A|1"}));
}

/// The other terminal is told once more.
void tst_Recovery::memberRowTakenAway_joinsAnew()
{
    FaultRound round(*database);
    lose(round, only(lines({"31.people"})));
    QCOMPARE(lost(round),
             lines({"+term 31|0", "-people_term 31|A", "-term 31|2",
                    "-term_sync 31|I|people_term|uid|A|2026-03-17 12:00:00|2"}));
    database->execute(QStringLiteral("DELETE FROM brape WHERE bid = 1 AND uid = %1")
                          .arg(round.company.uid(QStringLiteral("A"))));
    round.recover();
    QCOMPARE(lost(round), lines({"+term_sync 32|I|people_term|uid|A|2026-03-17 12:00:00|2"}));
}

void tst_Recovery::memberRowTakenAway_tellsAllTerminals()
{
    FaultRound round(*database);
    lose(round, only(lines({"31.people", "32.people", "1.admins"})));
    QCOMPARE(lost(round).filter(QRegularExpression(QStringLiteral("people_term \\d|admins"))),
             lines({"-admins_people 8|A|0", "-admins_people 9|A|0", "-people_term 31|A",
                    "-people_term 32|A"}));
    database->execute(QStringLiteral("DELETE FROM brape WHERE bid = 1 AND uid = %1")
                          .arg(round.company.uid(QStringLiteral("A"))));
    round.recover();
    QCOMPARE(lost(round), QStringList());
}

void tst_Recovery::planRowTakenAway_plansAnew()
{
    FaultRound round(*database);
    lose(round, only(lines({"B.months", "B.planReopened"})));
    QCOMPARE(
        lost(round),
        lines({"+atten B|2026-01-10|1", "+people B.lastCalc: 2026-01-31", "-atten B|2026-01-10|2",
               "-groups_month B|202601|15", "-groups_month B|202602|15",
               "-groups_month B|202603|15", "-people B.lastCalc: 2025-12-31"}));
    database->execute(QStringLiteral("DELETE FROM groups_plan WHERE uid = %1")
                          .arg(round.company.uid(QStringLiteral("B"))));
    round.recover();
    QCOMPARE(lost(round), QStringList());
}

void tst_Recovery::uidNotFound_joinsWithAForcedPass_data()
{
    QTest::addColumn<int>("person");
    QTest::addColumn<QString>("members"); // after a plain pass
    QTest::addColumn<QStringList>("supervisor");
    QTest::newRow("new") << 1 << QStringLiteral("1") << lines({"-admins_people 6|A|1"});
    QTest::newRow("known") << 2 << QStringLiteral("0")
                           << lines({"+admins_people 5|B|1", "-admins_people 5|B|0",
                                     "-admins_people 6|B|1"});
}

/// Nobody is queued for the branch then, and no record waits. A plain pass sees new people again,
/// whose leave could not be looked at. The supervisor was looked for in vain as well.
void tst_Recovery::uidNotFound_joinsWithAForcedPass()
{
    QFETCH(int, person);
    QFETCH(QString, members);
    QFETCH(QStringList, supervisor);
    FaultRound round(*database);
    const QString number = round.company.exportLines().at(person).section(QLatin1Char('|'), 0, 0);
    const QStringList said = passRefusing(
        round,
        QStringLiteral("SELECT uid FROM people WHERE pid = %1 LIMIT 1;")
            .arg(number + QLatin1Char('1')));
    QCOMPARE(
        said.filter(QStringLiteral("THRWorker::dbGetUidByPid() - SQL ERROR []: refused")).size(),
        1 + person);
    QCOMPARE(said.filter(QStringLiteral(" into [groups_plan]!")).size(), 1);
    QCOMPARE(round.f.peer.waitingRecords.size(), 0);

    const QString joined = QStringLiteral("SELECT COUNT(*) FROM brape WHERE bid = %1 AND uid = %2")
                               .arg(person)
                               .arg(round.company.uid(QStringLiteral("AB").mid(person - 1, 1)));
    QCOMPARE(database->value(joined), QStringLiteral("0"));
    round.company.calculateAttendance();
    database->execute(QStringLiteral("UPDATE vars SET value = '0' "
                                     "WHERE name = 'OQS.THRWorker.forceSync'"));
    round.pass();
    QCOMPARE(database->value(joined), members);
    round.recover();
    QCOMPARE(database->value(joined), QStringLiteral("1"));
    QCOMPARE(lost(round).filter(QStringLiteral("admins_people")), supervisor);
}

/// The database does not tell the type of an employment, so that no difference is seen.
void tst_Recovery::typeAlone_comesWithARestart()
{
    FaultRound round(*database);
    const QString type = QStringLiteral("type");
    round.f.writeExport({exportHeader(), unchangedB(round).line()});
    QCOMPARE(complaints(round.pass()), QStringList());
    round.f.writeExport({exportHeader(), unchangedB(round).tpp(51).line()});
    QCOMPARE(passRefusing(round, QStringLiteral("UPDATE people SET pamId")),
             lines({"critical THRWorker::dbUpdatePerson(9002.1) - SQL ERROR: refused"}));
    database->force();
    QVERIFY(!round.pass().join(QLatin1Char(' ')).contains(QStringLiteral("UPDATE people")));
    QCOMPARE(ofB(round, type), QStringLiteral("1"));

    round.restart();
    round.pass();
    QCOMPARE(ofB(round, type), QStringLiteral("4"));
}

/// The row is written by a forced pass, but for the mark of the calculated days.
void tst_Recovery::state_beginsOnTheDayOfTheLaterPass()
{
    FaultRound round(*database);
    const QString begin = QStringLiteral("DATE(FROM_UNIXTIME(rsBegin))");
    const QString mark = QStringLiteral("DATE(FROM_UNIXTIME(lastCalc))");
    round.f.writeExport({exportHeader(), unchangedB(round).line()});
    QCOMPARE(complaints(round.pass()), QStringList());
    round.f.writeExport({exportHeader(), unchangedB(round).es(5).line()});
    QCOMPARE(passRefusing(round, QStringLiteral("UPDATE people SET pamId")).size(), 1);
    QCOMPARE(ofB(round, begin), QStringLiteral("NULL"));

    setMoment(companyNow().addDays(1));
    database->force();
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(ofB(round, begin), QStringLiteral("2026-03-18"));
    QCOMPARE(ofB(round, mark), QStringLiteral("2026-03-10"));

    round.restart();
    round.pass();
    QCOMPARE(ofB(round, begin), QStringLiteral("2026-03-18"));
    QCOMPARE(ofB(round, mark), QStringLiteral("2026-03-17"));
}

/// The member counts as one who joins, from now on.
void tst_Recovery::membershipAskedInVain_joinsAnew()
{
    FaultRound round(*database);
    round.pass();
    const QStringList before = round.company.content();
    setMoment(companyNow().addSecs(3600));
    database->force();
    const QString question = QStringLiteral("SELECT COUNT(*) FROM brape WHERE bid = 1 ");
    QCOMPARE(passRefusing(round, question),
             lines({"critical THRWorker::dbCheckPersonInBranch() - SQL ERROR []: refused"}));
    QCOMPARE(contentDifference(before, round.company.content()).filter(QStringLiteral("|A|")),
             lines({"+brape 1|A|2026-03-17 13:00:00",
                    "+term_sync 31|I|people_term|uid|A|2026-03-17 13:00:00|2",
                    "+term_sync 32|I|people_term|uid|A|2026-03-17 13:00:00|2",
                    "-brape 1|A|2026-03-17 12:00:00"}));
}

void tst_Recovery::planAskedInVain_isNotAdded()
{
    FaultRound round(*database);
    round.pass();
    database->force();
    const QStringList before = round.company.content();
    const QStringList said = passRefusing(
        round, QStringLiteral("SELECT COUNT(*) FROM groups_plan WHERE gid = 13 "));
    QCOMPARE(said.size(), 2);
    QCOMPARE(said.at(0),
             QStringLiteral("critical THRWorker::dbCheckGroupsPlan() - SQL ERROR []: refused"));
    QVERIFY(said.at(1).startsWith(QStringLiteral("warning THRWorker: can't add record '9001.1 ")));
    QCOMPARE(contentDifference(before, round.company.content()).filter(QStringLiteral("groups")),
             QStringList());
}

void tst_Recovery::reopening_withoutACalendarDateNeverComes_data()
{
    QTest::addColumn<uint>("branch");
    QTest::addColumn<double>("balance");
    QTest::newRow("new branch") << 20u << 10.5;
    QTest::newRow("new balance") << 10u << 12.5;
}

/// Row and balance are right then, so that nothing tells any more that the days are to be
/// calculated.
void tst_Recovery::reopening_withoutACalendarDateNeverComes()
{
    QFETCH(uint, branch);
    QFETCH(double, balance);
    FaultRound round(*database);
    round.f.writeExport({exportHeader(), unchangedB(round).branch(branch).balance(balance).line()});
    QCOMPARE(passRefusing(round, QStringLiteral("UPDATE atten")),
             lines({"critical THRWorker::dbChangeLastCalc() [UPDATE atten] - SQL ERROR []: "
                    "refused"}));
    setMoment(companyNow().addDays(1));
    database->force();
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(openDays(round), QStringLiteral("0"));
    round.restart();
    QCOMPARE(complaints(round.pass()), QStringList());
    QCOMPARE(openDays(round), QStringLiteral("0"));
}

void tst_Recovery::reopening_withACalendarDateComesWithAForcedPass()
{
    FaultRound round(*database);
    const QDate farAhead(2050, 1, 1);
    round.f.writeExport(
        {exportHeader(), unchangedB(round).branch(20).calendar(5, farAhead).line()});
    QCOMPARE(passRefusing(round, QStringLiteral("UPDATE atten")).size(), 1);
    QCOMPARE(openDays(round), QStringLiteral("0"));
    database->force();
    round.pass();
    QCOMPARE(openDays(round), QStringLiteral("2"));
}

QTEST_GUILESS_MAIN(tst_Recovery)
#include "tst_recovery.moc"
