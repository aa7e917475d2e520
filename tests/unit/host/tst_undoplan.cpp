// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From changes to the statements that take them back, without a server.
#include "host/undo/sqlvalue.h"
#include "host/undo/undotext.h"
#include "support/passchanges.h"
#include "support/scripteddatabase.h"

#include <QtTest>

namespace {

const char *const peopleColumns = "people: uid|pid|pamId|name|surname|status|phone|edited|lastCalc";

/// One person gets another phone, a branch and a place on a terminal.
Changes changesOfOne()
{
    return changesOf(SnapshotBuilder().with(peopleColumns, {"1|10011|1001.1|Eva|Malá|1|05|7|100"}),
                     SnapshotBuilder()
                         .with(peopleColumns, {"1|10011|1001.1|Eva|Malá|1|O'\\|8|90"})
                         .with("brape: bid|uid|since", {"2|1|9"})
                         .with("people_term: tid|uid", {"3|1"})
                         .with("atten: uid|date|ok", {"1|86400|-1"})
                         .named("bid", 2, "200 Druhá")
                         .named("tid", 3, "Dvere"));
}

UndoPlan planOf(const Changes &changes, const UndoSelection &selection = {},
                const UndoFacts &facts = {})
{
    UndoPlan plan;
    const Failure failure = makeUndoPlan(changes, selection, facts, &plan);
    if (failure)
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
    return plan;
}

} // namespace

class tst_UndoPlan : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_areSpelt_data();
    void values_areSpelt();
    void script_ofOnePerson();
    void script_marksWhatWasFound();
    void text_tellsWhatIsLeftAlone();
    void addedPerson_isFoundByNumberAfterARehearsal();
    void rehearsedPerson_needsANumber();
    void kinds_thatStayAreRefused();
    void commitWithoutAnAnswer_leavesItOpen();
};

void tst_UndoPlan::values_areSpelt_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("condition");
    const auto row = [](const char *name, const QVariant &value, const char *condition) {
        QTest::newRow(name) << value << QString::fromUtf8(condition);
    };
    row("none", QVariant(), "`a``b` <=> NULL");
    row("number", qlonglong(-5), "`a``b` <=> -5");
    row("large number", 18446744073709551615ULL, "`a``b` <=> 18446744073709551615");
    row("fraction", 0.1, "CAST(CAST(`a``b` AS CHAR) AS DOUBLE) <=> 1.0000000000000001e-01");
    row("text", QStringLiteral("O'Neill "), "BINARY CONVERT(`a``b` USING utf8mb4) <=> 'O''Neill '");
    row("backslash", QStringLiteral("ž\\"),
        "BINARY CONVERT(`a``b` USING utf8mb4) <=> _utf8mb4 x'C5BE5C'");
    row("line end", QStringLiteral("a\n"),
        "BINARY CONVERT(`a``b` USING utf8mb4) <=> _utf8mb4 x'610A'");
    row("direction", QString(QChar(0x5d0)) + QChar(0x202e),
        "BINARY CONVERT(`a``b` USING utf8mb4) <=> _utf8mb4 x'D790E280AE'");
    row("right to left", QString(QChar(0x5d0)), "BINARY CONVERT(`a``b` USING utf8mb4) <=> 'א'");
    row("bytes", QByteArray("\0'", 2), "HEX(`a``b`) <=> '0027'");
}

void tst_UndoPlan::values_areSpelt()
{
    QFETCH(QVariant, value);
    QFETCH(QString, condition);
    QCOMPARE(holdsValue(QStringLiteral("a`b"), value), condition);
}

void tst_UndoPlan::script_ofOnePerson()
{
    const Changes changes = changesOfOne();
    const QString script = undoScript(changes, planOf(changes), {});
    const QString statements = script.mid(script.indexOf(QStringLiteral("\nSET NAMES")));
    const char *const expected
        = "\nSET NAMES utf8mb4;\nSTART TRANSACTION;\n"
          "\n-- 1001.1 Eva Malá: place on terminal Dvere\n"
          "DELETE FROM `people_term` WHERE `tid` = 3 AND `uid` = 1;\n"
          "SET @gone = ROW_COUNT();\n"
          "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT 3 tid, "
          "'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
          "2 flags FROM people WHERE status = 1 AND uid = 1 AND @gone > 0;\n"
          "UPDATE `term` SET syn = syn | 2 WHERE status = 1 AND tid = 3 AND @gone > 0;\n"
          "\n-- 1001.1 Eva Malá: membership of branch 200 Druhá\n"
          "DELETE FROM `brape` WHERE `bid` = 2 AND `uid` = 1 AND `since` <=> 9;\n"
          "\n-- 1001.1 Eva Malá: own row: phone\n"
          "SET @uid = (SELECT `uid` FROM `people` WHERE `uid` = 1 AND `pid` <=> 10011 AND "
          "BINARY CONVERT(`pamId` USING utf8mb4) <=> '1001.1' AND "
          "BINARY CONVERT(`name` USING utf8mb4) <=> 'Eva' AND "
          "BINARY CONVERT(`surname` USING utf8mb4) <=> 'Malá' AND `status` <=> 1 AND "
          "BINARY CONVERT(`phone` USING utf8mb4) <=> _utf8mb4 x'4F275C' FOR UPDATE);\n"
          "UPDATE `people` SET `phone` = 5, `edited` = UNIX_TIMESTAMP() WHERE `uid` = @uid;\n"
          "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT `tid` "
          "tid, 'U' type, 'people' ref, 'uid' ref_col, @uid ref_id, UNIX_TIMESTAMP() created, "
          "2 flags FROM people_term JOIN term USING(tid) WHERE status = 1 AND uid = @uid AND "
          "(flags & 2);\n"
          "CALL updateTermsSync(@uid, 2);\n"
          "\nCOMMIT;\n";
    QCOMPARE(statements, QString::fromUtf8(expected));
    QCOMPARE(script.left(script.indexOf(QStringLiteral("-- How to go on"))),
             QString::fromUtf8(
                 "-- Takes back the pass that ended at 2026-11-22T12:00:00+01:00 over no export.\n"
                 "-- Each statement finds its row only as the pass has left it: what somebody has "
                 "changed since is\n-- left alone.\n"
                 "-- No database was looked at: what is left alone is not known.\n"
                 "-- What is taken back, by kind:\n"
                 "--   people's own rows: 1\n"
                 "--   memberships of branches: 1\n"
                 "--   places on terminals: 1\n"
                 "-- The marks of calculation stay as they are, of people: 1.\n"
                 "-- Rows that changed as no pass changes them stay, for that was somebody else: "
                 "1.\n"));
}

/// What the statements would find is known once they have been tried.
void tst_UndoPlan::script_marksWhatWasFound()
{
    const Changes changes = changesOfOne();
    UndoPlan plan = planOf(changes);
    plan.settledFile = QStringLiteral("/srv/it's/1.settled");
    UndoOutcomes outcomes(3);
    outcomes[0].isBack = true;
    outcomes[1].since = QString::fromUtf8("since 9 -> 10\n");
    outcomes[2].effect = UndoStatement::TakesBack;
    const QString script = undoScript(changes, plan, outcomes);
    for (
        const char *line :
        {"-- What is taken back, by kind:\n--   people's own rows: 1\n"
         "--   taken back already: 1\n--   left alone: 1\n",
         "\n-- 1001.1 Eva Malá: place on terminal Dvere (taken back already)\n",
         "\n-- 1001.1 Eva Malá: membership of branch 200 Druhá (left alone, changed since: since 9 "
         "-> 10\\n)\n",
         "\n-- 1001.1 Eva Malá: own row: phone\n",
         "\n-- exports, tell it:\n--   touch '/srv/it'\\''s/1.settled'\n\nSET NAMES"})
        QVERIFY2(script.contains(QString::fromUtf8(line)), line);
    outcomes.fill(outcomes.first());
    QVERIFY(undoScript(changes, plan, outcomes)
                .contains(QStringLiteral("\n-- There is nothing to do: the pass that ended at ")));
}

void tst_UndoPlan::text_tellsWhatIsLeftAlone()
{
    const UndoPlan plan = planOf(changesOfOne());
    const UndoOutcomes outcomes {UndoStatement::TakesBack, UndoStatement::Beside,
                                 UndoStatement::TakesBack};
    QCOMPARE(outcomeText(plan, outcomes, 100),
             QString::fromUtf8("  people's own rows: 1\n"
                               "  places on terminals: 1\n"
                               "Left alone, for somebody has changed it since (what the pass has "
                               "left -> what is there now):\n"
                               "  1001.1 Eva Malá: membership of branch 200 Druhá\n"));
    const UndoOutcomes none(3);
    QVERIFY(outcomeText(plan, none, 100).startsWith(QStringLiteral("All of it is left alone: ")));
    QVERIFY(!afterwardsText(plan, outcomes, 100).contains(QStringLiteral("inactive")));
}

void tst_UndoPlan::addedPerson_isFoundByNumberAfterARehearsal()
{
    Changes changes = changesOf(SnapshotBuilder(),
                                SnapshotBuilder()
                                    .with(somebody, {"7|10011|1001.1|Eva|Malá|1"})
                                    .with("brape: bid|uid|since", {"2|7|9"}));
    UndoPlan plan = planOf(changes);
    QVERIFY(plan.steps.first().statements.first().sql.startsWith(
        QStringLiteral("SET @uid = (SELECT `uid` FROM `people` WHERE `uid` = 7 AND ")));
    QCOMPARE(
        plan.steps.first().statements.at(1).sql,
        QStringLiteral("DELETE FROM `brape` WHERE `bid` = 2 AND `uid` = @uid AND `since` <=> 9"));
    changes.header.how = ChangesHeader::Rehearsed;
    plan = planOf(changes);
    const QString lock = plan.steps.first().statements.first().sql;
    QVERIFY(lock.startsWith(
        QStringLiteral("SET @uid = (SELECT `uid` FROM `people` WHERE `pid` = 10011 AND ")));
    QVERIFY(!lock.contains(QStringLiteral("`uid` = 7"))
            && !lock.contains(QStringLiteral("`uid` <")));
    QCOMPARE(plan.steps.first().statements.at(1).sql,
             QStringLiteral("DELETE FROM `brape` WHERE `bid` = 2 AND `uid` = @uid"));
}

void tst_UndoPlan::rehearsedPerson_needsANumber()
{
    Changes changes = changesOf(SnapshotBuilder(),
                                SnapshotBuilder().with(somebody, {"7|NULL|NULL|Eva|Malá|1"}));
    QCOMPARE(planOf(changes).steps.size(), 1);
    changes.header.how = ChangesHeader::Rehearsed;
    UndoPlan plan;
    const Failure failure = makeUndoPlan(changes, {}, {}, &plan);
    QCOMPARE(int(failure.exitCode), int(ExitRefused));
    QVERIFY2(failure.text.startsWith(
                 QString::fromUtf8("'Eva Malá' was added in a rehearsal and has no number")),
             qPrintable(failure.text));
}

void tst_UndoPlan::kinds_thatStayAreRefused()
{
    UndoSelection selection;
    for (const char *kind : {"reopened", "notices", "waiting", "dropped", "errors", "nonsense"})
        QCOMPARE(int(addUndoKind(QLatin1String(kind), &selection).exitCode), int(ExitUsage));
    QVERIFY(selection.kinds.isEmpty());
    const QStringList kinds = undoableKinds();
    QCOMPARE(kinds.size(), changeKindCount - 5);
    for (const QString &kind : kinds)
        QVERIFY(!addUndoKind(kind, &selection));
    // Of others nothing.
    selection.people = QStringList {QStringLiteral("7.1")};
    QCOMPARE(int(checkSelection(selection, changesOfOne()).exitCode), int(ExitUsage));
    QCOMPARE(planOf(changesOfOne(), selection).steps.size(), 0);
}

/// The server may have taken it and been lost before it could say so.
void tst_UndoPlan::commitWithoutAnAnswer_leavesItOpen()
{
    ScriptedDatabase database;
    QSqlDatabase handle = database.handle();
    QVERIFY(handle.open());
    UndoOutcomes outcomes;
    database.on(QStringLiteral("COMMIT")).withError(QStringLiteral("2013"), QStringLiteral("lost"));
    Failure failure = runUndo(handle, UndoPlan(), {}, &outcomes);
    QCOMPARE(int(failure.exitCode), int(ExitDatabase));
    QVERIFY2(failure.text.startsWith(
                 QStringLiteral("the database has not said whether the pass was taken back: lost")),
             qPrintable(failure.text));
    database.on(QStringLiteral("START")).withError(QStringLiteral("2013"), QStringLiteral("lost"));
    failure = runUndo(handle, UndoPlan(), {}, &outcomes);
    QVERIFY2(failure.text.startsWith(QStringLiteral("nothing was taken back: the database refused "
                                                    "'START TRANSACTION': lost")),
             qPrintable(failure.text));
}

QTEST_GUILESS_MAIN(tst_UndoPlan)
#include "tst_undoplan.moc"
