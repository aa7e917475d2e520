// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What brings back what a forced pass does not: the advice of docs/recovery.md.
#include "faults/faultround.h"
#include "support/recordeddatabase.h"

#include <QtTest>

#include <memory>

class tst_Recovery : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void restart_setsSupervisorsAndTellsTerminals();
    void restart_enrolsNobodyInPam();
    void memberRowTakenAway_joinsAnew();
    void planRowTakenAway_plansAnew();

private:
    /// A pass in which these calls fail, and the recovery.
    void lose(FaultRound &round, int firstCall, int lastCall);
    QStringList lost(FaultRound &round) const;

    std::unique_ptr<FaultBench> bench;
    TestDatabase *database = nullptr;
    const UndisturbedRun *undisturbed = nullptr;
};

void tst_Recovery::initTestCase()
{
    bench = std::make_unique<FaultBench>();
    database = &bench->database;
    undisturbed = bench->undisturbed.get();
    QVERIFY2(undisturbed, qPrintable(database->error()));
}

void tst_Recovery::cleanupTestCase()
{
    bench.reset();
}

void tst_Recovery::lose(FaultRound &round, int firstCall, int lastCall)
{
    int calls = 0;
    auto hook = std::make_unique<RecordedCallHook>([&](const QString &) {
        ++calls;
        return calls >= firstCall && calls <= lastCall
            ? QSqlError(QString(), QStringLiteral("refused"), QSqlError::StatementError)
            : QSqlError();
    });
    round.pass();
    hook.reset();
    round.recover();
}

QStringList tst_Recovery::lost(FaultRound &round) const
{
    return contentDifference(undisturbed->contentInTheEnd(), round.company.content());
}

/// Everybody counts as changed then: known people are updated, and their terminals are told, the
/// new ones included. The day from which B's state holds has been the day of the first pass; the
/// mark of the calculated days follows it, and goes back with the calendar's date.
void tst_Recovery::restart_setsSupervisorsAndTellsTerminals()
{
    FaultRound round(*database);
    lose(round, numberOf(QStringLiteral("B.newsUid")), 1000);
    QCOMPARE(
        lost(round),
        lines({"+admins_people 5|B|1", "+term 34|0", "-admins_people 5|B|0", "-admins_people 6|B|1",
               "-term 34|2", "-term_sync 34|U|people|uid|B|2026-03-17 12:00:00|2"}));

    round.restart();
    QCOMPARE(round.pass().filter(QRegularExpression(QStringLiteral("^(warning|critical) "))),
             QStringList());
    round.company.calculateAttendance();
    QCOMPARE(
        lost(round),
        lines({"+people A.edited: 2026-03-17 12:00:00", "+people A.editor: 0",
               "+people B.lastCalc: 2026-01-31 00:00:00", "+people C.edited: 2026-03-17 12:00:00",
               "+people C.editor: 0", "+term_sync 31|U|people|uid|A|2026-03-17 12:00:00|2",
               "+term_sync 32|U|people|uid|A|2026-03-17 12:00:00|2",
               "+term_sync 33|U|people|uid|B|2026-03-17 12:00:00|2", "-people A.edited: NULL",
               "-people A.editor: NULL", "-people B.lastCalc: 2025-12-31 00:00:00",
               "-people C.edited: NULL", "-people C.editor: NULL"}));
}

void tst_Recovery::restart_enrolsNobodyInPam()
{
    FaultRound round(*database);
    lose(round, numberOf(QStringLiteral("A.blocks")), 1000);
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
    const int call = numberOf(QStringLiteral("31.people"));
    lose(round, call, call);
    QCOMPARE(lost(round),
             lines({"+term 31|0", "-people_term 31|A", "-term 31|2",
                    "-term_sync 31|I|people_term|uid|A|2026-03-17 12:00:00|2"}));
    database->execute(QStringLiteral("DELETE FROM brape WHERE bid = 1 AND uid = %1")
                          .arg(round.company.uid(QStringLiteral("A"))));
    round.recover();
    QCOMPARE(lost(round), lines({"+term_sync 32|I|people_term|uid|A|2026-03-17 12:00:00|2"}));
}

void tst_Recovery::planRowTakenAway_plansAnew()
{
    FaultRound round(*database);
    const int call = numberOf(QStringLiteral("B.months"));
    lose(round, call, call);
    QCOMPARE(lost(round),
             lines({"-groups_month B|202601|15", "-groups_month B|202602|15",
                    "-groups_month B|202603|15"}));
    database->execute(QStringLiteral("DELETE FROM groups_plan WHERE uid = %1")
                          .arg(round.company.uid(QStringLiteral("B"))));
    round.recover();
    QCOMPARE(lost(round), QStringList());
}

QTEST_GUILESS_MAIN(tst_Recovery)
#include "tst_recovery.moc"
